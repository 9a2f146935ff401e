// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/sample_rows.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

// Every value that a sample of 16 bits has becomes the byte nearest to it.
TEST(SampleRows, SixteenBitsAreRounded) {
  std::vector<unsigned char> samples;
  for (int value = 0; value < 65536; ++value)
    samples.insert(samples.end(), {static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)});
  CPDFStream stream(samples.data(), static_cast<int>(samples.size()), 1);
  CPDFSampleLayout layout;
  layout.width = 65536;
  layout.height = 1;
  layout.bpc = 16;
  const auto rows = CPDFSampleRows::make(stream, layout);
  std::vector<unsigned char> bytes(65536);
  ASSERT_TRUE(rows != nullptr && rows->read(bytes.data()));
  for (std::size_t value = 0; value < 65536; ++value) ASSERT_EQ(bytes[value], std::lround(static_cast<double>(value) / 257)) << value;
}

}  // namespace
