#include <string>

#include "bvconn/component/memory.h"
#include "bvconn/component/text.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;

}  // namespace

std::uint32_t element_size(std::uint16_t element_type) noexcept {
  switch (element_type) {
    case vt::kInt8:
    case vt::kUint8:
      return 1;
    case vt::kInt16:
    case vt::kUint16:
    case vt::kBoolean:
      return 2;
    case vt::kInt32:
    case vt::kUint32:
    case vt::kInt:
    case vt::kUint:
    case vt::kFloat:
      return 4;
    case vt::kInt64:
    case vt::kUint64:
    case vt::kDouble:
    case vt::kCurrency:
    case vt::kDate:
      return 8;
    case vt::kDecimal:
      return 16;
    case vt::kString:
    case vt::kDispatch:
    case vt::kUnknown:
      return sizeof(void*);
    case vt::kVariant:
      return sizeof(VariantRecord);
    default:
      return 0;
  }
}

ArrayRecord* create_string_array(const char16_t* const* texts, std::uint32_t count) noexcept {
  if (texts == nullptr && count != 0) return nullptr;
  ArrayRecord* array = create_array(vt::kString, count);
  if (array == nullptr) return nullptr;
  auto* const copies = static_cast<StringPointer*>(array->data);
  for (std::uint32_t i = 0; i < count; ++i) {
    if (texts[i] == nullptr) continue;
    copies[i] = alloc_string(texts[i], std::char_traits<char16_t>::length(texts[i]));
    if (copies[i] == nullptr) {
      destroy_array(array, vt::kString);
      return nullptr;
    }
  }
  return array;
}

void clear_exception(ExceptionRecord* exception) noexcept {
  if (exception == nullptr) return;
  free_string(exception->source);
  free_string(exception->description);
  free_string(exception->help_file);
  *exception = ExceptionRecord{};
}

}  // namespace bvconn::component
