// The native library and lettrix.dll draw the same pixels. The native run renders every scene and
// writes its outline block and result beside its test programs; the Windows run (given the native build
// directory in LETTRIX_NATIVE_BUILD) reads the same blocks, renders them through the DLL and compares.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/crosscheck_scenes.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

std::vector<uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool WriteFile(const std::string& path, const void* data, size_t size) {
  std::ofstream out(path, std::ios::binary);
  out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
  return static_cast<bool>(out);
}

class CrossCheck : public ::testing::TestWithParam<CrossScene> {};

TEST_P(CrossCheck, SameBlockAndSettingsGiveTheSamePixels) {
  const CrossScene& s = GetParam();
  const char* native = std::getenv("LETTRIX_NATIVE_BUILD");
  const bool compare = native != nullptr && *native != '\0';
  const std::string ownDir = "crosscheck";
  const std::string inDir = compare ? std::string(native) + "/bin/crosscheck" : ownDir;

  std::vector<uint8_t> bytes;
  if (compare) {
    bytes = ReadFile(inDir + "/" + s.name + ".block");
    ASSERT_FALSE(bytes.empty()) << "no block from the native run in " << inDir;
  } else {
    const TextScene laidOut(s.text, s.pixelSize, 6, s.height * 0.75);
    bytes = laidOut.bytes();
  }
  const TextScene scene(bytes);
  Process p;
  s.apply(p);
  Image image(s.width, s.height, s.ground);
  ASSERT_TRUE(p.render(scene, image));
  ASSERT_GT(image.countOther(s.ground), 100u) << "the scene draws something";

  if (!compare) {
    std::filesystem::create_directories(ownDir);
    ASSERT_TRUE(WriteFile(ownDir + "/" + s.name + ".block", bytes.data(), bytes.size()));
    ASSERT_TRUE(
        WriteFile(ownDir + "/" + s.name + ".pixels", image.pixels().data(), image.pixels().size() * 4));
    return;
  }
  const std::vector<uint8_t> expected = ReadFile(inDir + "/" + s.name + ".pixels");
  ASSERT_EQ(expected.size(), image.pixels().size() * 4);
  const auto* got = reinterpret_cast<const uint8_t*>(image.pixels().data());
  size_t differing = 0, beyondOne = 0;
  for (size_t i = 0; i < expected.size(); ++i) {
    differing += got[i] != expected[i];
    beyondOne += std::abs(int{got[i]} - int{expected[i]}) > 1;
  }
  if (s.systemMath == nullptr) {
    EXPECT_EQ(differing, 0u) << "bytes that differ from the native library";
  } else {
    EXPECT_EQ(beyondOne, 0u) << "bytes that differ by more than 1 (" << s.systemMath << ")";
  }
}

INSTANTIATE_TEST_SUITE_P(Scenes, CrossCheck, ::testing::ValuesIn(CrossScenes()),
                         [](const ::testing::TestParamInfo<CrossScene>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
}  // namespace lx::test
