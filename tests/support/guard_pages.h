// Pages with chosen access rights, for tests that hand the library memory it must not touch: a buffer
// that ends where a page without access begins, a read-only source, a range that runs off the mapping.
#pragma once
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace lx::test {
class GuardedPages {
 public:
  // kHole: the page is given back to the system, so any access to it faults.
  enum class Access { kNone, kRead, kReadWrite, kHole };

  // pageCount contiguous pages, readable, writable and zero-filled; std::bad_alloc when refused.
  explicit GuardedPages(size_t pageCount);
  // One page per entry, with those rights.
  GuardedPages(std::initializer_list<Access> rights) : GuardedPages(rights.size()) {
    size_t i = 0;
    for (Access a : rights) protect(i++, a);
  }
  ~GuardedPages();
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;

  // The first byte of page i; page(pageCount) is the end of the mapping.
  uint8_t* page(size_t i) const { return base_ + i * pageSize_; }
  size_t pageSize() const { return pageSize_; }
  size_t pageCount() const { return pageCount_; }
  // Changes the rights of page i; a hole stays a hole. A test that cannot set up its memory would test
  // nothing, so a failure aborts.
  void protect(size_t i, Access a);
  void release(size_t i) { protect(i, Access::kHole); }

 private:
  uint8_t* base_ = nullptr;
  size_t pageSize_ = 0, pageCount_ = 0;
};
}  // namespace lx::test
