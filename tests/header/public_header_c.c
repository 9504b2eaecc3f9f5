/* The public header as a C compiler sees it. */
#include <lettrix/lettrix.h>

int public_header_cpp_check(void);

int main(void) {
  RenderHandle slot = CreateRenderProcess();
  const int32_t thickness = 2;
  SetOutlineThickness(&slot, &thickness);
  DestroyRenderProcess(&slot);
  /* Destroy always clears the slot. */
  return (slot == 0 && public_header_cpp_check() == 1) ? 0 : 1;
}
