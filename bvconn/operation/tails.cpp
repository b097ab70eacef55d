#include "bvconn/operation/tails.h"

#include <limits>
#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {
namespace {

using error_numbers::kObjectErrorBase;
using error_numbers::kSoapFault;

std::string fault_text(const TailContext& context, std::string_view name) {
  return to_text(made(context.envelope).Parameters().ItemByName(name, "").Value());
}

std::int32_t with_object_error_base(std::int32_t code) {
  const std::int64_t sum = std::int64_t{code} + kObjectErrorBase;
  if (sum < std::numeric_limits<std::int32_t>::min()) {
    throw Error(error_numbers::kOverflow, "BVConn",
                "the fault code " + std::to_string(code) + " is out of range");
  }
  return static_cast<std::int32_t>(sum);
}

[[noreturn]] void fault_code_tail(const TailContext& context, const Error& error) {
  log_error(context.log, error);
  if (error.number == kSoapFault) {
    const std::string code = fault_text(context, "faultcode");
    if (conversions::number_of(code)) {
      const std::int32_t number = with_object_error_base(conversions::text_to_int32(code));
      for (const FaultRow& row : context.faults) {
        // deliberate [mapped-words]: the server's text is lost on a match; callers go by the number
        // alone.
        if (number == with_object_error_base(row.code))
          throw Error(row.number, context.log.cls, "");
      }
    }
  }
  throw error.described_as(error.description);
}

[[noreturn]] void fault_string_tail(const TailContext& context, const Error& error) {
  std::string description = error.description;
  if (error.number == kSoapFault) description = fault_text(context, "faultstring");
  throw error.described_as(description);
}

[[noreturn]] void rfq_tail(const TailContext& context, Error& error) {
  if (error.number == kSoapFault) {
    error.description = fault_text(context, "faultstring");
    error.number = error_numbers::kRfqFault;
  }
  throw Error(error);
}

[[noreturn]] void overview_tail(const TailContext& context, Error& error) {
  // deliberate [overview-words]: the description is written over before the line is logged, so the
  // server's text is lost.
  error.description.clear();
  log_error(context.log, error);
  throw error.described_as("");
}

}  // namespace

const SoapEnvelope& made(SoapEnvelope& envelope) {
  if (!envelope) envelope = SoapEnvelope::make();
  return envelope;
}

void apply_tail(Tail tail, const TailContext& context, Error& error) {
  switch (tail) {
    case Tail::kPlain:
      plain_tail(context.log, error);
    case Tail::kFaultCode:
      fault_code_tail(context, error);
    case Tail::kFaultString:
      fault_string_tail(context, error);
    case Tail::kRfq:
      rfq_tail(context, error);
    case Tail::kOverview:
      overview_tail(context, error);
    case Tail::kThreeValues:
      throw error.described_as(error.description);
    case Tail::kSwallow:
      log_error(context.log, error);
      return;
    case Tail::kBare:
    case Tail::kNone:
      throw Error(error);
  }
}

}  // namespace bvconn
