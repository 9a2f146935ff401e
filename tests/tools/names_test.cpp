// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/names.h"

#include <gtest/gtest.h>

namespace {

TEST(Names, OfImages) {
  CPDFFoundImage found;
  found.page = 3;
  found.object = 12;
  EXPECT_EQ(image_file_name(found, 1), "0003-001-o12");
  found.page = 12345;
  found.kind = CPDFImageKind::inline_image;
  EXPECT_EQ(image_file_name(found, 1000), "12345-1000-inline");
}

TEST(Names, FoldersStayApartAndInside) {
  FolderNames names;
  const char* const cases[][2] = {
      {"a.pdf", "a"}, {"x/a.PDF", "a-2"},     {"a-2.pdf", "a-2-2"},   {"a", "a-3"},     {"-", "stdin"},
      {"..", "file"}, {"x/...pdf", "file-2"}, {"a.tar.pdf", "a.tar"}, {"x/", "file-3"},
  };
  for (const auto& [file, folder] : cases) EXPECT_EQ(names.take(file), folder) << file;
}

}  // namespace
