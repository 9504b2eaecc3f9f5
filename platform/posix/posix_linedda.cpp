#include "platform/platform.h"
#include "platform/portable_linedda.h"

namespace lx::platform {

int LineDDA(int x1, int y1, int x2, int y2, LineDDAProc proc, intptr_t data) {
  return portable::LineDDA(x1, y1, x2, y2, proc, data);
}

}  // namespace lx::platform
