// Errors of the command-line programs: one message for the user and the exit status that goes with it.
#pragma once

#include <stdexcept>
#include <string>

namespace lxt {

// Exit statuses, as --help documents them.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;    // the job could not be done: font, input file, rendering, output file
constexpr int kExitBadUsage = 2;  // the command line itself is wrong

class ToolError : public std::runtime_error {
 public:
  ToolError(int exitCode, const std::string& message) : std::runtime_error(message), exitCode_(exitCode) {}
  int exitCode() const { return exitCode_; }

 private:
  int exitCode_;
};

// A bad option, value or combination on the command line.
inline ToolError UsageError(const std::string& message) {
  return ToolError(kExitBadUsage, message);
}
// Anything that goes wrong while doing a well-formed job.
inline ToolError JobError(const std::string& message) {
  return ToolError(kExitFailed, message);
}

}  // namespace lxt
