#include <cstdlib>
#include <string>

#include "service_objects.h"
#include "windows/torvexlib/forwarder.h"

namespace bvconn::test {

// Which of the two forms the components give their texts in.
std::shared_ptr<ServiceObject> reached(std::shared_ptr<ServiceObject> object) {
  const char* const form = std::getenv("BVCONN_TEXT_FORM");
  const bool is_reference = form != nullptr && std::string(form) == "reference";
  return by_component(std::move(object), is_reference ? TextForm::kReference : TextForm::kResult);
}

}  // namespace bvconn::test
