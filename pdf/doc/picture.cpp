// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/picture.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/parsed_space.h"
#include "pdf/cs/rows.h"
#include "pdf/doc/color_rows.h"
#include "pdf/doc/decode_array.h"
#include "pdf/doc/opacity_rows.h"
#include "pdf/filter/jpx_channels.h"
#include "pdf/obj/access.h"

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

Bytes make_bytes(std::int64_t n) {
  return Bytes(
      new (std::nothrow) unsigned char[static_cast<std::size_t>(std::max<std::int64_t>(n, 1))]);
}

/// The nearest of `from` positions to position `i` of `to`.
int nearest(int i, int from, int to) {
  return static_cast<int>((2 * std::int64_t{i} + 1) * from / (2 * std::int64_t{to}));
}

/// One channel of a pixel that was blended with the matte colour before it was stored.
unsigned char undo_matte(int value, int matte, int opacity) {
  if (opacity == 0) return static_cast<unsigned char>(matte);
  const int twice = 2 * (value - matte) * 255;
  const int undone = matte + (twice + (twice < 0 ? -opacity : opacity)) / (2 * opacity);
  return static_cast<unsigned char>(std::clamp(undone, 0, 255));
}

/// Everything of a picture that its rows come from. The image goes last.
struct Parts {
  CPDFLoadedImage loaded;
  std::unique_ptr<CPDFColorRows> color;      ///< Null for a stencil.
  std::unique_ptr<CPDFOpacityRows> opacity;  ///< Null without a mask.
  bool has_key = false;
  bool has_matte = false;
  _KXRGBA matte = {0, 0, 0, 0};
};

/// An opaque picture: the colour rows as they come.
class OpaquePicture : public CPDFRasterReader {
 public:
  OpaquePicture(Parts parts, CPDFRasterInfo info)
      : parts_(std::move(parts)), info_(std::move(info)), left_(info_.height) {}

  const CPDFRasterInfo& info() const override { return info_; }

  bool read_row(unsigned char* dst) override {
    if (left_ == 0) return false;
    --left_;
    parts_.color->read(dst, nullptr);
    return true;
  }

 private:
  Parts parts_;
  CPDFRasterInfo info_;
  int left_;
};

/// A picture with alpha: colour and opacity, each at its own size, brought together.
class MaskedPicture : public CPDFRasterReader {
 public:
  MaskedPicture(Parts parts, CPDFRasterInfo info)
      : parts_(std::move(parts)), info_(std::move(info)) {}

  bool prepare() {
    if (parts_.color != nullptr) {
      const CPDFRasterInfo& own = parts_.color->info();
      color_channels_ = own.bits_per_pixel() / 8;
      color_ = make_bytes(own.row_bytes());
      if (parts_.has_key) opacity_ = make_bytes(own.width);
      if (color_ == nullptr) return false;
    }
    if (parts_.opacity != nullptr) opacity_ = make_bytes(parts_.opacity->width());
    one_to_one_ = parts_.color != nullptr && parts_.color->info().width == info_.width &&
                  opacity_width() == info_.width;
    return opacity_ != nullptr;
  }

  const CPDFRasterInfo& info() const override { return info_; }

  bool read_row(unsigned char* dst) override {
    if (next_ == info_.height) return false;
    advance();
    ++next_;
    if (parts_.color == nullptr) {
      write_stencil(dst);
    } else if (color_channels_ == 1) {
      write_pixels<1>(dst);
    } else {
      write_pixels<3>(dst);
    }
    return true;
  }

 private:
  /// Reads on in colour and opacity as far as the next row of the picture needs.
  void advance() {
    if (parts_.color != nullptr) {
      const int wanted = nearest(next_, parts_.color->info().height, info_.height);
      for (; color_row_ < wanted; ++color_row_) {
        parts_.color->read(color_.get(), parts_.has_key ? opacity_.get() : nullptr);
      }
    }
    if (parts_.opacity != nullptr) {
      const int wanted = nearest(next_, parts_.opacity->height(), info_.height);
      for (; opacity_row_ < wanted; ++opacity_row_) parts_.opacity->read(opacity_.get());
    }
  }

  void write_stencil(unsigned char* dst) const {
    for (int x = 0; x < info_.width; ++x) {
      dst[2 * std::ptrdiff_t{x}] = 0;
      dst[2 * std::ptrdiff_t{x} + 1] = opacity_[static_cast<std::size_t>(x)];
    }
  }

  template <int Channels>
  void write_pixels(unsigned char* dst) const {
    if (one_to_one_ && !parts_.has_matte) return interleave<Channels>(dst);
    const int color_width = parts_.color->info().width;
    const int alpha_width = opacity_width();
    const int matte[3] = {parts_.matte.r, parts_.matte.g, parts_.matte.b};
    for (int x = 0; x < info_.width; ++x, dst += Channels + 1) {
      const std::ptrdiff_t cx = nearest(x, color_width, info_.width);
      const unsigned char alpha =
          opacity_[static_cast<std::size_t>(nearest(x, alpha_width, info_.width))];
      for (int i = 0; i < Channels; ++i) {
        const unsigned char value = color_[static_cast<std::size_t>(cx * Channels + i)];
        dst[i] = parts_.has_matte ? undo_matte(value, matte[i], alpha) : value;
      }
      dst[Channels] = alpha;
    }
  }

  /// Colour and opacity of the same width, with nothing to undo: nearly every masked picture.
  template <int Channels>
  void interleave(unsigned char* dst) const {
    const auto row =
        Channels == 3 ? rows().rgba_from_rgb_and_alpha : rows().gray_alpha_from_gray_and_alpha;
    row(dst, color_.get(), static_cast<std::size_t>(info_.width), opacity_.get());
  }

  int opacity_width() const {
    return parts_.opacity != nullptr ? parts_.opacity->width() : parts_.color->info().width;
  }

  Parts parts_;
  CPDFRasterInfo info_;
  Bytes color_, opacity_;
  int color_channels_ = 0;
  bool one_to_one_ = false;                ///< Colour and opacity are both as wide as the picture.
  int next_ = 0;                           ///< Row of the picture.
  int color_row_ = -1, opacity_row_ = -1;  ///< Rows at hand; -1 before the first.
};

const CPDFDictionary* dictionary_of(const CPDFImage& image) {
  const CPDFStreamRec* rec = image.obj.stream();
  return rec != nullptr ? &rec->dict : nullptr;
}

/// Gives a JPEG 2000 image the DeviceN space of its dictionary back, where the codestream has its
/// number of colours: the unit's rule for such images knows 1, 3 and 4.
void restore_device_n(CPDFImage& image) {
  if (image.stream->kind != 9) return;
  const CPDFObj* entry = find_key(dictionary_of(image), CPDFDictionary::sm_tag_cs);
  if (entry == nullptr) return;
  std::unique_ptr<CPDFCSBase> own(CPDFCSBase::parser_cs(entry, image.xref));
  if (own == nullptr || own->family != PDF_CS_DEVICE_N) return;
  if (own->comp_count == image.cs->comp_count ||
      image.width > pdfbmp::max_row_work / pdfbmp::pixel_work(own.get()) ||
      !pdfbmp::deliver_all_channels(*image.stream, own->comp_count)) {
    return;
  }
  if (image.cs_borrowed == 0) delete image.cs;
  image.cs = own.release();
  image.cs_borrowed = 0;
}

CPDFSampleLayout layout_of(const CPDFImage& image, const CPDFDictionary* dict) {
  CPDFSampleLayout layout;
  layout.width = image.width;
  layout.height = image.height;
  layout.bpc = image.bpc;
  layout.components = image.cs->comp_count;
  // Of JPEG 2000 data only masks heed Decode (ISO 32000-1, 7.4.9).
  if (image.stream->kind != 9) {
    layout.decode = pdfbmp::read_decode(dict, image.xref, image.cs, image.bpc);
  }
  return layout;
}

bool is_loaded(const CPDFImage* mask) {
  return mask != nullptr && mask->width > 0 && mask->height > 0;
}

/// Finds what makes the image transparent: the first of soft mask, alpha in the data, stencil mask
/// and colour key. `problem` tells of a mask that cannot be read.
void find_opacity(Parts& parts, CPDFSampleLayout& layout, std::string& problem) {
  CPDFImage& image = *parts.loaded.image;
  if (is_loaded(image.smask)) {
    parts.opacity = pdfbmp::make_mask_rows(*image.smask, dictionary_of(*image.smask), false);
    if (parts.opacity == nullptr) problem = "its soft mask cannot be decoded";
    parts.has_matte = parts.opacity != nullptr && (image.smask->flags & CPDFImage::has_matte) != 0;
    if (parts.has_matte) parts.matte = image.get_matte();
  } else if ((image.flags & CPDFImage::smask_in_data) != 0 && image.jpx_alpha != 0) {
    parts.opacity = pdfbmp::make_jpx_alpha_rows(image);
    // SMaskInData 2: colours were blended with black.
    const CPDFObj* entry = find_key(dictionary_of(image), "SMaskInData");
    parts.has_matte = entry != nullptr && get_int_value(entry, image.xref) == 2;
  } else if (is_loaded(image.mask)) {
    // A Mask that is no stencil breaks the rules; viewers take it as they take a soft mask.
    const bool stencil = (image.mask->flags & CPDFImage::image_mask) != 0;
    parts.opacity = pdfbmp::make_mask_rows(*image.mask, dictionary_of(*image.mask), stencil);
    if (parts.opacity == nullptr) problem = "its mask cannot be decoded";
  } else if (image.has_mask != 0 && image.mask == nullptr) {
    parts.has_key = layout.has_key = true;
    layout.key_min = image.mask_min;
    layout.key_max = image.mask_max;
  }
}

/// Whether both sizes are of a picture that may be made.
bool is_within(int width, int height, std::int64_t max_pixels) {
  return width >= 1 && height >= 1 && height <= max_pixels / width;
}

}  // namespace

std::unique_ptr<CPDFRasterReader> pdfbmp::open_picture(CPDFLoadedImage loaded,
                                                       const CPDFFoundImage& found,
                                                       std::int64_t max_pixels,
                                                       std::string& problem) {
  const auto refuse = [&](std::string why) {
    problem = std::move(why);
    return nullptr;
  };
  if (loaded.image == nullptr) return refuse("out of memory");
  CPDFImage& image = *loaded.image;
  const bool stencil = (image.flags & CPDFImage::image_mask) != 0;
  if (image.width < 1 || image.height < 1) return refuse("it has no size");
  if (!is_within(image.width, image.height, max_pixels)) {
    return refuse("it has more pixels than the limit of " + std::to_string(max_pixels));
  }
  if (image.stream == nullptr || (image.cs == nullptr && !stencil)) {
    return refuse(!loaded.problem.empty() ? loaded.problem : "it has no data or no colour space");
  }
  if (!stencil && (image.bpc < 1 || image.bpc > 16)) {
    return refuse("it has " + std::to_string(image.bpc) + " bits a component");
  }

  Parts parts;
  parts.loaded = std::move(loaded);
  const CPDFDictionary* dict =
      found.inline_image != nullptr ? found.inline_image->dict.get() : dictionary_of(image);
  CPDFRasterInfo info;
  if (stencil) {
    parts.opacity = make_mask_rows(image, dict, true);
    info.format = CPDFPixelFormat::gray_alpha8;
  } else {
    restore_device_n(image);
    CPDFSampleLayout layout = layout_of(image, dict);
    find_opacity(parts, layout, problem);
    if (parts.loaded.report != nullptr) parts.loaded.report->row_bytes = layout.row_bytes();
    const bool opaque = parts.opacity == nullptr && !parts.has_key;
    parts.color = make_color_rows(image, std::move(layout), opaque);
    if (parts.color == nullptr) return refuse("its samples cannot be converted");
    info = parts.color->info();
    if (!opaque) {
      info.format = info.format == CPDFPixelFormat::gray8 ? CPDFPixelFormat::gray_alpha8
                                                          : CPDFPixelFormat::rgba8;
    }
  }
  if (parts.color == nullptr && parts.opacity == nullptr) return refuse("its data cannot be read");

  info.width = std::max(image.width, parts.opacity != nullptr ? parts.opacity->width() : 0);
  info.height = std::max(image.height, parts.opacity != nullptr ? parts.opacity->height() : 0);
  if (!is_within(info.width, info.height, max_pixels)) {
    return refuse("its mask has more pixels than the limit of " + std::to_string(max_pixels));
  }
  if (!found.placements.empty()) {
    info.ppi_x = found.placements[0].ppi[0] * info.width / image.width;
    info.ppi_y = found.placements[0].ppi[1] * info.height / image.height;
  }
  if (parts.opacity == nullptr && !parts.has_key) {
    return std::make_unique<OpaquePicture>(std::move(parts), std::move(info));
  }
  auto picture = std::make_unique<MaskedPicture>(std::move(parts), std::move(info));
  if (!picture->prepare()) return refuse("out of memory");
  return picture;
}
