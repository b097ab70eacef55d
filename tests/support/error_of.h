#pragma once

#include <gtest/gtest.h>

#include "bvconn/platform/error.h"

namespace bvconn::test {

/// The error that `action` fails with; a failed test where it does not fail.
template <typename Action>
Error error_of(Action&& action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return Error(0, "", "");
}

}  // namespace bvconn::test
