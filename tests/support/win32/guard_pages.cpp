#include "tests/support/guard_pages.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <cstdlib>
#include <new>

namespace lx::test {

namespace {
size_t SystemPageSize() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}
}  // namespace

GuardedPages::GuardedPages(size_t pageCount) : pageSize_(SystemPageSize()), pageCount_(pageCount) {
  void* p = VirtualAlloc(nullptr, pageCount_ * pageSize_, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (p == nullptr) throw std::bad_alloc();
  base_ = static_cast<uint8_t*>(p);
}

GuardedPages::~GuardedPages() {
  VirtualFree(base_, 0, MEM_RELEASE);
}

void GuardedPages::protect(size_t i, Access a) {
  const DWORD prot = a == Access::kNone ? PAGE_NOACCESS : a == Access::kRead ? PAGE_READONLY : PAGE_READWRITE;
  DWORD old = 0;
  // A test that cannot set up its memory would test nothing: stop loudly.
  if (i >= pageCount_ || !VirtualProtect(page(i), pageSize_, prot, &old)) std::abort();
}

void GuardedPages::release(size_t i) {
  // Decommitted pages stay reserved (so nothing else lands there) but have no storage behind them.
  if (i >= pageCount_ || !VirtualFree(page(i), pageSize_, MEM_DECOMMIT)) std::abort();
}

}  // namespace lx::test
