#pragma once

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/store/invoices.h"

namespace bvconn::sandbox {

/// All that an invoice says, as clients get it.
void append_invoice(SoapNodes fields, const Invoice& invoice);

}  // namespace bvconn::sandbox
