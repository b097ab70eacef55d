#include <string_view>

#include "bvconn/component/abi.h"
#include "bvconn/component/windows/install.h"

// What the system asks for besides the entry points that every component has: registration for
// whom the caller says, as `regsvr32 /n /i:user` does.

using bvconn::component::Hresult;
using bvconn::component::Whom;
namespace component = bvconn::component;

extern "C" {

Hresult BVCONN_CALL DllInstall(std::int32_t install, const char16_t* whom) noexcept {
  const std::u16string_view text(whom == nullptr ? u"" : whom);
  if (!text.empty() && text != u"user" && text != u"machine") return component::kInvalidArgument;
  const Whom who = text == u"user" ? Whom::kUser : Whom::kMachine;
  return install != 0 ? component::install_classes(who) : component::remove_classes(who);
}

}  // extern "C"
