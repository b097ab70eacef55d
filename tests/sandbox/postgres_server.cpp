#include "sandbox/postgres_server.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "sandbox/store/database.h"

namespace bvconn::test {
namespace {

constexpr std::chrono::seconds kPatience{60};

/// The folder with the newest server's programs, which Debian keeps off the path.
std::filesystem::path programs_folder() {
  std::filesystem::path newest;
  int newest_version = 0;
  std::error_code error;
  for (const auto& each : std::filesystem::directory_iterator("/usr/lib/postgresql", error)) {
    const int version = std::atoi(each.path().filename().c_str());
    if (version > newest_version && std::filesystem::exists(each.path() / "bin" / "initdb")) {
      newest = each.path() / "bin";
      newest_version = version;
    }
  }
  if (!newest.empty()) return newest;
  std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "");
  for (std::string folder; std::getline(path, folder, ':');) {
    if (std::filesystem::exists(std::filesystem::path(folder) / "initdb")) return folder;
  }
  return {};
}

const passwd* other_user() {
  return ::geteuid() == 0 ? ::getpwnam("nobody") : nullptr;
}

/// Whether this program can speak to PostgreSQL at all.
bool speaks_postgresql() {
  try {
    sandbox::Database database("postgresql:///none?host=/nonexistent");
  } catch (const sandbox::DatabaseError& error) {
    return std::string(error.what()).find("was built without") == std::string::npos;
  }
  return true;
}

}  // namespace

PostgresServer& PostgresServer::shared() {
  static PostgresServer server;
  return server;
}

PostgresServer::PostgresServer() : programs_(programs_folder()) {
  if (programs_.empty()) missing_ = "no PostgreSQL server is installed here";
  if (!speaks_postgresql()) missing_ = "this was built without libpq";
  if (!missing_.empty()) return;
  std::string name = (std::filesystem::temp_directory_path() / "bvsandbox-pg-XXXXXX").string();
  if (!::mkdtemp(name.data())) {
    missing_ = "there is no place for a data folder";
    return;
  }
  folder_ = name;
  if (const passwd* user = other_user()) {
    if (::chown(name.c_str(), user->pw_uid, user->pw_gid) != 0) missing_ = "the folder is root's";
  }
  if (!run_to_end("initdb", {"-D", (folder_ / "data").string(), "-U", "bvsandbox", "-A", "trust",
                             "-E", "UTF8", "--locale=C.UTF-8", "--no-sync"})) {
    std::ostringstream log;
    log << std::ifstream(folder_ / "log").rdbuf();
    missing_ = "initdb failed: " + log.str();
    return;
  }
  start();
}

PostgresServer::~PostgresServer() {
  stop();
  if (!folder_.empty()) std::filesystem::remove_all(folder_);
}

pid_t PostgresServer::run(const std::string& program,
                          const std::vector<std::string>& arguments) const {
  std::vector<std::string> words{(programs_ / program).string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const passwd* const user = other_user();
  const std::string log = (folder_ / "log").string();
  const pid_t child = ::fork();
  if (child != 0) return child;
  if (user && (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 ||
               ::setuid(user->pw_uid) != 0)) {
    ::_exit(126);
  }
  // It is not to outlive a test that is killed.
  ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
  if (::chdir(folder_.c_str()) != 0) ::_exit(125);
  const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

bool PostgresServer::run_to_end(const std::string& program,
                                const std::vector<std::string>& arguments) const {
  int status = -1;
  ::waitpid(run(program, arguments), &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string PostgresServer::address(const std::string& database) const {
  return "postgresql://bvsandbox@/" + database + "?host=" + folder_.string();
}

bool PostgresServer::answers() const {
  try {
    sandbox::Database database(address("postgres"));
    return true;
  } catch (const sandbox::DatabaseError&) {
    return false;
  }
}

void PostgresServer::start() {
  if (server_ > 0 || !missing_.empty()) return;
  // Without a port of TCP; what a crash of the machine would cost is nothing to these tests.
  server_ = run("postgres", {"-D", (folder_ / "data").string(), "-k", folder_.string(), "-c",
                             "listen_addresses=", "-c", "fsync=off", "-c", "shared_buffers=16MB"});
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!answers()) {
    if (std::chrono::steady_clock::now() > deadline) {
      missing_ = "the PostgreSQL server does not start";
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

void PostgresServer::stop() {
  if (server_ <= 0) return;
  ::kill(server_, SIGINT);
  ::waitpid(server_, nullptr, 0);
  server_ = -1;
}

std::string PostgresServer::make_database(const std::string& rest) {
  const std::string name = "test" + std::to_string(++databases_);
  sandbox::Database(address("postgres")).run(("CREATE DATABASE " + name + " " + rest).c_str());
  return address(name);
}

}  // namespace bvconn::test
