#include "bvconn/component/support_object.h"

#include <cstdint>
#include <limits>
#include <string>

#include "bvconn/component/calls.h"
#include "bvconn/component/named_object.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/values.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/exchange/exchange_json.h"
#include "bvconn/platform/explain.h"

namespace bvconn::component {
namespace {

using automation::Value;
using automation::ValueType;

std::string last_exchange() {
  const auto exchange = session().LastExchange();
  return exchange ? exchange_json(*exchange) : "null";
}

// Languages hold a number of 32 bits with its sign or without it, and some keep a small one in the
// form in which it came as a result code.
std::int32_t error_number(const Variant& value) {
  const double number = to_double(value);
  if (!(number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::uint32_t>::max())) {
    throw Error(error_numbers::kOverflow, "BVConn", "An error's number has 32 bits");
  }
  const auto bits = static_cast<std::uint32_t>(static_cast<std::int64_t>(number));
  const bool is_small = bits > kSmallNumbers && bits - kSmallNumbers <= 0xFFFF;
  return error_numbers::from_bits(is_small ? bits - kSmallNumbers : bits);
}

class SupportObject final : public NamedObject<> {
 public:
  std::string_view class_name() const noexcept override { return "Support"; }

 private:
  enum : DispatchId { kLastExchange = 1, kExplain, kVersion };

  const MemberTable& table() const override {
    static const MemberTable kTable({read_only(kLastExchange, "LastExchange"),
                                     method(kExplain, "Explain",
                                            {required("number", ValueType::kVariant),
                                             optional("description", ValueType::kString)}),
                                     read_only(kVersion, "Version")});
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kLastExchange:
        return record_from_variant(last_exchange());
      case kExplain:
        return record_from_variant(
            explain(Error(error_number(variant_at(values, 0)), "", text_at(values, 1))));
      default:
        return record_from_variant(Variant(BVCONN_VERSION));
    }
  }

  void put(const NamedMember& /*member*/, std::span<const Value> /*values*/) override {}
};

}  // namespace

IDispatchAbi* make_support_object() {
  return new SupportObject();
}

}  // namespace bvconn::component
