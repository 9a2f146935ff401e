// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// What there is to say about the commands. Everything that shows it (--help, the manual page, the
// completion of the shells) is made from this.

struct OptionHelp {
  std::vector<std::string> names;  ///< "-f", "--first"; the name of the words for a positional one.
  std::string value;               ///< "PAGE", or the words to choose from, "png|pam"; or empty.
  std::string text;
  bool required = false;
  bool positional = false;
  bool several = false;  ///< A positional one that takes more than one word.
  bool common = false;   ///< Every command has it.

  /// "-f, --first PAGE".
  std::string title() const;
  /// What the value is one of; empty where it is no choice.
  std::vector<std::string> choices() const;
};

struct HelpItem {
  std::string term, text;
};

/// A paragraph, then items, then commands to type, of which each section has what it needs.
struct HelpSection {
  std::string title, text;
  std::vector<HelpItem> items;
  std::vector<std::string> commands;
};

struct CommandHelp {
  std::string name;  ///< "extract"; empty for the program itself.
  std::string text;
  std::vector<OptionHelp> options;
  std::vector<HelpSection> sections;

  /// "pdfbmp extract [OPTIONS] -o DIR FILE...".
  std::string usage() const;
};

/// What is said below the options of a command, or of the program ("").
std::vector<HelpSection> help_sections(const std::string& command);

/// The text of --help, up to 80 columns wide. The program's has the commands as well.
std::string help_page(const CommandHelp& command, const std::vector<CommandHelp>& subcommands);

// Files of other programs; the first of `commands` is the program itself.

std::string manual_page(const std::vector<CommandHelp>& commands, const std::string& version);
std::string bash_completion(const std::vector<CommandHelp>& commands);
std::string zsh_completion(const std::vector<CommandHelp>& commands);
