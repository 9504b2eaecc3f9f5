#include "effects/gradient_fill.h"

#include <cmath>
#include <vector>

#include <agg_span_gradient.h>

#include "image/pixel_ops.h"
#include "render/agg_companions.h"

namespace lx {

namespace {

// Gradient space: the ramp runs over kRampLength gradient pixels (AGG works in sixteenths of them), and
// coordinates are held within kCoordLimit (in 1/256 units), where (distance * lookup size) still fits an
// int in span_gradient.
constexpr double kRampLength = 4096.0;
constexpr double kCoordLimit = double(1 << 22);

// The colour lookup that span_gradient reads.
class GradientLookup {
 public:
  typedef LayerColour color_type;

  explicit GradientLookup(const FillSettings& layer) {
    uint32_t ramp[kGradientLookupSize];
    BuildGradientRamp(layer, ramp, kGradientLookupSize);
    for (size_t i = 0; i < kGradientLookupSize; ++i) {
      const uint32_t p = ramp[i];
      colours_[i] = LayerColour((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF, p >> 24);
    }
  }
  static unsigned size() { return kGradientLookupSize; }
  const LayerColour& operator[](unsigned i) const { return colours_[i]; }

 private:
  LayerColour colours_[kGradientLookupSize];
};

struct RampStop {
  uint32_t colour;  // packed, red low
  double at;        // 0..1
};

// a + (b - a) * f / 256 per byte, f in 0..256, two bytes at a time.
uint32_t Mix(uint32_t a, uint32_t b, uint32_t f) {
  const uint32_t g = 256 - f;
  const uint32_t even = ((a & 0x00FF00FFu) * g + (b & 0x00FF00FFu) * f + 0x00800080u) >> 8;
  const uint32_t odd = ((a >> 8) & 0x00FF00FFu) * g + ((b >> 8) & 0x00FF00FFu) * f + 0x00800080u;
  return (even & 0x00FF00FFu) | (odd & 0xFF00FF00u);
}

// The stops of the ramp, positions ascending from 0 to 1 (one stop: a solid ramp).
void CollectStops(const FillSettings& layer, std::vector<RampStop>* stops) {
  stops->clear();
  const std::vector<uint32_t>& colours = layer.gradientColours;
  if (layer.useGradientTable != 1 || colours.empty()) {
    stops->push_back({layer.startColour, 0.0});
    stops->push_back({layer.endColour, 1.0});
    return;
  }
  const size_t n = colours.size();
  auto weightOf = [&](size_t i) -> double {
    return i < layer.gradientStops.size() ? layer.gradientStops[i] : 1.0;
  };
  double total = 0;
  for (size_t i = 0; i < n; ++i) total += weightOf(i);
  const bool allOnes = (total == 0);
  if (allOnes) total = static_cast<double>(n);
  double before = 0;
  for (size_t i = 0; i < n; ++i) {
    const double w = allOnes ? 1.0 : weightOf(i);
    if (w == 0) continue;
    stops->push_back({colours[i], (before + w * 0.5) / total});
    before += w;
  }
  stops->front().at = 0.0;
  if (stops->size() > 1) stops->back().at = 1.0;
}

int32_t ClampToInt32(int64_t v) {
  return static_cast<int32_t>(v < INT32_MIN ? INT32_MIN : (v > INT32_MAX ? INT32_MAX : v));
}

bool IsEmptyRect(const IntRect& r) {
  return r.right <= r.left || r.bottom <= r.top;
}

template <class GradientF>
void RenderGradient(LayerRasterizer& ras, LayerRendererBase& renderer, const FillSettings& layer,
                    const agg::trans_affine& toGradient, double d1, double d2) {
  typedef agg::span_gradient<LayerColour, AffineSpanInterpolator, GradientF, GradientLookup> SpanGen;
  GradientLookup lookup(layer);
  AffineSpanInterpolator interpolator(toGradient, kCoordLimit);
  GradientF function;
  SpanGen spans(interpolator, function, lookup, d1, d2);
  RenderLayerSpans(ras, renderer, spans);
}

// A parameter of kind 2 in sixteenths of the radius, truncated; out-of-range and NaN values held in 0..16.
int Sixteenths(double v) {
  if (!(v > 0.0)) return 0;
  if (v >= 1.0) return 16;
  return static_cast<int>(v * 16.0);
}

}  // namespace

LayerColour ColourFromPacked(uint32_t packed) {
  const uint32_t p = SwapRedBlue(packed);  // now blue low, as a pixel
  return LayerColour((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF, p >> 24);
}

IntRect GradientArea(const FillSettings& layer, const IntRect& shapeBox, const IntRect& callerBuffer) {
  const platform::RECT& u = layer.userGradientArea;
  if (u.right > u.left && u.bottom > u.top) {
    const int64_t dx = callerBuffer.left, dy = callerBuffer.top;
    return IntRect{ClampToInt32(u.left + dx), ClampToInt32(u.top + dy), ClampToInt32(u.right + dx),
                   ClampToInt32(u.bottom + dy)};
  }
  if (layer.gradientFitMode == 1 && !IsEmptyRect(callerBuffer)) return callerBuffer;
  return shapeBox;
}

void BuildGradientRamp(const FillSettings& layer, uint32_t* ramp, size_t count) {
  if (ramp == nullptr || count == 0) return;
  std::vector<RampStop> stops;
  CollectStops(layer, &stops);
  if (stops.size() == 1) {
    for (size_t k = 0; k < count; ++k) ramp[k] = SwapRedBlue(stops[0].colour);
    return;
  }
  const double step = count > 1 ? 1.0 / static_cast<double>(count - 1) : 0.0;
  size_t seg = 0;
  double scale = 0;  // 256 / the segment's length
  bool fresh = true;
  for (size_t k = 0; k < count; ++k) {
    const double t = static_cast<double>(k) * step;
    while (seg + 2 < stops.size() && t > stops[seg + 1].at) {
      ++seg;
      fresh = true;
    }
    const RampStop& a = stops[seg];
    const RampStop& b = stops[seg + 1];
    if (fresh) {
      const double span = b.at - a.at;
      scale = span > 0 ? 256.0 / span : 0.0;
      fresh = false;
    }
    double f = scale == 0 ? 256.0 : (t - a.at) * scale;
    f = f < 0 ? 0 : (f > 256.0 ? 256.0 : f);
    ramp[k] = SwapRedBlue(Mix(a.colour, b.colour, static_cast<uint32_t>(f + 0.5)));
  }
}

void RenderColourFill(LayerRasterizer& ras, LayerRendererBase& renderer, const FillSettings& layer,
                      const IntRect& area) {
  const double left = area.left, top = area.top;
  const double width = area.right > area.left ? double(area.right) - left : 1.0;
  const double height = area.bottom > area.top ? double(area.bottom) - top : 1.0;
  const double cx = left + width * 0.5, cy = top + height * 0.5;
  switch (layer.gradientType) {
    case kGradientTopToBottom: {
      // From the centre of the area's first row to the centre of its last.
      const double k = kRampLength / (height > 1.0 ? height - 1.0 : 1.0);
      const agg::trans_affine m(0.0, 0.0, 0.0, k, 0.0, -(top + 0.5) * k);
      RenderGradient<agg::gradient_y>(ras, renderer, layer, m, 0.0, kRampLength);
      return;
    }
    case kGradientAngled: {
      const double c = std::cos(layer.gradientAngle), s = std::sin(layer.gradientAngle);
      if (!std::isfinite(c) || !std::isfinite(s)) break;
      // Half the extent of the area's pixel centres along the direction.
      const double e = std::fabs((width - 1.0) * 0.5 * c) + std::fabs((height - 1.0) * 0.5 * s);
      const double k = kRampLength / (e > 0.5 ? 2.0 * e : 1.0);
      const agg::trans_affine m(c * k, 0.0, s * k, 0.0, (e - cx * c - cy * s) * k, 0.0);
      RenderGradient<agg::gradient_x>(ras, renderer, layer, m, 0.0, kRampLength);
      return;
    }
    case kGradientRadial: {
      // The area's half width and half height become the ramp's full radius, kRampLength.
      const double kx = kRampLength / (width * 0.5), ky = kRampLength / (height * 0.5);
      const agg::trans_affine m(kx, 0.0, 0.0, ky, -cx * kx, -cy * ky);
      const double sixteenth = kRampLength / 16.0;
      RenderGradient<agg::gradient_radial_d>(ras, renderer, layer, m,
                                             Sixteenths(layer.gradientFrom) * sixteenth,
                                             Sixteenths(layer.gradientTo) * sixteenth);
      return;
    }
    default:
      break;
  }
  RenderLayerSolid(ras, renderer, ColourFromPacked(layer.startColour));
}

}  // namespace lx
