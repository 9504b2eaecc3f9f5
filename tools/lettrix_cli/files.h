// Reading and writing whole files, and the image formats every build understands (TGA). A file is
// written under a temporary name and renamed into place, so a failed run never leaves a partial file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/lettrix_cli/image.h"

namespace lxt {

// The whole file; throws JobError naming `what` ("font", "texture", ...) and the reason.
std::vector<uint8_t> ReadWholeFile(const std::string& path, const std::string& what);

// Writes `bytes` to `path` through a temporary file in the same folder; throws JobError and leaves no
// file behind (neither the temporary one nor a changed `path`) when any step fails.
void WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes);

// Replaces `target` by `temporary` in one step; false when the system refuses. Each program supplies
// the version for its system.
bool MoveIntoPlace(const std::string& temporary, const std::string& target);

// True colour TGA (types 2 and 10, 24 or 32 bits, either origin) to an image; throws JobError with the
// file name for anything else or a damaged file.
Image DecodeTga(const std::vector<uint8_t>& bytes, const std::string& fileName);
// An uncompressed 32-bit TGA with the first row on top.
std::vector<uint8_t> EncodeTga(const Image& image);

bool HasExtension(const std::string& path, const std::string& extension);  // case-insensitive, with dot

}  // namespace lxt
