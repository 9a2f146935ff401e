// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Makes an image XObject as the input says, loads it and asks for its bitmaps, or runs one of the
// reduced decoders. Each input is run twice in memory that was filled with different bytes: the
// results must be equal, or a bitmap would show old memory. A third run has one allocation fail.
// After each run nothing of it may live.
//
// Input: options (below, a byte each), then the samples.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "fuzz/checking_alloc.h"
#include "fuzz/input.h"
#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/image/image.h"
#include "pdf/obj/fixed.h"
#include "pdf/obj/xref.h"

// The seams that the image library leaves open: the three device spaces, and no filters.

CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj* entry, CPDFXRefTable*) {
  const std::string name = entry->type == PDF_NAME ? entry->name() : "";
  if (name == "DeviceGray") return new (std::nothrow) CPDFCSDeviceGray;
  if (name == "DeviceRGB") return new (std::nothrow) CPDFCSDeviceRGB;
  if (name == "DeviceCMYK") return new (std::nothrow) CPDFCSDeviceCMYK;
  return nullptr;
}

CPDFStream* CPDFStream::make_inline_stream(unsigned char* data, int len, const char* filter, const CPDFDictionary*) {
  return filter == nullptr ? new (std::nothrow) CPDFStream(data, len, 1) : nullptr;
}

namespace {

constexpr int max_size = 64;  ///< Of width and height: a run stays below a millisecond.

struct Options {
  explicit Options(FuzzInput& in)
      : width(in.byte() % (max_size + 1)),
        height(in.byte() % (max_size + 1)),
        bpc(in.byte() % 18),
        space(in.byte() % 4),
        request(in.byte()),
        features(in.byte()),
        short_row(in.byte()),
        fail_at(in.byte()) {
    for (int& value : ranges) value = in.byte();
  }

  int width, height, bpc, space, request;
  int features;   ///< Bits: stencil, Decode, colour key, soft mask, interpolate.
  int short_row;  ///< The read that delivers half of what it was asked for.
  int fail_at;    ///< The allocation that fails in the third run.
  std::array<int, 8> ranges = {};
};

class ShortStream : public CPDFStream {
 public:
  ShortStream(unsigned char* bytes, int count, int short_row) : CPDFStream(bytes, count, 1), reads_to_short_(short_row) {}
  int read_block(void* dst, int n) override { return CPDFStream::read_block(dst, reads_to_short_-- == 0 ? n / 2 : n); }

 private:
  int reads_to_short_;
};

class Table : public CPDFXRefTable {
 public:
  Table(std::vector<unsigned char> samples, int short_row) : samples_(std::move(samples)), short_row_(short_row) {}
  int get_entity(CPDFObj&, const PDF_REF&) override { return 0; }
  CPDFStream* make_stream(const CPDFStreamRec*) override {
    const int n = static_cast<int>(samples_.size());
    return new (std::nothrow) ShortStream(samples_.data(), n, short_row_);
  }

 private:
  std::vector<unsigned char> samples_;
  int short_row_;
};

void set_numbers(CPDFObj* entry, const std::array<int, 8>& values, bool unit) {
  CPDFArray* array = entry != nullptr ? entry->set_array() : nullptr;
  for (const int value : values) {
    CPDFObj* item = array != nullptr ? array->append() : nullptr;
    if (item == nullptr) return;
    unit ? item->set_real(int_to_fixed(value) / 255) : item->set_int(value);
  }
}

void describe(CPDFObj& obj, const Options& options, std::uint64_t location) {
  constexpr const char* spaces[] = {"DeviceGray", "DeviceRGB", "DeviceCMYK", "None"};
  CPDFStreamRec* rec = obj.set_stream();
  if (rec == nullptr) return;
  rec->location[1] = location;
  // An entry is left out where its memory fails.
  const auto set = [&](const char* key, auto setter, auto value) {
    if (CPDFObj* entry = rec->dict.set(key)) (entry->*setter)(value);
  };
  set("Width", &CPDFObj::set_int, options.width);
  set("Height", &CPDFObj::set_int, options.height);
  set("BitsPerComponent", &CPDFObj::set_int, options.bpc);
  set("ColorSpace", &CPDFObj::set_name, spaces[options.space]);
  if ((options.features & 1) != 0) set("ImageMask", &CPDFObj::set_bool, true);
  if ((options.features & 2) != 0) set_numbers(rec->dict.set("Decode"), options.ranges, true);
  if ((options.features & 4) != 0) set_numbers(rec->dict.set("Mask"), options.ranges, false);
  if ((options.features & 16) != 0) set("Interpolate", &CPDFObj::set_bool, false);
  CPDFObj* soft_mask = (options.features & 8) != 0 && location == 1 ? rec->dict.set("SMask") : nullptr;
  if (soft_mask == nullptr) return;
  Options mask = options;
  mask.space = 0;
  mask.bpc = 8;
  mask.features = options.features & 2;
  describe(*soft_mask, mask, 2);
}

void add(std::string& result, const CKXBmp* bmp) {
  result += bmp == nullptr ? '-' : '+';
  if (bmp == nullptr) return;
  require(bmp->pixels != nullptr && bmp->width > 0 && bmp->height > 0 && bmp->stride > 0);
  result.append(reinterpret_cast<const char*>(bmp->pixels), static_cast<std::size_t>(bmp->stride) * static_cast<std::size_t>(bmp->height));
}

// The reduced decoders, which get_bmp() chooses for images far beyond max_size only.
using Decoder = int (CPDFImage::*)();
struct Reduced {
  Decoder decode;
  int shift;
};
constexpr Reduced reduced[] = {
    {&CPDFImage::load_bmp_from1_half, 1},  {&CPDFImage::load_bmp_from1_4in1, 2},  {&CPDFImage::load_bmp_from2_half, 1},
    {&CPDFImage::load_bmp_from2_4in1, 2},  {&CPDFImage::load_bmp_from4_half, 1},  {&CPDFImage::load_bmp_from4_4in1, 2},
    {&CPDFImage::load_bmp_from8_half, 1},  {&CPDFImage::load_bmp_from8_4in1, 2},  {&CPDFImage::load_bmp_from24_half, 1},
    {&CPDFImage::load_bmp_from24_4in1, 2}, {&CPDFImage::load_bmp_from32_half, 1}, {&CPDFImage::load_bmp_from32_4in1, 2},
};

void run_reduced(CPDFImage& image, const Reduced& how, std::string& result) {
  if (image.width < 1 || image.height < 1 || image.stream == nullptr) return;
  const int up = (1 << how.shift) - 1;
  auto bmp = std::make_unique<CKXBmp32>((image.width + up) >> how.shift, (image.height + up) >> how.shift);
  if (bmp->pixels == nullptr) return;
  image.bmp = bmp.release();
  (image.*how.decode)();
  add(result, image.bmp);
}

std::string run(const Options& options, const FuzzInput& rest, unsigned char fill, int fail_at) {
  FuzzInput in = rest;
  std::size_t n = in.left();
  const std::uint8_t* bytes = in.bytes(n);
  Table table(std::vector<unsigned char>(bytes, bytes + n), options.short_row);

  checking_alloc::begin(fill, fail_at);
  std::string result;
  {
    CPDFImage image;
    image.xref = &table;
    describe(image.obj, options, 1);
    image.load();
    _KXRGBA palette[256] = {};
    switch (options.request % 6) {
      case 0: add(result, image.get_bmp()); break;
      case 1: add(result, image.get_bmp_gray()); break;
      case 2: add(result, image.get_mask()); break;
      case 3:
        add(result, image.get_bmp_mono(palette));
        result.append(reinterpret_cast<const char*>(palette), sizeof palette);
        break;
      case 4:
        if (image.smask != nullptr) add(result, image.smask->get_smask());
        break;
      default:
        run_reduced(image, reduced[static_cast<std::size_t>(options.request) / 6 % (sizeof reduced / sizeof *reduced)], result);
        break;
    }
    image.unload();
    require(image.bmp == nullptr && image.bmp_gray == nullptr && image.smask == nullptr);
  }
  checking_alloc::begin(0, 0);
  require(checking_alloc::live_blocks() == 0);
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput in(data, size);
  const Options options(in);
  const std::string first = run(options, in, 0x00, 0);
  require(first == run(options, in, 0xA5, 0));
  if (options.fail_at != 0) run(options, in, 0x5A, options.fail_at);
  return 0;
}
