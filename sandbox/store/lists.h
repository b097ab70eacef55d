#pragma once

#include <string_view>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// The lists that searches look into: brands, agents, promotions and so on. A row is a flat tree
/// of texts. To be used within a transaction.
class Lists {
 public:
  explicit Lists(Database& database) : database_(database) {}

  /// In the order in which they were added.
  std::vector<SoapNode> rows(std::string_view list);
  void add(std::string_view list, const SoapNode& row);

 private:
  Database& database_;
};

/// Fills a new database; to be called last, since it adds customers and products of its own to
/// those that documents are made of.
void fill_lists(Database& database);

}  // namespace bvconn::sandbox
