// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <qpdf/QPDF.hh>
#include <vector>

namespace pdfbmp {

/// The document's pages in order: the leaves of the page tree, or, where the tree yields none,
/// every object that says it is a page. A page that the tree holds twice comes twice.
std::vector<QPDFObjectHandle> list_pages(QPDF& qpdf);

/// An attribute of a page, inherited from the nodes above where it has none of its own; null
/// object where there is none.
QPDFObjectHandle page_attribute(QPDFObjectHandle page, const char* key);

}  // namespace pdfbmp
