#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/typed_text.h"

namespace bvconn::detail {

namespace {

/// Arrays in arrays that a value may hold: a variant copies and frees itself by recursion.
constexpr std::size_t kDeepestArray = 256;
/// Items that the inner arrays of one value may have together: through shared nodes a small reply
/// can describe a value beyond all bounds.
constexpr std::size_t kMostInnerItems = 1'000'000;

[[noreturn]] void does_not_fit(const NodeData& node, std::string_view text, std::string_view type) {
  throw Error(error_numbers::kTypeMismatch, "BVConn",
              "Type mismatch: the text " + shown(text) + " of the node " + shown(name_of(node)) +
                  " is not of its type " + std::string(type));
}

/// The node whose type a text is read by. It stands where the text does; a reference to it may have
/// one too.
const NodeData& read_by(const NodeData& node, const NodeData& holder) noexcept {
  return own_type_of(holder).empty() ? typed_node_of(node, true) : holder;
}

Variant text_value(const NodeData& node, const NodeData& holder) {
  if (holder.has(kQualified) || node.has(kQualified)) {
    return QualifiedName{.name_space = std::string(qualified_space_of(holder)),
                         .local = std::string(split_name(trim_xml_space(text_of(holder))).local)};
  }
  Variant value = typed_value(text_of(holder), text_type_of(node, holder));
  if (value.empty()) does_not_fit(node, text_of(holder), own_type_of(read_by(node, holder)));
  return value;
}

class ValueReader {
 public:
  Variant read(NodeData& node) {
    if (node.content == Content::kLink && !node.has(kReference)) {
      return SoapAccess::node(NodeRef(node.link));
    }
    const NodeData& holder = content_of(node);
    if (holder.has(kArray)) return read_array(holder);
    switch (holder.content) {
      case Content::kText:
        return text_value(node, holder);
      case Content::kOwnValue:
        return holder.own()->value;
      case Content::kChildren:
      case Content::kOwnChildren:
        return SoapAccess::node(NodeRef(&node));
      case Content::kNothing:
      case Content::kNil:
      case Content::kLink:
        break;
    }
    return {};
  }

 private:
  Variant read_array(const NodeData& holder) {
    if (holder.has(kUnallocated) && children_of(holder).empty()) return VariantArray();
    const auto children = children_of(holder);
    if (++depth_ > 1) inner_items_ += children.size();
    if (depth_ > kDeepestArray || inner_items_ > kMostInnerItems) {
      throw Error(error_numbers::kSoapLimit, "SoapNodes",
                  "The node " + shown(name_of(holder)) +
                      " holds too many arrays in each other, or too many items, for one value");
    }
    std::vector<Variant> values;
    values.reserve(children.size());
    for (NodeData* child : children) values.push_back(read(*child));
    --depth_;
    return VariantArray(std::move(values));
  }

  std::size_t depth_ = 0;
  std::size_t inner_items_ = 0;
};

}  // namespace

TypeIndex text_type_of(const NodeData& node, const NodeData& holder) noexcept {
  Shape& shape = *holder.shape;
  // Most nodes are like others whose type has been looked up, and hold their text themselves.
  const bool stands_alone = &node == &holder || shape.type.size > 0;
  if (!shape.is_own && shape.type_index != kTypeNotLookedUp && stands_alone) {
    return shape.type_index;
  }
  const NodeData& typed = read_by(node, holder);
  const TypeIndex index = type_index(own_type_of(typed), own_type_space_of(typed));
  if (!shape.is_own && stands_alone) shape.type_index = index;
  return index;
}

Variant value_of(const NodeRef& node) {
  return ValueReader().read(*node);
}

}  // namespace bvconn::detail
