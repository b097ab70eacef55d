#include "sandbox/store/postgresql/link.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <exception>
#include <utility>

#include "sandbox/store/connection.h"
#include "sandbox/store/dialect.h"
#include "sandbox/store/postgresql/address.h"

namespace bvconn::sandbox {
namespace {

constexpr Oid kTextType = 25;
constexpr Oid kNumberType = 20;
/// The server itself ends a statement after 20 seconds; this is for a server that says nothing.
constexpr std::int64_t kPatienceMs = 25'000;
/// What a program asks is a fixed set of statements; should it ever grow, they are prepared anew.
constexpr std::size_t kMostPrepared = 500;
// A process that stands still in the middle of a transaction loses it, so that the others go on.
constexpr const char* kSetUp =
    "SET search_path TO bvsandbox; SET statement_timeout TO 20000; SET lock_timeout TO 5000;"
    " SET idle_in_transaction_session_timeout TO 10000; SET default_transaction_isolation TO"
    " 'read committed'; SET standard_conforming_strings TO on";

/// Writers hold a lock whose key is "BVsandbx" for the store and a number near it for the rest.
const char* begin_of(Turn turn) {
  switch (turn) {
    case Turn::kJournal:
      return "BEGIN; SET LOCAL synchronous_commit TO off;"
             " SELECT pg_advisory_xact_lock(4780134916801454713)";
    case Turn::kRules:
      return "BEGIN; SET LOCAL synchronous_commit TO off;"
             " SELECT pg_advisory_xact_lock(4780134916801454714)";
    case Turn::kNone:
      return "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";
    case Turn::kStore:
      break;
  }
  return "BEGIN; SELECT pg_advisory_xact_lock(4780134916801454712)";
}

std::string_view state_of(const PGresult* result) {
  const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  return state ? state : "";
}

bool has_failed(const PGresult* result) {
  const ExecStatusType status = PQresultStatus(result);
  return status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK && status != PGRES_EMPTY_QUERY;
}

/// Whether the server has ended the connection with this error, or is about to.
bool ends_connection(std::string_view state) {
  constexpr std::array<std::string_view, 5> kStates{"57P01", "57P02", "57P03", "57P05", "25P03"};
  return state.starts_with("08") ||
         std::find(kStates.begin(), kStates.end(), state) != kStates.end();
}

}  // namespace

void PostgresqlLink::take_notice(void* link, const PGresult* notice) {
  if (ends_connection(state_of(notice))) static_cast<PostgresqlLink*>(link)->ended_ = true;
}

void PostgresqlParameters::set(int parameter, std::string value, Oid type) {
  const auto count = static_cast<std::size_t>(parameter);
  if (values_.size() < count) values_.resize(count);
  if (types_.size() < count) types_.resize(count, kTextType);
  values_[count - 1] = std::move(value);
  types_[count - 1] = type;
}

void PostgresqlParameters::set_text(int parameter, std::string_view text) {
  set(parameter, std::string(text), kTextType);
}

void PostgresqlParameters::set_number(int parameter, std::int64_t number) {
  set(parameter, std::to_string(number), kNumberType);
}

std::string PostgresqlParameters::type_letters() const {
  std::string letters;
  for (const Oid type : types_) letters.push_back(type == kNumberType ? 'n' : 't');
  return letters;
}

PostgresqlLink::PostgresqlLink(std::string address)
    : address_(std::move(address)), name_(without_secrets(address_)) {
  connect();
}

void PostgresqlLink::close() {
  PQfinish(handle_);
  handle_ = nullptr;
  ended_ = false;
  prepared_.clear();
}

void PostgresqlLink::connect() {
  // What stands before the address is what the address may say otherwise.
  constexpr std::array<const char*, 7> kNames{"connect_timeout",
                                              "tcp_user_timeout",
                                              "fallback_application_name",
                                              "dbname",
                                              "client_encoding",
                                              nullptr,
                                              nullptr};
  const std::array<const char*, 7> values{"5",    "15000", "bvsandbox", address_.c_str(),
                                          "UTF8", nullptr, nullptr};
  handle_ = PQconnectdbParams(kNames.data(), values.data(), /*expand_dbname=*/1);
  if (PQstatus(handle_) != CONNECTION_OK) {
    const std::string why = in_one_line(handle_ ? PQerrorMessage(handle_) : "out of memory");
    close();
    throw DatabaseError("the database " + name_ + " cannot be reached (" + why + ")");
  }
  PQsetNoticeReceiver(handle_, take_notice, this);
  PQsetnonblocking(handle_, 1);
  set_up();
}

void PostgresqlLink::set_up() {
  const char* encoding = PQparameterStatus(handle_, "server_encoding");
  if (!encoding || std::string_view(encoding) != "UTF8") {
    const std::string has = encoding ? encoding : "none that it names";
    close();
    throw DatabaseError("the database " + name_ + " has the encoding " + has +
                        ", and the sandbox needs UTF8");
  }
  PQsendQuery(handle_, kSetUp);
  finish(kSetUp);
}

void PostgresqlLink::mend() {
  if (handle_) {
    // A server that has gone has said so, or has closed its end.
    while (!ended_ && wait(0, /*to_write=*/false)) {
      if (PQconsumeInput(handle_) == 0) ended_ = true;
      // Reads what has come, of which only a notice is expected.
      PQisBusy(handle_);
    }
    if (!ended_ && PQstatus(handle_) == CONNECTION_OK) return;
    close();
  }
  connect();
}

bool PostgresqlLink::wait(std::int64_t milliseconds, bool to_write) {
  pollfd waiting{.fd = PQsocket(handle_), .events = POLLIN, .revents = 0};
  if (to_write) waiting.events = POLLIN | POLLOUT;
  return ::poll(&waiting, 1, static_cast<int>(milliseconds)) != 0;
}

PostgresqlResult PostgresqlLink::finish(std::string_view sql) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
  PostgresqlResult last;
  for (;;) {
    int unsent = PQflush(handle_);
    while (unsent == 1 || PQisBusy(handle_) == 1) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          end - std::chrono::steady_clock::now());
      if (left.count() <= 0 || !wait(left.count(), unsent == 1)) lose("it does not answer");
      if (PQconsumeInput(handle_) == 0) lose(PQerrorMessage(handle_));
      unsent = PQflush(handle_);
    }
    if (unsent < 0) lose(PQerrorMessage(handle_));
    PostgresqlResult next(PQgetResult(handle_));
    if (!next) break;
    // Of several statements the first that fails ends the others.
    if (!last || !has_failed(last.get())) last = std::move(next);
  }
  if (!last || has_failed(last.get())) fail(sql, last.get());
  return last;
}

void PostgresqlLink::fail(std::string_view sql, const PGresult* result) {
  const std::string_view state = state_of(result);
  const char* primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  const std::string why = primary ? primary : PQerrorMessage(handle_);
  if (PQstatus(handle_) != CONNECTION_OK || ends_connection(state)) lose(why);
  constexpr std::string_view kLockTimeout = "55P03";
  if (state == kLockTimeout) {
    throw DatabaseBusy("another process has held the database " + name_ +
                       " for longer than 5 seconds; nothing of this request is kept");
  }
  throw DatabaseError(std::string(sql) + ": " + in_one_line(why));
}

void PostgresqlLink::lose(std::string_view why) {
  const std::string text = in_one_line(why);
  close();
  throw DatabaseError("the database " + name_ + " is lost (" + text + "): " +
                      (phase_ == Phase::kCommitting
                           ? "whether it has kept what this request changed is not known"
                           : "nothing of this request is kept") +
                      ", and the next request connects anew");
}

const std::string& PostgresqlLink::prepare(std::string_view sql,
                                           const PostgresqlParameters& parameters) {
  const std::string letters = parameters.type_letters();
  std::string key = letters + ' ' + std::string(sql);
  const auto known = prepared_.find(key);
  if (known != prepared_.end()) return known->second;
  if (prepared_.size() >= kMostPrepared) {
    run("DEALLOCATE ALL");
    prepared_.clear();
  }
  std::string name = "s" + std::to_string(prepared_.size());
  const std::string translated = with_numbered_parameters(sql, letters);
  const auto& types = parameters.types_;
  const int count = static_cast<int>(types.size());
  if (PQsendPrepare(handle_, name.c_str(), translated.c_str(), count, types.data()) == 0) {
    lose(PQerrorMessage(handle_));
  }
  finish(sql);
  return prepared_.emplace(std::move(key), std::move(name)).first->second;
}

PostgresqlResult PostgresqlLink::run(const char* sql) {
  if (phase_ == Phase::kNone) mend();
  if (!handle_) lose("the connection has ended before");
  if (PQsendQuery(handle_, sql) == 0) lose(PQerrorMessage(handle_));
  return finish(sql);
}

PostgresqlResult PostgresqlLink::run(std::string_view sql, const PostgresqlParameters& parameters) {
  if (phase_ == Phase::kNone) mend();
  if (!handle_) lose("the connection has ended before");
  std::vector<const char*> values;
  std::vector<int> lengths;
  std::vector<int> formats;
  for (std::size_t i = 0; i < parameters.values_.size(); ++i) {
    values.push_back(parameters.values_[i].c_str());
    lengths.push_back(static_cast<int>(parameters.values_[i].size()));
    // As bytes of their number: a text that has a NUL in it is refused rather than cut.
    formats.push_back(parameters.types_[i] == kTextType ? 1 : 0);
  }
  const int count = static_cast<int>(values.size());
  const std::string& name = prepare(sql, parameters);
  const int sent = PQsendQueryPrepared(handle_, name.c_str(), count, values.data(), lengths.data(),
                                       formats.data(), 0);
  if (sent == 0) lose(PQerrorMessage(handle_));
  return finish(sql);
}

void PostgresqlLink::begin(Turn turn) {
  try {
    run(begin_of(turn));
  } catch (const DatabaseError&) {
    // It has begun before it failed to get the lock.
    rollback();
    throw;
  }
  phase_ = Phase::kOpen;
}

void PostgresqlLink::commit() {
  if (handle_) phase_ = Phase::kCommitting;
  const PostgresqlResult result = run("COMMIT");
  phase_ = Phase::kNone;
  // A transaction in which a statement has failed is rolled back by this too, and without an error.
  if (std::string_view(PQcmdStatus(result.get())) != "COMMIT") {
    throw DatabaseError("the database " + name_ + " has refused a part of this request before; " +
                        "nothing of it is kept");
  }
}

void PostgresqlLink::rollback() noexcept {
  phase_ = Phase::kOpen;
  try {
    if (handle_) run("ROLLBACK");
  } catch (const std::exception&) {
    // What cannot be rolled back ends with its connection.
    close();
  }
  phase_ = Phase::kNone;
}

}  // namespace bvconn::sandbox
