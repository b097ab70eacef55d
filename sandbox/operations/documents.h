#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/operations/operations.h"
#include "sandbox/store/documents.h"

/// What the families of document operations share.
namespace bvconn::sandbox {

/// A method of a service. It runs within a transaction, which a fault rolls back.
struct DocumentRow {
  const char* service;
  const char* method;
  void (*run)(SoapCall& call);
};

std::vector<DocumentRow> project_rows();
std::vector<DocumentRow> quote_rows();
std::vector<DocumentRow> order_rows();
std::vector<DocumentRow> comment_rows();
std::vector<DocumentRow> instrument_rows();
std::vector<DocumentRow> submittal_rows();
std::vector<DocumentRow> rma_rows();

[[noreturn]] void refuse_key(std::string_view what, std::string_view field, std::string_view key);

/// A parameter that holds a key.
std::string key_at(const SoapCall& call, std::size_t index);
/// A parameter that holds a document; nil or a text is a fault.
SoapNode document_at(const SoapCall& call, std::size_t index);
Document need(SoapCall& call, const DocumentKind& kind, std::string_view key);
/// A project, a quote or an order, whichever has the key.
Document need_instrument(SoapCall& call, std::string_view key);
/// The kind of a document that exists.
const DocumentKind& kind_of(const Document& document);

/// The children of a new "return" among the results.
SoapNodes begin_answer(SoapCall& call);
void answer_text(SoapCall& call, std::string_view text);

/// Keeps a client's document under the key that stands in it; one without gets a fresh one. One
/// that somebody else has locked is a fault. With a status, the document says it from now on.
Document keep_document(SoapCall& call, const DocumentKind& kind, const SoapNode& tree,
                       std::string_view parent = {}, std::string_view status = {});
/// Keeps another status of a document, in its tree too.
void keep_status(SoapCall& call, const DocumentKind& kind, Document& document,
                 std::string_view status);
/// Key, status and revision of a document.
void answer_state(SoapCall& call, const DocumentKind& kind, const Document& document);

}  // namespace bvconn::sandbox
