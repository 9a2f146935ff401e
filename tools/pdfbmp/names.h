// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>

#include "pdf/doc/found_image.h"

/// The name of an image's file without its suffix: "0003-001-o12" for the first image on page 3,
/// object 12; "0003-002-inline" for an inline image.
std::string image_file_name(const CPDFFoundImage& found, int number);

/// Names of folders for input files, each given once.
class FolderNames {
 public:
  /// The file's own name without folder and ".pdf"; with "-2", "-3", ... where it is taken.
  std::string take(const std::string& file);

 private:
  std::set<std::string> taken_;
};
