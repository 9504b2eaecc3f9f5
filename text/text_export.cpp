// The text library's exported functions: checks the request, lays the text out, writes the glyphs'
// outlines into a global-memory block, and hands everything to the caller in plain C arrays.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "lettrix/lettrix.h"
#include "lettrix/lettrix_text.h"
#include "text/font_set.h"
#include "text/outline_block_writer.h"
#include "text/paragraph_layout.h"
#include "text/utf8_decoder.h"

namespace lx::text {
namespace {

constexpr unsigned kFixedBlock = 0;  // GMEM_FIXED: the handle is the block's address

bool InRange(double v, double low, double high) {
  return v >= low && v <= high;  // false for NaN
}

std::string Number(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", v);
  return buf;
}

bool Empty(const char* s) {
  return s == nullptr || *s == '\0';
}

bool ParseFeatures(const char* list, std::vector<hb_feature_t>* out, std::string* message) {
  if (Empty(list)) return true;
  const std::string all = list;
  size_t start = 0;
  for (;;) {
    const size_t comma = all.find(',', start);
    std::string one = all.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    while (!one.empty() && one.front() == ' ') one.erase(0, 1);
    while (!one.empty() && one.back() == ' ') one.pop_back();
    hb_feature_t feature;
    // HarfBuzz reads "li ga" as "li" and drops the rest; a space inside a setting is a mistake.
    if (one.empty() || one.find_first_of(" \t") != std::string::npos ||
        !hb_feature_from_string(one.c_str(), static_cast<int>(one.size()), &feature)) {
      *message = "'" + one + "' is not an OpenType feature setting (such as liga=0, kern, +smcp or -calt)";
      return false;
    }
    out->push_back(feature);
    if (comma == std::string::npos) return true;
    start = comma + 1;
  }
}

bool ParseOptions(const LettrixTextLayout& in, LayoutOptions* o, std::string* message) {
  if (!InRange(in.pixel_size, 1.0, 2048.0)) {
    *message = "pixel size " + Number(in.pixel_size) + " is out of range (1..2048)";
    return false;
  }
  if (in.font_index < 0 || in.font_index > 65535) {
    *message = "font index " + std::to_string(in.font_index) + " is out of range (0..65535)";
    return false;
  }
  if (in.align < LETTRIX_ALIGN_LEFT || in.align > LETTRIX_ALIGN_RIGHT) {
    *message = "alignment " + std::to_string(in.align) + " is not left (0), centre (1) or right (2)";
    return false;
  }
  if (in.direction < LETTRIX_DIRECTION_AUTO || in.direction > LETTRIX_DIRECTION_RTL) {
    *message = "direction " + std::to_string(in.direction) + " is not auto (0), ltr (1) or rtl (2)";
    return false;
  }
  if (!InRange(in.line_spacing, 0.1, 10.0)) {
    *message = "line spacing " + Number(in.line_spacing) + " is out of range (0.1..10)";
    return false;
  }
  if (!InRange(in.letter_spacing, -1000.0, 1000.0)) {
    *message = "letter spacing " + Number(in.letter_spacing) + " is out of range (-1000..1000)";
    return false;
  }
  if (!(in.wrap_width == 0.0 || InRange(in.wrap_width, 1.0, 32767.0))) {
    *message = "wrap width " + Number(in.wrap_width) + " is out of range (0 for none, or 1..32767)";
    return false;
  }
  o->align = static_cast<Alignment>(in.align);
  o->direction = static_cast<BaseDirection>(in.direction);
  o->lineSpacing = in.line_spacing;
  o->letterSpacing = in.letter_spacing;
  o->wrapWidth = in.wrap_width;
  o->fallback = in.fallback != 0;
  if (!Empty(in.language)) {
    const std::string tag = in.language;
    bool good = tag.size() <= 35 && std::isalpha(static_cast<unsigned char>(tag[0]));
    for (char c : tag) good = good && (std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_');
    if (!good) {
      *message = "'" + tag + "' is not a language tag (such as en, ar, hi or zh-Hant)";
      return false;
    }
    o->language = hb_language_from_string(tag.c_str(), -1);
  }
  if (!Empty(in.script)) {
    const std::string tag = in.script;
    o->script = tag.size() == 4 ? hb_script_from_string(tag.c_str(), 4) : HB_SCRIPT_INVALID;
    if (o->script == HB_SCRIPT_INVALID || o->script == HB_SCRIPT_UNKNOWN) {
      *message = "'" + tag + "' is not an ISO 15924 script tag (such as Latn, Arab or Deva)";
      return false;
    }
  }
  return ParseFeatures(in.features, &o->features, message);
}

struct Pen {
  OutlineBlockWriter* writer;
  double x, y;  // the glyph's origin in pixels
  Point at(const FT_Vector* v) const { return {x + v->x / 64.0, y - v->y / 64.0}; }
};

int MoveTo(const FT_Vector* to, void* user) {
  auto* pen = static_cast<Pen*>(user);
  pen->writer->MoveTo(pen->at(to));
  return 0;
}
int LineTo(const FT_Vector* to, void* user) {
  auto* pen = static_cast<Pen*>(user);
  pen->writer->LineTo(pen->at(to));
  return 0;
}
int ConicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
  auto* pen = static_cast<Pen*>(user);
  pen->writer->QuadraticTo(pen->at(control), pen->at(to));
  return 0;
}
int CubicTo(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user) {
  auto* pen = static_cast<Pen*>(user);
  pen->writer->CubicTo(pen->at(c1), pen->at(c2), pen->at(to));
  return 0;
}

// A font whose missing glyph has no outline still shows a box: a frame 0.6 em high inside the advance.
void WriteMissingBox(const PlacedGlyph& g, double em, OutlineBlockWriter* writer) {
  const double inset = em * 0.08, stroke = std::max(1.0, em * 0.06);
  const double width = std::max(g.advance, em * 0.5);
  const double left = g.x + inset, right = g.x + width - inset, top = g.y - em * 0.7, bottom = g.y;
  writer->MoveTo({left, top});
  writer->LineTo({right, top});
  writer->LineTo({right, bottom});
  writer->LineTo({left, bottom});
  writer->EndContour();
  writer->MoveTo({left + stroke, top + stroke});
  writer->LineTo({left + stroke, bottom - stroke});
  writer->LineTo({right - stroke, bottom - stroke});
  writer->LineTo({right - stroke, top + stroke});
  writer->EndContour();
}

void WriteGlyphs(const TextLayout& layout, FontSet& fonts, double em, OutlineBlockWriter* writer) {
  static const FT_Outline_Funcs kFuncs = {MoveTo, LineTo, ConicTo, CubicTo, 0, 0};
  for (const PlacedGlyph& g : layout.glyphs) {
    FT_Face face = fonts.at(g.font).face;
    const bool loaded = FT_Load_Glyph(face, g.glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) == 0 &&
                        face->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
    if (loaded && face->glyph->outline.n_contours > 0) {
      Pen pen{writer, g.x, g.y};
      FT_Outline_Decompose(&face->glyph->outline, &kFuncs, &pen);
      writer->EndContour();
    } else if (g.missing) {
      WriteMissingBox(g, em, writer);
    }
    if (!writer->inRange()) return;
  }
}

void Say(const std::string& text, char* message, size_t size) {
  if (message == nullptr || size == 0) return;
  const size_t n = std::min(text.size(), size - 1);
  std::memcpy(message, text.data(), n);
  message[n] = '\0';
}

void Fill(const TextLayout& layout, const DecodedText& decoded, size_t textLength, FontSet& fonts,
          LettrixTextResult* r) {
  r->width = layout.width;
  r->height = layout.height;
  r->line_count = layout.lines.size();
  r->lines = new LettrixTextLine[layout.lines.size() + 1];
  auto offsetOf = [&](size_t cp) { return cp < decoded.offsets.size() ? decoded.offsets[cp] : textLength; };
  for (size_t i = 0; i < layout.lines.size(); ++i) {
    const PlacedLine& l = layout.lines[i];
    const size_t from = offsetOf(l.first), to = offsetOf(l.end);
    r->lines[i] = {l.left, l.right, l.top, l.bottom, l.baseline, from, to - from};
  }
  r->glyph_count = layout.glyphs.size();
  r->glyphs = new LettrixTextGlyph[layout.glyphs.size() + 1];
  for (size_t i = 0; i < layout.glyphs.size(); ++i) {
    const PlacedGlyph& g = layout.glyphs[i];
    r->glyphs[i] = {
        g.glyph,  static_cast<uint32_t>(g.font), offsetOf(g.character), g.line, g.missing ? 1 : 0, g.x, g.y,
        g.advance};
    if (g.missing) ++r->missing_count;
  }
  r->font_count = fonts.size();
  r->font_files = new const char*[fonts.size()]();
  for (size_t i = 0; i < fonts.size(); ++i) {
    const std::string& file = fonts.at(i).file;
    char* copy = new char[file.size() + 1];
    std::memcpy(copy, file.c_str(), file.size() + 1);
    r->font_files[i] = copy;
  }
}

int LayOut(const char* text, size_t length, const LettrixTextLayout* layout, LettrixTextResult* result,
           std::string* message) {
  if (text == nullptr || layout == nullptr) {
    *message = "no text or no layout given";
    return 0;
  }
  LayoutOptions options;
  if (!ParseOptions(*layout, &options, message)) return 0;
  DecodedText decoded;
  size_t bad = 0;
  if (!DecodeUtf8(text, length, &decoded, &bad)) {
    *message = "the text is not valid UTF-8 (at byte " + std::to_string(bad) + ")";
    return 0;
  }
  FontSet fonts;
  if (!fonts.OpenChosen(Empty(layout->font_file) ? "" : layout->font_file, layout->font_index,
                        Empty(layout->font_family) ? "" : layout->font_family, layout->pixel_size, message)) {
    return 0;
  }
  TextLayout placed;
  if (!LayOutParagraphs(decoded, options, fonts, &placed, message)) return 0;
  OutlineBlockWriter writer;
  WriteGlyphs(placed, fonts, layout->pixel_size, &writer);
  if (!writer.inRange()) {
    *message = "the text leaves the 16.16 coordinate range (-32768..32767 pixels)";
    return 0;
  }
  LettrixTextResult r{};
  try {
    Fill(placed, decoded, length, fonts, &r);
    if (!writer.bytes().empty()) {
      r.block = LettrixGlobalAlloc(kFixedBlock, writer.bytes().size());
      if (r.block == nullptr) throw std::bad_alloc();
      std::memcpy(r.block, writer.bytes().data(), writer.bytes().size());
      r.block_size = writer.bytes().size();
      r.ink_left = writer.inkLeft();
      r.ink_top = writer.inkTop();
      r.ink_right = writer.inkRight();
      r.ink_bottom = writer.inkBottom();
    }
  } catch (...) {
    LettrixTextRelease(&r);
    throw;
  }
  *result = r;
  return 1;
}

}  // namespace
}  // namespace lx::text

extern "C" {

LETTRIX_API void LETTRIX_CALL LettrixTextDefaults(LettrixTextLayout* layout) {
  if (layout == nullptr) return;
  *layout = LettrixTextLayout{};
  layout->pixel_size = 32.0;
  layout->align = LETTRIX_ALIGN_LEFT;
  layout->line_spacing = 1.0;
  layout->direction = LETTRIX_DIRECTION_AUTO;
  layout->fallback = 1;
}

LETTRIX_API int LETTRIX_CALL LettrixTextLayOut(const char* text, size_t length,
                                               const LettrixTextLayout* layout, LettrixTextResult* result,
                                               char* message, size_t message_size) {
  if (result == nullptr) {
    lx::text::Say("no result given", message, message_size);
    return 0;
  }
  *result = LettrixTextResult{};
  std::string why;
  int done = 0;
  try {
    done = lx::text::LayOut(text, length, layout, result, &why);
  } catch (const std::bad_alloc&) {
    why = "out of memory";
  } catch (...) {
    why = "the layout failed unexpectedly";
  }
  if (!done) {
    *result = LettrixTextResult{};
    lx::text::Say(why, message, message_size);
  } else {
    lx::text::Say("", message, message_size);
  }
  return done;
}

LETTRIX_API void LETTRIX_CALL LettrixTextRelease(LettrixTextResult* result) {
  if (result == nullptr) return;
  if (result->block != nullptr) LettrixGlobalFree(result->block);
  delete[] result->lines;
  delete[] result->glyphs;
  for (size_t i = 0; i < result->font_count && result->font_files != nullptr; ++i)
    delete[] result->font_files[i];
  delete[] result->font_files;
  *result = LettrixTextResult{};
}

}  // extern "C"
