#include "text/paragraph_layout.h"

#include <fribidi.h>

#include <algorithm>
#include <cmath>

namespace lx::text {
namespace {

constexpr double kUnitsPerPixel = 64.0;  // HarfBuzz positions and FreeType outlines are 1/64 pixel
constexpr double kLargestCoordinate = 32767.0;

bool IsLineBreak(uint32_t cp) {
  return cp == '\n' || cp == '\r' || cp == 0x2028 || cp == 0x2029;
}

// Characters that belong with the one before them: marks, joiners and variation selectors.
bool JoinsPrevious(uint32_t cp) {
  switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), cp)) {
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
      return true;
    default:
      return cp == 0x200C || cp == 0x200D || (cp >= 0xFE00 && cp <= 0xFE0F) ||
             (cp >= 0xE0100 && cp <= 0xE01EF);
  }
}

bool IsNeutralScript(hb_script_t s) {
  return s == HB_SCRIPT_COMMON || s == HB_SCRIPT_INHERITED || s == HB_SCRIPT_UNKNOWN;
}

struct Run {
  size_t first, end;  // paragraph-relative code points
  int level;
  hb_script_t script;
  size_t font;
};

struct ShapedGlyph {
  uint32_t glyph;
  size_t font;
  size_t cluster;                    // paragraph-relative
  double advance, xOffset, yOffset;  // pixels
};

class Paragraph {
 public:
  Paragraph(const uint32_t* cps, size_t n, const LayoutOptions& o, FontSet& fonts)
      : cps_(cps), n_(n), o_(o), fonts_(fonts), levels_(n, 0), scripts_(n), fontOf_(n, 0) {
    FindLevels();
    FindScripts();
    FindFonts();
  }

  // Advance of each code point (its cluster's, letter spacing included, on the cluster's first code
  // point; 0 on the others) and whether a line may break before it.
  void Measure(std::vector<double>* widths, std::vector<bool>* clusterStart) {
    widths->assign(n_, 0.0);
    clusterStart->assign(n_, false);
    for (const Run& run : Itemize(0, n_)) {
      for (const ShapedGlyph& g : Shape(run)) {
        (*widths)[g.cluster] += g.advance;
        if (!(*clusterStart)[g.cluster]) (*widths)[g.cluster] += o_.letterSpacing;
        (*clusterStart)[g.cluster] = true;
      }
    }
  }

  // The glyphs of code points [first, end) in visual order, placed from pen position 0 on baseline 0;
  // returns the line's advance.
  double PlaceLine(size_t first, size_t end, std::vector<PlacedGlyph>* out) {
    std::vector<Run> runs = Itemize(first, end);
    // Reverse every sequence of runs at or above each level, from the highest down to the lowest odd one.
    int highest = 0, lowestOdd = 255;
    for (const Run& r : runs) {
      highest = std::max(highest, r.level);
      if (r.level % 2) lowestOdd = std::min(lowestOdd, r.level);
    }
    for (int level = highest; level >= lowestOdd && level > 0; --level) {
      for (size_t i = 0; i < runs.size();) {
        if (runs[i].level < level) {
          ++i;
          continue;
        }
        size_t j = i;
        while (j < runs.size() && runs[j].level >= level) ++j;
        std::reverse(runs.begin() + static_cast<ptrdiff_t>(i), runs.begin() + static_cast<ptrdiff_t>(j));
        i = j;
      }
    }
    double pen = 0.0;
    bool any = false;
    size_t lastCluster = SIZE_MAX;
    for (const Run& run : runs) {
      for (const ShapedGlyph& g : Shape(run)) {
        if (any && g.cluster != lastCluster) pen += o_.letterSpacing;
        PlacedGlyph p;
        p.glyph = g.glyph;
        p.font = g.font;
        p.character = g.cluster;
        p.missing = g.glyph == 0;
        p.x = pen + g.xOffset;
        p.y = -g.yOffset;
        p.advance = g.advance;
        out->push_back(p);
        pen += g.advance;
        lastCluster = g.cluster;
        any = true;
      }
    }
    return pen;
  }

 private:
  void FindLevels() {
    if (n_ == 0) return;
    std::vector<FriBidiCharType> types(n_);
    std::vector<FriBidiBracketType> brackets(n_);
    fribidi_get_bidi_types(cps_, static_cast<FriBidiStrIndex>(n_), types.data());
    fribidi_get_bracket_types(cps_, static_cast<FriBidiStrIndex>(n_), types.data(), brackets.data());
    FriBidiParType base = o_.direction == BaseDirection::kLeftToRight   ? FRIBIDI_PAR_LTR
                          : o_.direction == BaseDirection::kRightToLeft ? FRIBIDI_PAR_RTL
                                                                        : FRIBIDI_PAR_ON;
    std::vector<FriBidiLevel> levels(n_);
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), static_cast<FriBidiStrIndex>(n_),
                                            &base, levels.data()) == 0) {
      return;  // out of memory in FriBidi: left to right
    }
    for (size_t i = 0; i < n_; ++i) levels_[i] = levels[i];
  }

  void FindScripts() {
    hb_unicode_funcs_t* unicode = hb_unicode_funcs_get_default();
    hb_script_t last = HB_SCRIPT_INVALID;
    for (size_t i = 0; i < n_; ++i) {
      hb_script_t s = o_.script != HB_SCRIPT_INVALID ? o_.script : hb_unicode_script(unicode, cps_[i]);
      if (IsNeutralScript(s) && last != HB_SCRIPT_INVALID) s = last;
      scripts_[i] = s;
      if (!IsNeutralScript(s)) last = s;
    }
    // Neutral characters before the first letter take its script.
    for (size_t i = n_; i-- > 0;) {
      if (IsNeutralScript(scripts_[i]) && i + 1 < n_) scripts_[i] = scripts_[i + 1];
    }
  }

  void FindFonts() {
    for (size_t i = 0; i < n_; ++i) {
      const uint32_t cp = cps_[i];
      const bool neutral = hb_unicode_script(hb_unicode_funcs_get_default(), cp) == HB_SCRIPT_COMMON;
      // Marks and joiners stay in their letter's font; spaces, digits and punctuation too when it has
      // them, so that a run in a fallback font is not cut at every space.
      if (i > 0 &&
          (JoinsPrevious(cp) || (neutral && FT_Get_Char_Index(fonts_.at(fontOf_[i - 1]).face, cp) != 0))) {
        fontOf_[i] = fontOf_[i - 1];
      } else {
        fontOf_[i] = fonts_.FontFor(cp, o_.fallback);
      }
    }
  }

  std::vector<Run> Itemize(size_t first, size_t end) const {
    std::vector<Run> runs;
    for (size_t i = first; i < end; ++i) {
      if (!runs.empty() && runs.back().level == levels_[i] && runs.back().script == scripts_[i] &&
          runs.back().font == fontOf_[i]) {
        runs.back().end = i + 1;
      } else {
        runs.push_back({i, i + 1, levels_[i], scripts_[i], fontOf_[i]});
      }
    }
    return runs;
  }

  // The run's glyphs in visual order, shaped with the whole paragraph as context.
  std::vector<ShapedGlyph> Shape(const Run& run) const {
    hb_buffer_t* buffer = hb_buffer_create();
    hb_buffer_add_codepoints(buffer, cps_, static_cast<int>(n_), static_cast<unsigned>(run.first),
                             static_cast<int>(run.end - run.first));
    hb_buffer_set_direction(buffer, run.level % 2 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, run.script);
    if (o_.language != HB_LANGUAGE_INVALID) hb_buffer_set_language(buffer, o_.language);
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(fonts_.at(run.font).shaper, buffer, o_.features.data(),
             static_cast<unsigned>(o_.features.size()));
    unsigned count = 0;
    const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer, &count);
    std::vector<ShapedGlyph> glyphs;
    glyphs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
      glyphs.push_back({info[i].codepoint, run.font, info[i].cluster, pos[i].x_advance / kUnitsPerPixel,
                        pos[i].x_offset / kUnitsPerPixel, pos[i].y_offset / kUnitsPerPixel});
    }
    hb_buffer_destroy(buffer);
    return glyphs;
  }

  const uint32_t* cps_;
  size_t n_;
  const LayoutOptions& o_;
  FontSet& fonts_;
  std::vector<int> levels_;
  std::vector<hb_script_t> scripts_;
  std::vector<size_t> fontOf_;
};

// Where the lines of a paragraph of `n` code points end: greedy, breaking at the last space that lets
// the line fit, or inside a word that cannot fit on its own. Spaces a line breaks at are left out.
std::vector<std::pair<size_t, size_t>> BreakLines(const uint32_t* cps, size_t n,
                                                  const std::vector<double>& widths,
                                                  const std::vector<bool>& clusterStart, double wrap) {
  std::vector<std::pair<size_t, size_t>> lines;
  if (wrap <= 0.0) {
    lines.push_back({0, n});
    return lines;
  }
  size_t start = 0;
  do {
    double width = 0.0;
    size_t lastSpace = SIZE_MAX, i = start, end = n, next = n;
    for (; i < n; ++i) {
      if (cps[i] == ' ') lastSpace = i;
      width += widths[i];
      if (width <= wrap || cps[i] == ' ') continue;
      if (lastSpace != SIZE_MAX && lastSpace > start) {
        end = lastSpace;
      } else {
        // No space to break at: cut the word before the first cluster that overflows, keeping at
        // least one cluster on the line.
        size_t cut = i;
        while (cut > start && !clusterStart[cut]) --cut;
        end = cut > start ? cut : i + 1;
        while (end < n && !clusterStart[end]) ++end;
      }
      break;
    }
    next = end;
    if (end < n) {
      while (next < n && cps[next] == ' ') ++next;
    }
    // A line that would end in the spaces it breaks at keeps its words only.
    size_t shown = end;
    if (end < n) {
      while (shown > start && cps[shown - 1] == ' ') --shown;
    }
    lines.push_back({start, shown});
    start = next;
  } while (start < n);
  return lines;
}

}  // namespace

bool LayOutParagraphs(const DecodedText& text, const LayoutOptions& options, FontSet& fonts, TextLayout* out,
                      std::string* message) {
  *out = TextLayout{};
  hb_font_extents_t extents{};
  hb_font_get_h_extents(fonts.at(0).shaper, &extents);
  const double ascender = extents.ascender / kUnitsPerPixel, descender = -extents.descender / kUnitsPerPixel;
  const double lineHeight = (ascender + descender + extents.line_gap / kUnitsPerPixel) * options.lineSpacing;

  const std::vector<uint32_t>& cps = text.codePoints;
  size_t paragraphStart = 0;
  for (size_t i = 0; i <= cps.size(); ++i) {
    if (i < cps.size() && !IsLineBreak(cps[i])) continue;
    const uint32_t* p = cps.data() + paragraphStart;
    const size_t n = i - paragraphStart;
    Paragraph paragraph(p, n, options, fonts);
    std::vector<double> widths;
    std::vector<bool> clusterStart;
    if (options.wrapWidth > 0.0) paragraph.Measure(&widths, &clusterStart);
    for (const auto& range : BreakLines(p, n, widths, clusterStart, options.wrapWidth)) {
      PlacedLine line;
      line.first = paragraphStart + range.first;
      line.end = paragraphStart + range.second;
      line.baseline = ascender + lineHeight * static_cast<double>(out->lines.size());
      line.top = line.baseline - ascender;
      line.bottom = line.baseline + descender;
      if (!(std::fabs(line.bottom) <= kLargestCoordinate && std::fabs(line.top) <= kLargestCoordinate)) {
        *message = "the text leaves the 16.16 coordinate range (-32768..32767 pixels): too many lines";
        return false;
      }
      const size_t firstGlyph = out->glyphs.size();
      line.right = paragraph.PlaceLine(range.first, range.second, &out->glyphs);
      if (!(std::fabs(line.right) <= kLargestCoordinate)) {
        *message = "the text leaves the 16.16 coordinate range (-32768..32767 pixels): a line is too long";
        return false;
      }
      for (size_t g = firstGlyph; g < out->glyphs.size(); ++g) {
        PlacedGlyph& glyph = out->glyphs[g];
        glyph.character += paragraphStart;
        glyph.line = static_cast<uint32_t>(out->lines.size());
        glyph.y += line.baseline;
      }
      out->width = std::max(out->width, line.right);
      out->lines.push_back(line);
    }
    // A CR LF pair ends one line, not two.
    if (i + 1 < cps.size() && cps[i] == '\r' && cps[i + 1] == '\n') ++i;
    paragraphStart = i + 1;
  }

  for (PlacedLine& line : out->lines) {
    const double room = out->width - line.right;
    const double shift = options.align == Alignment::kCentre  ? room / 2
                         : options.align == Alignment::kRight ? room
                                                              : 0.0;
    line.left = shift;
    line.right += shift;
  }
  for (PlacedGlyph& glyph : out->glyphs) glyph.x += out->lines[glyph.line].left;
  out->height = out->lines.empty() ? 0.0 : out->lines.back().bottom - out->lines.front().top;
  return true;
}

}  // namespace lx::text
