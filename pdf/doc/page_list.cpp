// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/page_list.h"

#include <cstdint>
#include <set>
#include <utility>

namespace {

constexpr int max_tree_depth = 100;
constexpr std::int64_t visits_per_object = 4;
constexpr std::int64_t steps_of_object = 1024;  ///< Of the clock: one can be slow to read.

class PageTree {
 public:
  PageTree(CPDFObjectTable& table, CPDFWorkClock& clock)
      : most_visits_(table, visits_per_object), clock_(clock) {}

  void add(QPDFObjectHandle node, int depth) {
    ++visits_;
    if (is_cut() || !node.isDictionary()) return;
    QPDFObjectHandle kids = node.getKey("/Kids");
    if (!kids.isArray()) {
      if (depth > 0 || node.hasKey("/Contents")) pages.push_back(node);
      return;
    }
    if (depth >= max_tree_depth) return;
    const bool indirect = node.isIndirect();
    if (indirect && !above_.insert(node.getObjGen()).second) return;
    for (const QPDFObjectHandle& kid : kids.aitems()) {
      add(kid, depth + 1);
      if (is_cut()) break;
    }
    if (indirect) above_.erase(node.getObjGen());
  }

  bool is_cut() { return !most_visits_.holds(visits_) || clock_.is_over(steps_of_object); }

  std::vector<QPDFObjectHandle> pages;

 private:
  pdfbmp::ObjectBound most_visits_;
  CPDFWorkClock& clock_;
  std::int64_t visits_ = 0;
  std::set<QPDFObjGen> above_;  ///< Nodes over the one at hand: none of them is its descendant.
};

}  // namespace

namespace pdfbmp {

std::vector<QPDFObjectHandle> list_pages(CPDFObjectTable& table, CPDFWorkClock clock) {
  PageTree tree(table, clock);
  tree.add(table.qpdf().getRoot().getKey("/Pages"), 0);
  if (tree.is_cut()) {
    table.add_warning(
        clock.is_over(0)
            ? "the page tree takes longer than the limits allow: not all pages are used"
            : "the page tree is larger than the limits allow: not all pages are used");
  }
  if (!tree.pages.empty()) return std::move(tree.pages);
  std::vector<QPDFObjectHandle> pages;
  for (const auto& entry : table.qpdf().getXRefTable()) {
    if (clock.is_over(steps_of_object)) break;
    QPDFObjectHandle object = table.qpdf().getObject(entry.first);
    if (object.isDictionaryOfType("/Page")) pages.push_back(object);
  }
  return pages;
}

QPDFObjectHandle page_attribute(QPDFObjectHandle page, const char* key) {
  for (int i = 0; i < max_tree_depth && page.isDictionary(); ++i) {
    QPDFObjectHandle value = page.getKey(key);
    if (!value.isNull()) return value;
    page = page.getKey("/Parent");
  }
  return QPDFObjectHandle::newNull();
}

}  // namespace pdfbmp
