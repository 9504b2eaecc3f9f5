#include "tools/lettrix_cli/options.h"

#include <functional>

#include "tools/lettrix_cli/presets.h"
#include "tools/lettrix_cli/textures.h"
#include "tools/lettrix_cli/tool_error.h"
#include "tools/lettrix_cli/values.h"

namespace lxt {
namespace {

using Apply = std::function<void(Job&, const std::string& name, const std::string& value)>;

struct OptionDef {
  std::string name;   // long name, without the dashes
  char shortName;     // 0: none
  std::string value;  // placeholder of the value; empty for a switch
  std::string range;  // range and default, shown in brackets
  std::string help;
  Apply apply;
};

struct Section {
  std::string title;
  std::vector<OptionDef> options;
};

constexpr double kDegreesToRadians = 3.141592653589793 / 180.0;

std::string LowerCase(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && LowerCase(s.substr(s.size() - tail.size())) == tail;
}

void ParseGradientShape(LayerSettings& layer, const std::string& name, const std::string& value) {
  const std::string v = LowerCase(value);
  if (v == "vertical") {
    layer.shape = GradientShape::kVertical;
  } else if (v == "radial" || v.rfind("radial:", 0) == 0) {
    layer.shape = GradientShape::kRadial;
    if (v.size() > 6) {
      double from = 0.0, to = 0.0;
      ParseNumberPair(name, value.substr(7), 0.0, 1.0, &from, &to);
      if (value.find(',') == std::string::npos) {
        throw UsageError("--" + name + ": radial needs two fractions, radial:FROM,TO");
      }
      layer.radialFrom = from;
      layer.radialTo = to;
    }
  } else if (v.rfind("linear:", 0) == 0) {
    layer.shape = GradientShape::kLinear;
    layer.angleDegrees = ParseNumber(name, value.substr(7), -180.0, 180.0);
  } else {
    throw UsageError("--" + name + ": '" + value +
                     "' is not a gradient shape (vertical, radial, radial:FROM,TO or linear:DEGREES)");
  }
}

TextureTiling ParseTiling(const std::string& name, const std::string& value) {
  const std::string v = LowerCase(value);
  if (v == "tile") return TextureTiling::kTile;
  if (v == "stretch") return TextureTiling::kStretch;
  if (v == "centre" || v == "center") return TextureTiling::kCentre;
  throw UsageError("--" + name + ": '" + value + "' is not a tiling (tile, stretch or centre)");
}

// The fill and gradient options, alike for the Face and the Outline.
void AddLayerOptions(std::vector<OptionDef>& out, const std::string& layer, LayerSettings Job::*member,
                     const std::string& defaultColour) {
  const std::string L = layer == "face" ? "Face" : "Outline";
  out.push_back({layer + "-color", 0, "COLOUR", "default " + defaultColour,
                 "fill the " + L + " with one colour",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   (j.*member).colour = ParseColour(n, v);
                   (j.*member).fill = FillKind::kSolid;
                 }});
  out.push_back({layer + "-colors", 0, "START,END", "",
                 "fill the " + L + " with a gradient from START to END (shape: --" + layer + "-gradient)",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   std::vector<std::string> parts = Split(v, ',');
                   if (parts.size() != 2)
                     throw UsageError("--" + n + ": '" + v + "' is not two colours START,END");
                   (j.*member).start = ParseColour(n, parts[0]);
                   (j.*member).end = ParseColour(n, parts[1]);
                   (j.*member).fill = FillKind::kTwoColour;
                 }});
  out.push_back({layer + "-stops", 0, "C[:W],C[:W],...", "1..255 stops, weights 0..1000000, default 1",
                 "fill the " + L +
                     " with a gradient through colour stops; a weight is the stop's relative "
                     "share of the ramp (0 beside non-zero weights drops the stop)",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   (j.*member).stops = ParseStops(n, v);
                   (j.*member).fill = FillKind::kStops;
                 }});
  out.push_back(
      {layer + "-gradient", 0, "SHAPE", "default vertical",
       "gradient shape: vertical (top to bottom), radial[:FROM,TO] (from the centre, the ramp between "
       "two fractions 0..1 of the radius, default 0,1) or linear:DEGREES (-180..180, 0 = left to "
       "right, 90 = top to bottom)",
       [member](Job& j, const std::string& n, const std::string& v) {
         ParseGradientShape(j.*member, n, v);
       }});
  out.push_back({layer + "-gradient-extent", 0, "text|canvas", "default text",
                 "the gradient spans the text's box or the whole canvas",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   const std::string s = LowerCase(v);
                   if (s != "text" && s != "canvas") {
                     throw UsageError("--" + n + ": '" + v + "' is not text or canvas");
                   }
                   (j.*member).extentCanvas = s == "canvas";
                   (j.*member).hasArea = false;
                 }});
  out.push_back({layer + "-gradient-area", 0, "L,T,R,B", "canvas pixels",
                 "the gradient spans this rectangle of the canvas (overrides the extent)",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   ParseRectangle(n, v, (j.*member).area);
                   (j.*member).hasArea = true;
                 }});
  out.push_back({layer + "-texture", 0, "FILE|gen:NAME", "",
                 "fill the " + L + " with an image: a TGA or PNG file, or a generated texture (" +
                     GeneratedTextureList() + ")",
                 [member](Job& j, const std::string& n, const std::string& v) {
                   if (v.empty()) throw UsageError("--" + n + ": the texture name is empty");
                   (j.*member).texture = v;
                   (j.*member).fill = FillKind::kTexture;
                 }});
  out.push_back(
      {layer + "-tiling", 0, "tile|stretch|centre", "default tile",
       "texture placement: repeated, stretched over the text (smoothed), or once in the middle on white",
       [member](Job& j, const std::string& n, const std::string& v) {
         (j.*member).tiling = ParseTiling(n, v);
       }});
  out.push_back({layer + "-blur", 0, "PX", "0..254, default 0", "blur radius of the " + L,
                 [member](Job& j, const std::string& n, const std::string& v) {
                   (j.*member).blur = static_cast<int>(ParseInteger(n, v, 0, 254));
                 }});
}

std::vector<Section> BuildSections() {
  std::vector<Section> sections;

  sections.push_back({"General", {}});
  auto& general = sections.back().options;
  general.push_back({"output", 'o', "FILE", "", "write the image to FILE; .png or .tga by the extension",
                     [](Job& j, const std::string&, const std::string& v) { j.output = v; }});
  general.push_back({"preset", 0, "NAME", "",
                     "start from a named bundle of settings (see --list-presets); "
                     "options after it override it",
                     nullptr});
  general.push_back({"list-presets", 0, "", "", "list the presets and what they do", nullptr});
  general.push_back({"help", 'h', "", "", "show this help", nullptr});
  general.push_back({"version", 0, "", "", "show the version", nullptr});

  sections.push_back({"Text and font", {}});
  auto& text = sections.back().options;
  text.push_back({"text", 't', "TEXT", "",
                  "the text, UTF-8 (the words that are not options are used too, "
                  "joined by spaces); with a preset and no text, the preset's sample words",
                  [](Job& j, const std::string&, const std::string& v) {
                    j.text = v;
                    j.hasText = true;
                  }});
  text.push_back(
      {"font", 'f', "FILE", "", "TrueType font file", [](Job& j, const std::string&, const std::string& v) {
         j.fontFile = v;
         j.fontFamily.clear();
       }});
  text.push_back({"family", 'F', "PATTERN", "", "font by fontconfig family pattern, e.g. 'DejaVu Serif:bold'",
                  [](Job& j, const std::string&, const std::string& v) {
                    j.fontFamily = v;
                    j.fontFile.clear();
                  }});
  text.push_back({"size", 's', "PX", "4..1000, default 96", "font size (em) in pixels",
                  [](Job& j, const std::string& n, const std::string& v) {
                    j.pixelSize = static_cast<int>(ParseInteger(n, v, 4, 1000));
                  }});
  text.push_back({"outline-block", 0, "FILE", "",
                  "draw this outline block (GetGlyphOutline GGO_NATIVE "
                  "layout, as --dump-outline writes it) instead of text",
                  [](Job& j, const std::string&, const std::string& v) { j.outlineBlock = v; }});
  text.push_back({"dump-outline", 0, "FILE", "", "also write the text's outline block to FILE",
                  [](Job& j, const std::string&, const std::string& v) { j.dumpOutline = v; }});

  sections.push_back({"Canvas", {}});
  auto& canvas = sections.back().options;
  canvas.push_back({"canvas", 'c', "WxH|fit", "1..16384, default fit",
                    "image size; 'fit' sizes the image to everything drawn (stroke, shadow, blur) plus the "
                    "padding, a size centres the drawing",
                    [](Job& j, const std::string& n, const std::string& v) {
                      if (LowerCase(v) == "fit") {
                        j.fixedCanvas = false;
                        return;
                      }
                      ParseSize(n, v, 1, 16384, &j.canvasWidth, &j.canvasHeight);
                      j.fixedCanvas = true;
                    }});
  canvas.push_back({"padding", 'p', "PX", "0..4096, default 16",
                    "empty border around the drawing with --canvas fit",
                    [](Job& j, const std::string& n, const std::string& v) {
                      j.padding = static_cast<int32_t>(ParseInteger(n, v, 0, 4096));
                    }});
  canvas.push_back(
      {"background", 'b', "COLOUR", "default transparent",
       "colour the drawing is laid on (#RRGGBBAA for a translucent one)",
       [](Job& j, const std::string& n, const std::string& v) { j.background = ParseColour(n, v); }});
  canvas.push_back({"translate", 0, "DX,DY", "-16384..16384 each, default 0,0",
                    "move the drawing by DX,DY pixels after it has been placed",
                    [](Job& j, const std::string& n, const std::string& v) {
                      ParseIntegerPair(n, v, -16384, 16384, &j.translateX, &j.translateY);
                    }});

  sections.push_back({"Face (the letters' interior)", {}});
  AddLayerOptions(sections.back().options, "face", &Job::face, "white");
  auto& face = sections.back().options;
  face.push_back({"emboss", 0, "", "",
                  "emboss the Face: a grey relief lit from --emboss-angle, tinted by "
                  "--emboss-tint (replaces the Face's colours)",
                  [](Job& j, const std::string&, const std::string&) { j.emboss = true; }});
  face.push_back({"no-emboss", 0, "", "", "no emboss (default)",
                  [](Job& j, const std::string&, const std::string&) { j.emboss = false; }});
  face.push_back({"emboss-angle", 0, "DEGREES", "-180..180, default -135",
                  "direction the emboss light comes from (0 = from the right, -90 = from above)",
                  [](Job& j, const std::string& n, const std::string& v) {
                    j.embossAngleDegrees = ParseNumber(n, v, -180.0, 180.0);
                  }});
  face.push_back(
      {"emboss-tint", 0, "COLOUR", "default white",
       "colour that scales the emboss relief "
       "(white keeps it grey)",
       [](Job& j, const std::string& n, const std::string& v) { j.embossTint = ParseColour(n, v); }});

  sections.push_back({"Outline (a stroke around the letters)", {}});
  auto& outline = sections.back().options;
  outline.push_back({"outline-width", 'w', "PX", "0..500, default 0",
                     "stroke width on each side of the letters' contour; 0 draws no Outline",
                     [](Job& j, const std::string& n, const std::string& v) {
                       j.outlineWidth = static_cast<int32_t>(ParseInteger(n, v, 0, 500));
                     }});
  AddLayerOptions(outline, "outline", &Job::outline, "black");
  outline.push_back({"bevel", 0, "", "", "give the Outline a bevelled 3D border that keeps its colours",
                     [](Job& j, const std::string&, const std::string&) { j.bevel = true; }});
  outline.push_back({"no-bevel", 0, "", "", "no 3D border (default)",
                     [](Job& j, const std::string&, const std::string&) { j.bevel = false; }});
  outline.push_back({"bevel-elevation", 0, "DEGREES", "3..60, default 30",
                     "height of the bevel's light above the page; low light gives deep contrast",
                     [](Job& j, const std::string& n, const std::string& v) {
                       j.bevelElevation = static_cast<int>(ParseInteger(n, v, 3, 60));
                     }});
  outline.push_back({"bevel-passes", 0, "N", "1..60, default 2",
                     "shading passes of the bevel; more round it off",
                     [](Job& j, const std::string& n, const std::string& v) {
                       j.bevelPasses = static_cast<int>(ParseInteger(n, v, 1, 60));
                     }});
  outline.push_back({"bevel-angle", 0, "DEGREES", "-180..180, default -135",
                     "direction the bevel's light comes from (0 = from the right, -90 = from above)",
                     [](Job& j, const std::string& n, const std::string& v) {
                       j.bevelAngleDegrees = ParseNumber(n, v, -180.0, 180.0);
                     }});

  sections.push_back({"Shadow (beneath the letters)", {}});
  auto& shadow = sections.back().options;
  shadow.push_back(
      {"shadow-color", 0, "COLOUR", "default #000000A0",
       "Shadow colour; its alpha is the Shadow's opacity (a Shadow shows once it is offset, zoomed "
       "or blurred)",
       [](Job& j, const std::string& n, const std::string& v) { j.shadowColour = ParseColour(n, v); }});
  shadow.push_back({"shadow-offset", 'd', "X,Y", "-2000..2000 each, default 0,0", "Shadow offset in pixels",
                    [](Job& j, const std::string& n, const std::string& v) {
                      ParseIntegerPair(n, v, -2000, 2000, &j.shadowX, &j.shadowY);
                    }});
  shadow.push_back({"shadow-zoom", 0, "X[,Y]", "0.1..10 each, default 1", "Shadow scale, about its centre",
                    [](Job& j, const std::string& n, const std::string& v) {
                      ParseNumberPair(n, v, 0.1, 10.0, &j.shadowZoomX, &j.shadowZoomY);
                    }});
  shadow.push_back({"shadow-blur", 0, "PX", "0..254, default 0", "blur radius of the Shadow",
                    [](Job& j, const std::string& n, const std::string& v) {
                      j.shadowBlur = static_cast<int>(ParseInteger(n, v, 0, 254));
                    }});
  shadow.push_back({"extrude", 0, "", "",
                    "make the Shadow a solid block joining the letters to the offset copy",
                    [](Job& j, const std::string&, const std::string&) { j.extrude = true; }});
  shadow.push_back({"no-extrude", 0, "", "", "a flat Shadow (default)",
                    [](Job& j, const std::string&, const std::string&) { j.extrude = false; }});
  shadow.push_back(
      {"extrude-shading", 0, "smooth|flat", "default smooth",
       "smooth softens the extruded block into one solid; flat keeps the stamps and smooths only "
       "its edge",
       [](Job& j, const std::string& n, const std::string& v) {
         const std::string s = LowerCase(v);
         if (s != "smooth" && s != "flat") {
           throw UsageError("--" + n + ": '" + v + "' is not smooth or flat");
         }
         j.extrudeSmooth = s == "smooth";
       }});
  shadow.push_back({"no-shadow", 0, "", "", "hide the Shadow",
                    [](Job& j, const std::string&, const std::string&) { j.shadowVisible = false; }});
  shadow.push_back({"shadow", 0, "", "", "show the Shadow (default)",
                    [](Job& j, const std::string&, const std::string&) { j.shadowVisible = true; }});
  shadow.push_back({"shadow-only", 0, "", "", "draw the Shadow alone, without Face and Outline",
                    [](Job& j, const std::string&, const std::string&) { j.shadowOnly = true; }});
  return sections;
}

const std::vector<Section>& Sections() {
  static const std::vector<Section> sections = BuildSections();
  return sections;
}

const OptionDef* FindLong(const std::string& name) {
  for (const Section& s : Sections()) {
    for (const OptionDef& o : s.options) {
      if (o.name == name) return &o;
    }
  }
  return nullptr;
}

const OptionDef* FindShort(char c) {
  for (const Section& s : Sections()) {
    for (const OptionDef& o : s.options) {
      if (o.shortName == c) return &o;
    }
  }
  return nullptr;
}

struct Parser {
  CommandLine result;
  std::vector<std::string> words;
  const Preset* lastPreset = nullptr;

  void Run(const std::vector<std::string>& args, bool inPreset) {
    for (size_t i = 0; i < args.size(); ++i) {
      const std::string& arg = args[i];
      if (arg == "--") {
        for (++i; i < args.size(); ++i) words.push_back(args[i]);
        break;
      }
      if (arg.size() < 2 || arg[0] != '-' || (arg[1] != '-' && !IsShortOption(arg))) {
        words.push_back(arg);
        continue;
      }
      const OptionDef* def = nullptr;
      std::string value;
      bool hasValue = false;
      if (arg[1] == '-') {
        std::string name = arg.substr(2);
        size_t eq = name.find('=');
        if (eq != std::string::npos) {
          value = name.substr(eq + 1);
          name = name.substr(0, eq);
          hasValue = true;
        }
        def = FindLong(name);
        if (!def) throw UsageError("unknown option '--" + name + "'");
      } else {
        def = FindShort(arg[1]);
        if (arg.size() > 2) {
          value = arg.substr(2);
          hasValue = true;
        }
      }
      if (def->value.empty()) {
        if (hasValue) throw UsageError("--" + def->name + " takes no value");
      } else if (!hasValue) {
        if (i + 1 >= args.size()) throw UsageError("--" + def->name + " needs a value: " + def->value);
        value = args[++i];
      }
      Handle(*def, value, inPreset);
    }
  }

  static bool IsShortOption(const std::string& arg) {
    // "-5" is a word (a negative number as text), "-o" an option.
    return FindShort(arg[1]) != nullptr;
  }

  void Handle(const OptionDef& def, const std::string& value, bool inPreset) {
    if (def.name == "help") {
      result.action = Action::kHelp;
    } else if (def.name == "version") {
      result.action = Action::kVersion;
    } else if (def.name == "list-presets") {
      result.action = Action::kListPresets;
    } else if (def.name == "preset") {
      if (inPreset) throw UsageError("a preset cannot name another preset");
      const Preset* preset = FindPreset(value);
      if (!preset) throw UsageError("--preset: no preset named '" + value + "' (see --list-presets)");
      lastPreset = preset;
      Run(preset->args, true);
    } else {
      def.apply(result.job, def.name, value);
    }
  }
};

std::string Wrap(const std::string& text, size_t indent, size_t width) {
  std::string out;
  size_t column = indent;
  for (const std::string& word : Split(text, ' ')) {
    if (column > indent && column + 1 + word.size() > width) {
      out += "\n" + std::string(indent, ' ');
      column = indent;
    } else if (column > indent) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
  }
  return out;
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& args, const ProgramInfo& program) {
  Parser parser;
  parser.Run(args, false);
  CommandLine& cl = parser.result;
  if (cl.action != Action::kRender) return cl;

  Job& job = cl.job;
  if (!parser.words.empty()) {
    if (job.hasText) throw UsageError("the text is given twice: by --text and as words");
    for (const std::string& w : parser.words) {
      if (!job.text.empty()) job.text += ' ';
      job.text += w;
    }
    job.hasText = true;
  }
  if (!job.outlineBlock.empty()) {
    if (job.hasText) throw UsageError("give either a text or --outline-block, not both");
    if (!job.dumpOutline.empty()) throw UsageError("--dump-outline needs a text, not --outline-block");
  } else if (!job.hasText && parser.lastPreset) {
    job.text = parser.lastPreset->sampleText;
    job.hasText = true;
  } else if (!job.hasText) {
    throw UsageError("no text given (try: " + program.name + " -o out.png Hello)");
  } else if (job.text.empty()) {
    throw UsageError("the text is empty");
  }
  if (job.output.empty() && job.dumpOutline.empty()) {
    throw UsageError("no output file given: add -o FILE.png or -o FILE.tga");
  }
  if (!job.output.empty()) {
    const bool png = EndsWith(job.output, ".png");
    if (!png && !EndsWith(job.output, ".tga")) {
      throw UsageError("--output: '" + job.output + "' must end in .png or .tga");
    }
    if (png && !program.readsPng) {
      throw UsageError("--output: " + program.name + " writes TGA only; name the file .tga");
    }
  }
  if (!job.fontFamily.empty() && !program.hasFontconfig) {
    throw UsageError("--family: " + program.name + " has no fontconfig; give the font file with --font");
  }
  return cl;
}

std::string HelpText(const ProgramInfo& program) {
  std::string out = "Usage: " + program.name + " [OPTIONS] -o FILE TEXT...\n" + program.summary + "\n";
  for (const Section& section : Sections()) {
    out += "\n" + section.title + ":\n";
    for (const OptionDef& o : section.options) {
      if (o.name == "family" && !program.hasFontconfig) continue;
      std::string head = "  ";
      head += o.shortName ? std::string("-") + o.shortName + ", " : "    ";
      head += "--" + o.name;
      if (!o.value.empty()) head += " " + o.value;
      std::string help = o.help;
      if (o.name == "font") help += " (default " + program.defaultFont + ")";
      if (o.name == "output" && !program.readsPng) help = "write the image to FILE, a .tga file";
      if (o.name.find("-texture") != std::string::npos && !program.readsPng) {
        help.replace(help.find("a TGA or PNG file"), 17, "a TGA file");
      }
      if (!o.range.empty()) help += " [" + o.range + "]";
      constexpr size_t kColumn = 36;
      if (head.size() + 1 > kColumn) {
        out += head + "\n" + std::string(kColumn, ' ');
      } else {
        out += head + std::string(kColumn - head.size(), ' ');
      }
      out += Wrap(help, kColumn, 110) + "\n";
    }
  }
  out +=
      "\n" + Wrap("Colours: #RGB, #RRGGBB, #RRGGBBAA (AA = alpha, 00 transparent to FF opaque) or a name: " +
                      ColourNames() + ".",
                  0, 110);
  out += "\nAngles are degrees with y growing downwards: 0 points right, 90 down, -90 up.\n";
  out += "\n" +
         Wrap(
             "Exit status: 0 done; 1 the job failed (font, input file, drawing or output file); 2 the "
             "command line is wrong. Nothing is written when the job fails.",
             0, 110) +
         "\n";
  return out;
}

std::string PresetListText() {
  std::string out;
  for (const Preset& p : AllPresets()) {
    std::string line = "  " + p.name;
    line += std::string(line.size() < 20 ? 20 - line.size() : 1, ' ');
    out += line + Wrap(p.description, 20, 110) + "\n";
  }
  return out;
}

}  // namespace lxt
