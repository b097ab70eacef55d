#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include <array>

#include "bvconn/core/method_frame.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

using error_numbers::from_bits;

constexpr std::array kGetInvoiceFaults{
    FaultRow{.code = 10041, .number = from_bits(0x80042739)},
};
constexpr Operation kGetInvoice{
    .log = {.cls = "BVInvoiceConnector", .method = "GetInvoice"},
    .method = &BVMethods::GetInvoice,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kGetInvoiceFaults,
};

}  // namespace

SoapNode BVInvoiceConnector::GetInvoice(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view strInvoiceUID) {
  return ConnectorMethodFrame(kGetInvoice, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    parameters.Create("param", strInvoiceUID, "", "", "");
    return call.send(aServerURL).first();
  });
}

}  // namespace bvconn
