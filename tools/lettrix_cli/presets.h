// Named bundles of options that show what the library is for.
#pragma once

#include <string>
#include <vector>

namespace lxt {

struct Preset {
  std::string name;
  std::string description;
  std::vector<std::string> args;  // options, applied where --preset stands
  std::string sampleText;         // what the gallery writes with it
};

const std::vector<Preset>& AllPresets();
// Null when there is no preset of that name.
const Preset* FindPreset(const std::string& name);

}  // namespace lxt
