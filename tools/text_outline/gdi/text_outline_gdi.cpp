// Outline blocks from GDI: the font is added privately from memory, selected by its family name,
// weight and slant, and each glyph's GetGlyphOutline(GGO_NATIVE) contours are moved to their place on the
// line with y turned to grow downwards.
#include <windows.h>

#include <cstring>
#include <map>
#include <utility>

#include "tools/text_outline/block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {

using detail::Fail;
namespace {

uint32_t GetU32(const uint8_t* p) {
  return uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 | uint32_t{p[3]} << 24;
}
void SetU32(uint8_t* p, uint32_t v) {
  for (int k = 0; k < 4; ++k) p[k] = static_cast<uint8_t>(v >> (8 * k));
}

// Moves one POINTFX: x by dx, y mirrored about the baseline. False when it leaves the FIXED range.
bool PlacePoint(uint8_t* p, int64_t dx, int64_t baseline) {
  const int64_t x = int64_t{static_cast<int32_t>(GetU32(p))} + dx;
  const int64_t y = baseline - int64_t{static_cast<int32_t>(GetU32(p + 4))};
  if (x < INT32_MIN || x > INT32_MAX || y < INT32_MIN || y > INT32_MAX) return false;
  SetU32(p, static_cast<uint32_t>(static_cast<int32_t>(x)));
  SetU32(p + 4, static_cast<uint32_t>(static_cast<int32_t>(y)));
  return true;
}

// Places every point of one glyph's GGO_NATIVE data; false when it is malformed or leaves the range.
bool PlaceGlyph(std::vector<uint8_t>* glyph, int64_t dx, int64_t baseline) {
  uint8_t* b = glyph->data();
  const size_t size = glyph->size();
  size_t at = 0;
  while (at < size) {
    if (size - at < 16) return false;
    const uint32_t cb = GetU32(b + at);
    if (cb < 16 || cb > size - at) return false;
    if (!PlacePoint(b + at + 8, dx, baseline)) return false;
    size_t r = 16;
    while (r < cb) {
      if (cb - r < 4) return false;
      const size_t count = b[at + r + 2] | b[at + r + 3] << 8;
      if ((cb - r - 4) / 8 < count) return false;
      for (size_t k = 0; k < count; ++k) {
        if (!PlacePoint(b + at + r + 4 + 8 * k, dx, baseline)) return false;
      }
      r += 4 + 8 * count;
    }
    at += cb;
  }
  return true;
}

// The font, added from the bytes already read, for this process only while the object lives. Adding
// it by file name instead would let GDI open the file without sharing for a moment, and another
// process reading the same font right then would fail.
class PrivateFont {
 public:
  explicit PrivateFont(std::vector<uint8_t>* file) {
    DWORD count = 0;
    if (file->size() > MAXDWORD) return;
    handle_ = AddFontMemResourceEx(file->data(), static_cast<DWORD>(file->size()), nullptr, &count);
    if (handle_ != nullptr && count == 0) {
      RemoveFontMemResourceEx(handle_);
      handle_ = nullptr;
    }
  }
  ~PrivateFont() {
    if (handle_ != nullptr) RemoveFontMemResourceEx(handle_);
  }
  PrivateFont(const PrivateFont&) = delete;
  PrivateFont& operator=(const PrivateFont&) = delete;
  bool added() const { return handle_ != nullptr; }

 private:
  HANDLE handle_ = nullptr;
};

// A memory device context with the font selected, released in reverse order.
class FontContext {
 public:
  explicit FontContext(const LOGFONTW& lf) {
    dc_ = CreateCompatibleDC(nullptr);
    font_ = CreateFontIndirectW(&lf);
    if (dc_ != nullptr && font_ != nullptr) old_ = SelectObject(dc_, font_);
  }
  ~FontContext() {
    if (old_ != nullptr) SelectObject(dc_, old_);
    if (font_ != nullptr) DeleteObject(font_);
    if (dc_ != nullptr) DeleteDC(dc_);
  }
  HDC dc() const { return old_ != nullptr ? dc_ : nullptr; }

 private:
  HDC dc_ = nullptr;
  HFONT font_ = nullptr;
  HGDIOBJ old_ = nullptr;
};

}  // namespace

bool BuildOutlineBlock(const TextLine& line, OutlineBlock* out, std::string* error) {
  *out = OutlineBlock{};
  std::vector<uint32_t> codePoints;
  if (!detail::ReadTextLine(line, &codePoints, error)) return false;
  for (uint32_t cp : codePoints) {
    if (cp > 0xFFFF) {
      Fail(error, "code points above U+FFFF are not supported here");
      return false;
    }
  }
  std::vector<uint8_t> file;
  detail::FontFileInfo info;
  if (!detail::ReadWholeFile(line.fontPath, &file) || !detail::ReadFontFileInfo(file, &info)) {
    Fail(error, "cannot read font " + line.fontPath);
    return false;
  }
  if (info.family.size() >= LF_FACESIZE) {
    Fail(error, "font family name too long for GDI");
    return false;
  }
  const PrivateFont added(&file);
  if (!added.added()) {
    Fail(error, "GDI refused font " + line.fontPath);
    return false;
  }

  LOGFONTW lf{};
  lf.lfHeight = -line.pixelSize;  // negative: the em size, not the cell height
  lf.lfWeight = info.weight;
  lf.lfItalic = info.italic ? TRUE : FALSE;
  lf.lfCharSet = DEFAULT_CHARSET;
  lf.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  lf.lfQuality = ANTIALIASED_QUALITY;
  std::memcpy(lf.lfFaceName, info.family.data(), info.family.size() * sizeof(char16_t));
  const FontContext context(lf);
  HDC dc = context.dc();
  if (dc == nullptr) {
    Fail(error, "GDI cannot create the font");
    return false;
  }
  WCHAR selected[LF_FACESIZE] = {};
  GetTextFaceW(dc, LF_FACESIZE, selected);
  if (std::memcmp(selected, lf.lfFaceName, sizeof(selected)) != 0) {
    Fail(error, "GDI substituted another font");
    return false;
  }

  std::map<std::pair<uint32_t, uint32_t>, int> kerning;
  const DWORD pairCount = GetKerningPairsW(dc, 0, nullptr);
  if (pairCount > 0) {
    std::vector<KERNINGPAIR> pairs(pairCount);
    const DWORD got = GetKerningPairsW(dc, pairCount, pairs.data());
    for (DWORD i = 0; i < got && i < pairCount; ++i) {
      kerning[{pairs[i].wFirst, pairs[i].wSecond}] = pairs[i].iKernAmount;
    }
  }

  int32_t originX = 0, baseline = 0;
  if (!detail::ToFixed(line.originX, &originX) || !detail::ToFixed(line.baselineY, &baseline)) {
    Fail(error, "origin leaves the 16.16 coordinate range");
    return false;
  }
  const MAT2 identity = {{0, 1}, {0, 0}, {0, 0}, {0, 1}};
  int64_t pen = 0;  // whole pixels: GDI's advances and kerning amounts are integers
  uint32_t previous = 0;
  std::vector<uint8_t> glyph;
  for (uint32_t cp : codePoints) {
    if (previous != 0) {
      const auto k = kerning.find({previous, cp});
      if (k != kerning.end()) pen += k->second;
    }
    GLYPHMETRICS gm{};
    const UINT format = GGO_NATIVE | GGO_UNHINTED;
    const DWORD size = GetGlyphOutlineW(dc, cp, format, &gm, 0, nullptr, &identity);
    if (size == GDI_ERROR) {
      Fail(error, "GetGlyphOutline failed");
      return false;
    }
    if (size > 0) {
      glyph.assign(size, 0);
      if (GetGlyphOutlineW(dc, cp, format, &gm, size, glyph.data(), &identity) == GDI_ERROR ||
          !PlaceGlyph(&glyph, int64_t{originX} + pen * 65536, baseline)) {
        Fail(error, "glyph outline malformed or outside the 16.16 coordinate range");
        return false;
      }
      out->bytes.insert(out->bytes.end(), glyph.begin(), glyph.end());
    }
    pen += gm.gmCellIncX;
    previous = cp;
  }
  out->advance = static_cast<double>(pen);
  out->ink = MeasureOutlineBlock(out->bytes.data(), out->bytes.size());
  return true;
}

}  // namespace lx::text
