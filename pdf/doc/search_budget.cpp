// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/search_budget.h"

#include <algorithm>

namespace {

constexpr std::int64_t content_per_file_byte = 16;

// A page takes two nodes, for its content and for itself.
constexpr std::int64_t nodes_per_object = 2;

constexpr std::int64_t max_page_notes = 4'000'000;  ///< Pairs of a page and an image.

}  // namespace

namespace pdfbmp {

CPDFWorkClock search_clock(const CPDFFilterLimits& limits, std::int64_t file_bytes) {
  return CPDFWorkClock(static_cast<double>(limits.max_search_seconds) *
                       static_cast<double>(1 + (file_bytes >> 20)));
}

SearchBudget::SearchBudget(CPDFObjectTable& table, std::int64_t file_bytes)
    : table_(table),
      content_(std::max(table.limits().max_content_bytes, content_per_file_byte * file_bytes)),
      page_notes_(max_page_notes),
      most_nodes_(table, nodes_per_object),
      clock_(search_clock(table.limits(), file_bytes)) {}

bool SearchBudget::is_over(std::int64_t steps) {
  if (!clock_.is_over(steps)) return false;
  tell_once("the search for images takes longer than the limits allow: not all are found");
  return true;
}

void SearchBudget::give_grace() {
  if (is_in_grace_) return;
  is_in_grace_ = true;
  clock_.allow(clock_.used_seconds() + clock_.allowed_seconds() / 4);
}

std::int64_t SearchBudget::content_left() {
  if (content_ <= 0) content_is_cut();
  return std::max<std::int64_t>(content_, 0);
}

void SearchBudget::content_is_cut() {
  tell_once("the content is longer than the limits allow: not all is read");
}

bool SearchBudget::take_node() {
  if (most_nodes_.holds(++nodes_)) return true;
  tell_once("forms are used in more ways than the limits allow: not all are read");
  return false;
}

bool SearchBudget::take_page_note() {
  if (page_notes_-- > 0) return true;
  tell_once("images are on more pages than the limits allow: not all are told");
  return false;
}

bool SearchBudget::has_room_for_image(std::size_t images) {
  if (images < static_cast<std::size_t>(std::max(table_.limits().max_images, 0))) return true;
  tell_once("there are more images than the limits allow: not all are found");
  return false;
}

bool SearchBudget::is_within_nesting(int depth, int most) {
  if (depth < std::min(table_.limits().max_nesting, most)) return true;
  tell_once("forms are nested deeper than the limits allow: not all are read");
  return false;
}

void SearchBudget::tell_once(const char* warning) {
  if (told_.insert(warning).second) table_.add_warning(warning);
}

}  // namespace pdfbmp
