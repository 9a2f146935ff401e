// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

const struct Format {
  const char* filter;
  std::string (*encode)(const std::string&);
} formats[] = {
    {"Fl", [](const std::string& bytes) { return deflate(bytes); }},
    {"LZW", [](const std::string& bytes) { return encode_lzw(bytes); }},
    {"RL", encode_run_length},
    {"A85", encode_ascii85},
    {"AHx", encode_ascii_hex},
};

// A stream that is cut gives the bytes of what is left of it, and the report tells; a reader that
// got all it wanted is told of nothing.
TEST(Damage, CutStreamsGiveWhatCameBefore) {
  const std::string bytes = sample_bytes(120000, 1);
  for (const Format& format : formats) {
    const std::string good = format.encode(bytes);
    std::size_t before = 0;
    for (const std::size_t percent : {10U, 50U, 90U}) {
      const Decoded decoded = decode(format.filter, good.substr(0, good.size() * percent / 100));
      EXPECT_TRUE(decoded.report.damaged) << format.filter << percent;
      EXPECT_EQ(decoded.bytes, bytes.substr(0, decoded.bytes.size())) << format.filter << percent;
      EXPECT_GT(decoded.bytes.size(), before + bytes.size() / 50) << format.filter << percent;
      before = decoded.bytes.size();
    }
  }
}

// With one byte changed nothing that depends on earlier bytes alone is touched. What depends on
// earlier bytes alone is what decodes when they are followed by nothing.
TEST(Damage, ChangedBytesLeaveWhatCameBefore) {
  const std::string bytes = sample_bytes(20000, 1);
  for (const Format& format : formats) {
    const std::string good = format.encode(bytes);
    const bool adds_at_end = std::string(format.filter) == "A85" || format.filter[1] == 'H';
    for (std::size_t at = 2; at < good.size(); at += 1 + good.size() / 150) {
      std::string prefix = decode(format.filter, good.substr(0, at)).bytes;
      // The text filters end a group that is not whole in a way of their own.
      if (adds_at_end) prefix.resize(prefix.size() > 4 ? prefix.size() - 4 : 0);
      for (const int change : {1, 128, 255}) {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ change);
        const Decoded decoded = decode(format.filter, bad, nullptr, 1000);
        ASSERT_EQ(decoded.bytes.substr(0, prefix.size()), prefix) << format.filter << ' ' << at;
        ASSERT_EQ(prefix, bytes.substr(0, prefix.size())) << format.filter << ' ' << at;
        if (format.filter[0] == 'F') { ASSERT_TRUE(decoded.report.damaged) << at; }
      }
    }
  }
}

}  // namespace
}  // namespace filter_test
