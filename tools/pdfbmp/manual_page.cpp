// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The manual page, in the man macros of roff.
#include <cctype>

#include "tools/pdfbmp/command_help.h"

namespace {

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else {
      result += c;
    }
  }
  // A line must not begin like a request.
  return !text.empty() && (text[0] == '.' || text[0] == '\'') ? "\\&" + result : result;
}

std::string upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string item(const std::string& bold, const std::string& text) {
  return ".TP\n\\fB" + escaped(bold) + "\\fR\n" + escaped(text) + "\n";
}

std::string option_item(const OptionHelp& option) {
  std::string names;
  for (const std::string& name : option.names) {
    names += (names.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
  }
  if (option.several) names += "...";
  if (!option.value.empty() && !option.positional)
    names += " \\fI" + escaped(option.value) + "\\fR";
  return ".TP\n" + names + "\n" + escaped(option.text) + "\n";
}

std::string section_text(const HelpSection& section) {
  std::string page;
  if (!section.text.empty()) page += escaped(section.text) + "\n";
  for (const HelpItem& entry : section.items) page += item(entry.term, entry.text);
  for (const std::string& command : section.commands) {
    page += ".PP\n.RS 4\n.nf\n" + escaped(command) + "\n.fi\n.RE\n";
  }
  return page;
}

std::string sections_titled(const char* title, const CommandHelp& command) {
  std::string page;
  for (const HelpSection& section : command.sections) {
    if (section.title == title) page += section_text(section);
  }
  return page;
}

// Sections of the same title in all commands stand once, at the end.
bool is_shared(const HelpSection& section) {
  return section.title == "Examples" || section.title == "Exit status";
}

std::string command_text(const CommandHelp& command) {
  std::string page =
      ".SS \"pdfbmp " + escaped(command.name) + "\"\n" + escaped(command.text) + ".\n";
  for (const OptionHelp& option : command.options) {
    if (!option.common) page += option_item(option);
  }
  for (const HelpSection& section : command.sections) {
    if (is_shared(section)) continue;
    page += ".PP\n\\fB" + escaped(section.title) + "\\fR\n.PP\n" + section_text(section);
  }
  return page;
}

}  // namespace

std::string manual_page(const std::vector<CommandHelp>& commands, const std::string& version) {
  const CommandHelp& program = commands.front();
  std::string page = ".TH PDFBMP 1 \"\" \"pdfbmp " + version + "\" \"User Commands\"\n";
  page += ".SH NAME\npdfbmp \\- " + escaped(program.text) + "\n.SH SYNOPSIS\n.nf\n";
  for (std::size_t i = 1; i < commands.size(); ++i) page += escaped(commands[i].usage()) + "\n";
  for (const OptionHelp& option : program.options) {
    page += "pdfbmp " + escaped(option.names.back()) + "\n";
  }
  page += ".fi\n.SH DESCRIPTION\n" + sections_titled("Description", program);
  page += ".SH COMMANDS\n";
  for (std::size_t i = 1; i < commands.size(); ++i) page += command_text(commands[i]);
  page += ".SH \"OPTIONS OF EVERY COMMAND\"\n";
  for (const OptionHelp& option : commands.back().options) {
    if (option.common) page += option_item(option);
  }
  page += ".SH EXAMPLES\n";
  for (std::size_t i = 1; i < commands.size(); ++i) {
    page += sections_titled("Examples", commands[i]);
  }
  for (const char* title : {"Environment", "Exit status"}) {
    page += ".SH \"" + upper(title) + "\"\n" + sections_titled(title, program);
  }
  return page;
}
