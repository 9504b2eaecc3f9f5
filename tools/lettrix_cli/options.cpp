#include "tools/lettrix_cli/options.h"

#include <functional>

#include "compose/option_table.h"
#include "compose/option_values.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

using lx::compose::OptionInfo;
using lx::compose::Split;

// The options of the programs themselves, beside the picture's settings that the composition layer
// names: files, text, presets and what to show.
struct ProgramOption {
  OptionInfo info;
  std::function<void(Job&, const std::string& value)> apply;  // null: handled by the parser
};

const std::vector<ProgramOption>& ProgramOptions() {
  static const std::vector<ProgramOption> options = {
      {{"output", 'o', "General", "FILE", "", "write the image to FILE; .png or .tga by the extension"},
       [](Job& j, const std::string& v) { j.output = v; }},
      {{"preset", 0, "General", "NAME", "",
        "start from a named bundle of settings (see --list-presets); options after it override it"},
       nullptr},
      {{"list-presets", 0, "General", "", "", "list the presets and what they do"}, nullptr},
      {{"help", 'h', "General", "", "", "show this help"}, nullptr},
      {{"version", 0, "General", "", "", "show the version"}, nullptr},
      {{"text", 't', "Text and font", "TEXT", "",
        "the text, UTF-8; a line feed starts a new line (the words that are not options are used too, joined "
        "by spaces); with a preset and no text, the preset's sample words"},
       [](Job& j, const std::string& v) {
         j.text = v;
         j.hasText = true;
       }},
      {{"text-file", 0, "Text and font", "FILE", "",
        "read the text from FILE, UTF-8 ('-' reads standard input)"},
       [](Job& j, const std::string& v) {
         if (v.empty()) throw UsageError("--text-file: the file name is empty");
         j.textFile = v;
       }},
  };
  return options;
}

// Options that come after the font options in their section.
const std::vector<ProgramOption>& BlockOptions() {
  static const std::vector<ProgramOption> options = {
      {{"outline-block", 0, "Text and font", "FILE", "",
        "draw this outline block (GetGlyphOutline GGO_NATIVE layout, as --dump-outline writes it) instead of "
        "text"},
       [](Job& j, const std::string& v) { j.outlineBlock = v; }},
      {{"dump-outline", 0, "Text and font", "FILE", "", "also write the text's outline block to FILE"},
       [](Job& j, const std::string& v) { j.dumpOutline = v; }},
  };
  return options;
}

const ProgramOption* FindProgramOption(const std::string& name, char shortName) {
  for (const auto* list : {&ProgramOptions(), &BlockOptions()}) {
    for (const ProgramOption& o : *list) {
      if ((shortName == 0 && o.info.name == name) || (shortName != 0 && o.info.shortName == shortName))
        return &o;
    }
  }
  return nullptr;
}

// Any option, the programs' own or a setting; null for none.
const OptionInfo* FindAny(const std::string& name, char shortName) {
  if (const ProgramOption* p = FindProgramOption(name, shortName)) return &p->info;
  if (shortName == 0) return lx::compose::FindOption(name);
  for (const OptionInfo& o : lx::compose::Options()) {
    if (o.shortName == shortName) return &o;
  }
  return nullptr;
}

std::string LowerCase(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && LowerCase(s.substr(s.size() - tail.size())) == tail;
}

// Every option in the order of the help text, with the title of its section.
std::vector<const OptionInfo*> HelpOrder() {
  std::vector<const OptionInfo*> order;
  for (const ProgramOption& o : ProgramOptions()) {
    if (o.info.section == "General") order.push_back(&o.info);
  }
  std::string last;
  for (const OptionInfo& o : lx::compose::Options()) {
    if (last == "Text and font" && o.section != last) {
      for (const ProgramOption& b : BlockOptions()) order.push_back(&b.info);
    }
    if (o.section == "Text and font" && last != o.section) {
      for (const ProgramOption& p : ProgramOptions()) {
        if (p.info.section == "Text and font") order.push_back(&p.info);
      }
    }
    order.push_back(&o);
    last = o.section;
  }
  return order;
}

struct Parser {
  CommandLine result;
  std::vector<std::string> words;
  const lx::compose::Preset* lastPreset = nullptr;
  const ProgramInfo& program;

  explicit Parser(const ProgramInfo& p) : program(p) {}

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
      const OptionInfo* def = nullptr;
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
        def = FindAny(name, 0);
        if (!def) throw UsageError("unknown option '--" + name + "'");
      } else {
        def = FindAny("", arg[1]);
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
    return FindAny("", arg[1]) != nullptr;
  }

  void Handle(const OptionInfo& def, const std::string& value, bool inPreset) {
    if (def.name == "help") {
      result.action = Action::kHelp;
    } else if (def.name == "version") {
      result.action = Action::kVersion;
    } else if (def.name == "list-presets") {
      result.action = Action::kListPresets;
    } else if (def.name == "preset") {
      if (inPreset) throw UsageError("a preset cannot name another preset");
      const lx::compose::Preset* preset = lx::compose::FindPreset(value);
      if (!preset) throw UsageError("--preset: no preset named '" + value + "' (see --list-presets)");
      lastPreset = preset;
      Run(preset->args, true);
    } else if (const ProgramOption* own = FindProgramOption(def.name, 0)) {
      own->apply(result.job, value);
    } else {
      if (def.section == "Layout" && !program.shapesText) {
        throw UsageError("--" + def.name + ": " + program.name +
                         " draws one line through GDI without shaping; the layout options need the lettrix "
                         "program");
      }
      lx::compose::SetOption(result.job, def.name, value);
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
  Parser parser(program);
  parser.Run(args, false);
  CommandLine& cl = parser.result;
  if (cl.action != Action::kRender) return cl;

  Job& job = cl.job;
  if (!job.textFile.empty() && (job.hasText || !parser.words.empty())) {
    throw UsageError("the text is given twice: by --text-file and by --text or as words");
  }
  if (!parser.words.empty()) {
    if (job.hasText) throw UsageError("the text is given twice: by --text and as words");
    for (const std::string& w : parser.words) {
      if (!job.text.empty()) job.text += ' ';
      job.text += w;
    }
    job.hasText = true;
  }
  if (!job.textFile.empty()) job.hasText = true;  // read when the run starts
  if (!job.outlineBlock.empty()) {
    if (job.hasText) throw UsageError("give either a text or --outline-block, not both");
    if (!job.dumpOutline.empty()) throw UsageError("--dump-outline needs a text, not --outline-block");
  } else if (!job.hasText && parser.lastPreset) {
    job.text = parser.lastPreset->sampleText;
    job.hasText = true;
  } else if (!job.hasText) {
    throw UsageError("no text given (try: " + program.name + " -o out.png Hello)");
  } else if (job.text.empty() && job.textFile.empty()) {
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
  std::string section;
  for (const OptionInfo* o : HelpOrder()) {
    if (o->name == "family" && !program.hasFontconfig) continue;
    if (o->section == "Layout" && !program.shapesText) continue;
    if (o->section != section) {
      section = o->section;
      out += "\n" + section + ":\n";
    }
    std::string head = "  ";
    head += o->shortName ? std::string("-") + o->shortName + ", " : "    ";
    head += "--" + o->name;
    if (!o->value.empty()) head += " " + o->value;
    std::string help = o->help;
    if (o->name == "font") help += " (default " + program.defaultFont + ")";
    if (o->name == "output" && !program.readsPng) help = "write the image to FILE, a .tga file";
    if (o->name.find("-texture") != std::string::npos && !program.readsPng) {
      help.replace(help.find("a TGA or PNG file"), 17, "a TGA file");
    }
    if (!o->range.empty()) help += " [" + o->range + "]";
    constexpr size_t kColumn = 36;
    if (head.size() + 1 > kColumn) {
      out += head + "\n" + std::string(kColumn, ' ');
    } else {
      out += head + std::string(kColumn - head.size(), ' ');
    }
    out += Wrap(help, kColumn, 110) + "\n";
  }
  out +=
      "\n" + Wrap("Colours: #RGB, #RRGGBB, #RRGGBBAA (AA = alpha, 00 transparent to FF opaque) or a name: " +
                      lx::compose::ColourNames() + ".",
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
  for (const lx::compose::Preset& p : lx::compose::Presets()) {
    std::string line = "  " + p.name;
    line += std::string(line.size() < 20 ? 20 - line.size() : 1, ' ');
    out += line + Wrap(p.description, 20, 110) + "\n";
  }
  return out;
}

}  // namespace lxt
