#include "platform/platform.h"
#include "platform/win32/win32_calls.h"

namespace lx::platform {

uint32_t ProcessorType() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwProcessorType;
}

}  // namespace lx::platform
