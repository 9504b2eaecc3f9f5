// The text library's entry point on any text and any layout. Its answer must match its record: a
// refusal leaves the result empty and a terminated message within the space given; a layout leaves a
// block of exactly block_size bytes whose ink box is the one Render measures, lines and glyphs that
// point into the text, and a result that LettrixTextRelease empties.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "lettrix/lettrix.h"
#include "lettrix/lettrix_text.h"
#include "tools/text_outline/text_outline.h"

namespace {

using lx::fuzz::FuzzInput;

// Fonts from the packages the tests install: TrueType, CFF and one with a script of its own.
constexpr const char* kFonts[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
    "/usr/share/fonts/opentype/freefont/FreeSerif.otf",
    "/usr/share/fonts/truetype/lohit-devanagari/Lohit-Devanagari.ttf",
};
constexpr const char* kFeatures[] = {"", "liga=0,kern", "+smcp", "-kern", "kern=2", "aalt[3:5]=2", "x"};
constexpr const char* kLanguages[] = {"", "ar", "hi", "tr", "x-bad-\xFF"};
constexpr const char* kScripts[] = {"", "Arab", "Deva", "Latn", "Zzzz", "??"};

bool IsEmpty(const LettrixTextResult& r) {
  return r.block == nullptr && r.block_size == 0 && r.line_count == 0 && r.lines == nullptr &&
         r.glyph_count == 0 && r.glyphs == nullptr && r.font_count == 0 && r.font_files == nullptr &&
         r.ink_left == 0 && r.ink_top == 0 && r.ink_right == 0 && r.ink_bottom == 0;
}

void ExpectConsistent(const LettrixTextResult& r, size_t length) {
  if (r.block != nullptr) {
    if (LettrixGlobalSize(r.block) != r.block_size) std::abort();
    const lx::text::InkBox ink =
        lx::text::MeasureOutlineBlock(static_cast<const uint8_t*>(r.block), r.block_size);
    if (ink.left != r.ink_left || ink.top != r.ink_top || ink.right != r.ink_right ||
        ink.bottom != r.ink_bottom) {
      std::abort();
    }
  } else if (r.block_size != 0 || r.ink_left != 0 || r.ink_top != 0 || r.ink_right != 0 ||
             r.ink_bottom != 0) {
    std::abort();
  }
  if (r.font_count == 0 || r.font_files == nullptr) std::abort();
  for (size_t i = 0; i < r.line_count; ++i) {
    const LettrixTextLine& line = r.lines[i];
    if (line.text_offset > length || line.text_length > length - line.text_offset) std::abort();
  }
  for (size_t i = 0; i < r.glyph_count; ++i) {
    const LettrixTextGlyph& g = r.glyphs[i];
    if (g.line >= r.line_count || g.font >= r.font_count || g.cluster > length) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput in(data, size);
  LettrixTextLayout layout;
  LettrixTextDefaults(&layout);
  const uint8_t choice = in.Byte();
  layout.font_file = kFonts[choice % 3];
  layout.font_index = (choice & 0x80) != 0 ? in.Value<int32_t>() : 0;
  // Sizes near everyday ones mostly, any double now and then.
  layout.pixel_size = (choice & 0x40) != 0 ? in.Value<double>() : 4 + in.Below(60);
  layout.align = static_cast<int8_t>(in.Byte()) % 4;
  layout.line_spacing = (choice & 0x20) != 0 ? in.Value<double>() : 0.5 + in.Below(4);
  layout.letter_spacing = static_cast<int8_t>(in.Byte()) / 4.0;
  layout.wrap_width = (choice & 0x10) != 0 ? in.Value<double>() : in.Below(4) * 60.0;
  layout.direction = static_cast<int8_t>(in.Byte()) % 4;
  const uint8_t strings = in.Byte();
  layout.features = kFeatures[strings % 7];
  layout.language = kLanguages[(strings / 7) % 5];
  layout.script = kScripts[(strings / 35) % 6];
  // Fallback asks fontconfig, which is slow: only now and then.
  layout.fallback = (choice & 0x08) != 0 && (strings & 1) != 0;
  const size_t messageSize = in.Below(80);

  const std::vector<uint8_t> text = in.Rest();
  LettrixTextResult result;
  std::memset(&result, 0x5A, sizeof result);
  char message[80];
  std::memset(message, 0x5A, sizeof message);
  const int laid = LettrixTextLayOut(reinterpret_cast<const char*>(text.data()), text.size(), &layout,
                                     &result, messageSize == 0 ? nullptr : message, messageSize);
  if (laid == 1) {
    ExpectConsistent(result, text.size());
  } else {
    if (laid != 0 || !IsEmpty(result)) std::abort();
    if (messageSize > 0 && std::memchr(message, '\0', messageSize) == nullptr) std::abort();
    for (size_t i = messageSize; i < sizeof message; ++i) {
      if (message[i] != 0x5A) std::abort();
    }
  }
  LettrixTextRelease(&result);
  if (!IsEmpty(result)) std::abort();
  return 0;
}
