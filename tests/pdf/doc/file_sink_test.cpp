// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/file_sink.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <unistd.h>

#include "tests/support/temporary_folder.h"

namespace {

std::string content_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(FileSink, FileAppearsWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const std::string path = folder.path() / "picture.png";
  {
    CPDFFileSink sink(path);
    EXPECT_TRUE(sink.write("abc", 3));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  for (const char* text : {"first", "second"}) {
    CPDFFileSink sink(path);
    EXPECT_TRUE(sink.write(text, std::char_traits<char>::length(text)));
    EXPECT_TRUE(sink.commit());
    EXPECT_EQ(content_of(path), text);
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
  EXPECT_EQ(content_of(folder.path() / "pieces"), all);
}

TEST(FileSink, FailuresAreToldAndLeaveNothing) {
  const TemporaryFolder folder;
  CPDFFileSink nowhere(folder.path() / "missing" / "picture.png");
  EXPECT_FALSE(nowhere.write("abc", 3));
  EXPECT_FALSE(nowhere.commit());
  EXPECT_NE(nowhere.error(), "");

  // The name is taken by a folder that is not empty.
  std::filesystem::create_directories(folder.path() / "taken" / "inside");
  {
    CPDFFileSink taken(folder.path() / "taken");
    EXPECT_TRUE(taken.write("abc", 3));
    EXPECT_FALSE(taken.commit());
    EXPECT_NE(taken.error(), "");
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
