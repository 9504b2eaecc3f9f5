// Contours in pixels to the GGO_NATIVE records Render reads: a TTPOLYGONHEADER per contour, then line
// records (TT_PRIM_LINE) and one quadratic record (TT_PRIM_QSPLINE, control and end point) per curve, all
// in 16.16 fixed point. Cubic curves are split into quadratic ones within 1/16 pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "text/cubic_split.h"

namespace lx::text {

// How far a quadratic stand-in may stray from a cubic curve, in pixels.
constexpr double kCubicTolerance = 1.0 / 16.0;

class OutlineBlockWriter {
 public:
  // Starts a contour (ending the one before). Points are pixels, y growing downwards.
  void MoveTo(Point p);
  void LineTo(Point p);
  void QuadraticTo(Point control, Point end);
  void CubicTo(Point control1, Point control2, Point end);
  // Ends the current contour; the reader closes it back to its start.
  void EndContour();

  // False once any point left the 16.16 range (-32768..32767 pixels); the block is then unusable.
  bool inRange() const { return inRange_; }
  const std::vector<uint8_t>& bytes() const { return bytes_; }
  // The whole-pixel box Render measures for the block (right and bottom outside); empty when nothing
  // was written.
  bool hasInk() const { return minX_ <= maxX_; }
  int32_t inkLeft() const;
  int32_t inkTop() const;
  int32_t inkRight() const;
  int32_t inkBottom() const;

 private:
  struct Fixed {
    int32_t x, y;
  };
  struct Record {
    uint16_t type;
    std::vector<Fixed> points;
  };
  // 16.16 fixed point; false (spoiling the block) outside the range.
  bool ToFixed(Point p, Fixed* out);
  void Extend(int64_t x, int64_t y);
  void Add(uint16_t type, std::initializer_list<Fixed> points);

  std::vector<uint8_t> bytes_;
  bool open_ = false;
  Fixed start_{0, 0};
  Point current_{0, 0};
  std::vector<Record> records_;
  bool inRange_ = true;
  int64_t minX_ = INT64_MAX, minY_ = INT64_MAX, maxX_ = INT64_MIN, maxY_ = INT64_MIN;
};

}  // namespace lx::text
