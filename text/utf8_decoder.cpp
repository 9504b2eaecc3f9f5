#include "text/utf8_decoder.h"

namespace lx::text {

bool DecodeUtf8(const char* text, size_t length, DecodedText* out, size_t* badOffset) {
  out->codePoints.clear();
  out->offsets.clear();
  const auto* s = reinterpret_cast<const unsigned char*>(text);
  size_t i = 0;
  while (i < length) {
    const unsigned lead = s[i];
    size_t extra;
    uint32_t cp, least;
    if (lead < 0x80) {
      extra = 0, cp = lead, least = 0;
    } else if ((lead & 0xE0) == 0xC0) {
      extra = 1, cp = lead & 0x1F, least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2, cp = lead & 0x0F, least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3, cp = lead & 0x07, least = 0x10000;
    } else {
      *badOffset = i;
      return false;
    }
    bool good = length - i > extra;
    for (size_t k = 1; good && k <= extra; ++k) {
      good = (s[i + k] & 0xC0) == 0x80;
      cp = (cp << 6) | (s[i + k] & 0x3F);
    }
    if (!good || cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      *badOffset = i;
      return false;
    }
    out->codePoints.push_back(cp);
    out->offsets.push_back(i);
    i += extra + 1;
  }
  return true;
}

}  // namespace lx::text
