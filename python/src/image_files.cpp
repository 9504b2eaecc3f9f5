#include "python/src/image_files.h"

#include <exception>
#include <vector>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/texture_file.h"

namespace lx::python {

lx::compose::RgbaImage ReadImageFile(const std::string& path) {
  try {
    return lxt::ReadTextureFile(path, path, lxt::DecodePng, "lettrix");
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
