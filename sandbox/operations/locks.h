#pragma once

#include <string_view>

#include "sandbox/operations/documents.h"

/// Who may change a project, a quote, an order or an order reconcile. The lock belongs to a user:
/// on SOAP to the header's userID, on the data access layer to whoever logged in. A document that
/// nobody has locked is everybody's.
namespace bvconn::sandbox {

/// Throws the fault with this code if somebody else has locked the document.
void refuse_lock_of_another(const SoapCall& call, const Document& document,
                            const char* code = fault_codes::kClient);

/// As `need` and `need_instrument`, for a call that changes the document.
Document need_unlocked(SoapCall& call, const DocumentKind& kind, std::string_view key);
Document need_instrument_unlocked(SoapCall& call, std::string_view key);

/// Makes a document that is about to be saved say who has its lock from then on. Its saver takes or
/// keeps the lock by his own name in `LockedBy` and lets go of it by an empty one; another name,
/// and none at all, leave the lock as it is. `known` is the document so far, and may be a new
/// one's.
void settle_lock(const SoapCall& call, const DocumentKind& kind, const Document& known,
                 const SoapNode& tree);

}  // namespace bvconn::sandbox
