// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "pdf/cs/color_space.h"
#include "pdf/filter/work_clock.h"
#include "pdf/obj/object.h"

class CPDFXRefTable;

/// One run of the colour-space parser: what it reads from, and how much it may still spend. The
/// bounds end reference loops and hold off files made to be slow.
class CPDFCSParseContext {
 public:
  explicit CPDFCSParseContext(CPDFXRefTable* xref) : xref_(xref) {}

  CPDFXRefTable* xref() const { return xref_; }

  /// The space that `entry` (may be null) denotes; null for none, for an unknown or refused one,
  /// and where spaces are nested too deep.
  std::unique_ptr<CPDFCSBase> parse_space(const CPDFObj* entry);

  /// Counts one more function; false when there have been too many, or they took too long.
  bool take_function() { return functions_left_-- > 0 && !clock_.is_over(slow_step); }

  /// Counts samples of functions; false when there have been too many in all.
  bool take_samples(std::int64_t count) { return (samples_left_ -= count) >= 0; }

  /// The object behind a reference, fetched into `temporary`, or `entry` itself. Null stays null.
  const CPDFObj* resolve(const CPDFObj* entry, CPDFObjHolder& temporary) const;

  /// The bytes of a stream object decoded through its filters, the first `limit` or a little more;
  /// none where it is no stream or cannot be read.
  std::vector<unsigned char> load_stream(const CPDFObj* stream, int limit) const;

  /// A number, 0 for what is none or null.
  double number(const CPDFObj* entry) const;

  /// The numbers of an array; empty for what is no array or holds more than `limit` items.
  std::vector<double> numbers(const CPDFObj* entry, int limit) const;

  /// An integer, or `fallback` where the entry is null.
  int integer(const CPDFObj* entry, int fallback) const;

 private:
  CPDFXRefTable* xref_;
  int spaces_left_ = 8;
  int functions_left_ = 256;
  std::int64_t samples_left_ = std::int64_t{1} << 22;

  static constexpr std::int64_t slow_step = 1 << 12;  ///< Of the clock: each function asks it.
  CPDFWorkClock clock_{1.0};
};
