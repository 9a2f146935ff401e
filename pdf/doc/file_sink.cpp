// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/file_sink.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

// The rows of small pictures are a few bytes each; a call of the system for every one would take
// longer than decoding it. Longer rows than half of this gain nothing from another copy.
constexpr std::size_t gather_bytes = 16 * 1024;

// strerror's text without its buffer that all threads share.
std::string text_of_errno() { return std::generic_category().message(errno); }

// A file of this name that did not exist before, with the rights that the user's mask leaves (the
// ones mkstemp gives would shut out everybody else).
int create_beside(const std::string& path, std::string& temporary) {
  static std::atomic<unsigned> serial = 0;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    temporary = path + "." + std::to_string(::getpid()) + "-" + std::to_string(serial++) + ".part";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
  return -1;
}

}  // namespace

bool CPDFDescriptorSink::write(const void* bytes, std::size_t n) {
  if (!error_.empty()) return false;
  const char* at = static_cast<const char*>(bytes);
  while (n > 0) {
    const ssize_t done = ::write(descriptor_, at, std::min(n, std::size_t{1} << 30));
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) {
      error_ = text_of_errno();
      return false;
    }
    at += done;
    n -= static_cast<std::size_t>(done);
    written_ += done;
  }
  return true;
}

CPDFFileSink::CPDFFileSink(std::string path)
    : path_(std::move(path)), descriptor_(create_beside(path_, temporary_)), bytes_(descriptor_) {
  if (descriptor_ >= 0) return;
  error_ = text_of_errno();
  temporary_.clear();
}

CPDFFileSink::~CPDFFileSink() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

bool CPDFFileSink::fail() {
  if (error_.empty()) error_ = text_of_errno();
  return false;
}

bool CPDFFileSink::pass_on(const void* bytes, std::size_t n) {
  if (bytes_.write(bytes, n)) return true;
  error_ = bytes_.error();
  return false;
}

bool CPDFFileSink::flush() { return pass_on(gathered_.get(), std::exchange(gathered_bytes_, 0)); }

bool CPDFFileSink::write(const void* bytes, std::size_t n) {
  if (descriptor_ < 0 || !error_.empty()) return false;
  if (gathered_bytes_ + n > gather_bytes && !flush()) return false;
  if (n > gather_bytes / 2) return flush() && pass_on(bytes, n);
  if (gathered_ == nullptr) gathered_.reset(new (std::nothrow) unsigned char[gather_bytes]);
  if (gathered_ == nullptr) return pass_on(bytes, n);
  std::memcpy(gathered_.get() + gathered_bytes_, bytes, n);
  gathered_bytes_ += n;
  return true;
}

bool CPDFFileSink::commit() {
  if (descriptor_ < 0 || !error_.empty() || !flush()) return false;
  // Some file systems report a full disk only here.
  const int closed = ::close(std::exchange(descriptor_, -1));
  if (closed != 0) return fail();
  if (::rename(temporary_.c_str(), path_.c_str()) != 0) return fail();
  temporary_.clear();
  return true;
}
