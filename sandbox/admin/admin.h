#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/endpoints/served_sandbox.h"
#include "sandbox/http/message.h"
#include "sandbox/journal/journal_filter.h"

namespace bvconn::sandbox {

/// A request for the sandbox itself.
struct AdminCall {
  ServedSandbox& sandbox;
  const Request& request;
  /// What the path has below the resource's own: "17" of /admin/journal/17, "" of /admin/journal.
  std::string below{};
  /// The fields behind the path's "?", decoded; of two with one name the later one counts.
  std::map<std::string, std::string, std::less<>> query{};
  /// All of them, in their order, for those that may be given several times.
  std::vector<std::pair<std::string, std::string>> fields{};
};

/// Thrown where an administrative request cannot be done as it stands; becomes a text of one line.
struct AdminRefusal {
  int status = 400;
  std::string text;
};

/// One method of one path. A path that ends with "/" takes all that lies below it.
struct AdminResource {
  std::string_view path;
  std::string_view method;
  Reply (*answer)(AdminCall& call);
};

/// Refuses fields of the query that are none of these.
void expect_query(const AdminCall& call, const std::vector<std::string>& known);

/// The journal; refuses where there is none.
std::shared_ptr<Journal> journal_of(const AdminCall& call);
/// Which exchanges the query asks for, by any number of arguments.
JournalFilter filter_of(const AdminCall& call);

// The resources, each family in a source of its own.
Reply get_disabled(AdminCall& call);
Reply set_disabled(AdminCall& call);
Reply get_stubs(AdminCall& call);
Reply add_stubs(AdminCall& call);
Reply clear_stubs(AdminCall& call);
Reply remove_stub(AdminCall& call);
Reply list_faults(AdminCall& call);
Reply add_faults(AdminCall& call);
Reply list_fault_kinds(AdminCall& call);
Reply clear_faults(AdminCall& call);
Reply remove_fault(AdminCall& call);
Reply get_journal(AdminCall& call);
Reply get_journal_entry(AdminCall& call);
Reply clear_journal(AdminCall& call);
Reply follow_journal(AdminCall& call);
Reply post_verify(AdminCall& call);
Reply list_documents(AdminCall& call);
Reply get_document(AdminCall& call);
Reply get_operations(AdminCall& call);
Reply post_call(AdminCall& call);
Reply reset_store(AdminCall& call);
Reply get_snapshots(AdminCall& call);
Reply take_snapshot(AdminCall& call);
Reply remove_snapshot(AdminCall& call);
Reply restore_snapshot(AdminCall& call);

}  // namespace bvconn::sandbox
