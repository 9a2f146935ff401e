// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "pdf/filter/declared_size.h"
#include "pdf/filter/jpx_channels.h"
#include "pdf/filter/jpx_codestream.h"
#include "pdf/filter/jpx_rows.h"
#include "pdf/filter/parms.h"
#include "pdf/filter/row_bytes.h"
#include "pdf/obj/access.h"
#include "pdf/obj/jpx_stream.h"
#include "pdf/obj/object.h"

namespace {

/// The image's ColorSpace is an array that begins with Indexed, by either name.
bool is_indexed(const CPDFFilterSetup& setup) {
  if (setup.image == nullptr) return false;
  const CPDFObj* const entry = find_key(setup.image, CPDFDictionary::sm_tag_cs);
  if (entry == nullptr) return false;
  CPDFObjHolder space, family;
  resolve_copy(entry, setup.xref, space);
  if (space.array() == nullptr || space.array()->count < 1) return false;
  resolve_copy(&space.array()->items[0], setup.xref, family);
  return family.name() != nullptr &&
         (std::strcmp(family.name(), "Indexed") == 0 || std::strcmp(family.name(), "I") == 0);
}

class JPXStream : public CPDFStreamJPX, public CPDFJpxChannels {
 public:
  JPXStream(std::unique_ptr<CPDFJpxCodestream> tiles, const CPDFFilterSetup& setup)
      : report_(setup.report),
        tiles_(std::move(tiles)),
        rows_(tiles_->header(), is_indexed(setup),
              pdfbmp::int_parm(setup.image, setup.xref, "SMaskInData", 0) > 0),
        size_(pdfbmp::declared_size(setup)) {
    const CPDFJpxHeader& header = tiles_->header();
    comp_count = rows_.channels();
    alpha_channel = rows_.alpha_channel();
    if (size_.width == 0) size_.width = static_cast<int>(header.width());
    if (size_.height == 0) size_.height = static_cast<int>(header.height());
    no_memory_ = !set_color_size() ||
                 (alpha_channel >= 0 && !alpha_.bytes.set_size(header.width(), size_.width));
  }

  bool deliver_all(int count) override {
    try {
      if (color_.y > 0 || !rows_.choose_all(tiles_->header(), count)) return false;
    } catch (...) {  // No memory for the tables of the channels.
      return false;
    }
    comp_count = rows_.channels();
    if (!set_color_size()) no_memory_ = true;
    return true;
  }

  void close() override {
    closed_ = true;
    CPDFStream::close();
  }

  int read_block(void* dst, int n) override {
    return read(color_, dst, n, &CPDFJpxRows::color_row);
  }

  int read_alpha(void* dst, int n) override {
    return alpha_channel < 0 ? 0 : read(alpha_, dst, n, &CPDFJpxRows::alpha_row);
  }

 private:
  struct Place {
    CPDFRowBytes bytes;
    std::int64_t y = 0;  ///< The next row.
  };
  bool set_color_size() {
    return color_.bytes.set_size(tiles_->header().width() * comp_count,
                                 std::int64_t{size_.width} * comp_count);
  }

  using RowMaker = void (CPDFJpxRows::*)(const CPDFJpxCodestream&, std::int64_t,
                                         unsigned char*) const;

  int read(Place& place, void* dst, int n, RowMaker make_row) {
    if (closed_) return 0;
    if (no_memory_) report_->note("no memory for a row");
    bool short_of_rows = false;
    const int done = place.bytes.read(static_cast<unsigned char*>(dst), n, [&](unsigned char* row) {
      if (place.y >= size_.height) return false;
      short_of_rows = place.y >= tiles_->header().height();
      if (short_of_rows || !tiles_->decode_at(rows_.line_of(place.y))) return false;
      (rows_.*make_row)(*tiles_, place.y++, row);
      return true;
    });
    if (tiles_->problem() != nullptr) report_->note(tiles_->problem());
    if (done == 0 && n > 0 && short_of_rows) {
      report_->note("the JPEG 2000 image has fewer rows than the dictionary says");
    }
    return done;
  }

  std::shared_ptr<CPDFDecodeReport> report_;
  std::unique_ptr<CPDFJpxCodestream> tiles_;
  CPDFJpxRows rows_;
  pdfbmp::DeclaredSize size_;
  Place color_, alpha_;
  bool no_memory_ = false, closed_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_jpx(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup) {
  try {
    auto tiles =
        std::make_unique<CPDFJpxCodestream>(std::move(input), setup.limits, setup.file_bytes);
    if (tiles->read_header()) return std::make_unique<JPXStream>(std::move(tiles), setup);
    setup.report->note(tiles->problem());
  } catch (...) {
    setup.report->note("no memory for the JPEG 2000 decoder");
  }
  return nullptr;
}

}  // namespace pdfbmp
