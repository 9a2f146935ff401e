// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "pdf/doc/raster.h"

/// One file of an output, on its way.
class OutputFile {
 public:
  virtual ~OutputFile() = default;  ///< Without commit() the file leaves no trace.
  virtual CPDFByteSink& sink() = 0;
  virtual std::string failure() const = 0;  ///< Why a write failed; empty where none did.
  virtual bool commit(std::string& error) = 0;
};

/// Where the extracted files go: a folder, or a tar stream. A file may be written by any thread;
/// it takes its place when it is committed, and that is up to one thread.
class Output {
 public:
  virtual ~Output() = default;

  /// Once, before the first file.
  virtual bool prepare(std::string& error) = 0;

  /// `name` may have folders in front, with slashes. Null, with the reason, where it fails.
  virtual std::unique_ptr<OutputFile> create(const std::string& name, std::string& error) = 0;

  /// Takes a line that tells what became of an image or a file, or of nothing at all.
  virtual bool add_line(const std::string& line, std::string& error) = 0;

  /// Once, after the last file.
  virtual bool finish(std::string& error) = 0;
};

/// Files in a folder, made where it is missing; lines go to standard output.
std::unique_ptr<Output> make_folder_output(const std::string& folder);

/// A tar stream on standard output, whose last member is index.jsonl with all lines.
std::unique_ptr<Output> make_tar_output();
