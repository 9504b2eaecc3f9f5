// Text in, finished picture out: lays the text out in the chosen font (shaping, bidirectional text,
// several lines, fallback fonts), draws it with the settings through the Lettrix library, and returns
// the image the lettrix program writes: RgbaImage, straight-alpha RGBA bytes (compose/pixel_image.h).
// Separate calls may run on separate threads at once.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "compose/compose_error.h"
#include "compose/option_table.h"
#include "compose/pixel_image.h"
#include "compose/settings.h"

namespace lx::compose {

// Reads a texture file named by a fill setting (FILE of --face-texture); throws Error (kJob) naming the
// file. Generated textures (gen:NAME) never reach it.
using ImageReader = std::function<RgbaImage(const std::string& path)>;

// The largest canvas side made, in pixels.
constexpr int32_t kMaxCanvasSide = 16384;

// The font file the settings name: their fontFile, the fontconfig match of their fontFamily, or the
// default font. Throws Error: kSetting for a family pattern fontconfig cannot parse, kJob when no
// installed font has the family.
std::string ResolveFont(const Settings& settings);

// Lays out UTF-8 `text` (line feeds start new lines) with the settings' font and layout and returns its
// outline block in GetGlyphOutline's GGO_NATIVE layout, as lettrix's --dump-outline writes it. Throws
// Error (kJob) for a font that cannot be read, text that is not UTF-8 or has nothing to draw, or a
// layout beyond the block's 16.16 coordinates. Linux builds only.
std::vector<uint8_t> LayOutText(const Settings& settings, const std::string& text);

// Checks an outline block read from a file; throws Error (kJob) naming `fileName` when it is malformed
// or has nothing to draw.
void CheckOutlineBlock(const std::vector<uint8_t>& block, const std::string& fileName);

// Draws an outline block with the settings. With a fitted canvas the image is just large enough for
// everything drawn plus the padding; with a fixed one the drawing is centred. Texture files are read
// with `readImage`; without one a texture file is refused. Throws Error: kSetting for an unknown
// generated texture, kJob for a texture that cannot be read, an image above kMaxCanvasSide on a side, or
// a block the library refuses.
RgbaImage RenderBlock(const Settings& settings, const std::vector<uint8_t>& block,
                      const ImageReader& readImage = {});

// LayOutText, then RenderBlock. Linux builds only.
RgbaImage Compose(const Settings& settings, const std::string& text, const ImageReader& readImage = {});

}  // namespace lx::compose
