#include "bvconn/component/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>

#include "bvconn/component/text.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;

// What lies before an array record: its element type in the last four bytes, and padding that
// keeps the record aligned.
constexpr std::size_t kHiddenBytes = 16;

std::uint16_t features_of(std::uint16_t element_type) {
  switch (element_type) {
    case vt::kString:
      return array_feature::kHasType | array_feature::kStrings;
    case vt::kVariant:
      return array_feature::kHasType | array_feature::kVariants;
    case vt::kDispatch:
      return array_feature::kHasType | array_feature::kDispatches;
    case vt::kUnknown:
      return array_feature::kHasType | array_feature::kUnknowns;
    default:
      return array_feature::kHasType;
  }
}

std::size_t element_count(const ArrayRecord& array) {
  return array.dimensions == 1 ? array.bounds[0].count : 0;
}

template <typename Element>
std::span<Element> elements(const ArrayRecord& array) {
  return {static_cast<Element*>(array.data), element_count(array)};
}

bool is_object(std::uint16_t type) {
  return type == vt::kDispatch || type == vt::kUnknown;
}

Hresult copy_array(ArrayRecord** target, const ArrayRecord* source,
                   std::uint16_t element_type) noexcept {
  *target = nullptr;
  if (source == nullptr) return kOk;
  if (source->dimensions != 1 || source->element_size != element_size(element_type)) {
    return kBadVariantType;
  }
  ArrayRecord* copy = create_array(element_type, source->bounds[0].count);
  if (copy == nullptr) return kOutOfMemory;
  copy->bounds[0].lower = source->bounds[0].lower;
  Hresult result = kOk;
  if (element_type == vt::kString) {
    const auto from = elements<StringPointer>(*source);
    for (std::size_t i = 0; i < from.size() && succeeded(result); ++i) {
      if (from[i] == nullptr) continue;
      StringPointer text = alloc_string(from[i], string_length(from[i]));
      elements<StringPointer>(*copy)[i] = text;
      if (text == nullptr) result = kOutOfMemory;
    }
  } else if (element_type == vt::kVariant) {
    const auto from = elements<VariantRecord>(*source);
    for (std::size_t i = 0; i < from.size() && succeeded(result); ++i) {
      result = copy_variant(&elements<VariantRecord>(*copy)[i], &from[i]);
    }
  } else if (element_count(*source) != 0) {
    std::memcpy(copy->data, source->data, element_count(*source) * source->element_size);
    if (is_object(element_type)) {
      for (IUnknownAbi* object : elements<IUnknownAbi*>(*copy)) {
        if (object != nullptr) object->AddRef();
      }
    }
  }
  if (!succeeded(result)) {
    destroy_array(copy, element_type);
    return result;
  }
  *target = copy;
  return kOk;
}

Hresult fill_copy(VariantRecord& copy, const VariantRecord& source) {
  const std::uint16_t type = source.type;
  copy = source;
  if ((type & vt::kByReference) != 0) return kOk;
  if ((type & vt::kArray) != 0) {
    return copy_array(&copy.value.array, source.value.array,
                      static_cast<std::uint16_t>(type & ~vt::kArray));
  }
  if (type == vt::kString && source.value.string != nullptr) {
    copy.value.string = alloc_string(source.value.string, string_length(source.value.string));
    if (copy.value.string == nullptr) return kOutOfMemory;
  }
  if (is_object(type) && source.value.unknown != nullptr) {
    source.value.unknown->AddRef();
  }
  return kOk;
}

}  // namespace

ArrayRecord* create_array(std::uint16_t element_type, std::uint32_t count) noexcept {
  const std::uint32_t size = element_size(element_type);
  if (size == 0) return nullptr;
  auto* block = static_cast<std::byte*>(std::calloc(1, kHiddenBytes + sizeof(ArrayRecord)));
  if (block == nullptr) return nullptr;
  // An array without elements has data too: callers may tell an array that was never allocated by
  // its missing data.
  void* data = std::calloc(std::max<std::size_t>(count, 1), size);
  if (data == nullptr) {
    std::free(block);
    return nullptr;
  }
  const std::uint32_t type = element_type;
  std::memcpy(block + kHiddenBytes - sizeof type, &type, sizeof type);
  auto* array = reinterpret_cast<ArrayRecord*>(block + kHiddenBytes);
  array->dimensions = 1;
  array->features = features_of(element_type);
  array->element_size = size;
  array->data = data;
  array->bounds[0].count = count;
  return array;
}

Hresult destroy_array(ArrayRecord* array, std::uint16_t element_type) noexcept {
  if (array == nullptr) return kOk;
  if (array->locks != 0) return kArrayIsLocked;
  if (element_type == vt::kString) {
    for (StringPointer text : elements<StringPointer>(*array)) free_string(text);
  } else if (element_type == vt::kVariant) {
    for (VariantRecord& element : elements<VariantRecord>(*array)) clear_variant(&element);
  } else if (is_object(element_type)) {
    for (IUnknownAbi* object : elements<IUnknownAbi*>(*array)) {
      if (object != nullptr) object->Release();
    }
  }
  std::free(array->data);
  std::free(reinterpret_cast<std::byte*>(array) - kHiddenBytes);
  return kOk;
}

std::uint16_t element_type_of(const ArrayRecord& array) noexcept {
  if ((array.features & array_feature::kHasType) == 0) return vt::kEmpty;
  std::uint32_t type = 0;
  std::memcpy(&type, reinterpret_cast<const std::byte*>(&array) - sizeof type, sizeof type);
  return static_cast<std::uint16_t>(type);
}

Hresult clear_variant(VariantRecord* variant) noexcept {
  if (variant == nullptr) return kNullPointer;
  const std::uint16_t type = variant->type;
  if ((type & vt::kByReference) == 0) {
    if ((type & vt::kArray) != 0) {
      const Hresult freed =
          destroy_array(variant->value.array, static_cast<std::uint16_t>(type & ~vt::kArray));
      if (!succeeded(freed)) return freed;
    } else if (type == vt::kString) {
      free_string(variant->value.string);
    } else if (is_object(type)) {
      if (variant->value.unknown != nullptr) variant->value.unknown->Release();
    }
  }
  *variant = VariantRecord{};
  return kOk;
}

Hresult copy_variant(VariantRecord* target, const VariantRecord* source) noexcept {
  if (target == nullptr || source == nullptr) return kNullPointer;
  if (target == source) return kOk;
  VariantRecord copy{};
  const Hresult result = fill_copy(copy, *source);
  if (!succeeded(result)) return result;
  const Hresult cleared = clear_variant(target);
  if (!succeeded(cleared)) {
    clear_variant(&copy);
    return cleared;
  }
  *target = copy;
  return kOk;
}

}  // namespace bvconn::component
