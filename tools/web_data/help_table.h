// The options of the lettrix program as its help text lists them, one record per option. The help text
// is what users read, so the page takes its ranges and defaults from the same words.
#pragma once

#include <string>
#include <vector>

namespace lxt::web {

struct HelpOption {
  std::string name;     // long name without the dashes
  std::string section;  // the heading it is listed under, without the colon
  std::string value;    // the value's form ("PX", "COLOUR"); empty for a switch
  std::string range;    // the bracketed range and default at the end of its help, without the brackets
  std::string help;     // the rest of its help, wrapped lines joined by spaces
};

// Reads the option lines of a help text: a heading line ends in ':' and is not indented; an option line
// is indented and starts with "-x, --name" or "--name", followed by the value form and the help; deeper
// indented lines continue the help. Lines after the last option's help (the closing notes) are ignored.
std::vector<HelpOption> ReadHelpTable(const std::string& help);

}  // namespace lxt::web
