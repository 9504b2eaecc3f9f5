// Hand-made outline blocks for tests and benchmarks: contour headers and curve records written byte by
// byte, including malformed ones, with every field under the test's control.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace lx::test {

// 16.16 fixed value of v, rounded to the nearest unit.
inline int32_t Fx(double v) {
  return static_cast<int32_t>(std::lround(v * 65536.0));
}

struct FxPoint {
  int32_t x, y;  // raw 16.16
};

inline FxPoint Pt(double x, double y) {
  return {Fx(x), Fx(y)};
}

class ContourRecords {
 public:
  // Starts a contour; end() patches its cb, endWithCb() writes the one given.
  ContourRecords& begin(FxPoint start, uint32_t type = 24) {
    contourStart_ = bytes_.size();
    return put(0, 4).put(type, 4).put(start.x, 4).put(start.y, 4);
  }
  ContourRecords& record(uint16_t type, const std::vector<FxPoint>& points) {
    return recordWithCount(type, static_cast<uint16_t>(points.size()), points);
  }
  // A record whose stated count may differ from the points written.
  ContourRecords& recordWithCount(uint16_t type, uint16_t count, const std::vector<FxPoint>& points) {
    put(type, 2).put(count, 2);
    for (const FxPoint& p : points) put(p.x, 4).put(p.y, 4);
    return *this;
  }
  ContourRecords& line(const std::vector<FxPoint>& points) { return record(1, points); }
  ContourRecords& spline(const std::vector<FxPoint>& points) { return record(2, points); }
  ContourRecords& end() { return endWithCb(static_cast<uint32_t>(bytes_.size() - contourStart_)); }
  ContourRecords& endWithCb(uint32_t cb) {
    for (int i = 0; i < 4; ++i) bytes_[contourStart_ + i] = static_cast<uint8_t>(cb >> (8 * i));
    return *this;
  }
  ContourRecords& raw(std::vector<uint8_t> extra) {
    bytes_.insert(bytes_.end(), extra.begin(), extra.end());
    return *this;
  }

  const std::vector<uint8_t>& bytes() const { return bytes_; }
  std::vector<uint8_t>& bytes() { return bytes_; }

 private:
  // Little-endian, `size` bytes.
  ContourRecords& put(uint32_t v, int size) {
    for (int i = 0; i < size; ++i) bytes_.push_back(static_cast<uint8_t>(v >> (8 * i)));
    return *this;
  }
  ContourRecords& put(int32_t v, int size) { return put(static_cast<uint32_t>(v), size); }

  std::vector<uint8_t> bytes_;
  size_t contourStart_ = 0;
};

// A closed square contour (x, y)-(x + side, y + side) of one line record, clockwise on screen.
inline void AddSquare(ContourRecords* r, double x, double y, double side) {
  r->begin(Pt(x, y)).line({Pt(x + side, y), Pt(x + side, y + side), Pt(x, y + side), Pt(x, y)}).end();
}

// A closed circle-like contour of quadratic splines: `n` off-curve points on the circle of radius
// r / cos(pi / n) around (cx, cy), so that the implied on-curve midpoints lie on the circle of radius r.
inline void AddRoundContour(ContourRecords* rec, double cx, double cy, double r, int n) {
  const double pi = 3.141592653589793, outer = r / std::cos(pi / n);
  std::vector<FxPoint> controls;
  for (int i = 0; i < n; ++i) {
    const double a = 2 * pi * (i + 0.5) / n;
    controls.push_back(Pt(cx + outer * std::cos(a), cy + outer * std::sin(a)));
  }
  // The start point is the midpoint between the last and first control points: (cx + r, cy).
  controls.push_back(Pt(cx + r, cy));
  rec->begin(Pt(cx + r, cy)).spline(controls).end();
}

}  // namespace lx::test
