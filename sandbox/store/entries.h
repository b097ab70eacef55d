#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

struct Entry {
  std::string uid;
  std::string body;  ///< a tree as XML, or a plain text, as its kind has it
};

/// What is kept as it is, in an order among its like: texts, defaults, profiles, printouts, lists.
/// An owner is a user or an agent, or "" for what is everybody's. To be used within a transaction.
class Entries {
 public:
  explicit Entries(Database& database) : database_(database) {}

  std::optional<std::string> find(std::string_view kind, std::string_view owner,
                                  std::string_view uid);
  std::vector<Entry> all(std::string_view kind, std::string_view owner);
  /// One that is new comes last, another one keeps its place.
  void keep(std::string_view kind, std::string_view owner, std::string_view uid,
            std::string_view body);
  /// False when there was none.
  bool remove(std::string_view kind, std::string_view owner, std::string_view uid);
  /// Puts these first, in this order; the others follow as they were.
  void order(std::string_view kind, std::string_view owner, const std::vector<std::string>& uids);

 private:
  Database& database_;
};

/// Fills a new database with the lists of the house: texts, logos, printing, countries.
void fill_entries(Database& database);

}  // namespace bvconn::sandbox
