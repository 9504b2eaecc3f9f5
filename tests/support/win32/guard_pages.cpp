#include "tests/support/guard_pages.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#include <cstdlib>
#include <new>

namespace lx::test {
GuardedPages::GuardedPages(size_t pageCount) : pageCount_(pageCount) {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  pageSize_ = info.dwPageSize;
  base_ = static_cast<uint8_t*>(
      VirtualAlloc(nullptr, pageCount_ * pageSize_, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (base_ == nullptr) throw std::bad_alloc();
}

GuardedPages::~GuardedPages() {
  VirtualFree(base_, 0, MEM_RELEASE);
}

// A hole is decommitted: it stays reserved (so nothing else lands there) but has no storage behind it.
void GuardedPages::protect(size_t i, Access a) {
  const DWORD prot = a == Access::kReadWrite ? PAGE_READWRITE
                     : a == Access::kRead    ? PAGE_READONLY
                                             : PAGE_NOACCESS;
  DWORD old = 0;
  if (i >= pageCount_ || !(a == Access::kHole ? VirtualFree(page(i), pageSize_, MEM_DECOMMIT)
                                              : VirtualProtect(page(i), pageSize_, prot, &old)))
    std::abort();
}
}  // namespace lx::test
