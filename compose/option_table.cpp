#include "compose/option_table.h"

#include <functional>

#include "compose/compose_error.h"
#include "compose/generated_textures.h"
#include "compose/option_values.h"

namespace lx::compose {
namespace {

using Apply = std::function<void(Settings&, const std::string& name, const std::string& value)>;

// An option and what it does to the settings. The long name comes first, so the table reads like the
// help text.
struct OptionDef {
  std::string name;
  char shortName;
  std::string value;
  std::string range;
  std::string help;
  Apply apply;
};

struct Section {
  std::string title;
  std::vector<OptionDef> options;
};

bool IsTagCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// A BCP 47 tag's shape: a language of 2 to 8 letters, then subtags of 1 to 8 letters or digits.
void CheckLanguage(const std::string& name, const std::string& value) {
  const std::vector<std::string> parts = Split(value, '-');
  bool good = parts[0].size() >= 2 && parts[0].size() <= 8;
  for (char c : parts[0]) good = good && IsTagCharacter(c) && !(c >= '0' && c <= '9');
  for (size_t i = 1; i < parts.size(); ++i) {
    good = good && !parts[i].empty() && parts[i].size() <= 8;
    for (char c : parts[i]) good = good && IsTagCharacter(c);
  }
  if (!good)
    throw SettingError("--" + name + ": '" + value +
                       "' is not a language tag (such as en, ar, hi or sr-Latn)");
}

// Each feature as HarfBuzz writes it: an optional + or -, a tag of 1 to 4 letters or digits, an optional
// [START:END] range and an optional =VALUE (a number, on or off).
void CheckFeatures(const std::string& name, const std::string& value) {
  for (const std::string& f : Split(value, ',')) {
    size_t i = f.size() > 0 && (f[0] == '+' || f[0] == '-') ? 1 : 0;
    const size_t tagStart = i;
    while (i < f.size() && IsTagCharacter(f[i])) ++i;
    bool good = i > tagStart && i - tagStart <= 4;
    if (good && i < f.size() && f[i] == '[') {
      const size_t close = f.find(']', i);
      good = close != std::string::npos;
      for (size_t k = i + 1; good && k < close; ++k) good = (f[k] >= '0' && f[k] <= '9') || f[k] == ':';
      i = good ? close + 1 : i;
    }
    if (good && i < f.size()) {
      const std::string v = f.substr(i);
      good = v == "=on" || v == "=off" ||
             (v.size() > 1 && v[0] == '=' && v.find_first_not_of("0123456789", 1) == std::string::npos);
      i = f.size();
    }
    if (!good || i != f.size()) {
      throw SettingError("--" + name + ": '" + f +
                         "' is not an OpenType feature setting (such as liga=0, kern, +smcp or -calt)");
    }
  }
}

std::string LowerCase(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
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
        throw SettingError("--" + name + ": radial needs two fractions, radial:FROM,TO");
      }
      layer.radialFrom = from;
      layer.radialTo = to;
    }
  } else if (v.rfind("linear:", 0) == 0) {
    layer.shape = GradientShape::kLinear;
    layer.angleDegrees = ParseNumber(name, value.substr(7), -180.0, 180.0);
  } else {
    throw SettingError("--" + name + ": '" + value +
                       "' is not a gradient shape (vertical, radial, radial:FROM,TO or linear:DEGREES)");
  }
}

TextureTiling ParseTiling(const std::string& name, const std::string& value) {
  const std::string v = LowerCase(value);
  if (v == "tile") return TextureTiling::kTile;
  if (v == "stretch") return TextureTiling::kStretch;
  if (v == "centre" || v == "center") return TextureTiling::kCentre;
  throw SettingError("--" + name + ": '" + value + "' is not a tiling (tile, stretch or centre)");
}

// The fill and gradient options, alike for the Face and the Outline.
void AddLayerOptions(std::vector<OptionDef>& out, const std::string& layer, LayerSettings Settings::*member,
                     const std::string& defaultColour) {
  const std::string L = layer == "face" ? "Face" : "Outline";
  out.push_back({layer + "-color", 0, "COLOUR", "default " + defaultColour,
                 "fill the " + L + " with one colour",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   (j.*member).colour = ParseColour(n, v);
                   (j.*member).fill = FillKind::kSolid;
                 }});
  out.push_back({layer + "-colors", 0, "START,END", "",
                 "fill the " + L + " with a gradient from START to END (shape: --" + layer + "-gradient)",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   std::vector<std::string> parts = Split(v, ',');
                   if (parts.size() != 2)
                     throw SettingError("--" + n + ": '" + v + "' is not two colours START,END");
                   (j.*member).start = ParseColour(n, parts[0]);
                   (j.*member).end = ParseColour(n, parts[1]);
                   (j.*member).fill = FillKind::kTwoColour;
                 }});
  out.push_back({layer + "-stops", 0, "C[:W],C[:W],...", "1..255 stops, weights 0..1000000, default 1",
                 "fill the " + L +
                     " with a gradient through colour stops; a weight is the stop's relative "
                     "share of the ramp (0 beside non-zero weights drops the stop)",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   (j.*member).stops = ParseStops(n, v);
                   (j.*member).fill = FillKind::kStops;
                 }});
  out.push_back(
      {layer + "-gradient", 0, "SHAPE", "default vertical",
       "gradient shape: vertical (top to bottom), radial[:FROM,TO] (from the centre, the ramp between "
       "two fractions 0..1 of the radius, default 0,1) or linear:DEGREES (-180..180, 0 = left to "
       "right, 90 = top to bottom)",
       [member](Settings& j, const std::string& n, const std::string& v) {
         ParseGradientShape(j.*member, n, v);
       }});
  out.push_back({layer + "-gradient-extent", 0, "text|canvas", "default text",
                 "the gradient spans the text's box or the whole canvas",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   const std::string s = LowerCase(v);
                   if (s != "text" && s != "canvas") {
                     throw SettingError("--" + n + ": '" + v + "' is not text or canvas");
                   }
                   (j.*member).extentCanvas = s == "canvas";
                   (j.*member).hasArea = false;
                 }});
  out.push_back({layer + "-gradient-area", 0, "L,T,R,B", "canvas pixels",
                 "the gradient spans this rectangle of the canvas (overrides the extent)",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   ParseRectangle(n, v, (j.*member).area);
                   (j.*member).hasArea = true;
                 }});
  out.push_back({layer + "-texture", 0, "FILE|gen:NAME", "",
                 "fill the " + L + " with an image: a TGA or PNG file, or a generated texture (" +
                     GeneratedTextureList() + ")",
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   if (v.empty()) throw SettingError("--" + n + ": the texture name is empty");
                   (j.*member).texture = v;
                   (j.*member).fill = FillKind::kTexture;
                 }});
  out.push_back(
      {layer + "-tiling", 0, "tile|stretch|centre", "default tile",
       "texture placement: repeated, stretched over the text (smoothed), or once in the middle on white",
       [member](Settings& j, const std::string& n, const std::string& v) {
         (j.*member).tiling = ParseTiling(n, v);
       }});
  out.push_back({layer + "-blur", 0, "PX", "0..254, default 0", "blur radius of the " + L,
                 [member](Settings& j, const std::string& n, const std::string& v) {
                   (j.*member).blur = static_cast<int>(ParseInteger(n, v, 0, 254));
                 }});
}

std::vector<Section> BuildSections() {
  std::vector<Section> sections;

  sections.push_back({"Text and font", {}});
  auto& text = sections.back().options;
  text.push_back({"font", 'f', "FILE", "", "font file: TrueType or OpenType (CFF)",
                  [](Settings& j, const std::string&, const std::string& v) {
                    j.fontFile = v;
                    j.fontFamily.clear();
                  }});
  text.push_back({"family", 'F', "PATTERN", "", "font by fontconfig family pattern, e.g. 'DejaVu Serif:bold'",
                  [](Settings& j, const std::string&, const std::string& v) {
                    j.fontFamily = v;
                    j.fontFile.clear();
                  }});
  text.push_back({"size", 's', "PX", "4..1000, default 96", "font size (em) in pixels",
                  [](Settings& j, const std::string& n, const std::string& v) {
                    j.pixelSize = static_cast<int>(ParseInteger(n, v, 4, 1000));
                  }});

  sections.push_back({"Layout", {}});
  auto& layout = sections.back().options;
  layout.push_back(
      {"align", 0, "left|centre|right", "default left", "alignment of each line within the widest one",
       [](Settings& j, const std::string& n, const std::string& v) {
         const std::string s = LowerCase(v);
         if (s == "left") {
           j.align = Align::kLeft;
         } else if (s == "centre" || s == "center") {
           j.align = Align::kCentre;
         } else if (s == "right") {
           j.align = Align::kRight;
         } else {
           throw SettingError("--" + n + ": '" + v + "' is not an alignment (left, centre or right)");
         }
       }});
  layout.push_back({"line-spacing", 0, "FACTOR", "0.1..10, default 1",
                    "distance between baselines as a multiple of the font's line height",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      j.lineSpacing = ParseNumber(n, v, 0.1, 10.0);
                    }});
  layout.push_back({"letter-spacing", 0, "PX", "-1000..1000, default 0",
                    "extra space between characters in pixels (negative draws them closer)",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      j.letterSpacing = ParseNumber(n, v, -1000.0, 1000.0);
                    }});
  layout.push_back({"wrap", 0, "PX", "0..16384, default 0 (no wrapping)",
                    "break lines at spaces so that none is wider than PX; a longer word is broken inside",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      j.wrapWidth = static_cast<int32_t>(ParseInteger(n, v, 0, 16384));
                    }});
  layout.push_back({"direction", 0, "auto|ltr|rtl", "default auto",
                    "direction of each paragraph; auto takes it from the first letter with a direction",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      const std::string s = LowerCase(v);
                      if (s == "auto") {
                        j.direction = Direction::kAuto;
                      } else if (s == "ltr") {
                        j.direction = Direction::kLeftToRight;
                      } else if (s == "rtl") {
                        j.direction = Direction::kRightToLeft;
                      } else {
                        throw SettingError("--" + n + ": '" + v + "' is not a direction (auto, ltr or rtl)");
                      }
                    }});
  layout.push_back(
      {"language", 0, "TAG", "default none",
       "language of the text as a BCP 47 tag (en, ar, hi, sr-Latn), for the forms that differ by language",
       [](Settings& j, const std::string& n, const std::string& v) {
         CheckLanguage(n, v);
         j.language = v;
       }});
  layout.push_back(
      {"features", 0, "LIST", "default the font's own",
       "OpenType features, comma separated: liga=0 (no ligatures), kern=0, +smcp (small capitals), "
       "-calt, ss01",
       [](Settings& j, const std::string& n, const std::string& v) {
         CheckFeatures(n, v);
         j.features = v;
       }});

  sections.push_back({"Canvas", {}});
  auto& canvas = sections.back().options;
  canvas.push_back({"canvas", 'c', "WxH|fit", "1..16384, default fit",
                    "image size; 'fit' sizes the image to everything drawn (stroke, shadow, blur) plus the "
                    "padding, a size centres the drawing",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      if (LowerCase(v) == "fit") {
                        j.fixedCanvas = false;
                        return;
                      }
                      ParseSize(n, v, 1, 16384, &j.canvasWidth, &j.canvasHeight);
                      j.fixedCanvas = true;
                    }});
  canvas.push_back({"padding", 'p', "PX", "0..4096, default 16",
                    "empty border around the drawing with --canvas fit",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      j.padding = static_cast<int32_t>(ParseInteger(n, v, 0, 4096));
                    }});
  canvas.push_back(
      {"background", 'b', "COLOUR", "default transparent",
       "colour the drawing is laid on (#RRGGBBAA for a translucent one)",
       [](Settings& j, const std::string& n, const std::string& v) { j.background = ParseColour(n, v); }});
  canvas.push_back({"translate", 0, "DX,DY", "-16384..16384 each, default 0,0",
                    "move the drawing by DX,DY pixels after it has been placed",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      ParseIntegerPair(n, v, -16384, 16384, &j.translateX, &j.translateY);
                    }});

  sections.push_back({"Face (the letters' interior)", {}});
  AddLayerOptions(sections.back().options, "face", &Settings::face, "white");
  auto& face = sections.back().options;
  face.push_back({"emboss", 0, "", "",
                  "emboss the Face: a grey relief lit from --emboss-angle, tinted by "
                  "--emboss-tint (replaces the Face's colours)",
                  [](Settings& j, const std::string&, const std::string&) { j.emboss = true; }});
  face.push_back({"no-emboss", 0, "", "", "no emboss (default)",
                  [](Settings& j, const std::string&, const std::string&) { j.emboss = false; }});
  face.push_back({"emboss-angle", 0, "DEGREES", "-180..180, default -135",
                  "direction the emboss light comes from (0 = from the right, -90 = from above)",
                  [](Settings& j, const std::string& n, const std::string& v) {
                    j.embossAngleDegrees = ParseNumber(n, v, -180.0, 180.0);
                  }});
  face.push_back(
      {"emboss-tint", 0, "COLOUR", "default white",
       "colour that scales the emboss relief "
       "(white keeps it grey)",
       [](Settings& j, const std::string& n, const std::string& v) { j.embossTint = ParseColour(n, v); }});

  sections.push_back({"Outline (a stroke around the letters)", {}});
  auto& outline = sections.back().options;
  outline.push_back({"outline-width", 'w', "PX", "0..500, default 0",
                     "stroke width on each side of the letters' contour; 0 draws no Outline",
                     [](Settings& j, const std::string& n, const std::string& v) {
                       j.outlineWidth = static_cast<int32_t>(ParseInteger(n, v, 0, 500));
                     }});
  AddLayerOptions(outline, "outline", &Settings::outline, "black");
  outline.push_back({"bevel", 0, "", "", "give the Outline a bevelled 3D border that keeps its colours",
                     [](Settings& j, const std::string&, const std::string&) { j.bevel = true; }});
  outline.push_back({"no-bevel", 0, "", "", "no 3D border (default)",
                     [](Settings& j, const std::string&, const std::string&) { j.bevel = false; }});
  outline.push_back({"bevel-elevation", 0, "DEGREES", "3..60, default 30",
                     "height of the bevel's light above the page; low light gives deep contrast",
                     [](Settings& j, const std::string& n, const std::string& v) {
                       j.bevelElevation = static_cast<int>(ParseInteger(n, v, 3, 60));
                     }});
  outline.push_back({"bevel-passes", 0, "N", "1..60, default 2",
                     "shading passes of the bevel; more round it off",
                     [](Settings& j, const std::string& n, const std::string& v) {
                       j.bevelPasses = static_cast<int>(ParseInteger(n, v, 1, 60));
                     }});
  outline.push_back({"bevel-angle", 0, "DEGREES", "-180..180, default -135",
                     "direction the bevel's light comes from (0 = from the right, -90 = from above)",
                     [](Settings& j, const std::string& n, const std::string& v) {
                       j.bevelAngleDegrees = ParseNumber(n, v, -180.0, 180.0);
                     }});

  sections.push_back({"Shadow (beneath the letters)", {}});
  auto& shadow = sections.back().options;
  shadow.push_back(
      {"shadow-color", 0, "COLOUR", "default #000000A0",
       "Shadow colour; its alpha is the Shadow's opacity (a Shadow shows once it is offset, zoomed "
       "or blurred)",
       [](Settings& j, const std::string& n, const std::string& v) { j.shadowColour = ParseColour(n, v); }});
  shadow.push_back({"shadow-offset", 'd', "X,Y", "-2000..2000 each, default 0,0", "Shadow offset in pixels",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      ParseIntegerPair(n, v, -2000, 2000, &j.shadowX, &j.shadowY);
                    }});
  shadow.push_back({"shadow-zoom", 0, "X[,Y]", "0.1..10 each, default 1", "Shadow scale, about its centre",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      ParseNumberPair(n, v, 0.1, 10.0, &j.shadowZoomX, &j.shadowZoomY);
                    }});
  shadow.push_back({"shadow-blur", 0, "PX", "0..254, default 0", "blur radius of the Shadow",
                    [](Settings& j, const std::string& n, const std::string& v) {
                      j.shadowBlur = static_cast<int>(ParseInteger(n, v, 0, 254));
                    }});
  shadow.push_back({"extrude", 0, "", "",
                    "make the Shadow a solid block joining the letters to the offset copy",
                    [](Settings& j, const std::string&, const std::string&) { j.extrude = true; }});
  shadow.push_back({"no-extrude", 0, "", "", "a flat Shadow (default)",
                    [](Settings& j, const std::string&, const std::string&) { j.extrude = false; }});
  shadow.push_back(
      {"extrude-shading", 0, "smooth|flat", "default smooth",
       "smooth softens the extruded block into one solid; flat keeps the stamps and smooths only "
       "its edge",
       [](Settings& j, const std::string& n, const std::string& v) {
         const std::string s = LowerCase(v);
         if (s != "smooth" && s != "flat") {
           throw SettingError("--" + n + ": '" + v + "' is not smooth or flat");
         }
         j.extrudeSmooth = s == "smooth";
       }});
  shadow.push_back({"no-shadow", 0, "", "", "hide the Shadow",
                    [](Settings& j, const std::string&, const std::string&) { j.shadowVisible = false; }});
  shadow.push_back({"shadow", 0, "", "", "show the Shadow (default)",
                    [](Settings& j, const std::string&, const std::string&) { j.shadowVisible = true; }});
  shadow.push_back({"shadow-only", 0, "", "", "draw the Shadow alone, without Face and Outline",
                    [](Settings& j, const std::string&, const std::string&) { j.shadowOnly = true; }});
  return sections;
}

const std::vector<Section>& Sections() {
  static const std::vector<Section> sections = BuildSections();
  return sections;
}

const OptionDef* FindDef(const std::string& name) {
  for (const Section& s : Sections()) {
    for (const OptionDef& o : s.options) {
      if (o.name == name) return &o;
    }
  }
  return nullptr;
}

std::vector<OptionInfo> BuildTable() {
  std::vector<OptionInfo> table;
  for (const Section& s : Sections()) {
    for (const OptionDef& o : s.options)
      table.push_back({o.name, o.shortName, s.title, o.value, o.range, o.help});
  }
  return table;
}

}  // namespace

const std::vector<OptionInfo>& Options() {
  static const std::vector<OptionInfo> table = BuildTable();
  return table;
}

const OptionInfo* FindOption(const std::string& name) {
  for (const OptionInfo& o : Options()) {
    if (o.name == name) return &o;
  }
  return nullptr;
}

void SetOption(Settings& settings, const std::string& name, const std::string& value) {
  const OptionDef* def = FindDef(name);
  if (!def) throw SettingError("unknown option '--" + name + "'");
  if (def->value.empty() && !value.empty()) throw SettingError("--" + name + " takes no value");
  Settings changed = settings;
  def->apply(changed, name, value);
  settings = std::move(changed);
}

}  // namespace lx::compose
