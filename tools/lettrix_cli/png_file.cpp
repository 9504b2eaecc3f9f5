#include "tools/lettrix_cli/png_file.h"

#include <png.h>

#include <cstring>

#include "tools/lettrix_cli/tool_error.h"

namespace lxt {

Image DecodePng(const std::vector<uint8_t>& bytes, const std::string& fileName) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&png, bytes.data(), bytes.size())) {
    throw JobError("cannot read PNG file '" + fileName + "': " + png.message);
  }
  // BGRA in memory is exactly the library's pixel layout.
  png.format = PNG_FORMAT_BGRA;
  if (png.width < 1 || png.height < 1 || png.width > 16384 || png.height > 16384) {
    png_image_free(&png);
    throw JobError("cannot read PNG file '" + fileName + "': images up to 16384 pixels on a side are read");
  }
  Image image(static_cast<int32_t>(png.width), static_cast<int32_t>(png.height));
  if (!png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr)) {
    throw JobError("cannot read PNG file '" + fileName + "': " + png.message);
  }
  return image;
}

std::vector<uint8_t> EncodePng(const Image& image) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_BGRA;
  png_alloc_size_t size = 0;
  if (!png_image_write_get_memory_size(png, size, 0, image.pixels.data(), 0, nullptr)) {
    throw JobError(std::string("cannot encode the PNG image: ") + png.message);
  }
  std::vector<uint8_t> out(size);
  if (!png_image_write_to_memory(&png, out.data(), &size, 0, image.pixels.data(), 0, nullptr)) {
    throw JobError(std::string("cannot encode the PNG image: ") + png.message);
  }
  out.resize(size);
  return out;
}

}  // namespace lxt
