#include "bvconn/platform/soap/xml_document.h"

#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_writer.h"
#include "bvconn/platform/soap/reply_reader.h"
#include "bvconn/platform/xml/xml_encoding.h"
#include "bvconn/platform/xml/xml_error.h"

namespace bvconn {

struct XMLDocument::State {
  std::string text;
  SoapNode root;
};

namespace {

/// Makes the XML declaration say what the text is now in; nothing else changes.
void declare_utf8(std::string& text) {
  if (!text.starts_with("<?xml")) return;
  const std::size_t end = text.find("?>");
  const std::size_t name = text.find("encoding");
  if (end == std::string::npos || name > end) return;
  const std::size_t begin = text.find_first_of("'\"", name);
  if (begin > end) return;
  const std::size_t close = text.find(text[begin], begin + 1);
  const std::string_view declared = std::string_view(text).substr(begin + 1, close - begin - 1);
  if (conversions::equal_ignoring_case(declared, "UTF-8")) return;
  text.replace(begin + 1, close - begin - 1, "UTF-8");
}

}  // namespace

XMLDocument::XMLDocument() = default;
XMLDocument::XMLDocument(XMLDocument&&) noexcept = default;
XMLDocument& XMLDocument::operator=(XMLDocument&&) noexcept = default;
XMLDocument::~XMLDocument() = default;

bool XMLDocument::load(std::string bytes) {
  state_.reset();
  try {
    auto loaded = std::make_unique<State>();
    loaded->text = detail::xml::to_utf8(std::move(bytes), "");
    if (loaded->text.starts_with("\xEF\xBB\xBF")) loaded->text.erase(0, 3);
    loaded->root = detail::read_document(loaded->text);
    declare_utf8(loaded->text);
    state_ = std::move(loaded);
  } catch (const detail::xml::ReadError&) {
    return false;
  }
  return true;
}

std::string XMLDocument::xml() const {
  return state_ ? state_->text : std::string();
}
bool XMLDocument::empty() const {
  return state_ == nullptr;
}
SoapNode XMLDocument::documentElement() const {
  return state_ ? state_->root : SoapNode();
}

SoapNode node_from_xml(std::string_view xml) {
  try {
    return detail::read_document(detail::xml::to_utf8(std::string(xml), ""));
  } catch (const detail::xml::ReadError& error) {
    throw detail::document_error(
        error, "SoapNodes", "The XML text passes a limit: ", "The text is not well-formed XML: ");
  }
}

std::string node_to_xml(const SoapNode& node) {
  std::string out;
  detail::NodeWriter writer(out, "SoapNodes", 0);
  writer.write(*SoapAccess::data(node));
  out.insert(writer.root_name_end(), writer.used_declarations());
  return out;
}

}  // namespace bvconn
