// Laying text out through the text library's C interface, and drawing the result with the renderer, for
// the text tests. The fonts are the ones tools/install-deps.sh installs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lettrix/lettrix_text.h"

namespace lx::text::testing {

constexpr const char* kSansBold = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* kSerifOtf = "/usr/share/fonts/opentype/freefont/FreeSerif.otf";
constexpr const char* kDevanagari = "/usr/share/fonts/truetype/lohit-devanagari/Lohit-Devanagari.ttf";

// One layout's result, released with the object.
class Laid {
 public:
  Laid(const std::string& text, const LettrixTextLayout& layout);
  ~Laid() { LettrixTextRelease(&result_); }
  Laid(const Laid&) = delete;
  Laid& operator=(const Laid&) = delete;

  bool ok() const { return ok_; }
  const std::string& message() const { return message_; }
  const LettrixTextResult& r() const { return result_; }
  const LettrixTextGlyph& glyph(size_t i) const { return result_.glyphs[i]; }
  const LettrixTextLine& line(size_t i) const { return result_.lines[i]; }

 private:
  LettrixTextResult result_{};
  bool ok_ = false;
  std::string message_;
};

// Defaults with this font file and pixel size.
LettrixTextLayout Layout(const char* font, double pixelSize);

// The alpha of the block drawn in white, no Shadow, into a transparent width x height image, row by row.
std::vector<uint8_t> DrawAlpha(const LettrixTextResult& r, int32_t width, int32_t height);

// The glyph index of a character in a font file, 0 when it has none.
uint32_t GlyphOf(const char* font, uint32_t cp);

}  // namespace lx::text::testing
