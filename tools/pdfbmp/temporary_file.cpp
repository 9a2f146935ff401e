// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/temporary_file.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

TemporaryFile::TemporaryFile() {
  std::error_code no_folder;
  path_ = (std::filesystem::temp_directory_path(no_folder) / "pdfbmp-XXXXXX").string();
  descriptor_ = ::mkstemp(path_.data());
  if (descriptor_ >= 0) return;
  error_ = "no temporary file: " + std::generic_category().message(errno);
  path_.clear();
}

TemporaryFile::~TemporaryFile() {
  unlink();
  if (descriptor_ >= 0) ::close(descriptor_);
}

void TemporaryFile::unlink() {
  if (!path_.empty()) ::unlink(path_.c_str());
  path_.clear();
}
