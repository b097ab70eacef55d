#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include "bvconn/platform/platform_message_box.h"
#include "bvconn/platform/windows/system.h"
#include "files/temp_folder.h"

// Whether a message waits for somebody who is not there.
namespace bvconn {
namespace {

using files_test::ScopedEnvironment;

constexpr const char* kSwitch = "BVCONN_MESSAGE_BOX";

/// The process has a screen that nobody sees, as a service has it, for the lifetime of this object.
class UnseenScreen {
 public:
  UnseenScreen() {
    EXPECT_NE(own_, nullptr) << ::GetLastError();
    EXPECT_NE(::SetProcessWindowStation(own_), FALSE) << ::GetLastError();
  }
  ~UnseenScreen() {
    ::SetProcessWindowStation(before_);
    ::CloseWindowStation(own_);
  }
  UnseenScreen(const UnseenScreen&) = delete;
  UnseenScreen& operator=(const UnseenScreen&) = delete;

 private:
  HWINSTA before_ = ::GetProcessWindowStation();
  HWINSTA own_ = ::CreateWindowStationW(L"bvconn_unseen", 0, WINSTA_ALL_ACCESS, nullptr);
};

std::string shown_by_error_stream() {
  testing::internal::CaptureStderr();
  detail::make_message_box()->show("The title", "what happened");
  return testing::internal::GetCapturedStderr();
}

TEST(ModalMessage, IsALineWhereTheSwitchSaysSo) {
  const ScopedEnvironment line(kSwitch, "stderr");
  EXPECT_EQ(shown_by_error_stream(), "[STOP] The title: what happened\n");
}

TEST(ModalMessage, IsALineWhereTheProcessHasNoScreen) {
  const ScopedEnvironment none(kSwitch, nullptr);
  const UnseenScreen service;
  EXPECT_EQ(shown_by_error_stream(), "[STOP] The title: what happened\n");
}

TEST(ModalMessage, IsABoxWhereNobodySaysOtherwise) {
  USEROBJECTFLAGS flags{};
  ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof(flags),
                              nullptr);
  if ((flags.dwFlags & WSF_VISIBLE) == 0) GTEST_SKIP() << "this process has no screen";
  const auto line = make_stderr_message_box();
  const ModalMessage& unlike = *line;
  for (const char* words : {static_cast<const char*>(nullptr), "box"}) {
    const ScopedEnvironment other(kSwitch, words);
    const auto made = detail::make_message_box();
    const ModalMessage& shown = *made;
    EXPECT_NE(typeid(shown), typeid(unlike));
  }
}

}  // namespace
}  // namespace bvconn
