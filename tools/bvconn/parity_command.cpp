#include "parity_command.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "answer_paths.h"
#include "arguments.h"
#include "bvconn/observation/conduct.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "call_command.h"
#include "connection_scope.h"
#include "dal_login.h"
#include "status.h"
#include "target.h"
#include "text_mask.h"

namespace bvconn::tool {
namespace {

using automation::ObservedConduct;
using automation::Value;

/// The session's handle, by name.
class Session {
 public:
  void set(std::string_view property, Value value) {
    info_.find(property)->set(object_.get(), value);
  }
  Value call(std::string_view operation, const std::vector<Value>& values) {
    return info_.find(operation)->invoke(object_.get(), values);
  }

 private:
  const automation::ClassInfo& info_ = find_class("BVConnectorObject");
  std::shared_ptr<void> object_ = info_.make();
};

/// What one route gave.
struct RouteAnswer {
  std::vector<AnswerLine> lines;
  std::optional<Error> error;
};

RouteAnswer ask(const Target& target, const ParityOptions& options) {
  RouteAnswer answer;
  // Anew for each route: an operation may change the nodes that it is given.
  const CallArguments arguments =
      read_arguments(*target.member, options.arguments, options.connection);
  try {
    const auto object = target.info->make();
    answer.lines = answer_lines(target.member->invoke(object.get(), arguments.values));
  } catch (const Error& error) {
    answer.error = error;
  }
  return answer;
}

/// What one route gave for a field, without passwords and the session's identifier.
std::string masked(const TextMask& mask, const std::string& path, std::string text) {
  const bool hidden = names_password(path.substr(path.rfind('/') + 1)) && text != "(absent)";
  return hidden ? std::string(kMasked) : mask.hide(std::move(text));
}

std::vector<AnswerDifference> compare(const RouteAnswer& soap, const RouteAnswer& dal) {
  const auto text = [](const RouteAnswer& answer) {
    return answer.error
               ? "error " + hex_number(answer.error->number) + " " + answer.error->description
               : "an answer";
  };
  if (!soap.error && !dal.error) return differences(soap.lines, dal.lines);
  return {{"(outcome)", text(soap), text(dal)}};
}

void print(const std::vector<AnswerDifference>& rows, const TextMask& mask, std::ostream& out) {
  std::vector<AnswerDifference> shown{{"", "SOAP", "DAL"}};
  for (const AnswerDifference& row : rows) {
    shown.push_back(
        {row.path, masked(mask, row.path, row.first), masked(mask, row.path, row.second)});
  }
  std::size_t path_width = 0;
  std::size_t first_width = 0;
  for (const AnswerDifference& row : shown) {
    path_width = std::max(path_width, row.path.size());
    first_width = std::max(first_width, row.first.size());
  }
  for (const AnswerDifference& row : shown) {
    out << row.path << std::string(path_width - row.path.size() + 2, ' ') << row.first
        << std::string(first_width - row.first.size() + 2, ' ') << row.second << '\n';
  }
}

/// What was given for an argument that holds a password or the session's identifier.
TextMask mask_for(const Target& target, const ParityOptions& options) {
  TextMask mask;
  const CallArguments given = read_arguments(*target.member, options.arguments, options.connection);
  for (std::size_t i = 0; i < given.values.size(); ++i) {
    const std::string& name = target.member->arguments[i].name;
    const auto* value = std::get_if<Variant>(&given.values[i]);
    const bool secret = name == "aSessionID" || names_password(name);
    if (secret && value != nullptr && value->is(Variant::Type::kString)) {
      mask.add(value->string());
    }
  }
  return mask;
}

/// Both routes can be compared, and asking twice does no harm that was not asked for.
void require_comparable(const ObservedConduct& conduct, const ParityOptions& options) {
  if (!conduct.dal) throw UsageError("the data access layer does not serve this operation");
  if (!conduct.soap) throw UsageError("the data access layer alone serves this operation");
  if (conduct.condition->needs_save && !options.twice) {
    throw UsageError("it saves, and would do so once on each route; --twice allows it");
  }
}

bool is_disabled(Session& session, const ObservedConduct& conduct) {
  const auto& entries = conduct.condition->disabled_by;
  return std::any_of(entries.begin(), entries.end(), [&](const std::string& entry) {
    const std::size_t dot = entry.rfind('.');
    const Value disabled = session.call(
        "IsDALDisabled", {Variant(entry.substr(dot + 1)), Variant(entry.substr(0, dot))});
    return std::get<Variant>(disabled).boolean();
  });
}

int compare_routes(ParityOptions options, std::ostream& out, std::ostream& err) {
  if (options.connection.dal.empty()) {
    throw UsageError("where the data access layer is has to be given, by --dal or BVCONN_DAL_URL");
  }
  const Target target = find_target(options.path);
  const ObservedConduct conduct = automation::observe_conduct(*target.info, *target.member);
  require_comparable(conduct, options);
  options.arguments = with_files_read(std::move(options.arguments));
  TextMask mask = mask_for(target, options);
  const std::string password = options.connection.password();
  mask.add(password);
  const ConnectionScope scope(options.connection);

  Session session;
  const RouteAnswer by_soap = ask(target, options);
  if (const auto failure = log_in_to_dal(options.connection, password)) {
    err << "bvconn: " << login_failure_text(*failure) << '\n'
        << "bvconn: hint: " << login_advice(*failure) << '\n';
    return kFailed;
  }
  const bool disabled = is_disabled(session, conduct);
  session.set("AllowDisabledDALMethods", Variant(true));
  const RouteAnswer by_dal = ask(target, options);

  const bool failed = by_soap.error || by_dal.error;
  const auto found = compare(by_soap, by_dal);
  if (!found.empty()) print(found, mask, out);
  if (failed) {
    out << "No verdict: both routes have to give an answer.\n";
  } else {
    out << target.path()
        << (found.empty() ? ": equal; this method can go by the DAL"
                          : ": different; this method cannot go by the DAL as it is")
        << (disabled ? "; it is disabled there at present" : "") << ".\n";
  }
  out.flush();
  return out && !failed && found.empty() ? kDone : kFailed;
}

}  // namespace

int run_parity(const ParityOptions& options, std::ostream& out, std::ostream& err) {
  try {
    return compare_routes(options, out, err);
  } catch (const UsageError& error) {
    err << "bvconn: " << options.path << ": " << error.what() << '\n';
    return kNotUnderstood;
  } catch (const Error& error) {
    err << "bvconn: the data access layer cannot be set up: error " << hex_number(error.number)
        << " from " << error.source << ": " << error.description << '\n';
    return kFailed;
  }
}

}  // namespace bvconn::tool
