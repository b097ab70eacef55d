#include "sandbox/store/database.h"

namespace bvconn::sandbox {

Statement& Statement::bind(std::string_view text) {
  cursor_->bind(++bound_, text);
  return *this;
}

Statement& Statement::bind(std::int64_t number) {
  cursor_->bind(++bound_, number);
  return *this;
}

void Statement::run() {
  while (step()) {
  }
  cursor_->reset();
  bound_ = 0;
}

Transaction::Transaction(Database& database, Turn turn) : database_(database) {
  database_.connection().begin(turn);
}

Transaction::~Transaction() {
  if (open_) database_.connection().rollback();
}

void Transaction::commit() {
  database_.connection().commit();
  open_ = false;
}

}  // namespace bvconn::sandbox
