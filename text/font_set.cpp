#include "text/font_set.h"

#include <fontconfig/fontconfig.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <mutex>

namespace lx::text {
namespace {

constexpr const char* kDefaultFamily = "DejaVu Sans:bold";

struct PatternDeleter {
  void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

std::string FileOf(FcPattern* match, int* index) {
  FcChar8* file = nullptr;
  if (FcPatternGetString(match, FC_FILE, 0, &file) != FcResultMatch) return "";
  int i = 0;
  if (FcPatternGetInteger(match, FC_INDEX, 0, &i) != FcResultMatch) i = 0;
  *index = i;
  return reinterpret_cast<const char*>(file);
}

}  // namespace

FcConfig* FontConfig() {
  // Loaded once and never released: another thread may be using it at any time.
  static FcConfig* config = [] { return FcInit() ? FcConfigGetCurrent() : nullptr; }();
  return config;
}

Font::~Font() {
  if (shaper) hb_font_destroy(shaper);
  if (face) FT_Done_Face(face);
}

FontSet::FontSet() {
  if (FT_Init_FreeType(&library_) != 0) library_ = nullptr;
}

FontSet::~FontSet() {
  fonts_.clear();
  if (library_) FT_Done_FreeType(library_);
}

bool FontSet::Open(const std::string& file, int index, std::string* message) {
  if (!library_) {
    *message = "FreeType could not start";
    return false;
  }
  std::FILE* probe = std::fopen(file.c_str(), "rb");
  if (!probe) {
    *message = "cannot open font file '" + file + "': " + std::strerror(errno);
    return false;
  }
  std::fclose(probe);
  auto font = std::make_unique<Font>();
  font->file = file;
  font->index = index;
  if (FT_New_Face(library_, file.c_str(), index, &font->face) != 0) {
    font->face = nullptr;
    *message = "cannot read font file '" + file + "': it is not a font FreeType can read";
    return false;
  }
  if (!FT_IS_SCALABLE(font->face)) {
    *message = "cannot use font file '" + file + "': it has no outlines (a bitmap font)";
    return false;
  }
  const FT_F26Dot6 size = static_cast<FT_F26Dot6>(std::llround(pixelSize_ * 64.0));
  if (FT_Set_Char_Size(font->face, size, size, 72, 72) != 0) {
    *message = "cannot use font file '" + file + "': it cannot be scaled to that size";
    return false;
  }
  hb_blob_t* blob = hb_blob_create_from_file_or_fail(file.c_str());
  if (!blob) {
    *message = "cannot read font file '" + file + "'";
    return false;
  }
  hb_face_t* face = hb_face_create(blob, static_cast<unsigned>(index));
  hb_blob_destroy(blob);
  font->shaper = hb_font_create(face);
  hb_face_destroy(face);
  // Positions in 1/64 pixel, as FreeType's outlines.
  hb_font_set_scale(font->shaper, static_cast<int>(size), static_cast<int>(size));
  fonts_.push_back(std::move(font));
  return true;
}

bool FontSet::OpenChosen(const std::string& file, int index, const std::string& family, double pixelSize,
                         std::string* message) {
  pixelSize_ = pixelSize;
  if (!file.empty()) return Open(file, index, message);
  const std::string asked = family.empty() ? kDefaultFamily : family;
  if (!FontConfig()) {
    *message = "fontconfig could not load its configuration";
    return false;
  }
  Pattern pattern(FcNameParse(reinterpret_cast<const FcChar8*>(asked.c_str())));
  if (!pattern) {
    *message = "'" + asked + "' is not a fontconfig pattern";
    return false;
  }
  FcConfigSubstitute(FontConfig(), pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  Pattern match(FcFontMatch(FontConfig(), pattern.get(), &result));
  int matchIndex = 0;
  const std::string matched = match ? FileOf(match.get(), &matchIndex) : "";
  if (matched.empty()) {
    *message = "fontconfig finds no font for '" + asked + "'";
    return false;
  }
  return Open(matched, matchIndex, message);
}

size_t FontSet::FontFor(uint32_t cp, bool fallback) {
  for (size_t i = 0; i < fonts_.size(); ++i) {
    if (FT_Get_Char_Index(fonts_[i]->face, cp) != 0) return i;
  }
  if (!fallback || !FontConfig() || unfound_.count(cp) != 0 || lookups_ >= kMostLookups ||
      fonts_.size() >= kMostFonts) {
    return 0;
  }
  ++lookups_;
  // A font with the character, as close to the chosen one's weight and slant as fontconfig can find.
  Pattern pattern(FcPatternCreate());
  FcCharSet* charset = FcCharSetCreate();
  if (!pattern || !charset) {
    if (charset) FcCharSetDestroy(charset);
    return 0;
  }
  FcCharSetAddChar(charset, cp);
  FcPatternAddCharSet(pattern.get(), FC_CHARSET, charset);
  FcCharSetDestroy(charset);
  const FT_Face chosen = fonts_[0]->face;
  FcPatternAddInteger(pattern.get(), FC_WEIGHT,
                      (chosen->style_flags & FT_STYLE_FLAG_BOLD) ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern.get(), FC_SLANT,
                      (chosen->style_flags & FT_STYLE_FLAG_ITALIC) ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(FontConfig(), pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  Pattern match(FcFontMatch(FontConfig(), pattern.get(), &result));
  FcCharSet* has = nullptr;
  int index = 0;
  const std::string file = match ? FileOf(match.get(), &index) : "";
  if (file.empty() || FcPatternGetCharSet(match.get(), FC_CHARSET, 0, &has) != FcResultMatch ||
      !FcCharSetHasChar(has, cp)) {
    unfound_.insert(cp);
    return 0;
  }
  for (size_t i = 0; i < fonts_.size(); ++i) {
    if (fonts_[i]->file == file && fonts_[i]->index == index) {
      unfound_.insert(cp);  // fontconfig's font is open already and lacks it after all
      return 0;
    }
  }
  std::string ignored;
  if (!Open(file, index, &ignored)) {
    unfound_.insert(cp);
    return 0;
  }
  if (FT_Get_Char_Index(fonts_.back()->face, cp) == 0) {
    fonts_.pop_back();
    unfound_.insert(cp);
    return 0;
  }
  return fonts_.size() - 1;
}

}  // namespace lx::text
