// Fonts by family name through fontconfig (native program only).
#pragma once

#include <string>

namespace lxt {

// The file of the font that fontconfig matches to `pattern` ("DejaVu Serif:bold"). Throws UsageError for
// a pattern fontconfig cannot parse and JobError when no installed font has the family asked for
// (fontconfig would silently fall back to another one).
std::string FindFontFile(const std::string& pattern);

}  // namespace lxt
