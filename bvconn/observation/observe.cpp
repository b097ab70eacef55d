#include "bvconn/observation/observe.h"

#include <algorithm>
#include <map>
#include <utility>

#include "bvconn/observation/marks.h"
#include "bvconn/observation/trial.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error.h"

namespace bvconn::automation {
namespace {

using detail::FixedText;
using detail::MarkedCall;
using detail::MarkForm;

template <class Value>
void add_once(std::vector<Value>& values, const Value& value) {
  if (std::find(values.begin(), values.end(), value) == values.end()) values.push_back(value);
}

std::string constant_text(const Variant& value) {
  try {
    return to_text(value);
  } catch (const Error&) {
    return {};
  }
}

/// A request as it stands in one post: its form, and the text of each parameter, by which one post
/// is compared with another.
struct PostedRequest {
  ObservedRequest form;
  std::vector<std::string> texts;
  std::string url;
  std::vector<std::string> header_texts;
};

void read_parameter(PostedRequest& posted, const SoapNode& node) {
  if (detail::is_mark_of_child(node.Name())) {
    posted.form.open_ended = true;
    return;
  }
  ObservedParameter parameter{.name = detail::is_mark(node.Name()) ? "" : node.Name(),
                              .name_space = node.Namespace(),
                              .types = {},
                              .may_be_nil = node.nil(),
                              .any_content = detail::is_mark(node.Name()),
                              .origin = {}};
  if (!node.nil()) parameter.types.push_back(node.Type());
  if (node.Nodes().Count() == 0) parameter.origin.constant = constant_text(node.Value());
  posted.form.parameters.push_back(std::move(parameter));
  posted.texts.push_back(node_to_xml(node));
}

/// Nothing for a text that is no envelope: marks may stand where XML does not allow them.
std::optional<PostedRequest> read_post(const Sightings::Post& post) {
  XMLDocument document;
  if (!document.load(post.text)) return std::nullopt;
  PostedRequest posted;
  posted.form.soap_action = post.soap_action;
  posted.form.timeout_ms = post.timeout_ms;
  posted.url = post.url;
  for (const SoapNode& part : document.documentElement().Nodes()) {
    if (part.Name() == "Header") {
      for (const SoapNode& header : part.Nodes()) {
        posted.form.headers.push_back(header.Name());
        posted.form.header_origins.emplace_back();
        posted.header_texts.push_back(constant_text(header.Value()));
      }
      continue;
    }
    const SoapNode method = part.Nodes().Item(0);
    if (!detail::is_mark(method.Name())) {
      posted.form.service = method.Namespace();
      posted.form.method = method.Name();
    } else {
      posted.form.soap_action = "";
    }
    for (const SoapNode& node : method.Nodes()) read_parameter(posted, node);
  }
  return posted;
}

bool same_form(const ObservedRequest& a, const ObservedRequest& b) {
  return a.service == b.service && a.method == b.method && a.soap_action == b.soap_action &&
         a.headers == b.headers && a.open_ended == b.open_ended &&
         std::equal(a.parameters.begin(), a.parameters.end(), b.parameters.begin(),
                    b.parameters.end(), [](const ObservedParameter& x, const ObservedParameter& y) {
                      return x.name == y.name && x.name_space == y.name_space;
                    });
}

bool same_form(const ObservedDalCall& a, const ObservedDalCall& b) {
  return a.object == b.object && a.operation == b.operation && a.by_name == b.by_name &&
         a.arguments.size() == b.arguments.size();
}

/// Where a form stands in a list; it is added at the end when it is not there yet.
template <class Form>
std::size_t place_of(std::vector<Form>& forms, const Form& form) {
  const auto found = std::find_if(forms.begin(), forms.end(),
                                  [&](const Form& each) { return same_form(each, form); });
  if (found != forms.end()) return static_cast<std::size_t>(found - forms.begin());
  forms.push_back(form);
  return forms.size() - 1;
}

class Observer {
 public:
  Observer(const ClassInfo& info, const Member& operation, detail::World& world)
      : info_(info), operation_(operation), world_(world) {
    observed_.cls = info.name;
    observed_.name = operation.name;
  }

  ObservedOperation run() {
    for (const auto& fixed : detail::cases_of(operation_)) {
      requests_of_case_.clear();
      case_ = fixed ? std::string(fixed->argument) + "=" + std::string(fixed->text) : "";
      for (const bool dal : {false, true}) observe_route(dal, fixed);
    }
    for (ObservedRequest& request : observed_.requests) {
      finish(request.url);
      for (Origin& header : request.header_origins) finish(header);
      for (ObservedParameter& parameter : request.parameters) finish(parameter);
    }
    for (ObservedDalCall& call : observed_.dal_calls) {
      for (auto& argument : call.arguments) finish(argument);
    }
    return std::move(observed_);
  }

 private:
  /// The texts of a form's places in the first call that showed it, for one series of calls.
  struct Series {
    MarkForm form;
    std::map<std::size_t, std::vector<std::string>> request_texts;
    std::map<std::size_t, std::vector<std::string>> dal_texts;
  };

  /// Texts are marked in the first form that the operation takes, with all variations; the other
  /// forms matter to variants, whose type they change.
  void observe_route(bool dal, const std::optional<FixedText>& fixed) {
    const bool has_variants =
        std::any_of(operation_.arguments.begin(), operation_.arguments.end(),
                    [](const Argument& each) { return each.type == ValueType::kVariant; });
    bool varied = false;
    for (const MarkForm form : {MarkForm::kText, MarkForm::kNumber, MarkForm::kArray}) {
      if (varied && !has_variants) break;
      Series series{.form = form, .request_texts = {}, .dal_texts = {}};
      const MarkedCall first = detail::marked_call(operation_, form, fixed);
      const Sightings seen = call(first, dal);
      const bool sent = dal ? !seen.dal_calls.empty() : !seen.empty();
      if (!sent) continue;
      take(seen, first, series);
      if (varied) continue;
      varied = true;
      for (const MarkedCall& each : detail::variations(operation_, form, fixed)) {
        take(call(each, dal), each, series);
      }
    }
  }

  Sightings call(const MarkedCall& marked, bool dal) {
    const detail::Switches switches{.route = dal, .save = dal, .disabled = ""};
    return detail::try_call(world_, info_, operation_, marked.values, switches).seen;
  }

  void take(const Sightings& seen, const MarkedCall& marked, Series& series) {
    for (const auto& post : seen.posts) {
      if (const auto posted = read_post(post)) take(*posted, marked, series);
    }
    for (const auto& dal_call : seen.dal_calls) take(dal_call, marked, series);
  }

  void take(const PostedRequest& posted, const MarkedCall& marked, Series& series) {
    const std::size_t place = place_of(observed_.requests, posted.form);
    add_once(requests_of_case_, place);
    ObservedRequest& request = observed_.requests[place];
    if (!case_.empty()) add_once(request.cases, case_);
    if (request.timeout_ms != posted.form.timeout_ms) request.timeout_ms.reset();
    note_origin(request.url, posted.url, posted.url, marked, series.form);
    for (std::size_t i = 0; i < posted.header_texts.size(); ++i) {
      const std::string& text = posted.header_texts[i];
      note_origin(request.header_origins[i], text, text, marked, series.form);
    }
    const auto& first_texts = series.request_texts.try_emplace(place, posted.texts).first->second;
    for (std::size_t i = 0; i < posted.texts.size(); ++i) {
      ObservedParameter& known = request.parameters[i];
      const ObservedParameter& seen = posted.form.parameters[i];
      known.may_be_nil = known.may_be_nil || seen.may_be_nil;
      for (const std::string& type : seen.types) add_once(known.types, type);
      note_origin(known.origin, posted.texts[i], first_texts[i], marked, series.form);
    }
  }

  void take(const Sightings::DalCall& seen, const MarkedCall& marked, Series& series) {
    ObservedDalCall form{.object = seen.object,
                         .operation = seen.operation,
                         .by_name = seen.by_name,
                         .arguments = {},
                         .cases = {},
                         .requests = {}};
    std::vector<std::string> texts;
    for (const Variant& value : seen.arguments) {
      texts.push_back(constant_text(value));
      form.arguments.push_back({.types = {std::string(bvconn::type_name(value.type()))},
                                .any_type = false,
                                .request_text = texts.back().find(":Envelope") != std::string::npos,
                                .origin = {.arguments = {}, .constant = texts.back()}});
    }
    const std::size_t place = place_of(observed_.dal_calls, form);
    ObservedDalCall& dal_call = observed_.dal_calls[place];
    if (!case_.empty()) add_once(dal_call.cases, case_);
    for (const std::size_t request : requests_of_case_) add_once(dal_call.requests, request);
    const auto& first_texts = series.dal_texts.try_emplace(place, texts).first->second;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      auto& known = dal_call.arguments[i];
      add_once(known.types, form.arguments[i].types.front());
      note_origin(known.origin, texts[i], first_texts[i], marked, series.form);
    }
  }

  void note_origin(Origin& origin, const std::string& text, const std::string& first_text,
                   const MarkedCall& marked, MarkForm form) {
    for (std::size_t i = 0; i < operation_.arguments.size(); ++i) {
      const bool changed = marked.varied == i && text != first_text;
      if (changed || detail::turns_up(operation_, i, form, text)) {
        add_once(origin.arguments, operation_.arguments[i].name);
      }
    }
  }

  /// Puts the arguments in interface order.
  void finish(Origin& origin) const {
    if (!origin.arguments.empty()) origin.constant.clear();
    std::vector<std::string> ordered;
    for (const Argument& each : operation_.arguments) {
      const auto& names = origin.arguments;
      if (std::find(names.begin(), names.end(), each.name) != names.end()) {
        ordered.push_back(each.name);
      }
    }
    origin.arguments = std::move(ordered);
  }

  void finish(ObservedParameter& parameter) const {
    finish(parameter.origin);
    for (const std::string& name : parameter.origin.arguments) {
      const ValueType type = operation_.find_argument(name)->type;
      const bool untyped = parameter.types == std::vector<std::string>{""};
      // A document; a value with the caller's type; XML that was pasted in.
      if (type == ValueType::kSoapNode ||
          (type == ValueType::kVariant && parameter.types.size() > 1) ||
          (type == ValueType::kString && untyped)) {
        parameter.any_content = true;
      }
    }
  }

  void finish(ObservedDalCall::Argument& argument) const {
    finish(argument.origin);
    for (const std::string& name : argument.origin.arguments) {
      if (operation_.find_argument(name)->type != ValueType::kVariant) continue;
      argument.any_type = argument.any_type || argument.types.size() > 1;
    }
  }

  const ClassInfo& info_;
  const Member& operation_;
  detail::World& world_;
  ObservedOperation observed_;
  /// The places of the requests that the present case showed on the SOAP route.
  std::vector<std::size_t> requests_of_case_;
  /// The present case as "argument=text"; "" where there is but one.
  std::string case_;
};

ObservedOperation observe_in(detail::World& world, const ClassInfo& info, const Member& operation) {
  return detail::on_own_thread([&] { return Observer(info, operation, world).run(); });
}

}  // namespace

ObservedOperation observe(const ClassInfo& info, const Member& operation) {
  detail::World world;
  const platform::ScopedPlatform scope(world.platform());
  return observe_in(world, info, operation);
}

std::vector<ObservedOperation> observe_all() {
  detail::World world;
  const platform::ScopedPlatform scope(world.platform());
  std::vector<ObservedOperation> all;
  for (const ClassInfo* info : classes()) {
    for (const Member& member : info->members) {
      if (member.kind == MemberKind::kOperation) all.push_back(observe_in(world, *info, member));
    }
  }
  return all;
}

}  // namespace bvconn::automation
