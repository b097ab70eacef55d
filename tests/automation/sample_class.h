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
  using C = Sample;
  return automation::ClassBuilder<C>("Sample")
      .BVCONN_OPERATION(Join, "first", "second")
      .BVCONN_OPERATION(Types, "flag", "small", "large", "any", "list", "node", "document")
      .BVCONN_OPERATION(Defaults, "text?", "flag?", "number?", "any?", "node?",
                        {"word?", "NOTHING"})
      .BVCONN_OPERATION(
          Find, "server",
          {BVCONN_REQUIRED(FindCriteria, Name), BVCONN_OPTIONAL(FindCriteria, Exact),
           BVCONN_REQUIRED(FindCriteria, Codes), BVCONN_OPTIONAL(FindCriteria, Limit, Extra)},
          "last")
      .BVCONN_OPERATION(Make, "name")
      .BVCONN_OPERATION(Any)
      .BVCONN_OPERATION(Small)
      .BVCONN_OPERATION(Large)
      .BVCONN_OPERATION(Nothing)
      .BVCONN_OPERATION(Fail)
      .BVCONN_PROPERTY(bool, Flag)
      .BVCONN_PROPERTY(std::string, Word)
      .BVCONN_WRITE_ONLY(Secret)
      .BVCONN_READ_ONLY(Service)
      .BVCONN_PROPERTY_WITH(IsKnown, "key")
      .BVCONN_CONSTANT(Row)
      .BVCONN_EVENT(Happened)
      .take();
}

}  // namespace bvconn::test
