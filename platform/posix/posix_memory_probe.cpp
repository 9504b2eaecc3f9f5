// IsBadReadPtr and IsBadWritePtr for systems without them. Windows answers by touching the memory under
// a structured exception handler; here the mappings are looked up instead, so no signal is raised, no
// handler is installed and the caller's memory is left alone. Each check asks the kernel afresh: no
// verdict is remembered that an munmap or mprotect on another thread could have made wrong. Where the
// kernel answers single-mapping requests that costs a system call; elsewhere the whole mapping list is
// read (tens of microseconds).

#include "platform/posix/posix_memory_probe.h"

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <mutex>

#include "platform/platform.h"

namespace lx::platform {

namespace posix {

namespace {

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Walks the lines of /proc/self/maps ("start-end perms offset dev inode path", ascending, end exclusive)
// one character at a time, so that no line has to fit a buffer, and checks that the mappings cover
// [first, last] without a gap and with the access asked for.
class MappingWalker {
 public:
  MappingWalker(uintptr_t first, uintptr_t last, Access access)
      : next_(first), last_(last), access_(access) {}

  // Feeds characters; returns false once the answer is known.
  bool Feed(const char* s, size_t n) {
    for (size_t i = 0; i < n; ++i) {
      if (!FeedChar(s[i])) return false;
    }
    return true;
  }

  // The answer after the whole file was fed (or the walk stopped).
  Verdict Result() const { return verdict_; }

 private:
  enum class State { kStart, kEnd, kPerms, kRest };

  bool FeedChar(char c) {
    switch (state_) {
      case State::kStart:
      case State::kEnd: {
        uintptr_t& value = state_ == State::kStart ? start_ : end_;
        const int d = HexDigit(c);
        if (d >= 0) {
          value = value * 16 + static_cast<uintptr_t>(d);
          ++digits_;
        } else if (state_ == State::kStart && c == '-' && digits_ > 0) {
          state_ = State::kEnd;
          digits_ = 0;
        } else if (state_ == State::kEnd && c == ' ' && digits_ > 0) {
          state_ = State::kPerms;
          perm_ = 0;
        } else {
          return Stop(Verdict::kUnknown);
        }
        return true;
      }
      case State::kPerms:
        if (perm_ == 0) readable_ = c == 'r';
        if (perm_ == 1) writable_ = c == 'w';
        if (++perm_ == 4) {
          state_ = State::kRest;
          return Judge();
        }
        return true;
      case State::kRest:
        if (c == '\n') {
          state_ = State::kStart;
          start_ = end_ = 0;
          digits_ = 0;
        }
        return true;
    }
    return Stop(Verdict::kUnknown);
  }

  // One whole mapping [start_, end_) is known.
  bool Judge() {
    if (end_ <= next_) return true;                           // wholly below what is still to be covered
    if (start_ > next_) return Stop(Verdict::kInaccessible);  // a hole before this mapping
    if (!readable_ || (access_ == Access::kWrite && !writable_)) return Stop(Verdict::kInaccessible);
    if (end_ - 1 >= last_) return Stop(Verdict::kAccessible);
    next_ = end_;
    return true;
  }

  bool Stop(Verdict v) {
    verdict_ = v;
    return false;
  }

  uintptr_t next_;  // the lowest address not yet known to be accessible
  const uintptr_t last_;
  const Access access_;
  // Running out of lines before reaching last_ means the range runs past the last mapping.
  Verdict verdict_ = Verdict::kInaccessible;
  State state_ = State::kStart;
  uintptr_t start_ = 0, end_ = 0;
  int digits_ = 0;
  int perm_ = 0;
  bool readable_ = false, writable_ = false;
};

class Fd {
 public:
  explicit Fd(int fd) : fd_(fd) {}
  ~Fd() {
    if (fd_ >= 0) close(fd_);
  }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

ssize_t Retry(ssize_t (*op)(int, void*, size_t), int fd, void* p, size_t n) {
  ssize_t r;
  do {
    r = op(fd, p, n);
  } while (r < 0 && errno == EINTR);
  return r;
}

ssize_t ReadFd(int fd, void* p, size_t n) {
  return read(fd, p, n);
}
ssize_t WriteFd(int fd, void* p, size_t n) {
  return write(fd, p, n);
}

// Copies the byte at address a into the pipe and, for writing, back into a. False on EFAULT.
bool CopyThrough(int readEnd, int writeEnd, uintptr_t a, Access access) {
  void* p = reinterpret_cast<void*>(a);
  if (Retry(WriteFd, writeEnd, p, 1) != 1) return false;
  if (access == Access::kWrite) return Retry(ReadFd, readEnd, p, 1) == 1;
  unsigned char sink;
  return Retry(ReadFd, readEnd, &sink, 1) == 1;
}

// The request of PROCMAP_QUERY as the kernel defines it (linux/fs.h, Linux 6.11), spelt out here because
// the C library's headers may be older than the running kernel.
struct MappingQuery {
  uint64_t size;
  uint64_t queryFlags;
  uint64_t queryAddress;
  uint64_t start;
  uint64_t end;
  uint64_t flags;
  uint64_t pageSize;
  uint64_t offset;
  uint64_t inode;
  uint32_t deviceMajor;
  uint32_t deviceMinor;
  uint32_t nameSize;
  uint32_t buildIdSize;
  uint64_t nameAddress;
  uint64_t buildIdAddress;
};
constexpr unsigned long kMappingQuery = _IOWR('f', 17, MappingQuery);
constexpr uint64_t kMappingReadable = 1, kMappingWritable = 2;

// The maps file the requests go through, opened once and shared by every thread. It answers for the
// process that opened it, so a child made by fork opens its own at its first check.
class QueryFile {
 public:
  static QueryFile& instance() {
    static QueryFile file;
    return file;
  }

  // The descriptor, or -1 when the file cannot be opened or the kernel turned the requests down.
  int get() {
    if (unsupported_.load(std::memory_order_relaxed)) return -1;
    const int fd = fd_.load(std::memory_order_acquire);
    if (fd >= 0) return fd;
    std::lock_guard<std::mutex> lock(mutex_);
    if (fd_.load(std::memory_order_relaxed) < 0) fd_.store(open("/proc/self/maps", O_RDONLY | O_CLOEXEC));
    return fd_.load(std::memory_order_relaxed);
  }
  void markUnsupported() { unsupported_.store(true, std::memory_order_relaxed); }

 private:
  QueryFile() { pthread_atfork(nullptr, nullptr, &ForgetInChild); }
  // The child has one thread, the one that forked: nobody else can be using the parent's descriptor.
  static void ForgetInChild() {
    QueryFile& file = instance();
    const int fd = file.fd_.exchange(-1);
    if (fd >= 0) close(fd);
  }

  std::mutex mutex_;
  std::atomic<int> fd_{-1};
  std::atomic<bool> unsupported_{false};
};

}  // namespace

Verdict ProbeByQuery(uintptr_t first, uintptr_t last, Access access) {
  QueryFile& file = QueryFile::instance();
  const int fd = file.get();
  if (fd < 0) return Verdict::kUnknown;
  const uint64_t wanted = access == Access::kWrite ? kMappingReadable | kMappingWritable : kMappingReadable;
  uint64_t next = first;
  for (;;) {
    MappingQuery q{};
    q.size = sizeof q;
    q.queryAddress = next;
    if (ioctl(fd, kMappingQuery, &q) != 0) {
      if (errno == ENOENT) return Verdict::kInaccessible;  // no mapping holds `next`
      if (errno == ENOTTY || errno == EINVAL) file.markUnsupported();
      return Verdict::kUnknown;
    }
    if (q.start > next || q.end <= next) return Verdict::kUnknown;  // not an answer to the question
    if ((q.flags & wanted) != wanted) return Verdict::kInaccessible;
    if (q.end - 1 >= last) return Verdict::kAccessible;
    next = q.end;  // the range goes on into the next mapping, which must follow without a gap
  }
}

Verdict ProbeByMappings(uintptr_t first, uintptr_t last, Access access) {
  const Fd maps(open("/proc/self/maps", O_RDONLY | O_CLOEXEC));
  if (maps.get() < 0) return Verdict::kUnknown;
  MappingWalker walker(first, last, access);
  char chunk[4096];
  for (;;) {
    const ssize_t got = Retry(ReadFd, maps.get(), chunk, sizeof chunk);
    if (got < 0) return Verdict::kUnknown;
    if (got == 0 || !walker.Feed(chunk, static_cast<size_t>(got))) break;
  }
  return walker.Result();
}

Verdict ProbeByCopying(uintptr_t first, uintptr_t last, Access access) {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) return Verdict::kUnknown;
  const Fd readEnd(fds[0]), writeEnd(fds[1]);
  // Access rights change only at page boundaries: the first byte and the first byte of every later
  // page decide.
  const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  uintptr_t a = first;
  for (;;) {
    if (!CopyThrough(readEnd.get(), writeEnd.get(), a, access)) return Verdict::kInaccessible;
    const uintptr_t nextPage = (a & ~(page - 1)) + page;
    if (nextPage == 0 || nextPage > last) return Verdict::kAccessible;  // 0: wrapped past the top
    a = nextPage;
  }
}

}  // namespace posix

namespace {

BOOL IsBad(const void* p, uintptr_t n, posix::Access access) {
  if (n == 0) return 0;
  if (p == nullptr) return 1;
  const uintptr_t first = reinterpret_cast<uintptr_t>(p);
  if (n - 1 > ~uintptr_t{0} - first) return 1;  // the range would wrap past the top of the address space
  const uintptr_t last = first + (n - 1);
  posix::Verdict v = posix::ProbeByQuery(first, last, access);
  if (v == posix::Verdict::kUnknown) v = posix::ProbeByMappings(first, last, access);
  if (v == posix::Verdict::kUnknown) v = posix::ProbeByCopying(first, last, access);
  // Memory that cannot be vouched for is treated as bad: refusing a call is safe, touching is not.
  return v == posix::Verdict::kAccessible ? 0 : 1;
}

}  // namespace

BOOL IsBadReadPtr(const void* p, uintptr_t n) {
  return IsBad(p, n, posix::Access::kRead);
}
BOOL IsBadWritePtr(void* p, uintptr_t n) {
  return IsBad(p, n, posix::Access::kWrite);
}

}  // namespace lx::platform
