// TGA files that once made the `lettrix` program allocate and zero gigabytes before it noticed that
// the file held no pixels. Each runs in a child whose address space may grow by 256 MiB at most, so a
// reader that believes the header fails the test instead of taking the machine's memory.
#include <gtest/gtest.h>

#include "tests/image/tga_test_files.h"
#include "tests/support/posix/memory_limits.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

using lx::test::TgaHeader;

// The header of `type` and `bits` at `width` x `height`, followed by `extra`.
std::vector<uint8_t> File(uint8_t type, uint16_t width, uint16_t height, uint8_t bits,
                          std::vector<uint8_t> extra) {
  std::vector<uint8_t> f = TgaHeader(type, width, height, bits);
  f.insert(f.end(), extra.begin(), extra.end());
  return f;
}

TEST(ProgramTgaCrashers, HeadersClaimingMorePixelsThanTheFileHoldsAreRefusedBeforeAllocating) {
  const std::pair<std::vector<uint8_t>, const char*> files[] = {
      {File(10, 65535, 4096, 32, {}), "compressed pixel data is cut short"},   // took 34 s and 1 GB
      {File(10, 65535, 65535, 32, {}), "compressed pixel data is cut short"},  // asked for 16 GiB
      {File(10, 65535, 65535, 24, {0xFF, 1, 2, 3}), "compressed pixel data is cut short"},
      {File(2, 65535, 65535, 32, {}), "pixel data is cut short"},
      {File(2, 65535, 4096, 24, std::vector<uint8_t>(65535 * 3, 7)), "pixel data is cut short"},
  };
  for (const auto& [bytes, reason] : files) {
    // The child ends with 0 only when decoding is refused as a damaged file for `reason`.
    EXPECT_EXIT(
        {
          if (!lx::test::CapAddressSpaceGrowth(uint64_t{256} << 20)) std::_Exit(1);
          try {
            DecodeTga(bytes, "huge.tga");
          } catch (const ToolError& e) {
            std::fprintf(stderr, "%s\n", e.what());
            std::_Exit(e.exitCode() == kExitFailed && std::string(e.what()).find(reason) != std::string::npos
                           ? 0
                           : 1);
          }
          std::_Exit(1);
        },
        testing::ExitedWithCode(0), "")
        << reason << " " << bytes.size();
  }
}

TEST(ProgramTgaCrashers, AFileThatHoldsItsClaimedSizeInRunsStillDecodes) {
  // 300 x 200 in runs of 128: the least a compressed file can hold for its size.
  std::vector<uint8_t> file = TgaHeader(10, 300, 200, 32);
  for (int left = 300 * 200; left > 0; left -= 128) {
    file.insert(file.end(), {uint8_t(0x80 + std::min(left, 128) - 1), 1, 2, 3, 4});
  }
  const Image image = DecodeTga(file, "runs.tga");
  ASSERT_EQ(image.pixels.size(), 300u * 200u);
  EXPECT_EQ(image.pixels.front(), PackPixel(3, 2, 1, 4));
  EXPECT_EQ(image.pixels.back(), PackPixel(3, 2, 1, 4));
}

}  // namespace
}  // namespace lxt
