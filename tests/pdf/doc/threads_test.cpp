// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <thread>
#include <utility>

#include "pdf/doc/picture.h"
#include "tests/pdf/cs/parsed/profiles.h"
#include "tests/pdf/doc/documents.h"
#include "tools/encoders/encoders.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/jpx_encoder.h"

namespace {

std::string file_of_many_kinds() {
  PdfBuilder pdf;
  const int profile = pdf.add_stream("/N 3", testing_support::rgb_profile(1.8));
  const std::string icc = "/BitsPerComponent 8 /ColorSpace [/ICCBased " + PdfBuilder::ref(profile) + "] ";
  const auto level = [](int a, int b, int c) { return (a * 5 + b * 3 + c * 40) & 255; };
  pdf.add_page_with({
      pdf.add_image(9, 9, icc + "/Filter /FlateDecode /SMask " + PdfBuilder::ref(pdf.add_image(9, 9)),
                    encoders::deflate(std::string(243, 'q'))),
      pdf.add_image(40, 48, icc + "/Filter /DCTDecode", encoders::encode_jpeg({}, level)),
      pdf.add_image(37, 29, icc + "/Filter /JPXDecode", encoders::encode_jpx({{{}, {}, {}}}, level)),
      pdf.add_image(8, 8, "/ImageMask true", std::string(8, 'm')),
  });
  return pdf.finish();
}

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
  const std::string bytes = file_of_many_kinds();
  const auto shared = open_bytes(bytes);
  const std::vector<Row> expected = all_rows(*open_bytes(bytes));
  ASSERT_GT(expected.size(), 9u + 48 + 29);
  std::vector<std::vector<Row>> own(16), common(16);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < own.size(); ++i) {
    threads.emplace_back([&, i] {
      own[i] = all_rows(*open_bytes(bytes));
      common[i] = all_rows(*shared);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < own.size(); ++i) {
    EXPECT_TRUE(own[i] == expected) << i;
    EXPECT_TRUE(common[i] == expected) << i;
  }
}

}  // namespace
