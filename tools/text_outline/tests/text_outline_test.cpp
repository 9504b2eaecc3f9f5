// The outline helper refuses what it cannot lay out; its ordinary blocks are drawn by every scene.
#include <gtest/gtest.h>

#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace {

TEST(BuildOutlineBlock, RefusesBadLinesAndFontsWithAMessageAndNoBlock) {
  OutlineBlock out;
  ASSERT_TRUE(BuildOutlineBlock(TextLine{kDefaultFontPath, "H", 64, 10, 100}, &out, nullptr));
  for (const TextLine& bad :
       {TextLine{kDefaultFontPath, "ok", 0}, TextLine{kDefaultFontPath, "\xFF", 32},
        TextLine{"/nonexistent/font.ttf", "ok", 32}, TextLine{kDefaultFontPath, "ok", 32, 32760}}) {
    std::string error;
    EXPECT_FALSE(BuildOutlineBlock(bad, &out, &error) || error.empty()) << bad.text << " " << bad.pixelSize;
  }
  EXPECT_TRUE(out.bytes.empty());
}

}  // namespace
}  // namespace lx::text
