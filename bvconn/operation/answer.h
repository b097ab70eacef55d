#pragma once

#include <string>
#include <type_traits>
#include <utility>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

class Call;
template <class T>
class Answer;

/// What a step that sends hands on: the call, with a reply or with a failure. What it is taken for
/// says who raises the failure: `or_raise` does so at once, an `Answer` leaves it to the frame.
class [[nodiscard]] Sent {
 public:
  explicit Sent(Call& call) noexcept : call_(&call) {}

  /// The call, for a body that goes on after the reply.
  Call& or_raise() const;
  // What `Call` has under the same names.
  Answer<SoapNode> first() const;
  Answer<Variant> value() const;
  Answer<std::string> text() const;
  Answer<bool> boolean() const;

 private:
  Call* call_;
};

/// What a body returns of a reply: the value, or nothing where the call has failed. The frame looks
/// which it is before it takes the value, so that a fault comes through the body as any answer
/// does and is raised once, where nothing is left to unwind.
template <class T>
class [[nodiscard]] Answer {
 public:
  explicit Answer(Call& call, T value = T()) : call_(&call), value_(std::move(value)) {}

  bool has_failed() const noexcept;
  /// For the frame, which has asked before.
  T take() && { return std::move(value_); }
  /// For a body that works with the value: raises the failure where there is one.
  operator T() &&;

 private:
  Call* call_;
  T value_;
};

/// The result of an operation whose body returns a `T`.
template <class T>
struct ResultOf {
  using Type = T;
  static constexpr bool kIsAnswer = false;
};
template <class T>
struct ResultOf<Answer<T>> {
  using Type = T;
  static constexpr bool kIsAnswer = true;
};

}  // namespace bvconn
