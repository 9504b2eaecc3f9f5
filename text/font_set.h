// The fonts one layout uses: the chosen font first, then the fallback fonts fontconfig found for the
// characters it lacks. Each font is open twice over the same file: in FreeType for outlines and in
// HarfBuzz for shaping, both at the layout's pixel size. Owned by one call: nothing is shared between
// threads but fontconfig's configuration, which fontconfig guards itself.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace lx::text {

struct Font {
  std::string file;
  int index = 0;
  FT_Face face = nullptr;
  hb_font_t* shaper = nullptr;
  ~Font();
};

class FontSet {
 public:
  static constexpr int kMostLookups = 64;
  static constexpr size_t kMostFonts = 16;

  FontSet();
  ~FontSet();
  FontSet(const FontSet&) = delete;
  FontSet& operator=(const FontSet&) = delete;

  // Opens the chosen font: `file` when not empty, else fontconfig's match for `family` (empty: the
  // default family). Returns false with a message.
  bool OpenChosen(const std::string& file, int index, const std::string& family, double pixelSize,
                  std::string* message);

  // The font to draw `cp` with: the first open font that has it, else (with fallback on) a newly opened
  // fallback font that fontconfig finds for it; 0 when no font has it. A search costs milliseconds, so
  // one layout makes at most kMostLookups of them (text in many scripts needs a few) and opens at most
  // kMostFonts fonts; characters beyond that show as missing.
  size_t FontFor(uint32_t cp, bool fallback);

  Font& at(size_t i) { return *fonts_[i]; }
  size_t size() const { return fonts_.size(); }

 private:
  bool Open(const std::string& file, int index, std::string* message);

  FT_Library library_ = nullptr;
  double pixelSize_ = 0;
  std::vector<std::unique_ptr<Font>> fonts_;
  std::set<uint32_t> unfound_;  // characters fontconfig had no font for, not to be asked again
  int lookups_ = 0;             // fontconfig searches made for this layout
};

// The fontconfig configuration, loaded once for the process; null when fontconfig cannot start.
FcConfig* FontConfig();

}  // namespace lx::text
