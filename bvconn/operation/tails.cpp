#include "bvconn/operation/tails.h"

#include <limits>
#include <string>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_view.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/without_help.h"

namespace bvconn {
namespace {

using error_numbers::kObjectErrorBase;
using error_numbers::kSoapFault;

std::string fault_text(const TailContext& context, std::string_view name) {
  const SoapNodes& parameters = made(context.envelope).Parameters();
  if (auto text = detail::text_of_first(parameters, name)) return *std::move(text);
  return to_text(parameters.ItemByName(name).Value());  // fails, and says what there is
}

std::int32_t with_object_error_base(std::int32_t code) {
  const std::int64_t sum = std::int64_t{code} + kObjectErrorBase;
  if (sum < std::numeric_limits<std::int32_t>::min()) {
    throw Error(error_numbers::kOverflow, "BVConn",
                "the fault code " + std::to_string(code) + " is out of range");
  }
  return static_cast<std::int32_t>(sum);
}

Error fault_code_tail(const TailContext& context, Error& error) {
  log_error(context.log, error);
  if (error.number == kSoapFault) {
    const std::string code = fault_text(context, "faultcode");
    if (conversions::number_of(code)) {
      const std::int32_t number = with_object_error_base(conversions::text_to_int32(code));
      for (const FaultRow& row : context.faults) {
        // deliberate [mapped-words]: the server's text is lost on a match; callers go by the number
        // alone.
        if (number == with_object_error_base(row.code)) return {row.number, context.log.cls, ""};
      }
    }
  }
  return without_help(std::move(error));
}

Error fault_string_tail(const TailContext& context, Error& error) {
  if (error.number == kSoapFault) error.description = fault_text(context, "faultstring");
  return without_help(std::move(error));
}

Error rfq_tail(const TailContext& context, Error& error) {
  if (error.number == kSoapFault) {
    error.description = fault_text(context, "faultstring");
    error.number = error_numbers::kRfqFault;
  }
  return std::move(error);
}

Error overview_tail(const TailContext& context, Error& error) {
  // deliberate [overview-words]: the description is written over before the line is logged, so the
  // server's text is lost.
  error.description.clear();
  log_error(context.log, error);
  return without_help(std::move(error));
}

}  // namespace

const SoapEnvelope& made(SoapEnvelope& envelope) {
  if (!envelope) envelope = SoapEnvelope::make();
  return envelope;
}

std::optional<Error> apply_tail(Tail tail, const TailContext& context, Error& error) {
  switch (tail) {
    case Tail::kPlain:
      log_error(context.log, error);
      return without_help(std::move(error));
    case Tail::kFaultCode:
      return fault_code_tail(context, error);
    case Tail::kFaultString:
      return fault_string_tail(context, error);
    case Tail::kRfq:
      return rfq_tail(context, error);
    case Tail::kOverview:
      return overview_tail(context, error);
    case Tail::kThreeValues:
      return without_help(std::move(error));
    case Tail::kSwallow:
      log_error(context.log, error);
      return std::nullopt;
    case Tail::kBare:
    case Tail::kNone:
      break;
  }
  return std::move(error);
}

}  // namespace bvconn
