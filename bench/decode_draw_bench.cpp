// Decoding an outline block and drawing its layers, for a line of 20 glyph-sized contours: rounded
// rectangles of quadratic corners and straight sides, about 40 pixels tall.
#include <benchmark/benchmark.h>

#include <vector>

#include "effects/layer_drawing.h"
#include "render/outline_decoder.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"

namespace {

using lx::test::Pt;

constexpr int kGlyphs = 20;
constexpr int32_t kWidth = 20 + kGlyphs * 32, kHeight = 64;

std::vector<uint8_t> LineOfGlyphs() {
  lx::test::ContourRecords r;
  for (int i = 0; i < kGlyphs; ++i) {
    const double x = 10 + i * 32, y = 12, w = 26, h = 40, c = 8 + (i % 3);
    r.begin(Pt(x + c, y))
        .line({Pt(x + w - c, y)})
        .spline({Pt(x + w, y), Pt(x + w, y + c)})
        .line({Pt(x + w, y + h - c)})
        .spline({Pt(x + w, y + h), Pt(x + w - c, y + h)})
        .line({Pt(x + c, y + h)})
        .spline({Pt(x, y + h), Pt(x, y + h - c)})
        .line({Pt(x, y + c)})
        .spline({Pt(x, y), Pt(x + c, y)})
        .end();
  }
  return r.bytes();
}

class DrawBench {
 public:
  DrawBench() : block_(LineOfGlyphs()), pixels_(static_cast<size_t>(kWidth) * kHeight) {
    process_.strokeWidth = 4.0;
    process_.face.startColour = 0xFF2080F0u;
    process_.face.endColour = 0xFF102040u;
    process_.outline.startColour = process_.outline.endColour = 0xFF000000u;
  }
  void decode() {
    process_.path.clear();
    lx::DecodeOutlineBlock(block_.data(), block_.size(), false, &process_.path);
  }
  void draw(int32_t mode) {
    const lx::PixelView target{reinterpret_cast<uint8_t*>(pixels_.data()), kWidth, kHeight, kWidth * 4};
    lx::DrawLayer(target, process_.path, process_.glyphMatrix, process_.face, process_.outline,
                  process_.strokeWidth, mode, lx::LayerAreas{});
  }
  lx::RenderProcess& process() { return process_; }
  const uint32_t* pixels() const { return pixels_.data(); }

 private:
  std::vector<uint8_t> block_;
  std::vector<uint32_t> pixels_;
  lx::RenderProcess process_;
};

void BM_Decode(benchmark::State& state) {
  DrawBench b;
  for (auto _ : state) {
    b.decode();
    benchmark::DoNotOptimize(b.process().path.data());
  }
  state.SetItemsProcessed(state.iterations() * kGlyphs);
}
BENCHMARK(BM_Decode);

// Decoding, then drawing in the given mode with the given Face gradient kind.
void BM_DecodeDraw(benchmark::State& state) {
  DrawBench b;
  b.process().face.gradientType = static_cast<int32_t>(state.range(1));
  for (auto _ : state) {
    b.decode();
    b.draw(static_cast<int32_t>(state.range(0)));
    benchmark::DoNotOptimize(b.pixels());
  }
  state.SetItemsProcessed(state.iterations() * kGlyphs);
}
BENCHMARK(BM_DecodeDraw)
    ->ArgNames({"mode", "gradient"})
    ->Args({lx::kDrawFace, 0})
    ->Args({lx::kDrawFace, 1})
    ->Args({lx::kDrawFace, 2})
    ->Args({lx::kDrawOutline, 0})
    ->Args({lx::kDrawFaceThenOutline, 1});

void BM_DecodeDrawTexture(benchmark::State& state) {
  DrawBench b;
  std::vector<uint32_t> texels(64 * 64);
  for (size_t i = 0; i < texels.size(); ++i) texels[i] = 0xFF000000u | static_cast<uint32_t>(i * 2654435761u);
  lx::TextureImage texture;
  texture.pixels = texels.data();
  texture.width = texture.height = 64;
  b.process().face.fillType = 1;
  b.process().face.textureTiling = static_cast<int32_t>(state.range(0));
  b.process().face.texture.reset(&texture);
  for (auto _ : state) {
    b.decode();
    b.draw(lx::kDrawFace);
    benchmark::DoNotOptimize(b.pixels());
  }
  b.process().face.texture.release();
  state.SetItemsProcessed(state.iterations() * kGlyphs);
}
BENCHMARK(BM_DecodeDrawTexture)->ArgName("tiling")->Arg(0)->Arg(1)->Arg(2);

}  // namespace
