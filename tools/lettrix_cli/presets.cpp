#include "tools/lettrix_cli/presets.h"

namespace lxt {

const std::vector<Preset>& AllPresets() {
  static const std::vector<Preset> presets = {
      {"drop-shadow",
       "dark letters casting a soft shadow down and to the right on a light page",
       {"--background", "#ECEFF4", "--face-color", "#2E3440", "--shadow-color", "#0000006A",
        "--shadow-offset", "6,7", "--shadow-blur", "7"},
       "Drop Shadow"},
      {"glow",
       "white letters with a warm golden glow on a night background",
       {"--background", "#12151C", "--face-color", "#FFFDF4", "--outline-width", "2", "--outline-color",
        "#FFE9A8", "--outline-blur", "2", "--shadow-color", "#FFB300", "--shadow-blur", "18"},
       "Glow"},
      {"neon",
       "a pink neon tube: pale core, hot outline and a wide coloured halo",
       {"--background", "#14061C", "--face-color", "#FFE3F5", "--outline-width", "4", "--outline-color",
        "#FF2BA6", "--outline-blur", "3", "--shadow-color", "#FF1C9C", "--shadow-blur", "24"},
       "Neon"},
      {"gold",
       "polished gold: a banded metal gradient, a dark bronze rim and a small shadow",
       {"--background", "#1B1B1F", "--face-stops", "#FFF6C8,#F2C94C:2,#A66B00:2,#F7DA7A,#C08A1E:2",
        "--outline-width", "3", "--outline-colors", "#6B4400,#2E1C00", "--shadow-color", "#000000B0",
        "--shadow-offset", "3,4", "--shadow-blur", "4"},
       "Gold"},
      {"chrome-emboss",
       "embossed chrome: a steel relief lit from the top left with a bevelled dark rim",
       {"--background",
        "#2B2F36",
        "--face-stops",
        "#FFFFFF,#B8C2CC,#59626D,#E6EDF5,#9AA5B1",
        "--emboss",
        "--emboss-angle",
        "-135",
        "--emboss-tint",
        "#E8F0FF",
        "--outline-width",
        "3",
        "--outline-colors",
        "#9AA5B1,#3A4048",
        "--bevel",
        "--shadow-color",
        "#00000099",
        "--shadow-offset",
        "4,5",
        "--shadow-blur",
        "5"},
       "Chrome"},
      {"3d-bevel",
       "a thick red rim shaped into a rounded bevel around bright letters",
       {"--background", "#F4EDE4", "--face-color", "#FFD166", "--outline-width", "7", "--outline-color",
        "#D62828", "--bevel", "--bevel-elevation", "30", "--bevel-passes", "3", "--shadow-color", "#5A1A1A80",
        "--shadow-offset", "5,6", "--shadow-blur", "6"},
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
  };
  return presets;
}

const Preset* FindPreset(const std::string& name) {
  for (const Preset& p : AllPresets()) {
    if (p.name == name) return &p;
  }
  return nullptr;
}

}  // namespace lxt
