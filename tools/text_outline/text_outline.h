// Text to outline blocks: lays out one line of text in a TrueType font and writes its glyph outlines in
// the layout of GetGlyphOutline(GGO_NATIVE), which is what Render takes.
//
// The block is a run of contours, each a TTPOLYGONHEADER (cb, dwType 24, pfxStart) followed by TTPOLYCURVE
// records (TT_PRIM_LINE or TT_PRIM_QSPLINE, a point count, the points), every coordinate a 16.16 FIXED,
// all little-endian. Coordinates are buffer pixels with y growing downwards: the glyphs sit on the
// baseline at the given origin, pen advance and kerning applied, so the block needs no further transform.
//
// Programs lay text out with the text library (lettrix/lettrix_text.h: shaping, several lines, fallback
// fonts); this one-line layout stays for the Windows demo and for the tests and benchmarks that compare
// its two engines. On Linux the outlines come from FreeType; on Windows from GDI (the font file is added
// privately and selected by its family name, weight and slant). Both read the same font file, unhinted,
// but their pen advances may differ by rounding, so tests that compare pixels across systems share one
// block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "global_memory_calls.h"  // the system's own, chosen by the build

namespace lx::text {

// DejaVu Sans Bold as Debian's fonts-dejavu-core installs it.
constexpr const char* kDefaultFontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";

// Whole pixels, left and top inside, right and bottom outside.
struct InkBox {
  int32_t left = 0, top = 0, right = 0, bottom = 0;

  bool empty() const { return right <= left || bottom <= top; }
  int32_t width() const { return right - left; }
  int32_t height() const { return bottom - top; }
};

// What to lay out.
struct TextLine {
  std::string fontPath = kDefaultFontPath;
  std::string text;        // UTF-8
  int32_t pixelSize = 32;  // em size in pixels, 1 to 2048
  double originX = 0.0;    // pen position of the first glyph, in pixels
  double baselineY = 0.0;  // baseline, in pixels from the top of the buffer
};

struct OutlineBlock {
  std::vector<uint8_t> bytes;  // the contours; empty when the text has no ink (spaces only, say)
  InkBox ink;                  // the box Render measures for these bytes (see MeasureOutlineBlock)
  double advance = 0.0;        // pen advance of the whole line in pixels, kerning included
};

// Lays out `line` and writes its outline block. Returns false, with a message in *error (may be null),
// when the font cannot be read, the text is not valid UTF-8, the font has cubic outlines, the size is out
// of range, or a coordinate would leave the 16.16 range (-32768 to 32767 pixels). On Windows code points
// above U+FFFF are refused.
bool BuildOutlineBlock(const TextLine& line, OutlineBlock* out, std::string* error);

// The whole-pixel box Render takes for a block: floor of the smallest and ceiling of the largest
// coordinates of every point, each contour's start point rounded half up to whole pixels first, as
// Render rounds it. Empty for an empty or malformed block (a contour length that runs past the end, a
// contour type other than 24, a record that overruns its contour).
InkBox MeasureOutlineBlock(const uint8_t* bytes, size_t size);

// A copy of a block in global memory, as a Windows caller hands it to Render: GMEM_FIXED, so the handle
// is the block's address (kernel32's GlobalAlloc on Windows, the library's LettrixGlobalAlloc elsewhere;
// a program using this must link the Lettrix library). Freed when the object goes.
class GlobalBlock {
 public:
  // Copies `bytes`; handle() is null when they are empty or the allocation failed.
  explicit GlobalBlock(const std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return;
    handle_ = detail::AllocateGlobal(bytes.size());
    if (handle_ == nullptr) return;
    std::memcpy(handle_, bytes.data(), bytes.size());
    size_ = bytes.size();
  }
  ~GlobalBlock() {
    if (handle_ != nullptr) detail::FreeGlobal(handle_);
  }
  GlobalBlock(const GlobalBlock&) = delete;
  GlobalBlock& operator=(const GlobalBlock&) = delete;

  void* handle() const { return handle_; }
  size_t size() const { return size_; }

 private:
  void* handle_ = nullptr;
  size_t size_ = 0;
};

}  // namespace lx::text
