// Lettrix against Cairo on the same glyph outlines (DejaVu Sans Bold "Hello World!" at 16, 32, 64 and
// 128 pixels), in one process, each drawing onto a buffer it does not clear:
//   face:    the Face alone                    against cairo_fill;
//   outline: the Face over a 3-pixel Outline   against cairo_stroke (6 wide) and cairo_fill;
//   shadow:  the same over a Shadow blurred 8, offset (5, 5), against Cairo drawing the shape into a
//            scratch surface, a three-pass box blur of it, and the shape on top.
// Each iteration times both libraries on the thread's CPU clock; the benchmark reports the medians of the
// two and their ratio (Lettrix / Cairo, lower is better) as counters.
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <vector>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace {

using lx::test::Image;
using lx::test::Process;
using lx::test::TextScene;

constexpr int32_t kOutlineThickness = 3;  // the stroke is twice as wide, centred on the contour
constexpr int32_t kShadowOffset = 5;
constexpr int32_t kShadowBlur = 8;
constexpr int32_t kBoxPasses = 3;

enum Case { kFaceOnly, kFaceOutline, kFaceOutlineShadow };

double ThreadSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0.0 : v[v.size() / 2];
}

int32_t ReadInt32(const uint8_t* p) {
  uint32_t v;
  std::memcpy(&v, p, 4);
  return static_cast<int32_t>(v);
}
uint16_t ReadUint16(const uint8_t* p) {
  uint16_t v;
  std::memcpy(&v, p, 2);
  return v;
}
double Fixed(const uint8_t* p) {
  return ReadInt32(p) / 65536.0;
}

// The outline block turned into a Cairo path once: lines as they are, each quadratic B-spline as the
// cubic Béziers of its segments (an implied on-curve point between two control points).
void AppendBlock(cairo_t* cr, const std::vector<uint8_t>& block) {
  const uint8_t* p = block.data();
  const uint8_t* end = p + block.size();
  while (end - p >= 16) {
    const uint32_t contourBytes = static_cast<uint32_t>(ReadInt32(p));
    const uint8_t* contourEnd = p + contourBytes;
    double cx = Fixed(p + 8), cy = Fixed(p + 12);
    cairo_move_to(cr, cx, cy);
    const uint8_t* q = p + 16;
    while (contourEnd - q >= 4) {
      const uint16_t type = ReadUint16(q);
      const uint16_t count = ReadUint16(q + 2);
      const uint8_t* pts = q + 4;
      if (type == 1) {
        for (uint16_t i = 0; i < count; ++i) {
          cx = Fixed(pts + 8 * i);
          cy = Fixed(pts + 8 * i + 4);
          cairo_line_to(cr, cx, cy);
        }
      } else {
        for (uint16_t i = 0; i + 1 < count; ++i) {
          const double bx = Fixed(pts + 8 * i), by = Fixed(pts + 8 * i + 4);
          double ex = Fixed(pts + 8 * (i + 1)), ey = Fixed(pts + 8 * (i + 1) + 4);
          if (i + 2 < count) {
            ex = (bx + ex) * 0.5;
            ey = (by + ey) * 0.5;
          }
          cairo_curve_to(cr, cx + (bx - cx) * 2.0 / 3.0, cy + (by - cy) * 2.0 / 3.0, ex + (bx - ex) * 2.0 / 3.0,
                         ey + (by - ey) * 2.0 / 3.0, ex, ey);
          cx = ex;
          cy = ey;
        }
      }
      q = pts + 8 * count;
    }
    cairo_close_path(cr);
    p = contourEnd;
  }
}

// One pass of a box blur of radius r along rows (step 4, next = the stride) or columns (step = the
// stride, next 4), all four bytes of the ARGB32 pixels at once: the line is copied with its edge pixels
// repeated r times on each side, then walked with four running sums and a fixed-point division.
void BoxPass(uint8_t* data, int32_t count, int32_t lines, int32_t step, int32_t next, int32_t r,
             std::vector<uint8_t>* line) {
  const uint32_t scale = (65536u + static_cast<uint32_t>(r)) / static_cast<uint32_t>(2 * r + 1);
  line->resize(static_cast<size_t>(count + 2 * r) * 4);
  uint8_t* padded = line->data();
  for (int32_t l = 0; l < lines; ++l) {
    uint8_t* base = data + static_cast<ptrdiff_t>(l) * next;
    for (int32_t i = -r; i < count + r; ++i) {
      std::memcpy(padded + static_cast<ptrdiff_t>(i + r) * 4, base + std::clamp(i, 0, count - 1) * step, 4);
    }
    uint32_t sum[4] = {0, 0, 0, 0};
    for (int32_t i = 0; i < 2 * r; ++i) {
      for (int c = 0; c < 4; ++c) sum[c] += padded[i * 4 + c];
    }
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t* in = padded + static_cast<ptrdiff_t>(i + 2 * r) * 4;
      const uint8_t* out = padded + static_cast<ptrdiff_t>(i) * 4;
      uint8_t* dst = base + i * step;
      for (int c = 0; c < 4; ++c) {
        sum[c] += in[c];
        dst[c] = static_cast<uint8_t>((sum[c] * scale) >> 16);
        sum[c] -= out[c];
      }
    }
  }
}

class CairoDrawing {
 public:
  CairoDrawing(const std::vector<uint8_t>& block, int32_t width, int32_t height)
      : width_(width), height_(height) {
    target_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    shadow_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cr_ = cairo_create(target_);
    AppendBlock(cr_, block);
    path_ = cairo_copy_path(cr_);
    cairo_new_path(cr_);
  }
  ~CairoDrawing() {
    cairo_path_destroy(path_);
    cairo_destroy(cr_);
    cairo_surface_destroy(shadow_);
    cairo_surface_destroy(target_);
  }

  void draw(Case c) {
    if (c == kFaceOutlineShadow) drawShadow();
    cairo_new_path(cr_);
    cairo_append_path(cr_, path_);
    if (c != kFaceOnly) {
      cairo_set_source_rgba(cr_, 0.1, 0.1, 0.4, 1.0);
      cairo_set_line_width(cr_, 2.0 * kOutlineThickness);
      cairo_set_line_join(cr_, CAIRO_LINE_JOIN_MITER);
      cairo_stroke_preserve(cr_);
    }
    cairo_set_source_rgba(cr_, 0.9, 0.7, 0.1, 1.0);
    cairo_fill(cr_);
  }

 private:
  void drawShadow() {
    cairo_t* s = cairo_create(shadow_);
    cairo_set_operator(s, CAIRO_OPERATOR_CLEAR);
    cairo_paint(s);
    cairo_set_operator(s, CAIRO_OPERATOR_OVER);
    cairo_translate(s, kShadowOffset, kShadowOffset);
    cairo_append_path(s, path_);
    cairo_set_source_rgba(s, 0.0, 0.0, 0.0, 0.6);
    cairo_set_line_width(s, 2.0 * kOutlineThickness);
    cairo_stroke_preserve(s);
    cairo_fill(s);
    cairo_destroy(s);
    cairo_surface_flush(shadow_);
    uint8_t* data = cairo_image_surface_get_data(shadow_);
    const int32_t stride = cairo_image_surface_get_stride(shadow_);
    for (int32_t pass = 0; pass < kBoxPasses; ++pass) {
      BoxPass(data, width_, height_, 4, stride, kShadowBlur / 2, &line_);
      BoxPass(data, height_, width_, stride, 4, kShadowBlur / 2, &line_);
    }
    cairo_surface_mark_dirty(shadow_);
    cairo_set_source_surface(cr_, shadow_, 0, 0);
    cairo_paint(cr_);
  }

  int32_t width_, height_;
  cairo_surface_t* target_;
  cairo_surface_t* shadow_;
  cairo_t* cr_;
  cairo_path_t* path_;
  std::vector<uint8_t> line_;
};

void Configure(Process& p, Case c) {
  p.face(255, 230, 180, 30);
  if (c == kFaceOnly) {
    p.thickness(0);
    return;
  }
  p.outline(255, 25, 25, 100).thickness(kOutlineThickness);
  if (c == kFaceOutlineShadow) p.shadow(150, 0, 0, 0).shadowOffset(kShadowOffset, kShadowOffset).blur(0, 0, kShadowBlur);
}

void BM_Peers(benchmark::State& state, Case c) {
  const int32_t size = static_cast<int32_t>(state.range(0));
  const int32_t margin = size / 2 + 24;
  const TextScene scene("Hello World!", size, margin, margin + size);
  const int32_t width = scene.ink().right + margin, height = scene.ink().bottom + margin;
  Image image(width, height);
  Process p;
  Configure(p, c);
  CairoDrawing cairo(scene.bytes(), width, height);

  std::vector<double> ours, theirs;
  for (auto _ : state) {
    const double t0 = ThreadSeconds();
    if (!p.render(scene, image)) state.SkipWithError("Render refused the line");
    const double t1 = ThreadSeconds();
    cairo.draw(c);
    const double t2 = ThreadSeconds();
    benchmark::DoNotOptimize(image.data());
    ours.push_back(t1 - t0);
    theirs.push_back(t2 - t1);
    state.SetIterationTime(t1 - t0);
  }
  const double l = Median(ours), k = Median(theirs);
  state.counters["lettrix_us"] = l * 1e6;
  state.counters["cairo_us"] = k * 1e6;
  state.counters["ratio"] = k > 0 ? l / k : 0.0;
}

void Sizes(benchmark::internal::Benchmark* b) {
  for (int s : {16, 32, 64, 128}) b->Arg(s);
  b->UseManualTime()->Unit(benchmark::kMicrosecond)->MinTime(0.3);
}

BENCHMARK_CAPTURE(BM_Peers, face, kFaceOnly)->Apply(Sizes);
BENCHMARK_CAPTURE(BM_Peers, outline, kFaceOutline)->Apply(Sizes);
BENCHMARK_CAPTURE(BM_Peers, shadow, kFaceOutlineShadow)->Apply(Sizes);

}  // namespace
