// lettrix-web-data: writes what the browser playground shares with the lettrix program, so the page never
// keeps a copy of its own: the presets (as the settings the program's parser makes of them), the options
// with their value forms, ranges and defaults (read from the program's help text), the default settings,
// and the generated textures as raw pixels.
//
//   lettrix-web-data DIR   writes DIR/lettrix-data.json and DIR/textures/NAME.bgra (256 x 256 x 4 bytes:
//                          blue, green, red, alpha)
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/presets.h"
#include "tools/lettrix_cli/textures.h"
#include "tools/lettrix_cli/tool_error.h"
#include "tools/lettrix_cli/values.h"
#include "tools/web_data/json_writer.h"
#include "tools/web_data/help_table.h"

namespace {

using lxt::web::Json;

std::string Hex(const lxt::Rgba& c) {
  char s[10];
  std::snprintf(s, sizeof s, "#%02X%02X%02X%02X", c.r, c.g, c.b, c.a);
  return s;
}

const char* FillName(lxt::FillKind k) {
  switch (k) {
    case lxt::FillKind::kSolid:
      return "solid";
    case lxt::FillKind::kTwoColour:
      return "two-colour";
    case lxt::FillKind::kStops:
      return "stops";
    case lxt::FillKind::kTexture:
      return "texture";
  }
  return "solid";
}

const char* ShapeName(lxt::GradientShape s) {
  switch (s) {
    case lxt::GradientShape::kDefault:
      return "default";
    case lxt::GradientShape::kVertical:
      return "vertical";
    case lxt::GradientShape::kRadial:
      return "radial";
    case lxt::GradientShape::kLinear:
      return "linear";
  }
  return "default";
}

const char* TilingName(lxt::TextureTiling t) {
  switch (t) {
    case lxt::TextureTiling::kCentre:
      return "centre";
    case lxt::TextureTiling::kStretch:
      return "stretch";
    case lxt::TextureTiling::kTile:
      return "tile";
  }
  return "tile";
}

void WriteLayer(Json& j, const lxt::LayerSettings& l) {
  j.Open('{');
  j.Key("fill").String(FillName(l.fill));
  j.Key("colour").String(Hex(l.colour));
  j.Key("start").String(Hex(l.start));
  j.Key("end").String(Hex(l.end));
  j.Key("stops").Open('[');
  for (const lxt::ColourStop& s : l.stops) {
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

// The settings of a job as the page keeps them: the job's own field names, colours as #RRGGBBAA.
void WriteSettings(Json& j, const lxt::Job& job) {
  j.Open('{');
  j.Key("text").String(job.text);
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

lxt::ProgramInfo NativeProgram() {
  lxt::ProgramInfo info;
  info.name = "lettrix";
  info.hasFontconfig = true;
  info.readsPng = true;
  return info;
}

// The job the program makes of these options; the output name only satisfies the parser.
lxt::Job ParsedJob(std::vector<std::string> args) {
  args.insert(args.end(), {"-o", "page.png", "--text", "Lettrix"});
  return lxt::ParseCommandLine(args, NativeProgram()).job;
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
    WriteSettings(j, ParsedJob({}));

    j.Key("presets").Open('[');
    for (const lxt::Preset& p : lxt::AllPresets()) {
      j.Open('{');
      j.Key("name").String(p.name);
      j.Key("description").String(p.description);
      j.Key("sampleText").String(p.sampleText);
      j.Key("settings");
      WriteSettings(j, ParsedJob({"--preset", p.name}));
      j.Close('}');
    }
    j.Close(']');

    j.Key("options").Open('[');
    for (const lxt::web::HelpOption& o : lxt::web::ReadHelpTable(lxt::HelpText(NativeProgram()))) {
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
    for (const std::string& name : lxt::Split(lxt::GeneratedTextureList(), ',')) {
      const std::string bare = name.substr(name.find(':') + 1);
      const lxt::Image image = lxt::GenerateTexture(bare);
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
