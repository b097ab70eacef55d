#include "sandbox/store/entries.h"

#include <cstdint>

namespace bvconn::sandbox {

std::optional<std::string> Entries::find(std::string_view kind, std::string_view owner,
                                         std::string_view uid) {
  Statement select(database_, "SELECT body FROM entries WHERE kind = ? AND owner = ? AND uid = ?");
  if (!select.bind(kind).bind(owner).bind(uid).step()) return std::nullopt;
  return select.text(0);
}

std::vector<Entry> Entries::all(std::string_view kind, std::string_view owner) {
  Statement select(database_,
                   "SELECT uid, body FROM entries WHERE kind = ? AND owner = ?"
                   " ORDER BY position, uid");
  select.bind(kind).bind(owner);
  std::vector<Entry> found;
  while (select.step()) found.push_back({.uid = select.text(0), .body = select.text(1)});
  return found;
}

void Entries::keep(std::string_view kind, std::string_view owner, std::string_view uid,
                   std::string_view body) {
  Statement(database_,
            "INSERT INTO entries VALUES (?1, ?2, ?3, (SELECT coalesce(max(position) + 1, 0)"
            " FROM entries WHERE kind = ?1 AND owner = ?2), ?4)"
            " ON CONFLICT (kind, owner, uid) DO UPDATE SET body = excluded.body")
      .bind(kind)
      .bind(owner)
      .bind(uid)
      .bind(body)
      .run();
}

bool Entries::remove(std::string_view kind, std::string_view owner, std::string_view uid) {
  if (!find(kind, owner, uid)) return false;
  Statement(database_, "DELETE FROM entries WHERE kind = ? AND owner = ? AND uid = ?")
      .bind(kind)
      .bind(owner)
      .bind(uid)
      .run();
  return true;
}

void Entries::order(std::string_view kind, std::string_view owner,
                    const std::vector<std::string>& uids) {
  Statement(database_, "UPDATE entries SET position = position + ?3 WHERE kind = ?1 AND owner = ?2")
      .bind(kind)
      .bind(owner)
      .bind(static_cast<std::int64_t>(uids.size()))
      .run();
  Statement place(database_,
                  "UPDATE entries SET position = ? WHERE kind = ? AND owner = ? AND uid = ?");
  std::int64_t position = 0;
  for (const std::string& uid : uids) {
    place.bind(position++).bind(kind).bind(owner).bind(uid).run();
  }
}

}  // namespace bvconn::sandbox
