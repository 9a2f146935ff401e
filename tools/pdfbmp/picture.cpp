// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/picture.h"

#include <algorithm>
#include <utility>

#include "pdf/doc/bitmap_reader.h"
#include "pdf/doc/picture.h"
#include "pdf/image/decode/scale.h"
#include "pdf/image/image.h"

namespace {

// What kind of image each request is for; of others it gives nothing.
bool is_for(PictureKind kind, const CPDFFoundImage& found, const CPDFImage& image) {
  switch (kind) {
    case PictureKind::automatic:
      return found.kind != CPDFImageKind::mask && found.kind != CPDFImageKind::smask;
    case PictureKind::color:
    case PictureKind::gray:
      return (image.flags & (CPDFImage::image_mask | CPDFImage::smask_in_data)) == 0;
    case PictureKind::mask:
      if (found.kind != CPDFImageKind::smask) {
        return (image.flags & CPDFImage::image_mask) != 0 || image.bpc == 1;
      }
      return (image.bpc == 1 || image.bpc == 8) && image.cs != nullptr && image.cs->family == 1;
    case PictureKind::mono:
      if (image.cs == nullptr || image.cs->comp_count != 1) return false;
      if (image.mask != nullptr || image.smask != nullptr) return false;
      if ((image.flags & (CPDFImage::image_mask | CPDFImage::smask_in_data)) != 0) return false;
      return image.bpc == 1 || (image.bpc == 8 && (image.cs->family == 1 || image.cs->family == 2));
  }
  return false;
}

std::unique_ptr<CPDFRasterReader> open_mask(CPDFImage& image, bool soft) {
  const CKXBmp8* bmp = soft ? image.get_smask() : image.get_mask();
  return bmp == nullptr ? nullptr : pdfbmp::make_bitmap_reader(*bmp);
}

std::unique_ptr<CPDFRasterReader> open_color(CPDFImage& image) {
  const CKXBmp32* bmp = image.get_bmp();
  return bmp == nullptr ? nullptr : pdfbmp::make_bitmap_reader(*bmp);
}

std::unique_ptr<CPDFRasterReader> open_gray(CPDFImage& image) {
  const CKXBmpGray* bmp = image.get_bmp_gray();
  return bmp == nullptr ? nullptr : pdfbmp::make_bitmap_reader(*bmp);
}

std::unique_ptr<CPDFRasterReader> open_mono(CPDFImage& image) {
  _KXRGBA palette[256];
  const CKXBmp8* bmp = image.get_bmp_mono(palette);
  return bmp == nullptr ? nullptr : pdfbmp::make_bitmap_reader(*bmp, palette);
}

std::unique_ptr<CPDFRasterReader> open_automatic(Picture& picture, const CPDFFoundImage& found,
                                                 std::int64_t max_pixels) {
  // The picture takes the record; its reports are wanted here as well.
  CPDFLoadedImage taken = std::exchange(picture.loaded, CPDFLoadedImage());
  picture.loaded.report = taken.report;
  picture.loaded.mask_report = taken.mask_report;
  picture.loaded.smask_report = taken.smask_report;
  return pdfbmp::open_picture(std::move(taken), found, max_pixels, picture.problem);
}

// The one place where a kind becomes a request.
std::unique_ptr<CPDFRasterReader> open_reader(Picture& picture, const CPDFFoundImage& found,
                                              const Options& options) {
  CPDFImage& image = *picture.loaded.image;
  switch (options.kind) {
    case PictureKind::automatic:
      return open_automatic(picture, found, options.limits.max_pixels);
    case PictureKind::color:
      return open_color(image);
    case PictureKind::gray:
      return open_gray(image);
    case PictureKind::mask:
      return open_mask(image, found.kind == CPDFImageKind::smask);
    case PictureKind::mono:
      return open_mono(image);
  }
  return nullptr;
}

// Bytes of the bitmap that a request makes in memory; pictures are made row by row.
std::int64_t bitmap_bytes(PictureKind kind, const CPDFImage& image) {
  using image_decoding::Scale;
  const std::int64_t pixels = std::int64_t{image.width} * image.height;
  Scale scale = Scale::full;
  int pixel_bytes = 1;
  switch (kind) {
    case PictureKind::automatic:
      return 0;
    case PictureKind::color:
      scale = image_decoding::scale_of(pixels, false);
      pixel_bytes = 4;
      break;
    case PictureKind::gray:
      pixel_bytes = 2;
      break;
    case PictureKind::mask:
      break;
    case PictureKind::mono:
      if (pixels > 1 << 26) scale = Scale::quarter;
      break;
  }
  const std::int64_t row = std::int64_t{scaled(image.width, scale)} * pixel_bytes;
  return (row + 3) / 4 * 4 * scaled(image.height, scale);
}

std::string why_not(const CPDFLoadedImage& loaded) {
  if (!loaded.problem.empty()) return loaded.problem;
  if (loaded.report != nullptr && !loaded.report->problem.empty()) return loaded.report->problem;
  return "it cannot be decoded, or there is not enough memory for it";
}

// Bits of one pixel of a stencil or mask, whatever else the dictionary says, are one.
std::int64_t row_bytes_of(PictureKind kind, const CPDFFoundImage& found, const CPDFImage& image) {
  const bool stencil = (image.flags & CPDFImage::image_mask) != 0 ||
                       (kind == PictureKind::mask && found.kind != CPDFImageKind::smask);
  const std::int64_t components = image.cs == nullptr ? 1 : image.cs->comp_count;
  const std::int64_t bits = stencil ? 1 : std::max<std::int64_t>(image.bpc, 1) * components;
  return (std::max(image.width, 0) * bits + 7) / 8;
}

// Of a reduced bitmap the last row comes from this one; what follows it need not be there.
int rows_needed(PictureKind kind, int image_rows, int bitmap_rows) {
  if (kind == PictureKind::automatic || image_rows <= bitmap_rows) return image_rows;
  const int step = image_rows <= 2 * std::int64_t{bitmap_rows} ? 2 : 4;
  return (bitmap_rows - 1) * step + 1;
}

bool is_damaged(const std::shared_ptr<CPDFDecodeReport>& report) {
  return report != nullptr && report->damaged;
}

std::string words_of(const CPDFDecodeReport& report) {
  return report.problem.empty() ? "the data ends early" : report.problem;
}

}  // namespace

std::string too_many_pixels(const CPDFFoundImage& found, const Options& options) {
  if (std::int64_t{found.width} * found.height <= options.limits.max_pixels) return {};
  return "its " + std::to_string(found.width) + " x " + std::to_string(found.height) +
         " pixels are more than --max-pixels allows";
}

Picture open_picture(CPDFDocument& document, const CPDFFoundImage& found, const Options& options) {
  Picture picture;
  picture.loaded = document.load_image(found);
  CPDFImage* image = picture.loaded.image.get();
  if (image == nullptr) {
    picture.problem = "there is not enough memory for it";
    return picture;
  }
  picture.passed_over = !is_for(options.kind, found, *image);
  if (picture.passed_over) return picture;
  if (!picture.loaded.problem.empty() || image->width < 1 || image->height < 1) {
    picture.problem = picture.loaded.problem.empty() ? "it has no size" : picture.loaded.problem;
    return picture;
  }

  if (bitmap_bytes(options.kind, *image) > options.max_bitmap_bytes) {
    picture.problem = "its bitmap has more bytes than --limit bitmap-bytes allows";
    return picture;
  }

  // A request may release the colour space, or take the whole record: what is asked later is noted
  // before.
  picture.row_bytes = row_bytes_of(options.kind, found, *image);
  const int image_rows = image->height;
  picture.reader = open_reader(picture, found, options);
  if (picture.reader == nullptr) {
    if (picture.problem.empty()) picture.problem = why_not(picture.loaded);
    return picture;
  }
  picture.source_rows = rows_needed(options.kind, image_rows, picture.reader->info().height);
  return picture;
}

Delivery delivery_of(const Picture& picture) {
  Delivery delivery;
  const CPDFLoadedImage& loaded = picture.loaded;
  if (loaded.report == nullptr || picture.row_bytes < 1) return delivery;
  // A picture may read other rows than the record told at first.
  const std::int64_t told = loaded.report->row_bytes;
  delivery.rows = loaded.report->bytes / (told > 0 ? told : picture.row_bytes);
  if (loaded.report->damaged || delivery.rows < picture.source_rows) {
    delivery.problem = words_of(*loaded.report);
  } else if (!picture.problem.empty()) {
    delivery.problem = picture.problem;
  } else if (is_damaged(loaded.smask_report)) {
    delivery.problem = "its soft mask: " + words_of(*loaded.smask_report);
  } else if (is_damaged(loaded.mask_report)) {
    delivery.problem = "its mask: " + words_of(*loaded.mask_report);
  } else {
    delivery.complete = true;
  }
  return delivery;
}
