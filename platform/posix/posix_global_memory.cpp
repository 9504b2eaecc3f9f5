// Global memory for systems without kernel32. Every block is a fixed block whose handle is its address,
// but blocks asked for as movable keep a lock count as kernel32 keeps one for movable handles, so that
// the lock/unlock pairs of the library and of callers behave the same on both systems.
//
// Handles are looked up in a registry of live blocks before anything is done with them: a caller's
// stale, forged or foreign handle is refused instead of dereferenced.

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "platform/platform.h"

namespace lx::platform {

namespace {

// The most a 32-bit Windows process could be given in one block. Larger requests are refused on every
// system, so that a hostile size fails the same way here (and never reaches an allocator that would
// rather abort than return null).
constexpr size_t kMaxBlockBytes = 0x7FFFFFFF;

// Kernel32 stops counting locks at 255.
constexpr unsigned kMaxLockCount = 0xFF;

struct Block {
  size_t bytes;
  bool movable;
  unsigned locks;
};

class Registry {
 public:
  MemoryHandle Add(void* p, size_t bytes, bool movable) {
    std::lock_guard<std::mutex> guard(mutex_);
    blocks_.emplace(p, Block{bytes, movable, 0});
    return p;
  }

  // Runs f(block) under the lock when h is a live block; returns whether it was one.
  template <typename F>
  bool With(MemoryHandle h, F&& f) {
    if (IsNoBlock(h)) return false;
    std::lock_guard<std::mutex> guard(mutex_);
    auto it = blocks_.find(h);
    if (it == blocks_.end()) return false;
    f(it->second);
    return true;
  }

  bool Remove(MemoryHandle h) {
    if (IsNoBlock(h)) return false;
    std::lock_guard<std::mutex> guard(mutex_);
    return blocks_.erase(h) == 1;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<void*, Block> blocks_;
};

Registry& Blocks() {
  static Registry registry;
  return registry;
}

}  // namespace

MemoryHandle GlobalAlloc(unsigned flags, size_t bytes) {
  // A block of no bytes could be locked to no memory at all; the caller gets no block instead.
  if (bytes == 0 || bytes > kMaxBlockBytes) return nullptr;
  void* p = (flags & kGmemZeroInit) != 0 ? std::calloc(1, bytes) : std::malloc(bytes);
  if (p == nullptr) return nullptr;
  try {
    return Blocks().Add(p, bytes, (flags & kGmemMoveable) != 0);
  } catch (...) {  // the registry could not grow: as if the block itself had not been available
    std::free(p);
    return nullptr;
  }
}

void* GlobalLock(MemoryHandle h) {
  const bool live = Blocks().With(h, [](Block& b) {
    if (b.movable && b.locks < kMaxLockCount) ++b.locks;
  });
  return live ? h : nullptr;
}

int GlobalUnlock(MemoryHandle h) {
  // Nonzero only while a movable block is still locked; a fixed block never counts locks.
  int stillLocked = 0;
  Blocks().With(h, [&](Block& b) {
    if (b.movable && b.locks > 0) stillLocked = --b.locks > 0 ? 1 : 0;
  });
  return stillLocked;
}

MemoryHandle GlobalFree(MemoryHandle h) {
  // Like kernel32, a block is freed even while locked.
  if (!Blocks().Remove(h)) return h;
  std::free(h);
  return nullptr;
}

size_t GlobalSize(MemoryHandle h) {
  size_t bytes = 0;
  Blocks().With(h, [&](Block& b) { bytes = b.bytes; });
  return bytes;
}

}  // namespace lx::platform
