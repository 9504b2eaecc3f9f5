// Errors of the command-line programs are the composition layer's: one message for the user, and the exit
// status that goes with it.
#pragma once

#include "compose/compose_error.h"

namespace lxt {

// Exit statuses, as --help documents them.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;    // the job could not be done: font, input file, rendering, output file
constexpr int kExitBadUsage = 2;  // the command line itself is wrong

using ToolError = lx::compose::Error;

// A bad option, value or combination on the command line.
inline ToolError UsageError(const std::string& message) {
  return lx::compose::SettingError(message);
}
// Anything that goes wrong while doing a well-formed job.
inline ToolError JobError(const std::string& message) {
  return lx::compose::JobError(message);
}

}  // namespace lxt
