#include "bvconn/platform/windows/service_rows.h"

#include <algorithm>
#include <type_traits>
#include <vector>

#include "bvconn/platform/soap/variant.h"

namespace bvconn::detail {
namespace {

template <class T>
constexpr bool kIsWritable =
    std::is_lvalue_reference_v<T> && !std::is_const_v<std::remove_reference_t<T>>;

template <class Declaration>
struct References;

template <class... Declared>
struct References<void(Declared...)> {
  static_assert(sizeof...(Declared) <= 32);
  static std::uint32_t bits() {
    std::uint32_t all = 0;
    std::uint32_t bit = 1;
    static_cast<void>(((all |= kIsWritable<Declared> ? bit : 0U, bit <<= 1U), ..., bit));
    return all;
  }
};

std::vector<ServiceRow> all_rows() {
  std::vector<ServiceRow> rows;
  std::string_view object;
#define BVCONN_SERVICE_OBJECT(name, ...) \
  object = #name;                        \
  __VA_ARGS__
#define BVCONN_SERVICE_OPERATION(name, ...) \
  rows.push_back({.object = object,         \
                  .operation = #name,       \
                  .references = References<void(__VA_ARGS__)>::bits()});
#define BVCONN_SERVICE_OPERATION_BY_NAME BVCONN_SERVICE_OPERATION
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  return rows;
}

}  // namespace

std::span<const ServiceRow> service_rows() {
  static const std::vector<ServiceRow> rows = all_rows();
  return rows;
}

const ServiceRow& service_row(std::string_view object, std::string_view operation) {
  static const ServiceRow none;
  const auto rows = service_rows();
  const auto found = std::ranges::find_if(rows, [&](const ServiceRow& row) {
    return row.object == object && row.operation == operation;
  });
  return found == rows.end() ? none : *found;
}

}  // namespace bvconn::detail
