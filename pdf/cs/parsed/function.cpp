// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/function.h"

#include <algorithm>
#include <cmath>

#include "pdf/obj/access.h"

namespace {

double into(double value, CPDFCSRange range) {
  if (!(value > range.low)) return range.low;  // Not a number too.
  return std::min(value, range.high);
}

}  // namespace

std::vector<CPDFCSRange> pdfbmp::read_ranges(const CPDFObj* entry, int limit,
                                             const CPDFCSParseContext& context) {
  const std::vector<double> numbers = context.numbers(entry, 2 * limit);
  if (numbers.size() % 2 != 0) return {};
  std::vector<CPDFCSRange> ranges;
  for (std::size_t i = 0; i < numbers.size(); i += 2)
    ranges.push_back({numbers[i], numbers[i + 1]});
  return ranges;
}

double pdfbmp::interpolate(double x, CPDFCSRange from, CPDFCSRange to) {
  const double width = from.high - from.low;
  return width == 0 ? to.low : to.low + (x - from.low) * (to.high - to.low) / width;
}

std::unique_ptr<CPDFFunction> CPDFFunction::parse(const CPDFObj* entry, CPDFCSParseContext& context,
                                                  int depth) {
  constexpr int max_depth = 8;
  if (depth > max_depth || !context.take_function()) return nullptr;
  CPDFObjHolder temporary;
  const CPDFObj* object = context.resolve(entry, temporary);
  if (object == nullptr) return nullptr;
  const CPDFDictionary* dict =
      object->stream() != nullptr ? &object->stream()->dict : object->dict();
  if (dict == nullptr) return nullptr;

  const auto sound = [](const std::vector<CPDFCSRange>& ranges) {
    return std::all_of(ranges.begin(), ranges.end(), [](CPDFCSRange r) { return r.low <= r.high; });
  };
  CPDFFunctionSource source{
      object, dict,    pdfbmp::read_ranges(find_key(dict, "Domain"), max_inputs, context),
      {},     context, depth};
  const CPDFObj* range = find_key(dict, "Range");
  if (range != nullptr) {
    source.range = pdfbmp::read_ranges(range, max_outputs, context);
    if (source.range.empty()) return nullptr;
  }
  if (source.domain.empty() || !sound(source.domain) || !sound(source.range)) return nullptr;

  switch (context.integer(find_key(dict, "FunctionType"), -1)) {
    case 0:
      return pdfbmp::make_sampled_function(source);
    case 2:
      return pdfbmp::make_exponential_function(source);
    case 3:
      return pdfbmp::make_stitching_function(source);
    case 4:
      return pdfbmp::make_postscript_function(source);
    default:
      return nullptr;
  }
}

void CPDFFunction::evaluate(const double* in, double* out) const {
  double inside[max_inputs];
  for (std::size_t i = 0; i < domain_.size(); ++i) inside[i] = into(in[i], domain_[i]);
  std::fill_n(out, outputs_, 0.0);
  compute(inside, out);
  for (int i = 0; i < outputs_; ++i) {
    if (!std::isfinite(out[i])) out[i] = 0;
    if (!range_.empty()) out[i] = into(out[i], range_[static_cast<std::size_t>(i)]);
  }
}
