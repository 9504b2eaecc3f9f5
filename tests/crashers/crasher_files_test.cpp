// Inputs under data/ that once made a reader overrun, hang or overflow. The name gives the clean answer:
// outline_refused_ (no box, empty path), outline_decoded_ (a box), tga_refused_, tga_too_many_pixels_ (a
// refusal; the latter with that message), tga_either_ (either answer, with a consistent record).
#include <gtest/gtest.h>
#include <cstring>
#include <filesystem>
#include "render/outline_decoder.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/scene.h"
#include "tests/support/guard_pages.h"

namespace lx::test {
namespace {
const std::vector<int32_t> kNothing = {0, 0, 0, 0};

// Decodes `bytes` ending where a page without access begins (a read past them faults even without a
// sanitizer) into a path that already holds a vertex.
std::vector<int32_t> Decode(const std::vector<uint8_t>& bytes, OutlinePath* path) {
  GuardedPages pages(bytes.size() / 4096 + 3);
  pages.protect(pages.pageCount() - 1, GuardedPages::Access::kNone);
  uint8_t* data = pages.page(pages.pageCount() - 1) - bytes.size();
  if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
  *path = {{1.0, 1.0, kPathMoveTo}};
  const IntRect r = DecodeOutlineBlock(data, bytes.size(), false, path);
  return {r.left, r.top, r.right, r.bottom};
}

// A refused load must leave its reason and nothing to free, a loaded one no message.
bool LoadConsistently(const Bytes& bytes, OwnedTga* image) {
  const bool loaded = LoadBytes(image, bytes);
  EXPECT_EQ(image->message[0] == '\0', loaded);
  EXPECT_TRUE(loaded || (image->pixels == nullptr && image->handle == nullptr));
  EXPECT_TRUE(!loaded || image->pixels == nullptr || image->bitsPerPixel != 24 || ConvertTo32Bits(image));
  return loaded;
}

TEST(CrasherFiles, EachGetsTheAnswerItsNameGives) {
  size_t checked = 0;
  for (const auto& entry : std::filesystem::directory_iterator(LETTRIX_CRASHER_DIR)) {
    const std::string name = entry.path().filename().string();
    const auto is = [&](const char* prefix) { return name.rfind(prefix, 0) == 0; };
    const std::vector<uint8_t> bytes = ReadBytes(entry.path().string());
    SCOPED_TRACE(name);
    OutlinePath path;
    OwnedTga image;
    if (is("outline_")) {
      EXPECT_EQ(Decode(bytes, &path) == kNothing, is("outline_refused_"));
      EXPECT_EQ(path.empty(), is("outline_refused_"));
    } else if (is("tga_")) {
      EXPECT_TRUE(!LoadConsistently(bytes, &image) || is("tga_either_"));
      if (is("tga_too_many_pixels_")) {
        EXPECT_STREQ(image.message, "<LoadCompressedTGA> Too many pixels read for file!");
      }
    } else {
      continue;
    }
    ++checked;
  }
  EXPECT_EQ(checked, 37u) << "files in " << LETTRIX_CRASHER_DIR;
}

// Every cut of a good file: two contours decode only whole (the first alone when cut right after it), a
// 4 x 3 TGA of runs and raw packets loads only whole, an uncompressed 2 x 2 whatever follows 12 bytes.
TEST(CrasherFiles, CutGoodFilesAreRefusedOrReadWhole) {
  const std::vector<uint8_t> blocks = CrasherFile("good_two_squares.block");
  const Bytes rle = CrasherFile("good_rle_4x3.tga"), raw = CrasherFile("good_raw_2x2.tga");
  const size_t firstContour = 16 + 4 + 4 * 8;
  OutlinePath path;
  for (size_t n = 1; n < blocks.size(); ++n) {
    const std::vector<int32_t> box = Decode(std::vector<uint8_t>(blocks.begin(), blocks.begin() + n), &path);
    EXPECT_EQ(box, n == firstContour ? std::vector<int32_t>({0, 0, 10, 10}) : kNothing) << n;
    EXPECT_EQ(path.empty(), n != firstContour) << n;
  }
  for (size_t n = 0; n <= rle.size(); ++n) {
    OwnedTga a, b;
    EXPECT_EQ(LoadConsistently(Bytes(rle.begin(), rle.begin() + n), &a), n == rle.size()) << n;
    const size_t m = std::min(n, raw.size());
    EXPECT_EQ(LoadConsistently(Bytes(raw.begin(), raw.begin() + m), &b), m >= 12) << m;
  }
}
}  // namespace
}  // namespace lx::test
