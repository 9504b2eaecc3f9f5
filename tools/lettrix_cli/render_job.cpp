#include "tools/lettrix_cli/render_job.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "lettrix/lettrix.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/textures.h"
#include "tools/lettrix_cli/tool_error.h"
#include "tools/text_outline/text_outline.h"

namespace lxt {
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

Image LoadTexture(const std::string& source, const ImageFileReader& readImage) {
  const std::string prefix = kGeneratedPrefix;
  if (source.compare(0, prefix.size(), prefix) == 0) {
    const std::string name = source.substr(prefix.size());
    if (!IsGeneratedTexture(name)) {
      throw UsageError("no generated texture named '" + name + "' (there are " + GeneratedTextureList() +
                       ")");
    }
    return GenerateTexture(name);
  }
  Image image = readImage(source);
  if (static_cast<int64_t>(image.width) * image.height > kMaxCanvasPixels) {
    throw JobError("texture '" + source + "' is too large");
  }
  return image;
}

void ApplySettings(RenderHandle* slot, const Job& job, Textures& textures) {
  ApplyLayer(slot, kFaceCalls, job.face, &textures.face);
  ApplyLayer(slot, kOutlineCalls, job.outline, &textures.outline);

  const int32_t thickness = job.outlineWidth;
  SetOutlineThickness(slot, &thickness);

  const uint8_t emboss = job.emboss ? 1 : 0;
  if (job.emboss) {
    const double angle = job.embossAngleDegrees * kDegreesToRadians;
    // The relief is scaled by the first byte for red, the third for green and the second for blue.
    SetFaceTextureEmbossed(slot, &angle, &job.embossTint.r, &job.embossTint.b, &job.embossTint.g);
  }
  EnableFaceEmbossed(slot, &emboss);

  const uint8_t bevel = job.bevel ? 1 : 0;
  const uint8_t elevation = static_cast<uint8_t>(job.bevelElevation);
  const uint8_t passes = static_cast<uint8_t>(job.bevelPasses);
  const double bevelAngle = job.bevelAngleDegrees * kDegreesToRadians;
  SetOutline3DBorder(slot, &elevation, &passes, &bevelAngle);
  EnableOutline3DBorder(slot, &bevel);

  SetColour(SetShadowColor, slot, job.shadowColour);
  SetShadowOffset(slot, &job.shadowX, &job.shadowY);
  SetShadowZoom(slot, &job.shadowZoomX, &job.shadowZoomY);
  const uint8_t shadowBlur = static_cast<uint8_t>(job.shadowBlur);
  SetShadowBlurLevel(slot, &shadowBlur);
  const uint8_t extrude = job.extrude ? 1 : 0, smooth = job.extrudeSmooth ? 1 : 0;
  SetShadowExtruded(slot, &extrude);
  SetExtrudedShadowColor(slot, &smooth);
  const uint8_t visible = job.shadowVisible ? 1 : 0, only = job.shadowOnly ? 1 : 0;
  SetShadowVisible(slot, &visible);
  SetDrawShadowOnly(slot, &only);
}

// How far, beyond the outline's own box, anything may be drawn, before the probe render measures it.
Box ReachEstimate(const Job& job, const Box& glyphs, int64_t slack) {
  const int64_t stroke = job.outlineWidth > 0 ? 3 * int64_t{job.outlineWidth} + 2 : 0;
  const int64_t blur = 2 * std::max({job.face.blur, job.outline.blur});
  Box reach = glyphs.inflated(stroke + blur + slack);

  const bool shadowDrawn = job.shadowVisible && job.shadowColour.a != 0;
  if (shadowDrawn) {
    Box shadow = glyphs.inflated(stroke + 2 * int64_t{job.shadowBlur} + slack);
    const double growX = (job.shadowZoomX - 1.0) * static_cast<double>(shadow.width()) / 2.0;
    const double growY = (job.shadowZoomY - 1.0) * static_cast<double>(shadow.height()) / 2.0;
    if (growX > 0) {
      shadow.left -= static_cast<int64_t>(growX) + 2;
      shadow.right += static_cast<int64_t>(growX) + 2;
    }
    if (growY > 0) {
      shadow.top -= static_cast<int64_t>(growY) + 2;
      shadow.bottom += static_cast<int64_t>(growY) + 2;
    }
    Box moved = shadow.moved(job.shadowX, job.shadowY);
    reach = reach.united(job.extrude ? moved.united(shadow) : moved);
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
bool RenderOnto(const Job& job, Textures& textures, void* block, int32_t tx, int32_t ty, Image& canvas) {
  Process process;
  ApplySettings(process.slot(), job, textures);
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

std::vector<uint8_t> BuildTextBlock(const Job& job, const std::string& fontPath) {
  // A clear message for the commonest mistake, before the font engine gives a vaguer one.
  ReadWholeFile(fontPath, "font file");
  lx::text::TextLine line;
  line.fontPath = fontPath;
  line.text = job.text;
  line.pixelSize = job.pixelSize;
  line.baselineY = job.pixelSize;
  lx::text::OutlineBlock block;
  std::string error;
  if (!lx::text::BuildOutlineBlock(line, &block, &error)) {
    if (error.rfind("cannot open font", 0) == 0) {
      throw JobError("cannot use font file '" + fontPath + "': it is not a font the font engine can read");
    }
    throw JobError("cannot lay out the text in '" + fontPath + "': " + error);
  }
  if (block.bytes.empty() || block.ink.empty()) {
    throw JobError("nothing to draw: the text has no visible letters");
  }
  return std::move(block.bytes);
}

void CheckOutlineBlock(const std::vector<uint8_t>& block, const std::string& fileName) {
  if (lx::text::MeasureOutlineBlock(block.data(), block.size()).empty()) {
    throw JobError("'" + fileName + "' is not an outline block with something to draw (GGO_NATIVE layout: " +
                   "contours of type 24 whose lengths fit the file)");
  }
}

Image RenderJob(const Job& job, const std::vector<uint8_t>& bytes, const ImageFileReader& readImage) {
  const lx::text::InkBox ink = lx::text::MeasureOutlineBlock(bytes.data(), bytes.size());
  if (ink.empty()) throw JobError("nothing to draw: the outline block is empty");
  const Box glyphs{ink.left, ink.top, ink.right, ink.bottom};

  Textures textures;
  if (job.face.fill == FillKind::kTexture) textures.face = LoadTexture(job.face.texture, readImage);
  if (job.outline.fill == FillKind::kTexture) textures.outline = LoadTexture(job.outline.texture, readImage);

  lx::text::GlobalBlock block(bytes);
  if (!block.handle()) throw JobError("out of memory for the outline block");

  // Probe: render on a transparent canvas with room to spare and measure what was drawn. The estimate
  // is generous; should anything touch the canvas edge, the room grows and the probe runs again.
  Box drawn;
  for (int64_t slack = 8;; slack *= 4) {
    const Box reach = ReachEstimate(job, glyphs, slack);
    CheckCanvasSize(reach.width(), reach.height());
    Image probe(static_cast<int32_t>(reach.width()), static_cast<int32_t>(reach.height()));
    if (!RenderOnto(job, textures, block.handle(), static_cast<int32_t>(-reach.left),
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
  if (job.fixedCanvas) {
    width = job.canvasWidth;
    height = job.canvasHeight;
    // Floor division: a drawing wider than the canvas is cut equally on both sides, give or take one.
    left = drawn.left - FloorHalf(width - drawn.width());
    top = drawn.top - FloorHalf(height - drawn.height());
  } else {
    width = drawn.width() + 2 * int64_t{job.padding};
    height = drawn.height() + 2 * int64_t{job.padding};
    left = drawn.left - job.padding;
    top = drawn.top - job.padding;
  }
  CheckCanvasSize(width, height);

  const Rgba& bg = job.background;
  Image canvas(static_cast<int32_t>(width), static_cast<int32_t>(height),
               bg.a ? PackPixel(bg.r, bg.g, bg.b, bg.a) : 0);
  const int64_t tx = -left + job.translateX, ty = -top + job.translateY;
  if (tx < INT32_MIN || tx > INT32_MAX || ty < INT32_MIN || ty > INT32_MAX ||
      !RenderOnto(job, textures, block.handle(), static_cast<int32_t>(tx), static_cast<int32_t>(ty),
                  canvas)) {
    throw JobError("the library drew nothing: the outline has no area");
  }
  return canvas;
}

}  // namespace lxt
