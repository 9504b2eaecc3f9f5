#include "tools/text_outline/block_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <utility>

#include "text/utf8_decoder.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace detail {
namespace {

struct Record {
  uint16_t type;
  std::vector<ContourPoint> points;
};

void PutU16(std::vector<uint8_t>* out, uint16_t v) {
  out->push_back(static_cast<uint8_t>(v));
  out->push_back(static_cast<uint8_t>(v >> 8));
}

void PutU32(std::vector<uint8_t>* out, uint32_t v) {
  for (int shift = 0; shift < 32; shift += 8) out->push_back(static_cast<uint8_t>(v >> shift));
}

void PutPoint(std::vector<uint8_t>* out, const ContourPoint& p) {
  PutU32(out, static_cast<uint32_t>(p.x));
  PutU32(out, static_cast<uint32_t>(p.y));
}

bool SamePlace(const ContourPoint& a, const ContourPoint& b) {
  return a.x == b.x && a.y == b.y;
}

}  // namespace

void Fail(std::string* error, const std::string& message) {
  if (error != nullptr) *error = message;
}

bool ReadTextLine(const TextLine& line, std::vector<uint32_t>* codePoints, std::string* error) {
  if (line.pixelSize < 1 || line.pixelSize > 2048) {
    Fail(error, "pixel size out of range");
    return false;
  }
  if (!DecodeUtf8(line.text, codePoints)) {
    Fail(error, "text is not valid UTF-8");
    return false;
  }
  return true;
}

bool AppendContour(const std::vector<ContourPoint>& points, std::vector<uint8_t>* block) {
  const size_t n = points.size();
  for (const ContourPoint& p : points) {
    if (p.kind == PointKind::kCubic) return false;
  }
  if (n < 2) return true;

  // The walk starts on an on-curve point; a contour made only of conic points starts at the implied
  // on-curve point between its last and first.
  size_t first = n;
  for (size_t i = 0; i < n; ++i) {
    if (points[i].kind == PointKind::kOn) {
      first = i;
      break;
    }
  }
  ContourPoint start;
  std::vector<ContourPoint> walk;
  walk.reserve(n + 1);
  if (first < n) {
    start = points[first];
    for (size_t i = 1; i < n; ++i) walk.push_back(points[(first + i) % n]);
  } else {
    const int64_t x = (int64_t{points[n - 1].x} + points[0].x) / 2;
    const int64_t y = (int64_t{points[n - 1].y} + points[0].y) / 2;
    start = {static_cast<int32_t>(x), static_cast<int32_t>(y), PointKind::kOn};
    walk = points;
  }
  walk.push_back(start);  // back to where the contour began

  std::vector<Record> records;
  std::vector<ContourPoint> controls;
  for (const ContourPoint& q : walk) {
    if (q.kind == PointKind::kConic) {
      controls.push_back(q);
    } else if (!controls.empty()) {
      controls.push_back(q);
      records.push_back({kPrimQSpline, std::move(controls)});
      controls.clear();
    } else if (!records.empty() && records.back().type == kPrimLine) {
      records.back().points.push_back(q);
    } else {
      records.push_back({kPrimLine, {q}});
    }
  }
  // A final straight edge back to the start is implied: the reader closes every contour itself.
  if (records.back().type == kPrimLine && SamePlace(records.back().points.back(), start)) {
    records.back().points.pop_back();
    if (records.back().points.empty()) records.pop_back();
  }
  if (records.empty()) return true;

  uint32_t cb = 16;
  for (const Record& r : records) cb += 4 + 8 * static_cast<uint32_t>(r.points.size());
  PutU32(block, cb);
  PutU32(block, kPolygonType);
  PutPoint(block, start);
  for (const Record& r : records) {
    PutU16(block, r.type);
    PutU16(block, static_cast<uint16_t>(r.points.size()));
    for (const ContourPoint& p : r.points) PutPoint(block, p);
  }
  return true;
}

bool ToFixed(double pixels, int32_t* fixed) {
  const double v = std::nearbyint(pixels * 65536.0);
  if (!(v >= -2147483648.0 && v <= 2147483647.0)) return false;
  *fixed = static_cast<int32_t>(v);
  return true;
}

bool DecodeUtf8(const std::string& text, std::vector<uint32_t>* codePoints) {
  lx::text::DecodedText decoded;
  size_t badOffset = 0;
  if (!lx::text::DecodeUtf8(text.data(), text.size(), &decoded, &badOffset)) return false;
  *codePoints = std::move(decoded.codePoints);
  return true;
}

bool ReadWholeFile(const std::string& path, std::vector<uint8_t>* bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

}  // namespace detail

namespace {

uint32_t GetU32(const uint8_t* p) {
  return uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 | uint32_t{p[3]} << 24;
}
uint16_t GetU16(const uint8_t* p) {
  return static_cast<uint16_t>(p[0] | p[1] << 8);
}

// Extremes of the points seen so far, in 16.16 units.
struct Extent {
  int64_t minX = INT64_MAX, minY = INT64_MAX, maxX = INT64_MIN, maxY = INT64_MIN;
  void add(int64_t x, int64_t y) {
    minX = std::min(minX, x), maxX = std::max(maxX, x);
    minY = std::min(minY, y), maxY = std::max(maxY, y);
  }
};

int64_t FloorUnits(int64_t fixed) {
  return fixed >> 16;
}  // arithmetic shift floors
int64_t CeilUnits(int64_t fixed) {
  return -((-fixed) >> 16);
}
int64_t RoundedStart(int32_t fixed) {
  return int64_t{fixed >> 16} + ((fixed & 0xFFFF) >= 0x8000 ? 1 : 0);
}

}  // namespace

InkBox MeasureOutlineBlock(const uint8_t* bytes, size_t size) {
  if (bytes == nullptr) return {};
  Extent e;
  size_t at = 0;
  while (at < size) {
    if (size - at < 16) return {};
    const uint32_t cb = GetU32(bytes + at);
    if (cb < 16 || cb > size - at || GetU32(bytes + at + 4) != detail::kPolygonType) return {};
    const uint8_t* contour = bytes + at;
    e.add(RoundedStart(static_cast<int32_t>(GetU32(contour + 8))) << 16,
          RoundedStart(static_cast<int32_t>(GetU32(contour + 12))) << 16);
    size_t r = 16;
    while (r < cb) {
      if (cb - r < 4) return {};
      const uint16_t count = GetU16(contour + r + 2);
      if ((cb - r - 4) / 8 < count) return {};
      const uint16_t type = GetU16(contour + r);
      if (type >= 1 && type <= 3) {
        for (uint16_t k = 0; k < count; ++k) {
          const uint8_t* p = contour + r + 4 + 8 * size_t{k};
          e.add(static_cast<int32_t>(GetU32(p)), static_cast<int32_t>(GetU32(p + 4)));
        }
      }
      r += 4 + 8 * size_t{count};
    }
    at += cb;
  }
  if (e.minX > e.maxX) return {};
  InkBox box;
  box.left = static_cast<int32_t>(FloorUnits(e.minX));
  box.top = static_cast<int32_t>(FloorUnits(e.minY));
  box.right = static_cast<int32_t>(CeilUnits(e.maxX));
  box.bottom = static_cast<int32_t>(CeilUnits(e.maxY));
  return box;
}

}  // namespace lx::text
