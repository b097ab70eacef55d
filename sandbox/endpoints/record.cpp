#include "sandbox/endpoints/record.h"

#include <utility>

namespace bvconn::sandbox {
namespace {

std::string lines_of(const std::vector<Header>& headers) {
  std::size_t size = 0;
  constexpr std::size_t kJoints = 3;
  for (const Header& each : headers) size += each.name.size() + each.value.size() + kJoints;
  std::string lines;
  lines.reserve(size);
  for (const Header& each : headers) {
    lines.append(each.name).append(": ").append(each.value).push_back('\n');
  }
  return lines;
}

/// The same argument may have one name in several operations, or several names.
void note_arguments(const OperationForm& form, JournalEntry& entry) {
  const auto note = [&](const std::string& name, std::size_t place) {
    if (!name.empty() && entry.argument(name) == nullptr) entry.arguments.push_back({name, place});
  };
  for (std::size_t i = 0; i < form.places.size(); ++i) note(form.places[i].argument, i);
  note(form.session_argument, JournalEntry::kSession);
}

void note_values(const Exchange& exchange, JournalEntry& entry) {
  // A document is written out anew, so only one that would be kept whole.
  const bool with_documents = !entry.request.cut();
  entry.values.reserve(exchange.values.size());
  for (const PlaceValue& each : exchange.values) {
    const bool is_kept = with_documents || !each.is_document();
    entry.values.push_back(is_kept ? each.text() : std::string());
    if (entry.values.back().size() > kKeptTextMax) entry.values.back().resize(kKeptTextMax);
  }
}

/// What is asked, but for the outcome.
void note_request(const Request& request, const Asked& asked, JournalEntry& entry) {
  const Exchange& exchange = asked.exchange;
  entry.route = exchange.route;
  entry.service = exchange.service.substr(0, kKeptTextMax);
  entry.method = exchange.method.substr(0, kKeptTextMax);
  entry.session = exchange.session.substr(0, kKeptTextMax);
  entry.has_envelope = asked.soap.has_value();
  entry.request.assign(request.body);
  note_values(exchange, entry);
  for (const OperationForm* form : exchange.forms) {
    if (entry.operations.empty() || entry.operations.back() != form->name) {
      entry.operations.push_back(form->name);
    }
    note_arguments(*form, entry);
  }
  entry.http_method = request.method;
  entry.target = request.target;
  entry.request_headers = lines_of(request.headers);
}

}  // namespace

void Record::begin(const Request& request, const Asked& asked) noexcept {
  if (journal_ == nullptr) return;
  try {
    note_request(request, asked, entry_);
  } catch (...) {
    // There is no memory for it.
    journal_ = nullptr;
  }
}

void Record::end(const Asked& asked, const Reply& reply) noexcept {
  if (journal_ == nullptr) return;
  try {
    entry_.at = at_;
    entry_.micros = std::chrono::duration_cast<std::chrono::microseconds>(
                        std::chrono::steady_clock::now() - began_)
                        .count();
    entry_.differences = asked.exchange.differences;
    entry_.outcome = asked.exchange.outcome;
    entry_.answered_by = asked.exchange.answered_by;
    entry_.remark = reply.remark;
    entry_.status = reply.status;
    entry_.reply_headers = lines_of(reply.headers);
    entry_.reply.assign(reply.body);
    journal_->add(std::move(entry_));
  } catch (...) {
    // There is no memory for it.
  }
}

}  // namespace bvconn::sandbox
