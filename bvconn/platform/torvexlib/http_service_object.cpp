#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/torvexlib/json_arguments.h"
#include "bvconn/platform/torvexlib/json_poster.h"
#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn {

ServiceObject::~ServiceObject() = default;

const WireFacts* ServiceObject::last_wire() const {
  return nullptr;
}

namespace {

constexpr std::string_view kAuthentication = "AuthenticationService";

/// What the service objects of a thread share.
struct Session {
  std::string server_url;
  std::string token;
  detail::JsonPoster poster;
};

Session& session_of_thread() {
  return detail::ThreadRecord<Session>::get();
}

/// A name as one segment of a path, whatever it holds.
std::string path_segment(std::string_view name) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string segment;
  for (const char c : name) {
    if (kPlain.find(c) != std::string_view::npos) {
      segment.push_back(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      segment.push_back('%');
      segment.push_back(kDigits[byte >> 4U]);
      segment.push_back(kDigits[byte & 0xFU]);
    }
  }
  return segment;
}

/// A token goes into a header line: one that would break it is not one.
bool is_token(std::string_view text) {
  return text.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos;
}

/// A service object that posts its calls to the data access layer.
class HttpServiceObject final : public ServiceObject {
 public:
  explicit HttpServiceObject(std::string_view name) : name_(name) {}

  std::string_view name() const override { return name_; }

  bool offers(std::string_view interface_name) const override { return interface_name == name_; }

  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool /*by_name*/) override {
    session_of_thread().poster.clear_facts();
    try {
      return run(operation, arguments);
    } catch (Error& error) {
      // Whatever comes from the exchange itself says what became of the request.
      if (error.outcome == Outcome::kNone) error.outcome = Outcome::kNotSent;
      throw;
    }
  }

  const WireFacts* last_wire() const override { return &session_of_thread().poster.facts(); }

 private:
  std::string run(std::string_view operation, std::span<const Variant> arguments) {
    if (name_ == kAuthentication && operation == "SetServerUrl") {
      set_server_url(arguments);
      return "";
    }
    const std::string body =
        detail::json_arguments(name_ + "." + std::string(operation), arguments);
    Session& session = session_of_thread();
    const std::string url = url_of(session, operation);
    detail::JsonReply reply = session.poster.post(name_, url, session.token, body);
    if (reply.refusal) {
      Error refusal = detail::json_error(reply.body).value_or(*reply.refusal);
      refusal.outcome = Outcome::kAnswered;
      throw Error(refusal);
    }
    if (name_ == kAuthentication && operation == "Login") {
      session.token = is_token(reply.session_token) ? reply.session_token : "";
    }
    return std::move(reply.body);
  }

  void set_server_url(std::span<const Variant> arguments) const {
    if (arguments.size() != 1 || !arguments[0].is(Variant::Type::kString)) {
      throw Error(error_numbers::kTypeMismatch, "BVConn",
                  name_ + ".SetServerUrl takes the server's address, one text");
    }
    Session& session = session_of_thread();
    session.server_url = arguments[0].string();
    session.token.clear();
  }

  std::string url_of(const Session& session, std::string_view operation) const {
    std::string url = session.server_url;
    if (url.empty()) {
      throw Error(error_numbers::kBadUrlOrHeader, name_,
                  "No address of the data access layer was set on this thread");
    }
    url.erase(url.find_last_not_of('/') + 1);
    return url.append("/").append(path_segment(name_)).append("/").append(path_segment(operation));
  }

  std::string name_;
};

}  // namespace

std::shared_ptr<ServiceObject> make_http_service_object(std::string_view name) {
  return std::make_shared<HttpServiceObject>(name);
}

}  // namespace bvconn
