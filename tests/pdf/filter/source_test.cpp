// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "pdf/filter/source_stream.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

class Source : public testing::Test {
 protected:
  Source() : path_(testing::TempDir() + "pdfbmp_source_" + std::to_string(getpid())) { std::ofstream(path_, std::ios::binary) << bytes_; }
  ~Source() override { std::remove(path_.c_str()); }

  const std::string bytes_ = sample_bytes(200000, 5);
  const std::string path_;
};

TEST_F(Source, ReadsAnyPieceOfFilesAndMemory) {
  std::string error;
  for (const auto& source : {pdfbmp::open_file_source(path_, error), pdfbmp::make_memory_source(bytes_)}) {
    ASSERT_NE(source, nullptr) << error;
    EXPECT_EQ(source->size(), 200000);
    const struct {
      std::int64_t offset, length, begin, count;
    } cases[] = {
        {0, 200000, 0, 200000},
        {1, 70000, 1, 70000},
        {65535, 3, 65535, 3},
        {199999, 50, 199999, 1},
        {200000, 1, 0, 0},
        {-1, 10, 0, 0},
        {5, -1, 0, 0},
        {std::int64_t{1} << 60, 10, 0, 0},
        {7, std::int64_t{1} << 62, 7, 199993},
    };
    for (const auto& one : cases) {
      const std::string expected = bytes_.substr(static_cast<std::size_t>(one.begin), static_cast<std::size_t>(one.count));
      for (const int piece : {37, 65536, 100000}) {
        const auto stream = pdfbmp::make_source_stream(source, one.offset, one.length);
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(read_all(*stream, piece), expected) << one.offset << ' ' << one.length;
        EXPECT_EQ(stream->length, one.count);
      }
    }
  }
}

// A file that is cut while it is read ends early.
TEST_F(Source, SurvivesAFileThatShrinks) {
  std::string error;
  const auto source = pdfbmp::open_file_source(path_, error);
  const auto stream = pdfbmp::make_source_stream(source, 0, 200000);
  std::string first(70000, '\0');
  ASSERT_EQ(stream->read_block(first.data(), 70000), 70000);
  ASSERT_EQ(truncate(path_.c_str(), 100000), 0);
  const std::string rest = read_all(*stream, 999);
  EXPECT_EQ(first + rest, bytes_.substr(0, first.size() + rest.size()));
  EXPECT_LT(rest.size(), 130000U);
}

TEST_F(Source, SaysWhyAFileCannotBeRead) {
  for (const std::string& path : {path_ + ".none", testing::TempDir()}) {
    std::string error;
    EXPECT_EQ(pdfbmp::open_file_source(path, error), nullptr) << path;
    EXPECT_FALSE(error.empty()) << path;
  }
}

}  // namespace
}  // namespace filter_test
