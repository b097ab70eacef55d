#include "sandbox/operations/keys.h"

#include <utility>

#include "bvconn/platform/soap/variant.h"

namespace bvconn::sandbox {
namespace {

void add_key(std::vector<std::string>& keys, const Variant& value) {
  std::string key = to_text(value);
  if (!key.empty()) keys.push_back(std::move(key));
}

}  // namespace

std::vector<std::string> keys_in(const SoapNode& parameter) {
  std::vector<std::string> keys;
  for (const SoapNode& item : parameter.Nodes()) add_key(keys, item.Value());
  if (!keys.empty() || parameter.nil()) return keys;
  const Variant value = parameter.Value();
  const bool holds_items = value.is(Variant::Type::kArray) || value.is(Variant::Type::kNode);
  if (!holds_items) add_key(keys, value);
  return keys;
}

}  // namespace bvconn::sandbox
