#include "effects/bevel_filter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "effects/alpha_plane.h"
#include "effects/blur_filter.h"
#include "effects/light_angles.h"
#include "effects/scratch_growth.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kByteScale = 0.00392156862745098;  // 1 / 255 as the settings scale bytes

void BuildProfile(int32_t selector, uint8_t* profile) {
  for (int i = 0; i < 256; ++i) {
    const double t = i / 255.0;
    double v = i;
    if (selector == 1) {
      v = 255.0 * std::sqrt(1.0 - (1.0 - t) * (1.0 - t));
    } else if (selector == 2) {
      v = 255.0 * (1.0 - std::cos(kPi * t)) / 2.0;
    }
    profile[i] = static_cast<uint8_t>(std::min(255.0, std::floor(v + 0.5)));
  }
}

// x modulo n, in 0 .. n - 1 for any sign of x.
inline int32_t Wrap(int64_t x, int32_t n) {
  const int64_t m = x % n;
  return static_cast<int32_t>(m < 0 ? m + n : m);
}

inline int32_t Clamp(int64_t x, int32_t n) {
  return static_cast<int32_t>(std::clamp<int64_t>(x, 0, n - 1));
}

// Column c's three heights summed (for the slope across) and bottom minus top (for the slope down), at
// index c + 1, with the neighbour each edge takes (the edge itself, or the other edge when the rows
// wrap) at 0 and width + 1.
void SumColumns(const int32_t* top, const int32_t* middle, const int32_t* bottom, int32_t width, bool wrap,
                int32_t* sums, int32_t* falls) {
  int32_t c = 0;
#if defined(__SSE2__)
  for (; c + 4 <= width; c += 4) {
    const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(top + c));
    const __m128i m = _mm_loadu_si128(reinterpret_cast<const __m128i*>(middle + c));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bottom + c));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + c + 1), _mm_add_epi32(_mm_add_epi32(t, m), b));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(falls + c + 1), _mm_sub_epi32(b, t));
  }
#endif
  for (; c < width; ++c) {
    sums[c + 1] = top[c] + middle[c] + bottom[c];
    falls[c + 1] = bottom[c] - top[c];
  }
  sums[0] = wrap ? sums[width] : sums[1];
  falls[0] = wrap ? falls[width] : falls[1];
  sums[width + 1] = wrap ? sums[1] : sums[width];
  falls[width + 1] = wrap ? falls[1] : falls[width];
}

// Byte 0 weighs 0.3 and byte 2 0.11 here, the other way round from the emboss tint.
inline int32_t Luminance(uint32_t b0, uint32_t b1, uint32_t b2) {
  return static_cast<int32_t>(0.11 * b2 + 0.59 * b1 + 0.3 * b0 + 0.5);
}

// The luminance of a pixel whose three colour bytes are all g.
int32_t GreyLuminanceOf(uint32_t g) {
  static const struct Table {
    int32_t of[256];
    Table() {
      for (uint32_t v = 0; v < 256; ++v) of[v] = Luminance(v, v, v);
    }
  } table;
  return table.of[g];
}

}  // namespace

BevelFilter::BevelFilter() {
  configure(BevelSettings{});
}

void BevelFilter::configure(const BevelSettings& settings) {
  settings_ = settings;
  BevelSettings& s = settings_;
  if (std::isnan(s.azimuth)) s.azimuth = 0.0;
  s.azimuth = std::clamp(s.azimuth, -kPi, kPi);
  if (!(s.elevation >= 3.0)) s.elevation = 3.0;  // below 3 or not a number
  s.elevation = std::min(s.elevation, 60.0);
  if (!(s.depth >= 1.0)) s.depth = 1.0;
  s.depth = std::min(s.depth, 60.0);
  s.heightOffset = std::clamp(s.heightOffset, 0, 255);
  s.highlightStrength = std::clamp(s.highlightStrength, 0, 255);
  BuildProfile(s.profile, profile_);

  // All three light components carry the sine of the elevation: the light is brighter overall than a
  // plain direction vector, which is what the border's look is tuned to.
  const double sine = std::sin(ElevationRadians(s.elevation));
  lx_ = static_cast<int32_t>(std::cos(s.azimuth) * sine * 255.0);
  ly_ = static_cast<int32_t>(std::sin(s.azimuth) * sine * 255.0);
  lz_ = static_cast<int32_t>(sine * 255.0);
  nz_ = static_cast<int32_t>(1530.0 / s.depth);
  nz2_ = nz_ * nz_;
  nzlz_ = nz_ * lz_;
  sine_ = (sine == 0.0 || std::isnan(sine)) ? 1.0 : sine;
  fullLight_ = sine_ * 255.0;
  highlight_ = s.highlightStrength * kByteScale;
  unlitShade_ = static_cast<int32_t>(s.highlightStrength * sine_);
}

bool BevelFilter::reserveRows(int32_t width) {
  // Rows only grow, so the narrowing regions of the border's passes reuse them.
  if (heightRows_[0].size() >= static_cast<size_t>(width)) return true;
  try {
    for (auto& row : heightRows_) row.assign(static_cast<size_t>(width), 0);
    for (auto& row : columnRows_) row.assign(static_cast<size_t>(width) + 2, 0);
    lightRow_.assign(static_cast<size_t>(width), 0);
    slopeRow_.assign(2 * static_cast<size_t>(width), 0);
  } catch (const std::bad_alloc&) {
    for (auto& row : heightRows_) std::vector<int32_t>().swap(row);
    for (auto& row : columnRows_) std::vector<int32_t>().swap(row);
    std::vector<int32_t>().swap(lightRow_);
    std::vector<int16_t>().swap(slopeRow_);
    return false;
  }
  return true;
}

void BevelFilter::readHeights(const PixelView& image, int32_t row, int32_t* heights) const {
  const uint32_t* p = image.row(row);
  const int32_t offset = settings_.heightOffset;
  // Layers are mostly long runs of one value (clear, or the whitened stroke): a pixel equal to the one
  // before takes its height without the arithmetic.
  uint32_t previous = 0;
  int32_t previousHeight = profile_[offset];
  for (int32_t x = 0; x < image.width; ++x) {
    const uint32_t v = p[x];
    if (v != previous) {
      const int32_t lum = Luminance(v & 0xFF, (v >> 8) & 0xFF, (v >> 16) & 0xFF);
      previous = v;
      previousHeight = heightOf(lum, v >> 24);
    }
    heights[x] = previousHeight;
  }
}

int32_t BevelFilter::heightOf(int32_t lum, uint32_t alpha) const {
  const int32_t offset = settings_.heightOffset;
  const int32_t h = (lum - offset) * static_cast<int32_t>(alpha);
  // h / 255 + offset lies between lum and offset, so the index stays within the profile.
  const int32_t index = static_cast<int32_t>(h * kByteScale + offset);
  return profile_[std::clamp(index, 0, 255)];
}

void BevelFilter::readGreyHeights(const GreyPlanes& planes, int32_t row, int32_t* heights) const {
  const uint8_t* grey = planes.greyRow(row);
  const uint8_t* alpha = planes.alphaRow(row);
  const int32_t width = planes.width;
  // Every pixel as clear or opaque, without a branch; then the few translucent ones.
  const int32_t clear = clearHeight_;
  const auto some = [&](int32_t from, int32_t to) {
    for (int32_t x = from; x < to; ++x) {
      const int32_t shown = -static_cast<int32_t>(alpha[x] != 0);  // all bits set when the pixel has alpha
      heights[x] = clear + ((opaqueHeights_[grey[x]] - clear) & shown);
    }
  };
  const auto translucent = [&](int32_t x) { heights[x] = heightOf(GreyLuminanceOf(grey[x]), alpha[x]); };
  int32_t done = 0;
#if defined(__SSE2__)
  // Sixteen clear pixels at a time take the clear height in four stores.
  const __m128i clears = _mm_set1_epi32(clear);
  for (; done + 16 <= width; done += 16) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(alpha + done));
    const __m128i none = _mm_cmpeq_epi8(a, _mm_setzero_si128());
    if (_mm_movemask_epi8(none) == 0xFFFF) {
      for (int32_t k = 0; k < 16; k += 4)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(heights + done + k), clears);
      continue;
    }
    some(done, done + 16);
    const __m128i ends = _mm_or_si128(none, _mm_cmpeq_epi8(a, _mm_set1_epi8(-1)));
    for (unsigned m = ~static_cast<unsigned>(_mm_movemask_epi8(ends)) & 0xFFFFu; m != 0; m &= m - 1)
      translucent(done + __builtin_ctz(m));
  }
#endif
  some(done, width);
  for (int32_t x = done; x < width; ++x) {
    if (alpha[x] != 0 && alpha[x] != 255) translucent(x);
  }
}

void BevelFilter::shadeGrey(const GreyPlanes& planes, bool wide) {
  if (planes.empty() || !reserveRows(planes.width)) return;
  // Most pixels are clear or opaque: their heights come from a table, and so does the factor each
  // shade scales the grey by (a shade never passes the light's length, at most 255 * sqrt(2)).
  clearHeight_ = heightOf(GreyLuminanceOf(0), 0);
  for (uint32_t g = 0; g < 256; ++g) opaqueHeights_[g] = heightOf(GreyLuminanceOf(g), 255);
  for (int32_t shade = 0; shade < kShadeFactors; ++shade) shadeFactors_[shade] = shade / fullLight_;
  const auto factorOf = [this](int32_t shade) {
    return shade >= 0 && shade < kShadeFactors ? shadeFactors_[shade] : shade / fullLight_;
  };
  const int32_t width = planes.width;
  const int32_t height = planes.height;
  int32_t* top = heightRows_[0].data();
  int32_t* middle = heightRows_[1].data();
  int32_t* bottom = heightRows_[2].data();
  int32_t* sums = columnRows_[0].data();
  int32_t* falls = columnRows_[1].data();
  int32_t* shown = columnRows_[2].data();
  int32_t* lights = lightRow_.data();
  int16_t* slopes = slopeRow_.data();
  readGreyHeights(planes, 0, top);
  readGreyHeights(planes, 0, middle);
  readGreyHeights(planes, Clamp(1, height), bottom);
  for (int32_t y = 0; y < height; ++y) {
    SumColumns(top, middle, bottom, width, false, sums, falls);
    // Only the pixels with alpha need their shade: the grey of the others is never read again. Their
    // slopes are gathered first and lit together.
    uint8_t* grey = planes.greyRow(y);
    const uint8_t* alpha = planes.alphaRow(y);
    int32_t count = 0;
    const auto gather = [&](int32_t x) {
      shown[count] = x;
      slopes[2 * count] = static_cast<int16_t>(sums[x] - sums[x + 2]);
      slopes[2 * count + 1] = static_cast<int16_t>(falls[x] + falls[x + 1] + falls[x + 2]);
      ++count;
    };
    int32_t x = 0;
#if defined(__SSE2__)
    for (; x + 16 <= width; x += 16) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(alpha + x));
      for (unsigned m =
               ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(a, _mm_setzero_si128()))) & 0xFFFFu;
           m != 0; m &= m - 1)
        gather(x + __builtin_ctz(m));
    }
#endif
    for (; x < width; ++x) {
      if (alpha[x] != 0) gather(x);
    }
    lightSlopes(slopes, count, lights, wide);
    for (int32_t i = 0; i < count; ++i) {
      uint8_t& g = grey[shown[i]];
      g = static_cast<uint8_t>(std::min(static_cast<uint32_t>(g * factorOf(lights[i])), 255u));
    }
    if (y + 1 < height) {
      std::swap(top, middle);
      std::swap(middle, bottom);
      readGreyHeights(planes, Clamp(y + 2, height), bottom);
    }
  }
}

void BevelFilter::shade(const PixelView& image) {
  if (image.empty() || !reserveRows(image.width)) return;
  const int32_t width = image.width;
  const int32_t height = image.height;
  const bool wrap = settings_.wrap == 1;
  const int64_t offsetX = settings_.offsetX;
  const int64_t offsetY = settings_.offsetY;
  const auto rowAt = [&](int64_t r) { return wrap ? Wrap(r, height) : Clamp(r, height); };

  int32_t* top = heightRows_[0].data();
  int32_t* middle = heightRows_[1].data();
  int32_t* bottom = heightRows_[2].data();
  // Column sums and falls (see SumColumns), and each pixel's shade.
  int32_t* sums = columnRows_[0].data();
  int32_t* falls = columnRows_[1].data();
  int32_t* shades = columnRows_[2].data();
  readHeights(image, rowAt(offsetY - 1), top);
  readHeights(image, rowAt(offsetY), middle);
  readHeights(image, rowAt(offsetY + 1), bottom);

  // Which pixels take their light from a column (the rest are lit as flat ground), and from which.
  const int32_t firstLit = wrap ? 0 : static_cast<int32_t>(std::clamp<int64_t>(-offsetX, 0, width));
  const int32_t endLit = wrap ? width : static_cast<int32_t>(std::clamp<int64_t>(width - offsetX, 0, width));
  const int32_t firstColumn = wrap ? Wrap(offsetX, width) : static_cast<int32_t>(firstLit + offsetX);

  for (int32_t y = 0; y < height; ++y) {
    const bool rowFlat = !wrap && (y + offsetY < 0 || y + offsetY >= height);
    std::fill(shades, shades + width, lz_);
    if (!rowFlat) {
      SumColumns(top, middle, bottom, width, wrap, sums, falls);
      int32_t c = firstColumn;
      int32_t lastNx = 0, lastNy = 0, lastShade = lz_;
      for (int32_t x = firstLit; x < endLit; ++x, ++c) {
        if (c == width) c = 0;
        const int32_t nx = sums[c] - sums[c + 2];
        const int32_t ny = falls[c] + falls[c + 1] + falls[c + 2];
        if (nx != lastNx || ny != lastNy) {
          lastNx = nx;
          lastNy = ny;
          lastShade = lightAt(nx, ny);
        }
        shades[x] = lastShade;
      }
    }

    // Each pixel's new value depends only on its own old value and its shade, so the row is shaded where
    // it lies. Neighbouring pixels often share value and shade: the last result is reused.
    uint32_t* row = image.row(y);
    uint32_t lastSource = 0;
    int32_t lastShade = -1;
    uint32_t lastOut = 0;
    for (int32_t x = 0; x < width; ++x) {
      const uint32_t source = row[x];
      const int32_t shade = shades[x];
      if (source != lastSource || shade != lastShade) {
        const double f = shade / fullLight_;
        uint32_t out = source & 0xFF000000u;
        for (int k = 0; k < 3; ++k) {
          const uint32_t v = static_cast<uint32_t>(((source >> (8 * k)) & 0xFF) * f);
          out |= std::min(v, 255u) << (8 * k);
        }
        lastSource = source;
        lastShade = shade;
        lastOut = out;
      }
      row[x] = lastOut;
    }

    // Heights two rows ahead come from rows not yet shaded (unless the rows wrap round).
    if (y + 1 < height) {
      std::swap(top, middle);
      std::swap(middle, bottom);
      readHeights(image, rowAt(y + offsetY + 2), bottom);
    }
  }
}

void BevelFilter::lightSlopes(const int16_t* slopes, int32_t count, int32_t* lights,
                              [[maybe_unused]] bool wide) const {
  int32_t i = 0;
#if defined(__SSE2__)
  if (wide && highlight_ == 0.0) {
    // lightAt four slopes at a time: the dot product and the squared length as sums of 16-bit products,
    // then the same square roots and quotients, two to a register. A flat slope needs no case of its
    // own here: nz * lz / sqrt(nz * nz) is lz exactly.
    const __m128i light =
        _mm_set1_epi32(static_cast<int32_t>(static_cast<uint32_t>(ly_) << 16 | (lx_ & 0xFFFF)));
    const __m128i nzlz = _mm_set1_epi32(nzlz_), nz2 = _mm_set1_epi32(nz2_), zero = _mm_setzero_si128();
    const __m128i unlit = _mm_set1_epi32(unlitShade_);
    for (; i + 4 <= count; i += 4) {
      const __m128i n = _mm_loadu_si128(reinterpret_cast<const __m128i*>(slopes + 2 * i));
      const __m128i dot = _mm_add_epi32(_mm_madd_epi16(n, light), nzlz);
      const __m128i length = _mm_add_epi32(_mm_madd_epi16(n, n), nz2);
      const auto two = [&](__m128i d, __m128i l) {
        return _mm_cvttpd_epi32(_mm_div_pd(_mm_cvtepi32_pd(d), _mm_sqrt_pd(_mm_cvtepi32_pd(l))));
      };
      const __m128i low = two(dot, length);
      const __m128i high = two(_mm_srli_si128(dot, 8), _mm_srli_si128(length, 8));
      const __m128i shade = _mm_unpacklo_epi64(low, high);
      const __m128i dark = _mm_cmpgt_epi32(zero, dot);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(lights + i),
                       _mm_or_si128(_mm_and_si128(dark, unlit), _mm_andnot_si128(dark, shade)));
    }
  }
#endif
  for (; i < count; ++i) lights[i] = lightAt(slopes[2 * i], slopes[2 * i + 1]);
}

int32_t BevelFilter::lightAt(int32_t nx, int32_t ny) const {
  if (nx == 0 && ny == 0) return lz_;
  const int32_t nDotL = ly_ * ny + lx_ * nx + nzlz_;
  if (nDotL < 0) return unlitShade_;
  int32_t shade = static_cast<int32_t>(nDotL / std::sqrt(static_cast<double>(ny * ny + nx * nx + nz2_)));
  if (highlight_ != 0.0) {
    const int32_t extra = static_cast<int32_t>((fullLight_ - shade) * highlight_);
    if (extra >= 1) shade += extra;
  }
  return shade;
}

void BevelFilter::trimScratch(size_t maxBytes) {
  if (original_.capacity() * sizeof(uint32_t) > maxBytes) std::vector<uint32_t>().swap(original_);
  if (planes_.capacity() > maxBytes) std::vector<uint8_t>().swap(planes_);
  if (planeScratch_.capacity() > maxBytes) std::vector<uint8_t>().swap(planeScratch_);
}

void BevelFilter::applyBorder(const PixelView& image, double elevationDegrees, int passes,
                              double azimuthRadians, unsigned blurRadius, BlurFilter* blur,
                              const IntRect& keep, BorderWork work, KernelPath path) {
  if (passes < 1 || image.empty()) return;
  BevelSettings border;
  border.azimuth = azimuthRadians;
  border.elevation = elevationDegrees;
  border.depth = 2.5;
  border.profile = static_cast<int32_t>(BevelProfile::kRound);
  configure(border);
  if (static_cast<size_t>(image.width) > SIZE_MAX / 4 / static_cast<size_t>(image.height)) return;
  const bool planes = work == BorderWork::kGreyPlanes && (blur == nullptr || blurRadius == kGreyBlurRadius);
  if (planes && applyGreyBorder(image, passes, blur != nullptr, keep, path)) return;
  applyPixelBorder(image, passes, blurRadius, blur, keep);
}

namespace {

// The part of an image of width x height pixels within `grow` of `keep` (the whole image when keep is
// empty). A pixel of the kept part depends on pixels as far away as the border's steps still to come
// reach, and no further: each step works only on the kept part grown by that much, so a deep border
// costs what the kept part needs, not passes times the whole image.
IntRect Reaching(int32_t width, int32_t height, const IntRect& keep, int64_t grow) {
  if (keep.empty()) return {0, 0, width, height};
  const int64_t left = std::max<int64_t>(0, keep.left - grow);
  const int64_t top = std::max<int64_t>(0, keep.top - grow);
  const int64_t right = std::min<int64_t>(width, keep.right + grow);
  const int64_t bottom = std::min<int64_t>(height, keep.bottom + grow);
  if (right <= left || bottom <= top) return IntRect{};
  return {static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right),
          static_cast<int32_t>(bottom)};
}

PixelView Part(const PixelView& image, const IntRect& r) {
  if (r.empty()) return PixelView{};
  return {image.pixels + static_cast<ptrdiff_t>(r.top) * image.stride + static_cast<ptrdiff_t>(r.left) * 4,
          r.right - r.left, r.bottom - r.top, image.stride};
}

GreyPlanes Part(const GreyPlanes& planes, const IntRect& r) {
  if (r.empty()) return GreyPlanes{};
  return planes.part(r.left, r.top, r.right, r.bottom);
}

// The blur's reach, and a pass's: the shading reads one neighbour.
int64_t BorderBlurReach(bool blurred, unsigned radius) {
  return blurred ? 3 * int64_t{std::min(radius, BlurFilter::kMaxRadius)} : 0;
}

// Mid grey (127) leaves the outline's colour as it was; lighter lifts it, darker lowers it.
inline uint32_t Lifted(uint32_t original, int32_t grey) {
  const int32_t lift = grey - 127;
  uint32_t out = original & 0xFF000000u;
  for (int k = 0; k < 3; ++k) {
    const int32_t v = static_cast<int32_t>((original >> (8 * k)) & 0xFF) + lift;
    out |= static_cast<uint32_t>(std::clamp(v, 0, 255)) << (8 * k);
  }
  return out;
}

// Lifted on each pixel of a row with alpha, from the grey beside it.
void LiftRow(uint32_t* row, const uint8_t* grey, const uint8_t* alpha, int32_t n,
             [[maybe_unused]] bool wide) {
  int32_t x = 0;
#if defined(__SSE2__)
  if (wide) {
    // The lift, spread over the three colour bytes of each pixel, as a saturating rise and fall, one of
    // which is 0; pixels without alpha keep their value.
    const __m128i zero = _mm_setzero_si128();
    const __m128i mid = _mm_set1_epi32(0x007F7F7F);
    for (; x + 4 <= n; x += 4) {
      uint32_t g4, a4;
      std::memcpy(&g4, grey + x, 4);
      std::memcpy(&a4, alpha + x, 4);
      if (a4 == 0) continue;
      const __m128i g16 =
          _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(g4)), _mm_cvtsi32_si128(static_cast<int>(g4)));
      const __m128i g = _mm_and_si128(_mm_unpacklo_epi16(g16, g16), _mm_set1_epi32(0x00FFFFFF));
      const __m128i a16 = _mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(a4)), zero);
      const __m128i clear = _mm_cmpeq_epi32(_mm_unpacklo_epi16(a16, zero), zero);
      const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x));
      const __m128i lifted = _mm_subs_epu8(_mm_adds_epu8(p, _mm_subs_epu8(g, mid)), _mm_subs_epu8(mid, g));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(row + x),
                       _mm_or_si128(_mm_and_si128(clear, p), _mm_andnot_si128(clear, lifted)));
    }
  }
#endif
  for (; x < n; ++x) {
    if (alpha[x] != 0) row[x] = Lifted(row[x], grey[x]);
  }
}

}  // namespace

bool BevelFilter::applyGreyBorder(const PixelView& image, int passes, bool blurred, const IntRect& keep,
                                  KernelPath path) {
  const size_t width = static_cast<size_t>(image.width);
  const size_t height = static_cast<size_t>(image.height);
  if (!GrowScratch(planes_, 2 * width * height)) return false;
  uint8_t* grey = planes_.data();
  uint8_t* alpha = grey + width * height;
  const GreyPlanes planes{grey, alpha, image.width, image.height, image.width};
  // The bevel is shaded on a white copy of the stroke, softened so that its edges slope.
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  TakeAlpha(image, {alpha, image.width, image.height, image.width}, path);
  size_t i = 0;
#if defined(__SSE2__)
  if (wide) {
    const __m128i zero = _mm_setzero_si128();
    for (; i + 16 <= width * height; i += 16) {
      const __m128i clear =
          _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(alpha + i)), zero);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(grey + i), _mm_andnot_si128(clear, _mm_set1_epi8(-1)));
    }
  }
#endif
  for (; i < width * height; ++i) grey[i] = alpha[i] != 0 ? 255 : 0;
  const int64_t blurReach = BorderBlurReach(blurred, kGreyBlurRadius);
  const int64_t passReach = blurReach + 1;
  const auto blur = [&](int64_t grow) {
    return !blurred ||
           BlurGreyPlanes(Part(planes, Reaching(image.width, image.height, keep, grow)), planeScratch_, path);
  };
  if (!blur(blurReach + passReach * passes)) return false;
  for (int i = 0; i < passes; ++i) {
    const int64_t later = passReach * (passes - 1 - i);
    shadeGrey(Part(planes, Reaching(image.width, image.height, keep, later + passReach)), wide);
    if (!blur(later + blurReach)) return false;
  }
  for (int32_t y = 0; y < image.height; ++y)
    LiftRow(image.row(y), planes.greyRow(y), planes.alphaRow(y), image.width, wide);
  return true;
}

void BevelFilter::applyPixelBorder(const PixelView& image, int passes, unsigned blurRadius, BlurFilter* blur,
                                   const IntRect& keep) {
  const size_t width = static_cast<size_t>(image.width);
  const size_t height = static_cast<size_t>(image.height);
  if (!GrowScratch(original_, width * height)) return;
  // The stroke as it was is kept on the way.
  for (size_t y = 0; y < height; ++y) {
    uint32_t* row = image.row(static_cast<int32_t>(y));
    uint32_t* kept = &original_[y * width];
    for (size_t x = 0; x < width; ++x) {
      const uint32_t v = row[x];
      kept[x] = v;
      if (v >> 24) row[x] = v | 0x00FFFFFFu;
    }
  }
  const int64_t blurReach = BorderBlurReach(blur != nullptr, blurRadius);
  const int64_t passReach = blurReach + 1;
  const auto reaching = [&](int64_t grow) {
    return Part(image, Reaching(image.width, image.height, keep, grow));
  };
  const bool colourOnly[4] = {true, true, true, false};
  if (blur != nullptr) {
    blur->blurChannels(reaching(blurReach + passReach * passes), blurRadius, blurRadius, colourOnly, 1);
  }
  for (int i = 0; i < passes; ++i) {
    const int64_t later = passReach * (passes - 1 - i);
    shade(reaching(later + passReach));
    if (blur != nullptr)
      blur->blurChannels(reaching(later + blurReach), blurRadius, blurRadius, colourOnly, 1);
  }
  for (size_t y = 0; y < height; ++y) {
    uint32_t* row = image.row(static_cast<int32_t>(y));
    uint32_t* kept = &original_[y * width];
    for (size_t x = 0; x < width; ++x) {
      const uint32_t lit = row[x];
      if ((lit >> 24) == 0) continue;
      const int32_t grey = static_cast<int32_t>(
          (77 * (lit & 0xFF) + 150 * ((lit >> 8) & 0xFF) + 29 * ((lit >> 16) & 0xFF)) >> 8);
      kept[x] = Lifted(kept[x], grey);
    }
    std::memcpy(row, kept, width * 4);
  }
}

}  // namespace lx
