#include "completion_command.h"

#include <algorithm>
#include <string_view>

#include "batch.h"
#include "bvconn/automation/interface.h"
#include "nearest_names.h"

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
  bvconn complete -- $words[2..-1] 2>/dev/null
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

std::vector<std::string> candidates(const std::vector<std::string>& words,
                                    const std::vector<CommandWords>& commands) {
  std::vector<std::string> names;
  if (words.size() < 2) {
    for (const CommandWords& each : commands) names.push_back(each.name);
    return names;
  }
  const std::string& command = words.front();
  const std::string& begun = words.back();
  if (begun.starts_with('-')) {
    for (const CommandWords& each : commands) {
      if (each.name == command) names = each.options;
    }
    return names;
  }
  if (command == "completion") return {"bash", "zsh", "fish"};
  const auto path = std::find_if(words.begin() + 1, words.end() - 1, [](const std::string& word) {
    return !word.starts_with('-') && automation::find_class(word.substr(0, word.find('.')));
  });
  if (path == words.end() - 1) {
    return takes_class(command) || takes_operation(command) ? paths_for(command, begun) : names;
  }
  return takes_arguments(command) ? arguments_for(*path, {path + 1, words.end() - 1}) : names;
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
