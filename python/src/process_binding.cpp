// lettrix.Process: one render process of the library with its setters under their own names, for callers
// who lay text out themselves and draw into their own buffers. Arguments are checked against the type the
// library takes (a byte, a 32-bit integer) and refused with ValueError rather than silently truncated; the
// library's own clamps then apply as documented. A process serialises its calls, so sharing one between
// threads is safe (if not parallel); drawing runs without the GIL.
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "lettrix/lettrix.h"
#include "python/src/bindings.h"

namespace py = pybind11;

namespace lx::python {
namespace {

uint8_t Byte(int64_t value, const char* name) {
  if (value < 0 || value > 255) {
    throw py::value_error(std::string(name) + ": " + std::to_string(value) + " is out of range (0..255)");
  }
  return static_cast<uint8_t>(value);
}

int32_t Int32(int64_t value, const char* name) {
  if (value < INT32_MIN || value > INT32_MAX) {
    throw py::value_error(std::string(name) + ": " + std::to_string(value) +
                          " is out of range (-2147483648..2147483647)");
  }
  return static_cast<int32_t>(value);
}

uint32_t Word(int64_t value, const char* name) {
  if (value < 0 || value > UINT32_MAX) {
    throw py::value_error(std::string(name) + ": " + std::to_string(value) +
                          " is out of range (0..4294967295)");
  }
  return static_cast<uint32_t>(value);
}

class Process {
 public:
  Process() : slot_(CreateRenderProcess()) {
    if (slot_ == 0) throw std::bad_alloc();
  }
  ~Process() { DestroyRenderProcess(&slot_); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Runs `call` on the slot with the GIL released, so a long Render elsewhere never waits on the GIL
  // while holding this process.
  template <typename Call>
  auto With(Call call) {
    py::gil_scoped_release unlocked;
    std::lock_guard<std::mutex> hold(mutex_);
    return call(&slot_);
  }

  void Close() {
    With([](RenderHandle* slot) { DestroyRenderProcess(slot); });
  }

 private:
  std::mutex mutex_;
  RenderHandle slot_;
};

using ColourSetter = void (*)(RenderHandle*, const uint8_t*, const uint8_t*, const uint8_t*, const uint8_t*);
using ByteSetter = void (*)(RenderHandle*, const uint8_t*);
using IntSetter = void (*)(RenderHandle*, const int32_t*);
using GradientSetter = void (*)(RenderHandle*, const int32_t*, const double*, const double*);
using StopsSetter = bool (*)(RenderHandle*, const uint32_t*, const uint32_t*, const uint8_t*);
using AreaSetter = bool (*)(RenderHandle*, const int32_t*, const int32_t*, const int32_t*, const int32_t*);
using TextureSetter = bool (*)(RenderHandle*, void*, const int32_t*, const int32_t*);

using PyProcess = py::class_<Process>;

void DefColour(PyProcess& c, const char* name, ColourSetter set, const char* doc) {
  c.def(
      name,
      [set](Process& p, int64_t alpha, int64_t red, int64_t green, int64_t blue) {
        const uint8_t a = Byte(alpha, "alpha"), r = Byte(red, "red"), g = Byte(green, "green"),
                      b = Byte(blue, "blue");
        p.With([&](RenderHandle* slot) { set(slot, &a, &r, &g, &b); });
      },
      py::arg("alpha"), py::arg("red"), py::arg("green"), py::arg("blue"), doc);
}

// A setter of one byte or 32-bit value, checked against that type first.
template <typename T>
void DefOne(PyProcess& c, const char* name, void (*set)(RenderHandle*, const T*),
            T (*check)(int64_t, const char*), const char* arg, const char* doc) {
  c.def(
      name,
      [set, check, arg](Process& p, int64_t value) {
        const T v = check(value, arg);
        p.With([&](RenderHandle* slot) { set(slot, &v); });
      },
      py::arg(arg), doc);
}

void DefByte(PyProcess& c, const char* name, ByteSetter set, const char* arg, const char* doc) {
  DefOne<uint8_t>(c, name, set, Byte, arg, doc);
}

void DefInt(PyProcess& c, const char* name, IntSetter set, const char* arg, const char* doc) {
  DefOne<int32_t>(c, name, set, Int32, arg, doc);
}

void DefIntPair(PyProcess& c, const char* name, void (*set)(RenderHandle*, const int32_t*, const int32_t*),
                const char* xName, const char* yName, const char* doc) {
  c.def(
      name,
      [set, xName, yName](Process& p, int64_t x, int64_t y) {
        const int32_t dx = Int32(x, xName), dy = Int32(y, yName);
        p.With([&](RenderHandle* slot) { set(slot, &dx, &dy); });
      },
      py::arg(xName), py::arg(yName), doc);
}

void DefGradient(PyProcess& c, const char* name, GradientSetter set, const char* doc) {
  c.def(
      name,
      [set](Process& p, int64_t type, double p1, double p2) {
        const int32_t t = Int32(type, "type");
        p.With([&](RenderHandle* slot) { set(slot, &t, &p1, &p2); });
      },
      py::arg("type"), py::arg("p1") = 0.0, py::arg("p2") = 0.0, doc);
}

void DefStops(PyProcess& c, const char* name, StopsSetter set, const char* doc) {
  c.def(
      name,
      [set](Process& p, const std::vector<int64_t>& colours,
            const std::optional<std::vector<int64_t>>& stops) {
        if (colours.empty() || colours.size() > 255) {
          throw py::value_error("colours: " + std::to_string(colours.size()) +
                                " colours is out of range (1..255)");
        }
        if (stops && stops->size() != colours.size()) {
          throw py::value_error("stops: " + std::to_string(stops->size()) + " weights for " +
                                std::to_string(colours.size()) + " colours");
        }
        std::vector<uint32_t> packed, weights;
        for (int64_t v : colours) packed.push_back(Word(v, "colours"));
        if (stops) {
          for (int64_t v : *stops) weights.push_back(Word(v, "stops"));
        }
        const uint8_t count = static_cast<uint8_t>(packed.size());
        return p.With([&](RenderHandle* slot) {
          return set(slot, packed.data(), stops ? weights.data() : nullptr, &count);
        });
      },
      py::arg("colours"), py::arg("stops") = py::none(), doc);
}

void DefArea(PyProcess& c, const char* name, AreaSetter set, const char* doc) {
  c.def(
      name,
      [set](Process& p, int64_t left, int64_t top, int64_t right, int64_t bottom) {
        const int32_t l = Int32(left, "left"), t = Int32(top, "top"), r = Int32(right, "right"),
                      b = Int32(bottom, "bottom");
        return p.With([&](RenderHandle* slot) { return set(slot, &l, &t, &r, &b); });
      },
      py::arg("left"), py::arg("top"), py::arg("right"), py::arg("bottom"), doc);
}

// The buffer of an H x W x 4 uint8 array, checked; H and W in int32.
py::buffer_info PixelBuffer(const py::array& pixels, const char* name, bool writable) {
  if (!py::isinstance<py::array_t<uint8_t>>(pixels) || pixels.ndim() != 3 || pixels.shape(2) != 4) {
    throw py::type_error(std::string(name) + ": an H x W x 4 uint8 array is needed");
  }
  if (!(pixels.flags() & py::array::c_style))
    throw py::value_error(std::string(name) + ": the array must be C-contiguous");
  if (writable && !pixels.writeable()) throw py::value_error(std::string(name) + ": the array is read-only");
  if (pixels.shape(0) < 1 || pixels.shape(1) < 1 || pixels.shape(0) > INT32_MAX ||
      pixels.shape(1) > INT32_MAX) {
    throw py::value_error(std::string(name) + ": the array has no pixels or is too large");
  }
  return pixels.request(writable);
}

void DefTexture(PyProcess& c, const char* name, TextureSetter set, const char* doc) {
  c.def(
      name,
      [set](Process& p, const py::array& pixels) {
        const py::buffer_info info = PixelBuffer(pixels, "pixels", false);
        const int32_t h = static_cast<int32_t>(info.shape[0]), w = static_cast<int32_t>(info.shape[1]);
        // The library asks for writable memory although it only copies it.
        const auto* bytes = static_cast<const uint8_t*>(info.ptr);
        std::vector<uint8_t> copy(bytes, bytes + info.size);
        return p.With([&](RenderHandle* slot) { return set(slot, copy.data(), &w, &h); });
      },
      py::arg("pixels"), doc);
}

// An outline block in the library's global memory, freed when it goes.
class GlobalCopy {
 public:
  explicit GlobalCopy(const py::buffer& data) {
    const py::buffer_info info = data.request();
    if (info.itemsize != 1 || info.ndim != 1) throw py::type_error("block: bytes are needed");
    if (info.size == 0) return;
    handle_ = LettrixGlobalAlloc(0, static_cast<size_t>(info.size));
    if (!handle_) throw std::bad_alloc();
    std::memcpy(LettrixGlobalLock(handle_), info.ptr, static_cast<size_t>(info.size));
    LettrixGlobalUnlock(handle_);
  }
  ~GlobalCopy() {
    if (handle_) LettrixGlobalFree(handle_);
  }
  GlobalCopy(const GlobalCopy&) = delete;
  GlobalCopy& operator=(const GlobalCopy&) = delete;
  void* handle() const { return handle_; }

 private:
  void* handle_ = nullptr;
};

}  // namespace

void BindProcess(py::module_& m) {
  PyProcess c(m, "Process", R"(One render process of the Lettrix library, with its setters.

For callers who lay text out themselves: set what you need, then draw outline blocks (GetGlyphOutline's
GGO_NATIVE layout, as lettrix.outline_block makes them) into your own H x W x 4 uint8 arrays. Pixels are
the library's own: blue, green, red, alpha in memory, premultiplied; the drawing is laid over what the
array holds. Colours are given as (alpha, red, green, blue) bytes 0..255. Values outside the type the
library takes raise ValueError; within it, the library clamps or maps them itself. Usable as a context
manager; close() releases the process at once, after which every call does nothing.)");
  c.def(py::init<>(), "Creates a render process with default settings.");
  c.def("close", &Process::Close, "Releases the process; later calls do nothing (render returns False).");
  c.def(
      "__enter__", [](Process& p) -> Process& { return p; }, py::return_value_policy::reference);
  c.def("__exit__", [](Process& p, py::args) { p.Close(); });

  c.def(
      "render",
      [](Process& p, const py::buffer& block, const py::array& buffer) {
        const GlobalCopy copy(block);
        const py::buffer_info info = PixelBuffer(buffer, "buffer", true);
        const int32_t h = static_cast<int32_t>(info.shape[0]), w = static_cast<int32_t>(info.shape[1]);
        void* pixels = info.ptr;
        return p.With([&](RenderHandle* slot) { return Render(slot, copy.handle(), &w, &h, pixels); });
      },
      py::arg("block"), py::arg("buffer"),
      "Draws the outline block into buffer (H x W x 4 uint8, blue-green-red-alpha). True when drawn; False, "
      "with the buffer untouched, for a malformed block or an outline with no area. Runs without the GIL.");

  DefColour(c, "set_color_face_start", SetColorFaceStart, "Face colour, or the start of its gradient.");
  DefColour(c, "set_color_face_end", SetColorFaceEnd, "End colour of the Face gradient.");
  DefColour(c, "set_color_outline_start", SetColorOutlineStart,
            "Outline colour, or the start of its gradient.");
  DefColour(c, "set_color_outline_end", SetColorOutlineEnd, "End colour of the Outline gradient.");
  DefColour(c, "set_shadow_color", SetShadowColor, "Shadow colour; alpha is its opacity (0: no Shadow).");
  DefIntPair(c, "set_shadow_offset", SetShadowOffset, "x", "y", "Shadow offset in pixels, unclamped.");
  c.def(
      "set_shadow_zoom",
      [](Process& p, double x, double y) {
        p.With([&](RenderHandle* slot) { SetShadowZoom(slot, &x, &y); });
      },
      py::arg("x"), py::arg("y"), "Shadow scale factors; stored only when both are above 0.");
  DefByte(c, "set_shadow_visible", SetShadowVisible, "on", "1 draws the Shadow (default), 0 hides it.");
  DefByte(c, "set_draw_shadow_only", SetDrawShadowOnly, "on", "1 draws the Shadow alone.");
  DefByte(c, "set_shadow_extruded", SetShadowExtruded, "on", "1 extrudes the Shadow into a solid block.");
  DefByte(c, "set_extruded_shadow_color", SetExtrudedShadowColor, "value",
          "1 (default): the extruded block is one even body; other values let the steps build up.");
  DefByte(c, "set_face_blur_level", SetFaceBlurLevel, "level", "Face blur radius in pixels, 0..254.");
  DefByte(c, "set_outline_blur_level", SetOutlineBlurLevel, "level",
          "Outline blur radius in pixels, 0..254.");
  DefByte(c, "set_shadow_blur_level", SetShadowBlurLevel, "level", "Shadow blur radius in pixels, 0..254.");
  DefInt(c, "set_face_fill_type", SetFaceFillType, "type",
         "Face fill: 0 colour or gradient, other values texture.");
  DefInt(c, "set_outline_fill_type", SetOutlineFillType, "type",
         "Outline fill: 0 colour or gradient, other values texture.");
  DefGradient(
      c, "set_gradient_face", SetGradientFace,
      "Face gradient: type 0 solid, 1 top to bottom, 2 radial between fractions p1 and p2 (0..1) of the "
      "radius, 3 linear at angle p1 (radians).");
  DefGradient(c, "set_gradient_outline", SetGradientOutline, "Outline gradient, as set_gradient_face.");
  DefStops(c, "set_face_gradient_colors", SetFaceGradientColors,
           "Face colour stops: packed colours (red | green << 8 | blue << 16 | alpha << 24) with relative "
           "weights (None: all 1). 1..255 colours. Returns the library's truth value.");
  DefStops(c, "set_outline_gradient_colors", SetOutlineGradientColors,
           "Outline colour stops, as set_face_gradient_colors.");
  DefByte(c, "set_face_gradient_fit_mode", SetFaceGradientFitMode, "mode",
          "Face gradient extent: 0 the outline's box, 1 the whole buffer.");
  DefByte(c, "set_outline_gradient_fit_mode", SetOutlineGradientFitMode, "mode",
          "Outline gradient extent: 0 the outline's box, 1 the whole buffer.");
  DefArea(c, "set_face_user_gradient_area", SetFaceUserGradientArea,
          "Face gradient rectangle in buffer pixels; True when it is not empty.");
  DefArea(c, "set_outline_user_gradient_area", SetOutlineUserGradientArea,
          "Outline gradient rectangle in buffer pixels; True when it is not empty.");
  DefTexture(c, "set_texture_face", SetTextureFace,
             "Face texture from an H x W x 4 uint8 array (blue, green, red, alpha); copied. Returns the "
             "library's truth value.");
  DefTexture(c, "set_texture_outline", SetTextureOutline, "Outline texture, as set_texture_face.");
  DefInt(c, "set_face_texture_tiling", SetFaceTextureTiling, "mode",
         "Face texture placement: 0 centred, 1 stretched, other values tiled.");
  DefInt(c, "set_outline_texture_tiling", SetOutlineTextureTiling, "mode",
         "Outline texture placement: 0 centred, 1 stretched, other values tiled.");
  c.def(
      "set_face_texture_embossed",
      [](Process& p, double angle, int64_t a, int64_t b, int64_t cc) {
        const uint8_t x = Byte(a, "a"), y = Byte(b, "b"), z = Byte(cc, "c");
        p.With([&](RenderHandle* slot) { SetFaceTextureEmbossed(slot, &angle, &x, &y, &z); });
      },
      py::arg("angle"), py::arg("a"), py::arg("b"), py::arg("c"),
      "Emboss light angle (radians) and tint bytes, passed on as the library takes them.");
  DefByte(c, "enable_face_embossed", EnableFaceEmbossed, "on", "1 embosses the Face.");
  DefByte(c, "enable_outline_3d_border", EnableOutline3DBorder, "on",
          "1 gives the Outline a bevelled 3D border.");
  c.def(
      "set_outline_3d_border",
      [](Process& p, int64_t width, int64_t depth, double angle) {
        const uint8_t w = Byte(width, "width"), d = Byte(depth, "depth");
        p.With([&](RenderHandle* slot) { SetOutline3DBorder(slot, &w, &d, &angle); });
      },
      py::arg("width"), py::arg("depth"), py::arg("angle"),
      "3D border: light elevation (degrees, clamped to 3..60), passes (1..60) and azimuth (radians).");
  DefInt(c, "set_outline_thickness", SetOutlineThickness, "thickness",
         "Outline stroke in pixels on each side of the contour (stroke width clamped to 0..1000).");
  DefIntPair(c, "set_translation", SetTranslation, "dx", "dy",
             "Moves the drawing by (dx, dy) pixels; successive calls add up.");
  c.def(
      "reset_translation", [](Process& p) { p.With([](RenderHandle* slot) { ResetTranslation(slot); }); },
      "Removes every translation.");
}

}  // namespace lx::python
