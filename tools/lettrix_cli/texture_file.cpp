#include "tools/lettrix_cli/texture_file.h"

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

// Anything shorter than PNG's signature is no PNG, whatever its first bytes.
bool LooksLikePng(const std::vector<uint8_t>& bytes) {
  return bytes.size() >= 8 && bytes[0] == 0x89 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G';
}

}  // namespace

lx::compose::RgbaImage ReadTextureFile(const std::string& path, const std::string& openedAs,
                                       PngDecoder decodePng, const std::string& program) {
  const std::vector<uint8_t> bytes = ReadWholeFile(openedAs, "texture file");
  if (LooksLikePng(bytes)) {
    if (decodePng == nullptr)
      throw JobError("'" + path + "' is a PNG file; " + program + " reads TGA textures only");
    return lx::compose::ToRgba(decodePng(bytes, path));
  }
  return lx::compose::ToRgba(DecodeTga(bytes, path));
}

}  // namespace lxt
