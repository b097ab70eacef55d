#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/operations/operations.h"
#include "sandbox/store/documents.h"

/// What the families of searches share: rows, which are flat trees of texts, and criteria.
namespace bvconn::sandbox {

enum class Match {
  kEquals,     ///< in any case; "" leaves it open
  kContains,   ///< in any case; "" leaves it open
  kNumber,     ///< as `kEquals`, without leading zeros; 0 leaves it open
  kOwnNumber,  ///< as `kNumber`; a row without the field fits too
  kAmong,      ///< one of an array, or of a text with ";" in between
  kFrom,       ///< a day, or a later one
  kTo,         ///< a day, or an earlier one
  kOn,         ///< a day
  kAny,        ///< a flag; of those with the same field one that is set has to fit
  kOnly,       ///< a flag; when it is set the field has to be `value`
  kNot,        ///< a flag; when it is set the field may not be `value`
};

/// The parameter in this place, and the field of a row that it is compared with.
struct Criterion {
  std::size_t place;
  const char* field;
  Match match = Match::kEquals;
  const char* value = "";
};

using Rows = std::vector<SoapNode>;

/// The rows that all criteria fit; an argument that is missing leaves its criterion open.
Rows matching(const SoapCall& call, const Rows& rows, const std::vector<Criterion>& criteria);
void answer_rows(SoapCall& call, const Rows& rows);

/// A row of each document of a kind that is not deactivated; or a row of each revision of it that
/// is known, the latest first.
Rows document_rows(SoapCall& call, const DocumentKind& kind, bool all_revisions = false);
/// Whether somebody deactivated the document.
bool is_deactivated(const SoapNode& document);

void add_list_searches(Operations& operations);
void add_document_searches(Operations& operations);
void add_order_views(Operations& operations);
void add_price_searches(Operations& operations);
void add_templates(Operations& operations);

}  // namespace bvconn::sandbox
