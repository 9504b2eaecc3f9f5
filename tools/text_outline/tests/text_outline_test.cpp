#include <gtest/gtest.h>

#include <cstring>

#include "tools/text_outline/block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace {

using detail::ContourPoint;
using detail::PointKind;

constexpr int32_t kOne = 65536;

uint32_t U32(const std::vector<uint8_t>& b, size_t at) {
  return uint32_t{b[at]} | uint32_t{b[at + 1]} << 8 | uint32_t{b[at + 2]} << 16 | uint32_t{b[at + 3]} << 24;
}
uint16_t U16(const std::vector<uint8_t>& b, size_t at) {
  return static_cast<uint16_t>(b[at] | b[at + 1] << 8);
}

ContourPoint On(int x, int y) {
  return {x * kOne, y * kOne, PointKind::kOn};
}
ContourPoint Conic(int x, int y) {
  return {x * kOne, y * kOne, PointKind::kConic};
}

// A record as read back: type and points in whole pixels.
struct ReadRecord {
  uint16_t type;
  std::vector<std::pair<int32_t, int32_t>> points;
};
struct ReadContour {
  std::pair<int32_t, int32_t> start;
  std::vector<ReadRecord> records;
};

// Walks a block, checking the layout as it goes.
std::vector<ReadContour> ReadBlock(const std::vector<uint8_t>& b) {
  std::vector<ReadContour> contours;
  size_t at = 0;
  while (at < b.size()) {
    EXPECT_GE(b.size() - at, 16u);
    const uint32_t cb = U32(b, at);
    EXPECT_EQ(U32(b, at + 4), 24u);
    EXPECT_LE(cb, b.size() - at);
    if (cb < 16 || cb > b.size() - at) return contours;
    ReadContour c;
    c.start = {static_cast<int32_t>(U32(b, at + 8)), static_cast<int32_t>(U32(b, at + 12))};
    size_t r = at + 16;
    while (r < at + cb) {
      ReadRecord rec;
      rec.type = U16(b, r);
      const uint16_t count = U16(b, r + 2);
      for (uint16_t k = 0; k < count; ++k) {
        rec.points.push_back(
            {static_cast<int32_t>(U32(b, r + 4 + 8 * k)), static_cast<int32_t>(U32(b, r + 8 + 8 * k))});
      }
      r += 4 + 8 * size_t{count};
      c.records.push_back(rec);
    }
    EXPECT_EQ(r, at + cb);
    contours.push_back(c);
    at += cb;
  }
  return contours;
}

std::pair<int32_t, int32_t> P(int x, int y) {
  return {x * kOne, y * kOne};
}

TEST(AppendContour, StraightContourIsOneLineRecordWithTheClosingEdgeImplied) {
  std::vector<uint8_t> block;
  ASSERT_TRUE(detail::AppendContour({On(0, 0), On(10, 0), On(10, 10), On(0, 10)}, &block));
  ASSERT_EQ(block.size(), 16u + 4 + 3 * 8);
  EXPECT_EQ(U32(block, 0), block.size());
  const auto contours = ReadBlock(block);
  ASSERT_EQ(contours.size(), 1u);
  EXPECT_EQ(contours[0].start, P(0, 0));
  ASSERT_EQ(contours[0].records.size(), 1u);
  EXPECT_EQ(contours[0].records[0].type, 1);
  EXPECT_EQ(contours[0].records[0].points,
            (std::vector<std::pair<int32_t, int32_t>>{P(10, 0), P(10, 10), P(0, 10)}));
}

TEST(AppendContour, ConicRunsBecomeSplineRecordsEndingOnCurve) {
  std::vector<uint8_t> block;
  // Starts on a conic point: the walk begins at the first on-curve point and wraps round.
  ASSERT_TRUE(
      detail::AppendContour({Conic(0, 0), On(10, 0), On(10, 10), Conic(5, 20), Conic(0, 20)}, &block));
  const auto contours = ReadBlock(block);
  ASSERT_EQ(contours.size(), 1u);
  EXPECT_EQ(contours[0].start, P(10, 0));
  ASSERT_EQ(contours[0].records.size(), 2u);
  EXPECT_EQ(contours[0].records[0].type, 1);
  EXPECT_EQ(contours[0].records[0].points, (std::vector<std::pair<int32_t, int32_t>>{P(10, 10)}));
  EXPECT_EQ(contours[0].records[1].type, 2);
  EXPECT_EQ(contours[0].records[1].points,
            (std::vector<std::pair<int32_t, int32_t>>{P(5, 20), P(0, 20), P(0, 0), P(10, 0)}));
}

TEST(AppendContour, AllConicContourStartsBetweenItsLastAndFirstPoints) {
  std::vector<uint8_t> block;
  ASSERT_TRUE(detail::AppendContour({Conic(0, 0), Conic(10, 0), Conic(10, 10), Conic(0, 10)}, &block));
  const auto contours = ReadBlock(block);
  ASSERT_EQ(contours.size(), 1u);
  EXPECT_EQ(contours[0].start, P(0, 5));
  ASSERT_EQ(contours[0].records.size(), 1u);
  EXPECT_EQ(contours[0].records[0].type, 2);
  EXPECT_EQ(contours[0].records[0].points.size(), 5u);
  EXPECT_EQ(contours[0].records[0].points.back(), P(0, 5));
}

TEST(AppendContour, RefusesCubicsAndSkipsDegenerateContours) {
  std::vector<uint8_t> block;
  EXPECT_FALSE(detail::AppendContour({On(0, 0), {kOne, kOne, PointKind::kCubic}, On(3, 0)}, &block));
  EXPECT_TRUE(detail::AppendContour({On(4, 4)}, &block));
  EXPECT_TRUE(detail::AppendContour({}, &block));
  EXPECT_TRUE(block.empty());
}

TEST(ToFixed, RoundsToTheNearestUnitAndRefusesTheUnrepresentable) {
  int32_t f = 0;
  ASSERT_TRUE(detail::ToFixed(1.5, &f));
  EXPECT_EQ(f, 98304);
  ASSERT_TRUE(detail::ToFixed(-2.0, &f));
  EXPECT_EQ(f, -2 * kOne);
  EXPECT_FALSE(detail::ToFixed(32768.0, &f));
  EXPECT_FALSE(detail::ToFixed(-40000.0, &f));
}

TEST(DecodeUtf8, AcceptsEveryLengthAndRefusesMalformedSequences) {
  std::vector<uint32_t> cps;
  ASSERT_TRUE(detail::DecodeUtf8("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", &cps));
  EXPECT_EQ(cps, (std::vector<uint32_t>{0x41, 0xE9, 0x20AC, 0x1F600}));
  for (const char* bad : {"\x80", "\xC0\x80", "\xED\xA0\x80", "\xE2\x82", "\xF8\x88\x80\x80\x80", "a\xC3"}) {
    EXPECT_FALSE(detail::DecodeUtf8(bad, &cps)) << bad;
  }
}

TEST(MeasureOutlineBlock, RoundsTheStartHalfUpAndBoxesEveryOtherPointOutward) {
  std::vector<uint8_t> block;
  // Start at (10.5, 3), a line point at (0.2, 9.7).
  ASSERT_TRUE(detail::AppendContour({{10 * kOne + kOne / 2, 3 * kOne, PointKind::kOn},
                                     {kOne / 5, 9 * kOne + 7 * kOne / 10, PointKind::kOn},
                                     {4 * kOne, 5 * kOne, PointKind::kOn}},
                                    &block));
  const InkBox box = MeasureOutlineBlock(block.data(), block.size());
  EXPECT_EQ(box.left, 0);
  EXPECT_EQ(box.top, 3);
  EXPECT_EQ(box.right, 11);  // the start enters as 11
  EXPECT_EQ(box.bottom, 10);

  std::vector<uint8_t> below = {};
  ASSERT_TRUE(detail::AppendContour({{kOne / 2 - 1, 0, PointKind::kOn}, On(-3, 2), On(-3, -2)}, &below));
  EXPECT_EQ(MeasureOutlineBlock(below.data(), below.size()).right, 0);  // 0.49998 rounds down
}

TEST(MeasureOutlineBlock, MalformedBlocksMeasureEmpty) {
  std::vector<uint8_t> block;
  ASSERT_TRUE(detail::AppendContour({On(0, 0), On(10, 0), On(10, 10)}, &block));
  EXPECT_TRUE(MeasureOutlineBlock(block.data(), block.size() - 1).empty());  // cb runs past the end
  EXPECT_TRUE(MeasureOutlineBlock(nullptr, block.size()).empty());
  std::vector<uint8_t> foreign = block;
  foreign[4] = 25;  // not TT_POLYGON_TYPE
  EXPECT_TRUE(MeasureOutlineBlock(foreign.data(), foreign.size()).empty());
  std::vector<uint8_t> overrun = block;
  overrun[18] = 9;  // the record claims nine points
  EXPECT_TRUE(MeasureOutlineBlock(overrun.data(), overrun.size()).empty());
  std::vector<uint8_t> zero = block;
  std::memset(zero.data(), 0, 4);  // cb 0 would never advance
  EXPECT_TRUE(MeasureOutlineBlock(zero.data(), zero.size()).empty());
}

TEST(FontFileInfo, NamesTheFamilyWeightAndSlantOfDejaVuFaces) {
  std::vector<uint8_t> file;
  detail::FontFileInfo info;
  ASSERT_TRUE(detail::ReadWholeFile(kDefaultFontPath, &file));
  ASSERT_TRUE(detail::ReadFontFileInfo(file, &info));
  EXPECT_EQ(info.family, u"DejaVu Sans");
  EXPECT_EQ(info.weight, 700);
  EXPECT_FALSE(info.italic);

  ASSERT_TRUE(detail::ReadWholeFile("/usr/share/fonts/truetype/dejavu/DejaVuSans-Oblique.ttf", &file));
  ASSERT_TRUE(detail::ReadFontFileInfo(file, &info));
  EXPECT_EQ(info.weight, 400);
  EXPECT_TRUE(info.italic);

  file.resize(40);
  EXPECT_FALSE(detail::ReadFontFileInfo(file, &info));
  EXPECT_FALSE(detail::ReadWholeFile("/nonexistent/font.ttf", &file));
}

OutlineBlock Build(const std::string& text, int size, double x, double baseline) {
  TextLine line;
  line.text = text;
  line.pixelSize = size;
  line.originX = x;
  line.baselineY = baseline;
  OutlineBlock block;
  std::string error;
  EXPECT_TRUE(BuildOutlineBlock(line, &block, &error)) << error;
  return block;
}

TEST(BuildOutlineBlock, PlacesTheGlyphsOnTheBaselineWithYGrowingDownwards) {
  const OutlineBlock h = Build("H", 64, 10, 100);
  ASSERT_FALSE(h.bytes.empty());
  const auto contours = ReadBlock(h.bytes);
  ASSERT_EQ(contours.size(), 1u);  // H is one contour
  // Capital height of DejaVu Sans Bold is 0.729 em: 46.7 pixels above the baseline.
  EXPECT_EQ(h.ink.top, 53);
  EXPECT_EQ(h.ink.bottom, 100);
  EXPECT_GT(h.ink.left, 10);
  EXPECT_LT(h.ink.right, 10 + h.advance);
  EXPECT_NEAR(h.advance, 0.837 * 64, 1.0);  // advance width 1714 of 2048 units
}

TEST(BuildOutlineBlock, WritesOnlyWellFormedRecords) {
  const OutlineBlock b = Build("Quartz 0@&g", 48, 3, 60);
  int splines = 0;
  for (const ReadContour& c : ReadBlock(b.bytes)) {
    for (const ReadRecord& r : c.records) {
      EXPECT_TRUE(r.type == 1 || r.type == 2);
      EXPECT_GE(r.points.size(), r.type == 2 ? 2u : 1u);
      splines += r.type == 2;
    }
  }
  EXPECT_GT(splines, 10);
  EXPECT_GT(b.ink.bottom, 60);  // Q and g descend
  EXPECT_EQ(MeasureOutlineBlock(b.bytes.data(), b.bytes.size()).left, b.ink.left);
}

TEST(BuildOutlineBlock, MovingTheOriginMovesEveryPointByTheSameAmount) {
  const OutlineBlock a = Build("Wave", 40, 0, 50);
  const OutlineBlock b = Build("Wave", 40, 7, 61);
  ASSERT_EQ(a.bytes.size(), b.bytes.size());
  EXPECT_EQ(b.ink.left - a.ink.left, 7);
  EXPECT_EQ(b.ink.top - a.ink.top, 11);
  EXPECT_EQ(b.ink.width(), a.ink.width());
  EXPECT_EQ(b.advance, a.advance);
  const auto ca = ReadBlock(a.bytes), cb = ReadBlock(b.bytes);
  ASSERT_EQ(ca.size(), cb.size());
  for (size_t i = 0; i < ca.size(); ++i) {
    EXPECT_EQ(cb[i].start.first - ca[i].start.first, 7 * kOne);
    EXPECT_EQ(cb[i].start.second - ca[i].start.second, 11 * kOne);
  }
}

TEST(BuildOutlineBlock, AdvancesThePenGlyphByGlyph) {
  const OutlineBlock one = Build("H", 32, 0, 40);
  const OutlineBlock two = Build("HH", 32, 0, 40);
  EXPECT_DOUBLE_EQ(two.advance, 2 * one.advance);
  EXPECT_EQ(ReadBlock(two.bytes).size(), 2u);
  EXPECT_NEAR(two.ink.right - one.ink.right, one.advance, 1.0);
  const OutlineBlock big = Build("H", 64, 0, 80);
  EXPECT_NEAR(big.ink.height(), 2 * one.ink.height(), 2);
}

TEST(BuildOutlineBlock, AppliesTheFontsKerning) {
  const double a = Build("A", 64, 0, 80).advance;
  const double v = Build("V", 64, 0, 80).advance;
  const double av = Build("AV", 64, 0, 80).advance;
  EXPECT_LT(av, a + v - 2.0);
}

TEST(BuildOutlineBlock, SpacesAdvanceWithoutInk) {
  const OutlineBlock b = Build("   ", 32, 0, 40);
  EXPECT_TRUE(b.bytes.empty());
  EXPECT_TRUE(b.ink.empty());
  EXPECT_GT(b.advance, 20.0);
}

TEST(BuildOutlineBlock, RefusesBadInputWithAMessage) {
  TextLine line;
  line.text = "ok";
  OutlineBlock b;
  std::string error;
  line.pixelSize = 0;
  EXPECT_FALSE(BuildOutlineBlock(line, &b, &error));
  EXPECT_FALSE(error.empty());
  line.pixelSize = 32;
  line.text = "\xFF";
  error.clear();
  EXPECT_FALSE(BuildOutlineBlock(line, &b, &error));
  EXPECT_FALSE(error.empty());
  line.text = "ok";
  line.fontPath = "/nonexistent/font.ttf";
  error.clear();
  EXPECT_FALSE(BuildOutlineBlock(line, &b, &error));
  EXPECT_FALSE(error.empty());
  line.fontPath = kDefaultFontPath;
  line.originX = 32760;  // the glyphs would pass x = 32767
  EXPECT_FALSE(BuildOutlineBlock(line, &b, nullptr));
  EXPECT_TRUE(b.bytes.empty());
}

TEST(GlobalBlock, CopiesTheBlockIntoFixedGlobalMemory) {
  const OutlineBlock b = Build("Go", 24, 2, 30);
  const GlobalBlock g(b.bytes);
  ASSERT_NE(g.handle(), nullptr);
  EXPECT_EQ(g.size(), b.bytes.size());
  EXPECT_EQ(std::memcmp(g.handle(), b.bytes.data(), b.bytes.size()), 0);  // the handle is the address
  const GlobalBlock none(std::vector<uint8_t>{});
  EXPECT_EQ(none.handle(), nullptr);
  EXPECT_EQ(none.size(), 0u);
}

}  // namespace
}  // namespace lx::text
