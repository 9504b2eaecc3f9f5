#include "tools/web_data/help_table.h"

#include <sstream>

namespace lxt::web {
namespace {

constexpr size_t kHelpColumn = 36;  // where the help starts on an option line

std::string Trim(const std::string& s) {
  const size_t first = s.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// Moves a trailing "[...]" of the help into the range.
void SplitRange(HelpOption* o) {
  if (o->help.empty() || o->help.back() != ']') return;
  const size_t open = o->help.rfind(" [");
  if (open == std::string::npos) return;
  o->range = o->help.substr(open + 2, o->help.size() - open - 3);
  o->help.erase(open);
}

}  // namespace

std::vector<HelpOption> ReadHelpTable(const std::string& help) {
  std::vector<HelpOption> options;
  std::string section, line;
  bool inOption = false;
  std::istringstream in(help);
  while (std::getline(in, line)) {
    if (!line.empty() && line[0] != ' ' && line.back() == ':') {
      section = line.substr(0, line.size() - 1);
      inOption = false;
      continue;
    }
    const size_t dashes = line.find("--");
    const bool optionLine = !section.empty() && line.rfind("  ", 0) == 0 && dashes != std::string::npos &&
                            dashes < kHelpColumn && line.find_first_not_of(' ') >= 2 &&
                            (line[line.find_first_not_of(' ')] == '-');
    if (optionLine) {
      // "--name VALUE" never holds a space of its own; what starts at the help column is the help.
      HelpOption o;
      o.section = section;
      size_t at = line.find(' ', dashes);
      o.name = line.substr(dashes + 2, at == std::string::npos ? std::string::npos : at - dashes - 2);
      if (at != std::string::npos) {
        const size_t word = line.find_first_not_of(' ', at);
        if (word != std::string::npos && word < kHelpColumn) {
          const size_t wordEnd = line.find(' ', word);
          o.value = line.substr(word, wordEnd == std::string::npos ? std::string::npos : wordEnd - word);
          at = wordEnd;
        }
      }
      if (at != std::string::npos) o.help = Trim(line.substr(at));
      options.push_back(o);
      inOption = true;
    } else if (inOption && line.rfind(std::string(kHelpColumn, ' '), 0) == 0) {
      std::string& h = options.back().help;
      h += (h.empty() ? "" : " ") + Trim(line);
    } else {
      inOption = false;
    }
  }
  for (HelpOption& o : options) SplitRange(&o);
  return options;
}

}  // namespace lxt::web
