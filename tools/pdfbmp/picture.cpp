// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/picture.h"

#include <algorithm>

#include "pdf/doc/bitmap_reader.h"
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

// The one place where a kind becomes a request.
std::unique_ptr<CPDFRasterReader> open_reader(PictureKind kind, const CPDFFoundImage& found,
                                              CPDFImage& image) {
  switch (kind) {
    case PictureKind::automatic:
      return (image.flags & CPDFImage::image_mask) != 0 ? open_mask(image, false)
                                                        : open_color(image);
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

std::string why_not(const CPDFLoadedImage& loaded) {
  if (!loaded.problem.empty()) return loaded.problem;
  if (loaded.report != nullptr && !loaded.report->problem.empty()) return loaded.report->problem;
  const CPDFImage& image = *loaded.image;
  if (image.width < 1 || image.height < 1) return "it has no size";
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

}  // namespace

Picture open_picture(CPDFDocument& document, const CPDFFoundImage& found, PictureKind kind) {
  Picture picture;
  picture.loaded = document.load_image(found);
  CPDFImage* image = picture.loaded.image.get();
  if (image == nullptr) {
    picture.error = "there is not enough memory for it";
    return picture;
  }
  picture.passed_over = !is_for(kind, found, *image);
  if (picture.passed_over) return picture;

  // A request may release the colour space, so the row is measured before.
  picture.row_bytes = row_bytes_of(kind, found, *image);
  picture.reader = open_reader(kind, found, *image);
  if (picture.reader == nullptr) {
    picture.error = why_not(picture.loaded);
    return picture;
  }
  // Of a reduced bitmap the last row comes from this one; what follows it need not be there.
  const int rows = picture.reader->info().height;
  const int step = image->height <= rows ? 1 : image->height <= 2 * std::int64_t{rows} ? 2 : 4;
  picture.source_rows = (rows - 1) * step + 1;
  return picture;
}

Delivery delivery_of(const Picture& picture) {
  Delivery delivery;
  const CPDFDecodeReport* report = picture.loaded.report.get();
  if (report == nullptr || picture.row_bytes < 1) return delivery;
  delivery.rows = report->bytes / picture.row_bytes;
  delivery.complete = !report->damaged && delivery.rows >= picture.source_rows;
  if (!delivery.complete) {
    delivery.problem = report->problem.empty() ? "the data ends early" : report->problem;
  }
  return delivery;
}
