// The whole run of a program: command line, font, outline block, rendering and output file. The native
// program and the Windows demo differ only in what they pass here.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "compose/composition.h"
#include "tools/lettrix_cli/image.h"
#include "tools/lettrix_cli/job.h"
#include "tools/lettrix_cli/options.h"

namespace lxt {

struct ProgramParts {
  ProgramInfo info;
  // The job's text as an outline block; throws ToolError.
  std::function<std::vector<uint8_t>(const Job&)> layOutText;
  // Texture files.
  lx::compose::ImageReader readImage;
  // PNG encoding; empty when the program writes TGA only.
  std::function<std::vector<uint8_t>(const Image&)> encodePng;
};

// Runs the program on its arguments (UTF-8, without the program name). Messages go to stdout (help,
// lists) and stderr (errors: one line, "<name>: <message>"). Returns the exit status.
int RunProgram(const std::vector<std::string>& args, const ProgramParts& parts);

}  // namespace lxt
