#include "tests/text/text_fixture.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include "lettrix/lettrix.h"

namespace lx::text::testing {

Laid::Laid(const std::string& text, const LettrixTextLayout& layout) {
  char message[512];
  ok_ = LettrixTextLayOut(text.data(), text.size(), &layout, &result_, message, sizeof message) == 1;
  message_ = message;
}

LettrixTextLayout Layout(const char* font, double pixelSize) {
  LettrixTextLayout layout;
  LettrixTextDefaults(&layout);
  layout.font_file = font;
  layout.pixel_size = pixelSize;
  return layout;
}

std::vector<uint8_t> DrawAlpha(const LettrixTextResult& r, int32_t width, int32_t height) {
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * height, 0);
  RenderHandle slot = CreateRenderProcess();
  const uint8_t off = 0, opaque = 255;
  SetShadowVisible(&slot, &off);
  SetColorFaceStart(&slot, &opaque, &opaque, &opaque, &opaque);
  SetColorFaceEnd(&slot, &opaque, &opaque, &opaque, &opaque);
  Render(&slot, r.block, &width, &height, pixels.data());
  DestroyRenderProcess(&slot);
  std::vector<uint8_t> alpha(pixels.size());
  for (size_t i = 0; i < pixels.size(); ++i) alpha[i] = static_cast<uint8_t>(pixels[i] >> 24);
  return alpha;
}

uint32_t GlyphOf(const char* font, uint32_t cp) {
  FT_Library library;
  if (FT_Init_FreeType(&library) != 0) return 0;
  FT_Face face;
  uint32_t glyph = 0;
  if (FT_New_Face(library, font, 0, &face) == 0) {
    glyph = FT_Get_Char_Index(face, cp);
    FT_Done_Face(face);
  }
  FT_Done_FreeType(library);
  return glyph;
}

}  // namespace lx::text::testing
