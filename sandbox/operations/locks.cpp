#include "sandbox/operations/locks.h"

#include "sandbox/store/documents_tree.h"
#include "sandbox/store/reconciles.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kField = "LockedBy";

/// Other documents may say `LockedBy` too, but no operation locks them.
bool has_lock(std::string_view kind) {
  return kind == kProjectKind.name || kind == kQuoteKind.name || kind == kOrderKind.name ||
         kind == kReconcileKind.name;
}

}  // namespace

void refuse_lock_of_another(const SoapCall& call, const Document& document, const char* code) {
  if (!has_lock(document.kind)) return;
  if (document.locked_by.empty() || document.locked_by == call.user_id) return;
  throw Fault{.code = code,
              .text = "The " + document.kind + " '" + document.gid + "' is locked by '" +
                      document.locked_by + "'",
              .detail = {{"GID", document.gid}, {std::string(kField), document.locked_by}}};
}

Document need_unlocked(SoapCall& call, const DocumentKind& kind, std::string_view key) {
  Document document = need(call, kind, key);
  refuse_lock_of_another(call, document);
  return document;
}

Document need_instrument_unlocked(SoapCall& call, std::string_view key) {
  Document document = need_instrument(call, key);
  refuse_lock_of_another(call, document);
  return document;
}

void settle_lock(const SoapCall& call, const DocumentKind& kind, const Document& known,
                 const SoapNode& tree) {
  if (!has_lock(kind.name)) return;
  const bool says_so = static_cast<bool>(child(tree, kField));
  const std::string said = child_text(tree, kField);
  if (says_so && (said.empty() || said == call.user_id)) return;
  if (!says_so && known.locked_by.empty()) return;
  set_child(tree, kField, known.locked_by);
}

}  // namespace bvconn::sandbox
