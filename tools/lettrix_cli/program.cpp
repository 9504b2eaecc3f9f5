#include "tools/lettrix_cli/program.h"

#include <cstdio>
#include <iterator>
#include <new>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/tool_error.h"

#ifndef LETTRIX_VERSION
#define LETTRIX_VERSION "unknown"
#endif

namespace lxt {
namespace {

// The text of --text-file: the file's bytes, or standard input's for "-".
std::string ReadTextFile(const std::string& path) {
  if (path != "-") {
    const std::vector<uint8_t> bytes = ReadWholeFile(path, "text file");
    return std::string(bytes.begin(), bytes.end());
  }
  std::string text;
  char chunk[65536];
  size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, stdin)) > 0) text.append(chunk, n);
  if (std::ferror(stdin)) throw JobError("cannot read the text from standard input");
  return text;
}

void Run(const std::vector<std::string>& args, const ProgramParts& parts) {
  const CommandLine cl = ParseCommandLine(args, parts.info);
  switch (cl.action) {
    case Action::kHelp:
      std::fputs(HelpText(parts.info).c_str(), stdout);
      return;
    case Action::kListPresets:
      std::fputs(PresetListText().c_str(), stdout);
      return;
    case Action::kVersion:
      std::printf("%s (Lettrix) %s\n", parts.info.name.c_str(), LETTRIX_VERSION);
      return;
    case Action::kRender:
      break;
  }
  Job job = cl.job;
  if (!job.textFile.empty()) {
    job.text = ReadTextFile(job.textFile);
    // A file usually ends its last line with a line feed, which makes no line of its own.
    if (!job.text.empty() && job.text.back() == '\n') job.text.pop_back();
    if (!job.text.empty() && job.text.back() == '\r') job.text.pop_back();
    if (job.text.empty()) throw JobError("the text file '" + job.textFile + "' is empty");
  }

  std::vector<uint8_t> block;
  if (!job.outlineBlock.empty()) {
    block = ReadWholeFile(job.outlineBlock, "outline block");
    lx::compose::CheckOutlineBlock(block, job.outlineBlock);
  } else {
    block = parts.layOutText(job);
  }

  // Render before writing anything, so a failure leaves no file at all.
  std::vector<uint8_t> encoded;
  if (!job.output.empty()) {
    const Image image = lx::compose::FromRgba(lx::compose::RenderBlock(job, block, parts.readImage));
    encoded = HasExtension(job.output, ".png") ? parts.encodePng(image) : EncodeTga(image);
  }
  if (!job.dumpOutline.empty()) WriteFileAtomically(job.dumpOutline, block);
  if (!job.output.empty()) WriteFileAtomically(job.output, encoded);
}

}  // namespace

int RunProgram(const std::vector<std::string>& args, const ProgramParts& parts) {
  try {
    Run(args, parts);
    return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
  } catch (const ToolError& e) {
    if (e.exitCode() == kExitBadUsage) {
      std::fprintf(stderr, "%s: %s (see %s --help)\n", parts.info.name.c_str(), e.what(),
                   parts.info.name.c_str());
    } else {
      std::fprintf(stderr, "%s: %s\n", parts.info.name.c_str(), e.what());
    }
    return e.exitCode();
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s: out of memory\n", parts.info.name.c_str());
    return kExitFailed;
  }
}

}  // namespace lxt
