// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Completion of the command line in bash and in zsh.
#include "tools/pdfbmp/command_help.h"

namespace {

std::string joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

// A word in single quotes, for either shell.
std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
  return result + "'";
}

std::vector<std::string> option_names(const CommandHelp& command) {
  std::vector<std::string> names;
  for (const OptionHelp& option : command.options) {
    if (!option.positional) names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

std::string bash_value(const OptionHelp& option) {
  if (!option.choices().empty()) {
    return "mapfile -t COMPREPLY < <(compgen -W " + quoted(joined(option.choices(), " ")) +
           " -- \"$cur\")";
  }
  if (option.value == "FILE") return "mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")";
  if (option.value == "DIR") return "mapfile -t COMPREPLY < <(compgen -d -- \"$cur\")";
  return ":";
}

// In zsh's specifications a colon ends a message and a bracket the description.
std::string zsh_text(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == ':' || c == '[' || c == ']' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string zsh_action(const OptionHelp& option) {
  if (option.positional) return "_files -g \"*.(#i)pdf\"";
  if (!option.choices().empty()) return "(" + joined(option.choices(), " ") + ")";
  if (option.value == "FILE") return "_files";
  return option.value == "DIR" ? "_files -/" : " ";
}

std::string zsh_option(const OptionHelp& option) {
  if (option.positional) {
    return quoted((option.several ? "*:" : "1:") + option.names[0] + ":" + zsh_action(option));
  }
  std::string rest = "[" + zsh_text(option.text) + "]";
  if (!option.value.empty()) {
    const bool is_choice = !option.choices().empty();
    rest += ":" + std::string(is_choice ? "choice" : option.value) + ":" + zsh_action(option);
  }
  if (option.names.size() == 1) return quoted(option.names[0] + rest);
  return quoted("(" + joined(option.names, " ") + ")") + "{" + joined(option.names, ",") + "}" +
         quoted(rest);
}

std::string zsh_options(const CommandHelp& command, const std::string& indent) {
  std::string text;
  for (const OptionHelp& option : command.options) text += " \\\n" + indent + zsh_option(option);
  return text;
}

}  // namespace

std::string bash_completion(const std::vector<CommandHelp>& commands) {
  std::vector<std::string> names;
  std::string values, options;
  for (const CommandHelp& command : commands) {
    if (!command.name.empty()) names.push_back(command.name);
    for (const OptionHelp& option : command.options) {
      if (option.positional || option.value.empty()) continue;
      std::vector<std::string> patterns;
      for (const std::string& name : option.names) patterns.push_back(command.name + ":" + name);
      values += "    " + joined(patterns, " | ") + ") " + bash_value(option) + "; return ;;\n";
    }
    options += "      " + (command.name.empty() ? "''" : command.name) +
               ") words=" + quoted(joined(option_names(command), " ")) + " ;;\n";
  }
  return R"(# Completion of pdfbmp for bash.
_pdfbmp() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command='' word words
  COMPREPLY=()
  # --option=value comes as three words.
  if [[ $cur == '=' ]]; then
    cur=
  elif [[ $prev == '=' ]]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
    )" + joined(names, " | ") +
         R"()
      command=$word
      break ;;
    esac
  done
  case $command:$prev in
)" + values +
         R"(  esac
  if [[ $cur == -* ]]; then
    case $command in
)" + options +
         R"(    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W ')" +
         joined(names, " ") + R"(' -- "$cur")
  else
    mapfile -t COMPREPLY < <(compgen -d -- "$cur"; compgen -f -X '!*.[pP][dD][fF]' -- "$cur")
  fi
}
complete -o filenames -F _pdfbmp pdfbmp
)";
}

std::string zsh_completion(const std::vector<CommandHelp>& commands) {
  std::string names, cases;
  for (std::size_t i = 1; i < commands.size(); ++i) {
    const CommandHelp& command = commands[i];
    names += "\n      " + quoted(command.name + ":" + zsh_text(command.text));
    cases += "        " + command.name + ")\n          _arguments -s" +
             zsh_options(command, "            ") + " ;;\n";
  }
  return R"(#compdef pdfbmp
# Completion of pdfbmp for zsh.
_pdfbmp() {
  local state line ret=1
  typeset -A opt_args
  _arguments -C)" +
         zsh_options(commands.front(), "    ") + R"( \
    '1:command:->command' '*::argument:->argument' && ret=0
  case $state in
    command)
      local -a commands=()" +
         names + R"()
      _describe command commands && ret=0 ;;
    argument)
      case $words[1] in
)" + cases +
         R"(      esac && ret=0 ;;
  esac
  return ret
}
_pdfbmp "$@"
)";
}
