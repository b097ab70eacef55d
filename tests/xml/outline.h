#pragma once

#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/xml/xml_reader.h"

/// A document as one line that can be written by eye, to compare a reading with: an element is
/// `prefix:name{namespace} @attribute=[value] (content)`, a text `"text"`, a comment `#[text]`, an
/// instruction `?target[data]`; declarations of namespaces are attributes like others. Line ends in
/// texts stand as they are.
class Outline {
 public:
  void start_element(const bvconn::detail::xml::Name& name,
                     std::span<const bvconn::detail::xml::Attribute> attributes,
                     const bvconn::detail::xml::Scope&) {
    part();
    add(name.prefix, name.local, name.uri);
    for (const auto& attribute : attributes) {
      text_ += " @";
      add(attribute.prefix, attribute.local,
          attribute.is_namespace_declaration ? "" : attribute.uri);
      text_ += "=[";
      text_ += attribute.value;
      text_ += ']';
    }
    text_ += " (";
  }
  void text(std::string_view text) {
    part();
    text_ += '"';
    text_ += text;
    text_ += '"';
  }
  void end_element(const bvconn::detail::xml::Scope&) { text_ += ')'; }
  const std::string& line() const { return text_; }

 protected:
  void part() {
    if (!text_.empty() && text_.back() != '(') text_ += ' ';
  }
  void add(std::string_view prefix, std::string_view local, std::string_view uri) {
    text_ += prefix;
    if (!prefix.empty()) text_ += ':';
    text_ += local;
    if (uri.empty()) return;
    text_ += '{';
    text_ += uri;
    text_ += '}';
  }
  std::string text_;
};

/// The same for a reader that wants comments and instructions.
class FullOutline : public Outline {
 public:
  void comment(std::string_view text) {
    part();
    text_ += "#[";
    text_ += text;
    text_ += ']';
  }
  void instruction(std::string_view target, std::string_view data) {
    part();
    text_ += '?';
    text_ += target;
    text_ += '[';
    text_ += data;
    text_ += ']';
  }
};

template <class OutlineType = Outline>
std::string outline(std::string document) {
  OutlineType sink;
  bvconn::detail::xml::parse(document, {}, sink);
  return sink.line();
}
