// Laying text out: a wrapped paragraph of Latin in a TrueType font, the same in a CFF font (whose cubic
// curves are split), and a line that mixes Arabic, Hebrew and Devanagari from fallback fonts.
#include <benchmark/benchmark.h>

#include <string>

#include "lettrix/lettrix_text.h"

namespace {

constexpr const char* kParagraph =
    "The quick brown fox jumps over the lazy dog while the five boxing wizards jump quickly; "
    "sphinx of black quartz, judge my vow, and pack my box with five dozen liquor jugs.";

void LayOut(benchmark::State& state, const char* font, const std::string& text, double wrap) {
  LettrixTextLayout layout;
  LettrixTextDefaults(&layout);
  layout.font_file = font;
  layout.pixel_size = 32;
  layout.wrap_width = wrap;
  for (auto _ : state) {
    LettrixTextResult result;
    if (!LettrixTextLayOut(text.data(), text.size(), &layout, &result, nullptr, 0)) {
      state.SkipWithError("layout failed");
      return;
    }
    benchmark::DoNotOptimize(result.block);
    LettrixTextRelease(&result);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void BM_TextParagraphTrueType(benchmark::State& state) {
  LayOut(state, "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", kParagraph, 600);
}
BENCHMARK(BM_TextParagraphTrueType);

void BM_TextParagraphCff(benchmark::State& state) {
  LayOut(state, "/usr/share/fonts/opentype/freefont/FreeSerif.otf", kParagraph, 600);
}
BENCHMARK(BM_TextParagraphCff);

void BM_TextMixedScriptsWithFallback(benchmark::State& state) {
  LayOut(state, "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
         "Hello \xD8\xB3\xD9\x84\xD8\xA7\xD9\x85 \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D "
         "\xE0\xA4\xA8\xE0\xA4\xAE\xE0\xA4\xB8\xE0\xA5\x8D\xE0\xA4\xA4\xE0\xA5\x87",
         0);
}
BENCHMARK(BM_TextMixedScriptsWithFallback);

}  // namespace
