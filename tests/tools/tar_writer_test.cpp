// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/tar_writer.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/memory_sink.h"
#include "tests/tools/tar_reader.h"

namespace {

TEST(TarWriter, MembersReadBack) {
  const std::vector<std::pair<std::string, std::string>> members = {
      {"empty", ""},
      {"folder/one.png", "x"},
      {std::string(100, 'n'), std::string(512, 'b')},
      {std::string(101, 'n'), std::string(513, 'c')},
      {std::string(990, 'm'), "the record's length gains a digit by its own digits"},
  };
  MemorySink sink;
  TarWriter tar(sink);
  for (const auto& [name, content] : members) {
    ASSERT_TRUE(tar.begin(name, static_cast<std::int64_t>(content.size())));
    // In two pieces, as a file is copied.
    const std::size_t half = content.size() / 2;
    ASSERT_TRUE(tar.write(content.data(), half) && tar.write(content.data() + half, content.size() - half));
    ASSERT_TRUE(tar.end());
  }
  ASSERT_TRUE(tar.finish());
  EXPECT_EQ(read_tar(sink.text), members);
}

}  // namespace
