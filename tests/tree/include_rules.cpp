#include "tree/include_rules.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>

namespace bvconn::test {
namespace {

constexpr std::string_view kOwnPrefix = "bvconn/";

std::string place(const SourceFile& file, const Include& include) {
  return file.path + ":" + std::to_string(include.line) + ": ";
}

// "core" of "bvconn/core/settings.h"; "" when the target is none of ours.
std::string room_of_target(std::string_view target) {
  if (!target.starts_with(kOwnPrefix)) return "";
  target.remove_prefix(kOwnPrefix.size());
  return std::string(target.substr(0, target.find('/')));
}

// "core" of "src/core/settings.h", "tools", "sandbox", "tests", …: who is including.
std::string room_of_file(std::string_view path) {
  const std::string first(path.substr(0, path.find('/')));
  if (first != "src") return first;
  path.remove_prefix(4);
  const auto slash = path.find('/');
  return slash == std::string_view::npos ? "" : std::string(path.substr(0, slash));
}

const std::set<std::string>* rooms_below(const std::string& room) {
  static const std::set<std::string> platform{"platform"};
  static const std::set<std::string> middle{"platform", "catalogues", "core", "dal"};
  static const std::set<std::string> connectors{"platform", "catalogues", "core", "dal",
                                                "connectors"};
  static const std::set<std::string> automation{"platform", "catalogues", "core",
                                                "dal",      "connectors", "automation"};
  static const std::set<std::string> on_top{"platform", "automation"};
  static const std::map<std::string, const std::set<std::string>*> table{
      {"platform", &platform},   {"catalogues", &middle},     {"core", &middle},
      {"dal", &middle},          {"connectors", &connectors}, {"automation", &automation},
      {"tools", &on_top},        {"sandbox", &on_top},        {"tests", &automation},
      {"examples", &connectors}, {"bench", &automation},      {"fuzz", &automation}};
  const auto found = table.find(room);
  return found == table.end() ? nullptr : found->second;
}

std::string joined(const std::set<std::string>& names) {
  std::string text;
  for (const auto& name : names) {
    if (!text.empty()) text += ", ";
    text += name;
  }
  return text;
}

// The file that an include of ours names, from the project's root.
std::optional<std::string> resolved(const SourceFile& file, const Include& include,
                                    const std::set<std::string>& paths) {
  const auto known = [&](std::string path) -> std::optional<std::string> {
    if (paths.contains(path)) return path;
    return std::nullopt;
  };
  if (include.target.starts_with(kOwnPrefix)) {
    return known("src/" + include.target.substr(kOwnPrefix.size()));
  }
  if (!include.quoted) return std::nullopt;
  const std::string folder = file.path.substr(0, file.path.rfind('/') + 1);
  if (auto path = known(folder + include.target)) return path;
  if (auto path = known(include.target)) return path;
  // The roots that targets of tests and of the tool are compiled with.
  if (auto path = known("tests/" + include.target)) return path;
  return known("tools/bvconn/" + include.target);
}

std::set<std::string> paths_of(const SourceTree& tree) {
  std::set<std::string> paths;
  for (const auto& file : tree) paths.insert(file.path);
  return paths;
}

constexpr std::string_view kStandardHeaders[] = {"algorithm",
                                                 "any",
                                                 "array",
                                                 "atomic",
                                                 "barrier",
                                                 "bit",
                                                 "bitset",
                                                 "cassert",
                                                 "cctype",
                                                 "cerrno",
                                                 "cfenv",
                                                 "cfloat",
                                                 "charconv",
                                                 "chrono",
                                                 "cinttypes",
                                                 "climits",
                                                 "clocale",
                                                 "cmath",
                                                 "compare",
                                                 "complex",
                                                 "concepts",
                                                 "condition_variable",
                                                 "coroutine",
                                                 "csetjmp",
                                                 "csignal",
                                                 "cstdarg",
                                                 "cstddef",
                                                 "cstdint",
                                                 "cstdio",
                                                 "cstdlib",
                                                 "cstring",
                                                 "ctime",
                                                 "cuchar",
                                                 "cwchar",
                                                 "cwctype",
                                                 "deque",
                                                 "exception",
                                                 "execution",
                                                 "filesystem",
                                                 "forward_list",
                                                 "fstream",
                                                 "functional",
                                                 "future",
                                                 "initializer_list",
                                                 "iomanip",
                                                 "ios",
                                                 "iosfwd",
                                                 "iostream",
                                                 "istream",
                                                 "iterator",
                                                 "latch",
                                                 "limits",
                                                 "list",
                                                 "locale",
                                                 "map",
                                                 "memory",
                                                 "memory_resource",
                                                 "mutex",
                                                 "new",
                                                 "numbers",
                                                 "numeric",
                                                 "optional",
                                                 "ostream",
                                                 "queue",
                                                 "random",
                                                 "ranges",
                                                 "ratio",
                                                 "regex",
                                                 "scoped_allocator",
                                                 "semaphore",
                                                 "set",
                                                 "shared_mutex",
                                                 "source_location",
                                                 "span",
                                                 "sstream",
                                                 "stack",
                                                 "stdexcept",
                                                 "stop_token",
                                                 "streambuf",
                                                 "string",
                                                 "string_view",
                                                 "syncstream",
                                                 "system_error",
                                                 "thread",
                                                 "tuple",
                                                 "type_traits",
                                                 "typeindex",
                                                 "typeinfo",
                                                 "unordered_map",
                                                 "unordered_set",
                                                 "utility",
                                                 "valarray",
                                                 "variant",
                                                 "vector",
                                                 "version",
                                                 "cstdbool"};

constexpr std::string_view kSystemHeaders[] = {
    "arpa/",    "dirent.h", "dlfcn.h", "errno.h",   "fcntl.h", "iconv.h",  "limits.h", "locale.h",
    "netdb.h",  "netinet/", "poll.h",  "pthread.h", "pwd.h",   "sched.h",  "signal.h", "spawn.h",
    "stdlib.h", "string.h", "sys/",    "termios.h", "time.h",  "unistd.h", "malloc.h"};

// A third-party library by the beginning of its includes, and who may use it.
struct Library {
  std::string_view prefix;
  std::set<std::string> users;
};

const std::vector<Library>& libraries() {
  static const std::vector<Library> list{
      {"curl/", {"platform", "tests", "bench"}},
      {"zlib.h", {"platform", "tests"}},
      {"toml++/", {"platform"}},
      {"toml.hpp", {"platform"}},
      {"nlohmann/", {"platform", "tools", "sandbox", "tests"}},
      {"CLI/", {"tools", "sandbox"}},
      {"boost/", {"sandbox", "tests"}},
      {"sqlite3.h", {"sandbox", "tests"}},
      {"expat.h", {"tests", "bench", "fuzz"}},
      {"libxml/", {"bench"}},
      {"openssl/", {"tests"}},
      {"gtest/", {"tests"}},
      {"gmock/", {"tests"}},
      {"benchmark/", {"bench"}},
  };
  return list;
}

enum class Kind { kOwn, kStandard, kSystem, kThirdParty };

Kind kind_of(const Include& include) {
  if (include.quoted || include.target.starts_with(kOwnPrefix)) return Kind::kOwn;
  const auto is = [&](std::string_view name) { return include.target == name; };
  if (std::any_of(std::begin(kStandardHeaders), std::end(kStandardHeaders), is))
    return Kind::kStandard;
  const auto begins = [&](std::string_view name) { return include.target.starts_with(name); };
  if (std::any_of(std::begin(kSystemHeaders), std::end(kSystemHeaders), begins))
    return Kind::kSystem;
  return Kind::kThirdParty;
}

// Depth-first; `trail` is the way from the start to here.
class CircleSearch {
 public:
  explicit CircleSearch(std::map<std::string, std::vector<std::string>> edges)
      : edges_(std::move(edges)) {}

  Complaints run() {
    for (const auto& [path, targets] : edges_) visit(path);
    return complaints_;
  }

 private:
  void visit(const std::string& path) {
    const auto on_trail = std::find(trail_.begin(), trail_.end(), path);
    if (on_trail != trail_.end()) {
      report(on_trail);
      return;
    }
    if (!done_.insert(path).second) return;
    trail_.push_back(path);
    if (const auto found = edges_.find(path); found != edges_.end()) {
      for (const auto& target : found->second) visit(target);
    }
    trail_.pop_back();
  }

  void report(std::vector<std::string>::const_iterator first) {
    std::string circle;
    for (auto at = first; at != trail_.end(); ++at) circle += *at + " -> ";
    complaints_.push_back("circle of includes: " + circle + *first +
                          "; move what both need into a file of its own below them");
  }

  std::map<std::string, std::vector<std::string>> edges_;
  std::set<std::string> done_;
  std::vector<std::string> trail_;
  Complaints complaints_;
};

}  // namespace

std::vector<Include> includes_of(std::string_view text) {
  std::vector<Include> includes;
  std::size_t line_number = 0;
  while (!text.empty()) {
    ++line_number;
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const auto skip_blanks = [&] {
      line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    };
    skip_blanks();
    if (!line.starts_with('#')) continue;
    line.remove_prefix(1);
    skip_blanks();
    if (!line.starts_with("include")) continue;
    line.remove_prefix(7);
    skip_blanks();
    if (line.empty() || (line.front() != '"' && line.front() != '<')) continue;
    const bool quoted = line.front() == '"';
    const auto close = line.find(quoted ? '"' : '>', 1);
    if (close == std::string_view::npos) continue;
    includes.push_back({line_number, std::string(line.substr(1, close - 1)), quoted});
  }
  return includes;
}

Complaints check_direction(const SourceFile& file) {
  Complaints complaints;
  const std::string room = room_of_file(file.path);
  const auto* allowed = rooms_below(room);
  for (const auto& include : includes_of(file.text)) {
    const std::string target = room_of_target(include.target);
    if (target.empty()) continue;
    if (allowed == nullptr) {
      complaints.push_back(place(file, include) + "room '" + room +
                           "' is not known; give it its place in tests/tree/include_rules.cpp");
    } else if (!allowed->contains(target)) {
      complaints.push_back(place(file, include) + room + " must not include " + include.target +
                           "; it may include " + joined(*allowed) +
                           " only: move what is needed down, or the caller up");
    }
  }
  return complaints;
}

Complaints check_spelling(const SourceFile& file, const SourceTree& tree) {
  Complaints complaints;
  const bool in_library = file.below("src/");
  const bool in_examples = file.below("examples/");
  const auto paths = paths_of(tree);
  for (const auto& include : includes_of(file.text)) {
    const bool own = include.target.starts_with(kOwnPrefix);
    const auto complain = [&](const std::string& what) {
      complaints.push_back(place(file, include) + include.target + " " + what);
    };
    if (!own && !include.quoted) continue;
    if (include.target.find("..") != std::string::npos) {
      complain("climbs out of its folder; write \"bvconn/<room>/<file>\"");
    } else if (!own && (in_library || in_examples)) {
      complain("is not a whole path; write bvconn/<room>/<file>");
    } else if (own && include.quoted == in_examples) {
      complain(in_examples ? "is in quotes; examples write <bvconn/…>, as an application does"
                           : "is in angle brackets; own headers are written in quotes");
    } else if (!resolved(file, include, paths)) {
      complain("is no file of this project; an outside header goes in angle brackets");
    }
  }
  return complaints;
}

Complaints check_third_party(const SourceFile& file) {
  Complaints complaints;
  const std::string room = room_of_file(file.path);
  const std::set<std::string> standard_only{"catalogues", "core", "dal", "connectors"};
  for (const auto& include : includes_of(file.text)) {
    const Kind kind = kind_of(include);
    if (kind == Kind::kOwn || kind == Kind::kStandard) continue;
    const std::string header = "<" + include.target + ">";
    if (standard_only.contains(room)) {
      complaints.push_back(place(file, include) + room + " uses the standard library alone, not " +
                           header + "; put an interface in platform/ in front of it");
      continue;
    }
    if (kind == Kind::kSystem) continue;
    const auto& known = libraries();
    const auto library = std::find_if(known.begin(), known.end(), [&](const Library& candidate) {
      return include.target.starts_with(candidate.prefix);
    });
    if (library == known.end()) {
      complaints.push_back(place(file, include) + header +
                           " is a new dependency; give its reason in docs/decisions/ and its "
                           "users in tests/tree/include_rules.cpp");
    } else if (!library->users.contains(room)) {
      complaints.push_back(place(file, include) + header + " is for " + joined(library->users) +
                           " only; reach it through an interface of platform/");
    }
  }
  return complaints;
}

Complaints check_public_headers(const SourceTree& tree) {
  std::map<std::string, const SourceFile*> files;
  for (const auto& file : tree) files[file.path] = &file;
  const auto paths = paths_of(tree);
  // What an application, a platform of its own or a tool starts from; the rest follows.
  std::vector<std::string> open;
  for (const auto& file : tree) {
    const bool start = file.below("src/connectors/") || file.below("src/catalogues/") ||
                       file.below("src/core/") || file.below("src/dal/") ||
                       file.path == "src/automation/interface.h" ||
                       file.path == "src/platform/platform.h";
    if (start && file.is_header()) open.push_back(file.path);
  }
  Complaints complaints;
  std::set<std::string> seen(open.begin(), open.end());
  while (!open.empty()) {
    const SourceFile& file = *files.at(open.back());
    open.pop_back();
    for (const auto& include : includes_of(file.text)) {
      if (kind_of(include) == Kind::kThirdParty) {
        complaints.push_back(place(file, include) + "<" + include.target +
                             "> shows in a public header; keep it in the source, or in a header "
                             "that only sources include");
      }
      const auto target = resolved(file, include, paths);
      if (target && seen.insert(*target).second) open.push_back(*target);
    }
  }
  return complaints;
}

Complaints check_circles(const SourceTree& tree) {
  const auto paths = paths_of(tree);
  std::map<std::string, std::vector<std::string>> edges;
  for (const auto& file : tree) {
    if (!file.below("src/")) continue;
    auto& targets = edges[file.path];
    for (const auto& include : includes_of(file.text)) {
      if (auto target = resolved(file, include, paths)) targets.push_back(*target);
    }
  }
  return CircleSearch(std::move(edges)).run();
}

}  // namespace bvconn::test
