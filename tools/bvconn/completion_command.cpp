#include "completion_command.h"

#include <algorithm>
#include <string_view>

#include "bvconn/automation/interface.h"
#include "connection_options.h"
#include "library_settings.h"
#include "nearest_names.h"
#include "status.h"

namespace bvconn::tool {
namespace {

using automation::ClassInfo;
using automation::Member;

// "=" and ":" are word breaks of bash's own: what stands before the last one is no part of the word
// that it replaces, and candidates lose it too.
constexpr std::string_view kBash = R"(# bash completion for bvconn
_bvconn() {
  local line="${COMP_LINE:0:COMP_POINT}" words word="" IFS=$' \t\n'
  read -ra words <<< "$line"
  [[ $line == *[[:space:]] ]] || { word="${words[-1]}"; unset 'words[-1]'; }
  local IFS=$'\n'
  COMPREPLY=($(bvconn complete -- "${words[@]:1}" "$word" 2>/dev/null))
  if [[ $word == *[=:]* && $COMP_WORDBREAKS == *[=:]* ]]; then
    COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*[=:]}"}"}")
  fi
  [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *[.=] ]] && compopt -o nospace
  [[ ${#COMPREPLY[@]} -eq 0 ]] && compopt -o default
  return 0
}
complete -F _bvconn bvconn
)";

constexpr std::string_view kZsh = R"(#compdef bvconn
# zsh completion for bvconn
_bvconn() {
  local -a found open closed
  found=("${(@f)$(bvconn complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
  open=("${(@M)found:#*[.=]}")
  closed=("${(@)found:#*[.=]}")
  closed=("${(@)closed:#}")
  (( $#open )) && compadd -S '' -- "${open[@]}"
  (( $#closed )) && compadd -- "${closed[@]}"
  (( $#open + $#closed )) || _files
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
  _bvconn "$@"
else
  compdef _bvconn bvconn
fi
)";

constexpr std::string_view kFish = R"(# fish completion for bvconn
function __bvconn_complete
  set -l words (commandline -opc) (commandline -ct)
  set -l found (bvconn complete -- $words[2..-1] 2>/dev/null)
  if test (count $found) -gt 0
    printf '%s\n' $found
  else
    __fish_complete_path (commandline -ct)
  end
end
complete -c bvconn -f -a '(__bvconn_complete)'
)";

bool takes_class(std::string_view command) {
  return command == "list" || command == "describe";
}

bool takes_operation(std::string_view command) {
  return command == "call" || command == "describe" || command == "skeleton" || command == "parity";
}

bool takes_arguments(std::string_view command) {
  return command == "call" || command == "parity";
}

std::vector<std::string> operations_of(const ClassInfo& info) {
  std::vector<std::string> paths;
  for (const Member& member : info.members) {
    if (member.callable()) paths.push_back(info.name + "." + member.name);
  }
  return paths;
}

/// Classes, and once one is named its operations.
std::vector<std::string> paths_for(std::string_view command, std::string_view begun) {
  if (const std::size_t dot = begun.find('.'); dot != std::string_view::npos) {
    const ClassInfo* info = automation::find_class(begun.substr(0, dot));
    return info != nullptr ? operations_of(*info) : std::vector<std::string>();
  }
  std::vector<std::string> paths;
  for (const std::string& name : class_names()) {
    const bool continues = !operations_of(*automation::find_class(name)).empty();
    if (takes_class(command)) paths.push_back(name);
    if (takes_operation(command) && continues) paths.push_back(name + ".");
  }
  return paths;
}

/// The arguments that are not given yet.
std::vector<std::string> arguments_for(std::string_view path,
                                       const std::vector<std::string>& given) {
  std::vector<std::string> names;
  const std::size_t dot = path.find('.');
  const ClassInfo* info = automation::find_class(path.substr(0, dot));
  const Member* member =
      info != nullptr && dot != std::string_view::npos ? info->find(path.substr(dot + 1)) : nullptr;
  if (member == nullptr) return names;
  for (const automation::Argument& argument : member->arguments) {
    const bool is_given = std::any_of(given.begin(), given.end(), [&](const std::string& word) {
      return word.starts_with(argument.name + "=") || word.starts_with(argument.name + ":=");
    });
    if (!is_given) names.push_back(argument.name + "=");
  }
  return names;
}

/// What can stand behind an option; nothing for a file, which the shell completes itself.
std::vector<std::string> values_of(std::string_view option) {
  if (option == "--output") return {"tree", "json", "xml", "raw"};
  return option == "--profile" ? profile_names() : std::vector<std::string>();
}

std::vector<std::string> setting_names() {
  std::vector<std::string> names;
  for (const LibrarySetting& setting : library_settings()) names.emplace_back(setting.name);
  return names;
}

std::vector<std::string> option_names(const CommandWords& command) {
  std::vector<std::string> names;
  for (const OptionWords& option : command.options) names.push_back(option.name);
  return names;
}

bool takes_value(const CommandWords& command, std::string_view name) {
  return std::any_of(command.options.begin(), command.options.end(), [&](const OptionWords& each) {
    return each.takes_value && each.name == name;
  });
}

/// "--output=tree" and so on, for a word that is begun so.
std::vector<std::string> joined_values(std::string_view option) {
  std::vector<std::string> words;
  for (const std::string& value : values_of(option)) {
    words.push_back(std::string(option) + "=" + value);
  }
  return words;
}

/// The words of a command line without its options and their values.
std::vector<std::string> without_options(const CommandWords& command,
                                         const std::vector<std::string>& words) {
  std::vector<std::string> rest;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (takes_value(command, words[i])) {
      ++i;
    } else if (!words[i].starts_with('-')) {
      rest.push_back(words[i]);
    }
  }
  return rest;
}

/// What can follow the subcommand; `given` are the whole words behind it.
std::vector<std::string> continuations(const CommandWords& command,
                                       const std::vector<std::string>& given,
                                       const std::string& begun) {
  if (!given.empty() && takes_value(command, given.back())) return values_of(given.back());
  if (begun.starts_with('-')) {
    const std::size_t equals = begun.find('=');
    return equals == std::string::npos ? option_names(command)
                                       : joined_values(begun.substr(0, equals));
  }
  const std::vector<std::string> places = without_options(command, given);
  if (places.empty() && command.name == "completion") return {"bash", "zsh", "fish"};
  if (places.empty() && !command.subcommands.empty()) return command.subcommands;
  const bool names_setting = places.size() == 1 && command.name == "settings";
  if (names_setting && places.front() != "list") return setting_names();
  const bool names_path = takes_class(command.name) || takes_operation(command.name);
  if (places.empty() && names_path) return paths_for(command.name, begun);
  return !places.empty() && takes_arguments(command.name) ? arguments_for(places.front(), places)
                                                          : std::vector<std::string>();
}

std::vector<std::string> candidates(const std::vector<std::string>& words,
                                    const std::vector<CommandWords>& commands) {
  if (words.size() > 1) {
    for (const CommandWords& each : commands) {
      if (each.name != words.front()) continue;
      return continuations(each, {words.begin() + 1, words.end() - 1}, words.back());
    }
    return {};
  }
  std::vector<std::string> names;
  for (const CommandWords& each : commands) names.push_back(each.name);
  return names;
}

}  // namespace

int run_completion(const std::string& shell, std::ostream& out, std::ostream& err) {
  if (shell == "bash") {
    out << kBash;
  } else if (shell == "zsh") {
    out << kZsh;
  } else if (shell == "fish") {
    out << kFish;
  } else {
    err << "bvconn: completion: bash, zsh or fish is expected, not " << shell
        << did_you_mean(shell, {"bash", "zsh", "fish"}) << '\n';
    return kNotUnderstood;
  }
  out.flush();
  return out ? kDone : kFailed;
}

std::vector<std::string> completions(const std::vector<std::string>& words,
                                     const std::vector<CommandWords>& commands) {
  std::vector<std::string> names = candidates(words, commands);
  const std::string begun = words.empty() ? "" : words.back();
  std::erase_if(names, [&](const std::string& name) { return !name.starts_with(begun); });
  return names;
}

}  // namespace bvconn::tool
