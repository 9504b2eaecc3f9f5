// The text library's own layout: UTF-8 text to an outline block with its lines and glyphs, for callers
// who draw the block themselves. Layout runs without the GIL.
#include <pybind11/stl.h>

#include <string>

#include "compose/compose_error.h"
#include "compose/laid_text.h"
#include "lettrix/lettrix_text.h"
#include "python/src/bindings.h"

namespace py = pybind11;

namespace lx::python {
namespace {

// The library's refusals in Python's terms: a font file it cannot open, read or use goes the way of the
// composition layer's job errors (OSError), whatever the reason's wording; then a number or tag out of
// its range is the caller's value (ValueError); anything else is a LettrixError.
[[noreturn]] void Refuse(const std::string& message) {
  if (message.rfind("cannot", 0) == 0) throw lx::compose::JobError(message);
  if (message.find(" is out of range") != std::string::npos ||
      message.find(" is not a") != std::string::npos ||
      message.find("not valid UTF-8") != std::string::npos) {
    throw py::value_error(message);
  }
  throw lx::compose::JobError(message);
}

}  // namespace

void BindText(py::module_& m) {
  m.def(
      "lay_out",
      [](const std::string& text, const std::string& fontFile, const std::string& fontFamily,
         int32_t fontIndex, double pixelSize, int32_t align, double lineSpacing, double letterSpacing,
         double wrapWidth, int32_t direction, const std::string& language, const std::string& script,
         const std::string& features, bool fallback) {
        LettrixTextLayout layout;
        LettrixTextDefaults(&layout);
        layout.font_file = fontFile.c_str();
        layout.font_family = fontFamily.c_str();
        layout.font_index = fontIndex;
        layout.pixel_size = pixelSize;
        layout.align = align;
        layout.line_spacing = lineSpacing;
        layout.letter_spacing = letterSpacing;
        layout.wrap_width = wrapWidth;
        layout.direction = direction;
        layout.language = language.c_str();
        layout.script = script.c_str();
        layout.features = features.c_str();
        layout.fallback = fallback ? 1 : 0;

        lx::compose::LaidText laid;
        char message[512] = "";
        int done;
        {
          py::gil_scoped_release unlocked;
          done = LettrixTextLayOut(text.data(), text.size(), &layout, laid.get(), message, sizeof message);
        }
        if (!done) Refuse(message);

        const LettrixTextResult& r = *laid.get();
        py::list lines, glyphs, fonts;
        for (size_t i = 0; i < r.line_count; ++i) {
          const LettrixTextLine& l = r.lines[i];
          lines.append(
              py::make_tuple(l.left, l.right, l.top, l.bottom, l.baseline, l.text_offset, l.text_length));
        }
        for (size_t i = 0; i < r.glyph_count; ++i) {
          const LettrixTextGlyph& g = r.glyphs[i];
          glyphs.append(
              py::make_tuple(g.glyph, g.font, g.cluster, g.line, g.missing != 0, g.x, g.y, g.advance));
        }
        for (size_t i = 0; i < r.font_count; ++i) fonts.append(py::str(r.font_files[i]));
        const py::bytes block =
            r.block ? py::bytes(static_cast<const char*>(r.block), r.block_size) : py::bytes();
        return py::make_tuple(block, py::make_tuple(r.ink_left, r.ink_top, r.ink_right, r.ink_bottom),
                              r.width, r.height, lines, glyphs, r.missing_count, fonts);
      },
      py::arg("text"), py::arg("font_file"), py::arg("font_family"), py::arg("font_index"),
      py::arg("pixel_size"), py::arg("align"), py::arg("line_spacing"), py::arg("letter_spacing"),
      py::arg("wrap_width"), py::arg("direction"), py::arg("language"), py::arg("script"),
      py::arg("features"), py::arg("fallback"),
      "LettrixTextLayOut: (block, ink box, width, height, lines, glyphs, missing count, font files).");
}

}  // namespace lx::python
