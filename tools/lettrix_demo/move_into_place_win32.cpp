// Windows' rename refuses an existing target; MoveFileEx replaces it in one step.
#include <windows.h>

#include "tools/lettrix_cli/files.h"

namespace lxt {
namespace {

std::wstring Wide(const std::string& utf8) {
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, nullptr, 0);
  if (n <= 0) return std::wstring();
  std::wstring wide(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, &wide[0], n);
  wide.resize(static_cast<size_t>(n - 1));
  return wide;
}

}  // namespace

bool MoveIntoPlace(const std::string& temporary, const std::string& target) {
  return MoveFileExW(Wide(temporary).c_str(), Wide(target).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

}  // namespace lxt
