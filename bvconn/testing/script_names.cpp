// Apart from the rest of the script, since it alone needs the whole interface.
#include <array>
#include <stdexcept>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/conversions/nearest_names.h"
#include "bvconn/testing/test_world.h"

namespace bvconn::test {
namespace {

// Each object's name begins its operations: "SearchService.", "SearchForCustomer", …
constexpr std::array kServiceOperations{
#define BVCONN_SERVICE_OBJECT(name, ...) std::string_view(#name "."), __VA_ARGS__
#define BVCONN_SERVICE_OPERATION(name, ...) std::string_view(#name),
#define BVCONN_SERVICE_OPERATION_BY_NAME(name, ...) std::string_view(#name),
#include "bvconn/platform/torvexlib/service_object_rows.inc"
};

std::vector<std::string> all_names() {
  std::vector<std::string> names;
  for (const automation::ClassInfo* info : automation::classes()) {
    for (const automation::Member& member : info->members) {
      if (member.kind == automation::MemberKind::kOperation) {
        names.push_back(info->name + "." + member.name);
      }
    }
  }
  std::string object;
  for (const std::string_view part : kServiceOperations) {
    if (part.ends_with('.')) {
      object = part;
    } else {
      names.push_back(object + std::string(part));
    }
  }
  return names;
}

void check_name(std::string_view name) {
  static const std::vector<std::string> known = all_names();
  for (const std::string& each : known) {
    if (each == name) return;
  }
  throw std::invalid_argument("TestWorld: there is no operation \"" + std::string(name) + "\"" +
                              did_you_mean(name, known));
}

}  // namespace

Script TestWorld::on(std::string_view name) {
  check_name(name);
  return {state_, name};
}

}  // namespace bvconn::test
