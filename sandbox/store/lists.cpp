#include "sandbox/store/lists.h"

#include "bvconn/platform/soap/xml_document.h"

namespace bvconn::sandbox {

std::vector<SoapNode> Lists::rows(std::string_view list) {
  Statement select(database_, "SELECT body FROM list_rows WHERE list = ? ORDER BY position");
  select.bind(list);
  std::vector<SoapNode> found;
  while (select.step()) found.push_back(node_from_xml(select.text(0)));
  return found;
}

void Lists::add(std::string_view list, const SoapNode& row) {
  Statement(database_,
            "INSERT INTO list_rows VALUES (?1, (SELECT coalesce(max(position) + 1, 0)"
            " FROM list_rows WHERE list = ?1), ?2)")
      .bind(list)
      .bind(node_to_xml(row))
      .run();
}

}  // namespace bvconn::sandbox
