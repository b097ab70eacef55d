#include "bvconn/platform/windows/component_call.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

struct Releasing {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};

std::string_view object_of(std::string_view operation) {
  return operation.substr(0, operation.find('.'));
}

// The component has not begun with the operation.
bool is_refusal(HRESULT result) {
  switch (result) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
    case DISP_E_BADPARAMCOUNT:
    case DISP_E_PARAMNOTOPTIONAL:
    case DISP_E_PARAMNOTFOUND:
    case DISP_E_TYPEMISMATCH:
    case DISP_E_OVERFLOW:
    case DISP_E_BADVARTYPE:
      return true;
    default:
      return false;
  }
}

bool is_wrong_count(HRESULT result) {
  return result == DISP_E_BADPARAMCOUNT || result == DISP_E_PARAMNOTOPTIONAL;
}

std::string text_in(BSTR text) {
  return text == nullptr ? std::string() : narrow({text, ::SysStringLen(text)});
}

// Small numbers are those of the language itself, which a result carries with this in front.
std::int32_t number_in(const EXCEPINFO& exception) {
  constexpr std::uint32_t kCarrier = 0x800A0000;
  if (exception.wCode != 0) return exception.wCode;
  const auto bits = static_cast<std::uint32_t>(exception.scode);
  if (bits == 0) return error_numbers::kFailed;
  if ((bits & 0xFFFF0000U) == kCarrier) return static_cast<std::int32_t>(bits & 0xFFFFU);
  return exception.scode;
}

// What an argument refers to; empty for one that is a value. Both forms of a reference are in use.
VARTYPE referred_type(const TYPEDESC& type) {
  if (type.vt == VT_PTR) return type.lptdesc->vt;
  if ((type.vt & VT_BYREF) == 0) return VT_EMPTY;
  return static_cast<VARTYPE>(type.vt & ~VT_BYREF);
}

bool has_flag(const ELEMDESC& argument, USHORT flag) {
  return (argument.paramdesc.wParamFlags & flag) != 0;
}

bool gives_a_value(const FUNCDESC& function) {
  const VARTYPE type = function.elemdescFunc.tdesc.vt;
  if (type != VT_VOID && type != VT_HRESULT && type != VT_EMPTY) return true;
  const ELEMDESC* const arguments = function.lprgelemdescParam;
  return std::any_of(arguments, arguments + function.cParams, [](const ELEMDESC& argument) {
    return has_flag(argument, PARAMFLAG_FRETVAL);
  });
}

// Of a description of a function, whose last argument may be where the text goes.
TextPlace place_in(const FUNCDESC& function, std::size_t arguments) {
  std::size_t taken = 0;
  const ELEMDESC* last = nullptr;
  for (SHORT index = 0; index < function.cParams; ++index) {
    const ELEMDESC& argument = function.lprgelemdescParam[index];
    if (has_flag(argument, PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)) continue;
    ++taken;
    last = &argument;
  }
  if (taken == arguments) return TextPlace::kResult;
  if (taken != arguments + 1) return TextPlace::kUnknown;
  // One that may be left out is a place for a text where there is no other.
  if (has_flag(*last, PARAMFLAG_FOPT) && gives_a_value(function)) return TextPlace::kUnknown;
  switch (referred_type(last->tdesc)) {
    case VT_EMPTY:
      return TextPlace::kUnknown;
    case VT_BSTR:
      return TextPlace::kReference;
    default:
      return TextPlace::kVariantReference;
  }
}

}  // namespace

std::string result_text(HRESULT result) {
  const auto code = static_cast<unsigned long>(result);
  const std::string words = windows_message(code);
  // Of some the system has no words.
  if (words == "Error " + std::to_string(code)) return "error " + hex_number(result);
  return words + " (" + hex_number(result) + ")";
}

void fail_thrown(std::string_view operation) {
  throw Error(error_numbers::kFailed, object_of(operation),
              "The component TorvexLib." + std::string(operation) + " threw an exception");
}

ComponentCall::ComponentCall(std::string_view operation, const ServiceRow& row,
                             std::span<const Variant> arguments, bool by_name)
    : operation_(operation), row_(row), by_name_(by_name) {
  values_.reserve(arguments.size());
  for (const Variant& value : arguments) {
    values_.push_back(
        system_variant(value, {.operation = operation, .number = values_.size() + 1}));
  }
}

ComponentCall::~ComponentCall() {
  clear_exception();
}

std::string ComponentCall::run(IDispatch& object, DISPID id, TextPlace& place) {
  if (place == TextPlace::kUnknown) place = described_place(object, id);
  TextPlace taken = place;
  const HRESULT result =
      taken == TextPlace::kUnknown ? try_places(object, id, taken) : invoke(object, id, taken);
  if (result == DISP_E_EXCEPTION) fail_with_exception();
  if (FAILED(result)) fail(result);
  place = taken;
  return given_text(taken == TextPlace::kResult ? result_ : received_, operation_);
}

TextPlace ComponentCall::described_place(IDispatch& object, DISPID id) const {
  ITypeInfo* found = nullptr;
  const HRESULT result = call_component(
      operation_, [&] { return object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &found); });
  if (FAILED(result) || found == nullptr) return TextPlace::kUnknown;
  const std::unique_ptr<ITypeInfo, Releasing> info(found);
  for (UINT index = 0;; ++index) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(index, &function))) return TextPlace::kUnknown;
    const bool is_it = function->memid == id && function->invkind == INVOKE_FUNC;
    const TextPlace place = is_it ? place_in(*function, values_.size()) : TextPlace::kUnknown;
    info->ReleaseFuncDesc(function);
    if (is_it) return place;
  }
}

HRESULT ComponentCall::try_places(IDispatch& object, DISPID id, TextPlace& place) {
  place = TextPlace::kResult;
  HRESULT result = invoke(object, id, place);
  if (!is_wrong_count(result)) return result;
  place = by_name_ ? TextPlace::kVariantReference : TextPlace::kReference;
  result = invoke(object, id, place);
  // The place for the text is the first in the record.
  if (by_name_ || result != DISP_E_TYPEMISMATCH || refused_ != 0) return result;
  place = TextPlace::kVariantReference;
  return invoke(object, id, place);
}

HRESULT ComponentCall::invoke(IDispatch& object, DISPID id, TextPlace place) {
  std::vector<VARIANT> given;
  given.reserve(values_.size() + 1);
  has_receiver_ = place != TextPlace::kResult;
  if (has_receiver_) given.push_back(receiver(place));
  for (std::size_t index = values_.size(); index > 0; --index) {
    given.push_back(argument(index - 1));
  }
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(given.size()), 0};
  ::VariantClear(&result_);
  clear_exception();
  refused_ = 0;
  return call_component(operation_, [&] {
    return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result_,
                         &exception_, &refused_);
  });
}

// What the component sees of the value; it stays this object's.
VARIANT ComponentCall::argument(std::size_t index) {
  VARIANT& value = values_[index];
  VARIANT given{};
  if (by_name_) {
    given.vt = VT_BYREF | VT_VARIANT;
    given.pvarVal = &value;
  } else if (row_.is_reference(index) && (value.vt == VT_BOOL || value.vt == VT_BSTR)) {
    given.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
    // All values lie in one place.
    given.byref = &value.bstrVal;
  } else {
    given = value;
  }
  return given;
}

VARIANT ComponentCall::receiver(TextPlace place) {
  ::VariantClear(&received_);
  // A component that leaves it as it is gives "".
  received_.vt = VT_BSTR;
  received_.bstrVal = nullptr;
  VARIANT given{};
  if (place == TextPlace::kReference) {
    given.vt = VT_BYREF | VT_BSTR;
    given.pbstrVal = &received_.bstrVal;
  } else {
    given.vt = VT_BYREF | VT_VARIANT;
    given.pvarVal = &received_;
  }
  return given;
}

void ComponentCall::clear_exception() noexcept {
  ::SysFreeString(exception_.bstrSource);
  ::SysFreeString(exception_.bstrDescription);
  ::SysFreeString(exception_.bstrHelpFile);
  exception_ = {};
}

void ComponentCall::fail(HRESULT result) {
  Error error(result, object_of(operation_), refusal(result));
  if (is_refusal(result)) error.outcome = Outcome::kNotSent;
  throw Error(error);
}

void ComponentCall::fail_with_exception() {
  if (exception_.pfnDeferredFillIn != nullptr) {
    call_component(operation_, [&] { return exception_.pfnDeferredFillIn(&exception_); });
  }
  const std::int32_t number = number_in(exception_);
  std::string source = text_in(exception_.bstrSource);
  if (source.empty()) source = object_of(operation_);
  std::string description = text_in(exception_.bstrDescription);
  if (description.empty()) {
    description = "The component TorvexLib." + std::string(operation_) +
                  " failed and did not say why: " +
                  (number < 0 ? result_text(number) : "error " + std::to_string(number));
  }
  throw Error(number, source, description, text_in(exception_.bstrHelpFile),
              static_cast<std::int32_t>(exception_.dwHelpContext));
}

std::string ComponentCall::refusal(HRESULT result) const {
  const std::string who = "The component TorvexLib." + std::string(object_of(operation_));
  const std::string what(operation_.substr(object_of(operation_).size() + 1));
  const std::string count = std::to_string(values_.size());
  const std::size_t places = values_.size() + (has_receiver_ ? 1 : 0);
  switch (result) {
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      return who + " has no operation " + what + ": " + result_text(result);
    case DISP_E_BADPARAMCOUNT:
    case DISP_E_PARAMNOTOPTIONAL:
      return who + " takes for " + what + " neither its arguments alone (" + count +
             ") nor one more for the text: " + result_text(result);
    case DISP_E_TYPEMISMATCH:
    case DISP_E_OVERFLOW:
    case DISP_E_BADVARTYPE:
      if (refused_ >= places) break;
      return who + " does not take argument " + std::to_string(places - refused_) + " of " + what +
             ": " + result_text(result);
    default:
      break;
  }
  return who + " failed in " + what + ": " + result_text(result);
}

}  // namespace bvconn::detail
