// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Parses a colour space and converts samples in runs and one by one, which must agree.
//
// Input: a byte to make samples of, then objects in text (fuzz/text_objects.h).
#include <vector>

#include "fuzz/target.h"
#include "fuzz/text_objects.h"
#include "pdf/cs/color_space.h"
#include "tests/support/streams.h"

namespace {

constexpr int pixels = 21;

std::string convert(CPDFCSBase& space, unsigned seed) {
  const int n = space.comp_count;
  require(n >= 1 && n <= 16);
  std::vector<unsigned char> samples(static_cast<std::size_t>(pixels * n));
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = sample_byte(seed, 0, static_cast<int>(i));
  using Batch = void (CPDFCSBase::*)(_KXRGBA*, const unsigned char*, int);
  constexpr Batch batches[] = {&CPDFCSBase::batch_rgb, &CPDFCSBase::batch_rgb2, &CPDFCSBase::batch_rgb4};
  std::string results;
  for (int scale = 0; scale < 3; ++scale) {
    const int step = 1 << scale;
    std::vector<_KXRGBA> run(static_cast<std::size_t>((pixels + step - 1) / step), _KXRGBA{0, 0, 0, 255});
    std::vector<unsigned char> grays(2 * pixels);
    (space.*batches[scale])(run.data(), samples.data(), pixels * n);
    space.batch_gray(grays.data(), samples.data(), pixels * n);
    for (int i = 0; i < pixels; i += step) {
      PDF_COLOR color = {};
      for (int c = 0; c < n; ++c) color.val[c] = samples[static_cast<std::size_t>(i * n + c)];
      _KXRGBA rgba = {0, 0, 0, 255};
      unsigned char gray = 0;
      space.get_rgb(color, rgba);
      space.get_gray(color, gray);
      const _KXRGBA& of_run = run[static_cast<std::size_t>(i / step)];
      require(rgba.r == of_run.r && rgba.g == of_run.g && rgba.b == of_run.b && of_run.a == 255);
      require(gray == grays[static_cast<std::size_t>(2 * i)]);
      results += {static_cast<char>(rgba.r), static_cast<char>(rgba.g), static_cast<char>(rgba.b), static_cast<char>(gray)};
    }
  }
  PDF_COLOR wild = {{-1, 256, 1 << 30, -(1 << 30), 300, -300}}, cmyk = {};
  _KXRGBA rgba = {};
  space.get_rgb(wild, rgba);
  space.get_cmyk(wild, cmyk);
  space.get_default_color(wild);
  return results;
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  const unsigned seed = in.byte();
  TextObjects objects(in.text());
  CPDFObjHolder entry;
  objects.get_entity(entry, {0, 0});
  const std::unique_ptr<CPDFCSBase> space(CPDFCSBase::parser_cs(&entry, &objects));
  return space != nullptr ? convert(*space, seed) : "";
}
