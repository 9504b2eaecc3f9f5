// GDI's LineDDA in portable form: built on every system so that the Windows tests can compare it point
// by point with the real one.
#pragma once

#include <cstdint>

namespace lx::portable {

using LineDDAProc = void (*)(int x, int y, intptr_t data);

// Reports every point of the line from (x1, y1) up to, but not including, (x2, y2): max(|dx|, |dy|)
// points, none for a zero-length line. Returns 1, or 0 (and reports nothing) when proc is null.
int LineDDA(int x1, int y1, int x2, int y2, LineDDAProc proc, intptr_t data);

}  // namespace lx::portable
