#include "sandbox/contract/observed.h"

namespace bvconn::sandbox {

Contract observed_contract() {
  const ParameterContract text{.name = "param", .types = {"string"}};
  return Contract({
      {.service = "urn:HeartBeatService",
       .name = "beat",
       .headers = {"userID"},
       .soap_actions = {"urn:HeartBeatService"},
       .shapes = {RequestShape{}}},
      {.service = "urn:InvoiceService",
       .name = "getInvoice",
       .headers = {"userID"},
       .soap_actions = {"urn:InvoiceService"},
       .shapes = {RequestShape{.parameters = {text}}}},
  });
}

}  // namespace bvconn::sandbox
