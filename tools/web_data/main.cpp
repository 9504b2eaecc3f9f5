// lettrix-web-data: writes what the browser playground shares with the lettrix program and the Python
// package, so the page never keeps a copy of its own: the presets (as the settings the composition layer
// makes of them), the options with their value forms, ranges and defaults, the default settings, and the
// generated textures as raw pixels.
//
//   lettrix-web-data DIR   writes DIR/lettrix-data.json and DIR/textures/NAME.bgra (256 x 256 x 4 bytes:
//                          blue, green, red, alpha)
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "compose/generated_textures.h"
#include "compose/option_table.h"
#include "compose/settings.h"
#include "tools/web_data/json_writer.h"

namespace {

namespace compose = lx::compose;
using lxt::web::Json;

std::string Hex(const compose::Rgba& c) {
  char s[10];
  std::snprintf(s, sizeof s, "#%02X%02X%02X%02X", c.r, c.g, c.b, c.a);
  return s;
}

// The enums' names as the page spells them, in the enums' order.
template <typename Enum, size_t N>
const char* NameOf(Enum value, const char* const (&names)[N]) {
  const size_t i = static_cast<size_t>(value);
  return i < N ? names[i] : names[0];
}

const char* FillName(compose::FillKind k) {
  static const char* const kNames[] = {"solid", "two-colour", "stops", "texture"};
  return NameOf(k, kNames);
}

const char* ShapeName(compose::GradientShape s) {
  static const char* const kNames[] = {"default", "vertical", "radial", "linear"};
  return NameOf(s, kNames);
}

const char* TilingName(compose::TextureTiling t) {
  static const char* const kNames[] = {"centre", "stretch", "tile"};
  return NameOf(t, kNames);
}

void WriteLayer(Json& j, const compose::LayerSettings& l) {
  j.Open('{');
  j.Key("fill").String(FillName(l.fill));
  j.Key("colour").String(Hex(l.colour));
  j.Key("start").String(Hex(l.start));
  j.Key("end").String(Hex(l.end));
  j.Key("stops").Open('[');
  for (const compose::ColourStop& s : l.stops) {
    j.Open('{').Key("colour").String(Hex(s.colour)).Key("weight").Number(s.weight).Close('}');
  }
  j.Close(']');
  j.Key("shape").String(ShapeName(l.shape));
  j.Key("radialFrom").Number(l.radialFrom);
  j.Key("radialTo").Number(l.radialTo);
  j.Key("angleDegrees").Number(l.angleDegrees);
  j.Key("extentCanvas").Bool(l.extentCanvas);
  j.Key("hasArea").Bool(l.hasArea);
  j.Key("area").Open('[');
  for (int32_t v : l.area) j.Number(v);
  j.Close(']');
  j.Key("texture").String(l.texture);
  j.Key("tiling").String(TilingName(l.tiling));
  j.Key("blur").Number(l.blur);
  j.Close('}');
}

// Settings as the page keeps them: their own field names, colours as #RRGGBBAA.
void WriteSettings(Json& j, const compose::Settings& job) {
  j.Open('{');
  j.Key("pixelSize").Number(job.pixelSize);
  j.Key("fixedCanvas").Bool(job.fixedCanvas);
  j.Key("canvasWidth").Number(job.canvasWidth);
  j.Key("canvasHeight").Number(job.canvasHeight);
  j.Key("padding").Number(job.padding);
  j.Key("background").String(Hex(job.background));
  j.Key("translateX").Number(job.translateX);
  j.Key("translateY").Number(job.translateY);
  j.Key("face");
  WriteLayer(j, job.face);
  j.Key("outline");
  WriteLayer(j, job.outline);
  j.Key("outlineWidth").Number(job.outlineWidth);
  j.Key("emboss").Bool(job.emboss);
  j.Key("embossAngleDegrees").Number(job.embossAngleDegrees);
  j.Key("embossTint").String(Hex(job.embossTint));
  j.Key("bevel").Bool(job.bevel);
  j.Key("bevelElevation").Number(job.bevelElevation);
  j.Key("bevelPasses").Number(job.bevelPasses);
  j.Key("bevelAngleDegrees").Number(job.bevelAngleDegrees);
  j.Key("shadowColour").String(Hex(job.shadowColour));
  j.Key("shadowX").Number(job.shadowX);
  j.Key("shadowY").Number(job.shadowY);
  j.Key("shadowZoomX").Number(job.shadowZoomX);
  j.Key("shadowZoomY").Number(job.shadowZoomY);
  j.Key("shadowBlur").Number(job.shadowBlur);
  j.Key("extrude").Bool(job.extrude);
  j.Key("extrudeSmooth").Bool(job.extrudeSmooth);
  j.Key("shadowVisible").Bool(job.shadowVisible);
  j.Key("shadowOnly").Bool(job.shadowOnly);
  j.Close('}');
}

compose::Settings PresetSettings(const std::string& name) {
  compose::Settings settings;
  compose::ApplyPreset(settings, name);
  return settings;
}

// The generated textures' names, as the option table lists them: "gen:a, gen:b".
std::vector<std::string> GeneratedTextures() {
  std::vector<std::string> names;
  const std::string list = compose::GeneratedTextureList();
  for (size_t at = 0; at < list.size();) {
    size_t end = list.find(',', at);
    if (end == std::string::npos) end = list.size();
    size_t first = list.find_first_not_of(' ', at);
    if (first < end) names.push_back(list.substr(first, end - first));
    at = end + 1;
  }
  return names;
}

bool WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: lettrix-web-data DIR\n");
    return 2;
  }
  const std::string dir = argv[1];
  try {
    Json j;
    j.Open('{');
    j.Key("defaults");
    WriteSettings(j, compose::Settings{});

    j.Key("presets").Open('[');
    for (const compose::Preset& p : compose::Presets()) {
      j.Open('{');
      j.Key("name").String(p.name);
      j.Key("description").String(p.description);
      j.Key("sampleText").String(p.sampleText);
      j.Key("settings");
      WriteSettings(j, PresetSettings(p.name));
      j.Close('}');
    }
    j.Close(']');

    j.Key("options").Open('[');
    for (const compose::OptionInfo& o : compose::Options()) {
      j.Open('{');
      j.Key("name").String(o.name);
      j.Key("section").String(o.section);
      j.Key("value").String(o.value);
      j.Key("range").String(o.range);
      j.Key("help").String(o.help);
      j.Close('}');
    }
    j.Close(']');

    j.Key("textures").Open('[');
    for (const std::string& name : GeneratedTextures()) {
      const std::string bare = name.substr(name.find(':') + 1);
      const compose::Image image = compose::GenerateTexture(bare);
      const std::string file = "textures/" + bare + ".bgra";
      const std::string bytes(reinterpret_cast<const char*>(image.pixels.data()), image.pixels.size() * 4);
      if (!WriteFile(dir + "/" + file, bytes)) {
        std::fprintf(stderr, "lettrix-web-data: cannot write %s/%s\n", dir.c_str(), file.c_str());
        return 1;
      }
      j.Open('{').Key("name").String("gen:" + bare).Key("file").String(file);
      j.Key("width").Number(image.width).Key("height").Number(image.height).Close('}');
    }
    j.Close(']');
    j.Close('}');
    if (!WriteFile(dir + "/lettrix-data.json", j.Text() + "\n")) {
      std::fprintf(stderr, "lettrix-web-data: cannot write %s/lettrix-data.json\n", dir.c_str());
      return 1;
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lettrix-web-data: %s\n", e.what());
    return 1;
  }
  return 0;
}
