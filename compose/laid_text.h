// One result of the text library, released when it goes out of scope, for C++ callers of
// LettrixTextLayOut.
#pragma once

#include "lettrix/lettrix_text.h"

namespace lx::compose {

class LaidText {
 public:
  LaidText() = default;
  LaidText(const LaidText&) = delete;
  LaidText& operator=(const LaidText&) = delete;
  ~LaidText() { LettrixTextRelease(&result_); }
  LettrixTextResult* get() { return &result_; }

 private:
  LettrixTextResult result_{};
};

}  // namespace lx::compose
