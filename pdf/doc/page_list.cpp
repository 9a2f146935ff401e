// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/page_list.h"

#include <cstddef>
#include <set>

namespace {

constexpr int max_tree_depth = 100;
constexpr std::size_t max_pages = 10'000'000;

// Follows the tree below `node`. `above` are the numbers of the nodes over it: a node among its own
// descendants is passed over.
void add_pages(QPDFObjectHandle node, std::set<QPDFObjGen>& above, int depth,
               std::vector<QPDFObjectHandle>& pages) {
  if (!node.isDictionary() || pages.size() >= max_pages) return;
  QPDFObjectHandle kids = node.getKey("/Kids");
  if (!kids.isArray()) {
    if (depth > 0 || node.hasKey("/Contents")) pages.push_back(node);
    return;
  }
  if (depth >= max_tree_depth) return;
  const bool indirect = node.isIndirect();
  if (indirect && !above.insert(node.getObjGen()).second) return;
  for (const QPDFObjectHandle& kid : kids.aitems()) add_pages(kid, above, depth + 1, pages);
  if (indirect) above.erase(node.getObjGen());
}

}  // namespace

namespace pdfbmp {

std::vector<QPDFObjectHandle> list_pages(QPDF& qpdf) {
  std::vector<QPDFObjectHandle> pages;
  std::set<QPDFObjGen> above;
  add_pages(qpdf.getRoot().getKey("/Pages"), above, 0, pages);
  if (!pages.empty()) return pages;
  for (QPDFObjectHandle& object : qpdf.getAllObjects()) {
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
