// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cerrno>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "pdf/doc/file_sink.h"
#include "tools/pdfbmp/output.h"
#include "tools/pdfbmp/tar_writer.h"
#include "tools/pdfbmp/temporary_file.h"

namespace {

// The stream that all members share.
struct TarStream {
  CPDFDescriptorSink out{STDOUT_FILENO};
  TarWriter tar{out};

  bool report(bool done, std::string& error) const {
    if (!done && error.empty()) error = "standard output: " + out.error();
    return done;
  }
};

// A member's size stands before its bytes, so these wait in a temporary file.
class TarMember final : public OutputFile {
 public:
  TarMember(TarStream& stream, const std::string& name) : stream_(stream), name_(name) {
    spool_.unlink();
  }

  CPDFByteSink& sink() override { return spooled_; }

  bool commit(std::string& error) override {
    error = failure();
    if (!error.empty()) return false;
    const bool done =
        stream_.tar.begin(name_, spooled_.written()) && copy(error) && stream_.tar.end();
    return stream_.report(done, error);
  }

  std::string failure() const override {
    if (spool_.descriptor() < 0) return spool_.error();
    return spooled_.error().empty() ? "" : "temporary file: " + spooled_.error();
  }

 private:
  bool copy(std::string& error) {
    std::vector<char> buffer(64 * 1024);
    std::int64_t at = 0;
    while (at < spooled_.written()) {
      const ssize_t n = ::pread(spool_.descriptor(), buffer.data(), buffer.size(), at);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        error = "temporary file: " + std::generic_category().message(n < 0 ? errno : EIO);
        return false;
      }
      if (!stream_.tar.write(buffer.data(), static_cast<std::size_t>(n))) return false;
      at += n;
    }
    return true;
  }

  TarStream& stream_;
  std::string name_;
  TemporaryFile spool_;
  CPDFDescriptorSink spooled_{spool_.descriptor()};
};

class TarOutput final : public Output {
 public:
  bool prepare(std::string& error) override {
    if (::isatty(STDOUT_FILENO) == 0) return true;
    error = "a tar stream is not for a terminal";
    return false;
  }

  std::unique_ptr<OutputFile> create(const std::string& name, std::string& error) override {
    auto member = std::make_unique<TarMember>(stream_, name);
    error = member->failure();
    if (error.empty()) return member;
    return nullptr;
  }

  bool add_line(const std::string& line, std::string&) override {
    index_ += line;
    return true;
  }

  bool finish(std::string& error) override {
    TarWriter& tar = stream_.tar;
    const bool done = tar.begin("index.jsonl", static_cast<std::int64_t>(index_.size())) &&
                      tar.write(index_.data(), index_.size()) && tar.end() && tar.finish();
    return stream_.report(done, error);
  }

 private:
  TarStream stream_;
  std::string index_;
};

}  // namespace

std::unique_ptr<Output> make_tar_output() { return std::make_unique<TarOutput>(); }
