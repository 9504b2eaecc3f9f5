// The font file of the settings: a file as given, a family through fontconfig, or the default font.
#include <fontconfig/fontconfig.h>

#include <memory>

#include "compose/composition.h"
#include "tools/text_outline/text_outline.h"

namespace lx::compose {
namespace {

struct PatternDeleter {
  void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

std::string Lower(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

std::string String(FcPattern* p, const char* object, int index) {
  FcChar8* value = nullptr;
  return FcPatternGetString(p, object, index, &value) == FcResultMatch ? reinterpret_cast<char*>(value) : "";
}

std::string FindWithFontconfig(const std::string& pattern) {
  Pattern asked(FcNameParse(reinterpret_cast<const FcChar8*>(pattern.c_str())));
  if (!asked) throw SettingError("--family: '" + pattern + "' is not a fontconfig pattern");
  const std::string family = String(asked.get(), FC_FAMILY, 0);

  // Loaded once and kept: another thread may be looking a font up at the same time.
  static FcConfig* const config = FcInit() ? FcConfigGetCurrent() : nullptr;
  if (!config) throw JobError("fontconfig could not load its configuration");
  FcConfigSubstitute(config, asked.get(), FcMatchPattern);
  FcDefaultSubstitute(asked.get());
  FcResult result = FcResultNoMatch;
  Pattern match(FcFontMatch(config, asked.get(), &result));
  if (!match) throw JobError("no font matches '" + pattern + "'");

  // Generic names are meant to be resolved to whatever the system prefers.
  const std::string want = Lower(family);
  bool found =
      want.empty() || want == "sans-serif" || want == "sans" || want == "serif" || want == "monospace";
  for (int i = 0; !found; ++i) {
    const std::string got = String(match.get(), FC_FAMILY, i);
    if (got.empty()) break;
    found = Lower(got) == want;
  }
  if (!found) {
    throw JobError("no installed font of family '" + family + "' (fontconfig's nearest is '" +
                   String(match.get(), FC_FAMILY, 0) + "')");
  }
  const std::string file = String(match.get(), FC_FILE, 0);
  if (file.empty()) throw JobError("fontconfig gave no file for '" + pattern + "'");
  return file;
}

}  // namespace

std::string ResolveFont(const Settings& settings) {
  if (!settings.fontFile.empty()) return settings.fontFile;
  if (!settings.fontFamily.empty()) return FindWithFontconfig(settings.fontFamily);
  return lx::text::kDefaultFontPath;
}

}  // namespace lx::compose
