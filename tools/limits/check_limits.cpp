// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// check_limits TOOL [--bombs]: runs the tool on files that ask for far more than they hold, then on
// honestly large ones, and prints what each took. Fails where a limit does not hold or gets in the
// way. The times are of an idle machine and a release build.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "tests/support/temporary_folder.h"
#include "tools/limits/bombs.h"

namespace {

constexpr double most_seconds = 2;
constexpr long most_megabytes = 256;

struct Run {
  int exit_code = -1;
  double seconds = 0;
  long megabytes = 0;
  std::string message;  // The line of standard error that holds the words, else the first.
};

Run run(std::vector<std::string> words, const std::string& errors, const std::string& wanted) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const auto begin = std::chrono::steady_clock::now();
  Run result;
  pid_t process = -1;
  int status = 0;
  rusage usage = {};
  if (posix_spawn(&process, arguments[0], &files, nullptr, arguments.data(), environ) == 0 &&
      wait4(process, &status, 0, &usage) == process && WIFEXITED(status)) {
    result.exit_code = WEXITSTATUS(status);
  }
  posix_spawn_file_actions_destroy(&files);
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  result.megabytes = usage.ru_maxrss / 1024;
  const std::string text = file_content(errors);
  const std::size_t found = std::min(text.find(wanted), text.size());
  const std::size_t begin_of_line =
      found == text.size() || found == 0 ? 0 : text.rfind('\n', found) + 1;
  result.message = text.substr(begin_of_line, text.find('\n', begin_of_line) - begin_of_line);
  return result;
}

// In a process of its own: a new program's greatest memory begins with that of who started it.
void make_aside(const LimitCase& one, const std::string& file) {
  const pid_t maker = fork();
  if (maker == 0) {
    write_file(file, one.make());
    _exit(0);
  }
  waitpid(maker, nullptr, 0);
}

// Whether all were as they should be.
bool check(const std::string& tool, const std::vector<LimitCase>& cases, bool measured) {
  const TemporaryFolder folder;
  const std::string file = folder.path() / "case.pdf", errors = folder.path() / "errors";
  bool good = true;
  for (const LimitCase& one : cases) {
    make_aside(one, file);
    std::vector<std::string> words = {tool, "extract", file, "-o", folder.path() / "out"};
    words.insert(words.end(), one.words.begin(), one.words.end());
    const Run result = run(words, errors, one.message);
    const bool ended_well = one.exit_code == by_speed
                                ? result.exit_code == 0 || result.exit_code == 1
                                : result.exit_code == one.exit_code;
    const bool as_told = ended_well && result.message.find(one.message) != std::string::npos;
    const bool in_bounds =
        !measured || (result.seconds < most_seconds && result.megabytes < most_megabytes);
    std::string said = result.message;
    if (said.find(file) != std::string::npos) said.erase(0, said.find(file) + file.size() + 2);
    std::printf("%-6s %-34s %6.2f s %5ld MB  exit %d  %s\n", as_told && in_bounds ? "ok" : "FAILED",
                one.name.c_str(), result.seconds, result.megabytes, result.exit_code, said.c_str());
    std::fflush(stdout);
    good &= as_told && in_bounds;
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const bool all = argc == 2;
  bool good = check(argv[1], bombs(), all);
  if (all) good &= check(argv[1], large_files(), false);
  return good ? 0 : 1;
}
