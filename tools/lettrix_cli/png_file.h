// PNG files through libpng (native program only).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/lettrix_cli/image.h"

namespace lxt {

// Any PNG, converted to 8-bit straight-alpha pixels; throws JobError naming the file.
Image DecodePng(const std::vector<uint8_t>& bytes, const std::string& fileName);
// An 8-bit RGBA PNG; throws JobError.
std::vector<uint8_t> EncodePng(const Image& image);

}  // namespace lxt
