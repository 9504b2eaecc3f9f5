// TGA files that once made the `lettrix` program allocate and zero gigabytes before it noticed that
// the file held no pixels. Each runs in a child whose address space may grow by 256 MiB at most, so a
// reader that believes the header fails the test instead of taking the machine's memory.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/image/tga_test_files.h"
#include "tests/support/posix/memory_limits.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

// Ends the child with 0 when decoding is refused as a damaged file with `reason`, 1 otherwise.
void DecodeInChild(const std::vector<uint8_t>& bytes, const std::string& reason) {
  if (!lx::test::CapAddressSpaceGrowth(uint64_t{256} << 20)) {
    std::fprintf(stderr, "no address-space cap\n");
    std::_Exit(1);
  }
  try {
    DecodeTga(bytes, "huge.tga");
    std::fprintf(stderr, "decoded\n");
  } catch (const ToolError& e) {
    const std::string message = e.what();
    if (e.exitCode() == kExitFailed && message.find(reason) != std::string::npos) std::_Exit(0);
    std::fprintf(stderr, "refused with %d: %s\n", e.exitCode(), message.c_str());
  } catch (const std::exception& e) {
    std::fprintf(stderr, "other exception: %s\n", e.what());
  }
  std::fflush(stderr);
  std::_Exit(1);
}

struct SlowFile {
  const char* name;
  std::vector<uint8_t> bytes;
  const char* reason;
};

TEST(ProgramTgaCrashers, HeadersClaimingMorePixelsThanTheFileHoldsAreRefusedBeforeAllocating) {
  const SlowFile files[] = {
      // 18 bytes, type 10, 65535 x 4096: took 34 s and 1 GB before "cut short".
      {"rle 65535 x 4096", lx::test::TgaHeader(10, 65535, 4096, 32), "compressed pixel data is cut short"},
      // 18 bytes, type 10, 65535 x 65535: asked for 16 GiB.
      {"rle 65535 x 65535", lx::test::TgaHeader(10, 65535, 65535, 32), "compressed pixel data is cut short"},
      {"rle 65535 x 65535, one run",
       [] {
         std::vector<uint8_t> f = lx::test::TgaHeader(10, 65535, 65535, 24);
         f.insert(f.end(), {0xFF, 1, 2, 3});
         return f;
       }(),
       "compressed pixel data is cut short"},
      {"raw 65535 x 65535", lx::test::TgaHeader(2, 65535, 65535, 32), "pixel data is cut short"},
      {"raw 65535 x 4096, one row",
       [] {
         std::vector<uint8_t> f = lx::test::TgaHeader(2, 65535, 4096, 24);
         f.resize(f.size() + 65535 * 3, 7);
         return f;
       }(),
       "pixel data is cut short"},
  };
  for (const SlowFile& file : files) {
    EXPECT_EXIT(DecodeInChild(file.bytes, file.reason), testing::ExitedWithCode(0), "") << file.name;
  }
}

TEST(ProgramTgaCrashers, AFileThatHoldsItsClaimedSizeInRunsStillDecodes) {
  // 300 x 200 in runs of 128: the least a compressed file can hold for its size.
  std::vector<uint8_t> file = lx::test::TgaHeader(10, 300, 200, 32);
  const size_t runs = (300 * 200 + 127) / 128;
  for (size_t i = 0; i + 1 < runs; ++i) file.insert(file.end(), {0xFF, 1, 2, 3, 4});
  file.insert(file.end(), {static_cast<uint8_t>(0x80 + (300 * 200 - (runs - 1) * 128) - 1), 1, 2, 3, 4});
  const Image image = DecodeTga(file, "runs.tga");
  ASSERT_EQ(image.pixels.size(), 300u * 200u);
  EXPECT_EQ(image.pixels.front(), PackPixel(3, 2, 1, 4));
  EXPECT_EQ(image.pixels.back(), PackPixel(3, 2, 1, 4));
}

}  // namespace
}  // namespace lxt
