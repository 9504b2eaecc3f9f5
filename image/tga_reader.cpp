#include "image/tga_reader.h"

#include <cstring>
#include <limits>
#include <utility>

#include "image/pixel_buffer.h"
#include "image/tga_codec.h"

namespace lx {

namespace {

constexpr uint8_t kUncompressedHeader[12] = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0};
constexpr uint8_t kCompressedHeader[12] = {0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0};

void SetMessage(TgaImage* image, const char* text) {
  std::snprintf(image->message, sizeof image->message, "%s", text);
}

void SetMessage(TgaImage* image, const char* format, const char* fileName) {
  std::snprintf(image->message, sizeof image->message, format, fileName != nullptr ? fileName : "NULL");
}

// Takes the six info bytes apart into the state and the record; false when the size or depth is one
// the readers cannot handle.
bool ReadInfo(TgaLoaderState* state, TgaImage* image) {
  const TgaInfo info = ParseTgaInfo(state->info);
  state->width = info.width;
  state->height = info.height;
  state->bitsPerPixel = info.bitsPerPixel;
  image->width = state->width;
  image->height = state->height;
  image->bitsPerPixel = state->bitsPerPixel;
  image->descriptor = info.descriptor;
  if (state->width == 0 || state->height == 0) return false;
  if (state->bitsPerPixel != 24 && state->bitsPerPixel != 32) return false;
  state->bytesPerPixel = state->bitsPerPixel / 8;
  state->imageSize = uint64_t{state->width} * state->height * state->bytesPerPixel;
  return true;
}

// Replaces the record's block with a new one of `bytes` (zero-filled unless `flags` says otherwise); a
// size past the work-image limit counts as a failed allocation, so a hostile header cannot claim
// gigabytes.
bool AllocateBlock(TgaImage* image, uint64_t bytes, unsigned flags = platform::kGmemMoveableZeroInit) {
  ReleaseTGA(image);
  if (bytes == 0 || bytes > PixelBuffer::kMaxBytes || bytes > std::numeric_limits<size_t>::max())
    return false;
  platform::MemoryHandle handle = nullptr;
  void* pixels = platform::AllocateLockedBlock(static_cast<size_t>(bytes), &handle, flags);
  if (pixels == nullptr) return false;
  image->handle = handle;
  image->pixels = static_cast<uint8_t*>(pixels);
  return true;
}

// How many bytes the file holds from where it stands; 0 when its length cannot be told.
uint64_t BytesLeft(std::FILE* file) {
  const long at = std::ftell(file);
  if (at < 0 || std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long end = std::ftell(file);
  if (std::fseek(file, at, SEEK_SET) != 0 || end < at) return 0;
  return static_cast<uint64_t>(end - at);
}

// Whether the file holds at least `bytes` more from where it stands. A file whose length cannot be told
// counts as too short, which only costs the zero fill.
bool FileHolds(std::FILE* file, uint64_t bytes) {
  return BytesLeft(file) >= bytes;
}

// The packed pixel data of a compressed file, read whole so the byte-level decoder can take it apart:
// no more than the file holds, and no more than the decoder can look at for the image's pixels, so its
// cost follows the file and the image already allocated for it. Empty (which decodes as a missing packet)
// when the file cannot be measured or the block cannot be had.
class PackedData {
 public:
  PackedData(std::FILE* file, uint64_t mostBytes) {
    const uint64_t left = BytesLeft(file);
    const uint64_t wanted = left < mostBytes ? left : mostBytes;
    if (wanted == 0 || wanted > std::numeric_limits<size_t>::max()) return;
    bytes_ = static_cast<uint8_t*>(
        platform::AllocateLockedBlock(static_cast<size_t>(wanted), &handle_, platform::kGmemMoveable));
    if (bytes_ != nullptr) size_ = std::fread(bytes_, 1, static_cast<size_t>(wanted), file);
  }
  ~PackedData() { platform::ReleaseLockedBlock(handle_); }
  PackedData(const PackedData&) = delete;
  PackedData& operator=(const PackedData&) = delete;
  const uint8_t* bytes() const { return bytes_; }
  size_t size() const { return size_; }

 private:
  platform::MemoryHandle handle_ = nullptr;
  uint8_t* bytes_ = nullptr;
  size_t size_ = 0;
};

const char* RleMessage(TgaRleResult result) {
  switch (result) {
    case TgaRleResult::kPacketHeaderMissing:
      return "<LoadCompressedTGA> Could not read RLE header!";
    case TgaRleResult::kRawPixelsShort:
      return "<LoadCompressedTGA> Could not read image data!";
    case TgaRleResult::kRunPixelShort:
      return "<LoadCompressedTGA> Could not read from file!";
    case TgaRleResult::kTooManyPixels:
      return "<LoadCompressedTGA> Too many pixels read for file!";
    case TgaRleResult::kDone:
      break;
  }
  return "";
}

}  // namespace

void ReleaseTGA(TgaImage* image) {
  if (image == nullptr) return;
  platform::ReleaseLockedBlock(image->handle);
  image->handle = nullptr;
  image->pixels = nullptr;
}

bool LoadTGA(TgaImage* image, const char* fileName) {
  if (image == nullptr) return false;
  TgaLoaderState state;
  bool result = false;
  std::FILE* file = fileName != nullptr ? std::fopen(fileName, "rb") : nullptr;
  if (file == nullptr) {
    SetMessage(image, "<LoadTGA> Could not open texture file: %s", fileName);
  } else if (std::fread(state.header, 1, sizeof state.header, file) != sizeof state.header) {
    SetMessage(image, "<LoadTGA> Could not read header of %s", fileName);
  } else if (std::memcmp(state.header, kUncompressedHeader, sizeof state.header) == 0) {
    result = LoadUncompressedTGA(&state, image, file);
  } else if (std::memcmp(state.header, kCompressedHeader, sizeof state.header) == 0) {
    result = LoadCompressedTGA(&state, image, file);
  } else {
    SetMessage(image, "<LoadTGA> TGA file should be either type 2 or 10");
  }

  if (!result) ReleaseTGA(image);
  if (file != nullptr) std::fclose(file);
  if (result) image->message[0] = '\0';
  return result;
}

bool LoadUncompressedTGA(TgaLoaderState* state, TgaImage* image, std::FILE* file) {
  if (state == nullptr || image == nullptr) return false;
  // Every failure below still answers true: a broken uncompressed file loads as an empty or partly
  // filled image, and only the message (which LoadTGA then empties) would tell.
  if (file == nullptr || std::fread(state->info, 1, sizeof state->info, file) != sizeof state->info) {
    SetMessage(image, "<LoadUncompressedTGA> Could not read info header!");
    return true;
  }
  if (!ReadInfo(state, image)) {
    // The record now describes a size its old block (if any) does not have.
    ReleaseTGA(image);
    SetMessage(image, "<LoadUncompressedTGA> BitPerPixel has to be either 24-bit or 32-bit");
    return true;
  }
  // A cut-short file still loads, as what it holds followed by zeros. Only then is the zero fill
  // needed: it comes with the fresh pages, so a short file claiming a large image costs no more than
  // its own bytes. A file that backs the whole image overwrites every byte and is read unfilled.
  const bool complete = FileHolds(file, state->imageSize);
  if (!AllocateBlock(image, state->imageSize,
                     complete ? platform::kGmemMoveable : platform::kGmemMoveableZeroInit)) {
    SetMessage(image, "<LoadUncompressedTGA> Could not allocate memory for image!");
    return true;
  }
  // Raw rows as the file stores them: no channel swap and no flip for either origin.
  const auto size = static_cast<size_t>(state->imageSize);
  const size_t got = std::fread(image->pixels, 1, size, file);
  if (got != size) {
    // The file shrank after it was measured: what it no longer holds reads as zeros all the same.
    if (complete) std::memset(image->pixels + got, 0, size - got);
    SetMessage(image, "<LoadUncompressedTGA> Could not read image data!");
  }
  return true;
}

bool LoadCompressedTGA(TgaLoaderState* state, TgaImage* image, std::FILE* file) {
  if (state == nullptr || image == nullptr) return false;
  if (file == nullptr || std::fread(state->info, 1, sizeof state->info, file) != sizeof state->info) {
    SetMessage(image, "<LoadCompressedTGA> Could not read info header!");
    return false;
  }
  if (!ReadInfo(state, image)) {
    ReleaseTGA(image);
    SetMessage(image, "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit");
    return false;
  }
  // A load that succeeds has written every pixel and a failed one frees the block, so it is not
  // zero-filled: a short file claiming a large image touches no more pages than its packets fill.
  if (!AllocateBlock(image, state->imageSize, platform::kGmemMoveable)) {
    SetMessage(image, "<LoadCompressedTGA> Could not allocate memory for image!");
    return false;
  }

  const uint64_t pixelCount = uint64_t{state->width} * state->height;
  const size_t bytesPerPixel = state->bytesPerPixel;
  const PackedData packed(file, TgaMostRlePixelBytes(pixelCount, state->bytesPerPixel));
  const TgaRleResult result = DecodeTgaRle(packed.bytes(), packed.size(), static_cast<size_t>(pixelCount),
                                           bytesPerPixel, image->pixels);
  if (result != TgaRleResult::kDone) {
    SetMessage(image, RleMessage(result));
    return false;
  }
  // Only compressed files come out red first: callers have always read them that way.
  uint8_t* pixel = image->pixels;
  for (uint64_t i = 0; i < pixelCount; ++i, pixel += bytesPerPixel) std::swap(pixel[0], pixel[2]);
  image->message[0] = '\0';
  return true;
}

bool ConvertTo32Bits(TgaImage* image) {
  if (image == nullptr || image->bitsPerPixel != 24 || image->pixels == nullptr) return false;
  const uint64_t pixelCount = uint64_t{image->width} * image->height;
  if (pixelCount == 0) return false;

  TgaImage converted;
  if (!AllocateBlock(&converted, pixelCount * 4)) return false;
  const uint8_t* in = image->pixels;
  uint8_t* out = converted.pixels;
  for (uint64_t i = 0; i < pixelCount; ++i, in += 3, out += 4) {
    const uint32_t value = 0xFF000000u | uint32_t{in[2]} << 16 | uint32_t{in[1]} << 8 | in[0];
    std::memcpy(out, &value, sizeof value);
  }
  ReleaseTGA(image);
  image->handle = converted.handle;
  image->pixels = converted.pixels;
  image->bitsPerPixel = 32;
  return true;
}

}  // namespace lx
