// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <thread>
#include <utility>
#include <vector>

#include "pdf/doc/picture.h"
#include "tests/pdf/doc/documents.h"
#include "tests/support/temporary_folder.h"

namespace {

std::vector<Row> all_rows(CPDFDocument& document) {
  std::vector<Row> all;
  for (const CPDFFoundImage& found : all_images(document)) {
    std::string problem;
    const auto picture = pdfbmp::open_picture(document.load_image(found), found, 1 << 20, problem);
    if (picture == nullptr) return {};
    for (Row& row : rows_of(*picture)) all.push_back(std::move(row));
  }
  return all;
}

// Races between them are for ThreadSanitizer to see.
TEST(Threads, SixteenGiveWhatOneGives) {
  const std::string bytes = file_content(PDFBMP_SAMPLE);  // Every kind of space and mask.
  const auto shared = open_bytes(bytes);
  const std::vector<Row> expected = all_rows(*open_bytes(bytes));
  ASSERT_GT(expected.size(), 1000u);
  std::vector<std::vector<Row>> own(16), common(16);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < own.size(); ++i) {
    threads.emplace_back([&, i] {
      own[i] = all_rows(*open_bytes(bytes));
      common[i] = all_rows(*shared);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < own.size(); ++i) { EXPECT_TRUE(own[i] == expected && common[i] == expected) << i; }
}

}  // namespace
