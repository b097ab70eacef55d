#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

#include "bvconn/component/decimals.h"
#include "bvconn/component/outside_objects.h"
#include "bvconn/component/soap_objects.h"
#include "bvconn/component/text.h"
#include "bvconn/component/values.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;

OwnedVariant owned(std::uint16_t type) {
  OwnedVariant record;
  record->type = type;
  return record;
}

OwnedVariant record_from_text(std::string_view text) {
  OwnedVariant record;
  record->value.string = string_from_utf8(text);
  record->type = vt::kString;
  return record;
}

OwnedVariant owned_array(std::uint16_t element_type, std::size_t count) {
  if (count > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  OwnedVariant record;
  record->value.array = create_array(element_type, static_cast<std::uint32_t>(count));
  if (record->value.array == nullptr) throw std::bad_alloc();
  record->type = static_cast<std::uint16_t>(vt::kArray | element_type);
  return record;
}

OwnedVariant record_from_bytes(const Bytes& bytes) {
  OwnedVariant record = owned_array(vt::kUint8, bytes.size());
  if (!bytes.empty()) std::memcpy(record->value.array->data, bytes.data(), bytes.size());
  return record;
}

// An array that was never allocated is an array variant without an array.
OwnedVariant record_from_variants(const VariantArray& array) {
  if (!array.allocated()) return owned(vt::kArray | vt::kVariant);
  OwnedVariant record = owned_array(vt::kVariant, array.size());
  auto* elements = static_cast<VariantRecord*>(record->value.array->data);
  for (std::size_t i = 0; i < array.size(); ++i) {
    elements[i] = record_from_variant(array.items()[i]).release();
  }
  return record;
}

OwnedVariant record_from_strings(const StringArray& array) {
  if (!array.allocated()) return owned(vt::kArray | vt::kString);
  OwnedVariant record = owned_array(vt::kString, array.size());
  auto* elements = static_cast<StringPointer*>(record->value.array->data);
  for (std::size_t i = 0; i < array.size(); ++i) elements[i] = string_from_utf8(array.items()[i]);
  return record;
}

// Many hosts know no integers of 64 bits.
OwnedVariant record_from_int64(std::int64_t number) {
  OwnedVariant record;
  if (const auto small = static_cast<std::int32_t>(number); small == number) {
    record->type = vt::kInt32;
    record->value.int32 = small;
  } else if (number >= -kWholeDoubleMax && number <= kWholeDoubleMax) {
    record->type = vt::kDouble;
    record->value.number = static_cast<double>(number);
  } else {
    const DecimalRecord decimal = decimal_of(number);
    std::memcpy(&*record, &decimal, sizeof decimal);
  }
  return record;
}

OwnedVariant record_from_number(const Variant& value) {
  OwnedVariant record;
  switch (value.type()) {
    case Variant::Type::kBoolean:
      record->type = vt::kBoolean;
      record->value.boolean = value.boolean() ? kVariantTrue : kVariantFalse;
      break;
    case Variant::Type::kInt16:
      record->type = vt::kInt16;
      record->value.int16 = value.int16();
      break;
    case Variant::Type::kInt32:
      record->type = vt::kInt32;
      record->value.int32 = value.int32();
      break;
    case Variant::Type::kInt64:
      return record_from_int64(value.int64());
    default:
      record->type = vt::kDouble;
      record->value.number = value.number();
      break;
  }
  return record;
}

}  // namespace

OwnedVariant record_from_object(IDispatchAbi* object) noexcept {
  OwnedVariant record;
  record->type = vt::kDispatch;
  record->value.dispatch = object;
  return record;
}

OwnedVariant record_from_variant(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
      return {};
    case Variant::Type::kMissing: {
      OwnedVariant record = owned(vt::kError);
      record->value.error = kParameterNotFound;
      return record;
    }
    case Variant::Type::kString:
      return record_from_text(value.string());
    case Variant::Type::kQualifiedName:
      return record_from_text(value.qualified_name().local);
    case Variant::Type::kDate: {
      OwnedVariant record = owned(vt::kDate);
      record->value.date = to_serial_days(value.date());
      return record;
    }
    case Variant::Type::kBytes:
      return record_from_bytes(value.bytes());
    case Variant::Type::kArray:
      return record_from_variants(value.array());
    case Variant::Type::kNode:
      return record_from_object(make_node_object(value.node()));
    default:
      return record_from_number(value);
  }
}

OwnedVariant record_from_value(const Value& value) {
  return std::visit(
      [](const auto& held) -> OwnedVariant {
        using Held = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>) {
          return {};
        } else if constexpr (std::is_same_v<Held, Variant>) {
          return record_from_variant(held);
        } else if constexpr (std::is_same_v<Held, StringArray>) {
          return record_from_strings(held);
        } else if constexpr (std::is_same_v<Held, SoapEnvelope>) {
          return record_from_object(make_envelope_object(held));
        } else if constexpr (std::is_same_v<Held, std::shared_ptr<HTTPTransport>>) {
          return record_from_object(make_transport_object(held));
        } else if constexpr (std::is_same_v<Held, std::shared_ptr<ServiceObject>>) {
          return record_from_object(make_service_object_object(held));
        } else {
          throw Error(error_numbers::kTypeMismatch, "BVConn",
                      "A document is filled by an operation, never given back");
        }
      },
      value);
}

}  // namespace bvconn::component
