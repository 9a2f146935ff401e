// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/names.h"

#include <gtest/gtest.h>

namespace {

TEST(Names, FoldersStayApartAndInside) {
  FolderNames names;
  const char* const cases[][2] = {
      {"a.pdf", "a"}, {"x/a.PDF", "a-2"},     {"a-2.pdf", "a-2-2"},   {"a", "a-3"},     {"-", "stdin"},
      {"..", "file"}, {"x/...pdf", "file-2"}, {"a.tar.pdf", "a.tar"}, {"x/", "file-3"},
  };
  for (const auto& [file, folder] : cases) EXPECT_EQ(names.take(file), folder) << file;
}

}  // namespace
