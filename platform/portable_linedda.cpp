#include "platform/portable_linedda.h"

namespace lx::portable {

// Bresenham along the longer axis. The error term starts at 2 * minor - major and a step along the
// minor axis is taken only when it is strictly positive; ties therefore keep the minor coordinate,
// whichever way the line runs, which is how GDI picks its points. A line whose two extents are equal
// counts as steep. Extents are computed in 64 bits so that lines spanning the whole int range neither
// overflow nor lose points.
int LineDDA(int x1, int y1, int x2, int y2, LineDDAProc proc, intptr_t data) {
  if (proc == nullptr) return 0;
  int64_t dx = int64_t{x2} - x1;
  int64_t dy = int64_t{y2} - y1;
  const int xStep = dx < 0 ? -1 : 1;
  const int yStep = dy < 0 ? -1 : 1;
  if (dx < 0) dx = -dx;
  if (dy < 0) dy = -dy;

  const bool steep = dx <= dy;
  const int64_t major = steep ? dy : dx;
  const int64_t minor = steep ? dx : dy;
  int& majorPos = steep ? y1 : x1;
  int& minorPos = steep ? x1 : y1;
  const int majorStep = steep ? yStep : xStep;
  const int minorStep = steep ? xStep : yStep;

  int64_t error = 2 * minor - major;
  for (int64_t i = 0; i < major; ++i) {
    proc(x1, y1, data);
    if (error > 0) {
      minorPos += minorStep;
      error += 2 * (minor - major);
    } else {
      error += 2 * minor;
    }
    majorPos += majorStep;
  }
  return 1;
}

}  // namespace lx::portable
