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

// A 16.16 value rounded half up to whole pixels, as the reader takes a contour's start point.
int32_t Whole(int32_t v) {
  return static_cast<int32_t>(static_cast<uint32_t>((v >> 16) + ((v & 0xFFFF) >= 0x8000 ? 1 : 0)) << 16);
}

}  // namespace

bool OutlineBlockWriter::ToFixed(Point p, Fixed* out) {
  const double x = std::nearbyint(p.x * 65536.0), y = std::nearbyint(p.y * 65536.0);
  if (!(x >= -2147483648.0 && x <= 2147483647.0 && y >= -2147483648.0 && y <= 2147483647.0)) {
    inRange_ = false;
    return false;
  }
  *out = {static_cast<int32_t>(x), static_cast<int32_t>(y)};
  return true;
}

void OutlineBlockWriter::Extend(int64_t x, int64_t y) {
  minX_ = std::min(minX_, x), maxX_ = std::max(maxX_, x);
  minY_ = std::min(minY_, y), maxY_ = std::max(maxY_, y);
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
  // The reader rounds a contour's start point to whole pixels (and keeps every other point's fraction),
  // which moves the two edges that meet there by under half a pixel; EndContour makes the last edge end
  // on the rounded point too. An extra edge from the rounded point to the exact one would keep the shape
  // but give a stroked Outline a spike where it turns back.
  if (!ToFixed(p, &start_)) return;
  open_ = true;
  current_ = p;
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
  if (records_.empty() || !inRange_) {
    records_.clear();
    return;
  }
  // The last edge comes back to the start: a line there is implied by the reader's own closing edge,
  // and a curve ends where the reader puts the start. Ending on the exact start instead would leave a
  // sliver of an edge to the rounded one, which a stroke draws as a spike.
  Record& last = records_.back();
  if (last.points.back().x == start_.x && last.points.back().y == start_.y) {
    if (last.type == kPrimLine) {
      last.points.pop_back();
      if (last.points.empty()) records_.pop_back();
    } else {
      last.points.back() = {Whole(start_.x), Whole(start_.y)};
    }
  }
  if (records_.empty()) return;
  uint32_t cb = 16;
  for (const Record& r : records_) cb += 4 + 8 * static_cast<uint32_t>(r.points.size());
  PutU32(&bytes_, cb);
  PutU32(&bytes_, kPolygonType);
  PutU32(&bytes_, static_cast<uint32_t>(start_.x));
  PutU32(&bytes_, static_cast<uint32_t>(start_.y));
  // The box counts the start where the reader puts it.
  Extend(Whole(start_.x), Whole(start_.y));
  for (const Record& r : records_) {
    PutU16(&bytes_, r.type);
    PutU16(&bytes_, static_cast<uint16_t>(r.points.size()));
    for (const Fixed& f : r.points) {
      Extend(f.x, f.y);
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
