#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/admin/admin.h"
#include "sandbox/endpoints/endpoints.h"

namespace bvconn::sandbox {
namespace {

constexpr std::array kResources{
    AdminResource{"/admin/disabled", "GET", get_disabled},
    AdminResource{"/admin/disabled", "POST", set_disabled},
    AdminResource{"/admin/stubs", "GET", get_stubs},
    AdminResource{"/admin/stubs", "POST", add_stubs},
    AdminResource{"/admin/stubs", "DELETE", clear_stubs},
    AdminResource{"/admin/stubs/", "DELETE", remove_stub},
    AdminResource{"/admin/faults", "GET", list_faults},
    AdminResource{"/admin/faults", "POST", add_faults},
    AdminResource{"/admin/faults", "DELETE", clear_faults},
    AdminResource{"/admin/faults/kinds", "GET", list_fault_kinds},
    AdminResource{"/admin/faults/", "DELETE", remove_fault},
    AdminResource{"/admin/journal", "GET", get_journal},
    AdminResource{"/admin/journal", "DELETE", clear_journal},
    AdminResource{"/admin/journal/events", "GET", follow_journal},
    AdminResource{"/admin/journal/", "GET", get_journal_entry},
    AdminResource{"/admin/verify", "POST", post_verify},
    AdminResource{"/admin/documents", "GET", list_documents},
    AdminResource{"/admin/documents/", "GET", get_document},
    AdminResource{"/admin/operations", "GET", get_operations},
    AdminResource{"/admin/calls", "POST", post_call},
    AdminResource{"/admin/reset", "POST", reset_store},
    AdminResource{"/admin/snapshots", "GET", get_snapshots},
    AdminResource{"/admin/snapshots/", "POST", take_snapshot},
    AdminResource{"/admin/snapshots/", "DELETE", remove_snapshot},
    AdminResource{"/admin/restore/", "POST", restore_snapshot},
};

/// What of the path lies below the resource's; nothing where it is another's path.
std::optional<std::string_view> below(const AdminResource& resource, std::string_view path) {
  if (path == resource.path) return std::string_view();
  if (!resource.path.ends_with('/') || !path.starts_with(resource.path)) return std::nullopt;
  return path.substr(resource.path.size());
}

/// The byte that two hexadecimal digits at `at` stand for.
std::optional<char> byte_at(std::string_view text, std::size_t at) {
  unsigned value = 0;
  if (at + 2 > text.size()) return std::nullopt;
  const char* const end = text.data() + at + 2;
  if (std::from_chars(text.data() + at, end, value, 16).ptr != end) return std::nullopt;
  return static_cast<char>(static_cast<unsigned char>(value));
}

std::string decoded(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = text[at] == '%' ? byte_at(text, at + 1) : std::nullopt;
    if (byte) {
      plain.push_back(*byte);
      at += 2;
    } else {
      plain.push_back(text[at] == '+' ? ' ' : text[at]);
    }
  }
  return plain;
}

std::vector<std::pair<std::string, std::string>> fields_of(std::string_view target) {
  std::vector<std::pair<std::string, std::string>> fields;
  const auto mark = target.find('?');
  std::string_view rest = mark == std::string_view::npos ? "" : target.substr(mark + 1);
  while (!rest.empty()) {
    const std::string_view field = rest.substr(0, rest.find('&'));
    rest.remove_prefix(std::min(field.size() + 1, rest.size()));
    const auto equals = field.find('=');
    const std::string_view value =
        equals == std::string_view::npos ? std::string_view() : field.substr(equals + 1);
    if (!field.empty()) fields.emplace_back(decoded(field.substr(0, equals)), decoded(value));
  }
  return fields;
}

std::string paths_text() {
  std::string text;
  std::string_view last;
  for (const AdminResource& each : kResources) {
    if (each.path != last) text.append(text.empty() ? "" : ", ").append(each.path);
    last = each.path;
  }
  return text;
}

/// Takes as long for a word that is nearly right as for any other.
bool is_token(std::string_view given, std::string_view token) {
  unsigned difference = given.size() == token.size() ? 0U : 1U;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const char expected = token[i % token.size()];
    difference |= static_cast<unsigned char>(given[i]) ^ static_cast<unsigned char>(expected);
  }
  return difference == 0;
}

bool may_administer(const ServedSandbox& sandbox, const Request& request) {
  if (sandbox.admin_token.empty()) return true;
  constexpr std::string_view kScheme = "Bearer ";
  const std::string given = request.header("Authorization").value_or("");
  return conversions::equal_ignoring_case(std::string_view(given).substr(0, kScheme.size()),
                                          kScheme) &&
         is_token(std::string_view(given).substr(kScheme.size()), sandbox.admin_token);
}

Reply unauthorized() {
  Reply reply = text_reply(401,
                           "This sandbox is administered with its token alone: the header "
                           "Authorization has to be 'Bearer' and what its --admin-token-file "
                           "holds.\n");
  reply.headers.push_back({.name = "WWW-Authenticate", .value = "Bearer realm=\"bvsandbox\""});
  return reply;
}

/// The methods of all resources that have this path; "" where there is none.
std::string methods_of(std::string_view path) {
  std::string methods;
  for (const AdminResource& each : kResources) {
    if (below(each, path)) methods.append(methods.empty() ? "" : ", ").append(each.method);
  }
  return methods;
}

}  // namespace

void expect_query(const AdminCall& call, const std::vector<std::string>& known) {
  for (const auto& [name, value] : call.query) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    throw AdminRefusal{400, "There is no field '" + name + "' here" + did_you_mean(name, known)};
  }
}

Reply answer_admin(ServedSandbox& sandbox, const Request& request) {
  if (!may_administer(sandbox, request)) return unauthorized();
  const std::string_view path = request.path();
  const auto* const found =
      std::find_if(kResources.begin(), kResources.end(), [&](const AdminResource& each) {
        return each.method == request.method && below(each, path);
      });
  if (found == kResources.end()) {
    if (const std::string methods = methods_of(path); !methods.empty()) {
      return method_not_allowed(request, methods);
    }
    return text_reply(404, "There is nothing to administer here but " + paths_text() + ".\n");
  }
  try {
    AdminCall call{.sandbox = sandbox,
                   .request = request,
                   .below = decoded(*below(*found, path)),
                   .fields = fields_of(request.target)};
    for (const auto& [name, value] : call.fields) call.query.insert_or_assign(name, value);
    return found->answer(call);
  } catch (const AdminRefusal& refusal) {
    return text_reply(refusal.status, refusal.text + "\n");
  }
}

}  // namespace bvconn::sandbox
