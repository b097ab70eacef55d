#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// A kind of documents, and where such a document says its key and its number.
struct DocumentKind {
  std::string_view name;
  std::string_view key_prefix;
  std::int64_t first_key;
  std::string_view key_field;
  std::string_view number_field;
  /// Whether what it was before can be asked for.
  bool keeps_revisions = false;
};

inline constexpr DocumentKind kProjectKind{"project", "PRJ-", 3'001, "GID", "ProjectNumber"};
inline constexpr DocumentKind kQuoteKind{"quote", "QUO-", 4'001, "GID", "QuoteNumber", true};
inline constexpr DocumentKind kOrderKind{"order", "ORD-", 5'001, "GID", "OrderNumber", true};
inline constexpr DocumentKind kRfqKind{"RFQ", "RFQ-", 6'001, "GID", "RFQNumber"};
inline constexpr DocumentKind kAcknowledgementKind{"acknowledgement", "ACK-", 7'001, "GID",
                                                   "AcknowledgementNumber"};
inline constexpr DocumentKind kSubmittalKind{"submittal", "SUB-", 8'001, "UID", "SubmittalNumber"};
inline constexpr DocumentKind kRmaKind{"RMA", "RMA-", 9'001, "UID", "RMANumber"};

struct Document {
  std::string gid;
  std::string kind;    ///< the name of a `DocumentKind`
  std::string parent;  ///< "" for none
  std::string number;
  std::string status;
  std::string locked_by;
  std::int64_t revision = 0;  ///< 0 until it is kept
  std::string body;           ///< the whole document as XML
  std::string previous_body;  ///< as it was before its last change, "" if there was none

  SoapNode tree() const;
};

struct Product {
  std::string catalog_number, description, manufacturer, unit;
  std::int64_t list_price_cents = 0;
};

/// The documents that are kept whole, and what hangs on them.
class Documents {
 public:
  explicit Documents(Database& database) : database_(database) {}

  std::optional<Document> find(std::string_view gid);
  std::optional<Document> find_by_number(const DocumentKind& kind, std::string_view number);
  /// In the order of their keys.
  std::vector<Document> children(const DocumentKind& kind, std::string_view parent);
  std::int64_t count(const DocumentKind& kind);
  /// So many of a kind behind this key, in the order in which the database has keys.
  std::vector<Document> list(const DocumentKind& kind, std::string_view after, std::int64_t most);
  /// A key that was not given out before and that no document has.
  std::string fresh_gid(const DocumentKind& kind);
  /// Keeps this tree as the body of the document, one revision on. Number, status and lock are what
  /// the tree says.
  void keep(const DocumentKind& kind, Document& document, const SoapNode& tree);
  /// Keeps who has the lock, "" for nobody; that is no change of the document.
  void lock(const DocumentKind& kind, Document& document, std::string_view user);
  /// Makes the body before the last change the present one again, but for the lock, which stays;
  /// without one nothing changes.
  void revert(const DocumentKind& kind, Document& document);
  /// The document as it was at each revision that is still known, the latest first: the present one
  /// and the few before it. Nothing for a kind that keeps no revisions.
  std::vector<Document> revisions(const Document& document);

  bool has_line(std::string_view gid, std::string_view line);
  /// The document of this kind that has the line.
  std::optional<std::string> owner_of_line(const DocumentKind& kind, std::string_view line);

  /// A comment as XML: the one of this type, or else the one that names no type.
  std::optional<std::string> comment(std::string_view gid, std::string_view line,
                                     std::string_view type);
  void keep_comment(std::string_view gid, std::string_view line, std::string_view type,
                    std::string_view body);
  /// The comments that the submittals of documents of this kind have on a line.
  std::vector<std::string> submittal_comments(const DocumentKind& parent_kind,
                                              std::string_view line);

  std::optional<Product> product(std::string_view catalog_number);
  std::vector<Product> products();
  std::vector<std::string> customer_gids();
  std::optional<std::string> customer_name(std::string_view gid);
  std::optional<std::string> manufacturer_name(std::string_view gid);
  /// The key of a manufacturer; "" for a name that no product has.
  std::string manufacturer_gid(std::string_view name);

 private:
  void write(const DocumentKind& kind, Document& document, const SoapNode& tree);
  void write_revision(const Document& document);
  void write_lines(const Document& document, const std::vector<SoapNode>& lines);
  std::optional<std::string> one_text(std::string_view sql, std::string_view key);

  Database& database_;
};

}  // namespace bvconn::sandbox
