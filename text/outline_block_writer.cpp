#include "text/outline_block_writer.h"

#include <cmath>

namespace lx::text {
namespace {

constexpr uint32_t kPolygonType = 24;  // TT_POLYGON_TYPE
constexpr uint16_t kPrimLine = 1;      // TT_PRIM_LINE
constexpr uint16_t kPrimQSpline = 2;   // TT_PRIM_QSPLINE
constexpr size_t kMostPointsPerRecord = 65535;

void PutU16(std::vector<uint8_t>* out, uint16_t v) {
  out->push_back(static_cast<uint8_t>(v));
  out->push_back(static_cast<uint8_t>(v >> 8));
}

void PutU32(std::vector<uint8_t>* out, uint32_t v) {
  for (int shift = 0; shift < 32; shift += 8) out->push_back(static_cast<uint8_t>(v >> shift));
}

}  // namespace

bool OutlineBlockWriter::ToFixed(Point p, Fixed* out) {
  const double x = std::nearbyint(p.x * 65536.0), y = std::nearbyint(p.y * 65536.0);
  if (!(x >= -2147483648.0 && x <= 2147483647.0 && y >= -2147483648.0 && y <= 2147483647.0)) {
    inRange_ = false;
    return false;
  }
  *out = {static_cast<int32_t>(x), static_cast<int32_t>(y)};
  minX_ = std::min<int64_t>(minX_, out->x), maxX_ = std::max<int64_t>(maxX_, out->x);
  minY_ = std::min<int64_t>(minY_, out->y), maxY_ = std::max<int64_t>(maxY_, out->y);
  return true;
}

void OutlineBlockWriter::Add(uint16_t type, std::initializer_list<Fixed> points) {
  if (type != kPrimLine || records_.empty() || records_.back().type != kPrimLine ||
      records_.back().points.size() + points.size() > kMostPointsPerRecord) {
    records_.push_back({type, {}});
  }
  records_.back().points.insert(records_.back().points.end(), points);
}

void OutlineBlockWriter::MoveTo(Point p) {
  EndContour();
  Fixed exact;
  if (!ToFixed(p, &exact)) return;
  // The reader rounds a contour's start point to whole pixels but keeps every other point's fraction.
  // Starting on the rounded point and stepping to the exact one adds an edge that the closing edge
  // retraces, enclosing nothing, so the glyph keeps its exact shape.
  const int32_t whole =
      static_cast<int32_t>(static_cast<uint32_t>((exact.x >> 16) + ((exact.x & 0xFFFF) >= 0x8000)) << 16);
  const int32_t wholeY =
      static_cast<int32_t>(static_cast<uint32_t>((exact.y >> 16) + ((exact.y & 0xFFFF) >= 0x8000)) << 16);
  start_ = {whole, wholeY};
  minX_ = std::min<int64_t>(minX_, whole), maxX_ = std::max<int64_t>(maxX_, whole);
  minY_ = std::min<int64_t>(minY_, wholeY), maxY_ = std::max<int64_t>(maxY_, wholeY);
  open_ = true;
  current_ = p;
  if (exact.x != start_.x || exact.y != start_.y) Add(kPrimLine, {exact});
}

void OutlineBlockWriter::LineTo(Point p) {
  Fixed f;
  if (!open_ || !ToFixed(p, &f)) return;
  Add(kPrimLine, {f});
  current_ = p;
}

void OutlineBlockWriter::QuadraticTo(Point control, Point end) {
  Fixed c, e;
  if (!open_ || !ToFixed(control, &c) || !ToFixed(end, &e)) return;
  Add(kPrimQSpline, {c, e});
  current_ = end;
}

void OutlineBlockWriter::CubicTo(Point control1, Point control2, Point end) {
  if (!open_) return;
  std::vector<QuadraticPiece> pieces;
  SplitCubic(current_, control1, control2, end, kCubicTolerance, &pieces);
  for (const QuadraticPiece& q : pieces) QuadraticTo(q.control, q.end);
}

void OutlineBlockWriter::EndContour() {
  if (!open_) return;
  open_ = false;
  // A contour with no edge of its own (only the step from the rounded start) encloses nothing.
  const bool onlyStep =
      records_.size() == 1 && records_[0].type == kPrimLine && records_[0].points.size() == 1;
  if (records_.empty() || onlyStep || !inRange_) {
    records_.clear();
    return;
  }
  uint32_t cb = 16;
  for (const Record& r : records_) cb += 4 + 8 * static_cast<uint32_t>(r.points.size());
  PutU32(&bytes_, cb);
  PutU32(&bytes_, kPolygonType);
  PutU32(&bytes_, static_cast<uint32_t>(start_.x));
  PutU32(&bytes_, static_cast<uint32_t>(start_.y));
  for (const Record& r : records_) {
    PutU16(&bytes_, r.type);
    PutU16(&bytes_, static_cast<uint16_t>(r.points.size()));
    for (const Fixed& f : r.points) {
      PutU32(&bytes_, static_cast<uint32_t>(f.x));
      PutU32(&bytes_, static_cast<uint32_t>(f.y));
    }
  }
  records_.clear();
}

// Arithmetic shifts floor; the negated shift of the negation ceils.
int32_t OutlineBlockWriter::inkLeft() const {
  return hasInk() ? static_cast<int32_t>(minX_ >> 16) : 0;
}
int32_t OutlineBlockWriter::inkTop() const {
  return hasInk() ? static_cast<int32_t>(minY_ >> 16) : 0;
}
int32_t OutlineBlockWriter::inkRight() const {
  return hasInk() ? static_cast<int32_t>(-((-maxX_) >> 16)) : 0;
}
int32_t OutlineBlockWriter::inkBottom() const {
  return hasInk() ? static_cast<int32_t>(-((-maxY_) >> 16)) : 0;
}

}  // namespace lx::text
