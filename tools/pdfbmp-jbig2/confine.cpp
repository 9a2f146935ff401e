// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp-jbig2/confine.h"

#include <algorithm>
#include <cstddef>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// A stricter limit that the caller has set stays.
bool limit(decltype(RLIMIT_CPU) what, rlim_t most) {
  rlimit now = {};
  if (getrlimit(what, &now) != 0) return false;
  const rlim_t least = std::min(most, now.rlim_max);
  const rlimit both = {least, least};
  return setrlimit(what, &both) == 0;
}

#if defined(__x86_64__)
constexpr unsigned architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned architecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned architecture = 0;  // No list of calls; the limits hold nevertheless.
#endif

bool allow_few_calls() {
  if (architecture == 0) return true;
  const auto load = [](std::size_t offset) {
    return sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<unsigned>(offset)};
  };
  // Each test of a call jumps over the verdict that follows it.
  const auto allow = [](unsigned call) {
    return sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, call};
  };
  const sock_filter yes = {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW};
  const sock_filter no = {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_KILL_PROCESS};
  sock_filter program[] = {
      load(offsetof(seccomp_data, arch)),
      {BPF_JMP | BPF_JEQ | BPF_K, 1, 0, architecture},
      no,
      load(offsetof(seccomp_data, nr)),
      allow(SYS_read),
      yes,
      allow(SYS_write),
      yes,
      allow(SYS_brk),
      yes,
      allow(SYS_mmap),
      yes,
      allow(SYS_munmap),
      yes,
      allow(SYS_mremap),
      yes,
      allow(SYS_madvise),
      yes,
      allow(SYS_getrandom),
      yes,  // The allocator's.
      allow(SYS_setitimer),
      yes,
      allow(SYS_rt_sigreturn),
      yes,
      allow(SYS_exit),
      yes,
      allow(SYS_exit_group),
      yes,
      no,
  };
  const sock_fprog filter = {sizeof program / sizeof *program, program};
  return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

}  // namespace

bool confine(std::uint64_t max_bytes, std::uint64_t max_seconds) {
  constexpr std::uint64_t program_bytes = 64 << 20;
  if (syscall(SYS_close_range, 3U, ~0U, 0U) != 0) {
    for (int file = 3; file < 1024; ++file) close(file);
  }
  bool good = limit(RLIMIT_CPU, max_seconds) && limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_CORE, 0) &&
              limit(RLIMIT_NOFILE, 0) && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
#ifndef PDFBMP_SANITIZED
  // A sanitizer reserves terabytes and makes calls of its own.
  good = good && limit(RLIMIT_AS, max_bytes + program_bytes) && allow_few_calls();
#else
  (void)max_bytes, (void)program_bytes, (void)&allow_few_calls;
#endif
  return good;
}
