// The native run draws each scene from its block recorded in the tree (so checksums depend on the library
// alone, not the machine's fonts), checks the checksum and writes block and pixels; the Windows run
// (LETTRIX_NATIVE_BUILD: the native build) draws them through lettrix.dll and compares. No block: record one.
#include <gtest/gtest.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>
#include "tests/support/crosscheck_scenes.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {
bool WriteFile(const std::string& path, const void* data, size_t size) {
  std::ofstream out(path, std::ios::binary);
  return static_cast<bool>(out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size)));
}

class CrossCheck : public ::testing::TestWithParam<CrossScene> {};

TEST_P(CrossCheck, SameBlockAndSettingsGiveTheSamePixels) {
  const CrossScene& s = GetParam();
  const char* native = std::getenv("LETTRIX_NATIVE_BUILD");
  const bool compare = native != nullptr && *native != '\0';
  const std::string own = std::string("crosscheck/") + s.name,
                    recorded = std::string(LETTRIX_REFERENCE_DIR) + "/" + s.name + ".block",
                    in = compare ? std::string(native) + "/bin/" + own : recorded;
  std::vector<uint8_t> bytes = ReadBytes(compare ? in + ".block" : recorded);
  if (bytes.empty()) {
    ASSERT_FALSE(compare) << "no block from the native run in " << in;
    bytes = TextScene(s.text, s.pixelSize, 6, s.height * 0.75).bytes();
    ASSERT_TRUE(WriteFile(recorded, bytes.data(), bytes.size()));
    ADD_FAILURE() << "recorded a new block: " << recorded;
  }
  Process p;
  s.apply(p);
  Image image(s.width, s.height, s.ground);
  ASSERT_TRUE(p.render(TextScene(bytes), image));
  ASSERT_GT(image.countOther(s.ground), 0u) << "the scene draws something";
  const auto* got = reinterpret_cast<const uint8_t*>(image.pixels().data());
  const size_t size = image.pixels().size() * 4;
  if (!compare) {
    EXPECT_EQ(image.checksum(), s.reference) << std::hex << "0x" << image.checksum();
    std::filesystem::create_directories("crosscheck");
    ASSERT_TRUE(WriteFile(own + ".block", bytes.data(), bytes.size()) &&
                WriteFile(own + ".pixels", got, size));
    return;
  }
  const std::vector<uint8_t> expected = ReadBytes(in + ".pixels");
  ASSERT_EQ(expected.size(), size);
  size_t differing = 0, beyondOne = 0;
  for (size_t i = 0; i < expected.size(); ++i) {
    differing += got[i] != expected[i];
    beyondOne += std::abs(int{got[i]} - int{expected[i]}) > 1;
  }
  EXPECT_EQ(s.systemMath ? beyondOne : differing, 0u)
      << "bytes that differ from the native library"
      << (s.systemMath ? std::string(" by more than 1 (") + s.systemMath + ")" : "");
}

INSTANTIATE_TEST_SUITE_P(Scenes, CrossCheck, ::testing::ValuesIn(CrossScenes()),
                         [](const ::testing::TestParamInfo<CrossScene>& info) {
                           return std::string(info.param.name);
                         });
}  // namespace
}  // namespace lx::test
