#include "tree/include_rules.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>

namespace bvconn::test {
namespace {

constexpr std::string_view kOwnPrefix = "bvconn/";
constexpr std::string_view kPublicList = "bvconn/public_headers.txt";

// What an application, its tests and a component host start from; all other public headers are what
// these include.
constexpr std::string_view kPublicStarts[] = {"bvconn/bvconn.h", "bvconn/automation/interface.h",
                                              "bvconn/testing/test_world.h",
                                              "bvconn/component/abi.h"};

std::string place(const SourceFile& file, const Include& include) {
  return file.path + ":" + std::to_string(include.line) + ": ";
}

// The rooms from the bottom up; each includes itself and those before it. A path is in the room
// with the longest prefix of it, so that a room can stand apart from the one that it lies in.
struct Room {
  std::string_view prefix;
  // What alone it may include of the library, besides itself; empty for everything below.
  std::vector<std::string_view> only = {};
};

const std::vector<Room>& rooms() {
  static const std::vector<Room> list{
      {"bvconn/platform/"},
      {"bvconn/platform/conversions/"},
      {"bvconn/platform/xml/"},
      {"bvconn/platform/soap/"},
      {"bvconn/platform/exchange/"},
      {"bvconn/platform/logging/"},
      {"bvconn/platform/settings/"},
      {"bvconn/platform/http/"},
      {"bvconn/platform/torvexlib/"},
      {"bvconn/platform/clock"},
      {"bvconn/platform/platform"},
      // What stands in for sources of all these on Windows.
      {"bvconn/platform/windows/"},
      {"bvconn/catalogues/"},
      {"bvconn/core/"},
      {"bvconn/dal/"},
      {"bvconn/operation/"},
      {"bvconn/connectors/"},
      {"bvconn/automation/"},
      {"bvconn/bvconn.h"},
      {"bvconn/testing/"},
      {"bvconn/observation/"},
      {"bvconn/component/"},
      // What stands in for sources of the component on Windows.
      {"bvconn/component/windows/"},
      // What an application includes, and of the component what a host does.
      {"examples/",
       {"bvconn/bvconn.h", "bvconn/platform/", "bvconn/core/", "bvconn/dal/", "bvconn/connectors/",
        "bvconn/automation/", "bvconn/testing/", "bvconn/component/abi",
        "bvconn/component/bvconn_component"}},
      // Of the core what it offers to applications.
      {"tools/",
       {"bvconn/platform/", "bvconn/core/session_state", "bvconn/core/settings",
        "bvconn/automation/", "bvconn/observation/"}},
      // It writes down what hosts see.
      {"tools/typelib/",
       {"bvconn/platform/soap/", "bvconn/automation/", "bvconn/component/class_table"}},
      {"sandbox/", {"bvconn/platform/", "bvconn/automation/", "bvconn/observation/"}},
      {"tests/"},
      {"fuzz/"},
      {"bench/"},
  };
  return list;
}

const Room* room_of(std::string_view path) {
  const Room* best = nullptr;
  for (const Room& room : rooms()) {
    if (path.starts_with(room.prefix) &&
        (best == nullptr || room.prefix.size() > best->prefix.size())) {
      best = &room;
    }
  }
  return best;
}

// Between the platform and the component, which loads itself, the standard library is enough.
bool uses_standard_library_alone(std::string_view path) {
  return path.starts_with(kOwnPrefix) && !path.starts_with("bvconn/platform/") &&
         !path.starts_with("bvconn/component/");
}

bool may_include(const Room& from, std::string_view target) {
  const Room* to = room_of(target);
  if (to == nullptr || to > &from) return false;
  if (to == &from || from.only.empty()) return true;
  return std::any_of(from.only.begin(), from.only.end(),
                     [&](std::string_view prefix) { return target.starts_with(prefix); });
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
    return known("bvconn/" + include.target.substr(kOwnPrefix.size()));
  }
  if (!include.quoted) return std::nullopt;
  const std::string folder = file.path.substr(0, file.path.rfind('/') + 1);
  if (auto path = known(folder + include.target)) return path;
  if (auto path = known(include.target)) return path;
  // The roots that targets of tests, benchmarks and the tool are compiled with.
  if (auto path = known("tests/" + include.target)) return path;
  if (auto path = known("bench/" + include.target)) return path;
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

// The operating system's and those of C, and what the compiler's own library tells of its
// exceptions.
constexpr std::string_view kSystemHeaders[] = {
    "arpa/", "cxxabi.h",  "dirent.h", "dlfcn.h",  "errno.h",  "fcntl.h",  "iconv.h",   "grp.h",
    "io.h",  "limits.h",  "locale.h", "netdb.h",  "netinet/", "poll.h",   "pthread.h", "pty.h",
    "pwd.h", "sched.h",   "signal.h", "spawn.h",  "stdio.h",  "stdint.h", "stdlib.h",  "string.h",
    "sys/",  "termios.h", "time.h",   "unistd.h", "malloc.h"};

// Those of Windows make macros of common words, so one header includes them, and one those of
// component objects.
struct WindowsHeader {
  std::string_view name;
  std::string_view place;
};
constexpr std::string_view kSystemPlace = "bvconn/platform/windows/system.h";
constexpr std::string_view kComponentsPlace = "bvconn/platform/windows/components.h";
constexpr WindowsHeader kWindowsHeaders[] = {
    {"windows.h", kSystemPlace},    {"winsock2.h", kSystemPlace},  {"ws2tcpip.h", kSystemPlace},
    {"shellapi.h", kSystemPlace},   {"ocidl.h", kComponentsPlace}, {"oleauto.h", kComponentsPlace},
    {"olectl.h", kComponentsPlace},
};

// A third-party library by the beginning of its includes, and who may use it.
struct Library {
  std::string_view prefix;
  std::set<std::string> users;
};

const std::vector<Library>& libraries() {
  static const std::vector<Library> list{
      {"curl/", {"bvconn/platform", "tests", "bench"}},
      {"zlib.h", {"bvconn/platform", "sandbox", "tests"}},
      {"toml++/", {"bvconn/platform", "tools"}},
      {"toml.hpp", {"bvconn/platform"}},
      {"nlohmann/", {"bvconn/platform", "tools", "sandbox", "tests", "fuzz"}},
      {"CLI/", {"tools", "sandbox"}},
      {"boost/", {"sandbox", "tests"}},
      {"sqlite3.h", {"sandbox", "tests"}},
      {"libpq-fe.h", {"sandbox"}},
      {"expat.h", {"tests", "bench", "fuzz"}},
      // The compilers' own, for sixteen bytes at a time.
      {"emmintrin.h", {"bvconn/platform"}},
      {"arm_neon.h", {"bvconn/platform"}},
      {"libxml/", {"bench"}},
      {"openssl/", {"sandbox", "tests"}},
      {"pugixml.hpp", {"bench"}},
      {"soapH.h", {"tests", "bench"}},
      {"Invoices.nsmap", {"bench"}},
      {"com.nsmap", {"tests"}},
      // Made from the interface, for programs that have nothing of ours but this.
      {"BVConn.h", {"tests"}},
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

std::set<std::string> public_headers(const SourceTree& tree) {
  std::set<std::string> headers;
  for (const auto& file : tree) {
    if (file.path != kPublicList) continue;
    std::istringstream lines(file.text);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with('#')) headers.insert(std::string(kOwnPrefix) + line);
    }
  }
  return headers;
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
  const Room* room = room_of(file.path);
  for (const auto& include : includes_of(file.text)) {
    if (!include.target.starts_with(kOwnPrefix)) continue;
    if (room == nullptr) {
      complaints.push_back(place(file, include) +
                           "the folder is no room yet; give it its place in " +
                           "the list of tests/tree/include_rules.cpp");
    } else if (!may_include(*room, include.target)) {
      complaints.push_back(
          place(file, include) + std::string(room->prefix) + " must not include " + include.target +
          ", which stands above it or out of its reach in the list of " +
          "tests/tree/include_rules.cpp: move what is needed down, or the " + "caller up");
    }
  }
  return complaints;
}

std::vector<std::string> room_names() {
  std::vector<std::string> names;
  for (const Room& room : rooms()) names.emplace_back(room.prefix);
  return names;
}

std::map<std::string, std::set<std::string>> rooms_included(const SourceTree& tree) {
  std::map<std::string, std::set<std::string>> included;
  const auto paths = paths_of(tree);
  for (const auto& file : tree) {
    const Room* from = room_of(file.path);
    if (from == nullptr || !file.is_code()) continue;
    auto& targets = included[std::string(from->prefix)];
    for (const auto& include : includes_of(file.text)) {
      const auto target = resolved(file, include, paths);
      const Room* to = target ? room_of(*target) : nullptr;
      if (to != nullptr && to != from) targets.emplace(to->prefix);
    }
  }
  return included;
}

Complaints check_spelling(const SourceFile& file, const SourceTree& tree) {
  Complaints complaints;
  const bool in_library = file.below("bvconn/");
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
  const bool standard_only = uses_standard_library_alone(file.path);
  const std::string folder =
      file.path.substr(0, file.path.find('/', file.below("bvconn/") ? 7 : 0));
  for (const auto& include : includes_of(file.text)) {
    const Kind kind = kind_of(include);
    if (kind == Kind::kOwn || kind == Kind::kStandard) continue;
    // These have nothing of the library but the registered component, or a package of it.
    if (file.below("examples/windows/") || file.below("tests/windows_package/consumer/")) continue;
    const std::string header = "<" + include.target + ">";
    const auto* const windows =
        std::ranges::find(kWindowsHeaders, include.target, &WindowsHeader::name);
    if (windows != std::end(kWindowsHeaders)) {
      if (file.path == windows->place) continue;
      complaints.push_back(place(file, include) + header + " is for " +
                           std::string(windows->place) + " only; include that one");
      continue;
    }
    if (standard_only) {
      complaints.push_back(place(file, include) + folder +
                           " uses the standard library alone, not " + header +
                           "; put an interface in platform/ in front of it");
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
    } else if (!library->users.contains(folder)) {
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
  std::vector<std::string> open;
  for (const std::string_view start : kPublicStarts) {
    if (paths.contains(std::string(start))) open.emplace_back(start);
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
  const std::set<std::string> listed = public_headers(tree);
  for (const auto& path : seen) {
    if (!listed.contains(path)) {
      complaints.push_back(path + ": is reached from the public headers; list it in " +
                           std::string(kPublicList) + ", or keep it out of their reach");
    }
  }
  for (const auto& file : tree) {
    if (!file.below("examples/")) continue;
    for (const auto& include : includes_of(file.text)) {
      if (include.target.starts_with(kOwnPrefix) && !listed.contains(include.target)) {
        complaints.push_back(place(file, include) + include.target +
                             " is no public header; an example shows what an application may use");
      }
    }
  }
  for (const auto& path : listed) {
    if (!seen.contains(path)) {
      complaints.push_back(path + ": is listed in " + std::string(kPublicList) +
                           ", and no public header includes it");
    }
  }
  return complaints;
}

Complaints check_umbrella(const SourceTree& tree) {
  std::set<std::string> included;
  for (const auto& file : tree) {
    if (file.path != kPublicStarts[0]) continue;
    for (const auto& include : includes_of(file.text)) included.insert(include.target);
  }
  Complaints complaints;
  for (const auto& file : tree) {
    const bool is_class = file.below(kOwnPrefix) && file.is_header() &&
                          file.text.find("\nclass BVCONN_EXPORT BV") != std::string::npos;
    if (is_class && !included.contains(file.path)) {
      complaints.push_back(file.path + ": is the header of a public class; include it in " +
                           std::string(kPublicStarts[0]));
    }
  }
  return complaints;
}

Complaints check_circles(const SourceTree& tree) {
  const auto paths = paths_of(tree);
  std::map<std::string, std::vector<std::string>> edges;
  for (const auto& file : tree) {
    if (!file.below("bvconn/")) continue;
    auto& targets = edges[file.path];
    for (const auto& include : includes_of(file.text)) {
      if (auto target = resolved(file, include, paths)) targets.push_back(*target);
    }
  }
  return CircleSearch(std::move(edges)).run();
}

}  // namespace bvconn::test
