#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/class_builder.h"
#include "bvconn/platform/error.h"

namespace bvconn::test {

/// More than six arguments of one operation.
struct FindCriteria {
  std::string_view Name;
  bool Exact = true;
  StringArray Codes;
  std::int16_t Limit = 7;
  Variant Extra = Variant::Missing{};
};

/// A class with a member of each kind and type, for tests of the declaration.
class Sample {
 public:
  std::string Join(std::string_view first, std::string_view second) {
    return std::string(first) + "/" + std::string(second);
  }
  std::string Types(bool flag, std::int16_t small, std::int32_t large, const Variant& any,
                    const StringArray& list, const SoapNode& node, XMLDocument* document) {
    std::string text = flag ? "true " : "false ";
    text += std::to_string(small) + " " + std::to_string(large) + " " + to_text(any) + " ";
    text += list.allocated() ? std::to_string(list.size()) : "none";
    text += " " + (node ? node.Name() : "empty");
    if (document != nullptr) document->load("<filled/>");
    return text;
  }
  std::string Defaults(std::string_view text = "", bool flag = false, std::int32_t number = 0,
                       const Variant& any = Variant::Missing{}, const SoapNode& node = {},
                       std::string_view word = "NOTHING") {
    return std::string(text) + "|" + (flag ? "true" : "false") + "|" + std::to_string(number) +
           "|" + (any.missing() ? "missing" : "there") + "|" + (node ? "node" : "empty") + "|" +
           std::string(word);
  }
  std::string Find(std::string_view server, const FindCriteria& criteria, std::string_view last) {
    return std::string(server) + "|" + std::string(criteria.Name) + "|" +
           (criteria.Exact ? "exact" : "loose") + "|" + std::to_string(criteria.Codes.size()) +
           "|" + std::to_string(criteria.Limit) + "|" +
           (criteria.Extra.missing() ? "missing" : "there") + "|" + std::string(last);
  }
  SoapNode Make(std::string_view name) { return SoapNode::make(name); }
  Variant Any() const { return Variant(2.5); }
  std::int16_t Small() { return -3; }
  std::int32_t Large() { return 70000; }
  void Nothing() { ++calls; }
  void Fail() { throw Error(9, "Sample", "out of range"); }

  bool Flag() const { return is_set; }
  void Flag(bool value) { is_set = value; }
  std::string Word() const { return kept; }
  void Word(std::string_view value) { kept = value; }
  void Secret(std::string_view value) { kept = value; }
  std::shared_ptr<ServiceObject> Service() const { return nullptr; }
  bool IsKnown(std::string_view key) const { return key == "known"; }
  std::string Row() const { return "row value"; }

  std::function<void()> Happened;
  int calls = 0;
  bool is_set = false;
  std::string kept = "begin";
};

inline automation::ClassInfo sample_class() {
  using automation::ClassBuilder;
  using automation::field;
  return ClassBuilder<Sample>("Sample")
      .operation<&Sample::Join>("Join", {"first", "second"})
      .operation<&Sample::Types>("Types",
                                 {"flag", "small", "large", "any", "list", "node", "document"})
      .operation<&Sample::Defaults>(
          "Defaults", {"text?", "flag?", "number?", "any?", "node?", {"word?", "NOTHING"}})
      .operation<&Sample::Find>(
          "Find", {"server", "last"},
          {field<&FindCriteria::Name>("Name"), field<&FindCriteria::Exact>("Exact?"),
           field<&FindCriteria::Codes>("Codes"), field<&FindCriteria::Limit>("Limit?"),
           field<&FindCriteria::Extra>("Extra?")})
      .operation<&Sample::Make>("Make", {"name"})
      .operation<&Sample::Any>("Any")
      .operation<&Sample::Small>("Small")
      .operation<&Sample::Large>("Large")
      .operation<&Sample::Nothing>("Nothing")
      .operation<&Sample::Fail>("Fail")
      .property<bool, &Sample::Flag, &Sample::Flag>("Flag")
      .property<std::string, &Sample::Word, &Sample::Word>("Word")
      .write_only<&Sample::Secret>("Secret")
      .read_only<&Sample::Service>("Service")
      .property_with<&Sample::IsKnown>("IsKnown", {"key"})
      .constant("Row", &Sample::Row)
      .event<&Sample::Happened>("Happened")
      .take();
}

}  // namespace bvconn::test
