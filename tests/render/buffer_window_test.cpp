// Text far larger than the caller's buffer, running off it on every side: the work images keep only
// what can reach the buffer, and the buffer must come out exactly as the same part of a buffer large
// enough to take the whole text. Translating the text by (-x, -y) moves the small buffer's window to
// (x, y) of the large one without changing a pixel of the drawing.
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr int32_t kLargeWidth = 1500, kLargeHeight = 560;
constexpr int32_t kSmallWidth = 90, kSmallHeight = 60;

// A background with structure, so that every blend is checked against varying pixels.
uint32_t Background(int32_t x, int32_t y) {
  return Pixel(static_cast<uint8_t>(x * 7 + y * 3), static_cast<uint8_t>(x), static_cast<uint8_t>(y),
               static_cast<uint8_t>(x ^ y));
}

Image WithBackground(int32_t width, int32_t height, int32_t originX, int32_t originY) {
  Image image(width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) image.set(x, y, Background(originX + x, originY + y));
  }
  return image;
}

std::vector<uint32_t> Stripes(int32_t width, int32_t height) {
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      pixels[static_cast<size_t>(y) * width + x] = ((x / 3 + y / 5) % 2) ? 0xFF2080E0u : 0xFFE0C040u;
    }
  }
  return pixels;
}

struct Effects {
  std::string name;
  void (*set)(Process&);
};

const Effects kEffects[] = {
    {"every effect, textured Outline",
     [](Process& p) {
       p.faceStart(255, 250, 220, 40).faceEnd(200, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
       p.outlineTexture(Stripes(17, 11), 17, 11, 2);
       p.thickness(5).border3D(35, 3, -0.6);
       p.shadow(160, 10, 0, 40).shadowOffset(9, 7).shadowZoom(1.1, 0.95).extrude(1, 1);
       p.blur(3, 2, 4);
     }},
    {"radial Face, stretched texture, blurred zoomed Shadow",
     [](Process& p) {
       p.faceStart(255, 20, 200, 90).faceEnd(120, 200, 20, 90).faceGradient(2, 0.2, 0.9);
       p.outlineTexture(Stripes(23, 9), 23, 9, 1);
       p.thickness(3).shadow(200, 0, 0, 0).shadowOffset(-12, 15).shadowZoom(1.3, 1.2).blur(5, 0, 9);
     }},
    {"angled Face texture centred, Outline blurred past the Face",
     [](Process& p) {
       p.faceTexture(Stripes(40, 30), 40, 30, 0);
       p.outline(180, 30, 60, 200).thickness(2).shadow(120, 50, 50, 50).shadowOffset(4, -6).blur(7, 6, 2);
     }},
    {"extruded Shadow softened, not blurred",
     [](Process& p) {
       p.faceGradient(3, 0.7).faceStart(255, 255, 255, 0).faceEnd(255, 0, 128, 255);
       p.outline(255, 0, 0, 0).thickness(1).shadow(140, 90, 0, 0).shadowOffset(-14, -11).extrude(1, 0);
     }},
};

void PrintTo(const Effects& effects, std::ostream* os) {
  *os << effects.name;
}

struct Window {
  int32_t x, y;
};

class BufferWindow : public ::testing::TestWithParam<Effects> {};

TEST_P(BufferWindow, SmallBufferMatchesThePartOfALargeOne) {
  const TextScene scene("Wgj", 420, 260, 400);
  Image large = WithBackground(kLargeWidth, kLargeHeight, 0, 0);
  {
    Process p;
    GetParam().set(p);
    ASSERT_TRUE(p.render(scene, large));
  }
  const text::InkBox& ink = scene.ink();
  ASSERT_GT(ink.left, 100);
  ASSERT_LT(ink.right, kLargeWidth - 100);
  ASSERT_GT(ink.top, 40);
  ASSERT_LT(ink.bottom, kLargeHeight - 40);

  // Windows off every edge of the text, across it, inside a stem and wholly away from it.
  const int32_t midX = (ink.left + ink.right) / 2, midY = (ink.top + ink.bottom) / 2;
  const Window windows[] = {
      {ink.left - 60, midY},
      {ink.right - 30, midY},
      {midX, ink.top - 40},
      {midX, ink.bottom - 20},
      {ink.left - 40, ink.top - 30},
      {ink.right - 50, ink.bottom - 30},
      {ink.left + 20, ink.top + 60},
      {midX - 45, midY - 30},
      {ink.left + 300, ink.top + 140},
      {10, 10},
  };
  for (const Window& w : windows) {
    SCOPED_TRACE(::testing::Message() << "window at " << w.x << ", " << w.y);
    Image small = WithBackground(kSmallWidth, kSmallHeight, w.x, w.y);
    Process p;
    GetParam().set(p);
    p.translate(-w.x, -w.y);
    ASSERT_TRUE(p.render(scene, small));
    size_t differing = 0;
    for (int32_t y = 0; y < kSmallHeight; ++y) {
      for (int32_t x = 0; x < kSmallWidth; ++x) {
        if (small.at(x, y) != large.at(w.x + x, w.y + y)) ++differing;
      }
    }
    EXPECT_EQ(differing, 0u);
  }
}

INSTANTIATE_TEST_SUITE_P(AllEffects, BufferWindow, ::testing::ValuesIn(kEffects),
                         [](const ::testing::TestParamInfo<Effects>& info) {
                           std::string name;
                           for (char c : info.param.name)
                             name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                           return name;
                         });

}  // namespace
}  // namespace lx::test
