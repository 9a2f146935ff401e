// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/gallery_card.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>

#include "pdf/doc/png_writer.h"
#include "pdf/doc/thumbnail.h"
#include "tools/pdfbmp/copy_rows.h"
#include "tools/pdfbmp/gallery_parts.h"
#include "tools/pdfbmp/html.h"
#include "tools/pdfbmp/image_facts.h"
#include "tools/pdfbmp/picture.h"

namespace {

// Pictures that are much smaller than this are shown with larger pixels.
constexpr int least_side = 128;

// The longest side of the thumbnails on a page of so many.
int longest_side(std::size_t images) { return images <= 400 ? 320 : images <= 2000 ? 224 : 144; }

class StringSink final : public CPDFByteSink {
 public:
  bool write(const void* bytes, std::size_t n) override {
    text.append(static_cast<const char*>(bytes), n);
    return true;
  }

  std::string text;
};

struct Thumbnail {
  std::string png;  // Empty where there is none.
  int width = 0, height = 0;
  std::string problem;
};

bool is_mask(const CPDFFoundImage& found) {
  return found.kind == CPDFImageKind::mask || found.kind == CPDFImageKind::smask;
}

Thumbnail make_picture(CPDFDocument& document, const CPDFFoundImage& found, int max_side,
                       Options options) {
  Thumbnail thumbnail;
  thumbnail.problem = too_many_pixels(found, options);
  if (!thumbnail.problem.empty()) return thumbnail;
  options.kind = is_mask(found) ? PictureKind::mask : PictureKind::automatic;
  Picture picture = open_picture(document, found, options);
  thumbnail.problem = picture.problem;
  if (picture.reader == nullptr) return thumbnail;
  picture.reader = pdfbmp::make_thumbnail(std::move(picture.reader), max_side);
  if (picture.reader == nullptr) throw std::bad_alloc();

  const CPDFRasterInfo& info = picture.reader->info();
  StringSink sink;
  CPDFPngWriter writer(sink);
  RowBounds bounds;
  const Copied copied = copy_rows(picture, writer, info, bounds);
  if (copied == Copied::unwritten) throw std::bad_alloc();
  const Delivery delivery = delivery_of(picture);
  thumbnail.problem = delivery.problem;
  if (copied == Copied::unread || (!delivery.complete && delivery.rows == 0)) {
    if (thumbnail.problem.empty()) thumbnail.problem = "its rows cannot be read";
    return thumbnail;
  }
  thumbnail.png = std::move(sink.text);
  thumbnail.width = info.width;
  thumbnail.height = info.height;
  return thumbnail;
}

std::string grouped(std::int64_t value) {
  std::string digits = std::to_string(value);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

std::string size_of(int width, int height) {
  return std::to_string(width) + "&nbsp;&times;&nbsp;" + std::to_string(height);
}

// "1-3, 7"
std::string page_ranges(const std::vector<int>& pages) {
  std::string text;
  for (std::size_t i = 0; i < pages.size();) {
    std::size_t end = i + 1;
    while (end < pages.size() && pages[end] == pages[end - 1] + 1) ++end;
    text += (text.empty() ? "" : ", ") + std::to_string(pages[i]);
    if (end - i > 1) text += "&ndash;" + std::to_string(pages[end - 1]);
    i = end;
  }
  return text;
}

// The family in words that people filter by.
std::string space_of(const CPDFFoundImage& found) {
  if (found.image_mask || found.colorspace.empty()) return "none";
  return found.colorspace;
}

std::string color_facts(const CPDFFoundImage& found) {
  std::string text = html_text(space_of(found));
  if (!found.base.empty()) text += " over " + html_text(found.base);
  return text;
}

std::string bits_facts(const CPDFFoundImage& found) {
  std::string text = std::to_string(found.bpc);
  if (found.components > 1) text += " &times; " + std::to_string(found.components) + " components";
  return text;
}

std::string filter_facts(const CPDFFoundImage& found) {
  std::string text;
  for (const std::string& filter : found.filters) {
    text += (text.empty() ? "" : ", ") + html_text(filter);
  }
  return text.empty() ? "none" : text;
}

// The masks of an image come right after it.
std::string mask_facts(const std::vector<CPDFFoundImage>& images, std::size_t i) {
  if (is_mask(images[i])) return "of object " + std::to_string(images[i].mask_of);
  std::string text;
  for (std::size_t k = i + 1; k < images.size() && is_mask(images[k]); ++k) {
    const CPDFFoundImage& mask = images[k];
    if (images[i].object == 0 || mask.mask_of != images[i].object) continue;
    if (!text.empty()) text += "; ";
    text += mask.kind == CPDFImageKind::smask ? "soft" : "stencil";
    text += ", object " + std::to_string(mask.object) + ", " + size_of(mask.width, mask.height);
  }
  return text;
}

// Of the first placement, at its coarser side; 0 where it is not known.
long lowest_ppi(const CPDFFoundImage& found) {
  if (found.placements.empty()) return 0;
  const auto& ppi = found.placements[0].ppi;
  return ppi[0] > 0 && ppi[1] > 0 ? std::lround(std::min({ppi[0], ppi[1], 1e9})) : 0;
}

std::string resolution_facts(const CPDFFoundImage& found) {
  if (lowest_ppi(found) == 0) return {};
  const auto shown = [&](std::size_t axis) {
    return grouped(std::lround(std::min(found.placements[0].ppi[axis], 1e9)));
  };
  std::string facts = shown(0);
  if (shown(1) != facts) facts += " &times; " + shown(1);
  facts += " ppi";
  if (found.placements.size() > 1) {
    facts += ", painted " + grouped(static_cast<std::int64_t>(found.placements.size())) + " times";
  }
  return facts;
}

std::string all_facts(const std::vector<CPDFFoundImage>& images, std::size_t i) {
  const CPDFFoundImage& found = images[i];
  const std::pair<const char*, std::string> facts[] = {
      {"Pages", found.pages.size() > 1 ? page_ranges(found.pages) : ""},
      {"Colour space", color_facts(found)},
      {"Bits", bits_facts(found)},
      {found.filters.size() > 1 ? "Filters" : "Filter", filter_facts(found)},
      {"Mask", mask_facts(images, i)},
      {"Resolution", resolution_facts(found)},
      {"Encoded", grouped(found.bytes) + (found.bytes == 1 ? " byte" : " bytes")},
      {"Interpolate", found.interpolate ? "yes" : ""},
  };
  std::string html;
  for (const auto& [name, value] : facts) {
    if (value.empty()) continue;
    html += fill_html(gallery_parts::fact_html, {{"name", name}, {"value", value}});
  }
  return html;
}

std::string picture_html(const Thumbnail& thumbnail, const CPDFFoundImage& found, int number) {
  if (thumbnail.png.empty()) return std::string(gallery_parts::no_picture_html);
  const int side = std::max(thumbnail.width, thumbnail.height);
  const int scale = side > least_side / 2 ? 1 : least_side / side;
  return fill_html(gallery_parts::picture_html,
                   {{"class", scale > 1 ? "enlarged" : "plain"},
                    {"place", place_of(found, number)},
                    {"width", std::to_string(thumbnail.width * scale)},
                    {"height", std::to_string(thumbnail.height * scale)},
                    {"data", base64(thumbnail.png)}});
}

std::string card_html(const ChosenImages& chosen, std::size_t i, const Thumbnail& thumbnail) {
  const CPDFFoundImage& found = chosen.images[i];
  const int number = chosen.numbers[i];
  std::string place = place_of(found, number);
  place[0] = 'P';
  std::string problem;
  if (!thumbnail.problem.empty()) {
    problem = fill_html(gallery_parts::problem_html,
                        {{"what", thumbnail.png.empty() ? "Not decoded" : "Incomplete"},
                         {"problem", html_text(thumbnail.problem)}});
  }
  return fill_html(gallery_parts::card_html,
                   {{"number", std::to_string(i + 1)},
                    {"page", std::to_string(found.page)},
                    {"kind", kind_name(found.kind)},
                    {"space", html_text(space_of(found))},
                    {"pixels", std::to_string(std::int64_t{found.width} * found.height)},
                    {"bytes", std::to_string(found.bytes)},
                    {"ppi", std::to_string(lowest_ppi(found))},
                    {"picture", picture_html(thumbnail, found, number)},
                    {"place", place},
                    {"width", std::to_string(found.width)},
                    {"height", std::to_string(found.height)},
                    {"problem", problem},
                    {"facts", all_facts(chosen.images, i)}});
}

}  // namespace

GalleryCard make_gallery_card(CPDFDocument& document, const ChosenImages& chosen, std::size_t i,
                              const Options& options) {
  GalleryCard card;
  try {
    Thumbnail thumbnail;
    try {
      const int max_side = longest_side(chosen.images.size());
      thumbnail = make_picture(document, chosen.images[i], max_side, options);
    } catch (const std::bad_alloc&) {
      thumbnail.problem = "there is not enough memory for it";
    }
    card.html = card_html(chosen, i, thumbnail);
    card.problem = thumbnail.problem;
    card.has_picture = !thumbnail.png.empty();
  } catch (const std::bad_alloc&) {
    // Not even for the words.
    card = {"", false, "there is not enough memory for it"};
  }
  return card;
}
