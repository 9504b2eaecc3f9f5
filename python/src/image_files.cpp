#include "python/src/image_files.h"

#include <exception>
#include <vector>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"

namespace lx::python {

lx::compose::RgbaImage ReadImageFile(const std::string& path) {
  try {
    const std::vector<uint8_t> bytes = lxt::ReadWholeFile(path, "texture file");
    const bool png =
        bytes.size() >= 8 && bytes[0] == 0x89 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G';
    return lx::compose::ToRgba(png ? lxt::DecodePng(bytes, path) : lxt::DecodeTga(bytes, path));
  } catch (const std::exception& e) {
    throw UnreadableFile(e.what());
  }
}

void WriteImageFile(const lx::compose::RgbaImage& image, const std::string& path) {
  try {
    const lx::compose::Image pixels = lx::compose::FromRgba(image);
    lxt::WriteFileAtomically(
        path, lxt::HasExtension(path, ".tga") ? lxt::EncodeTga(pixels) : lxt::EncodePng(pixels));
  } catch (const std::exception& e) {
    throw UnreadableFile(e.what());
  }
}

}  // namespace lx::python
