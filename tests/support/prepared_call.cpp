#include "support/prepared_call.h"

#include <string>
#include <string_view>

namespace bvconn::test {
namespace {

using automation::Value;
using automation::ValueType;

constexpr std::string_view kText = "a-text-of-more-than-fifteen-letters";

/// An argument that takes memory where its type can.
Value sample(ValueType type, XMLDocument& document) {
  switch (type) {
    case ValueType::kBoolean:
      return Variant(false);
    case ValueType::kInt16:
      return Variant(std::int16_t{0});
    case ValueType::kInt32:
      return Variant(std::int32_t{0});
    case ValueType::kStringArray:
      return StringArray{std::string(kText), std::string(kText)};
    case ValueType::kSoapNode: {
      const SoapNode node = SoapNode::make("Project");
      node.Nodes().Create("Name", kText);
      return Variant(node);
    }
    case ValueType::kXMLDocument:
      return &document;
    default:
      return Variant(std::string(kText));
  }
}

}  // namespace

PreparedCall::PreparedCall(const automation::ClassInfo& info, const automation::Member& member)
    : member_(member), object_(info.make()) {
  for (const auto& argument : member.arguments) values_.push_back(sample(argument.type, document_));
  const auto& spread = member.thunks.aggregate;
  if (spread) aggregate_ = spread->make();
  for (std::size_t index = 0; index < values_.size(); ++index) {
    const bool is_field =
        spread && index >= spread->first && index - spread->first < spread->assign.size();
    if (is_field) spread->assign[index - spread->first](aggregate_.get(), values_[index]);
    if (!is_field) slots_.push_back(&values_[index]);
    if (is_field && index == spread->first) slots_.push_back(aggregate_.get());
  }
}

}  // namespace bvconn::test
