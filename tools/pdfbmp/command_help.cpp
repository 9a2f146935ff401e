// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/command_help.h"

#include <sstream>

namespace {

constexpr std::size_t page_width = 80, text_column = 27;

// The words of a text in lines that begin at `column`; the first line goes on where `line` ends.
std::string filled(std::string line, const std::string& text, std::size_t column) {
  std::string page;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (line.size() > column && line.size() + 1 + word.size() >= page_width) {
      page += line + "\n";
      line.clear();
    }
    line += line.size() < column ? std::string(column - line.size(), ' ') : line.empty() ? "" : " ";
    line += word;
  }
  return page + line + "\n";
}

std::string item(const std::string& term, const std::string& text, std::size_t column) {
  const std::string line = "  " + term;
  if (line.size() + 1 < column) {
    return filled(line + std::string(column - line.size() - 1, ' '), text, column);
  }
  return line + "\n" + filled("", text, column);
}

std::string section_text(const HelpSection& section) {
  std::string page = "\n" + section.title + ":\n";
  if (!section.text.empty()) page += filled("", section.text, 0);
  std::size_t longest = 0;
  for (const HelpItem& entry : section.items) longest = std::max(longest, entry.term.size());
  for (const HelpItem& entry : section.items) page += item(entry.term, entry.text, longest + 4);
  for (const std::string& command : section.commands) page += "  " + command + "\n";
  return page;
}

std::string option_list(const char* title, const CommandHelp& command, bool common) {
  std::string page;
  for (const OptionHelp& option : command.options) {
    if (option.common == common) page += item(option.title(), option.text, text_column);
  }
  return page.empty() ? "" : std::string("\n") + title + ":\n" + page;
}

}  // namespace

std::string OptionHelp::title() const {
  std::string title;
  for (const std::string& name : names) title += (title.empty() ? "" : ", ") + name;
  return title + (several ? "..." : positional || value.empty() ? "" : " " + value);
}

std::vector<std::string> OptionHelp::choices() const {
  std::vector<std::string> words;
  if (value.find('|') == std::string::npos) return words;
  std::istringstream words_of_value(value);
  for (std::string word; std::getline(words_of_value, word, '|');) words.push_back(word);
  return words;
}

std::string CommandHelp::usage() const {
  std::string line = "pdfbmp " + (name.empty() ? "COMMAND" : name) + " [OPTIONS]", positional;
  for (const OptionHelp& option : options) {
    if (option.positional) positional += " " + option.title();
    if (option.required && !option.positional) line += " " + option.names[0] + " " + option.value;
  }
  return line + positional;
}

std::string help_page(const CommandHelp& command, const std::vector<CommandHelp>& subcommands) {
  std::string page = "Usage: " + command.usage() + "\n\n" + filled("", command.text + ".", 0);
  if (!subcommands.empty()) page += "\nCommands:\n";
  for (const CommandHelp& sub : subcommands) page += item(sub.name, sub.text, text_column);
  page += option_list("Options", command, false);
  page += option_list("Options of every command", command, true);
  for (const HelpSection& section : command.sections) page += section_text(section);
  return page;
}
