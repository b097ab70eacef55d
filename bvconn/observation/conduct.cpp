#include "bvconn/observation/conduct.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "bvconn/observation/marks.h"
#include "bvconn/observation/trial.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error.h"

namespace bvconn::automation {
namespace {

using detail::MarkedCall;
using detail::MarkForm;
using detail::Switches;
using detail::Trial;

// The server numbers its faults from here on; an operation knows a few of them at most.
constexpr std::int32_t kFirstCode = 10'000;
constexpr std::int32_t kLastCode = 10'199;
constexpr std::int32_t kUnknownCode = 19'999;

constexpr std::int32_t kBrokenNumber = 4711;
constexpr std::string_view kServerText = "because";

std::string fault(std::int32_t code) {
  return "<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body><Fault>"
         "<faultcode xmlns=''>" +
         std::to_string(code) + "</faultcode><faultstring xmlns=''>" + std::string(kServerText) +
         "</faultstring></Fault></Body></Envelope>";
}

/// An error with all five values.
Error broken() {
  Error error(kBrokenNumber, "observed", std::string(kServerText));
  error.helpFile = "observed.hlp";
  error.helpContext = 1;
  return error;
}

/// The lines that every request writes, whatever the operation, are those of the module that sends
/// and of its settings.
bool is_own(const Sightings::LogLine& line) {
  return line.cls != "Global" && line.cls != "clsSessionInfo";
}

std::vector<Sightings::LogLine> own_lines(const Sightings& seen) {
  std::vector<Sightings::LogLine> lines;
  std::copy_if(seen.log.begin(), seen.log.end(), std::back_inserter(lines), is_own);
  return lines;
}

std::vector<Sightings::LogLine> own_errors(const Sightings& seen) {
  std::vector<Sightings::LogLine> lines = own_lines(seen);
  std::erase_if(lines, [](const Sightings::LogLine& line) { return line.action != "LogError"; });
  return lines;
}

std::string catalogue_text(const Member& row) {
  return row.constant ? to_text(*row.constant) : "";
}

class ConductObserver {
 public:
  ConductObserver(const ClassInfo& info, const Member& operation, detail::World& world)
      : info_(info), operation_(operation), world_(world) {}

  ObservedConduct run() {
    ObservedConduct conduct;
    choose_arguments({.route = false, .save = false, .disabled = ""});
    const Trial by_soap = call({.route = false, .save = false, .disabled = ""});
    if (!by_soap.seen.posts.empty()) conduct.soap = failures(Switches());
    conduct.log = own_lines(by_soap.seen);

    const Switches on{.route = true, .save = true, .disabled = ""};
    choose_arguments(on);
    const Trial by_dal = call(on);
    if (!by_dal.seen.dal_calls.empty()) {
      conduct.dal = failures(on);
      conduct.condition = condition();
      if (!conduct.soap) conduct.log = own_lines(by_dal.seen);
    }
    return conduct;
  }

 private:
  Trial call(const Switches& switches) {
    return detail::try_call(world_, info_, operation_, call_.values, switches);
  }

  /// The first form of marks that the operation sends something for.
  void choose_arguments(const Switches& switches) {
    for (const MarkForm form : {MarkForm::kText, MarkForm::kNumber, MarkForm::kArray}) {
      form_ = form;
      call_ = detail::marked_call(operation_, form, detail::cases_of(operation_).front());
      if (!call(switches).seen.empty()) return;
    }
  }

  ObservedFailures failures(const Switches& switches) {
    ObservedFailures seen;
    const Trial good = call(switches);
    world_.fail_with(broken());
    const Trial failed = call(switches);
    seen.log = own_errors(failed.seen);
    if (failed.raised) seen.broken = kept(*failed.raised);
    world_.answer_with(fault(kUnknownCode));
    const Trial plain = call(switches);
    // What fails with a good answer alike is no matter of the fault.
    const bool by_fault =
        plain.raised && (!good.raised || good.raised->number != plain.raised->number);
    if (by_fault) {
      seen.fault = {.number = plain.raised->number,
                    .server_text = plain.raised->description == kServerText};
      for (std::int32_t code = kFirstCode; code <= kLastCode; ++code) {
        world_.answer_with(fault(code));
        const auto raised = call(switches).raised;
        if (raised && raised->number != seen.fault->number) seen.codes[code] = raised->number;
      }
    }
    world_.answer_as_usual();
    return seen;
  }

  static ObservedFailures::Kept kept(const Error& error) {
    const Error whole = broken();
    return {.number = error.number == whole.number,
            .source = error.source == whole.source,
            .description = error.description == whole.description,
            .help = error.helpFile == whole.helpFile && error.helpContext == whole.helpContext};
  }

  bool asks_dal(const Switches& switches) { return !call(switches).seen.dal_calls.empty(); }

  ObservedCondition condition() {
    return {.needs_route = !asks_dal({.route = false, .save = true, .disabled = ""}),
            .needs_save = !asks_dal({.route = true, .save = false, .disabled = ""}),
            .disabled_by = disabled_by()};
  }

  bool disabled(const std::string& entries) {
    return !asks_dal({.route = true, .save = true, .disabled = entries});
  }

  std::vector<std::string> disabled_by() {
    std::vector<std::string> entries;
    for (const auto& fixed : detail::cases_of(operation_)) {
      call_ = detail::marked_call(operation_, form_, fixed);
      const std::string entry = closing_entry();
      const bool known = std::find(entries.begin(), entries.end(), entry) != entries.end();
      if (!entry.empty() && !known) entries.push_back(entry);
    }
    return entries;
  }

  /// Narrows all services and methods down to the one entry that closes the route; "" for none.
  std::string closing_entry() {
    const auto& services = find_class("BVServices")->members;
    const auto& methods = find_class("BVMethods")->members;
    const auto entry = [](const Member& service, const Member& method) {
      return catalogue_text(service) + "." + catalogue_text(method);
    };
    for (const Member& service : services) {
      std::string all;
      for (const Member& method : methods) all.append(entry(service, method)).append("|");
      if (!disabled(all)) continue;
      for (const Member& method : methods) {
        if (disabled(entry(service, method) + "|")) return entry(service, method);
      }
    }
    return "";
  }

  const ClassInfo& info_;
  const Member& operation_;
  detail::World& world_;
  MarkForm form_ = MarkForm::kText;
  MarkedCall call_;
};

}  // namespace

ObservedConduct observe_conduct(const ClassInfo& info, const Member& operation) {
  detail::World world;
  const platform::ScopedPlatform scope(world.platform());
  return detail::on_own_thread([&] { return ConductObserver(info, operation, world).run(); });
}

}  // namespace bvconn::automation
