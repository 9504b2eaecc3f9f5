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
using lx::test::TgaHeader;

// In a death-test child: caps the address space at 256 MiB more than is mapped now (a larger allocation
// fails instead of taking the machine's memory), decodes, prints the refusal's exit status and message.
void DecodeInChild(const std::vector<uint8_t>& bytes) {
  uint64_t pages = 0;
  rlimit limit{};
  if (!(std::ifstream("/proc/self/statm") >> pages) || getrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(2);
  limit.rlim_cur = static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE) + (uint64_t{256} << 20));
  if (setrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(2);
  try {
    DecodeTga(bytes, "huge.tga");
  } catch (const ToolError& e) {
    std::fprintf(stderr, "%d %s\n", e.exitCode(), e.what());
  }
  std::_Exit(0);
}

TEST(ProgramTgaCrashers, HeadersClaimingMorePixelsThanTheFileHoldsAreRefusedBeforeAllocating) {
  const std::string compressed = "compressed pixel data is cut short", raw = "pixel data is cut short";
  const std::pair<std::vector<uint8_t>, std::string> files[] = {
      {TgaHeader(10, 65535, 4096, 32), compressed},   // took 34 s and 1 GB
      {TgaHeader(10, 65535, 65535, 32), compressed},  // asked for 16 GiB
      {TgaHeader(10, 65535, 65535, 24, 0, {0xFF, 1, 2, 3}), compressed},
      {TgaHeader(2, 65535, 65535, 32), raw},
      {TgaHeader(2, 65535, 4096, 24, 0, std::vector<uint8_t>(65535 * 3, 7)), raw},
  };
  for (const auto& [bytes, reason] : files) {
    EXPECT_EXIT(DecodeInChild(bytes), testing::ExitedWithCode(0),
                std::to_string(kExitFailed) + " .*" + reason)
        << bytes.size();
  }
  // 300 x 200 in runs of 128, the least a compressed file can hold for its size, still decodes.
  std::vector<uint8_t> runs;
  for (int left = 300 * 200; left > 0; left -= 128)
    runs.insert(runs.end(), {uint8_t(0x7F + std::min(left, 128)), 1, 2, 3, 4});
  const Image image = DecodeTga(TgaHeader(10, 300, 200, 32, 0, runs), "runs.tga");
  EXPECT_EQ(image.pixels, std::vector<uint32_t>(300 * 200, PackPixel(3, 2, 1, 4)));
}
}  // namespace
}  // namespace lxt
