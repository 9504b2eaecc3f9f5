#include "tools/lettrix_cli/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "image/tga_codec.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

class File {
 public:
  File(const std::string& path, const char* mode) : f_(std::fopen(path.c_str(), mode)) {}
  ~File() {
    if (f_) std::fclose(f_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  std::FILE* get() const { return f_; }
  // Closes now, reporting whether everything written reached the file.
  bool close() {
    std::FILE* f = f_;
    f_ = nullptr;
    return f && std::fclose(f) == 0;
  }

 private:
  std::FILE* f_;
};

}  // namespace

bool HasExtension(const std::string& path, const std::string& extension) {
  if (path.size() < extension.size()) return false;
  for (size_t i = 0; i < extension.size(); ++i) {
    char c = path[path.size() - extension.size() + i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != extension[i]) return false;
  }
  return true;
}

std::vector<uint8_t> ReadWholeFile(const std::string& path, const std::string& what) {
  File file(path, "rb");
  if (!file.get()) throw JobError("cannot open " + what + " '" + path + "': " + std::strerror(errno));
  std::vector<uint8_t> bytes;
  uint8_t chunk[65536];
  for (;;) {
    size_t n = std::fread(chunk, 1, sizeof chunk, file.get());
    bytes.insert(bytes.end(), chunk, chunk + n);
    if (n < sizeof chunk) break;
  }
  if (std::ferror(file.get())) throw JobError("cannot read " + what + " '" + path + "': read error");
  return bytes;
}

void WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes) {
  // A name beside the target, so the rename stays on one file system.
  const std::string temporary = path + ".partial";
  File file(temporary, "wb");
  if (!file.get()) throw JobError("cannot write '" + path + "': " + std::strerror(errno));
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  const int error = errno;
  if (!file.close() || !written) {
    std::remove(temporary.c_str());
    throw JobError("cannot write '" + path + "': " + std::strerror(written ? errno : error));
  }
  if (!MoveIntoPlace(temporary, path)) {
    std::remove(temporary.c_str());
    throw JobError("cannot write '" + path + "': the finished file could not be moved into place");
  }
}

Image DecodeTga(const std::vector<uint8_t>& bytes, const std::string& fileName) {
  auto fail = [&](const std::string& why) -> ToolError {
    return JobError("cannot read TGA file '" + fileName + "': " + why);
  };
  if (bytes.size() < lx::kTgaHeaderSize) throw fail("too short for a TGA header");
  const lx::TgaHeader header = lx::ParseTgaHeader(bytes.data());
  const bool compressed = header.imageType == lx::kTgaCompressedTrueColour;
  if (header.colourMapType != 0 || (header.imageType != lx::kTgaUncompressedTrueColour && !compressed)) {
    throw fail("only true-colour images (types 2 and 10) without a colour map are read");
  }
  const uint32_t bits = header.info.bitsPerPixel;
  if (bits != 24 && bits != 32) throw fail("only 24 and 32 bits per pixel are read");
  const auto width = static_cast<int32_t>(header.info.width);
  const auto height = static_cast<int32_t>(header.info.height);
  if (width < 1 || height < 1) throw fail("the image is empty");
  const uint32_t bpp = bits / 8;
  const size_t at = std::min(bytes.size(), lx::kTgaHeaderSize + header.idLength);

  // The header's size is only a claim: the file must hold at least the bytes that size takes before
  // the image is made, so a short file cannot make the program allocate and fill gigabytes. Counted in
  // 64 bits: 65535 x 65535 pixels of 4 bytes do not fit a 32-bit size_t.
  const uint64_t held = bytes.size() - at;
  const uint64_t pixelCount = uint64_t{header.info.width} * header.info.height;
  if (held < lx::TgaLeastPixelBytes(compressed, pixelCount, bpp)) {
    throw fail(compressed ? "the compressed pixel data is cut short" : "the pixel data is cut short");
  }
  if (pixelCount * sizeof(uint32_t) > static_cast<uint64_t>(PTRDIFF_MAX))
    throw fail("the image is too large");
  const auto count = static_cast<size_t>(pixelCount);

  // Pixels in the file's order (blue, green, red, maybe alpha), where the file keeps them or unpacked.
  const uint8_t* stored = bytes.data() + at;
  std::vector<uint8_t> unpacked;
  if (compressed) {
    unpacked.resize(count * bpp);
    switch (lx::DecodeTgaRle(stored, bytes.size() - at, count, bpp, unpacked.data())) {
      case lx::TgaRleResult::kDone:
        break;
      case lx::TgaRleResult::kTooManyPixels:
        throw fail("the compressed data holds more pixels than the image");
      default:
        throw fail("the compressed pixel data is cut short");
    }
    stored = unpacked.data();
  }
  Image image(width, height);
  for (size_t i = 0; i < count; ++i) {
    const uint8_t* p = stored + i * bpp;
    image.pixels[i] = PackPixel(p[2], p[1], p[0], bpp == 4 ? p[3] : 255);
  }
  if (!(header.info.descriptor & lx::kTgaTopOrigin)) {
    for (int32_t y = 0; y < height / 2; ++y) {
      std::swap_ranges(image.pixels.begin() + static_cast<ptrdiff_t>(y) * width,
                       image.pixels.begin() + static_cast<ptrdiff_t>(y + 1) * width,
                       image.pixels.begin() + static_cast<ptrdiff_t>(height - 1 - y) * width);
    }
  }
  return image;
}

std::vector<uint8_t> EncodeTga(const Image& image) {
  std::vector<uint8_t> out(lx::kTgaHeaderSize);
  lx::WriteTgaHeader32(static_cast<uint32_t>(image.width), static_cast<uint32_t>(image.height), out.data());
  out.reserve(lx::kTgaHeaderSize + image.pixels.size() * 4);
  for (uint32_t p : image.pixels) {
    out.push_back(static_cast<uint8_t>(p));
    out.push_back(static_cast<uint8_t>(p >> 8));
    out.push_back(static_cast<uint8_t>(p >> 16));
    out.push_back(static_cast<uint8_t>(p >> 24));
  }
  return out;
}

}  // namespace lxt
