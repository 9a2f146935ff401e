// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "tests/support/temporary_folder.h"

extern char** environ;

inline std::string file_content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::filesystem::path& path, const std::string& content) { std::ofstream(path, std::ios::binary) << content; }

struct ProgramRun {
  int exit_code = -1;  ///< -1 where it was not started or died of a signal.
  std::string out, err;
};

/// Runs a program to its end. Standard output goes to `out_path` where one is given.
inline ProgramRun run_program(std::vector<std::string> words, const std::string& input = "", const std::string& out_path = "") {
  const TemporaryFolder folder;
  const std::string in = folder.path() / "in", err = folder.path() / "err";
  const std::string out = out_path.empty() ? (folder.path() / "out").string() : out_path;
  write_file(in, input);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, out.c_str(), O_WRONLY | O_CREAT, 0666);
  posix_spawn_file_actions_addopen(&files, 2, err.c_str(), O_WRONLY | O_CREAT, 0666);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  ProgramRun run;
  pid_t pid = 0;
  int status = 0;
  const int spawned = posix_spawn(&pid, words[0].c_str(), &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (spawned != 0 || ::waitpid(pid, &status, 0) != pid) return run;
  if (WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
  if (out_path.empty()) run.out = file_content(out);
  run.err = file_content(err);
  return run;
}
