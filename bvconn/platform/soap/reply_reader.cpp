#include "bvconn/platform/soap/reply_reader.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/known_replies.h"
#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/tree_builder.h"
#include "bvconn/platform/text_buffer.h"
#include "bvconn/platform/xml/xml_encoding.h"
#include "bvconn/platform/xml/xml_error.h"
#include "bvconn/platform/xml/xml_reader.h"

namespace bvconn::detail {

namespace {

constexpr std::string_view kSource = "SoapEnvelope";

[[noreturn]] void not_an_envelope(const std::string& description) {
  throw Error(error_numbers::kNotASoapEnvelope, kSource, description);
}

/// Slices count in 32 bits.
void check_size(const TextBuffer& utf8) {
  if (utf8.size() < UINT32_MAX) return;
  throw xml::ReadError(xml::Problem::limit, {}, "the document is larger than 4 GiB");
}

bool is_envelope_part(const NodeData& node, std::string_view name) {
  return name_of(node) == name && namespace_of(node) == kEnvelopeUri;
}

NodeData* find_part(const NodeData& envelope, std::string_view name) {
  for (NodeData* child : children_of(envelope)) {
    if (is_envelope_part(*child, name)) return child;
  }
  return nullptr;
}

void check_envelope(const NodeData& root) {
  if (is_envelope_part(root, "Envelope")) return;
  const auto uri = namespace_of(root);
  if (name_of(root) != "Envelope" || !uri.ends_with("/soap-envelope")) {
    std::string found = "the document element is " + shown(name_of(root));
    if (!uri.empty()) found += " in the namespace " + shown(uri);
    not_an_envelope("The reply is not a SOAP 1.1 envelope: " + found);
  }
  not_an_envelope("The reply is an envelope of SOAP 1.2 (" + shown(uri) +
                  "); only SOAP 1.1 is understood");
}

/// The first child of the Body, but for those that say of themselves that they are only referred
/// to.
NodeData* method_element(const NodeData& body) {
  const auto children = children_of(body);
  for (NodeData* child : children) {
    if (!child->has(kNoRoot)) return child;
  }
  return children.empty() ? nullptr : children.front();
}

EnvelopeParts parts_in(const TreeBuilder& builder) {
  NodeData& root = *builder.root();
  const NodeData* body = find_part(root, "Body");
  if (body == nullptr) not_an_envelope("The reply is not a SOAP 1.1 envelope: it has no Body");
  return {.root = &root,
          .header = find_part(root, "Header"),
          .method = method_element(*body),
          .encoding_style = builder.encoding_style()};
}

/// The nodes keep the tree from here on.
Reply reply_of(ReadTree read) {
  const auto& [root, header, method, encoding_style] = read.parts;
  const NodeRef keep(root);
  static_cast<void>(read.tree.release());
  Reply reply;
  reply.headers = SoapAccess::nodes(header != nullptr ? NodeRef(header) : make_node("Header"));
  reply.parameters = SoapAccess::nodes(method != nullptr ? NodeRef(method) : make_node("Body"));
  reply.encoding_style = encoding_style;
  if (method != nullptr) {
    reply.method = name_of(*method);
    reply.name_space = namespace_of(*method);
    reply.is_fault = is_envelope_part(*method, "Fault");
  }
  return reply;
}

/// A tree whose nodes are to be made out of a text in UTF-8.
std::unique_ptr<Tree> tree_for(TextBuffer utf8) {
  check_size(utf8);
  auto tree = std::make_unique<Tree>();
  tree->buffer = std::move(utf8);
  tree->blocks.expect(tree->buffer.size() / 2);
  return tree;
}

void parse(Tree& tree, TreeBuilder& builder) {
  xml::parse({tree.buffer.data(), tree.buffer.size()}, {}, builder);
}

ReadTree read_tree(TextBuffer utf8) {
  auto tree = tree_for(std::move(utf8));
  TreeBuilder builder(*tree, TreeBuilder::Form::kEnvelope);
  parse(*tree, builder);
  check_envelope(*builder.root());
  builder.resolve_references();
  const EnvelopeParts parts = parts_in(builder);
  return {.tree = std::move(tree), .parts = parts};
}

Reply read_envelope(TextBuffer bytes, std::string_view encoding) {
  if (auto text = xml::converted_to_utf8(bytes.view(), encoding)) {
    return reply_of(read_tree(*std::move(text)));
  }
  KnownReplies& known = KnownReplies::of_thread();
  if (auto read = known.read(bytes)) return reply_of(*std::move(read));
  std::string as_it_came;
  if (known.wants(bytes.view())) as_it_came = bytes.view();
  ReadTree read = read_tree(std::move(bytes));
  if (!as_it_came.empty()) known.learn(std::move(as_it_came), *read.tree, read.parts);
  return reply_of(std::move(read));
}

}  // namespace

SoapNode read_document(std::string utf8) {
  auto tree = tree_for(std::move(utf8));
  TreeBuilder builder(*tree, TreeBuilder::Form::kDocument);
  parse(*tree, builder);
  SoapNode root = SoapAccess::node(NodeRef(builder.root()));
  static_cast<void>(tree.release());
  return root;
}

Reply read_reply(TextBuffer bytes, std::string_view encoding) {
  if (bytes.size() == 0) {
    throw Error(error_numbers::kNotWellFormed, kSource, "The reply is empty");
  }
  try {
    return read_envelope(std::move(bytes), encoding);
  } catch (const xml::ReadError& error) {
    throw document_error(error, kSource,
                         "The reply passes a limit: ", "The reply is not well-formed XML: ");
  }
}

Error document_error(const xml::ReadError& error, std::string_view source,
                     std::string_view passes_limit, std::string_view not_well_formed) {
  const bool limit = error.problem == xml::Problem::limit;
  std::string description(limit ? passes_limit : not_well_formed);
  append_escaped(description, error.message);
  return {limit ? error_numbers::kSoapLimit : error_numbers::kNotWellFormed, source, description};
}

}  // namespace bvconn::detail
