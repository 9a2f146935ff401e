// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "pdf/filter/filter.h"
#include "tools/encoders/encoders.h"

// What the tests of the filters share: dictionaries in a line, streams over strings and readers.

namespace filter_test {

using namespace encoders;

/// How a filter is run.
struct Setting {
  std::string parms = {}, image = {};  ///< Dictionaries as PDF text; none where they are empty.
  int piece = 1 << 16;                 ///< Bytes a read.
  CPDFXRefTable* xref = nullptr;
  CPDFFilterLimits limits = {};
};

/// What came of a stream that was read to its end.
struct Decoded {
  bool made = false;
  std::string bytes;
  int components = 0, alpha_channel = -1;  ///< Of JPX data.
  std::string alpha;
  CPDFDecodeReport report;
};

Decoded decode(const char* filter, const std::string& encoded, const Setting& setting = {});

/// The text of a dictionary of integers.
std::string dict_of(std::initializer_list<std::pair<const char*, int>> entries);

/// A stream over bytes that outlive it.
std::unique_ptr<CPDFStream> stream_over(const std::string& bytes);

/// Reads to the end in reads of `piece` bytes.
std::string read_all(CPDFStream& stream, int piece);

/// `n` bytes with runs, gradients and noise, the same for a seed.
std::string sample_bytes(std::size_t n, std::uint32_t seed);

}  // namespace filter_test
