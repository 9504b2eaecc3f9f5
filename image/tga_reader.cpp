#include "image/tga_reader.h"

#include <cstring>
#include <limits>

#include "image/pixel_buffer.h"

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
  const uint8_t* info = state->info;
  state->width = static_cast<uint32_t>(info[0]) | static_cast<uint32_t>(info[1]) << 8;
  state->height = static_cast<uint32_t>(info[2]) | static_cast<uint32_t>(info[3]) << 8;
  state->bitsPerPixel = info[4];
  image->width = state->width;
  image->height = state->height;
  image->bitsPerPixel = state->bitsPerPixel;
  image->descriptor = info[5];
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

// Whether the file holds at least `bytes` more from where it stands. A file whose length cannot be told
// counts as too short, which only costs the zero fill.
bool FileHolds(std::FILE* file, uint64_t bytes) {
  const long at = std::ftell(file);
  if (at < 0 || std::fseek(file, 0, SEEK_END) != 0) return false;
  const long end = std::ftell(file);
  if (std::fseek(file, at, SEEK_SET) != 0) return false;
  return end >= at && static_cast<uint64_t>(end - at) >= bytes;
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
  // The pixel that overruns the count is stored before it is detected: one spare pixel keeps that
  // store inside the block. A load that succeeds has written every pixel and a failed one frees the
  // block, so it is not zero-filled: a short file claiming a large image touches no more pages than its
  // packets fill.
  if (!AllocateBlock(image, state->imageSize + state->bytesPerPixel, platform::kGmemMoveable)) {
    SetMessage(image, "<LoadCompressedTGA> Could not allocate memory for image!");
    return false;
  }

  const uint64_t pixelCount = uint64_t{state->width} * state->height;
  const size_t bytesPerPixel = state->bytesPerPixel;
  uint64_t stored = 0;
  uint8_t* out = image->pixels;
  uint8_t pixel[4] = {};
  // Stores the current pixel with bytes 0 and 2 exchanged; false once more pixels than the image
  // holds have been stored.
  auto store = [&]() {
    out[0] = pixel[2];
    out[1] = pixel[1];
    out[2] = pixel[0];
    if (bytesPerPixel == 4) out[3] = pixel[3];
    out += bytesPerPixel;
    ++stored;
    return stored <= pixelCount;
  };

  while (stored < pixelCount) {
    const int header = std::fgetc(file);
    if (header == EOF) {
      SetMessage(image, "<LoadCompressedTGA> Could not read RLE header!");
      return false;
    }
    if (header < 128) {
      for (int i = 0; i <= header; ++i) {
        if (std::fread(pixel, 1, bytesPerPixel, file) != bytesPerPixel) {
          SetMessage(image, "<LoadCompressedTGA> Could not read image data!");
          return false;
        }
        if (!store()) {
          SetMessage(image, "<LoadCompressedTGA> Too many pixels read for file!");
          return false;
        }
      }
    } else {
      if (std::fread(pixel, 1, bytesPerPixel, file) != bytesPerPixel) {
        SetMessage(image, "<LoadCompressedTGA> Could not read from file!");
        return false;
      }
      for (int i = 0; i < header - 127; ++i) {
        if (!store()) {
          SetMessage(image, "<LoadCompressedTGA> Too many pixels read for file!");
          return false;
        }
      }
    }
  }
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
