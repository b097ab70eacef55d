#pragma once

#include <memory>
#include <string>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// An XML document that an operation fills with a reply's raw bytes. Empty until a `load` succeeds.
class BVCONN_EXPORT XMLDocument {
 public:
  XMLDocument();
  XMLDocument(XMLDocument&&) noexcept;
  XMLDocument& operator=(XMLDocument&&) noexcept;
  ~XMLDocument();

  /// Loads bytes. False, and an empty document, for what is not well-formed.
  bool load(std::string bytes);
  /// The document's text in UTF-8, attributes and prefixes kept; "" for an empty document.
  std::string xml() const;
  bool empty() const;
  /// The document element as a node; an empty reference for an empty document.
  SoapNode documentElement() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// A node made from XML text, as support tools give one: `<Project><Name>N</Name></Project>`. Fails
/// with 0x80044202 for text that is not well-formed.
BVCONN_EXPORT SoapNode node_from_xml(std::string_view xml);
/// A node as XML text, the way it would stand in a request.
BVCONN_EXPORT std::string node_to_xml(const SoapNode& node);

}  // namespace bvconn
