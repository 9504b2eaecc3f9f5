// The few facts of a TrueType file that GDI needs before it can select the face by name.
#include "tools/text_outline/block_writer.h"

namespace lx::text::detail {
namespace {

// Big-endian reads that refuse to leave the file.
class Reader {
 public:
  explicit Reader(const std::vector<uint8_t>& bytes) : b_(bytes) {}
  bool u16(size_t at, uint16_t* v) const {
    if (at > b_.size() || b_.size() - at < 2) return false;
    *v = static_cast<uint16_t>(b_[at] << 8 | b_[at + 1]);
    return true;
  }
  bool u32(size_t at, uint32_t* v) const {
    uint16_t hi, lo;
    if (!u16(at, &hi) || !u16(at + 2, &lo)) return false;
    *v = uint32_t{hi} << 16 | lo;
    return true;
  }
  bool has(size_t at, size_t n) const { return at <= b_.size() && b_.size() - at >= n; }

 private:
  const std::vector<uint8_t>& b_;
};

// Finds a table of the face whose offset table starts at `face`; returns its offset and length.
bool FindTable(const Reader& r, size_t face, const char* tag, size_t* offset, size_t* length) {
  uint16_t count;
  if (!r.u16(face + 4, &count)) return false;
  const uint32_t want = uint32_t{uint8_t(tag[0])} << 24 | uint32_t{uint8_t(tag[1])} << 16 |
                        uint32_t{uint8_t(tag[2])} << 8 | uint8_t(tag[3]);
  for (uint16_t i = 0; i < count; ++i) {
    const size_t rec = face + 12 + 16 * size_t{i};
    if (!r.has(rec, 16)) return false;
    uint32_t t = 0, off = 0, len = 0;
    r.u32(rec, &t);
    r.u32(rec + 8, &off);
    r.u32(rec + 12, &len);
    if (t == want) {
      if (!r.has(off, len)) return false;
      *offset = off;
      *length = len;
      return true;
    }
  }
  return false;
}

}  // namespace

bool ReadFontFileInfo(const std::vector<uint8_t>& file, FontFileInfo* info) {
  const Reader r(file);
  size_t face = 0;
  uint32_t version;
  if (!r.u32(0, &version)) return false;
  if (version == 0x74746366) {  // 'ttcf': a collection; its first face
    uint32_t first;
    if (!r.u32(12, &first)) return false;
    face = first;
  }

  size_t nameAt, nameLen;
  if (!FindTable(r, face, "name", &nameAt, &nameLen)) return false;
  uint16_t count, strings;
  if (!r.u16(nameAt + 2, &count) || !r.u16(nameAt + 4, &strings)) return false;
  // The Windows Unicode family name, US English preferred.
  int bestScore = -1;
  std::u16string best;
  for (uint16_t i = 0; i < count; ++i) {
    const size_t rec = nameAt + 6 + 12 * size_t{i};
    uint16_t platform, encoding, language, nameId, length, offset;
    if (!r.u16(rec, &platform) || !r.u16(rec + 2, &encoding) || !r.u16(rec + 4, &language) ||
        !r.u16(rec + 6, &nameId) || !r.u16(rec + 8, &length) || !r.u16(rec + 10, &offset)) {
      return false;
    }
    if (nameId != 1 || platform != 3 || (encoding != 0 && encoding != 1)) continue;
    const int score = language == 0x0409 ? 2 : 1;
    if (score <= bestScore) continue;
    const size_t at = nameAt + strings + offset;
    if (!r.has(at, length)) return false;
    std::u16string name;
    for (size_t k = 0; k + 1 < length; k += 2) {
      uint16_t unit = 0;
      r.u16(at + k, &unit);
      name.push_back(static_cast<char16_t>(unit));
    }
    best = name;
    bestScore = score;
  }
  if (best.empty()) return false;
  info->family = best;

  size_t os2At, os2Len;
  info->weight = 400;
  info->italic = false;
  if (FindTable(r, face, "OS/2", &os2At, &os2Len) && os2Len >= 64) {
    uint16_t weight = 400, selection = 0;
    r.u16(os2At + 4, &weight);
    r.u16(os2At + 62, &selection);
    info->weight = weight;
    info->italic = (selection & 1) != 0;
  }
  return true;
}

}  // namespace lx::text::detail
