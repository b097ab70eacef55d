#include "bvconn/platform/soap/node_writer.h"

#include <algorithm>
#include <array>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/typed_text.h"
#include "bvconn/platform/xml/xml_scope.h"
#include "bvconn/platform/xml/xml_writer.h"

namespace bvconn::detail {

namespace {

/// Elements open at one time: what the reader reads by default.
constexpr std::size_t kDeepest = 10'000;
/// Bytes of a document.
constexpr std::size_t kLongest = std::size_t{1} << 30;
/// Elements that are written because of references. A reply that shares its nodes can be small and
/// yet, written out, be longer than any memory.
constexpr std::size_t kMostReferenced = 2'000'000;

struct Known {
  std::string_view prefix;
  std::string_view uri;
};
constexpr std::array kEnvelopePrefixes{
    Known{"SOAP-ENV", kEnvelopeUri},
    Known{"SOAP-ENC", kEncodingUri},
    Known{"xsi", kXsiUri},
    Known{"xsd", kXsdUri},
};
constexpr std::uint8_t kUsedEncoding = 2;
constexpr std::uint8_t kUsedXsi = 4;
constexpr std::uint8_t kUsedXsd = 8;

std::string declarations(unsigned which) {
  std::string text;
  for (std::size_t i = 0; i < kEnvelopePrefixes.size(); ++i) {
    if ((which >> i & 1U) == 0) continue;
    text += " xmlns:";
    text += kEnvelopePrefixes[i].prefix;
    text += "=\"";
    text += kEnvelopePrefixes[i].uri;
    text += '"';
  }
  return text;
}

/// Whether items fit an array that says this of them. Items that were read do, since a more special
/// type may stand in their place; a value that was put there since has to be of the very type.
bool may_all_be(const Children& items, const TypeName& declared) {
  if (declared.name == "anyType" || declared.name == "ur-type") return true;
  for (const NodeData* item : items) {
    const NodeData& typed = typed_node_of(*item, true);
    const bool was_read = !typed.has(kTypeDerived) && !typed.has(kTypeExplicit);
    if (was_read) continue;
    if (own_type_of(typed) != declared.name || own_type_space_of(typed) != declared.uri) {
      return false;
    }
  }
  return true;
}

}  // namespace

const std::string& envelope_declarations() {
  // Never destroyed: an object of static lifetime may send its last request later than anything.
  static const auto& text = *new std::string(declarations(15));
  return text;
}
std::string NodeWriter::used_declarations() const {
  return declarations(used_);
}

void NodeWriter::write(const NodeData& root) {
  const std::size_t outside = frames_.size();
  open(root);
  while (frames_.size() > outside) {
    Frame& frame = frames_.back();
    if (frame.next < frame.children.size()) {
      open(*frame.children[frame.next++]);
    } else {
      close();
    }
  }
}

void NodeWriter::open(const NodeData& node) {
  const NodeData& holder = content_of(node);
  Frame frame = new_frame(node, holder);
  start_tag(node, frame);
  type_attributes(node, holder, frame);
  if (holder.content == Content::kNil) attribute("xsi:nil", "true");
  if (frame.children.empty()) {
    leaf(holder, frame);
    n_uri_ = frame.outer_uri;
    return;
  }
  out_ += '>';
  frames_.push_back(frame);
}

void NodeWriter::close() {
  const Frame& frame = frames_.back();
  out_ += "</";
  prefixed(frame.prefix, frame.name);
  out_ += '>';
  n_uri_ = frame.outer_uri;
  frames_.pop_back();
}

NodeWriter::Frame NodeWriter::new_frame(const NodeData& node, const NodeData& holder) {
  Frame frame;
  frame.children = children_of(holder);
  frame.name = name_of(node);
  frame.outer_uri = n_uri_;
  frame.is_array = holder.has(kArray);
  if (frame.is_array) frame.items = item_type_of(holder);
  frame.referenced = node.has(kReference) || (!frames_.empty() && frames_.back().referenced);
  check_limits(frame.referenced);
  return frame;
}

void NodeWriter::check_limits(bool referenced) {
  if (open_elements_ + frames_.size() + 1 > kDeepest) {
    fail_limit("The tree is deeper than " + std::to_string(kDeepest) +
               " elements, or contains itself");
  }
  if (out_.size() > kLongest) {
    fail_limit("The text is longer than " + std::to_string(kLongest) + " bytes");
  }
  if (referenced && ++referenced_elements_ > kMostReferenced) {
    fail_limit("Written out, shared nodes make more than " + std::to_string(kMostReferenced) +
               " elements");
  }
}

void NodeWriter::start_tag(const NodeData& node, Frame& frame) {
  const auto uri = namespace_of(node);
  bool declared = false;
  begin_element(frame.name);
  frame.prefix = prefix_for(uri, "n", declared);
  out_ += '<';
  prefixed(frame.prefix, frame.name);
  if (frames_.empty()) root_name_end_ = out_.size();
  if (!declared) return;
  declare(frame.prefix, uri);
  n_uri_ = uri;
}

void NodeWriter::type_attributes(const NodeData& node, const NodeData& holder, const Frame& frame) {
  type_attribute(node);
  if (!frame.is_array) return;
  bool declared = false;
  const auto prefix = prefix_for(frame.items.uri, "i", declared);
  if (declared) declare(prefix, frame.items.uri);
  std::string type(prefix);
  if (!type.empty()) type += ':';
  type += frame.items.name;
  type += '[' + std::to_string(children_of(holder).size()) + ']';
  used_ = static_cast<std::uint8_t>(used_ | kUsedEncoding);
  attribute("SOAP-ENC:arrayType", type);
}

void NodeWriter::type_attribute(const NodeData& node) {
  const TypeName* expected =
      !frames_.empty() && frames_.back().is_array ? &frames_.back().items : nullptr;
  const NodeData& typed = typed_node_of(node, expected != nullptr);
  const auto type = own_type_of(typed);
  const auto uri = own_type_space_of(typed);
  const bool implied = typed.has(kTypeImplied);
  if (type.empty() || (implied && expected == nullptr)) return;
  if (expected == nullptr && typed.has(kTypeDerived) && uri == kXsdUri) {
    derived_type_attribute(type);
    return;
  }
  // What the array says of all its items need not be said of each again.
  if (expected != nullptr && (implied || typed.has(kTypeDerived)) && expected->name == type &&
      expected->uri == uri) {
    return;
  }
  bool declared = false;
  const auto prefix = prefix_for(uri, "t", declared);
  if (declared) declare(prefix, uri);
  used_ = static_cast<std::uint8_t>(used_ | kUsedXsi);
  out_ += " xsi:type=\"";
  if (!prefix.empty()) out_.append(prefix).push_back(':');
  attribute_value("xsi:type", type);
}

// Most that is written: one of the schema's types, under a name that needs no care.
void NodeWriter::derived_type_attribute(std::string_view type) {
  used_ = static_cast<std::uint8_t>(used_ | kUsedXsi | kUsedXsd);
  out_.append(" xsi:type=\"xsd:").append(type).push_back('"');
}

TypeName NodeWriter::item_type_of(const NodeData& array) {
  constexpr TypeName kString{"string", kXsdUri};
  constexpr TypeName kAny{"anyType", kXsdUri};
  // What was read is written as it said; a server may refuse an array of another type, above all
  // an empty one, whose items say nothing.
  const TypeName declared = declared_items_of(array);
  if (!declared.name.empty() && may_all_be(children_of(array), declared)) return declared;
  TypeName common;
  for (const NodeData* item : children_of(array)) {
    const NodeData& typed = typed_node_of(*item, true);
    const TypeName type{own_type_of(typed), own_type_space_of(typed)};
    if (type.name.empty()) {
      if (content_of(*item).content == Content::kNil) continue;
      return kAny;
    }
    if (typed.has(kTypeDerived) && type.name != kString.name) return kAny;
    if (common.name.empty()) common = type;
    if (common.name != type.name || common.uri != type.uri) return kAny;
  }
  if (!common.name.empty()) return common;
  return array.content == Content::kOwnChildren ? kString : kAny;
}

void NodeWriter::leaf(const NodeData& holder, const Frame& frame) {
  const bool own = holder.content == Content::kOwnValue;
  if (own && holder.own()->value.is(Variant::Type::kQualifiedName)) {
    const auto& name = holder.own()->value.qualified_name();
    qualified_text(name.name_space, name.local);
  } else if (holder.has(kQualified)) {
    qualified_text(qualified_space_of(holder), text_of(holder));
  } else {
    out_ += '>';
    if (own && holder.own()->value.is(Variant::Type::kString)) text(holder.own()->value.string());
    if (own && !holder.own()->value.is(Variant::Type::kString))
      text(value_text(holder.own()->value));
    if (holder.content == Content::kText) text(text_of(holder));
  }
  if (out_.back() == '>') {  // nothing was written: text never ends so
    out_.back() = '/';
    out_ += '>';
    return;
  }
  out_ += "</";
  prefixed(frame.prefix, frame.name);
  out_ += '>';
}

void NodeWriter::qualified_text(std::string_view uri, std::string_view local) {
  bool declared = false;
  const auto prefix = prefix_for(uri, "q", declared);
  if (declared) declare(prefix, uri);
  out_ += '>';
  if (!prefix.empty()) {
    out_ += prefix;
    out_ += ':';
  }
  text(local);
}

void NodeWriter::text(std::string_view text) {
  const std::size_t stopped = xml::append_text(out_, text);
  if (stopped != std::string_view::npos) unwritable("text", text, stopped);
}

void NodeWriter::attribute(std::string_view name, std::string_view value) {
  if (name.starts_with("xsi:")) used_ = static_cast<std::uint8_t>(used_ | kUsedXsi);
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
  attribute_value(name, value);
}

void NodeWriter::attribute_value(std::string_view name, std::string_view value) {
  const std::size_t stopped = xml::append_attribute(out_, value);
  if (stopped != std::string_view::npos) {
    unwritable("attribute " + std::string(name), value, stopped);
  }
  out_ += '"';
}

void NodeWriter::prefixed(std::string_view prefix, std::string_view local) {
  if (!prefix.empty()) {
    out_ += prefix;
    out_ += ':';
  }
  out_ += local;
}

std::string_view NodeWriter::prefix_for(std::string_view uri, std::string_view fallback,
                                        bool& declared) {
  declared = false;
  if (uri.empty()) return {};
  for (std::size_t i = 0; i < kEnvelopePrefixes.size(); ++i) {
    if (kEnvelopePrefixes[i].uri != uri) continue;
    used_ = static_cast<std::uint8_t>(used_ | 1U << i);
    return kEnvelopePrefixes[i].prefix;
  }
  if (uri == xml::kXmlUri) return "xml";
  if (uri == method_uri_) return "m";
  if (uri == n_uri_) return "n";
  check_namespace(uri);
  declared = true;
  return fallback;
}

void NodeWriter::declare(std::string_view prefix, std::string_view uri) {
  attribute("xmlns:" + std::string(prefix), uri);
}

void NodeWriter::begin_element(std::string_view name) {
  element_ = name;
  if (xml::is_local_name(name)) return;
  throw Error(error_numbers::kUnwritableText, source_,
              shown(name) + " cannot be the name of an XML element");
}

void NodeWriter::check_namespace(std::string_view uri) const {
  if (uri != xml::kXmlnsUri) return;
  throw Error(error_numbers::kUnwritableText, source_,
              shown(uri) + " cannot be the namespace of an XML element");
}

void NodeWriter::unwritable(std::string_view what, std::string_view text,
                            std::size_t offset) const {
  std::string description = "The ";
  description += what;
  description += " of the element ";
  description += shown(element_);
  description += " holds ";
  description += xml::unwritable_character(text, offset);
  description += ", which XML cannot carry";
  throw Error(error_numbers::kUnwritableText, source_, description);
}

void NodeWriter::fail_limit(std::string_view description) const {
  throw Error(error_numbers::kSoapLimit, source_, description);
}

}  // namespace bvconn::detail
