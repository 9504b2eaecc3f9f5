// Render's refusals leave the caller's buffer byte for byte as it was; hostile sizes neither crash nor
// reach memory the caller did not give.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/guard_pages.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"
#include "tools/text_outline/block_writer.h"

namespace lx::test {
namespace {

using text::detail::ContourPoint;
using text::detail::PointKind;

constexpr uint32_t kPattern = 0xA55A3CC3;
constexpr int32_t kOne = 65536;

ContourPoint On(int32_t x, int32_t y) {
  return {x * kOne, y * kOne, PointKind::kOn};
}

// An outline block made of the given contours.
TextScene Block(const std::vector<std::vector<ContourPoint>>& contours) {
  std::vector<uint8_t> bytes;
  for (const auto& c : contours) EXPECT_TRUE(text::detail::AppendContour(c, &bytes));
  return TextScene(bytes);
}

class RenderRefusals : public ::testing::Test {
 protected:
  TextScene text_{"Refused", 32, 4, 40};
  Process process_;
  Image image_{160, 60, kPattern};

  void SetUp() override {
    process_.outline(255, 0, 0, 0).thickness(2).shadow(255, 0, 0, 0).shadowOffset(3, 3).blur(1, 1, 1);
  }
  // Render must refuse and leave the buffer as it was.
  void ExpectRefused(RenderHandle* slot, void* block, const int32_t* w, const int32_t* h, void* buffer) {
    const Image before = image_;
    EXPECT_FALSE(Render(slot, block, w, h, buffer));
    EXPECT_EQ(image_, before);
  }
};

TEST_F(RenderRefusals, EachArgumentCheckLeavesTheBufferUntouched) {
  RenderHandle none = 0, allOnes = ~RenderHandle{0};
  const int32_t zero = 0, minus = -1;
  ExpectRefused(&none, text_.block(), image_.width(), image_.height(), image_.data());
  ExpectRefused(&allOnes, text_.block(), image_.width(), image_.height(), image_.data());
  ExpectRefused(process_.slot(), nullptr, image_.width(), image_.height(), image_.data());
  ExpectRefused(process_.slot(), text_.block(), &zero, image_.height(), image_.data());
  ExpectRefused(process_.slot(), text_.block(), &minus, image_.height(), image_.data());
  ExpectRefused(process_.slot(), text_.block(), image_.width(), &zero, image_.data());
  ExpectRefused(process_.slot(), text_.block(), image_.width(), &minus, image_.data());
  ExpectRefused(process_.slot(), text_.block(), image_.width(), image_.height(), nullptr);
  // A block that is no global memory object has no size.
  std::vector<uint8_t> loose = text_.bytes();
  ExpectRefused(process_.slot(), loose.data(), image_.width(), image_.height(), image_.data());
  // The same arguments with a good block draw.
  EXPECT_TRUE(Render(process_.slot(), text_.block(), image_.width(), image_.height(), image_.data()));
  EXPECT_GT(image_.countOther(kPattern), 500u);
}

TEST_F(RenderRefusals, BufferThatEndsTooSoonIsNotTouched) {
  GuardedPages pages(3);
  pages.protect(2, GuardedPages::Access::kNone);
  const int32_t width = static_cast<int32_t>(pages.pageSize() / 4);
  std::memset(pages.page(0), 0x5A, 2 * pages.pageSize());
  const int32_t twoRows = 2, threeRows = 3;
  ExpectRefused(process_.slot(), text_.block(), &width, &threeRows, pages.page(0));
  // Read-only memory is refused as well.
  pages.protect(1, GuardedPages::Access::kRead);
  ExpectRefused(process_.slot(), text_.block(), &width, &twoRows, pages.page(0));
  for (size_t i = 0; i < 2 * pages.pageSize(); ++i) ASSERT_EQ(pages.page(0)[i], 0x5A);
  pages.protect(1, GuardedPages::Access::kReadWrite);
  EXPECT_TRUE(Render(process_.slot(), text_.block(), &width, &twoRows, pages.page(0)));
}

TEST_F(RenderRefusals, SizesWhoseByteCountOverflowsAreRefused) {
  GuardedPages pages(2);
  pages.protect(1, GuardedPages::Access::kNone);
  // 65536 x 65536 x 4 wraps to 0 in 32 bits; 0x40000001 x 1 x 4 wraps to 4.
  const int32_t big = 65536, wide = 0x40000001, one = 1;
  std::memset(pages.page(0), 0x33, pages.pageSize());
  EXPECT_FALSE(Render(process_.slot(), text_.block(), &big, &big, pages.page(0)));
  EXPECT_FALSE(Render(process_.slot(), text_.block(), &wide, &one, pages.page(0)));
  const int32_t maxInt = INT32_MAX;
  EXPECT_FALSE(Render(process_.slot(), text_.block(), &maxInt, &maxInt, pages.page(0)));
  for (size_t i = 0; i < pages.pageSize(); ++i) ASSERT_EQ(pages.page(0)[i], 0x33);
}

TEST_F(RenderRefusals, OutlinesWithoutAreaAreRefused) {
  // Every point on one horizontal line: the rectangle has no height.
  const TextScene flat = Block({{On(10, 20), On(60, 20), On(30, 20)}});
  ExpectRefused(process_.slot(), flat.block(), image_.width(), image_.height(), image_.data());
  // A contour whose length runs past the block.
  std::vector<uint8_t> bytes = text_.bytes();
  bytes[0] = 0xFF, bytes[1] = 0xFF;
  const TextScene overrun(bytes);
  ExpectRefused(process_.slot(), overrun.block(), image_.width(), image_.height(), image_.data());
  // A foreign contour type.
  bytes = text_.bytes();
  bytes[4] = 25;
  const TextScene foreign(bytes);
  ExpectRefused(process_.slot(), foreign.block(), image_.width(), image_.height(), image_.data());
  // Zero bytes: the first contour claims no length.
  const TextScene zeros(std::vector<uint8_t>(64, 0));
  ExpectRefused(process_.slot(), zeros.block(), image_.width(), image_.height(), image_.data());
}

TEST_F(RenderRefusals, OutlinesTooLargeForAWorkImageDrawNothing) {
  // A square 64000 pixels wide: its work image would take 16 GB.
  const TextScene huge =
      Block({{On(-32000, -32000), On(32000, -32000), On(32000, 32000), On(-32000, 32000)}});
  const Image before = image_;
  EXPECT_TRUE(Render(process_.slot(), huge.block(), image_.width(), image_.height(), image_.data()));
  EXPECT_EQ(image_, before);
}

TEST_F(RenderRefusals, HostileShadowZoomAndOffsetsDrawNothingOfTheShadow) {
  Process p;
  p.face(0, 0, 0, 0).shadow(255, 0, 0, 0).shadowZoom(1.0e9, 1.0e-9);
  Image out(160, 60, kPattern);
  EXPECT_TRUE(p.render(text_, out));
  EXPECT_EQ(out.countOther(kPattern), 0u);
  p.shadowZoom(1.0, 1.0).shadowOffset(INT32_MAX, INT32_MIN);
  EXPECT_TRUE(p.render(text_, out));
  EXPECT_EQ(out.countOther(kPattern), 0u);
  p.translate(INT32_MAX, INT32_MAX).translate(INT32_MAX, INT32_MAX).shadowOffset(0, 0).face(255, 1, 2, 3);
  EXPECT_TRUE(p.render(text_, out));
  EXPECT_EQ(out.countOther(kPattern), 0u);
}

TEST_F(RenderRefusals, HugeExtrusionDrawsWhatAnyLongOneDrawsOnTheBuffer) {
  // Reaching 100000 pixels to the left, the block covers the buffer left of the glyphs just as one that
  // reaches 1000 pixels does; the far part costs nothing.
  auto draw = [&](int32_t dx, int32_t dy, uint8_t blur) {
    Process p;
    p.face(0, 0, 0, 0).shadow(255, 30, 30, 90).shadowOffset(dx, dy).extrude(1, 1).blur(0, 0, blur);
    Image out(160, 60, kPattern);
    EXPECT_TRUE(p.render(text_, out));
    return out;
  };
  const Image far = draw(-100000, 0, 0);
  EXPECT_EQ(far, draw(-1000, 0, 0));
  EXPECT_EQ(draw(-100000, 0, 2), draw(-1000, 0, 2));
  EXPECT_EQ(draw(0, 70000, 0), draw(0, 700, 0));
  EXPECT_GT(far.countOther(kPattern), 2000u);
  // A block whose shape lies 50000 pixels off the buffer and which crosses it on its way to the offset
  // would take every one of its steps over an image that long: it counts as too large and is not drawn.
  Process p;
  p.face(0, 0, 0, 0).shadow(255, 30, 30, 90).shadowOffset(100000, 0).extrude(1, 1).translate(-50000, 0);
  Image out(160, 60, kPattern);
  EXPECT_TRUE(p.render(text_, out));
  EXPECT_EQ(out.countOther(kPattern), 0u);
}

TEST_F(RenderRefusals, CreateSetRenderDestroyCyclesReleaseEverything) {
  std::vector<uint32_t> texture(64 * 64, 0x00804020);
  for (int round = 0; round < 20; ++round) {
    Process p;
    p.faceGradient(round % 4).outlineGradient((round + 1) % 4).thickness(round % 3);
    p.faceStops({0xFF0000FF, 0xFF00FF00}, {1, 3});
    p.faceTexture(texture, 64, 64, round % 3);
    p.outlineTexture(texture, 64, 64, (round + 1) % 3);
    p.shadow(200, 0, 0, 0)
        .shadowOffset(round % 5, 2)
        .extrude(round % 2, 1)
        .blur(round % 2, round % 3, round % 4);
    p.emboss(0.5 * round).border3D(20, 1 + round % 3, 0.3);
    Image out(160, 60);
    EXPECT_TRUE(p.render(text_, out));
    EXPECT_TRUE(p.render(text_, out));
  }
}

}  // namespace
}  // namespace lx::test
