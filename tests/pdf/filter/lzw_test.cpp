// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <vector>

#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

TEST(LZW, BringsBytesBack) {
  for (const std::size_t n : {0UL, 1UL, 2UL, 255UL, 5000UL, 40000UL}) {
    for (const int manner : {0, 1, 2}) {
      // Noise fills the table at once; one value makes each code the one that is being added.
      const std::string bytes = manner == 0   ? sample_bytes(n, 12)
                                : manner == 1 ? std::string(n, 'a')
                                              : sample_bytes(n, 2).replace(0, n / 2, n / 2, '\0');
      for (const int early : {0, 1}) {
        for (const bool full_table : {false, true}) {
          const Parms parms({{"EarlyChange", early}});
          const std::string encoded = encode_lzw(bytes, early, full_table);
          for (const int piece : {1 << 17, 4097}) {
            const Decoded decoded = decode("LZW", encoded, &parms.dict, piece);
            ASSERT_EQ(decoded.bytes, bytes) << n << ' ' << manner << ' ' << early << full_table;
            ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
          }
        }
      }
    }
  }
}

// The example of ISO 32000-2, 7.4.4.2.
TEST(LZW, ReadsTheExampleOfTheStandard) {
  const std::string encoded("\x80\x0b\x60\x50\x22\x0c\x0c\x85\x01", 9);
  EXPECT_EQ(decode("LZWDecode", encoded).bytes, "-----A---B");
}

TEST(LZW, NeedsNoMarkers) {
  const std::string bytes = sample_bytes(3000, 8);
  const Decoded decoded = decode("LZW", encode_lzw(bytes, 1, false, false));
  EXPECT_EQ(decoded.bytes.substr(0, bytes.size()), bytes);
}

// After the clear code only single bytes are known; and no code is beyond the next to be added.
TEST(LZW, StopsAtCodesThatDoNotExist) {
  const struct {
    std::vector<int> codes;
    const char* decoded;
    bool damaged;
  } cases[] = {
      {{256, 65, 300, 66, 257}, "A", true}, {{256, 65, 258, 257}, "AAA", false},      {{256, 65, 259, 66, 257}, "A", true},
      {{256, 258, 65, 257}, "", true},      {{65, 256, 66, 258, 257}, "ABBB", false}, {{256, 256, 65, 66, 257}, "AB", false},
  };
  for (const auto& one : cases) {
    std::string bits;
    for (const int code : one.codes) {
      for (int i = 8; i >= 0; --i) bits += (code >> i & 1) != 0 ? '1' : '0';
    }
    const Decoded decoded = decode("LZW", pack_bits(bits));
    EXPECT_EQ(decoded.bytes, one.decoded);
    EXPECT_EQ(decoded.report.damaged, one.damaged) << decoded.report.problem;
  }
}

}  // namespace
}  // namespace filter_test
