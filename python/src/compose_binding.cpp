// Settings by option name, presets, and text or outline blocks to straight-alpha RGBA arrays. Drawing
// runs without the GIL: every call works on its own copy of the settings, so threads draw at once.
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "compose/composition.h"
#include "python/src/bindings.h"
#include "python/src/image_files.h"

namespace py = pybind11;
namespace cx = lx::compose;

namespace lx::python {
namespace {

// Hands the pixels to NumPy without a copy: the array keeps the image alive.
py::array_t<uint8_t> ToArray(cx::RgbaImage&& image) {
  auto* owned = new cx::RgbaImage(std::move(image));
  py::capsule release(owned, [](void* p) { delete static_cast<cx::RgbaImage*>(p); });
  const py::ssize_t h = owned->height, w = owned->width;
  return py::array_t<uint8_t>({h, w, py::ssize_t{4}}, {w * 4, py::ssize_t{4}, py::ssize_t{1}},
                              owned->pixels.data(), release);
}

std::vector<uint8_t> BytesOf(const py::buffer& data) {
  const py::buffer_info info = data.request();
  if (info.itemsize != 1 || info.ndim != 1) throw py::type_error("the outline block must be bytes");
  const auto* p = static_cast<const uint8_t*>(info.ptr);
  return std::vector<uint8_t>(p, p + info.size);
}

// A font or image file that cannot be opened or understood is the caller's file system's affair: OSError.
// Every other refusal of a well-formed request is a LettrixError.
bool NamesUnreadableFile(const std::string& message) {
  for (const char* start : {"cannot open ", "cannot read ", "cannot use "}) {
    if (message.rfind(start, 0) == 0) return true;
  }
  return false;
}

}  // namespace

void BindCompose(py::module_& m) {
  static py::exception<cx::Error> lettrixError(m, "LettrixError", PyExc_RuntimeError);
  lettrixError.doc() = "A request the library could not carry out (nothing to draw, an image too large).";
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const UnreadableFile& e) {
      PyErr_SetString(PyExc_OSError, e.what());
    } catch (const cx::Error& e) {
      if (e.kind() == cx::ErrorKind::kSetting) {
        PyErr_SetString(PyExc_ValueError, e.what());
      } else if (NamesUnreadableFile(e.what())) {
        PyErr_SetString(PyExc_OSError, e.what());
      } else {
        lettrixError(e.what());
      }
    }
  });

  py::class_<cx::Settings>(m, "Settings", "Every setting of one picture, as the lettrix program holds them.")
      .def(py::init<>())
      .def(
          "set_option",
          [](cx::Settings& s, const std::string& name, const std::string& value) {
            cx::SetOption(s, name, value);
          },
          py::arg("name"), py::arg("value"),
          "Sets an option from its command-line text; ValueError with the program's message when refused.")
      .def(
          "apply_preset", [](cx::Settings& s, const std::string& name) { cx::ApplyPreset(s, name); },
          py::arg("name"), "Applies a preset's options over the settings.")
      .def(
          "copy", [](const cx::Settings& s) { return cx::Settings(s); }, "An independent copy.");

  m.def(
      "options",
      [] {
        py::list out;
        for (const cx::OptionInfo& o : cx::Options()) {
          out.append(py::make_tuple(o.name, o.shortName ? std::string(1, o.shortName) : std::string(),
                                    o.section, o.value, o.range, o.help));
        }
        return out;
      },
      "The option table: (name, short name, section, value form, range, help) for each option.");
  m.def(
      "presets",
      [] {
        py::list out;
        for (const cx::Preset& p : cx::Presets()) {
          out.append(py::make_tuple(p.name, p.description, p.args, p.sampleText));
        }
        return out;
      },
      "The presets: (name, description, options, sample text) for each.");
  m.def(
      "resolve_font", [](const cx::Settings& s) { return cx::ResolveFont(s); }, py::arg("settings"),
      "The font file the settings name: their file, their family's match, or the default font.");
  m.def("colour_names", &cx::ColourNames, "The colour names option values may use, comma separated.");
  m.def("generated_textures", &cx::GeneratedTextureList,
        "The generated textures (gen:NAME), comma separated.");

  m.def(
      "compose",
      [](const cx::Settings& settings, const std::string& text) {
        cx::RgbaImage image;
        {
          py::gil_scoped_release unlocked;
          image = cx::Compose(settings, text, ReadImageFile);
        }
        return ToArray(std::move(image));
      },
      py::arg("settings"), py::arg("text"), "Lays out and draws UTF-8 text; an H x W x 4 RGBA array.");
  m.def(
      "lay_out_text",
      [](const cx::Settings& settings, const std::string& text) {
        std::vector<uint8_t> block;
        {
          py::gil_scoped_release unlocked;
          block = cx::LayOutText(settings, text);
        }
        return py::bytes(reinterpret_cast<const char*>(block.data()), block.size());
      },
      py::arg("settings"), py::arg("text"),
      "The outline block of the text with the settings' font and layout.");
  m.def(
      "render_block",
      [](const cx::Settings& settings, const py::buffer& data) {
        const std::vector<uint8_t> block = BytesOf(data);
        cx::RgbaImage image;
        {
          py::gil_scoped_release unlocked;
          cx::CheckOutlineBlock(block, "the outline block");
          image = cx::RenderBlock(settings, block, ReadImageFile);
        }
        return ToArray(std::move(image));
      },
      py::arg("settings"), py::arg("block"), "Draws an outline block; an H x W x 4 RGBA array.");

  m.def(
      "write_image",
      [](const py::array_t<uint8_t, py::array::c_style>& pixels, const std::string& path) {
        if (pixels.ndim() != 3 || pixels.shape(2) != 4) throw py::value_error("the image must be H x W x 4");
        cx::RgbaImage image;
        image.height = static_cast<int32_t>(pixels.shape(0));
        image.width = static_cast<int32_t>(pixels.shape(1));
        if (image.width < 1 || image.height < 1) throw py::value_error("the image has no pixels");
        image.pixels.assign(pixels.data(), pixels.data() + pixels.size());
        py::gil_scoped_release unlocked;
        WriteImageFile(image, path);
      },
      py::arg("image"), py::arg("path"),
      "Writes RGBA pixels as PNG (TGA for a .tga name) through a temporary file, so a failure leaves none.");
}

}  // namespace lx::python
