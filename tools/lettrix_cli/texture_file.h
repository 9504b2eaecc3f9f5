// Texture files as the programs and the Python package read them: TGA everywhere, PNG where a decoder
// is at hand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compose/pixel_image.h"
#include "tools/lettrix_cli/image.h"

namespace lxt {

using PngDecoder = Image (*)(const std::vector<uint8_t>& bytes, const std::string& fileName);

// The texture at `path` (messages show `path`; the file opened is `openedAs`, the same file as the
// system spells its name). A PNG file goes to `decodePng`, or, without one, is refused as a format
// `program` does not read; anything else is read as TGA. Throws JobError naming the file.
lx::compose::RgbaImage ReadTextureFile(const std::string& path, const std::string& openedAs,
                                       PngDecoder decodePng, const std::string& program);

}  // namespace lxt
