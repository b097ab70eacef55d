#include "bvconn/platform/platform_message_box.h"

#include "bvconn/platform/files.h"
#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

class SystemMessageBox final : public ModalMessage {
 public:
  void show(std::string_view title, std::string_view text) override {
    constexpr UINT kStyle = MB_OK | MB_ICONSTOP | MB_TASKMODAL | MB_SETFOREGROUND;
    ::MessageBoxW(nullptr, wide(text).c_str(), wide(title).c_str(), kStyle);
  }
};

/// A service has no screen, and a message there would wait for ever.
bool has_screen() {
  USEROBJECTFLAGS flags{};
  return ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof(flags),
                                     nullptr) != 0 &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

std::shared_ptr<ModalMessage> make_message_box() {
  if (environment("BVCONN_MESSAGE_BOX") == "stderr" || !has_screen()) {
    return make_stderr_message_box();
  }
  return std::make_shared<SystemMessageBox>();
}

}  // namespace bvconn::detail
