// The decoded outline: vertices with double coordinates and AGG's path commands. A plain vector, so
// that settings stay free of AGG; the drawing code reads it as an AGG vertex source.
#pragma once

#include <cstdint>
#include <vector>

namespace lx {

enum PathCommand : uint32_t {
  kPathStop = 0,
  kPathMoveTo = 1,
  kPathLineTo = 2,
  kPathCurve3 = 3,  // a control vertex followed by an end vertex, both carrying this command
};

struct PathVertex {
  double x, y;
  uint32_t cmd;
};

using OutlinePath = std::vector<PathVertex>;

}  // namespace lx
