#include <gtest/gtest.h>

#include <vector>

#include "image/pixel_ops.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

TEST(WriteTGA, WritesHeaderThenPixelsAsInMemory) {
  const std::vector<uint32_t> pixels = {0x11223344u, 0x55667788u, 0x99AABBCCu,
                                        0xDDEEFF00u, 0x01020304u, 0x05060708u};  // 3 x 2
  const std::string path = test::TempPath("writer_bytes.tga");
  ASSERT_TRUE(WriteTGA(pixels.data(), 3, 2, path.c_str()));
  test::Bytes expected = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 2, 0, 32, 0x28};
  const auto* raw = reinterpret_cast<const uint8_t*>(pixels.data());
  expected.insert(expected.end(), raw, raw + pixels.size() * 4);
  EXPECT_EQ(test::ReadWholeFile(path), expected);

  std::vector<uint32_t> wide(300u, 0u);  // sides are little-endian
  ASSERT_TRUE(WriteTGA(wide.data(), 300, 1, path.c_str()));
  const test::Bytes bytes = test::ReadWholeFile(path);
  ASSERT_EQ(bytes.size(), 18u + 1200u);
  EXPECT_EQ((test::Bytes(bytes.begin() + 12, bytes.begin() + 16)), (test::Bytes{0x2C, 0x01, 1, 0}));
  std::remove(path.c_str());
}

TEST(WriteTGA, RefusesBadArgumentsBeforeMakingTheFile) {
  std::vector<uint32_t> pixels(4, 0u);
  const std::string path = test::TempPath("writer_refused.tga");
  EXPECT_FALSE(WriteTGA(nullptr, 2, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 0, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 0, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), -2, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 2, nullptr));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 2, test::TempPath("no_such_folder/x.tga").c_str()));
  std::vector<uint32_t> wide(65536u, 0u);  // the header holds each side in 16 bits
  EXPECT_FALSE(WriteTGA(wide.data(), 65536, 1, path.c_str()));
  test::GuardedPages pages(2);
  pages.protect(1, test::GuardedPages::Access::kNone);
  const auto perPage = static_cast<int32_t>(pages.pageSize() / 4);
  EXPECT_FALSE(WriteTGA(pages.page(0), perPage, 2, path.c_str()));
  EXPECT_TRUE(test::ReadWholeFile(path).empty());
  EXPECT_TRUE(WriteTGA(pages.page(0), perPage, 1, path.c_str()));
  std::remove(path.c_str());
}

}  // namespace
}  // namespace lx
