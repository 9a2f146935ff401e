// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The sample decoders, the stream's own cost left out: one image of 4,000 x 1,000 pixels a layout,
// whose stream fills the row buffer once and then only says that it did. Beside them memcpy of the
// same number of output bytes.
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "bench/goals.h"
#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/image/image.h"

// The seams of the image library; nothing here loads an image.
CPDFStream* CPDFStream::make_inline_stream(unsigned char*, int, const char*,
                                           const CPDFDictionary*) {
  return nullptr;
}
CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj*, CPDFXRefTable*) { return nullptr; }

namespace {

constexpr int width = 4000;
constexpr int height = 1000;

/// Rows of random bytes that cost nothing but the first one.
class FreeStream : public CPDFStream {
 public:
  int read_block(void* dst, int n) override {
    if (!filled_) {
      std::mt19937 random(1);
      auto* bytes = static_cast<unsigned char*>(dst);
      for (int i = 0; i < n; ++i) bytes[i] = static_cast<unsigned char>(random());
      filled_ = true;
    }
    return n;
  }
  void restart() { filled_ = false; }

 private:
  bool filled_ = false;
};

struct Case {
  const char* name;
  int bpc;
  CPDFCSBase* (*new_space)();
  int scale;  ///< 1, 2 or 4; 0 for the gray bitmap.
  int (*decode)(CPDFImage& image);
};

template <class Space>
CPDFCSBase* make() {
  return new Space;
}

constexpr Case cases[] = {
    {"from1", 1, make<CPDFCSDeviceGray>, 1, [](CPDFImage& i) { return i.load_bmp_from1(); }},
    {"from1_half", 1, make<CPDFCSDeviceGray>, 2,
     [](CPDFImage& i) { return i.load_bmp_from1_half(); }},
    {"from2", 2, make<CPDFCSDeviceGray>, 1, [](CPDFImage& i) { return i.load_bmp_from2(); }},
    {"from4", 4, make<CPDFCSDeviceGray>, 1, [](CPDFImage& i) { return i.load_bmp_from4(); }},
    {"from8", 8, make<CPDFCSDeviceGray>, 1, [](CPDFImage& i) { return i.load_bmp_from8(); }},
    {"from8_4in1", 8, make<CPDFCSDeviceGray>, 4,
     [](CPDFImage& i) { return i.load_bmp_from8_4in1(); }},
    {"from24", 8, make<CPDFCSDeviceRGB>, 1, [](CPDFImage& i) { return i.load_bmp_from24(); }},
    {"from24_4in1", 8, make<CPDFCSDeviceRGB>, 4,
     [](CPDFImage& i) { return i.load_bmp_from24_4in1(); }},
    {"from32", 8, make<CPDFCSDeviceCMYK>, 1, [](CPDFImage& i) { return i.load_bmp_from32(); }},
    {"fromN_16bit", 16, make<CPDFCSDeviceRGB>, 1, [](CPDFImage& i) { return i.load_bmp_fromN(3); }},
    {"gray_from1", 1, make<CPDFCSDeviceGray>, 0, [](CPDFImage& i) { return i.load_bmpg_from1(); }},
    {"gray_from8", 8, make<CPDFCSDeviceGray>, 0, [](CPDFImage& i) { return i.load_bmpg_from8(); }},
    {"gray_from24", 8, make<CPDFCSDeviceRGB>, 0, [](CPDFImage& i) { return i.load_bmpg_from24(); }},
};

void decode(benchmark::State& state, const Case& c) {
  CPDFImage image;
  image.width = width;
  image.height = height;
  image.bpc = c.bpc;
  image.cs = c.new_space();
  image.stream = new FreeStream;
  if (c.scale == 0) {
    image.bmp_gray = new CKXBmpGray;
    image.bmp_gray->create(width, height);
  } else {
    image.bmp = new CKXBmp32(width / c.scale, height / c.scale);
  }
  const CKXBmp& bmp = c.scale == 0 ? static_cast<const CKXBmp&>(*image.bmp_gray) : *image.bmp;
  for (auto _ : state) {
    static_cast<FreeStream*>(image.stream)->restart();
    if (c.decode(image) == 0) state.SkipWithError("nothing decoded");
    benchmark::DoNotOptimize(bmp.pixels);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * bmp.width * bmp.height);
  state.SetBytesProcessed(state.iterations() * bmp.stride * bmp.height);
}

/// What writing the bitmap costs at least.
void copy(benchmark::State& state, int bytes_per_pixel) {
  const auto row = static_cast<std::size_t>(width * bytes_per_pixel);
  std::vector<unsigned char> from(row, 1), to(row * height);
  for (auto _ : state) {
    for (std::size_t y = 0; y < height; ++y) std::memcpy(to.data() + y * row, from.data(), row);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * width * height);
  state.SetBytesProcessed(state.iterations() * width * height * bytes_per_pixel);
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& c : cases) {
    benchmark::RegisterBenchmark(c.name, [&c](benchmark::State& state) { decode(state, c); });
  }
  benchmark::RegisterBenchmark("memcpy_color", [](benchmark::State& state) { copy(state, 4); });
  benchmark::RegisterBenchmark("memcpy_gray", [](benchmark::State& state) { copy(state, 2); });
  return run_with_goals(argc, argv,
                        {
                            {"8-bit palette decode", "from8", "", 1e9},
                            {"1-bit decode", "from1", "", 2e9},
                            {"2-bit decode", "from2", "", 0},
                            {"4-bit decode", "from4", "", 0},
                            {"24-bit decode", "from24", "memcpy_color", 0},
                            {"32-bit decode", "from32", "", 0},
                            {"16-bit RGB decode", "fromN_16bit", "", 0},
                            {"1-bit gray decode", "gray_from1", "memcpy_gray", 0},
                            {"24-bit gray decode", "gray_from24", "memcpy_gray", 0},
                        });
}
