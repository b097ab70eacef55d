#pragma once

#include <iosfwd>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Writes a node and everything below it for people, one line each, indented by two blanks a level:
///
///     return
///       InvoiceNumber = 4711
///       Remark = "two\nlines"
///       Shipped is nil
///       Codes = ["A","B"]
///         item = A
///         item = B
///
/// A value stands as it would in a request; text in which something had to be escaped stands in
/// quotes. A value that is not of the type that the reply claims is shown as its text, with the
/// reason. For programs there is `node_to_xml`.
///
/// Fails with 91 for an empty reference, and with 0x80044206 beyond 10,000 levels (also for a node
/// that contains itself) or 10 million nodes; then nothing is written.
BVCONN_EXPORT void print(const SoapNode& node, std::ostream& out);
/// The same, to standard output.
BVCONN_EXPORT void print(const SoapNode& node);

}  // namespace bvconn
