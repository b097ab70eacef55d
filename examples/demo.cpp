// The main job of the library, step by step, against a sandbox server that this program starts on a
// free loopback port and ends again. `./dev demo` builds and runs it.

#include <bvconn/connectors/documents/bv_project_connector.h>
#include <bvconn/connectors/documents/bv_quote_connector.h>
#include <bvconn/connectors/invoice/bv_invoice_connector.h>
#include <bvconn/connectors/maintenance/bv_maintenance_connector.h>
#include <bvconn/connectors/print/bv_print_connector.h>
#include <bvconn/connectors/search/bv_search_connector.h>
#include <bvconn/connectors/session/bv_heart_beat_connector.h>
#include <bvconn/dal/bv_connector_object.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/platform.h>
#include <bvconn/platform/soap/variant.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace bvconn;

// The application obtains a session identifier by its own means; the sandbox takes any.
constexpr const char* kSession = "demo-session";

// ----- A window on what the library does: every send and every service object call is shown. -----

class ShownTransport final : public HTTPTransport {
 public:
  void Option(std::string_view key, std::string_view value) override { real_->Option(key, value); }
  void setProxy(std::string_view host, std::string_view port) override {
    real_->setProxy(host, port);
  }
  void NoProxy() override { real_->NoProxy(); }
  void SOAPAction(std::string_view value) override {
    action_ = value;
    real_->SOAPAction(value);
  }
  void Timeout(std::int32_t milliseconds) override { real_->Timeout(milliseconds); }
  void Send(std::string_view url, std::string_view text) override {
    std::cout << "    [SOAP] POST " << url << "  SOAPAction: \"" << action_ << "\"\n";
    real_->Send(url, text);
  }
  std::string Receive(std::string_view encoding) override { return real_->Receive(encoding); }
  std::string LastReply() const override { return real_->LastReply(); }

 private:
  std::shared_ptr<HTTPTransport> real_ = make_http_transport();
  std::string action_;
};

class ShownServiceObject final : public ServiceObject {
 public:
  explicit ShownServiceObject(std::string_view name) : real_(make_http_service_object(name)) {}
  std::string_view name() const override { return real_->name(); }
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    std::cout << "    [DAL]  " << name() << "." << operation << "\n";
    return real_->invoke(operation, arguments, by_name);
  }
  bool offers(std::string_view interface_name) const override {
    return real_->offers(interface_name);
  }

 private:
  std::shared_ptr<ServiceObject> real_;
};

// Of the log, the heart beat's own word and the errors; the rest goes where it always goes.
class ShownLogger final : public SessionLogger {
 public:
  std::string LogFilePath() override { return real_->LogFilePath(); }
  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t line) override {
    std::cout << "    [log]  error in " << cls << "." << method << ": " << error.description
              << "\n";
    real_->LogError(cls, method, error, line);
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t code) override {
    real_->LogWarning(cls, method, text, code);
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t code) override {
    if (text == "Heartbeat Returned OK.") {
      std::cout << "    [log]  " << text << "\n";
      beat_answered = true;
    }
    real_->LogInfo(cls, method, text, code);
  }
  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t code) override {
    real_->LogAtLevel(level, cls, method, text, code);
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    real_->EnterMethod(cls, method, level);
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    real_->ExitMethod(cls, method, level);
  }
  std::int32_t LogMask() override { return real_->LogMask(); }
  std::string TracingFilePath() override { return real_->TracingFilePath(); }

  static inline bool beat_answered = false;

 private:
  std::shared_ptr<SessionLogger> real_ = make_file_logger();
};

void show_what_the_library_does() {
  platform::Platform shown = platform::system_platform();
  shown.logger = [] { return std::make_shared<ShownLogger>(); };
  shown.transport = [] { return std::make_shared<ShownTransport>(); };
  shown.service_object = [](std::string_view name) {
    return std::make_shared<ShownServiceObject>(name);
  };
  platform::install(shown);
}

// ----- Settings, logs and the server's database stay in a folder of the demo's own. -----

class OwnFolder {
 public:
  OwnFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "bvconn-demo-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a folder");
    path_ = pattern;
    ::setenv("BVCONN_MACHINE_SETTINGS", file("machine.toml").c_str(), 1);
    ::setenv("BVCONN_USER_SETTINGS", file("user.toml").c_str(), 1);
    ::setenv("BVCONN_LOG_FILE", file("bvconn.log").c_str(), 1);
    ::setenv("BVCONN_TRACE_FILE", file("traffic.log").c_str(), 1);
  }
  ~OwnFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  std::string file(const char* name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// ----- The sandbox server: a child process that says its port in one line. -----

class Sandbox {
 public:
  // Starts the server; the heart beat is disabled on its data access layer.
  Sandbox(const char* program, const std::string& database) {
    int out[2];
    if (::pipe(out) != 0) fail("cannot make a pipe");
    process_ = ::fork();
    if (process_ < 0) fail("cannot start a process");
    if (process_ == 0) {
      ::dup2(out[1], STDOUT_FILENO);
      ::close(out[0]);
      ::close(out[1]);
      ::execl(program, program, "--port", "0", "--db", database.c_str(), "--seed", "1",
              "--disabled", "urn:HeartBeatService.beat|", static_cast<char*>(nullptr));
      std::_Exit(127);
    }
    ::close(out[1]);
    read_ready_line(out[0]);
  }
  ~Sandbox() { stop(); }
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  void stop() {
    if (process_ <= 0) return;
    ::kill(process_, SIGTERM);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
  }
  std::string url(const char* path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }

 private:
  [[noreturn]] static void fail(const char* why) { throw std::runtime_error(why); }

  void read_ready_line(int from) {
    std::FILE* stream = ::fdopen(from, "r");
    char line[512];
    if (stream == nullptr || std::fgets(line, sizeof line, stream) == nullptr) {
      fail("the sandbox server did not start");
    }
    const std::string text = line;
    const std::size_t at = text.find("\"port\":");
    if (at == std::string::npos) fail("the sandbox server gave no port");
    port_ = std::atoi(text.c_str() + at + 7);
    stream_.reset(stream);
  }

  struct Closer {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };

  pid_t process_ = 0;
  int port_ = 0;
  std::unique_ptr<std::FILE, Closer> stream_;
};

// ----- Printing -----

void heading(const char* text) {
  std::cout << "\n" << text << "\n";
}

std::string shown(const SoapNode& node) {
  const Variant value = node.Value();
  return value.is(Variant::Type::kNode) ? "" : to_text(value);
}

void print_tree(const SoapNode& node, int depth = 0) {
  std::cout << std::string(static_cast<std::size_t>(4 + 2 * depth), ' ') << node.Name();
  const std::string value = shown(node);
  std::cout << (value.empty() ? "\n" : ": " + value + "\n");
  for (const SoapNode child : node.Nodes()) print_tree(child, depth + 1);
}

void print_error(const Error& error) {
  std::cout << "    number       " << hex_number(error.number) << "\n"
            << "    source       " << error.source << "\n"
            << "    description  " << (error.description.empty() ? "(none)" : error.description)
            << "\n";
}

// Runs a call that is meant to fail and shows its error; anything else ends the demo.
template <class Call>
void expect_error(Call call, std::uint32_t number) {
  try {
    call();
  } catch (const Error& error) {
    print_error(error);
    if (error.number == static_cast<std::int32_t>(number)) return;
  }
  throw std::runtime_error("this should have failed with another number");
}

// A heart beat never throws: whether it was answered stands in the log.
void beat(BVHeartBeatConnector& connector, const std::string& url) {
  ShownLogger::beat_answered = false;
  connector.sendHeartBeat(url, kSession);
  if (!ShownLogger::beat_answered) throw std::runtime_error("the heart beat was not answered");
}

// ----- A day of an agent: each step stands on what the one before it gave. -----

std::string text_of(const SoapNode& node, const char* child) {
  return to_text(node.Nodes().ItemByName(child).Value());
}

// Searches for projects exist on the data access layer alone.
SoapNode find_and_fetch_project(const std::string& soap) {
  heading("5. Find a project by a part of its name, and fetch it.");
  const SoapNode found =
      BVSearchConnector().SearchForProjects(kSession, soap, {.ProjName = "Maple"});
  for (const SoapNode project : found.Nodes()) {
    std::cout << "    found " << text_of(project, "GID") << "  " << text_of(project, "Name")
              << "\n";
  }
  const std::string gid = text_of(found.Nodes().Item(0), "GID");
  return BVProjectConnector().getExistingProject(soap, kSession, gid);
}

void make_quotes(const std::string& soap, const SoapNode& project) {
  heading("6. Make two quotes from it, and mark one as quoted.");
  const SoapNode wanted = SoapNode::make("Quotes");
  wanted.Nodes().Create("Quote", Variant());
  wanted.Nodes().Create("Quote", Variant());
  const SoapNode made =
      BVProjectConnector().generateQuotes(soap, kSession, wanted, text_of(project, "GID"));
  for (const SoapNode quote : made.Nodes()) {
    std::cout << "    made " << text_of(quote, "QuoteNumber") << "\n";
  }
  const std::string gid = text_of(made.Nodes().Item(0), "GID");
  const SoapNode quoted = BVQuoteConnector().SetQuoteStatusToQuoted(soap, kSession, gid);
  std::cout << "    " << gid << " is " << text_of(quoted, "Status") << "\n";
}

void save_project(const std::string& soap, const SoapNode& project) {
  heading("7. Change the project's name and save it. It comes back as it was saved.");
  project.Nodes().ItemByName("Name").Value("Maple Street, renamed");
  const SoapNode saved = BVProjectConnector().SaveProject(soap, kSession, project);
  std::cout << "    saved as revision " << text_of(saved, "Revision") << "\n";
  const SoapNode again =
      BVProjectConnector().getExistingProject(soap, kSession, text_of(project, "GID"));
  std::cout << "    its name is now: " << text_of(again, "Name") << "\n";
}

void choose_print_default(const std::string& soap) {
  heading("8. Choose how quotes are printed from now on.");
  const SoapNode infos = BVPrintConnector().GetPrintInfos(soap, kSession);
  const SoapNode second = infos.Nodes().Item(1);
  BVMaintenanceConnector maintenance;
  maintenance.SetUserQuotePrintoutDefault(kSession, soap, text_of(second, "UID"));
  const std::string chosen = maintenance.GetUserQuotePrintoutDefault(kSession, soap);
  std::cout << "    the default is now " << chosen << ": " << text_of(second, "Name") << "\n";
}

void reconcile_an_invoice(const std::string& soap) {
  heading("9. Find an open invoice and reconcile it.");
  BVInvoiceConnector invoices;
  const SoapNode found = invoices.InvoiceSearch(soap, kSession, {.strStatus = "OPEN"});
  const SoapNode invoice = found.Nodes().Item(0);
  const std::string uid = text_of(invoice, "InvoiceUID");
  std::cout << "    " << found.Nodes().Count() << " are open; the first is " << uid << "\n";
  const SoapNode reconcile =
      invoices.AutoReconcileSingle(soap, kSession, uid, text_of(invoice, "AgentID"));
  std::cout << "    " << text_of(reconcile, "GID") << " is " << text_of(reconcile, "Status")
            << "\n";
}

void day_of_an_agent(const std::string& soap) {
  const SoapNode project = find_and_fetch_project(soap);
  make_quotes(soap, project);
  save_project(soap, project);
  choose_print_default(soap);
  reconcile_an_invoice(soap);
}

int run(const char* sandbox_program) {
  show_what_the_library_does();
  const OwnFolder folder;
  Sandbox sandbox(sandbox_program, folder.file("sandbox.db"));
  const std::string soap = sandbox.url("/soap");
  std::cout << "A sandbox server listens on " << soap << "\n";

  heading("1. A heart beat keeps the session alive.");
  BVHeartBeatConnector heart;
  beat(heart, soap);

  heading("2. GetInvoice fetches an invoice by SOAP. What comes back is a tree of nodes:");
  BVInvoiceConnector invoices;
  print_tree(invoices.GetInvoice(soap, kSession, "INV-1001"));

  heading(
      "3. Log in to the data access layer and turn it on. The heart beat takes that route now.");
  BVConnectorObject object;
  object.SalesOrg("1000");
  object.UserName("demo");
  object.Password("secret");
  object.AppVer("1.0");
  object.InitTorvexDAL(sandbox.url("/dal"));
  object.UseTorvexDAL();
  object.AllowDisabledDALMethods(true);
  beat(heart, soap);

  heading("4. The server has disabled that method there. Heeding its list, the beat goes by SOAP:");
  std::cout << "    disabled: " << object.GetDisabledDALServices() << "\n";
  object.AllowDisabledDALMethods(false);
  beat(heart, soap);

  day_of_an_agent(soap);

  heading("10. An invoice that does not exist: the server's fault code 10041 becomes a number.");
  expect_error([&] { invoices.GetInvoice(soap, kSession, "NO-SUCH-INVOICE"); }, 0x80042739);

  heading("11. The server goes away. The next call says so at once:");
  sandbox.stop();
  expect_error([&] { invoices.GetInvoice(soap, kSession, "INV-1001"); }, 0x80044301);

  std::cout << "\nThat is the library's main job. The same calls by name: bvconn --help.\n"
               "A program of your own: docs/getting-started.md\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: demo PATH-OF-BVSANDBOX\n";
    return 2;
  }
  std::cout << std::unitbuf;
  try {
    return run(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "demo: " << error.what() << "\n";
    return 1;
  }
}
