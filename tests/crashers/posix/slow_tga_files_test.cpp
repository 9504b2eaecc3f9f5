// TGA files whose header claims far more pixels than the file holds. They once cost seconds and
// hundreds of megabytes before the loader gave its answer; the answer must stay what it was, at the
// cost of the bytes the file really holds.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "image/tga_reader.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/posix/memory_limits.h"

namespace lx {
namespace {

// Runs in a death-test child: loads the file and ends the child with 0 when the record and the
// resident memory the load added are as expected, 1 otherwise.
void LoadAndCheckInChild(const test::Bytes& bytes, bool expectLoaded, uint64_t expectBlockBytes) {
  const std::string path = test::WriteTempFile("slow_crasher.tga", bytes);
  const uint64_t residentBefore = test::CurrentMemoryUse().residentBytes;
  test::OwnedTga image;
  const bool loaded = LoadTGA(&image, path.c_str());
  const uint64_t residentAfter = test::CurrentMemoryUse().residentBytes;
  std::remove(path.c_str());
  bool ok = loaded == expectLoaded && (image.message[0] == '\0' || !loaded) &&
            platform::GlobalSize(image.handle) == expectBlockBytes;
  // The one pixel byte the file holds, then zeros.
  if (ok && expectBlockBytes > 0)
    ok = image.pixels[0] == bytes[18] && image.pixels[expectBlockBytes - 1] == 0;
  // The block is as large as the header claims, but only the pages the file filled may be resident.
  std::_Exit(ok && residentAfter < residentBefore + (uint64_t{64} << 20) ? 0 : 1);
}

TEST(SlowTgaFiles, CutShortFilesAnswerWithoutTouchingTheirClaimedSize) {
  // 19 bytes claiming 63232 x 2064 at 24 bits: a 373 MiB image of one byte and zeros.
  EXPECT_EXIT(
      LoadAndCheckInChild(test::TgaHeader(2, 63232, 2064, 24, 0, {0x5A}), true, uint64_t{63232} * 2064 * 3),
      testing::ExitedWithCode(0), "");
  // One run of 128 pixels, then nothing, for an image of 65535 x 2048 at 32 bits.
  EXPECT_EXIT(LoadAndCheckInChild(test::TgaHeader(10, 65535, 2048, 32, 0, {0xFF, 1, 2, 3, 4}), false, 0),
              testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace lx
