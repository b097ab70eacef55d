#include "print_request.h"

#include "bvconn/observation/rehearsal.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "bvconn/platform/http/http_url.h"
#include "interface_text.h"
#include "json_text.h"
#include "status.h"

namespace bvconn::tool {
namespace {

using automation::Rehearsal;
using automation::Sightings;

class RequestPrinter {
 public:
  RequestPrinter(bool shows_secrets, std::ostream& out) : secrets_(shows_secrets), out_(out) {}

  void print(const Sightings::Post& post) {
    separate();
    out_ << "SOAP: POST " << shown_url(post.url) << '\n';
    out_ << "SOAPAction: " << post.soap_action.value_or("(as the request before left it)") << '\n';
    out_ << "Time-out: " << post.timeout_ms << " ms\n\n" << shown(post.text) << '\n';
  }

  void print(const Sightings::DalCall& call) {
    separate();
    out_ << "DAL: " << call.object << '.' << call.operation << '(';
    const char* between = "";
    for (const Variant& argument : call.arguments) {
      out_ << between << argument_json(argument);
      between = ", ";
    }
    out_ << ")\n";
  }

  std::string json(const Sightings::Post& post) const {
    return "{\"url\":" + json_string(shown_url(post.url)) +
           ",\"soapAction\":" + (post.soap_action ? json_string(*post.soap_action) : "null") +
           ",\"timeout\":" + std::to_string(post.timeout_ms) +
           ",\"text\":" + json_string(shown(post.text)) + "}";
  }

  std::string json(const Sightings::DalCall& call) const {
    return "{\"object\":" + json_string(call.object) +
           ",\"operation\":" + json_string(call.operation) + ",\"arguments\":" +
           json_list(call.arguments, [&](const Variant& each) { return argument_json(each); }) +
           ",\"byName\":" + (call.by_name ? "true" : "false") + "}";
  }

 private:
  void separate() {
    if (!first_) out_ << '\n';
    first_ = false;
  }

  std::string shown_url(const std::string& url) const {
    return secrets_ ? url : detail::shown_url(url);
  }

  std::string shown(const std::string& text) const { return secrets_ ? text : mask_request(text); }

  std::string argument_json(const Variant& argument) const {
    if (!argument.is(Variant::Type::kString)) return json_argument(argument);
    return json_string(shown(argument.string()));
  }

  bool secrets_;
  std::ostream& out_;
  bool first_ = true;
};

}  // namespace

int print_request(const Target& target, const CallArguments& arguments, const RequestForm& form,
                  std::ostream& out, std::ostream& err) {
  const Rehearsal by_soap =
      automation::rehearse(*target.info, *target.member, arguments.values, false);
  const Rehearsal by_dal =
      automation::rehearse(*target.info, *target.member, arguments.values, true);
  const auto& posts = by_soap.seen.posts;
  // What the layer alone serves goes there whatever is switched on.
  const auto& dal_calls = by_dal.seen.dal_calls;
  if (posts.empty() && dal_calls.empty() && by_soap.raised) {
    const Error& error = *by_soap.raised;
    err << "bvconn: " << target.path() << " fails before it sends anything: error "
        << hex_number(error.number) << " (" << error.number << ") from " << error.source << ": "
        << error.description << '\n';
    if (form.json) out << "{\"error\":" << json_error(error) << "}\n";
    return kFailed;
  }
  RequestPrinter printer(form.shows_secrets, out);
  if (form.json) {
    const auto json = [&](const auto& each) { return printer.json(each); };
    out << "{\"soap\":" << json_list(posts, json) << ",\"dal\":" << json_list(dal_calls, json)
        << "}\n";
    return kDone;
  }
  for (const auto& post : posts) printer.print(post);
  for (const auto& call : dal_calls) printer.print(call);
  if (posts.empty() && dal_calls.empty()) err << "bvconn: " << target.path() << " sends nothing\n";
  return kDone;
}

}  // namespace bvconn::tool
