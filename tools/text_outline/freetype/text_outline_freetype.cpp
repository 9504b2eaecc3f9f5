// Outline blocks from FreeType: the glyphs' unhinted TrueType contours, placed on the line.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cmath>
#include <memory>

#include "tools/text_outline/block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {

using detail::Fail;
namespace {

struct LibraryCloser {
  void operator()(FT_Library lib) const { FT_Done_FreeType(lib); }
};
struct FaceCloser {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};

}  // namespace

bool BuildOutlineBlock(const TextLine& line, OutlineBlock* out, std::string* error) {
  *out = OutlineBlock{};
  std::vector<uint32_t> codePoints;
  if (!detail::ReadTextLine(line, &codePoints, error)) return false;

  FT_Library rawLib = nullptr;
  if (FT_Init_FreeType(&rawLib) != 0) {
    Fail(error, "FreeType did not start");
    return false;
  }
  std::unique_ptr<FT_LibraryRec_, LibraryCloser> lib(rawLib);
  FT_Face rawFace = nullptr;
  if (FT_New_Face(lib.get(), line.fontPath.c_str(), 0, &rawFace) != 0) {
    Fail(error, "cannot open font " + line.fontPath);
    return false;
  }
  std::unique_ptr<FT_FaceRec_, FaceCloser> face(rawFace);
  if (FT_Set_Pixel_Sizes(face.get(), 0, static_cast<FT_UInt>(line.pixelSize)) != 0) {
    Fail(error, "font cannot be scaled to that size");
    return false;
  }

  // The pen moves in 26.6 units, as FreeType reports advances and kerning.
  int64_t pen = 0;
  FT_UInt previous = 0;
  std::vector<detail::ContourPoint> contour;
  for (uint32_t cp : codePoints) {
    const FT_UInt glyph = FT_Get_Char_Index(face.get(), cp);
    if (previous != 0 && glyph != 0 && FT_HAS_KERNING(face.get())) {
      FT_Vector kern;
      if (FT_Get_Kerning(face.get(), previous, glyph, FT_KERNING_UNFITTED, &kern) == 0) pen += kern.x;
    }
    if (FT_Load_Glyph(face.get(), glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
      Fail(error, "glyph cannot be loaded as an outline");
      return false;
    }
    const FT_Outline& o = face->glyph->outline;
    int first = 0;
    for (int c = 0; c < o.n_contours; ++c) {
      const int last = o.contours[c];
      contour.clear();
      for (int i = first; i <= last; ++i) {
        detail::ContourPoint p;
        const double x = line.originX + static_cast<double>(pen + o.points[i].x) / 64.0;
        const double y = line.baselineY - static_cast<double>(o.points[i].y) / 64.0;
        if (!detail::ToFixed(x, &p.x) || !detail::ToFixed(y, &p.y)) {
          Fail(error, "text leaves the 16.16 coordinate range");
          return false;
        }
        switch (FT_CURVE_TAG(o.tags[i])) {
          case FT_CURVE_TAG_ON:
            p.kind = detail::PointKind::kOn;
            break;
          case FT_CURVE_TAG_CONIC:
            p.kind = detail::PointKind::kConic;
            break;
          default:
            p.kind = detail::PointKind::kCubic;
            break;
        }
        contour.push_back(p);
      }
      if (!detail::AppendContour(contour, &out->bytes)) {
        Fail(error, "the font has cubic outlines; a TrueType font is needed");
        return false;
      }
      first = last + 1;
    }
    pen += face->glyph->advance.x;
    previous = glyph;
  }
  out->advance = static_cast<double>(pen) / 64.0;
  out->ink = MeasureOutlineBlock(out->bytes.data(), out->bytes.size());
  return true;
}

}  // namespace lx::text
