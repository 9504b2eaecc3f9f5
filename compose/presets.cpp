// The presets: named bundles of options that show what the library is for.
#include "compose/compose_error.h"
#include "compose/option_table.h"

namespace lx::compose {

const std::vector<Preset>& Presets() {
  static const std::vector<Preset> presets = {
      {"drop-shadow",
       "dark letters casting a soft shadow down and to the right on a light page",
       {"--background", "#ECEFF4", "--face-color", "#2E3440", "--shadow-color", "#00000078",
        "--shadow-offset", "6,7", "--shadow-blur", "7"},
       "Drop Shadow"},
      {"glow",
       "warm white letters in a golden glow on a night background",
       {"--background", "#0E1117", "--face-color", "#FFFBEA", "--outline-width", "5", "--outline-color",
        "#FFD54F", "--outline-blur", "6", "--shadow-color", "#FF9800", "--shadow-blur", "28", "--shadow-zoom",
        "1.04"},
       "Glow"},
      {"neon",
       "a pink neon sign: pale core, hot blurred tube and a coloured halo",
       {"--background", "#1A0822", "--face-color", "#FFD9F5", "--outline-width", "4", "--outline-color",
        "#FF3CC4", "--outline-blur", "2", "--shadow-color", "#FF2BB8", "--shadow-blur", "14"},
       "Neon"},
      {"gold",
       "polished gold: a banded metal gradient, a dark bronze rim and a small shadow",
       {"--background", "#1B1B1F", "--face-stops", "#FFF6C8,#F2C94C:2,#A66B00:2,#F7DA7A,#C08A1E:2",
        "--outline-width", "3", "--outline-colors", "#6B4400,#2E1C00", "--shadow-color", "#000000B0",
        "--shadow-offset", "3,4", "--shadow-blur", "4"},
       "Gold"},
      {"chrome-emboss",
       "embossed chrome: banded steel relief lit from above inside a bevelled dark rim",
       {"--background",
        "#2B2F36",
        "--face-stops",
        "#F4F7FB:3,#8E9AA8:2,#2F353D,#C3CCD6:2,#F4F7FB",
        "--emboss",
        "--emboss-angle",
        "-90",
        "--emboss-tint",
        "#EEF4FF",
        "--outline-width",
        "4",
        "--outline-stops",
        "#E9EEF4,#5E6874,#1C2026",
        "--bevel",
        "--bevel-passes",
        "3",
        "--shadow-color",
        "#000000AA",
        "--shadow-offset",
        "4,5",
        "--shadow-blur",
        "5"},
       "Chrome"},
      {"3d-bevel",
       "blue letters in a wide dark rim rounded into a bevel by a low light from the top left",
       {"--background", "#F1F4F8", "--face-colors", "#4FC3F7,#0277BD", "--outline-width", "8",
        "--outline-color", "#00152E", "--bevel", "--bevel-elevation", "20", "--bevel-passes", "5",
        "--shadow-color", "#00000060", "--shadow-offset", "5,6", "--shadow-blur", "6"},
       "Bevel"},
      {"extruded",
       "letters pulled into a solid block that recedes down and to the right",
       {"--background", "#FFF3D6", "--face-color", "#FF5A36", "--outline-width", "2", "--outline-color",
        "#7A1E0E", "--shadow-color", "#7A1E0E", "--shadow-offset", "12,12", "--extrude"},
       "Block"},
      {"textured",
       "letters cut from wood, with a dark rim and a soft shadow",
       {"--background", "#EDE6DA", "--face-texture", "gen:wood", "--outline-width", "2", "--outline-color",
        "#3B2412", "--shadow-color", "#00000080", "--shadow-offset", "5,6", "--shadow-blur", "5"},
       "Timber"},
      {"sticker",
       "a die-cut sticker: diagonal pink gradient inside a thick white border",
       {"--background", "#7FD1AE", "--face-colors", "#FF5E8A,#C2185B", "--face-gradient", "linear:60",
        "--outline-width", "9", "--outline-color", "#FFFFFF", "--shadow-color", "#00000055",
        "--shadow-offset", "4,6", "--shadow-blur", "4"},
       "Sticker"},
      {"retro",
       "a sunset of colour stops with an ink rim and a hard offset shadow",
       {"--background", "#F7E8C8", "--face-stops", "#FFD23F,#FF8C42,#E4572E", "--outline-width", "3",
        "--outline-color", "#2E1F27", "--shadow-color", "#2E1F27", "--shadow-offset", "7,7"},
       "Retro"},
      {"sunburst",
       "a radial gradient burning from the letters' centre, with a fiery halo",
       {"--background", "#1B2A49", "--face-stops", "#FFFDE7,#FFD54F,#FF6F00", "--face-gradient", "radial:0,1",
        "--shadow-color", "#FF6F00", "--shadow-blur", "12"},
       "Sunburst"},
      {"marble",
       "letters cut from veined marble, framed by a bevelled cream rim",
       {"--background", "#3A3F47", "--face-texture", "gen:marble", "--outline-width", "3", "--outline-colors",
        "#E8E2D0,#9C9480", "--bevel", "--bevel-elevation", "25", "--shadow-color", "#000000A0",
        "--shadow-offset", "4,6", "--shadow-blur", "6"},
       "Marble"},
  };
  return presets;
}

const Preset* FindPreset(const std::string& name) {
  for (const Preset& p : Presets()) {
    if (p.name == name) return &p;
  }
  return nullptr;
}

void ApplyPreset(Settings& settings, const std::string& name) {
  const Preset* preset = FindPreset(name);
  if (!preset) throw SettingError("--preset: no preset named '" + name + "' (see --list-presets)");
  Settings changed = settings;
  for (size_t i = 0; i < preset->args.size(); ++i) {
    // Every preset option is a long option; a value follows each one that takes a value.
    const std::string option = preset->args[i].substr(2);
    const OptionInfo* info = FindOption(option);
    const bool takesValue = info != nullptr && !info->value.empty();
    SetOption(changed, option, takesValue && i + 1 < preset->args.size() ? preset->args[++i] : "");
  }
  settings = std::move(changed);
}

}  // namespace lx::compose
