#include "image/tga_codec.h"

#include <cstring>

namespace lx {

namespace {

uint32_t Read16(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8;
}

constexpr uint64_t kLongestPacket = 128;

}  // namespace

TgaInfo ParseTgaInfo(const uint8_t* info) {
  TgaInfo parsed;
  parsed.width = Read16(info);
  parsed.height = Read16(info + 2);
  parsed.bitsPerPixel = info[4];
  parsed.descriptor = info[5];
  return parsed;
}

TgaHeader ParseTgaHeader(const uint8_t* bytes) {
  TgaHeader header;
  header.idLength = bytes[0];
  header.colourMapType = bytes[1];
  header.imageType = bytes[2];
  header.info = ParseTgaInfo(bytes + kTgaInfoOffset);
  return header;
}

uint64_t TgaLeastPixelBytes(bool compressed, uint64_t pixelCount, uint32_t bytesPerPixel) {
  if (!compressed) return pixelCount * bytesPerPixel;
  return (pixelCount + kLongestPacket - 1) / kLongestPacket * (1 + uint64_t{bytesPerPixel});
}

uint64_t TgaMostRlePixelBytes(uint64_t pixelCount, uint32_t bytesPerPixel) {
  return pixelCount * (1 + uint64_t{bytesPerPixel}) + bytesPerPixel;
}

TgaRleResult DecodeTgaRle(const uint8_t* data, size_t size, size_t pixelCount, size_t bytesPerPixel,
                          uint8_t* out) {
  size_t at = 0;
  size_t done = 0;
  while (done < pixelCount) {
    if (at >= size) return TgaRleResult::kPacketHeaderMissing;
    const uint8_t packet = data[at++];
    const size_t count = static_cast<size_t>(packet & 0x7F) + 1;
    const size_t room = pixelCount - done;
    const size_t held = (size - at) / bytesPerPixel;
    uint8_t* to = out + done * bytesPerPixel;
    if (packet & 0x80) {
      if (held == 0) return TgaRleResult::kRunPixelShort;
      if (count > room) return TgaRleResult::kTooManyPixels;
      for (size_t i = 0; i < count; ++i) std::memcpy(to + i * bytesPerPixel, data + at, bytesPerPixel);
      at += bytesPerPixel;
    } else {
      if (held < count && held <= room) return TgaRleResult::kRawPixelsShort;
      if (count > room) return TgaRleResult::kTooManyPixels;
      std::memcpy(to, data + at, count * bytesPerPixel);
      at += count * bytesPerPixel;
    }
    done += count;
  }
  return TgaRleResult::kDone;
}

void WriteTgaHeader32(uint32_t width, uint32_t height, uint8_t* header) {
  std::memset(header, 0, kTgaHeaderSize);
  header[2] = kTgaUncompressedTrueColour;
  header[12] = static_cast<uint8_t>(width & 0xFF);
  header[13] = static_cast<uint8_t>(width >> 8);
  header[14] = static_cast<uint8_t>(height & 0xFF);
  header[15] = static_cast<uint8_t>(height >> 8);
  header[16] = 32;
  header[17] = kTgaTopOrigin | 8;
}

}  // namespace lx
