// POSIX rename replaces an existing target in one step.
#include <cstdio>

#include "tools/lettrix_cli/files.h"

namespace lxt {

bool MoveIntoPlace(const std::string& temporary, const std::string& target) {
  return std::rename(temporary.c_str(), target.c_str()) == 0;
}

}  // namespace lxt
