// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jbig2_process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

CPDFHelperProcess::~CPDFHelperProcess() {
  if (socket_ >= 0) close(socket_);
  if (process_ < 0) return;
  // It has nothing to lose, and is waited for by its own number.
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

bool CPDFHelperProcess::start(const char* path) {
  // Closed on exec, so that programs which other threads start do not keep them open.
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  socket_ = ends[0];

  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&files);
  posix_spawnattr_init(&attributes);
  posix_spawn_file_actions_adddup2(&files, ends[1], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  // Signals as a fresh program has them, whatever the host does with its own.
  sigset_t all, none;
  sigfillset(&all);
  sigemptyset(&none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

  static char name[] = "pdfbmp-jbig2";
  char* const arguments[] = {name, nullptr};
  char* const environment[] = {nullptr};
  const int error = posix_spawn(&process_, path, &files, &attributes, arguments, environment);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  close(ends[1]);
  if (error == 0) return true;
  process_ = -1;
  return false;
}

bool CPDFHelperProcess::send(const void* bytes, std::size_t n) {
  const auto* at = static_cast<const unsigned char*>(bytes);
  while (n > 0) {
    const ssize_t k = ::send(socket_, at, n, MSG_NOSIGNAL);
    if (k < 0 && errno == EINTR) continue;
    if (k <= 0) return false;
    at += k;
    n -= static_cast<std::size_t>(k);
  }
  return true;
}

void CPDFHelperProcess::end_input() { shutdown(socket_, SHUT_WR); }

std::size_t CPDFHelperProcess::receive(void* dst, std::size_t n) {
  auto* const at = static_cast<unsigned char*>(dst);
  std::size_t done = 0;
  while (done < n) {
    const ssize_t k = recv(socket_, at + done, n - done, 0);
    if (k < 0 && errno == EINTR) continue;
    if (k <= 0) break;
    done += static_cast<std::size_t>(k);
  }
  return done;
}
