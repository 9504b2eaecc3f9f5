// The `lettrix` program's TGA reader on any file: an image whose pixels match its size, or the
// program's own error for a damaged file. Nothing else may escape (no other exception, no allocation
// the file cannot back).
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::vector<uint8_t> bytes(data, data + size);
  try {
    const lxt::Image image = lxt::DecodeTga(bytes, "fuzz.tga");
    if (image.width < 1 || image.height < 1) std::abort();
    if (image.pixels.size() != static_cast<size_t>(image.width) * static_cast<size_t>(image.height)) {
      std::abort();
    }
  } catch (const lxt::ToolError& e) {
    if (e.exitCode() != lxt::kExitFailed) std::abort();
  }
  return 0;
}
