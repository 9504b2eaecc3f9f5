// The one error type of the composition layer. Its messages are the ones the lettrix program prints, so
// every front end (the command line, Python) tells its users the same thing in the same words.
#pragma once

#include <stdexcept>
#include <string>

namespace lx::compose {

enum class ErrorKind {
  kSetting,  // a bad option name, value or combination: the caller's request itself is wrong
  kJob,      // a well-formed request that could not be done: font, input file, layout, drawing
};

class Error : public std::runtime_error {
 public:
  Error(ErrorKind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
  ErrorKind kind() const { return kind_; }
  // The lettrix program's exit status for this error: 2 for a setting, 1 for a job.
  int exitCode() const { return kind_ == ErrorKind::kSetting ? 2 : 1; }

 private:
  ErrorKind kind_;
};

inline Error SettingError(const std::string& message) {
  return Error(ErrorKind::kSetting, message);
}
inline Error JobError(const std::string& message) {
  return Error(ErrorKind::kJob, message);
}

}  // namespace lx::compose
