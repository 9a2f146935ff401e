// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/input.h"

#include <cerrno>
#include <new>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "pdf/doc/file_sink.h"
#include "tools/pdfbmp/memory.h"
#include "tools/pdfbmp/temporary_file.h"

namespace {

bool copy_standard_input(int descriptor, std::string& error) {
  CPDFDescriptorSink sink(descriptor);
  std::vector<char> buffer(64 * 1024);
  for (;;) {
    const ssize_t n = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (n == 0) return true;
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      error = std::generic_category().message(errno);
      return false;
    }
    if (!sink.write(buffer.data(), static_cast<std::size_t>(n))) {
      error = "cannot be kept in a temporary file: " + sink.error();
      return false;
    }
  }
}

// The temporary file has no name any more once it is open as a source.
std::shared_ptr<CPDFSource> open_standard_input(std::string& error) {
  const TemporaryFile file;
  if (file.descriptor() < 0) {
    error = file.error();
    return nullptr;
  }
  if (!copy_standard_input(file.descriptor(), error)) return nullptr;
  return pdfbmp::open_file_source(file.path(), error);
}

}  // namespace

std::unique_ptr<CPDFDocument> open_input(const std::string& file, const Options& options,
                                         Outcome& outcome, std::string& error) {
  outcome = Outcome::unreadable;
  memory_ran_out();  // Of an image before: that is told already.
  const std::shared_ptr<CPDFSource> source =
      file == "-" ? open_standard_input(error) : pdfbmp::open_file_source(file, error);
  if (source == nullptr) return nullptr;

  CPDFOpenOptions open_options;
  open_options.password = options.password;
  open_options.limits = options.limits;
  CPDFOpenStatus status = CPDFOpenStatus::ok;
  std::unique_ptr<CPDFDocument> document;
  try {
    document = CPDFDocument::open(source, open_options, status, error);
  } catch (const std::bad_alloc&) {
    error = memory_problem(options);
    return nullptr;
  }
  if (document != nullptr) {
    outcome = Outcome::ok;
  } else if (memory_ran_out()) {
    error = memory_problem(options);
  } else if (status == CPDFOpenStatus::needs_password) {
    outcome = Outcome::needs_password;
  }
  return document;
}
