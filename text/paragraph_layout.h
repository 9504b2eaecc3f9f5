// Text to positioned glyphs: splits the text into paragraphs at line feeds, finds each paragraph's
// embedding levels (FriBidi), cuts it into runs of one level, script and font, shapes each run
// (HarfBuzz), breaks lines to fit a width, puts each line's runs in visual order and aligns the lines.
#pragma once

#include <hb.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "text/font_set.h"
#include "text/utf8_decoder.h"

namespace lx::text {

enum class Alignment { kLeft, kCentre, kRight };
enum class BaseDirection { kAuto, kLeftToRight, kRightToLeft };

struct LayoutOptions {
  Alignment align = Alignment::kLeft;
  double lineSpacing = 1.0;    // factor of the chosen font's line height
  double letterSpacing = 0.0;  // pixels between clusters
  double wrapWidth = 0.0;      // pixels; 0: no wrapping
  BaseDirection direction = BaseDirection::kAuto;
  hb_language_t language = HB_LANGUAGE_INVALID;  // none
  hb_script_t script = HB_SCRIPT_INVALID;        // found per run
  std::vector<hb_feature_t> features;
  bool fallback = true;
};

struct PlacedGlyph {
  uint32_t glyph = 0;
  size_t font = 0;       // index into the FontSet
  size_t character = 0;  // index of its cluster's first code point
  uint32_t line = 0;
  bool missing = false;
  double x = 0, y = 0;  // origin on the baseline, pixels
  double advance = 0;
};

struct PlacedLine {
  double left = 0, right = 0, top = 0, bottom = 0, baseline = 0;
  size_t first = 0, end = 0;  // code points shown, [first, end)
};

struct TextLayout {
  std::vector<PlacedGlyph> glyphs;
  std::vector<PlacedLine> lines;
  double width = 0, height = 0;
};

// Lays out `text` with the fonts' chosen font (fonts.at(0)), opening fallback fonts as needed.
// Returns false with a message when a coordinate grows beyond what the block can hold.
bool LayOutParagraphs(const DecodedText& text, const LayoutOptions& options, FontSet& fonts, TextLayout* out,
                      std::string* message);

}  // namespace lx::text
