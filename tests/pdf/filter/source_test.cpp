// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <filesystem>
#include <gtest/gtest.h>

#include "pdf/filter/source_stream.h"
#include "tests/pdf/filter/samples.h"
#include "tests/support/temporary_folder.h"

namespace filter_test {
namespace {

class Source : public testing::Test {
 protected:
  Source() { write_file(path_, bytes_); }

  const TemporaryFolder folder_;
  const std::string bytes_ = sample_bytes(200000, 5), path_ = folder_.path() / "file";
  std::string error_;
};

TEST_F(Source, ReadsAnyPieceOfFilesAndMemory) {
  const std::int64_t huge = std::int64_t{1} << 62;
  const struct {
    std::int64_t offset, length, begin, count;
  } cases[] = {
      {0, 200000, 0, 200000}, {1, 70000, 1, 70000}, {65535, 3, 65535, 3}, {199999, 50, 199999, 1}, {200000, 1, 0, 0},
      {-1, 10, 0, 0},         {5, -1, 0, 0},        {huge, 10, 0, 0},     {7, huge, 7, 199993},
  };
  for (const auto& source : {pdfbmp::open_file_source(path_, error_), pdfbmp::make_memory_source(bytes_)}) {
    ASSERT_NE(source, nullptr) << error_;
    EXPECT_EQ(source->size(), 200000);
    for (const auto& one : cases) {
      const std::string expected = bytes_.substr(static_cast<std::size_t>(one.begin), static_cast<std::size_t>(one.count));
      for (const int piece : {37, 65536, 100000}) {
        const auto stream = pdfbmp::make_source_stream(source, one.offset, one.length);
        EXPECT_EQ(read_all(*stream, piece), expected) << one.offset << ' ' << one.length;
        EXPECT_EQ(stream->length, one.count);
      }
    }
  }
}

// A file that is cut while it is read ends early.
TEST_F(Source, SurvivesAFileThatShrinks) {
  const auto stream = pdfbmp::make_source_stream(pdfbmp::open_file_source(path_, error_), 0, 200000);
  std::string first(70000, '\0');
  ASSERT_EQ(stream->read_block(first.data(), 70000), 70000);
  std::filesystem::resize_file(path_, 100000);
  const std::string rest = read_all(*stream, 999);
  EXPECT_EQ(first + rest, bytes_.substr(0, first.size() + rest.size()));
  EXPECT_LT(rest.size(), 130000U);
}

}  // namespace
}  // namespace filter_test
