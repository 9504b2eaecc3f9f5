// Refusals of the composition layer and the programs built on it: one message, and an exit status.
#pragma once
#include <gtest/gtest.h>
#include <functional>
#include <string>
#include "compose/compose_error.h"

namespace lx::test {
// The message of the Error `f` throws ("" when none), whose exit status must be `exitCode`.
inline std::string Refusal(const std::function<void()>& f, int exitCode) {
  try {
    f();
  } catch (const compose::Error& e) {
    EXPECT_EQ(e.exitCode(), exitCode) << e.what();
    return e.what();
  }
  return "";
}
}  // namespace lx::test
