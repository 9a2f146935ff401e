// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/band_rows.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "pdf/cs/rows.h"
#include "pdf/image/decode/scale.h"

namespace {

// Of a band's bitmap. Bands grow from the first to the full size, so that whoever stops reading a
// picture whose colours are dear has not waited for many rows.
constexpr std::int64_t first_band_bytes = std::int64_t{1} << 14;
constexpr std::int64_t full_band_bytes = std::int64_t{1} << 18;

/// The samples as the stream of a band's record: each read is one row. A row that cannot be read
/// leaves its place in the bitmap blank. Opacity by the colour key is gathered on the way.
class RowStream : public CPDFStream {
 public:
  RowStream(CPDFSampleRows& samples, unsigned char* key) : samples_(samples), key_(key) {}

  int read_block(void* dst, int n) override {
    const bool is_read = samples_.read(static_cast<unsigned char*>(dst));
    if (key_ != nullptr) {
      const auto width = static_cast<std::size_t>(samples_.layout().width);
      std::memcpy(key_, samples_.key_opacity(), width);
      key_ += width;
    }
    return is_read ? n : 0;
  }

 private:
  CPDFSampleRows& samples_;
  unsigned char* key_;
};

class BandRows : public CPDFColorRows {
 public:
  BandRows(CPDFCSBase& cs, std::unique_ptr<CPDFSampleRows> samples)
      : cs_(cs), samples_(std::move(samples)) {
    info_.width = samples_->layout().width;
    info_.height = samples_->layout().height;
    info_.format = CPDFPixelFormat::rgb8;
    most_rows_ = rows_in(full_band_bytes);
    coming_rows_ = rows_in(first_band_bytes);
  }

  bool prepare() {
    // One row must stay below the size from which the unit reduces pictures.
    if (info_.width >= image_decoding::half_size_from) return false;
    if (!samples_->layout().has_key) return true;
    keys_.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(most_rows_) *
                                                 static_cast<std::size_t>(info_.width)]);
    return keys_ != nullptr;
  }

  void read(unsigned char* dst, unsigned char* key) override {
    const auto width = static_cast<std::size_t>(info_.width);
    if (next_ == band_rows_) decode_band();
    const CKXBmp32* bmp = band_ != nullptr ? band_->bmp : nullptr;
    if (bmp == nullptr) {
      std::memset(dst, 0, width * 3);
      if (key != nullptr) std::memset(key, 0, width);
      return;
    }
    const unsigned char* pixels =
        bmp->pixels + std::ptrdiff_t{bmp->height - 1 - next_} * bmp->stride;
    rows().rgb_from_rgba(dst, pixels, width);
    if (key != nullptr) std::memcpy(key, &keys_[static_cast<std::size_t>(next_) * width], width);
    ++next_;
  }

 private:
  int rows_in(std::int64_t bytes) const {
    return static_cast<int>(
        std::clamp<std::int64_t>(bytes / (std::int64_t{4} * info_.width), 1, info_.height));
  }

  void decode_band() {
    band_rows_ = std::min(coming_rows_, info_.height - done_);
    coming_rows_ = std::min(coming_rows_ * 2, most_rows_);
    done_ += band_rows_;
    next_ = 0;
    band_.reset(new (std::nothrow) CPDFImage);
    if (band_ == nullptr) return;
    band_->width = info_.width;
    band_->height = band_rows_;
    band_->bpc = 8;
    band_->cs = &cs_;
    band_->cs_borrowed = 1;
    band_->stream = new (std::nothrow) RowStream(*samples_, keys_.get());
    band_->get_bmp();
  }

  CPDFCSBase& cs_;
  std::unique_ptr<CPDFSampleRows> samples_;
  std::unique_ptr<unsigned char[]> keys_;
  std::unique_ptr<CPDFImage> band_;
  int most_rows_ = 0;    ///< Of a full band.
  int coming_rows_ = 0;  ///< Of the band that comes next.
  int band_rows_ = 0;    ///< Of the band at hand.
  int next_ = 0;         ///< Row of the band to be given next.
  int done_ = 0;         ///< Rows decoded so far.
};

}  // namespace

std::unique_ptr<CPDFColorRows> pdfbmp::make_band_rows(CPDFCSBase& cs,
                                                      std::unique_ptr<CPDFSampleRows> samples) {
  auto rows = std::make_unique<BandRows>(cs, std::move(samples));
  return rows->prepare() ? std::move(rows) : nullptr;
}
