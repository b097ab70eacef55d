#include "bvconn/platform/windows/component_values.h"

#include <cstring>
#include <limits>
#include <new>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

[[noreturn]] void fail_mismatch(const ArgumentPlace& place, const std::string& what) {
  throw Error(error_numbers::kTypeMismatch, "BVConn",
              "Argument " + std::to_string(place.number) + " of " + std::string(place.operation) +
                  " cannot be passed: " + what);
}

void put_text(VARIANT& to, const std::string& text, const ArgumentPlace& place) {
  if (!is_utf8(text)) fail_mismatch(place, "the text " + shown(text) + " is not UTF-8");
  to.bstrVal = system_text(text);
  to.vt = VT_BSTR;
}

SAFEARRAY* put_array(VARIANT& to, VARTYPE element, std::size_t count) {
  if (count > std::numeric_limits<ULONG>::max()) throw std::bad_alloc();
  to.parray = ::SafeArrayCreateVector(element, 0, static_cast<ULONG>(count));
  if (to.parray == nullptr) throw std::bad_alloc();
  to.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  return to.parray;
}

void put_value(VARIANT& to, const Variant& value, const ArgumentPlace& place);

void put_items(VARIANT& to, const VariantArray& array, const ArgumentPlace& place) {
  if (!array.allocated()) {
    to.vt = VT_ARRAY | VT_VARIANT;
    to.parray = nullptr;
    return;
  }
  auto* element = static_cast<VARIANT*>(put_array(to, VT_VARIANT, array.size())->pvData);
  for (const Variant& item : array.items()) put_value(*element++, item, place);
}

void put_bytes(VARIANT& to, const Bytes& bytes) {
  const SAFEARRAY* array = put_array(to, VT_UI1, bytes.size());
  if (!bytes.empty()) std::memcpy(array->pvData, bytes.data(), bytes.size());
}

// `to` is empty.
void put_value(VARIANT& to, const Variant& value, const ArgumentPlace& place) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
      return;
    case Variant::Type::kMissing:
      to.vt = VT_ERROR;
      to.scode = DISP_E_PARAMNOTFOUND;
      return;
    case Variant::Type::kBoolean:
      to.vt = VT_BOOL;
      to.boolVal = value.boolean() ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case Variant::Type::kInt16:
      to.vt = VT_I2;
      to.iVal = value.int16();
      return;
    case Variant::Type::kInt32:
      to.vt = VT_I4;
      to.lVal = value.int32();
      return;
    case Variant::Type::kInt64:
      to.vt = VT_I8;
      to.llVal = value.int64();
      return;
    case Variant::Type::kDouble:
      to.vt = VT_R8;
      to.dblVal = value.number();
      return;
    case Variant::Type::kDate:
      to.vt = VT_DATE;
      to.date = to_serial_days(value.date());
      return;
    case Variant::Type::kString:
      return put_text(to, value.string(), place);
    case Variant::Type::kQualifiedName:
      return put_text(to, value.qualified_name().local, place);
    case Variant::Type::kArray:
      return put_items(to, value.array(), place);
    case Variant::Type::kBytes:
      return put_bytes(to, value.bytes());
    case Variant::Type::kNode:
      if (value.node()) fail_mismatch(place, "a node is no value that a component knows");
      to.vt = VT_DISPATCH;
      to.pdispVal = nullptr;
      return;
  }
}

std::string kind_of(VARTYPE type) {
  if ((type & VT_ARRAY) != 0) return "an array";
  switch (type) {
    case VT_NULL:
      return "Null";
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return "an object";
    case VT_BOOL:
      return "a boolean";
    case VT_DATE:
      return "a date";
    case VT_ERROR:
      return "an error value";
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      return "a number";
    default:
      return "a value of the type " + std::to_string(type);
  }
}

[[noreturn]] void fail_no_text(std::string_view operation, const std::string& what) {
  Error error(
      error_numbers::kTypeMismatch, "BVConn",
      "The component's " + std::string(operation) + " gave " + what + " where its text is due");
  error.outcome = Outcome::kAnswered;
  throw Error(error);
}

// References, and a variant that refers to another, are followed to the value.
const VARIANT* value_of(const VARIANT& given, VARIANT& behind) {
  constexpr int kStepsMax = 4;
  const VARIANT* value = &given;
  for (int step = 0; step < kStepsMax && (value->vt & VT_BYREF) != 0; ++step) {
    if (value->byref == nullptr) return nullptr;
    if (value->vt == (VT_BYREF | VT_VARIANT)) {
      value = value->pvarVal;
    } else if (value->vt == (VT_BYREF | VT_BSTR)) {
      behind.vt = VT_BSTR;
      behind.bstrVal = *value->pbstrVal;
      value = &behind;
    } else {
      behind.vt = static_cast<VARTYPE>(value->vt & ~VT_BYREF);
      value = &behind;
    }
  }
  return value;
}

}  // namespace

SystemVariant system_variant(const Variant& value, const ArgumentPlace& place) {
  SystemVariant made;
  put_value(made, value, place);
  return made;
}

BSTR system_text(std::string_view text) {
  const std::wstring letters = wide(text);
  BSTR made = ::SysAllocStringLen(letters.data(), static_cast<UINT>(letters.size()));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

std::string given_text(const VARIANT& given, std::string_view operation) {
  VARIANT behind{};
  const VARIANT* const value = value_of(given, behind);
  if (value == nullptr) fail_no_text(operation, "a reference to nothing");
  if (value->vt == VT_EMPTY) return "";
  if (value->vt != VT_BSTR) fail_no_text(operation, kind_of(value->vt));
  const UINT bytes = ::SysStringByteLen(value->bstrVal);
  const std::optional<std::string> text =
      bytes % sizeof(wchar_t) != 0 ? std::nullopt
                                   : narrow_strictly({value->bstrVal, bytes / sizeof(wchar_t)});
  if (!text) fail_no_text(operation, "a text that is no UTF-16");
  return *text;
}

}  // namespace bvconn::detail
