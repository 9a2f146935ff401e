// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cmath>

#include "pdf/cs/parsed/function.h"
#include "pdf/obj/access.h"

// Type 2, ISO 32000-1 7.10.3: from C0 to C1 by the input to the power of N.

namespace {

class CPDFExponentialFunction final : public CPDFFunction {
 public:
  CPDFExponentialFunction(CPDFFunctionSource& source, std::vector<double> c0,
                          std::vector<double> c1, double exponent)
      : CPDFFunction(std::move(source.domain), std::move(source.range),
                     static_cast<int>(c0.size())),
        c0_(std::move(c0)),
        c1_(std::move(c1)),
        exponent_(exponent) {}

  std::int64_t work() const override { return 64; }

 protected:
  void compute(const double* in, double* out) const override {
    const double part = exponent_ == 1 ? in[0] : std::pow(in[0], exponent_);
    for (std::size_t i = 0; i < c0_.size(); ++i) out[i] = c0_[i] + part * (c1_[i] - c0_[i]);
  }

 private:
  std::vector<double> c0_, c1_;
  double exponent_;
};

}  // namespace

std::unique_ptr<CPDFFunction> pdfbmp::make_exponential_function(CPDFFunctionSource& source) {
  const auto colors = [&](const char* key, double fallback) {
    const CPDFObj* entry = find_key(source.dict, key);
    if (entry == nullptr) return std::vector<double>{fallback};
    return source.context.numbers(entry, CPDFFunction::max_outputs);
  };
  std::vector<double> c0 = colors("C0", 0), c1 = colors("C1", 1);
  const CPDFObj* exponent = find_key(source.dict, "N");
  if (source.domain.size() != 1 || exponent == nullptr || c0.empty() || c0.size() != c1.size() ||
      (!source.range.empty() && source.range.size() != c0.size()))
    return nullptr;
  return std::make_unique<CPDFExponentialFunction>(source, std::move(c0), std::move(c1),
                                                   source.context.number(exponent));
}
