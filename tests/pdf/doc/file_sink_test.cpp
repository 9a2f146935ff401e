// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/file_sink.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace {

TEST(FileSink, FileAppearsWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const std::string path = folder.path() / "picture.png";
  {
    CPDFFileSink sink(path);
    EXPECT_TRUE(sink.write("abc", 3));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  for (const std::string text : {"first", "second"}) {
    CPDFFileSink sink(path);
    EXPECT_TRUE(sink.write(text.data(), text.size()) && sink.commit() && file_content(path) == text);
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(FileSink, PiecesOfAnySizeKeepTheirOrder) {
  const TemporaryFolder folder;
  CPDFFileSink sink(folder.path() / "pieces");
  std::string all;
  for (const std::size_t size : {1U, 0U, 8191U, 8192U, 8193U, 5000U, 5000U, 5000U, 5000U, 20000U, 3U}) {
    const std::string piece(size, static_cast<char>('a' + all.size() % 23));
    EXPECT_TRUE(sink.write(piece.data(), piece.size()));
    all += piece;
  }
  EXPECT_TRUE(sink.commit());
  EXPECT_EQ(file_content(folder.path() / "pieces"), all);
}

TEST(FileSink, FailuresAreToldAndLeaveNothing) {
  const TemporaryFolder folder;
  // One name is taken by a folder that is not empty.
  std::filesystem::create_directories(folder.path() / "taken" / "inside");
  for (const char* name : {"missing/picture.png", "taken"}) {
    CPDFFileSink sink(folder.path() / name);
    sink.write("abc", 3);
    EXPECT_FALSE(sink.commit());
    EXPECT_NE(sink.error(), "");
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
