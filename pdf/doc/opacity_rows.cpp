// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/opacity_rows.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "pdf/cs/parsed/families.h"
#include "pdf/cs/rows.h"
#include "pdf/doc/decode_array.h"
#include "pdf/doc/sample_rows.h"
#include "pdf/obj/jpx_stream.h"

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

class MaskRows : public CPDFOpacityRows {
 public:
  /// `gray` converts samples that are not gray themselves, or is null.
  MaskRows(std::unique_ptr<CPDFSampleRows> samples, CPDFCSBase* gray, bool zero_is_opaque)
      : samples_(std::move(samples)), gray_(gray), zero_is_opaque_(zero_is_opaque) {}

  bool prepare() {
    if (gray_ == nullptr) return true;
    const auto pixels = static_cast<std::size_t>(width());
    row_.reset(
        new (std::nothrow) unsigned char[pixels * static_cast<std::size_t>(gray_->comp_count)]);
    pairs_.reset(new (std::nothrow) unsigned char[pixels * 2]);
    return row_ != nullptr && pairs_ != nullptr;
  }

  int width() const override { return samples_->layout().width; }
  int height() const override { return samples_->layout().height; }

  void read(unsigned char* dst) override {
    const auto n = static_cast<std::size_t>(width());
    if (!samples_->read(gray_ != nullptr ? row_.get() : dst)) {
      std::memset(dst, 0, n);
      return;
    }
    if (gray_ != nullptr) {
      gray_->batch_gray(pairs_.get(), row_.get(), width() * gray_->comp_count);
      for (std::size_t i = 0; i < n; ++i) dst[i] = pairs_[2 * i];
    }
    if (zero_is_opaque_) rows().complement(dst, dst, n);
  }

 private:
  std::unique_ptr<CPDFSampleRows> samples_;
  CPDFCSBase* gray_;
  bool zero_is_opaque_;
  Bytes row_, pairs_;
};

class JpxAlphaRows : public CPDFOpacityRows {
 public:
  JpxAlphaRows(CPDFStreamJPX& stream, int width, int height)
      : stream_(stream), width_(width), height_(height) {}

  int width() const override { return width_; }
  int height() const override { return height_; }

  void read(unsigned char* dst) override {
    const int arrived = std::clamp(stream_.read_alpha(dst, width_), 0, width_);
    std::memset(dst + arrived, 0, static_cast<std::size_t>(width_ - arrived));
  }

 private:
  CPDFStreamJPX& stream_;
  int width_, height_;
};

bool is_gray(const CPDFCSBase& cs) {
  return cs.family == PDF_CS_DEVICE_GRAY || cs.family == PDF_CS_CAL_GRAY;
}

}  // namespace

std::unique_ptr<CPDFOpacityRows> pdfbmp::make_mask_rows(CPDFImage& mask, const CPDFDictionary* dict,
                                                        bool zero_is_opaque) {
  if (mask.stream == nullptr || mask.height < 1) return nullptr;
  // A stencil has one bit a pixel and no space, whatever its dictionary says.
  const bool stencil = (mask.flags & CPDFImage::image_mask) != 0;
  CPDFCSBase* cs = stencil ? nullptr : mask.cs;

  CPDFSampleLayout layout;
  layout.width = mask.width;
  layout.height = mask.height;
  layout.bpc = stencil ? 1 : mask.bpc;
  if (layout.bpc < 1 || layout.bpc > 16) return nullptr;
  layout.components = cs != nullptr ? cs->comp_count : 1;
  layout.decode = read_decode(dict, mask.xref, cs, layout.bpc);
  auto samples = CPDFSampleRows::make(*mask.stream, std::move(layout));
  if (samples == nullptr) return nullptr;

  auto rows = std::make_unique<MaskRows>(
      std::move(samples), cs != nullptr && !is_gray(*cs) ? cs : nullptr, zero_is_opaque);
  return rows->prepare() ? std::move(rows) : nullptr;
}

std::unique_ptr<CPDFOpacityRows> pdfbmp::make_jpx_alpha_rows(CPDFImage& image) {
  if (image.jpx_alpha == 0 || image.stream == nullptr || image.stream->kind != 9) return nullptr;
  if (image.width < 1 || image.height < 1) return nullptr;
  return std::make_unique<JpxAlphaRows>(static_cast<CPDFStreamJPX&>(*image.stream), image.width,
                                        image.height);
}
