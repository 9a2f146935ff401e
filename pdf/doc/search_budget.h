// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "pdf/doc/object_table.h"
#include "pdf/filter/work_clock.h"

namespace pdfbmp {

/// The clock of a search for pages or images, from now on.
CPDFWorkClock search_clock(const CPDFFilterLimits& limits, std::int64_t file_bytes);

/// What one search for images may still cost. A file can make everything it holds count for many
/// pages, forms and images, so nothing that grows with their product goes unbounded. What does not
/// fit any more is told once, as a warning, and left out.
class SearchBudget {
 public:
  SearchBudget(CPDFObjectTable& table, std::int64_t file_bytes);

  /// Counts so many steps of work, each about a microsecond; true when the time is over.
  bool is_over(std::int64_t steps = 1);

  /// A little more time to make use of what was found when the time was over. Nothing is read any
  /// more from then on.
  void give_grace();
  bool is_in_grace() const { return is_in_grace_; }

  CPDFWorkClock& clock() { return clock_; }

  /// How many bytes of content may still be read; where there are none, that is told.
  std::int64_t content_left();
  void take_content(std::int64_t bytes) { content_ -= bytes; }
  void content_is_cut();

  bool take_node();       ///< For a content stream under one set of resources.
  bool take_page_note();  ///< That one more image stands on one more page.
  bool has_room_for_image(std::size_t images);
  bool is_within_nesting(int depth, int most);

 private:
  void tell_once(const char* warning);

  CPDFObjectTable& table_;
  std::int64_t content_, page_notes_;
  std::int64_t nodes_ = 0;
  ObjectBound most_nodes_;
  bool is_in_grace_ = false;
  CPDFWorkClock clock_;
  std::set<std::string> told_;
};

}  // namespace pdfbmp
