// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "examples/encoders/encoders.h"
#include "pdf/filter/filter.h"
#include "pdf/obj/object.h"

// What the tests of the filters share: dictionaries in a line, streams over strings and readers.

namespace filter_test {

using namespace encoders;

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
  int components = 0, alpha_channel = -1;  ///< Of JPX data.
  std::string alpha;
  CPDFDecodeReport report;
};

/// Decodes `encoded` with one filter, in reads of `piece` bytes. `parms` and `image` may be null.
Decoded decode(const char* filter, const std::string& encoded, CPDFFilterSetup setup, int piece = 1 << 16);
Decoded decode(const char* filter, const std::string& encoded, const CPDFDictionary* parms = nullptr, int piece = 1 << 16,
               const CPDFDictionary* image = nullptr);

/// A stream over bytes that outlive it.
std::unique_ptr<CPDFStream> stream_over(const std::string& bytes);

/// Reads to the end in reads of `piece` bytes; a stream that gives more than `most` is cut there.
std::string read_all(CPDFStream& stream, int piece, std::size_t most = std::size_t{1} << 28);

/// `n` bytes with runs, gradients and noise, the same for a seed.
std::string sample_bytes(std::size_t n, std::uint32_t seed);

}  // namespace filter_test
