// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// A file in the system's temporary folder, removed with the object at the latest.
class TemporaryFile {
 public:
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int descriptor() const { return descriptor_; }  ///< -1 where there is no file.
  const std::string& path() const { return path_; }
  const std::string& error() const { return error_; }  ///< Why there is none.

  /// Removes the name; the file lives on as long as something has it open.
  void unlink();

 private:
  std::string path_;
  int descriptor_ = -1;
  std::string error_;
};
