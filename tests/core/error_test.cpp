#include "bvconn/platform/error.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>

#include "bvconn/platform/message_box.h"

namespace bvconn {
namespace {

TEST(Error, SaysItsDescriptionToThoseWhoKnowOnlyExceptions) {
  try {
    throw Error(13, "Source", "what failed, and on what");
  } catch (const std::exception& error) {
    EXPECT_EQ(std::string(error.what()), "what failed, and on what");
  }
}

TEST(ModalMessage, OfALibraryWithoutAScreenIsALineOfStandardError) {
  testing::internal::CaptureStderr();
  make_stderr_message_box()->show("The title", "what happened");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[STOP] The title: what happened\n");
}

}  // namespace
}  // namespace bvconn
