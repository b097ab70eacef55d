#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bvconn/component/members.h"

/// How the tables of the objects that are no classes of the interface are written.
namespace bvconn::component {

inline automation::Argument required(std::string name, automation::ValueType type) {
  automation::Argument argument;
  argument.name = std::move(name);
  argument.type = type;
  return argument;
}

inline automation::Argument optional(std::string name, automation::ValueType type) {
  automation::Argument argument = required(std::move(name), type);
  argument.optional = true;
  return argument;
}

inline NamedMember method(DispatchId id, std::string name,
                          std::vector<automation::Argument> arguments = {}) {
  return {.id = id,
          .name = std::move(name),
          .access = call_flag::kMethod,
          .arguments = std::move(arguments)};
}

inline NamedMember read_only(DispatchId id, std::string name) {
  return {.id = id, .name = std::move(name), .access = call_flag::kPropertyGet, .arguments = {}};
}

inline NamedMember write_only(DispatchId id, std::string name, automation::ValueType type,
                              std::vector<automation::Argument> arguments = {}) {
  return {.id = id,
          .name = std::move(name),
          .access = call_flag::kPropertyPut,
          .arguments = std::move(arguments),
          .put_type = type};
}

inline NamedMember property(DispatchId id, std::string name, automation::ValueType type) {
  NamedMember member = write_only(id, std::move(name), type);
  member.access |= call_flag::kPropertyGet;
  return member;
}

/// The text at a place; "" where it was left out.
inline std::string text_at(std::span<const automation::Value> values, std::size_t place) {
  const auto* held = std::get_if<Variant>(&values[place]);
  return held == nullptr ? std::string() : held->string();
}

/// The variant at a place; Missing where it was left out.
inline Variant variant_at(std::span<const automation::Value> values, std::size_t place) {
  const auto* held = std::get_if<Variant>(&values[place]);
  return held == nullptr ? Variant(Variant::Missing()) : *held;
}

}  // namespace bvconn::component
