#include "bvconn/platform/torvexlib/system_service_object.h"

#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/settings_key.h"
#include "bvconn/platform/settings/system_settings.h"
#include "bvconn/platform/windows/service_component.h"

namespace bvconn::detail {

std::shared_ptr<ServiceObject> make_service_object(std::string_view name) {
  const std::string form = make_settings()->ReadString(SettingsRoot::kLocalMachine, kSettingsKey,
                                                       kServiceObjectsSetting);
  if (conversions::equal_ignoring_case(form, "http")) return make_http_service_object(name);
  const bool is_component = conversions::equal_ignoring_case(form, "component");
  if (!is_component && !form.empty()) {
    throw Error(error_numbers::kTypeMismatch, "BVConn",
                "The setting " + std::string(kServiceObjectsSetting) + " is " + shown(form) +
                    ", which is neither \"component\" nor \"http\"");
  }
  if (auto component = make_service_component(name)) return component;
  if (is_component) {
    throw Error(error_numbers::kFailed, name,
                "No component TorvexLib." + std::string(name) + " is registered for programs of " +
                    std::to_string(8 * sizeof(void*)) + " bits, and the setting " +
                    std::string(kServiceObjectsSetting) + " asks for one");
  }
  return make_http_service_object(name);
}

}  // namespace bvconn::detail
