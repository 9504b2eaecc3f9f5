// The glyph transformation: a plain 2x3 affine matrix, x' = x*sx + y*shx + tx, y' = x*shy + y*sy + ty.
#pragma once

namespace lx {

struct Affine {
  double sx = 1.0, shy = 0.0, shx = 0.0, sy = 1.0, tx = 0.0, ty = 0.0;

  // Follows the current transform by a translation, so that successive translations add up.
  void translate(double dx, double dy) {
    tx += dx;
    ty += dy;
  }
  void transform(double* x, double* y) const {
    const double x0 = *x;
    *x = x0 * sx + *y * shx + tx;
    *y = x0 * shy + *y * sy + ty;
  }
};

}  // namespace lx
