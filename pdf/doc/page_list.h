// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <qpdf/QPDFObjectHandle.hh>
#include <vector>

#include "pdf/doc/object_table.h"
#include "pdf/filter/work_clock.h"

namespace pdfbmp {

/// The document's pages in order: the leaves of the page tree, or, where the tree yields none,
/// every object that says it is a page. A page that the tree holds twice comes twice; a tree that
/// holds the same nodes again and again is followed so far as the file's objects make plausible.
/// The caller holds the table's lock. Where the clock is over, the pages end.
std::vector<QPDFObjectHandle> list_pages(CPDFObjectTable& table, CPDFWorkClock clock);

/// An attribute of a page, inherited from the nodes above where it has none of its own; null
/// object where there is none.
QPDFObjectHandle page_attribute(QPDFObjectHandle page, const char* key);

}  // namespace pdfbmp
