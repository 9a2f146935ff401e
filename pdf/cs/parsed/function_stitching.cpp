// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>

#include "pdf/cs/parsed/function.h"
#include "pdf/obj/access.h"

// Type 3, ISO 32000-1 7.10.4: the Domain cut at Bounds, a function of one input for each piece.

namespace {

constexpr int max_pieces = 256;

class CPDFStitchingFunction final : public CPDFFunction {
 public:
  struct Piece {
    CPDFCSRange from, to;  // The piece of the Domain, and the input of its function at both ends.
    std::unique_ptr<CPDFFunction> function;
  };

  CPDFStitchingFunction(CPDFFunctionSource& source, std::vector<Piece> pieces)
      : CPDFFunction(std::move(source.domain), std::move(source.range),
                     pieces.front().function->outputs()),
        pieces_(std::move(pieces)) {}

  std::int64_t work() const override {
    std::int64_t most = 0;
    for (const Piece& piece : pieces_) most = std::max(most, piece.function->work());
    return most + static_cast<std::int64_t>(pieces_.size());
  }

 protected:
  void compute(const double* in, double* out) const override {
    // Pieces hold their low end; the last one its high end too.
    std::size_t at = 0;
    while (at + 1 < pieces_.size() && in[0] >= pieces_[at].from.high) ++at;
    const Piece& piece = pieces_[at];
    const double x = pdfbmp::interpolate(in[0], piece.from, piece.to);
    piece.function->evaluate(&x, out);
  }

 private:
  std::vector<Piece> pieces_;
};

}  // namespace

std::unique_ptr<CPDFFunction> pdfbmp::make_stitching_function(CPDFFunctionSource& source) {
  CPDFCSParseContext& context = source.context;
  if (source.domain.size() != 1) return nullptr;
  CPDFObjHolder temporary;
  const CPDFObj* functions = context.resolve(find_key(source.dict, "Functions"), temporary);
  const CPDFArray* array = functions == nullptr ? nullptr : functions->array();
  if (array == nullptr || array->count < 1 || array->count > max_pieces) return nullptr;
  const auto count = static_cast<std::size_t>(array->count);
  const std::vector<double> bounds = context.numbers(find_key(source.dict, "Bounds"), max_pieces);
  const std::vector<CPDFCSRange> encode =
      read_ranges(find_key(source.dict, "Encode"), max_pieces, context);
  if (bounds.size() != count - 1 || encode.size() < count) return nullptr;

  std::vector<CPDFStitchingFunction::Piece> pieces;
  double low = source.domain[0].low;
  for (std::size_t i = 0; i < count; ++i) {
    const double high = i < bounds.size() ? bounds[i] : source.domain[0].high;
    auto function = CPDFFunction::parse(&array->items[i], context, source.depth + 1);
    if (!function || function->inputs() != 1 || high < low) return nullptr;
    if (i > 0 && function->outputs() != pieces[0].function->outputs()) return nullptr;
    pieces.push_back({{low, high}, encode[i], std::move(function)});
    low = high;
  }
  if (!source.range.empty() &&
      source.range.size() != static_cast<std::size_t>(pieces[0].function->outputs()))
    return nullptr;
  return std::make_unique<CPDFStitchingFunction>(source, std::move(pieces));
}
