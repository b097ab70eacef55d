#include "trace_platform.h"

#include <cmath>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "json_text.h"
#include "mask_urls.h"

namespace bvconn::tool {
namespace {

/// One line, built member by member.
class Line {
 public:
  Line(std::string_view on, std::string_view action) : text_("{\"on\":" + json_string(on)) {
    add("do", action);
  }
  static Line of(std::string_view on) { return Line(on); }

  Line& add(std::string_view key, std::string_view text) { return raw(key, json_string(text)); }
  Line& add(std::string_view key, std::int64_t number) {
    return raw(key, conversions::integer_text(number));
  }
  Line& raw(std::string_view key, std::string_view json) {
    text_.append(",").append(json_string(key)).append(":").append(json);
    return *this;
  }
  std::string text() const { return text_ + "}"; }

 private:
  explicit Line(std::string_view on) : text_("{\"on\":" + json_string(on)) {}

  std::string text_;
};

std::string number_json(double number) {
  constexpr double kExact = 9007199254740992.0;
  const bool whole = std::abs(number) < kExact && std::trunc(number) == number;
  return whole ? conversions::integer_text(static_cast<std::int64_t>(number))
               : json_argument(Variant(number));
}

/// Writes the line with what `body` gave, or with the error that it ended with.
template <class Body, class Finish>
auto write_result(Trace& trace, Line line, const Body& body, const Finish& finish) {
  try {
    auto result = body();
    finish(line, result);
    trace.line(line.text());
    return result;
  } catch (const Error& error) {
    trace.line(line.raw("error", json_error(error)).text());
    throw;
  }
}

class TracedLogger final : public SessionLogger {
 public:
  TracedLogger(std::shared_ptr<SessionLogger> inner, std::shared_ptr<Trace> trace)
      : inner_(std::move(inner)), trace_(std::move(trace)) {}

  std::string LogFilePath() override {
    return path("LogFilePath", [&] { return inner_->LogFilePath(); });
  }
  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t line) override {
    trace_->line(begin("LogError", cls, method)
                     .add("number", error.number)
                     .add("source", error.source)
                     .add("description", error.description)
                     .add("line", line)
                     .text());
    inner_->LogError(cls, method, error, line);
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t code) override {
    trace_->line(begin("LogWarning", cls, method).add("text", text).add("code", code).text());
    inner_->LogWarning(cls, method, text, code);
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t code) override {
    trace_->line(begin("LogInfo", cls, method).add("text", text).add("code", code).text());
    inner_->LogInfo(cls, method, text, code);
  }
  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t code) override {
    trace_->line(Line("SessionLogger", "LogAtLevel")
                     .add("level", level)
                     .add("class", cls)
                     .add("method", method)
                     .add("text", text)
                     .add("code", code)
                     .text());
    inner_->LogAtLevel(level, cls, method, text, code);
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    trace_->line(begin("EnterMethod", cls, method).add("level", level).text());
    inner_->EnterMethod(cls, method, level);
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    trace_->line(begin("ExitMethod", cls, method).add("level", level).text());
    inner_->ExitMethod(cls, method, level);
  }
  std::int32_t LogMask() override {
    return write_result(
        *trace_, Line("SessionLogger", "LogMask"), [&] { return inner_->LogMask(); },
        [](Line& line, std::int32_t mask) { line.add("result", mask); });
  }
  std::uint64_t LogMaxBytes() const override { return inner_->LogMaxBytes(); }
  std::string TracingFilePath() override {
    return path("TracingFilePath", [&] { return inner_->TracingFilePath(); });
  }

 private:
  static Line begin(std::string_view action, std::string_view cls, std::string_view method) {
    Line line("SessionLogger", action);
    line.add("class", cls).add("method", method);
    return line;
  }
  template <class Body>
  std::string path(std::string_view action, const Body& body) {
    return write_result(*trace_, Line("SessionLogger", action), body,
                        [](Line& line, const std::string& result) { line.add("result", result); });
  }

  std::shared_ptr<SessionLogger> inner_;
  std::shared_ptr<Trace> trace_;
};

class TracedTransport final : public HTTPTransport {
 public:
  TracedTransport(std::shared_ptr<HTTPTransport> inner, std::shared_ptr<Trace> trace)
      : inner_(std::move(inner)), trace_(std::move(trace)) {}

  void Option(std::string_view key, std::string_view value) override {
    trace_->line(begin("Option").add("key", key).add("value", value).text());
    inner_->Option(key, value);
  }
  void setProxy(std::string_view host, std::string_view port) override {
    trace_->line(begin("setProxy").add("host", host).add("port", port).text());
    inner_->setProxy(host, port);
  }
  void NoProxy() override {
    trace_->line(begin("NoProxy").text());
    inner_->NoProxy();
  }
  void SOAPAction(std::string_view value) override {
    trace_->line(begin("SOAPAction").add("value", value).text());
    inner_->SOAPAction(value);
  }
  void Timeout(std::int32_t milliseconds) override {
    trace_->line(begin("Timeout").add("value", milliseconds).text());
    inner_->Timeout(milliseconds);
  }
  void Send(std::string_view url, std::string_view text) override {
    const bool all = trace_->shows_secrets();
    trace_->line(begin("Send")
                     .add("url", all ? std::string(url) : mask_url(url))
                     .add("text", all ? std::string(text) : mask_request(text))
                     .text());
    inner_->Send(url, text);
  }
  std::string Receive(std::string_view encoding) override {
    return write_result(
        *trace_, begin("Receive").add("encoding", encoding),
        [&] { return inner_->Receive(encoding); },
        [](Line& line, const std::string& bytes) {
          line.add("bytes", static_cast<std::int64_t>(bytes.size()));
        });
  }
  std::string LastReply() const override { return inner_->LastReply(); }
  const WireFacts* LastWire() const override { return inner_->LastWire(); }

 private:
  static Line begin(std::string_view action) { return Line("HTTPTransport", action); }

  std::shared_ptr<HTTPTransport> inner_;
  std::shared_ptr<Trace> trace_;
};

class TracedSettings final : public RegistryAccess {
 public:
  TracedSettings(std::unique_ptr<RegistryAccess> inner, std::shared_ptr<Trace> trace)
      : inner_(std::move(inner)), trace_(std::move(trace)) {}

  bool Exists(std::string_view path) override {
    return write_result(
        *trace_, begin("Exists").add("path", path), [&] { return inner_->Exists(path); },
        [](Line& line, bool result) { line.raw("result", result ? "true" : "false"); });
  }
  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    Line line = begin("Write").add("path", path);
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
      line.add("value", *number);
    } else {
      line.add("value", std::get<std::string>(value));
    }
    trace_->line(line.add("type", type).text());
    inner_->Write(path, value, type);
  }
  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    return write_result(
        *trace_, read("ReadNumber", root, key, name),
        [&] { return inner_->ReadNumber(root, key, name); },
        [](Line& line, double result) { line.raw("result", number_json(result)); });
  }
  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    return write_result(
        *trace_, read("ReadString", root, key, name),
        [&] { return inner_->ReadString(root, key, name); },
        [](Line& line, const std::string& result) { line.add("result", result); });
  }

 private:
  static Line begin(std::string_view action) { return Line("RegistryAccess", action); }
  static Line read(std::string_view action, SettingsRoot root, std::string_view key,
                   std::string_view name) {
    // The roots as full paths name them.
    const std::string_view root_name = root == SettingsRoot::kLocalMachine ? "HKLM" : "HKCU";
    return begin(action).add("root", root_name).add("key", key).add("name", name);
  }

  std::unique_ptr<RegistryAccess> inner_;
  std::shared_ptr<Trace> trace_;
};

class TracedServiceObject final : public ServiceObject {
 public:
  TracedServiceObject(std::shared_ptr<ServiceObject> inner, std::shared_ptr<Trace> trace)
      : inner_(std::move(inner)), trace_(std::move(trace)) {}

  std::string_view name() const override { return inner_->name(); }
  bool offers(std::string_view interface_name) const override {
    return inner_->offers(interface_name);
  }
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    std::string shown = "[";
    for (std::size_t index = 0; index < arguments.size(); ++index) {
      shown.append(index == 0 ? "" : ",").append(argument_text(operation, index, arguments[index]));
    }
    Line line(name(), operation);
    line.raw("args", shown.append("]")).raw("byName", by_name ? "true" : "false");
    try {
      std::string result = inner_->invoke(operation, arguments, by_name);
      trace_->line(line.add("result", result_text(operation, result)).text());
      return result;
    } catch (const Error& error) {
      const Error shown_error = without_password(operation, arguments, error);
      trace_->line(line.raw("error", json_error(shown_error)).text());
      throw;
    }
  }
  const WireFacts* last_wire() const override { return inner_->last_wire(); }

 private:
  static constexpr std::string_view kLogin = "Login";
  static constexpr std::size_t kPasswordOfLogin = 1;

  std::string argument_text(std::string_view operation, std::size_t index,
                            const Variant& argument) const {
    if (trace_->shows_secrets()) return json_argument(argument);
    if (operation == kLogin && index == kPasswordOfLogin) return json_string(kMasked);
    if (operation == "SetServerUrl" && argument.is(Variant::Type::kString)) {
      return json_string(mask_url(argument.string()));
    }
    if (argument.is(Variant::Type::kString)) return json_string(mask_request(argument.string()));
    return json_argument(argument);
  }

  // What a login answers may stand for the password from then on.
  std::string result_text(std::string_view operation, const std::string& result) const {
    if (trace_->shows_secrets()) return result;
    return operation == kLogin ? std::string(kMasked) : mask_request(result);
  }

  // A server that refuses a login may repeat what it was given.
  Error without_password(std::string_view operation, std::span<const Variant> arguments,
                         Error error) const {
    if (trace_->shows_secrets() || operation != kLogin || arguments.size() <= kPasswordOfLogin ||
        !arguments[kPasswordOfLogin].is(Variant::Type::kString)) {
      return error;
    }
    const std::string& password = arguments[kPasswordOfLogin].string();
    for (std::string* text : {&error.source, &error.description, &error.helpFile}) {
      for (std::size_t at = password.empty() ? std::string::npos : text->find(password);
           at != std::string::npos; at = text->find(password, at + kMasked.size())) {
        text->replace(at, password.size(), kMasked);
      }
    }
    return error;
  }

  std::shared_ptr<ServiceObject> inner_;
  std::shared_ptr<Trace> trace_;
};

class TracedMessageBox final : public ModalMessage {
 public:
  TracedMessageBox(std::shared_ptr<ModalMessage> inner, std::shared_ptr<Trace> trace)
      : inner_(std::move(inner)), trace_(std::move(trace)) {}

  void show(std::string_view title, std::string_view text) override {
    trace_->line(Line::of("MessageBox").add("title", title).add("text", text).text());
    inner_->show(title, text);
  }

 private:
  std::shared_ptr<ModalMessage> inner_;
  std::shared_ptr<Trace> trace_;
};

}  // namespace

void Trace::line(std::string_view text) {
  *out_ << (shows_secrets_ ? std::string(text) : mask_urls(text)) << std::endl;
}

platform::Platform traced(platform::Platform inner, std::shared_ptr<Trace> trace) {
  platform::Platform outer = inner;
  outer.transport = [make = inner.transport, trace] {
    return std::make_shared<TracedTransport>(make(), trace);
  };
  outer.logger = [make = inner.logger, trace] {
    return std::make_shared<TracedLogger>(make(), trace);
  };
  outer.settings = [make = inner.settings, trace] {
    return std::make_unique<TracedSettings>(make(), trace);
  };
  outer.service_object = [make = inner.service_object, trace](std::string_view name) {
    return std::make_shared<TracedServiceObject>(make(name), trace);
  };
  outer.message_box = [make = inner.message_box, trace] {
    return std::make_shared<TracedMessageBox>(make(), trace);
  };
  return outer;
}

}  // namespace bvconn::tool
