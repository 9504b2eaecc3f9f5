#include <gtest/gtest.h>

#include <vector>

#include "image/pixel_ops.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

TEST(WriteTGA, RefusesBadArgumentsBeforeMakingTheFile) {
  std::vector<uint32_t> pixels(4, 0u), wide(65536u, 0u);
  const std::string path = test::TempPath("writer_refused.tga");
  EXPECT_FALSE(WriteTGA(nullptr, 2, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 0, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 0, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), -2, 2, path.c_str()));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 2, nullptr));
  EXPECT_FALSE(WriteTGA(pixels.data(), 2, 2, test::TempPath("no_such_folder/x.tga").c_str()));
  EXPECT_FALSE(WriteTGA(wide.data(), 65536, 1, path.c_str()));  // the header holds each side in 16 bits
  test::GuardedPages pages({test::GuardedPages::Access::kReadWrite, test::GuardedPages::Access::kNone});
  const auto perPage = static_cast<int32_t>(pages.pageSize() / 4);
  EXPECT_FALSE(WriteTGA(pages.page(0), perPage, 2, path.c_str()));
  EXPECT_TRUE(test::ReadWholeFile(path).empty());
  EXPECT_TRUE(WriteTGA(pages.page(0), perPage, 1, path.c_str()));
  std::remove(path.c_str());
}

}  // namespace
}  // namespace lx
