// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "pdf/cs/parsed/function.h"
#include "pdf/obj/access.h"

// Type 0, ISO 32000-1 7.10.2: a table of samples, multi-linear between them (Order 3 too: the
// standard lets a reader take it as linear). The first input varies fastest. Samples that the
// stream does not hold are 0.

namespace {

constexpr std::size_t max_table_inputs = 12;
constexpr std::int64_t max_samples = std::int64_t{1} << 22;

struct Input {
  CPDFCSRange encode;
  int size;            // Samples along this input.
  std::size_t stride;  // Samples of all outputs from one to the next.
};

class CPDFSampledFunction final : public CPDFFunction {
 public:
  CPDFSampledFunction(CPDFFunctionSource& source, std::vector<Input> inputs,
                      std::vector<float> samples)
      : CPDFFunction(source.domain, source.range, static_cast<int>(source.range.size())),
        inputs_(std::move(inputs)),
        samples_(std::move(samples)) {}

  std::int64_t work() const override {
    return (inputs() + outputs()) * (std::int64_t{1} << inputs());
  }

 protected:
  void compute(const double* in, double* out) const override {
    // Only the inputs between two samples make corners.
    std::size_t base = 0, between = 0;
    double part[max_table_inputs];
    std::size_t stride[max_table_inputs];
    for (std::size_t i = 0; i < inputs_.size(); ++i) {
      const Input& input = inputs_[i];
      double e = pdfbmp::interpolate(in[i], domain()[i], input.encode);
      e = e > 0 ? std::min(e, static_cast<double>(input.size - 1)) : 0;
      const double whole = std::floor(e);
      base += static_cast<std::size_t>(whole) * input.stride;
      if (e > whole) {
        part[between] = e - whole;
        stride[between++] = input.stride;
      }
    }
    const auto n = static_cast<std::size_t>(outputs());
    for (std::size_t corner = 0; corner < std::size_t{1} << between; ++corner) {
      double weight = 1;
      std::size_t at = base;
      for (std::size_t i = 0; i < between; ++i) {
        const bool above = (corner >> i & 1) != 0;
        weight *= above ? part[i] : 1 - part[i];
        if (above) at += stride[i];
      }
      for (std::size_t j = 0; j < n; ++j) out[j] += weight * static_cast<double>(samples_[at + j]);
    }
  }

 private:
  std::vector<Input> inputs_;
  std::vector<float> samples_;  // Decoded.
};

/// Big-endian samples of 1 to 32 bits, packed without gaps.
std::uint32_t sample_at(const std::vector<unsigned char>& bytes, std::int64_t bit, int bits) {
  std::uint64_t window = 0;  // The five bytes that the sample can touch.
  const auto first = static_cast<std::size_t>(bit / 8);
  for (std::size_t i = first; i < first + 5; ++i)
    window = window << 8 | (i < bytes.size() ? bytes[i] : 0U);
  const auto mask = (std::uint64_t{1} << bits) - 1;
  return static_cast<std::uint32_t>(window >> (40 - bits - static_cast<int>(bit % 8)) & mask);
}

}  // namespace

std::unique_ptr<CPDFFunction> pdfbmp::make_sampled_function(CPDFFunctionSource& source) {
  CPDFCSParseContext& context = source.context;
  const std::size_t m = source.domain.size(), n = source.range.size();
  if (n == 0 || m > max_table_inputs || source.object->stream() == nullptr) return nullptr;

  const CPDFObj* size_entry = find_key(source.dict, "Size");
  std::vector<double> sizes = context.numbers(size_entry, CPDFFunction::max_inputs);
  if (sizes.empty() && m == 1) sizes = {context.number(size_entry)};
  const int bits = context.integer(find_key(source.dict, "BitsPerSample"), 0);
  if (sizes.size() != m || bits < 1 || bits > 32) return nullptr;

  const CPDFObj* encode_entry = find_key(source.dict, "Encode");
  const CPDFObj* decode_entry = find_key(source.dict, "Decode");
  const auto encode = read_ranges(encode_entry, CPDFFunction::max_inputs, context);
  auto decode = read_ranges(decode_entry, CPDFFunction::max_outputs, context);
  if (decode_entry == nullptr) decode = source.range;
  if (decode.size() < n || (encode_entry != nullptr && encode.size() < m)) return nullptr;

  std::vector<Input> inputs;
  auto total = static_cast<std::int64_t>(n);
  for (std::size_t i = 0; i < m; ++i) {
    if (!(sizes[i] >= 1 && sizes[i] <= static_cast<double>(max_samples))) return nullptr;
    const int size = static_cast<int>(sizes[i]);
    inputs.push_back({encode_entry == nullptr ? CPDFCSRange{0, size - 1.0} : encode[i], size,
                      static_cast<std::size_t>(total)});
    total *= size;
    if (total > max_samples) return nullptr;
  }

  if (!context.take_samples(total)) return nullptr;
  const std::vector<unsigned char> bytes =
      context.load_stream(source.object, static_cast<int>((total * bits + 7) / 8));
  if (bytes.empty()) return nullptr;
  const double top = std::pow(2.0, bits) - 1;
  std::vector<float> samples(static_cast<std::size_t>(total));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::uint32_t sample = sample_at(bytes, static_cast<std::int64_t>(i) * bits, bits);
    samples[i] = static_cast<float>(interpolate(sample, {0, top}, decode[i % n]));
  }
  return std::make_unique<CPDFSampledFunction>(source, std::move(inputs), std::move(samples));
}
