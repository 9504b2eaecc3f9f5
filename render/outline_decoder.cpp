#include "render/outline_decoder.h"

#include <cmath>
#include <cstring>

namespace lx {

namespace {

constexpr uint32_t kPolygonType = 24;  // TT_POLYGON_TYPE
constexpr uint16_t kPrimLine = 1;      // TT_PRIM_LINE
constexpr uint16_t kPrimQSpline = 2;   // TT_PRIM_QSPLINE
constexpr uint16_t kPrimCSpline = 3;   // TT_PRIM_CSPLINE, drawn as a quadratic spline too
constexpr uint64_t kHeaderBytes = 16;
constexpr uint64_t kRecordHeaderBytes = 4;
constexpr uint64_t kPointBytes = 8;

uint32_t ReadU32(const uint8_t* p) {
  return uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 | uint32_t{p[3]} << 24;
}
uint16_t ReadU16(const uint8_t* p) {
  return static_cast<uint16_t>(p[0] | p[1] << 8);
}

// A FIXED as its raw 32-bit value: the integer part in the high half, the fraction in the low half.
int32_t ReadFixed(const uint8_t* p) {
  const uint32_t u = ReadU32(p);
  int32_t v;
  std::memcpy(&v, &u, sizeof v);
  return v;
}

// value + fract / 65536, exactly.
double FixedToDouble(int32_t raw) {
  return raw * (1.0 / 65536.0);
}

// The integer part, plus one when the fraction is a half or more.
double FixedToWhole(int32_t raw) {
  const int32_t value = raw >> 16;  // the signed high half (arithmetic shift)
  const uint32_t fract = static_cast<uint32_t>(raw) & 0xFFFFu;
  return static_cast<double>(value) + (fract >= 0x8000u ? 1.0 : 0.0);
}

// The midpoint of two raw fixed values, truncating toward zero.
int32_t FixedMidpoint(int32_t a, int32_t b) {
  return static_cast<int32_t>((static_cast<int64_t>(a) + b) / 2);
}

int32_t ToInt32(double v) {
  if (!(v >= -2147483648.0)) return INT32_MIN;
  if (!(v <= 2147483647.0)) return INT32_MAX;
  return static_cast<int32_t>(v);
}

// Appends one spline record's curves: control point u, ending at the midpoint of points u and u + 1,
// or at the last point. `points` holds `count` points and, for a one-point record, the point after it.
void AppendSpline(const uint8_t* points, uint32_t count, OutlinePath* path) {
  uint32_t u = 0;
  do {
    const uint8_t* b = points + u * kPointBytes;
    const int32_t bx = ReadFixed(b);
    const int32_t by = ReadFixed(b + 4);
    int32_t cx, cy;
    const bool last = (u + 1 == count - 1);
    if (last) {
      cx = ReadFixed(b + kPointBytes);
      cy = ReadFixed(b + kPointBytes + 4);
    } else {
      cx = FixedMidpoint(bx, ReadFixed(b + kPointBytes));
      cy = FixedMidpoint(by, ReadFixed(b + kPointBytes + 4));
    }
    path->push_back({FixedToDouble(bx), FixedToDouble(by), kPathCurve3});
    path->push_back({FixedToDouble(cx), FixedToDouble(cy), kPathCurve3});
    ++u;
    if (last) break;
  } while (u + 1 < count);
}

// Decodes every contour; false at the first malformed one.
bool DecodeContours(const uint8_t* data, uint64_t size, bool flipY, OutlinePath* path) {
  uint64_t at = 0;
  while (at < size) {
    if (size - at < kHeaderBytes) return false;
    const uint8_t* contour = data + at;
    const uint64_t cb = ReadU32(contour);
    if (ReadU32(contour + 4) != kPolygonType) return false;
    if (cb < kHeaderBytes || cb > size - at) return false;

    const double startX = FixedToWhole(ReadFixed(contour + 8));
    double startY = FixedToWhole(ReadFixed(contour + 12));
    if (flipY) startY = -startY;
    path->push_back({startX, startY, kPathMoveTo});

    uint64_t record = kHeaderBytes;
    while (record < cb) {
      if (cb - record < kRecordHeaderBytes) return false;
      const uint8_t* r = contour + record;
      const uint16_t type = ReadU16(r);
      const uint32_t count = ReadU16(r + 2);
      const uint64_t bytes = kRecordHeaderBytes + kPointBytes * count;
      if (bytes > cb - record) return false;
      const uint8_t* points = r + kRecordHeaderBytes;
      if (count > 0) {
        if (type == kPrimLine) {
          for (uint32_t i = 0; i < count; ++i) {
            const uint8_t* p = points + i * kPointBytes;
            path->push_back({FixedToDouble(ReadFixed(p)), FixedToDouble(ReadFixed(p + 4)), kPathLineTo});
          }
        } else if (type == kPrimQSpline || type == kPrimCSpline) {
          // A one-point spline takes its midpoint with the point that follows the record; that point
          // must still lie inside the block.
          if (count == 1 && kPointBytes > size - (at + record + bytes)) return false;
          AppendSpline(points, count, path);
        }
      }
      record += bytes;
    }

    const PathVertex& last = path->back();
    if (last.x != startX || last.y != startY) path->push_back({startX, startY, kPathLineTo});
    at += cb;
  }
  return true;
}

}  // namespace

IntRect DecodeOutlineBlock(const void* block, size_t size, bool flipY, OutlinePath* path) {
  if (path == nullptr) return IntRect{};
  if (block == nullptr || size == 0 ||
      !DecodeContours(static_cast<const uint8_t*>(block), size, flipY, path)) {
    path->clear();
    return IntRect{};
  }
  if (path->empty()) return IntRect{};
  double minX = path->front().x, maxX = minX, minY = path->front().y, maxY = minY;
  for (const PathVertex& v : *path) {
    if (v.x < minX) minX = v.x;
    if (v.x > maxX) maxX = v.x;
    if (v.y < minY) minY = v.y;
    if (v.y > maxY) maxY = v.y;
  }
  return IntRect{ToInt32(std::floor(minX)), ToInt32(std::floor(minY)), ToInt32(std::ceil(maxX)),
                 ToInt32(std::ceil(maxY))};
}

}  // namespace lx
