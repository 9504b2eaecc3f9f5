// Every setting by name, as the lettrix program's options and the Python package's keywords name them:
// one table gives each its value form, range, default and help, and one function applies a value given
// as text, so both front ends accept the same values and refuse bad ones with the same messages.
#pragma once

#include <string>
#include <vector>

#include "compose/settings.h"

namespace lx::compose {

struct OptionInfo {
  std::string name;     // "outline-width": the long option without its dashes
  char shortName = 0;   // the command line's one-letter form, 0 for none
  std::string section;  // heading it is listed under ("Canvas", "Face (the letters' interior)", ...)
  std::string value;    // the value's form ("PX", "COLOUR", "WxH|fit"); empty for a switch
  std::string range;    // range and default as shown to users ("0..500, default 0"); may be empty
  std::string help;     // one sentence
};

// The table, in the order of the help text. Switches (empty `value`) come in pairs that set and clear
// a flag ("bevel" / "no-bevel", "shadow" / "no-shadow").
const std::vector<OptionInfo>& Options();

// Null when no option has that name.
const OptionInfo* FindOption(const std::string& name);

// Sets option `name` of `settings` from its text form (a switch takes an empty value). Later calls
// override earlier ones, as options later on a command line do. Throws Error (kSetting) for an unknown
// name, a value where none is taken, or a value that is malformed or out of range; the message names the
// option ("--size: 5000 is out of range (4..1000)"). `settings` is unchanged by a failed call.
void SetOption(Settings& settings, const std::string& name, const std::string& value);

// A named bundle of options that shows what the library is for.
struct Preset {
  std::string name;
  std::string description;
  std::vector<std::string> args;  // options as the command line spells them, applied in order
  std::string sampleText;         // the words the gallery draws with it
};

const std::vector<Preset>& Presets();

// Null when there is no preset of that name.
const Preset* FindPreset(const std::string& name);

// Applies the preset's options to `settings`, over what they hold. Throws Error (kSetting) naming the
// preset list for an unknown name.
void ApplyPreset(Settings& settings, const std::string& name);

// The colour names and generated textures (gen:NAME) values may use, comma separated, for help texts.
std::string ColourNames();
std::string GeneratedTextureList();

}  // namespace lx::compose
