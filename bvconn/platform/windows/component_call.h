#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/windows/component_values.h"
#include "bvconn/platform/windows/service_rows.h"

namespace bvconn::detail {

/// Where an operation puts its text.
enum class TextPlace : std::uint8_t {
  kUnknown,
  kResult,            ///< it is the result
  kReference,         ///< in a further, last argument: a reference to a text
  kVariantReference,  ///< or to a variant
};

/// One call of an operation of a service object's component, with its arguments as the component
/// takes them.
class ComponentCall {
 public:
  /// `operation` is "SearchService.SearchForBrands"; it and the row have to outlive the call. With
  /// `by_name` every argument is a reference to a variant. Throws `Error` 13 for an argument that
  /// cannot be passed.
  ComponentCall(std::string_view operation, const ServiceRow& row,
                std::span<const Variant> arguments, bool by_name);
  ~ComponentCall();
  ComponentCall(const ComponentCall&) = delete;
  ComponentCall& operator=(const ComponentCall&) = delete;

  /// The text that the operation gives. A place that is unknown is what the component's type
  /// information says, or what it takes: it is known afterwards. Throws `Error` for all else.
  std::string run(IDispatch& object, DISPID id, TextPlace& place);

 private:
  TextPlace described_place(IDispatch& object, DISPID id) const;
  /// Until the component takes one. The last answer.
  HRESULT try_places(IDispatch& object, DISPID id, TextPlace& place);
  HRESULT invoke(IDispatch& object, DISPID id, TextPlace place);
  VARIANT argument(std::size_t index);
  VARIANT receiver(TextPlace place);
  void clear_exception() noexcept;
  [[noreturn]] void fail(HRESULT result);
  [[noreturn]] void fail_with_exception();
  std::string refusal(HRESULT result) const;

  std::string_view operation_;
  const ServiceRow& row_;
  std::vector<SystemVariant> values_;
  bool by_name_;
  SystemVariant result_;
  SystemVariant received_;
  EXCEPINFO exception_{};
  UINT refused_ = 0;
  bool has_receiver_ = false;
};

/// Runs what calls a component. `Error` for what it throws, since no exception of another's may go
/// further.
template <class Call>
HRESULT call_component(std::string_view operation, Call call);

/// "Class not registered (0x80040154)".
std::string result_text(HRESULT result);

[[noreturn]] void fail_thrown(std::string_view operation);

template <class Call>
HRESULT call_component(std::string_view operation, Call call) {
  try {
    return call();
  } catch (...) {
    fail_thrown(operation);
  }
}

}  // namespace bvconn::detail
