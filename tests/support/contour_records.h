// Hand-made outline blocks for tests and benchmarks: contour headers and curve records written byte by
// byte, including malformed ones, with every field under the test's control.
#pragma once
#include <cmath>
#include <cstdint>
#include <vector>

namespace lx::test {
struct FxPoint {
  int32_t x, y;  // raw 16.16
};

// The 16.16 fixed point nearest (x, y).
inline FxPoint Pt(double x, double y) {
  return {static_cast<int32_t>(std::lround(x * 65536.0)), static_cast<int32_t>(std::lround(y * 65536.0))};
}

class ContourRecords {
 public:
  // Starts a contour; end() patches its cb.
  ContourRecords& begin(FxPoint start, uint32_t type = 24) {
    contourStart_ = bytes_.size();
    return put(0, 4).put(type, 4).put(start.x, 4).put(start.y, 4);
  }
  ContourRecords& record(uint16_t type, const std::vector<FxPoint>& points) {
    put(type, 2).put(static_cast<uint32_t>(points.size()), 2);
    for (const FxPoint& p : points) put(p.x, 4).put(p.y, 4);
    return *this;
  }
  ContourRecords& line(const std::vector<FxPoint>& points) { return record(1, points); }
  ContourRecords& spline(const std::vector<FxPoint>& points) { return record(2, points); }
  ContourRecords& end() {
    const auto cb = static_cast<uint32_t>(bytes_.size() - contourStart_);
    for (int i = 0; i < 4; ++i) bytes_[contourStart_ + i] = static_cast<uint8_t>(cb >> (8 * i));
    return *this;
  }

  const std::vector<uint8_t>& bytes() const { return bytes_; }

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
}  // namespace lx::test
