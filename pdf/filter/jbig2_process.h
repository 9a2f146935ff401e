// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <sys/types.h>

/// A running helper program whose standard input and output are one socket. Nothing here raises a
/// signal, and no other child of the process is waited for.
class CPDFHelperProcess {
 public:
  CPDFHelperProcess() = default;
  ~CPDFHelperProcess();  ///< Ends the program where it still runs.
  CPDFHelperProcess(const CPDFHelperProcess&) = delete;
  CPDFHelperProcess& operator=(const CPDFHelperProcess&) = delete;

  bool start(const char* path);

  /// Sends all of `n` bytes; false where the program does not listen any more.
  bool send(const void* bytes, std::size_t n);

  /// Tells the program that there is no more to come.
  void end_input();

  /// Receives until `n` bytes have come, or there are no more; returns how many came.
  std::size_t receive(void* dst, std::size_t n);

 private:
  int socket_ = -1;
  pid_t process_ = -1;
};
