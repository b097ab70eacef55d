#include "support/recording_platform.h"

#include <gtest/gtest.h>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::test {
namespace {

std::string lower_case(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string in_quotes(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

class RecordingLogger final : public SessionLogger {
 public:
  explicit RecordingLogger(RecordingPlatform& world) : world_(world) {}

  std::string LogFilePath() override {
    world_.record.all.push_back("SessionLogger LogFilePath");
    return world_.log_file;
  }
  std::int32_t LogMask() override {
    world_.record.all.push_back("SessionLogger LogMask");
    return world_.log_mask;
  }
  std::string TracingFilePath() override {
    world_.record.all.push_back("SessionLogger TracingFilePath");
    return world_.tracing_file;
  }
  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t line) override {
    write("LogError " + join(cls, method) + " " + number_text(error.number) + " " +
          in_quotes(error.source) + " " + in_quotes(error.description) + " " +
          std::to_string(line));
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t code) override {
    write("LogWarning " + join(cls, method) + " " + in_quotes(text) + " " + std::to_string(code));
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t code) override {
    write("LogInfo " + join(cls, method) + " " + in_quotes(text) + " " + std::to_string(code));
  }
  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t code) override {
    write("LogAtLevel " + std::to_string(level) + " " + join(cls, method) + " " + in_quotes(text) +
          " " + std::to_string(code));
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    write("EnterMethod " + join(cls, method) + " " + std::to_string(level));
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    write("ExitMethod " + join(cls, method) + " " + std::to_string(level));
  }

 private:
  static std::string join(std::string_view cls, std::string_view method) {
    return std::string(cls).append(".").append(method);
  }
  // Small numbers read best as they are, the others by their bits.
  static std::string number_text(std::int32_t number) {
    return number >= 0 && number < 1000 ? std::to_string(number) : hex_number(number);
  }
  void write(const std::string& line) {
    world_.note(&Record::log, line);
    if (world_.log_failure && world_.log_failure->first == line) throw world_.log_failure->second;
  }

  RecordingPlatform& world_;
};

class RecordingSettings final : public RegistryAccess {
 public:
  explicit RecordingSettings(RecordingPlatform& world) : world_(world) {}

  bool Exists(std::string_view path) override {
    note(std::string("Exists ").append(path));
    return world_.settings.contains(lower_case(path));
  }
  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    const auto* number = std::get_if<std::int64_t>(&value);
    note(std::string("Write ").append(path) + " " +
         (number != nullptr ? std::to_string(*number) : in_quotes(std::get<std::string>(value))) +
         " " + in_quotes(type));
    world_.settings[lower_case(path)] = value;
  }
  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::string path = full_path(root, key, name);
    note("ReadNumber " + path);
    const auto found = world_.settings.find(lower_case(path));
    if (found == world_.settings.end()) return 0;
    if (const auto* number = std::get_if<std::int64_t>(&found->second)) {
      return static_cast<double>(*number);
    }
    return conversions::text_to_double(std::get<std::string>(found->second));
  }
  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::string path = full_path(root, key, name);
    note("ReadString " + path);
    const auto found = world_.settings.find(lower_case(path));
    if (found == world_.settings.end()) return "";
    if (const auto* number = std::get_if<std::int64_t>(&found->second)) {
      return std::to_string(*number);
    }
    return std::get<std::string>(found->second);
  }

 private:
  static std::string full_path(SettingsRoot root, std::string_view key, std::string_view name) {
    std::string path = root == SettingsRoot::kLocalMachine ? "HKLM\\" : "HKCU\\";
    return path.append(key).append("\\").append(name);
  }
  void note(const std::string& line) {
    world_.note(&Record::settings, line);
    if (world_.settings_error) throw Error(*world_.settings_error);
  }

  RecordingPlatform& world_;
};

class RecordingServiceObject final : public ServiceObject {
 public:
  RecordingServiceObject(RecordingPlatform& world, std::string_view name)
      : world_(world), name_(name) {}

  std::string_view name() const override { return name_; }

  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    const std::string key = std::string(name_).append(".").append(operation);
    std::string line = key + "(";
    for (const Variant& argument : arguments) {
      if (line.back() != '(') line += ", ";
      line += shown(argument);
    }
    world_.note(&Record::dal, line + (by_name ? ") by name" : ")"));
    if (const auto error = world_.dal_errors.find(key); error != world_.dal_errors.end()) {
      throw Error(error->second);
    }
    const auto answer = world_.dal_answers.find(key);
    if (answer == world_.dal_answers.end()) {
      ADD_FAILURE() << "no answer was scripted for " << key;
      return "";
    }
    return answer->second;
  }

  bool offers(std::string_view interface_name) const override {
    if (interface_name == name_) return true;
    const auto found = world_.dal_interfaces.find(name_);
    if (found == world_.dal_interfaces.end()) return false;
    for (const auto& offered : found->second) {
      if (offered == interface_name) return true;
    }
    return false;
  }

 private:
  RecordingPlatform& world_;
  std::string name_;
};

class ScriptedClock final : public Clock {
 public:
  explicit ScriptedClock(RecordingPlatform& world) : world_(world) {}
  Date now() override { return world_.now; }
  double timer() override {
    const double value = world_.timer.front();
    if (world_.timer.size() > 1) world_.timer.pop_front();
    return value;
  }

 private:
  RecordingPlatform& world_;
};

class RecordingMessageBox final : public MessageBox {
 public:
  explicit RecordingMessageBox(RecordingPlatform& world) : world_(world) {}
  void show(std::string_view title, std::string_view text) override {
    world_.note(&Record::messages, std::string(title).append(" | ").append(text));
  }

 private:
  RecordingPlatform& world_;
};

}  // namespace

class RecordingTransport final : public HTTPTransport {
 public:
  explicit RecordingTransport(RecordingPlatform& world) : world_(world) {}

  void Option(std::string_view key, std::string_view value) override {
    note(std::string("Option ").append(key) + " " + in_quotes(value));
  }
  void setProxy(std::string_view host, std::string_view port) override {
    note("setProxy " + in_quotes(host) + " " + in_quotes(port));
  }
  void NoProxy() override { note("NoProxy"); }
  void SOAPAction(std::string_view value) override { note("SOAPAction " + in_quotes(value)); }
  void Timeout(std::int32_t milliseconds) override {
    note("Timeout " + std::to_string(milliseconds));
  }
  void Send(std::string_view url, std::string_view text) override {
    note("Send " + in_quotes(url));
    world_.sent.push_back({std::string(url), std::string(text)});
    if (world_.exchanges_.empty()) {
      ADD_FAILURE() << "nobody asked for this request: " << text;
      throw Error(1, "RecordingTransport", "no reply was scripted");
    }
    world_.under_way_ = std::move(world_.exchanges_.front());
    world_.exchanges_.pop_front();
    if (world_.under_way_->send_error) throw Error(*world_.under_way_->send_error);
  }
  std::string Receive(std::string_view encoding) override {
    note("Receive " + in_quotes(encoding));
    if (!world_.under_way_) {
      ADD_FAILURE() << "Receive without a Send";
      return "";
    }
    if (world_.under_way_->receive_error) throw Error(*world_.under_way_->receive_error);
    return world_.under_way_->body;
  }

 private:
  void note(const std::string& line) { world_.note(&Record::transport, line); }

  RecordingPlatform& world_;
};

namespace {

platform::Platform recording(RecordingPlatform& world) {
  return {
      .transport =
          [&world] {
            ++world.transports_made;
            return std::make_shared<RecordingTransport>(world);
          },
      .logger = [&world] { return std::make_shared<RecordingLogger>(world); },
      .settings = [&world] { return std::make_unique<RecordingSettings>(world); },
      .service_object = [&world](std::string_view name) -> std::shared_ptr<ServiceObject> {
        const auto error = world.dal_unmakeable.find(std::string(name));
        if (error != world.dal_unmakeable.end()) throw Error(error->second);
        world.record.all.push_back(std::string("make ").append(name));
        return std::make_shared<RecordingServiceObject>(world, name);
      },
      .clock = [&world] { return std::make_shared<ScriptedClock>(world); },
      .message_box = [&world] { return std::make_shared<RecordingMessageBox>(world); },
  };
}

}  // namespace

RecordingPlatform::RecordingPlatform() : scope_(recording(*this)) {
  // Most tests are not about this setting; it stands there as the application leaves it.
  settings[R"(hkcu\software\brimvale\torvex\appdata\tracesoaptraffic)"] = std::string("False");
}

RecordingPlatform::~RecordingPlatform() {
  EXPECT_TRUE(exchanges_.empty()) << exchanges_.size() << " scripted replies were never asked for";
}

void RecordingPlatform::reply(std::string body) {
  exchanges_.push_back({.body = std::move(body), .send_error = {}, .receive_error = {}});
}

void RecordingPlatform::fail_send(const Error& error) {
  exchanges_.push_back({.body = {}, .send_error = error, .receive_error = {}});
}

void RecordingPlatform::fail_receive(const Error& error) {
  exchanges_.push_back({.body = {}, .send_error = {}, .receive_error = error});
}

void RecordingPlatform::use_dal() {
  auto& state = session();
  const auto make = [this](std::string_view name) {
    return std::make_shared<RecordingServiceObject>(*this, name);
  };
#define BVCONN_SERVICE_OBJECT(name, ...) state.name = make(#name);
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  state.UsingTorvexDAL = true;
}

void RecordingPlatform::note(std::vector<std::string> Record::*list, const std::string& line) {
  (record.*list).push_back(line);
  record.all.push_back(line);
  if (on_line) on_line(line);
}

std::string envelope_text(std::string_view method, std::string_view parameters) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><e:Body><m:";
  text.append(method).append(" xmlns:m=\"urn:test\">").append(parameters);
  return text.append("</m:").append(method).append("></e:Body></e:Envelope>");
}

std::string fault_text(std::string_view code, std::string_view text) {
  std::string envelope =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultcode>";
  envelope.append(code).append("</faultcode><faultstring>").append(text);
  return envelope.append("</faultstring></e:Fault></e:Body></e:Envelope>");
}

std::string shown(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
      return "empty";
    case Variant::Type::kMissing:
      return "missing";
    case Variant::Type::kString:
      return in_quotes(value.string());
    case Variant::Type::kBoolean:
      return value.boolean() ? "true" : "false";
    case Variant::Type::kInt32:
      return std::to_string(value.int32());
    default:
      return std::string(type_name(value.type())) + " " + to_text(value);
  }
}

}  // namespace bvconn::test
