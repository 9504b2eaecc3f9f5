// TGA files whose header claims far more pixels than the file holds once cost seconds and hundreds of
// megabytes; the answer must stay what it was, at the cost of the bytes the file really holds.
#include <gtest/gtest.h>
#include <unistd.h>
#include <cstdio>
#include <fstream>
#include "tests/image/tga_test_files.h"

namespace lx::test {
namespace {
// The memory this process has resident now.
uint64_t ResidentBytes() {
  uint64_t size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

// In a death-test child: exits 0 when the record is as expected (a loaded block as large as the header
// claims, the file's one byte, then zeros) and the load added under 64 MiB of resident memory.
void LoadAndCheckInChild(const Bytes& bytes, bool expectLoaded, uint64_t expectBlockBytes) {
  const std::string path = WriteTempFile("slow_crasher.tga", bytes);
  const uint64_t before = ResidentBytes();
  OwnedTga image;
  const bool loaded = LoadTGA(&image, path.c_str());
  const bool small = ResidentBytes() < before + (uint64_t{64} << 20);
  std::remove(path.c_str());
  bool ok = loaded == expectLoaded && (image.message[0] == '\0' || !loaded) &&
            platform::GlobalSize(image.handle) == expectBlockBytes;
  if (ok && expectBlockBytes > 0)
    ok = image.pixels[0] == bytes[18] && image.pixels[expectBlockBytes - 1] == 0;
  std::_Exit(ok && small ? 0 : 1);
}

TEST(SlowTgaFiles, CutShortFilesAnswerWithoutTouchingTheirClaimedSize) {
  // 19 bytes claiming 63232 x 2064 at 24 bits: a 373 MiB image of one byte and zeros.
  EXPECT_EXIT(LoadAndCheckInChild(TgaHeader(2, 63232, 2064, 24, 0, {0x5A}), true, uint64_t{63232} * 2064 * 3),
              testing::ExitedWithCode(0), "");
  // One run of 128 pixels, then nothing, for an image of 65535 x 2048 at 32 bits.
  EXPECT_EXIT(LoadAndCheckInChild(TgaHeader(10, 65535, 2048, 32, 0, {0xFF, 1, 2, 3, 4}), false, 0),
              testing::ExitedWithCode(0), "");
}
}  // namespace
}  // namespace lx::test
