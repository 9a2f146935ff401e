// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "tests/support/temporary_folder.h"

struct ProgramRun {
  int exit_code = -1;  ///< That of a shell: above 128 where it died of a signal.
  std::string out, err;
};

/// Runs a program to its end; its words hold no apostrophe. Standard output goes to `out_path` where
/// one is given.
inline ProgramRun run_program(const std::vector<std::string>& words, const std::string& input = "", const std::string& out_path = "") {
  const TemporaryFolder folder;
  const std::string in = folder.path() / "in", err = folder.path() / "err";
  const std::string out = out_path.empty() ? (folder.path() / "out").string() : out_path;
  write_file(in, input);
  std::string command;
  for (const std::string& word : words) command += "'" + word + "' ";
  const int status = std::system((command + "<'" + in + "' >'" + out + "' 2>'" + err + "'").c_str());
  return {WEXITSTATUS(status), out_path.empty() ? file_content(out) : "", file_content(err)};
}
