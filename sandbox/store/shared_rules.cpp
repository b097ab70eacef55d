#include "sandbox/store/shared_rules.h"

#include <chrono>
#include <exception>

namespace bvconn::sandbox {
namespace {

constexpr std::chrono::milliseconds kLookEvery{100};

std::pair<std::int64_t, std::int64_t> version_and_last_number(Database& database,
                                                              const std::string& kind) {
  Statement select(database, "SELECT version, last_number FROM shared_rule_kinds WHERE kind = ?");
  if (!select.bind(kind).step()) throw DatabaseError("the table shared_rule_kinds lacks " + kind);
  return {select.integer(0), select.integer(1)};
}

SharedRules::Rules rules_of(Database& database, const std::string& kind) {
  Statement select(database,
                   "SELECT number, name, text, seen, hit FROM shared_rules WHERE kind = ?"
                   " ORDER BY number");
  select.bind(kind);
  SharedRules::Rules all;
  while (select.step()) {
    all.push_back({.number = select.integer(0),
                   .name = select.text(1),
                   .text = select.text(2),
                   .seen = select.integer(3),
                   .hit = select.integer(4)});
  }
  return all;
}

}  // namespace

SharedRules::Change::Change(Database& database, const std::string& kind)
    : database_(database),
      kind_(kind),
      present_(rules_of(database, kind)),
      last_number_(version_and_last_number(database, kind).second) {}

void SharedRules::Change::add(std::string_view name, std::string_view text) {
  Statement(database_, "INSERT INTO shared_rules VALUES (?, ?, ?, ?, 0, 0)")
      .bind(kind_)
      .bind(++last_number_)
      .bind(name)
      .bind(text)
      .run();
}

void SharedRules::Change::remove(std::int64_t number) {
  Statement(database_, "DELETE FROM shared_rules WHERE kind = ? AND number = ?")
      .bind(kind_)
      .bind(number)
      .run();
}

void SharedRules::Change::forget_answers() {
  database_.run("DELETE FROM kept_answers");
}

void SharedRules::Change::finish() {
  Statement(database_,
            "UPDATE shared_rule_kinds SET version = version + 1, last_number = ? WHERE kind = ?")
      .bind(last_number_)
      .bind(kind_)
      .run();
}

SharedRules::SharedRules(const std::string& where, std::string kind)
    : kind_(std::move(kind)), database_(where) {
  refresh();
  thread_ = std::thread([this] { watch(); });
}

SharedRules::~SharedRules() {
  {
    const std::lock_guard lock(mutex_);
    is_ending_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void SharedRules::change(const std::function<void(Change&)>& make) {
  const std::lock_guard lock(database_mutex_);
  {
    Transaction transaction(database_, Turn::kRules);
    Change change(database_, kind_);
    make(change);
    change.finish();
    transaction.commit();
  }
  refresh();
}

SharedRules::Rules SharedRules::all() const {
  const std::lock_guard lock(database_mutex_);
  return rules_of(database_, kind_);
}

SharedRules::Known SharedRules::known() const {
  const std::lock_guard lock(mutex_);
  return known_;
}

std::optional<std::size_t> SharedRules::count(const std::vector<std::int64_t>& numbers,
                                              const Count& look) const {
  const std::lock_guard lock(database_mutex_);
  Transaction transaction(database_, Turn::kRules);
  std::optional<std::size_t> found;
  for (std::size_t i = 0; i < numbers.size() && !found; ++i) {
    SharedRule rule{.number = numbers[i]};
    {
      Statement select(database_,
                       "SELECT seen, hit FROM shared_rules WHERE kind = ? AND number = ?");
      if (!select.bind(kind_).bind(rule.number).step()) continue;
      rule.seen = select.integer(0);
      rule.hit = select.integer(1);
    }
    if (look(i, rule)) found = i;
    Statement(database_, "UPDATE shared_rules SET seen = ?, hit = ? WHERE kind = ? AND number = ?")
        .bind(rule.seen)
        .bind(rule.hit)
        .bind(kind_)
        .bind(rule.number)
        .run();
  }
  transaction.commit();
  return found;
}

std::string SharedRules::exchange_answer(std::string_view route, std::string_view answer) const {
  const std::lock_guard lock(database_mutex_);
  Transaction transaction(database_, Turn::kRules);
  std::string before;
  {
    Statement select(database_, "SELECT answer FROM kept_answers WHERE route = ?");
    if (select.bind(route).step()) before = select.text(0);
  }
  Statement(database_,
            "INSERT INTO kept_answers VALUES (?, ?)"
            " ON CONFLICT (route) DO UPDATE SET answer = excluded.answer")
      .bind(route)
      .bind(answer)
      .run();
  transaction.commit();
  return before;
}

void SharedRules::refresh() {
  // The version first: what changes after it was read makes another one.
  const std::int64_t version = version_and_last_number(database_, kind_).first;
  if (version == version_) return;
  auto rules = std::make_shared<const Rules>(rules_of(database_, kind_));
  version_ = version;
  const std::lock_guard lock(mutex_);
  is_empty_ = rules->empty();
  known_ = std::move(rules);
}

void SharedRules::watch() {
  for (;;) {
    {
      std::unique_lock lock(mutex_);
      if (wake_.wait_for(lock, kLookEvery, [this] { return is_ending_; })) return;
    }
    try {
      const std::lock_guard lock(database_mutex_);
      refresh();
    } catch (const std::exception&) {
      // Whoever needs the database says that it is gone; until it is back, what is known holds.
    }
  }
}

}  // namespace bvconn::sandbox
