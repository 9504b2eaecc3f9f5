// The public header as a C++ compiler sees it.
#include <lettrix/lettrix.h>

extern "C" int public_header_cpp_check() {
  RenderHandle none = 0;
  const int32_t width = 1;
  // A slot without a process refuses to render.
  return Render(&none, nullptr, &width, &width, nullptr) ? 0 : 1;
}
