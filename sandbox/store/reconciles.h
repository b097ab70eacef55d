#pragma once

#include <string_view>

#include "sandbox/store/documents.h"
#include "sandbox/store/invoices.h"

/// Order reconciles: documents whose lines are invoices, under the invoices' own keys.
namespace bvconn::sandbox {

inline constexpr DocumentKind kReconcileKind{"order reconcile", "REC-", 10'001, "GID",
                                             "ReconcileNumber"};

/// A new one without lines, open and not locked.
SoapNode reconcile_form(std::string_view gid, std::string_view agent);
void append_invoice_line(const SoapNode& reconcile, const Invoice& invoice);

/// Fills a database that has invoices with some reconciles.
void fill_reconciles(Database& database);

}  // namespace bvconn::sandbox
