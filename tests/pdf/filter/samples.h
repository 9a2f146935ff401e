// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "pdf/filter/filter.h"
#include "pdf/obj/object.h"

// What the tests of the filters share: dictionaries in a line, streams over strings, readers, and
// plain encoders.

namespace filter_test {

/// A dictionary of integers, for the parameters of a filter.
class Parms {
 public:
  Parms(std::initializer_list<std::pair<const char*, int>> entries);
  Parms& with_bool(const char* key, bool value);
  CPDFDictionary dict;
};

/// What came of a stream that was read to its end.
struct Decoded {
  bool made = false;
  std::string bytes;
  CPDFDecodeReport report;
};

/// Decodes `encoded` with one filter, in reads of `piece` bytes. `image` may be null.
Decoded decode(const char* filter, const std::string& encoded, const CPDFDictionary* parms = nullptr, int piece = 1 << 16,
               const CPDFDictionary* image = nullptr);

/// A stream over bytes that outlive it.
std::unique_ptr<CPDFStream> stream_over(const std::string& bytes);

/// Reads to the end in reads of `piece` bytes; a stream that gives more than `most` is cut there.
std::string read_all(CPDFStream& stream, int piece, std::size_t most = std::size_t{1} << 28);

/// `n` bytes with runs, gradients and noise, the same for a seed.
std::string sample_bytes(std::size_t n, std::uint32_t seed);

/// Bytes of bits that are written as characters, filled up with zeros.
std::string pack_bits(const std::string& bits);

std::string encode_ascii85(const std::string& bytes);
std::string encode_ascii_hex(const std::string& bytes);
std::string encode_run_length(const std::string& bytes);

/// LZW with codes of 9 to 12 bits. A `full_table` one is not cleared when no more codes are free;
/// one without `markers` has no clear code at its begin and no end of data.
std::string encode_lzw(const std::string& bytes, int early_change = 1, bool full_table = false, bool markers = true);

std::string deflate(const std::string& bytes, bool zlib_wrapper = true);
std::string png_predict(const std::string& rows, int row_bytes, int step, int type);
std::string tiff_predict(const std::string& rows, int row_bytes, int colors, int bits);

}  // namespace filter_test
