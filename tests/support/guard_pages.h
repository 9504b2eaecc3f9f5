// Pages with chosen access rights, for tests that hand the library memory it must not touch: a buffer
// that ends where a page without access begins, a read-only source, a range that runs off the mapping.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lx::test {

class GuardedPages {
 public:
  enum class Access { kNone, kRead, kReadWrite };

  // Maps pageCount contiguous pages, all readable and writable and zero-filled. Throws std::bad_alloc
  // when the system refuses.
  explicit GuardedPages(size_t pageCount);
  ~GuardedPages();
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;

  // The first byte of page i (i < pageCount); page(pageCount) is the end of the mapping.
  uint8_t* page(size_t i) const { return base_ + i * pageSize_; }
  size_t pageSize() const { return pageSize_; }
  size_t pageCount() const { return pageCount_; }

  // Changes the access rights of page i.
  void protect(size_t i, Access a);

  // Gives page i back to the system, leaving a hole in the mapping: any access to it faults. The other
  // pages keep their rights; protect() must not be called for page i afterwards.
  void release(size_t i);

 private:
  uint8_t* base_ = nullptr;
  size_t pageSize_ = 0;
  size_t pageCount_ = 0;
};

}  // namespace lx::test
