// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/names.h"

#include <cstdio>
#include <filesystem>

std::string image_file_name(const CPDFFoundImage& found, int number) {
  char text[64];
  if (found.kind == CPDFImageKind::inline_image) {
    std::snprintf(text, sizeof(text), "%04d-%03d-inline", found.page, number);
  } else {
    std::snprintf(text, sizeof(text), "%04d-%03d-o%d", found.page, number, found.object);
  }
  return text;
}

std::string FolderNames::take(const std::string& file) {
  const std::filesystem::path name = std::filesystem::path(file).filename();
  const bool is_pdf = name.extension() == ".pdf" || name.extension() == ".PDF";
  std::string wanted = file == "-" ? "stdin" : (is_pdf ? name.stem() : name).string();
  // These would lead out of the output folder, or into it itself.
  if (wanted.empty() || wanted == "." || wanted == "..") wanted = "file";
  std::string given = wanted;
  for (int i = 2; !taken_.insert(given).second; ++i) given = wanted + "-" + std::to_string(i);
  return given;
}
