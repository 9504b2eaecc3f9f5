// Outline blocks built to make the decoder read outside its block, loop forever or overflow a size.
// Each block is copied so that it ends exactly where an inaccessible page begins: a read past its end
// faults even without a sanitizer.
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "render/outline_decoder.h"
#include "tests/support/contour_records.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using test::ContourRecords;
using test::Pt;

// Decodes `bytes` placed just before a page without access, into a path that already holds a vertex.
std::vector<int32_t> Decode(const std::vector<uint8_t>& bytes, OutlinePath* path, bool flag = false) {
  test::GuardedPages pages(bytes.size() / 4096 + 3);
  pages.protect(pages.pageCount() - 1, test::GuardedPages::Access::kNone);
  uint8_t* data = pages.page(pages.pageCount() - 1) - bytes.size();
  if (!bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
  *path = {{1.0, 1.0, kPathMoveTo}};
  const IntRect r = DecodeOutlineBlock(data, bytes.size(), flag, path);
  return {r.left, r.top, r.right, r.bottom};
}
const std::vector<int32_t> kNothing = {0, 0, 0, 0};

ContourRecords TwoSquares() {
  ContourRecords r;
  test::AddSquare(&r, 0, 0, 10);
  r.begin(Pt(20, 0)).spline({Pt(25, -5), Pt(30, 0), Pt(30, 10)}).line({Pt(20, 10), Pt(20, 0)}).end();
  return r;
}

// Contour lengths too short or past the block, foreign contour types (alone or after a good contour),
// point counts past the contour or the block, a record header past the contour end, a header cut short
// by the block end, a one-point spline whose following point lies outside the block: all refused, with
// the path left empty.
TEST(HostileOutlineBlocks, MalformedBlocksAreRefusedWithoutReadingPastThem) {
  std::vector<std::vector<uint8_t>> blocks;
  for (uint32_t cb : {0u, 8u, 15u, 0xFFFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 16u + 4u + 2u * 8u + 1u})
    blocks.push_back(ContourRecords().begin(Pt(1, 1)).line({Pt(5, 1), Pt(5, 5)}).endWithCb(cb).bytes());
  for (uint32_t type : {0u, 23u, 25u, 0xFFFFFFFFu})
    blocks.push_back(ContourRecords().begin(Pt(1, 1), type).line({Pt(5, 1), Pt(5, 5)}).end().bytes());
  ContourRecords mixed, shortCb, cutHeader;
  test::AddSquare(&mixed, 0, 0, 4);
  blocks.push_back(mixed.begin(Pt(1, 1), 7).line({Pt(5, 1)}).end().bytes());
  for (uint16_t count : {2, 3, 0x1FFF, 0xFFFF}) {
    for (uint16_t type : {1, 2, 3})
      blocks.push_back(
          ContourRecords().begin(Pt(1, 1)).recordWithCount(type, count, {Pt(4, 4)}).end().bytes());
  }
  shortCb.begin(Pt(1, 1))
      .line({Pt(5, 1), Pt(5, 5)})
      .endWithCb(16 + 4 + 8);  // fits the block, not its contour
  blocks.push_back(shortCb.begin(Pt(1, 1)).line({Pt(3, 3)}).end().bytes());
  blocks.push_back(ContourRecords().begin(Pt(1, 1)).raw({1, 0}).end().bytes());
  test::AddSquare(&cutHeader, 0, 0, 4);
  blocks.push_back(cutHeader.raw({16, 0, 0, 0, 24, 0, 0, 0}).bytes());
  blocks.push_back(ContourRecords().begin(Pt(1, 1)).line({Pt(6, 1)}).spline({Pt(4, 4)}).end().bytes());
  OutlinePath path;
  for (size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(Decode(blocks[i], &path), kNothing) << i;
    EXPECT_TRUE(path.empty()) << i;
  }
  // With another contour after it, the point that follows a one-point spline lies inside the block.
  ContourRecords r;
  r.begin(Pt(1, 1))
      .line({Pt(6, 1)})
      .spline({Pt(4, 4)})
      .end()
      .begin(Pt(9, 9))
      .line({Pt(12, 9), Pt(12, 12)})
      .end();
  EXPECT_NE(Decode(r.bytes(), &path), kNothing);
}

TEST(HostileOutlineBlocks, TruncatedOrCorruptedBlocksAreRefusedOrDecodedWholeWithoutHanging) {
  const std::vector<uint8_t> good = TwoSquares().bytes();
  const size_t firstContour = 16 + 4 + 4 * 8;
  OutlinePath path;
  for (size_t n = 1; n < good.size(); ++n) {
    const std::vector<int32_t> box = Decode(std::vector<uint8_t>(good.begin(), good.begin() + n), &path);
    EXPECT_EQ(box, n == firstContour ? std::vector<int32_t>({0, 0, 10, 10}) : kNothing) << n;
    EXPECT_EQ(path.empty(), n != firstContour) << n;
  }
  std::mt19937 rng(12345);
  for (int round = 0; round < 5000; ++round) {
    std::vector<uint8_t> bytes = good;
    const int flips = 1 + static_cast<int>(rng() % 4);
    for (int i = 0; i < flips; ++i) bytes[rng() % bytes.size()] = static_cast<uint8_t>(rng());
    if (rng() % 3 == 0) bytes.resize(rng() % bytes.size() + 1);
    const std::vector<int32_t> box = Decode(bytes, &path, round % 2 == 0);
    EXPECT_TRUE(!path.empty() || box == kNothing) << round;
  }
}

}  // namespace
}  // namespace lx
