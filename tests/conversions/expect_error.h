#pragma once

#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/error.h"

namespace bvconn::conversions_test {

/// Runs `action`, which must fail, and gives its error.
template <typename Action>
Error error_of(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return Error(0, "", "");
}

}  // namespace bvconn::conversions_test
