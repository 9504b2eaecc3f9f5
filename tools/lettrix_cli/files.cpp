#include "tools/lettrix_cli/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

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

uint16_t Read16(const uint8_t* p) {
  return static_cast<uint16_t>(p[0] | p[1] << 8);
}

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
  if (bytes.size() < 18) throw fail("too short for a TGA header");
  const uint8_t* h = bytes.data();
  const uint8_t idLength = h[0], colourMapType = h[1], type = h[2];
  const int32_t width = Read16(h + 12), height = Read16(h + 14);
  const int bits = h[16];
  const uint8_t descriptor = h[17];
  if (colourMapType != 0 || (type != 2 && type != 10)) {
    throw fail("only true-colour images (types 2 and 10) without a colour map are read");
  }
  if (bits != 24 && bits != 32) throw fail("only 24 and 32 bits per pixel are read");
  if (width < 1 || height < 1) throw fail("the image is empty");
  const size_t bpp = static_cast<size_t>(bits / 8);
  size_t at = 18 + idLength;

  // The header's size is only a claim: the file must hold at least the bytes that size takes before
  // the image is made (raw pixels, or at best one packet of 128 pixels per 1 + bpp bytes), so a short
  // file cannot make the program allocate and fill gigabytes. Counted in 64 bits: 65535 x 65535 pixels
  // of 4 bytes do not fit a 32-bit size_t.
  const uint64_t held = bytes.size() - std::min(bytes.size(), at);
  const uint64_t pixelCount = uint64_t{static_cast<uint32_t>(width)} * static_cast<uint32_t>(height);
  const uint64_t leastNeeded = type == 2 ? pixelCount * bpp : (pixelCount + 127) / 128 * (1 + bpp);
  if (held < leastNeeded) {
    throw fail(type == 2 ? "the pixel data is cut short" : "the compressed pixel data is cut short");
  }
  if (pixelCount * sizeof(uint32_t) > static_cast<uint64_t>(PTRDIFF_MAX))
    throw fail("the image is too large");
  const auto count = static_cast<size_t>(pixelCount);

  Image image(width, height);
  auto pixel = [&](const uint8_t* p) { return PackPixel(p[2], p[1], p[0], bpp == 4 ? p[3] : 255); };
  if (type == 2) {
    for (size_t i = 0; i < count; ++i) image.pixels[i] = pixel(&bytes[at + i * bpp]);
  } else {
    size_t done = 0;
    while (done < count) {
      if (at >= bytes.size()) throw fail("the compressed pixel data is cut short");
      const uint8_t packet = bytes[at++];
      const size_t n = static_cast<size_t>(packet & 0x7F) + 1;
      if (done + n > count) throw fail("the compressed data holds more pixels than the image");
      const bool run = packet & 0x80;
      const size_t need = run ? bpp : n * bpp;
      if (bytes.size() - at < need) throw fail("the compressed pixel data is cut short");
      for (size_t i = 0; i < n; ++i) image.pixels[done + i] = pixel(&bytes[at + (run ? 0 : i * bpp)]);
      at += need;
      done += n;
    }
  }
  // Bit 5 of the descriptor set: the first row is the top one; clear: the bottom one.
  if (!(descriptor & 0x20)) {
    for (int32_t y = 0; y < height / 2; ++y) {
      std::swap_ranges(image.pixels.begin() + static_cast<ptrdiff_t>(y) * width,
                       image.pixels.begin() + static_cast<ptrdiff_t>(y + 1) * width,
                       image.pixels.begin() + static_cast<ptrdiff_t>(height - 1 - y) * width);
    }
  }
  return image;
}

std::vector<uint8_t> EncodeTga(const Image& image) {
  std::vector<uint8_t> out(18, 0);
  out[2] = 2;
  out[12] = static_cast<uint8_t>(image.width & 0xFF);
  out[13] = static_cast<uint8_t>(image.width >> 8);
  out[14] = static_cast<uint8_t>(image.height & 0xFF);
  out[15] = static_cast<uint8_t>(image.height >> 8);
  out[16] = 32;
  out[17] = 0x28;  // top-left origin, 8 alpha bits
  out.reserve(18 + image.pixels.size() * 4);
  for (uint32_t p : image.pixels) {
    out.push_back(static_cast<uint8_t>(p));
    out.push_back(static_cast<uint8_t>(p >> 8));
    out.push_back(static_cast<uint8_t>(p >> 16));
    out.push_back(static_cast<uint8_t>(p >> 24));
  }
  return out;
}

}  // namespace lxt
