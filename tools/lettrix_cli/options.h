// The command line of the programs: the option table, the parser and the help text built from it.
#pragma once

#include <string>
#include <vector>

#include "tools/lettrix_cli/job.h"

namespace lxt {

// What differs between the native program and the Windows demo.
struct ProgramInfo {
  std::string name;           // as the user types it
  std::string summary;        // one line under the usage
  bool hasFontconfig = true;  // --family works
  bool readsPng = true;       // PNG textures and PNG output
  bool shapesText = true;     // the layout options work (the text library lays the text out)
  std::string defaultFont;    // shown in the help
};

enum class Action { kRender, kHelp, kListPresets, kVersion };

struct CommandLine {
  Action action = Action::kRender;
  Job job;
};

// Parses the arguments (without the program name) into a job. Options are applied in order, so a
// --preset lays down its settings where it stands and later options override them. Throws UsageError.
CommandLine ParseCommandLine(const std::vector<std::string>& args, const ProgramInfo& program);

// The --help text: every option with its value, range and default.
std::string HelpText(const ProgramInfo& program);

// The --list-presets text.
std::string PresetListText();

}  // namespace lxt
