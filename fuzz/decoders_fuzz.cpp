// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Runs one sample decoder, whatever its layout, on an image as the input describes it.
//
// Input: options (below, a byte each), then the samples.
#include <memory>

#include "fuzz/target.h"
#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/image/image.h"
#include "pdf/obj/jpx_stream.h"
#include "tests/support/spaces.h"

namespace {

// Each at full, half and quarter size.
using Decoder = int (CPDFImage::*)();
using AnyDecoder = int (CPDFImage::*)(int);
constexpr Decoder color[][3] = {
    {&CPDFImage::load_bmp_from1, &CPDFImage::load_bmp_from1_half, &CPDFImage::load_bmp_from1_4in1},
    {&CPDFImage::load_bmp_from2, &CPDFImage::load_bmp_from2_half, &CPDFImage::load_bmp_from2_4in1},
    {&CPDFImage::load_bmp_from4, &CPDFImage::load_bmp_from4_half, &CPDFImage::load_bmp_from4_4in1},
    {&CPDFImage::load_bmp_from8, &CPDFImage::load_bmp_from8_half, &CPDFImage::load_bmp_from8_4in1},
    {&CPDFImage::load_bmp_from24, &CPDFImage::load_bmp_from24_half, &CPDFImage::load_bmp_from24_4in1},
    {&CPDFImage::load_bmp_from32, &CPDFImage::load_bmp_from32_half, &CPDFImage::load_bmp_from32_4in1},
    {&CPDFImage::load_jpx_alpha, &CPDFImage::load_jpx_alpha_half, &CPDFImage::load_jpx_alpha_4in1},
};
constexpr AnyDecoder any_color[] = {&CPDFImage::load_bmp_fromN, &CPDFImage::load_bmp_fromN_half, &CPDFImage::load_bmp_fromN_4in1};
constexpr Decoder gray[] = {&CPDFImage::load_bmpg_from1, &CPDFImage::load_bmpg_from2,  &CPDFImage::load_bmpg_from4,
                            &CPDFImage::load_bmpg_from8, &CPDFImage::load_bmpg_from24, &CPDFImage::load_bmpg_from32};
constexpr unsigned colors = 7, grays = 6;

struct Samples : CPDFStreamJPX {
  explicit Samples(std::string& bytes) {
    data = cursor = reinterpret_cast<unsigned char*>(bytes.data());
    remaining = length = static_cast<int>(bytes.size());
    data_borrowed = 1;
    alpha_channel = 1;
  }
  int read_alpha(void* dst, int n) override { return read_block(dst, n); }
};

std::unique_ptr<CPDFCSBase> make_space(SpaceLog& log, unsigned choice) {
  if (choice == 0) return std::make_unique<CPDFCSDeviceGray>();
  if (choice == 1) return std::make_unique<CPDFCSDeviceRGB>();
  if (choice == 2) return std::make_unique<CPDFCSDeviceCMYK>();
  return choice == 3 ? nullptr : std::make_unique<TestSpace>(log, choice & 8, static_cast<int>(choice >> 4) + 1);
}

}  // namespace

// Left open by the image library; nothing here asks for them.
CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj*, CPDFXRefTable*) { return nullptr; }
CPDFStream* CPDFStream::make_inline_stream(unsigned char*, int, const char*, const CPDFDictionary*) { return nullptr; }

std::string run_target(FuzzInput in, bool) {
  SpaceLog log;
  const unsigned decoder = in.byte() % (colors + 1 + grays + 1), scale = decoder <= colors ? in.byte() % 3U : 0;
  const int components = in.byte() % 19;
  const std::unique_ptr<CPDFCSBase> space = make_space(log, in.byte());
  CPDFImage image;
  image.cs = space.get();
  image.cs_borrowed = image.jpx_alpha = 1;
  image.width = in.byte() % 64 + 1;
  image.height = in.byte() % 64 + 1;
  image.bpc = in.byte() % 18;
  image.has_decode = in.byte() & 1;
  image.has_mask = in.byte() & 1;
  for (int i = 0; i < 4; ++i) {
    image.decode_min[i] = image.mask_min.val[i] = in.byte();
    image.decode_max[i] = image.mask_max.val[i] = in.byte();
  }
  std::string samples(in.text());
  image.stream = new Samples(samples);

  const int up = (1 << scale) - 1;
  std::string result;
  if (decoder <= colors) {
    image.bmp = new CKXBmp32((image.width + up) >> scale, (image.height + up) >> scale);
    if (image.bmp->pixels == nullptr) return result;
    const int done = decoder < colors ? (image.*color[decoder][scale])() : (image.*any_color[scale])(components);
    require(done == 0 || done == 1);
    add(result, image.bmp);
  } else {
    image.bmp_gray = new CKXBmpGray;
    image.bmp_gray->create(image.width, image.height);
    if (image.bmp_gray->pixels == nullptr) return result;
    const unsigned which = decoder - colors - 1;
    which < grays ? (image.*gray[which])() : image.load_bmpg_fromN(components);
    add(result, image.bmp_gray);
  }
  return result;
}
