// TGA files that once made the `lettrix` program allocate and zero gigabytes before it noticed that the
// file held no pixels. Each is decoded in a child whose address space may grow by 256 MiB at most.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

#include "tests/image/tga_test_files.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

std::vector<uint8_t> File(uint8_t type, uint16_t width, uint16_t height, uint8_t bits,
                          std::vector<uint8_t> data) {
  const std::vector<uint8_t> header = lx::test::TgaHeader(type, width, height, bits);
  data.insert(data.begin(), header.begin(), header.end());
  return data;
}

// Lets the process map at most `extraBytes` more than it has mapped now (a larger allocation fails
// instead of taking the machine's memory); false when no cap could be set.
bool CapAddressSpaceGrowth(uint64_t extraBytes) {
  uint64_t pages = 0;
  rlimit limit{};
  if (!(std::ifstream("/proc/self/statm") >> pages) || getrlimit(RLIMIT_AS, &limit) != 0) return false;
  limit.rlim_cur = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE) + extraBytes);
  return setrlimit(RLIMIT_AS, &limit) == 0;
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
    // The child prints the exit status and message of the refusal; it must be a damaged file's, for `reason`.
    EXPECT_EXIT(
        {
          if (!CapAddressSpaceGrowth(uint64_t{256} << 20)) std::_Exit(2);
          try {
            DecodeTga(bytes, "huge.tga");
          } catch (const ToolError& e) {
            std::fprintf(stderr, "%d %s\n", e.exitCode(), e.what());
          }
          std::_Exit(0);
        },
        testing::ExitedWithCode(0), std::to_string(kExitFailed) + " .*" + reason)
        << bytes.size();
  }
  // 300 x 200 in runs of 128, the least a compressed file can hold for its size, still decodes.
  std::vector<uint8_t> runs;
  for (int left = 300 * 200; left > 0; left -= 128)
    runs.insert(runs.end(), {uint8_t(0x7F + std::min(left, 128)), 1, 2, 3, 4});
  const Image image = DecodeTga(File(10, 300, 200, 32, runs), "runs.tga");
  EXPECT_EQ(image.pixels, std::vector<uint32_t>(300 * 200, PackPixel(3, 2, 1, 4)));
}

}  // namespace
}  // namespace lxt
