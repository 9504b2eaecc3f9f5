/* The text library's header compiles as C, and its defaults are what it documents. */
#include "lettrix/lettrix_text.h"

int LettrixTextHeaderDefaultsHold(void) {
  LettrixTextLayout layout;
  LettrixTextResult result = {0};
  LettrixTextDefaults(&layout);
  LettrixTextRelease(&result);
  return layout.font_file == NULL && layout.pixel_size == 32.0 && layout.line_spacing == 1.0 &&
         layout.align == LETTRIX_ALIGN_LEFT && layout.direction == LETTRIX_DIRECTION_AUTO &&
         layout.fallback == 1 && layout.wrap_width == 0.0 && layout.letter_spacing == 0.0;
}
