// Which of a kernel's two paths runs: the portable one, or the one that works on several bytes at once
// where the build targets SSE2. Both give the same result; tests run them against each other.
#pragma once

namespace lx {

enum class KernelPath {
  kScalar,  // plain integer arithmetic, every processor
  kWide,    // SSE2 where the build has it, otherwise the same as kScalar; identical results
};

// Whether kWide is more than kScalar in this build.
bool HasWideKernels();

}  // namespace lx
