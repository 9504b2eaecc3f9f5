// UTF-8 to code points, refusing what is not UTF-8: stray continuation bytes, truncated, overlong and
// surrogate sequences, and values past U+10FFFF.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lx::text {

struct DecodedText {
  std::vector<uint32_t> codePoints;
  std::vector<size_t> offsets;  // byte offset of each code point in the text
};

// Decodes `length` bytes. Returns true, or false with *badOffset set to the first byte of the first
// malformed sequence.
bool DecodeUtf8(const char* text, size_t length, DecodedText* out, size_t* badOffset);

}  // namespace lx::text
