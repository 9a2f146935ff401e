// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// Writing PNG files of 12 megapixels, into a sink that only counts their bytes: what filtering,
// compressing and checksums cost, against the rate that the writer must keep.

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "bench/goals.h"
#include "pdf/doc/png_writer.h"

namespace {

constexpr int width = 4000, height = 3000;

struct Case {
  const char* name;
  CPDFPixelFormat format;
  int channels;
  unsigned noise;  ///< Values that the noise on top of the gradients takes.
};

constexpr Case cases[] = {
    {"rgb_smooth", CPDFPixelFormat::rgb8, 3, 1},
    {"rgb_noisy", CPDFPixelFormat::rgb8, 3, 9},
    {"gray_smooth", CPDFPixelFormat::gray8, 1, 1},
    {"gray_noisy", CPDFPixelFormat::gray8, 1, 9},
};

class CountingSink : public CPDFByteSink {
 public:
  bool write(const void* bytes, std::size_t n) override {
    benchmark::DoNotOptimize(bytes);
    total_ += n;
    return true;
  }
  std::size_t total() const { return total_; }

 private:
  std::size_t total_ = 0;
};

/// Gradients across, down and along the diagonal, with noise.
std::vector<unsigned char> picture(const Case& c) {
  std::vector<unsigned char> bytes;
  bytes.reserve(std::size_t{width} * height * static_cast<std::size_t>(c.channels));
  std::mt19937 random(1);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int slopes[] = {x * 240 / width, y * 240 / height, (x + y) * 240 / (width + height)};
      for (int i = 0; i < c.channels; ++i) {
        const auto noise = static_cast<int>(random() % c.noise);
        bytes.push_back(static_cast<unsigned char>(slopes[i] + noise));
      }
    }
  }
  return bytes;
}

void write(benchmark::State& state, const Case& c) {
  const std::vector<unsigned char> bytes = picture(c);
  CPDFRasterInfo info;
  info.width = width;
  info.height = height;
  info.format = c.format;
  const auto row = static_cast<std::size_t>(info.row_bytes());
  std::size_t size = 0;
  for (auto _ : state) {
    CountingSink sink;
    CPDFPngWriter writer(sink);
    bool good = writer.begin(info);
    for (std::size_t y = 0; y < height; ++y) good = good && writer.write_row(&bytes[y * row]);
    if (!good || !writer.finish()) state.SkipWithError("not written");
    size = sink.total();
  }
  state.SetItemsProcessed(state.iterations() * width * height);
  state.counters["file_bytes"] = static_cast<double>(size);
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& c : cases) {
    benchmark::RegisterBenchmark(c.name, [&c](benchmark::State& state) { write(state, c); });
  }
  return run_with_goals(argc, argv,
                        {
                            {"PNG, RGB, smooth", "rgb_smooth", "", 100e6},
                            {"PNG, RGB, noisy", "rgb_noisy", "", 100e6},
                            {"PNG, gray, smooth", "gray_smooth", "", 100e6},
                            {"PNG, gray, noisy", "gray_noisy", "", 100e6},
                        });
}
