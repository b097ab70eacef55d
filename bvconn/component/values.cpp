#include "bvconn/component/values.h"

#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "bvconn/component/counted.h"
#include "bvconn/component/decimals.h"
#include "bvconn/component/foreign_objects.h"
#include "bvconn/component/handles.h"
#include "bvconn/component/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;
using automation::ValueType;

// How deep arrays of variants may hold arrays. References can close a circle, which no other rule
// would end.
constexpr int kDepthMax = 32;

constexpr double kCurrencyUnit = 10000.0;

// What a host passed and what stands in a variant of ours, reported as an `Error` while converting
// and as a result code to the host.
[[noreturn]] void mismatch() {
  throw Error(error_numbers::kTypeMismatch, "BVConn", "The value is not of a type that fits");
}

template <typename T>
T read(const void* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

// A value behind a reference, or an element of an array, as a variant of its own; nothing for a
// type that cannot stand there. It shares what the original owns.
std::optional<VariantRecord> load(std::uint16_t type, const void* from) noexcept {
  VariantRecord value{};
  if (type == vt::kVariant) return read<VariantRecord>(from);
  const bool is_array = (type & vt::kArray) != 0;
  const std::size_t size = is_array             ? sizeof(ArrayRecord*)
                           : type == vt::kError ? sizeof(Hresult)
                                                : element_size(type);
  if (size == 0) return std::nullopt;
  if (type == vt::kDecimal) {
    std::memcpy(&value, from, size);
  } else {
    std::memcpy(&value.value, from, size);
  }
  value.type = type;
  return value;
}

Variant variant_from(const VariantRecord& record, int depth);

// One dimension, and elements of the size that their type has; kept by the host during the call.
struct Elements {
  std::uint16_t type;
  std::size_t count;
  const std::byte* data;
  std::size_t size;

  VariantRecord at(std::size_t index) const {
    const auto element = load(type, data + index * size);
    if (!element) mismatch();
    return *element;
  }
};

Elements elements_of(const ArrayRecord& array, std::uint16_t type) {
  const std::size_t size = element_size(type);
  if (array.dimensions != 1 || size == 0 || array.element_size != size) mismatch();
  const std::size_t count = array.bounds[0].count;
  if (count != 0 && array.data == nullptr) mismatch();
  return {type, count, static_cast<const std::byte*>(array.data), size};
}

Variant variant_from_array(const VariantRecord& record, int depth) {
  if (depth == kDepthMax) mismatch();
  const auto type = static_cast<std::uint16_t>(record.type & ~vt::kArray);
  if (record.value.array == nullptr) {
    if (element_size(type) == 0) mismatch();
    return VariantArray();
  }
  const Elements elements = elements_of(*record.value.array, type);
  if (type == vt::kUint8) return Bytes(elements.data, elements.data + elements.count);
  std::vector<Variant> items;
  items.reserve(elements.count);
  for (std::size_t i = 0; i < elements.count; ++i) {
    items.push_back(variant_from(elements.at(i), depth + 1));
  }
  return VariantArray(std::move(items));
}

Variant variant_from_string(const VariantRecord& record) {
  auto text = text_of(record.value.string);
  if (!text) mismatch();
  return Variant(*std::move(text));
}

ReadVariant reading_at(int depth) {
  if (depth == kDepthMax) mismatch();
  return [depth](const VariantRecord& part) { return variant_from(part, depth + 1); };
}

std::optional<SoapNode> own_or_foreign_node(IUnknownAbi* object, int depth) {
  auto node = own_node(object);
  return node ? node : foreign_node(object, reading_at(depth));
}

Variant variant_from_object(const VariantRecord& record, int depth) {
  if (auto node = own_or_foreign_node(record.value.unknown, depth)) {
    return Variant(*std::move(node));
  }
  if (auto items = foreign_array(record.value.unknown, reading_at(depth))) {
    return VariantArray(*std::move(items));
  }
  auto value = foreign_value(record.value.unknown, reading_at(depth));
  if (!value) mismatch();
  return *std::move(value);
}

Variant variant_from_decimal(const VariantRecord& record) {
  const auto decimal = read<DecimalRecord>(&record);
  if (const auto integer = large_integer_of(decimal)) return Variant(*integer);
  const auto number = number_of(decimal);
  if (!number) mismatch();
  return Variant(*number);
}

Variant variant_from_uint64(std::uint64_t value) {
  if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    throw Error(error_numbers::kOverflow, "BVConn", "The number is too large");
  }
  return Variant(static_cast<std::int64_t>(value));
}

// Integers of the widths that the library does not hold take the next wider one.
Variant variant_from_scalar(const VariantRecord& record) {
  const VariantData& data = record.value;
  switch (record.type) {
    case vt::kEmpty:
    case vt::kNull:
      return {};
    case vt::kBoolean:
      return Variant(data.boolean != kVariantFalse);
    case vt::kInt8:
      return Variant(static_cast<std::int16_t>(data.int8));
    case vt::kUint8:
      return Variant(static_cast<std::int16_t>(data.uint8));
    case vt::kInt16:
      return Variant(data.int16);
    case vt::kUint16:
      return Variant(static_cast<std::int32_t>(data.uint16));
    case vt::kInt32:
    case vt::kInt:
      return Variant(data.int32);
    case vt::kUint32:
    case vt::kUint:
      return Variant(static_cast<std::int64_t>(data.uint32));
    case vt::kInt64:
      return Variant(data.int64);
    case vt::kUint64:
      return variant_from_uint64(data.uint64);
    case vt::kFloat:
      return Variant(static_cast<double>(data.single));
    case vt::kDouble:
      return Variant(data.number);
    case vt::kCurrency:
      return Variant(static_cast<double>(data.currency) / kCurrencyUnit);
    case vt::kDecimal:
      return variant_from_decimal(record);
    case vt::kDate:
      return Variant(from_serial_days(data.date));
    default:
      mismatch();
  }
}

Variant variant_from(const VariantRecord& record, int depth) {
  VariantRecord value{};
  if (!succeeded(dereference(record, value))) mismatch();
  if (is_missing(value)) return Variant::Missing();
  if ((value.type & vt::kArray) != 0) return variant_from_array(value, depth);
  switch (value.type) {
    case vt::kString:
      return variant_from_string(value);
    case vt::kDispatch:
    case vt::kUnknown:
      return variant_from_object(value, depth);
    default:
      return variant_from_scalar(value);
  }
}

bool is_object(const VariantRecord& record) {
  return record.type == vt::kDispatch || record.type == vt::kUnknown;
}

StringArray strings_from_object(const VariantRecord& record) {
  const auto items = foreign_array(record.value.unknown, reading_at(0));
  if (!items) mismatch();
  std::vector<std::string> texts;
  for (const Variant& item : *items) texts.push_back(to_text(item));
  return StringArray(std::move(texts));
}

StringArray strings_from(const VariantRecord& record) {
  if (record.type == vt::kEmpty || record.type == vt::kNull) return {};
  if (is_object(record)) return strings_from_object(record);
  if ((record.type & vt::kArray) == 0) mismatch();
  const auto type = static_cast<std::uint16_t>(record.type & ~vt::kArray);
  if (element_size(type) == 0) mismatch();
  if (record.value.array == nullptr) return {};
  const Elements elements = elements_of(*record.value.array, type);
  std::vector<std::string> texts;
  texts.reserve(elements.count);
  for (std::size_t i = 0; i < elements.count; ++i) {
    texts.push_back(to_text(variant_from(elements.at(i), 1)));
  }
  return StringArray(std::move(texts));
}

XMLDocument* document_from(const VariantRecord& record, CallDocuments& documents) {
  if (record.type == vt::kEmpty || record.type == vt::kNull) return nullptr;
  if (!is_object(record)) mismatch();
  if (record.value.unknown == nullptr) return nullptr;
  auto handle = query<IDocumentHandleAbi>(record.value.unknown);
  void* own = nullptr;
  if (handle && succeeded(handle->GetDocument(module_mark(), &own))) {
    documents.keep(std::move(handle));
    return static_cast<XMLDocument*>(own);
  }
  XMLDocument* const stand_in = documents.stand_in(record.value.unknown);
  if (stand_in == nullptr) mismatch();
  return stand_in;
}

SoapNode node_from(const VariantRecord& record) {
  if (is_object(record)) {
    auto node = own_or_foreign_node(record.value.unknown, 0);
    if (!node) mismatch();
    return *std::move(node);
  }
  const Variant value = variant_from(record, 0);
  return value.empty() ? SoapNode() : to_node(value);
}

Value convert(const VariantRecord& record, ValueType type, CallDocuments& documents) {
  switch (type) {
    case ValueType::kString:
      return Variant(to_text(variant_from(record, 0)));
    case ValueType::kBoolean:
      return Variant(to_boolean(variant_from(record, 0)));
    case ValueType::kInt16:
      return Variant(to_int16(variant_from(record, 0)));
    case ValueType::kInt32:
      return Variant(to_int32(variant_from(record, 0)));
    case ValueType::kVariant:
      return variant_from(record, 0);
    case ValueType::kStringArray:
      return strings_from(record);
    case ValueType::kSoapNode:
      return Variant(node_from(record));
    case ValueType::kXMLDocument:
      return document_from(record, documents);
    default:
      // No argument of the interface has one of the other types.
      mismatch();
  }
}

}  // namespace

bool is_missing(const VariantRecord& record) noexcept {
  VariantRecord value{};
  return succeeded(dereference(record, value)) && value.type == vt::kError &&
         value.value.error == kParameterNotFound;
}

Hresult dereference(const VariantRecord& record, VariantRecord& value) noexcept {
  // A reference to a variant may meet one further reference in it; a longer chain is no chain that
  // a host builds.
  constexpr int kStepsMax = 4;
  value = record;
  for (int step = 0; step < kStepsMax; ++step) {
    if ((value.type & vt::kByReference) == 0) return kOk;
    if (value.value.reference == nullptr) return kNullPointer;
    const auto next =
        load(static_cast<std::uint16_t>(value.type & ~vt::kByReference), value.value.reference);
    if (!next) return kTypeMismatch;
    value = *next;
  }
  return (value.type & vt::kByReference) == 0 ? kOk : kTypeMismatch;
}

Hresult value_from_record(const VariantRecord& record, ValueType type, Value& value,
                          CallDocuments& documents) {
  VariantRecord direct{};
  const Hresult result = dereference(record, direct);
  if (!succeeded(result)) return result;
  try {
    value = convert(direct, type, documents);
    return kOk;
  } catch (const Error& error) {
    return error.number == error_numbers::kOverflow ? kOverflow : kTypeMismatch;
  }
}

}  // namespace bvconn::component
