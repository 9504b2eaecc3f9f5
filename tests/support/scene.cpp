#include "tests/support/scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

namespace lx::test {

TextScene::TextScene(const std::string& text, int32_t pixelSize, double originX, double baselineY) {
  text::TextLine line;
  line.text = text;
  line.pixelSize = pixelSize;
  line.originX = originX;
  line.baselineY = baselineY;
  text::OutlineBlock out;
  std::string error;
  if (!text::BuildOutlineBlock(line, &out, &error)) {
    ADD_FAILURE() << "cannot lay out \"" << text << "\": " << error;
    return;
  }
  bytes_ = std::move(out.bytes);
  ink_ = out.ink;
  global_ = std::make_unique<text::GlobalBlock>(bytes_);
  if (!bytes_.empty() && global_->handle() == nullptr) ADD_FAILURE() << "no global memory for the block";
}

TextScene::TextScene(const std::vector<uint8_t>& bytes) : bytes_(bytes) {
  ink_ = text::MeasureOutlineBlock(bytes_.data(), bytes_.size());
  global_ = std::make_unique<text::GlobalBlock>(bytes_);
}

std::vector<uint8_t> PaddedOutlineBlock(const std::vector<uint8_t>& bytes, size_t size) {
  std::vector<uint8_t> padded(bytes);
  if (bytes.size() < 16 || size < bytes.size() + 16) return padded;
  padded.resize(size, 0);
  const uint32_t cb = static_cast<uint32_t>(size - bytes.size()), type = 24;
  std::memcpy(&padded[bytes.size()], &cb, 4);
  std::memcpy(&padded[bytes.size() + 4], &type, 4);
  std::memcpy(&padded[bytes.size() + 8], &bytes[8], 8);
  return padded;
}

Image::Image(int32_t width, int32_t height, uint32_t fill)
    : width_(width), height_(height), pixels_(static_cast<size_t>(width) * height, fill) {}

size_t Image::countOther(uint32_t fill) const {
  return static_cast<size_t>(
      std::count_if(pixels_.begin(), pixels_.end(), [&](uint32_t p) { return p != fill; }));
}

namespace {

// The pixels (x, y) of `m` for which keep(x, y) holds, row by row.
template <typename Keep>
std::vector<Point> PointsWhere(const Image& m, Keep keep) {
  std::vector<Point> out;
  for (int32_t y = 0; y < m.h(); ++y) {
    for (int32_t x = 0; x < m.w(); ++x) {
      if (keep(x, y)) out.push_back({x, y});
    }
  }
  return out;
}

// The pixels of `m` whose whole square of half-size r satisfies `test` (pixels outside count as transparent).
template <typename Test>
std::vector<Point> SquaresWhere(const Image& m, int32_t r, Test test) {
  return PointsWhere(m, [&](int32_t x, int32_t y) {
    for (int32_t j = y - r; j <= y + r; ++j) {
      for (int32_t i = x - r; i <= x + r; ++i) {
        if (!test((i < 0 || j < 0 || i >= m.w() || j >= m.h()) ? 0 : m.at(i, j))) return false;
      }
    }
    return true;
  });
}

std::vector<Point> Select(const std::vector<Point>& a, const std::vector<Point>& b, bool inB) {
  std::set<std::pair<int32_t, int32_t>> in;
  for (const Point& p : b) in.insert({p.x, p.y});
  std::vector<Point> out;
  for (const Point& p : a) {
    if ((in.count({p.x, p.y}) != 0) == inB) out.push_back(p);
  }
  return out;
}

}  // namespace

text::InkBox Image::alphaBounds(uint8_t minAlpha) const {
  text::InkBox box{width_, height_, 0, 0};
  for (const Point& p :
       PointsWhere(*this, [&](int32_t x, int32_t y) { return Alpha(at(x, y)) >= minAlpha; })) {
    box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x + 1),
           std::max(box.bottom, p.y + 1)};
  }
  return box.empty() ? text::InkBox{} : box;
}

void Image::alphaCentre(uint8_t minAlpha, double* cx, double* cy) const {
  double sx = 0, sy = 0, n = 0;
  for (const Point& p :
       PointsWhere(*this, [&](int32_t x, int32_t y) { return Alpha(at(x, y)) >= minAlpha; })) {
    sx += p.x, sy += p.y, n += 1;
  }
  *cx = n > 0 ? sx / n : 0;
  *cy = n > 0 ? sy / n : 0;
}

std::vector<Point> DeepInside(const Image& mask, int32_t inset) {
  return SquaresWhere(mask, inset, [](uint32_t p) { return Alpha(p) == 255; });
}
std::vector<Point> FarOutside(const Image& mask, int32_t inset) {
  return SquaresWhere(mask, inset, [](uint32_t p) { return Alpha(p) == 0; });
}
std::vector<Point> Without(const std::vector<Point>& a, const std::vector<Point>& b) {
  return Select(a, b, false);
}
std::vector<Point> Both(const std::vector<Point>& a, const std::vector<Point>& b) {
  return Select(a, b, true);
}

}  // namespace lx::test
