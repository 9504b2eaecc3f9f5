#include "tests/support/guard_pages.h"
#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>
#include <new>

namespace lx::test {
GuardedPages::GuardedPages(size_t pageCount)
    : pageSize_(static_cast<size_t>(sysconf(_SC_PAGESIZE))), pageCount_(pageCount) {
  void* p = mmap(nullptr, pageCount_ * pageSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) throw std::bad_alloc();
  base_ = static_cast<uint8_t*>(p);
}

GuardedPages::~GuardedPages() {
  munmap(base_, pageCount_ * pageSize_);
}

void GuardedPages::protect(size_t i, Access a) {
  const int prot = a == Access::kReadWrite ? PROT_READ | PROT_WRITE
                   : a == Access::kRead    ? PROT_READ
                                           : PROT_NONE;
  if (i >= pageCount_ ||
      (a == Access::kHole ? munmap(page(i), pageSize_) : mprotect(page(i), pageSize_, prot)))
    std::abort();
}
}  // namespace lx::test
