#include "bvconn/dal/dal_switch.h"

#include <string>

#include "bvconn/core/logging.h"

namespace bvconn::Global {
namespace {

constexpr LogBlock kIsDalMethodDisabledLog{.cls = "Global", .method = "isDALMethodDisabled"};

}  // namespace

bool isDALMethodDisabled(std::string_view method, std::string_view service) {
  return with_plain_tail(kIsDalMethodDisabledLog, [&] {
    if (session().AllowDisabledDALMethods) return false;
    std::string key(service);
    key.append(".").append(method).append("|");
    // deliberate [entry-tail]: nothing stands in front of the key, so the tail of a longer entry
    // matches too.
    return session().DisabledDALServices.find(key) != std::string::npos;
  });
}

}  // namespace bvconn::Global
