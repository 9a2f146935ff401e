// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/source.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

class FileSource : public CPDFSource {
 public:
  FileSource(int file, std::int64_t size) : file_(file), size_(size) {}
  ~FileSource() override { ::close(file_); }
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  std::int64_t size() const override { return size_; }

  std::int64_t read_at(std::int64_t offset, void* dst, std::int64_t n) const override {
    if (offset < 0 || offset >= size_ || n < 1) return 0;
    auto* out = static_cast<char*>(dst);
    n = std::min(n, size_ - offset);
    std::int64_t done = 0;
    while (done < n) {
      const ssize_t k = ::pread(file_, out + done, static_cast<std::size_t>(n - done),
                                static_cast<off_t>(offset + done));
      if (k < 0 && errno == EINTR) continue;
      if (k <= 0) break;
      done += k;
    }
    return done;
  }

 private:
  int file_;
  std::int64_t size_;
};

class MemorySource : public CPDFSource {
 public:
  explicit MemorySource(std::string bytes) : bytes_(std::move(bytes)) {}

  std::int64_t size() const override { return static_cast<std::int64_t>(bytes_.size()); }

  std::int64_t read_at(std::int64_t offset, void* dst, std::int64_t n) const override {
    if (offset < 0 || offset >= size() || n < 1) return 0;
    n = std::min(n, size() - offset);
    std::memcpy(dst, bytes_.data() + offset, static_cast<std::size_t>(n));
    return n;
  }

 private:
  std::string bytes_;
};

std::string reason(int error) { return std::generic_category().message(error); }

}  // namespace

namespace pdfbmp {

std::shared_ptr<CPDFSource> open_file_source(const std::string& path, std::string& error) {
  int file = -1;
  try {
    // A pipe without a writer must not keep the caller waiting.
    file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
      error = reason(errno);
      return nullptr;
    }
    struct stat about = {};
    if (::fstat(file, &about) != 0) {
      error = reason(errno);
    } else if (!S_ISREG(about.st_mode)) {
      error = "not a regular file";
    } else {
      auto source = std::make_shared<FileSource>(file, std::int64_t{about.st_size});
      return source;
    }
  } catch (...) {
    error.clear();  // Memory failed; a short text needs none.
    error = "no memory";
  }
  if (file >= 0) ::close(file);
  return nullptr;
}

std::shared_ptr<CPDFSource> make_memory_source(std::string bytes) {
  try {
    return std::make_shared<MemorySource>(std::move(bytes));
  } catch (...) {
    return nullptr;
  }
}

}  // namespace pdfbmp
