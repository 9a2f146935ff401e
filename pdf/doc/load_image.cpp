// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/load_image.h"

#include <algorithm>
#include <climits>
#include <new>
#include <utility>

#include "pdf/cs/parsed/parsed_space.h"
#include "pdf/doc/default_spaces.h"
#include "pdf/doc/describe.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/filter_table.h"
#include "pdf/filter/measured_stream.h"
#include "pdf/obj/access.h"
#include "pdf/obj/resources.h"

namespace {

/// What the record of an inline image borrows.
struct InlineKeeper {
  std::shared_ptr<const CPDFInlineImage> source;
  std::string data;
  std::unique_ptr<CPDFCSBase> space;
  std::string space_name;
  CPDFResources::NamedCS named = {nullptr, nullptr};
  CPDFResources resources = {nullptr, 0};
};

/// The stream's report, with the clock. A stream without one (bytes of an inline image that no
/// filter decodes) is put behind a counter first.
std::shared_ptr<CPDFDecodeReport> measure(CPDFImage* image,
                                          const std::shared_ptr<CPDFWorkClock>& clock) {
  if (image == nullptr || image->stream == nullptr) return nullptr;
  auto report = pdfbmp::report_of(image->stream);
  if (report == nullptr) {
    report = std::make_shared<CPDFDecodeReport>();
    std::unique_ptr<CPDFStream> plain(std::exchange(image->stream, nullptr));
    image->stream = pdfbmp::make_measured_stream(std::move(plain), report).release();
  }
  report->clock = clock;
  return report;
}

std::int64_t pixels_of(const CPDFImage* image) {
  if (image == nullptr) return 0;
  return std::max<std::int64_t>(image->width, 0) * std::max<std::int64_t>(image->height, 0);
}

/// Measures the image's streams, and gives it the time for as many pixels as the largest has.
void measure_all(CPDFLoadedImage& loaded, pdfbmp::ImageTime& time,
                 const std::shared_ptr<CPDFWorkClock>& clock) {
  CPDFImage& image = *loaded.image;
  // Where pixels are dear, the clock is looked at after each row. The colour space of a JPEG 2000
  // image may still be exchanged.
  constexpr std::int64_t dear_work = 256, many_steps = 1 << 16;
  constexpr int jpx = 9;
  const bool is_jpx = image.stream != nullptr && image.stream->kind == jpx;
  const bool is_dear = is_jpx || pdfbmp::pixel_work(image.cs) >= dear_work;
  clock->look_every(is_dear ? 0 : many_steps);
  time.allow(*clock, std::max({pixels_of(&image), pixels_of(image.mask), pixels_of(image.smask)}));
  loaded.report = measure(&image, clock);
  loaded.mask_report = measure(image.mask, clock);
  loaded.smask_report = measure(image.smask, clock);
}

/// Why there is no stream.
std::string stream_problem(const CPDFDictionary& dict, CPDFObjectTable& table,
                           const std::string& failure) {
  for (const std::string& name : pdfbmp::filter_names(dict, &table)) {
    if (pdfbmp::find_filter(name.c_str()) == nullptr) {
      return "filter " + name + " is not supported";
    }
  }
  return failure.empty() ? "the data cannot be read" : failure;
}

/// Why there is no colour space.
std::string space_problem(const CPDFObj* entry, CPDFObjectTable& table,
                          const CPDFDictionary* named) {
  if (entry == nullptr) return "the image has no colour space";
  const pdfbmp::ColorSpaceName name = pdfbmp::name_color_space(*entry, &table, named);
  if (name.family.empty()) return "the colour space is broken";
  return "colour space " + name.family + " cannot be used for this image";
}

/// Rows are held whole: of the image and of its masks.
bool has_long_rows(const CPDFImage* image, const CPDFFilterLimits& limits) {
  if (image == nullptr) return false;
  const bool stencil = (image->flags & CPDFImage::image_mask) != 0;
  const std::int64_t components = stencil || image->cs == nullptr ? 1 : image->cs->comp_count;
  const std::int64_t bits = std::max<std::int64_t>(image->bpc, 8) * components;
  return std::max<std::int64_t>(image->width, 0) > limits.max_row_bytes * 8 / bits ||
         has_long_rows(image->mask, limits) || has_long_rows(image->smask, limits);
}

bool has_dear_rows(const CPDFImage* image) {
  if (image == nullptr) return false;
  return image->width > pdfbmp::max_row_work / pdfbmp::pixel_work(image->cs) ||
         has_dear_rows(image->mask) || has_dear_rows(image->smask);
}

std::string find_problem(const CPDFImage& image, const CPDFDictionary& dict, const CPDFObj* space,
                         const CPDFDictionary* named, CPDFObjectTable& table,
                         const std::string& failure) {
  if (image.stream == nullptr) return stream_problem(dict, table, failure);
  const bool needs_space = (image.flags & CPDFImage::image_mask) == 0;
  if (needs_space && image.cs == nullptr) return space_problem(space, table, named);
  if (image.width < 1 || image.height < 1) return "the image has no size";
  if (has_long_rows(&image, table.limits())) {
    return "a row of the image has more bytes than the limit of " +
           std::to_string(table.limits().max_row_bytes);
  }
  if (has_dear_rows(&image)) return "the colours of a row take more work than the limits allow";
  return {};
}

}  // namespace

namespace pdfbmp {

CPDFLoadedImage load_image_object(CPDFObjectTable& table, const PDF_REF& ref,
                                  const CPDFDictionary* spaces, ImageTime& time) {
  const std::shared_ptr<CPDFWorkClock> clock = time.begin();
  CPDFLoadedImage loaded;
  loaded.image.reset(new (std::nothrow) CPDFImage);
  if (loaded.image == nullptr) return loaded;
  CPDFImage& image = *loaded.image;
  image.xref = &table;
  table.get_entity(image.obj, ref);
  const CPDFStreamRec* rec = image.obj.stream();
  if (rec == nullptr) {
    loaded.problem = "the object is no stream";
    return loaded;
  }
  image.load();
  const CPDFObj* space = find_key(&rec->dict, CPDFDictionary::sm_tag_cs);
  apply_default_space(image, space, spaces, &table);
  measure_all(loaded, time, clock);
  loaded.problem = find_problem(image, rec->dict, space, nullptr, table, table.failure_of(ref.num));
  return loaded;
}

CPDFLoadedImage load_inline_image(CPDFObjectTable& table,
                                  const std::shared_ptr<const CPDFInlineImage>& source,
                                  ImageTime& time) {
  const std::shared_ptr<CPDFWorkClock> clock = time.begin();
  CPDFLoadedImage loaded;
  loaded.image.reset(new (std::nothrow) CPDFImage);
  if (loaded.image == nullptr || source->dict == nullptr || source->data.size() > INT_MAX) {
    loaded.image.reset();
    return loaded;
  }
  auto keeper = std::make_shared<InlineKeeper>();
  keeper->source = source;
  keeper->data = source->data;
  const CPDFDictionary* named = source->color_spaces.get();
  const CPDFObj* space = image_entry(*source->dict, "CS", CPDFDictionary::sm_tag_cs);
  const char* name = space != nullptr ? space->name() : nullptr;
  const CPDFObj* resource = name != nullptr ? find_key(named, name) : nullptr;
  if (resource != nullptr) {
    keeper->space.reset(CPDFCSBase::parser_cs(resource, &table));
    keeper->space_name = name;
    keeper->named = {keeper->space_name.c_str(), keeper->space.get()};
    keeper->resources = {&keeper->named, 1};
  }
  CPDFImage& image = *loaded.image;
  image.xref = &table;
  image.load_inline(source->dict.get(), reinterpret_cast<unsigned char*>(keeper->data.data()),
                    static_cast<int>(keeper->data.size()), &keeper->resources);
  apply_default_space(image, space, named, &table);
  measure_all(loaded, time, clock);
  loaded.problem = find_problem(image, *source->dict, space, named, table, {});
  loaded.keep_alive = std::move(keeper);
  return loaded;
}

}  // namespace pdfbmp
