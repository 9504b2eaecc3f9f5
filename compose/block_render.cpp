// Drawing an outline block with the settings through the library's public interface: every layer
// setting on a render process, the block placed on a canvas that fits it, or centred on a fixed one.

#include <algorithm>
#include <cstdio>
#include <memory>

#include "lettrix/lettrix.h"
#include "compose/composition.h"
#include "compose/generated_textures.h"
#include "tools/text_outline/text_outline.h"

namespace lx::compose {
namespace {

constexpr double kDegreesToRadians = 3.141592653589793 / 180.0;
// More pixels than this in one canvas count as too large (1 GiB of pixels).
constexpr int64_t kMaxCanvasPixels = int64_t{1} << 28;

struct Box {
  int64_t left = 0, top = 0, right = 0, bottom = 0;
  bool empty() const { return right <= left || bottom <= top; }
  int64_t width() const { return right - left; }
  int64_t height() const { return bottom - top; }
  Box inflated(int64_t by) const { return {left - by, top - by, right + by, bottom + by}; }
  Box moved(int64_t dx, int64_t dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
  Box united(const Box& o) const {
    return {std::min(left, o.left), std::min(top, o.top), std::max(right, o.right),
            std::max(bottom, o.bottom)};
  }
};

// Owns one render process for the length of a render.
class Process {
 public:
  Process() : slot_(CreateRenderProcess()) {
    if (slot_ == 0) throw JobError("the library could not create a render process (out of memory)");
  }
  ~Process() { DestroyRenderProcess(&slot_); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  RenderHandle* slot() { return &slot_; }

 private:
  RenderHandle slot_;
};

uint32_t PackColour(const Rgba& c) {
  return static_cast<uint32_t>(c.r) | static_cast<uint32_t>(c.g) << 8 | static_cast<uint32_t>(c.b) << 16 |
         static_cast<uint32_t>(c.a) << 24;
}

using ColourSetter = void (*)(RenderHandle*, const uint8_t*, const uint8_t*, const uint8_t*, const uint8_t*);

void SetColour(ColourSetter setter, RenderHandle* slot, const Rgba& c) {
  setter(slot, &c.a, &c.r, &c.g, &c.b);
}

// The entry points of one layer, so that the Face and the Outline are set up by the same code.
struct LayerCalls {
  ColourSetter start, end;
  void (*gradient)(RenderHandle*, const int32_t*, const double*, const double*);
  bool (*table)(RenderHandle*, const uint32_t*, const uint32_t*, const uint8_t*);
  void (*fitMode)(RenderHandle*, const uint8_t*);
  bool (*area)(RenderHandle*, const int32_t*, const int32_t*, const int32_t*, const int32_t*);
  bool (*texture)(RenderHandle*, void*, const int32_t*, const int32_t*);
  void (*tiling)(RenderHandle*, const int32_t*);
  void (*fillType)(RenderHandle*, const int32_t*);
  void (*blur)(RenderHandle*, const uint8_t*);
};

constexpr LayerCalls kFaceCalls{SetColorFaceStart,     SetColorFaceEnd,        SetGradientFace,
                                SetFaceGradientColors, SetFaceGradientFitMode, SetFaceUserGradientArea,
                                SetTextureFace,        SetFaceTextureTiling,   SetFaceFillType,
                                SetFaceBlurLevel};
constexpr LayerCalls kOutlineCalls{
    SetColorOutlineStart,      SetColorOutlineEnd,         SetGradientOutline, SetOutlineGradientColors,
    SetOutlineGradientFitMode, SetOutlineUserGradientArea, SetTextureOutline,  SetOutlineTextureTiling,
    SetOutlineFillType,        SetOutlineBlurLevel};

void ApplyLayer(RenderHandle* slot, const LayerCalls& calls, const LayerSettings& layer, Image* texture) {
  int32_t fill = 0;
  switch (layer.fill) {
    case FillKind::kSolid:
      SetColour(calls.start, slot, layer.colour);
      SetColour(calls.end, slot, layer.colour);
      break;
    case FillKind::kTwoColour:
      SetColour(calls.start, slot, layer.start);
      SetColour(calls.end, slot, layer.end);
      break;
    case FillKind::kStops: {
      // Start and end colours first: setting them takes a table out of force.
      SetColour(calls.start, slot, layer.stops.front().colour);
      SetColour(calls.end, slot, layer.stops.back().colour);
      std::vector<uint32_t> colours, weights;
      for (const ColourStop& s : layer.stops) {
        colours.push_back(PackColour(s.colour));
        weights.push_back(s.weight);
      }
      const uint8_t count = static_cast<uint8_t>(colours.size());
      if (!calls.table(slot, colours.data(), weights.data(), &count)) {
        throw JobError("the library refused the colour stops");
      }
      break;
    }
    case FillKind::kTexture: {
      const int32_t w = texture->width, h = texture->height;
      if (!calls.texture(slot, texture->pixels.data(), &w, &h))
        throw JobError("the library refused the texture");
      fill = 1;
      break;
    }
  }
  calls.fillType(slot, &fill);

  int32_t type = 0;
  double p1 = 0.0, p2 = 0.0;
  if (layer.fill == FillKind::kTwoColour || layer.fill == FillKind::kStops) {
    switch (layer.shape) {
      case GradientShape::kDefault:
      case GradientShape::kVertical:
        type = 1;
        break;
      case GradientShape::kRadial:
        type = 2;
        p1 = layer.radialFrom;
        p2 = layer.radialTo;
        break;
      case GradientShape::kLinear:
        type = 3;
        p1 = layer.angleDegrees * kDegreesToRadians;
        break;
    }
  }
  calls.gradient(slot, &type, &p1, &p2);

  const uint8_t fit = layer.extentCanvas ? 1 : 0;
  calls.fitMode(slot, &fit);
  const int32_t none = 0;
  if (layer.hasArea) {
    calls.area(slot, &layer.area[0], &layer.area[1], &layer.area[2], &layer.area[3]);
  } else {
    calls.area(slot, &none, &none, &none, &none);
  }
  const int32_t tiling = static_cast<int32_t>(layer.tiling);
  calls.tiling(slot, &tiling);
  const uint8_t blur = static_cast<uint8_t>(layer.blur);
  calls.blur(slot, &blur);
}

struct Textures {
  Image face, outline;
};

Image LoadTexture(const std::string& source, const ImageReader& readImage) {
  const std::string prefix = kGeneratedPrefix;
  if (source.compare(0, prefix.size(), prefix) == 0) {
    const std::string name = source.substr(prefix.size());
    if (!IsGeneratedTexture(name)) {
      throw SettingError("no generated texture named '" + name + "' (there are " + GeneratedTextureList() +
                         ")");
    }
    return GenerateTexture(name);
  }
  if (!readImage)
    throw JobError("cannot read texture file '" + source + "': this caller reads no image files");
  Image image = FromRgba(readImage(source));
  if (image.pixels.empty()) throw JobError("texture '" + source + "' has no pixels, or fewer than its size");
  if (static_cast<int64_t>(image.width) * image.height > kMaxCanvasPixels) {
    throw JobError("texture '" + source + "' is too large");
  }
  return image;
}

void ApplySettings(RenderHandle* slot, const Settings& settings, Textures& textures) {
  ApplyLayer(slot, kFaceCalls, settings.face, &textures.face);
  ApplyLayer(slot, kOutlineCalls, settings.outline, &textures.outline);

  const int32_t thickness = settings.outlineWidth;
  SetOutlineThickness(slot, &thickness);

  const uint8_t emboss = settings.emboss ? 1 : 0;
  if (settings.emboss) {
    const double angle = settings.embossAngleDegrees * kDegreesToRadians;
    // The relief is scaled by the first byte for red, the third for green and the second for blue.
    SetFaceTextureEmbossed(slot, &angle, &settings.embossTint.r, &settings.embossTint.b,
                           &settings.embossTint.g);
  }
  EnableFaceEmbossed(slot, &emboss);

  const uint8_t bevel = settings.bevel ? 1 : 0;
  const uint8_t elevation = static_cast<uint8_t>(settings.bevelElevation);
  const uint8_t passes = static_cast<uint8_t>(settings.bevelPasses);
  const double bevelAngle = settings.bevelAngleDegrees * kDegreesToRadians;
  SetOutline3DBorder(slot, &elevation, &passes, &bevelAngle);
  EnableOutline3DBorder(slot, &bevel);

  SetColour(SetShadowColor, slot, settings.shadowColour);
  SetShadowOffset(slot, &settings.shadowX, &settings.shadowY);
  SetShadowZoom(slot, &settings.shadowZoomX, &settings.shadowZoomY);
  const uint8_t shadowBlur = static_cast<uint8_t>(settings.shadowBlur);
  SetShadowBlurLevel(slot, &shadowBlur);
  const uint8_t extrude = settings.extrude ? 1 : 0, smooth = settings.extrudeSmooth ? 1 : 0;
  SetShadowExtruded(slot, &extrude);
  SetExtrudedShadowColor(slot, &smooth);
  const uint8_t visible = settings.shadowVisible ? 1 : 0, only = settings.shadowOnly ? 1 : 0;
  SetShadowVisible(slot, &visible);
  SetDrawShadowOnly(slot, &only);
}

// How far, beyond the outline's own box, anything may be drawn, before the probe render measures it.
Box ReachEstimate(const Settings& settings, const Box& glyphs, int64_t slack) {
  const int64_t stroke = settings.outlineWidth > 0 ? 3 * int64_t{settings.outlineWidth} + 2 : 0;
  const int64_t blur = 2 * std::max({settings.face.blur, settings.outline.blur});
  Box reach = glyphs.inflated(stroke + blur + slack);

  const bool shadowDrawn = settings.shadowVisible && settings.shadowColour.a != 0;
  if (shadowDrawn) {
    Box shadow = glyphs.inflated(stroke + 2 * int64_t{settings.shadowBlur} + slack);
    const double growX = (settings.shadowZoomX - 1.0) * static_cast<double>(shadow.width()) / 2.0;
    const double growY = (settings.shadowZoomY - 1.0) * static_cast<double>(shadow.height()) / 2.0;
    if (growX > 0) {
      shadow.left -= static_cast<int64_t>(growX) + 2;
      shadow.right += static_cast<int64_t>(growX) + 2;
    }
    if (growY > 0) {
      shadow.top -= static_cast<int64_t>(growY) + 2;
      shadow.bottom += static_cast<int64_t>(growY) + 2;
    }
    Box moved = shadow.moved(settings.shadowX, settings.shadowY);
    reach = reach.united(settings.extrude ? moved.united(shadow) : moved);
  }
  return reach;
}

void CheckCanvasSize(int64_t width, int64_t height) {
  if (width > kMaxCanvasSide || height > kMaxCanvasSide || width * height > kMaxCanvasPixels) {
    throw JobError("the image would be " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels; the limit is " + std::to_string(kMaxCanvasSide) + " on a side");
  }
}

// Renders with the drawing's origin moved to (tx, ty) onto `canvas` as it is; false when the library
// refused.
bool RenderOnto(const Settings& settings, Textures& textures, void* block, int32_t tx, int32_t ty,
                Image& canvas) {
  Process process;
  ApplySettings(process.slot(), settings, textures);
  SetTranslation(process.slot(), &tx, &ty);
  return Render(process.slot(), block, &canvas.width, &canvas.height, canvas.pixels.data());
}

int64_t FloorHalf(int64_t v) {
  return v >= 0 ? v / 2 : -((-v + 1) / 2);
}

// The box of the pixels that are not fully transparent.
Box InkOf(const Image& image) {
  Box box{image.width, image.height, 0, 0};
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) {
      if ((image.at(x, y) >> 24) == 0) continue;
      box.left = std::min<int64_t>(box.left, x);
      box.right = std::max<int64_t>(box.right, x + 1);
      box.top = std::min<int64_t>(box.top, y);
      box.bottom = std::max<int64_t>(box.bottom, y + 1);
    }
  }
  return box;
}

}  // namespace

void CheckOutlineBlock(const std::vector<uint8_t>& block, const std::string& fileName) {
  if (lx::text::MeasureOutlineBlock(block.data(), block.size()).empty()) {
    throw JobError("'" + fileName + "' is not an outline block with something to draw (GGO_NATIVE layout: " +
                   "contours of type 24 whose lengths fit the file)");
  }
}

RgbaImage RenderBlock(const Settings& settings, const std::vector<uint8_t>& bytes,
                      const ImageReader& readImage) {
  const lx::text::InkBox ink = lx::text::MeasureOutlineBlock(bytes.data(), bytes.size());
  if (ink.empty()) throw JobError("nothing to draw: the outline block is empty");
  const Box glyphs{ink.left, ink.top, ink.right, ink.bottom};

  Textures textures;
  if (settings.face.fill == FillKind::kTexture) textures.face = LoadTexture(settings.face.texture, readImage);
  if (settings.outline.fill == FillKind::kTexture)
    textures.outline = LoadTexture(settings.outline.texture, readImage);

  lx::text::GlobalBlock block(bytes);
  if (!block.handle()) throw JobError("out of memory for the outline block");

  // Probe: render on a transparent canvas with room to spare and measure what was drawn. The estimate
  // is generous; should anything touch the canvas edge, the room grows and the probe runs again.
  Box drawn;
  for (int64_t slack = 8;; slack *= 4) {
    const Box reach = ReachEstimate(settings, glyphs, slack);
    CheckCanvasSize(reach.width(), reach.height());
    Image probe(static_cast<int32_t>(reach.width()), static_cast<int32_t>(reach.height()));
    if (!RenderOnto(settings, textures, block.handle(), static_cast<int32_t>(-reach.left),
                    static_cast<int32_t>(-reach.top), probe)) {
      throw JobError("the library drew nothing: the outline has no area");
    }
    drawn = InkOf(probe);
    if (drawn.empty()) {
      drawn = glyphs;  // nothing visible (a transparent Face, say): keep the letters' own box
      break;
    }
    const bool touches =
        drawn.left == 0 || drawn.top == 0 || drawn.right == probe.width || drawn.bottom == probe.height;
    drawn = drawn.moved(reach.left, reach.top);
    if (!touches || slack > 4096) break;
  }

  int64_t width, height, left, top;
  if (settings.fixedCanvas) {
    width = settings.canvasWidth;
    height = settings.canvasHeight;
    // Floor division: a drawing wider than the canvas is cut equally on both sides, give or take one.
    left = drawn.left - FloorHalf(width - drawn.width());
    top = drawn.top - FloorHalf(height - drawn.height());
  } else {
    width = drawn.width() + 2 * int64_t{settings.padding};
    height = drawn.height() + 2 * int64_t{settings.padding};
    left = drawn.left - settings.padding;
    top = drawn.top - settings.padding;
  }
  CheckCanvasSize(width, height);

  const Rgba& bg = settings.background;
  Image canvas(static_cast<int32_t>(width), static_cast<int32_t>(height),
               bg.a ? PackPixel(bg.r, bg.g, bg.b, bg.a) : 0);
  const int64_t tx = -left + settings.translateX, ty = -top + settings.translateY;
  if (tx < INT32_MIN || tx > INT32_MAX || ty < INT32_MIN || ty > INT32_MAX ||
      !RenderOnto(settings, textures, block.handle(), static_cast<int32_t>(tx), static_cast<int32_t>(ty),
                  canvas)) {
    throw JobError("the library drew nothing: the outline has no area");
  }
  return ToRgba(canvas);
}

}  // namespace lx::compose
