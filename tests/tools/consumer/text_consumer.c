/* Lays out a word with the installed text library and draws it with the installed renderer: the README's
 * example, checked. Exit status 0 when the word was drawn in opaque ink. */
#include <stdio.h>

#include <lettrix/lettrix.h>
#include <lettrix/lettrix_text.h>

int main(void) {
  LettrixTextLayout layout;
  LettrixTextResult text;
  char message[256];
  static uint32_t pixels[400 * 100];
  LettrixTextDefaults(&layout);
  layout.font_family = "DejaVu Serif";
  layout.pixel_size = 48;
  if (!LettrixTextLayOut("Hello", 5, &layout, &text, message, sizeof message))
    return fprintf(stderr, "%s\n", message), 1;
  int32_t width = text.ink_right + 8, height = text.ink_bottom + 8, inked = 0;
  RenderHandle slot = CreateRenderProcess();
  bool drawn = width <= 400 && height <= 100 && Render(&slot, text.block, &width, &height, pixels);
  DestroyRenderProcess(&slot);
  LettrixTextRelease(&text);
  for (int i = 0; drawn && i < width * height; ++i) inked += (pixels[i] >> 24) == 255;
  printf("text consumer: %d x %d pixels, %d of them opaque ink\n", (int)width, (int)height, (int)inked);
  return drawn && inked > 200 ? 0 : 1;
}
