// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "pdf/cs/parsed/parse_context.h"
#include "pdf/cs/parsed/parsed_space.h"

/// A PDF function (ISO 32000-1 7.10), ready to be evaluated: from `inputs` to `outputs` numbers.
///
///     type   file                       limits beyond the standard's
///     0      function_sampled.cpp       12 inputs; 2^22 samples in one colour space
///     2      function_exponential.cpp
///     3      function_stitching.cpp     nested 8 deep, 256 functions in one colour space
///     4      function_postscript.cpp    16,384 instructions, 100 stack places, blocks 32 deep
///
/// Immutable once made; evaluation takes no memory from the heap and no lock.
class CPDFFunction {
 public:
  static constexpr int max_inputs = 16;
  static constexpr int max_outputs = 16;

  virtual ~CPDFFunction() = default;

  /// The function that `entry` (may be null) denotes; null for none, a malformed one or one beyond
  /// the limits. `depth` is that of the caller's nesting.
  static std::unique_ptr<CPDFFunction> parse(const CPDFObj* entry, CPDFCSParseContext& context,
                                             int depth = 0);

  int inputs() const { return static_cast<int>(domain_.size()); }
  int outputs() const { return outputs_; }

  /// The most that one evaluation takes, in steps of about a nanosecond.
  virtual std::int64_t work() const = 0;

  /// Evaluates: `in` are brought into the Domain, `out` into the Range, if there is one. Every
  /// result is a finite number; where the computation has none it is the nearest to 0 in Range.
  void evaluate(const double* in, double* out) const;

 protected:
  /// `domain` of 1 to 16 inputs; `range` empty or of `outputs` (1 to 16) ranges.
  CPDFFunction(std::vector<CPDFCSRange> domain, std::vector<CPDFCSRange> range, int outputs)
      : domain_(std::move(domain)), range_(std::move(range)), outputs_(outputs) {}

  /// `in` lie in the Domain. Whatever is left in `out`, which starts as zeros, is brought into the
  /// Range.
  virtual void compute(const double* in, double* out) const = 0;

  const std::vector<CPDFCSRange>& domain() const { return domain_; }
  const std::vector<CPDFCSRange>& range() const { return range_; }

 private:
  std::vector<CPDFCSRange> domain_, range_;
  int outputs_;
};

/// What the makers of the four types are given.
struct CPDFFunctionSource {
  const CPDFObj* object;       ///< A dictionary, or a stream.
  const CPDFDictionary* dict;  ///< Its dictionary.
  std::vector<CPDFCSRange> domain, range;
  CPDFCSParseContext& context;
  int depth;
};

namespace pdfbmp {

std::unique_ptr<CPDFFunction> make_sampled_function(CPDFFunctionSource& source);
std::unique_ptr<CPDFFunction> make_exponential_function(CPDFFunctionSource& source);
std::unique_ptr<CPDFFunction> make_stitching_function(CPDFFunctionSource& source);
std::unique_ptr<CPDFFunction> make_postscript_function(CPDFFunctionSource& source);

/// Pairs of an array as ranges; empty for what is no array of whole pairs, at most `limit`.
std::vector<CPDFCSRange> read_ranges(const CPDFObj* entry, int limit,
                                     const CPDFCSParseContext& context);

/// `x` of the range `from` brought to the same place of `to`; the low end where `from` is empty.
double interpolate(double x, CPDFCSRange from, CPDFCSRange to);

}  // namespace pdfbmp
