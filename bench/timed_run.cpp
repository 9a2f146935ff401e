// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "bench/timed_run.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char** environ;

namespace {

/// Waits for a child of this process to end, without reaping it. SIGCHLD is blocked.
bool ends_within(pid_t pid, double limit) {
  using clock = std::chrono::steady_clock;
  const auto end = clock::now() + std::chrono::duration<double>(limit);
  sigset_t child;
  sigemptyset(&child);
  sigaddset(&child, SIGCHLD);
  for (;;) {
    siginfo_t info = {};
    if (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0) return true;
    if (info.si_pid == pid) return true;
    const std::chrono::duration<double> left = end - clock::now();
    if (left.count() <= 0) return false;
    timespec wait = {};
    wait.tv_sec = static_cast<time_t>(left.count());
    wait.tv_nsec = static_cast<long>((left.count() - static_cast<double>(wait.tv_sec)) * 1e9);
    sigtimedwait(&child, nullptr, &wait);
  }
}

}  // namespace

TimedRun timed_run(const std::vector<std::string>& words, const std::string& folder, double limit) {
  sigset_t child, before;
  sigemptyset(&child);
  sigaddset(&child, SIGCHLD);
  sigprocmask(SIG_BLOCK, &child, &before);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &before);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (std::string& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  TimedRun run;
  pid_t pid = 0;
  const auto start = std::chrono::steady_clock::now();
  const int spawned =
      posix_spawn(&pid, words[0].c_str(), &actions, &attributes, arguments.data(), environ);
  if (spawned == 0) {
    run.stopped = !ends_within(pid, limit);
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (run.stopped) kill(pid, SIGKILL);
    int status = 0;
    rusage usage = {};
    if (wait4(pid, &status, 0, &usage) == pid) {
      run.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
      run.peak_mb = static_cast<double>(usage.ru_maxrss) / 1024;
    }
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  return run;
}

std::string find_program(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string candidate = folder + "/" + name;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return {};
}
