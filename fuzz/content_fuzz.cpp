// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The walk over content: of a page with an image, a pattern and fonts, and of a form that the page
// and the form itself may run.
//
// Input: the page's content, a form feed, the form's content.
#include <algorithm>

#include "fuzz/document_parts.h"
#include "fuzz/target.h"
#include "tests/support/pdf_builder.h"

std::string run_target(FuzzInput in, bool) {
  const std::string content(in.text());
  const std::size_t middle = std::min(content.find('\f'), content.size());
  PdfBuilder file;
  const std::string image = PdfBuilder::ref(file.add_image(2, 2));
  const std::string glyph = PdfBuilder::ref(file.add_stream("", "d0 2 0 0 2 0 0 cm /I Do"));
  const std::string pattern = PdfBuilder::ref(file.add_stream("/PatternType 1 /Matrix [2 0 0 2 0 0] /BBox [0 0 9 9]", "/I Do"));
  const std::string resources = "/XObject << /I " + image + " /F 6 0 R >> /Pattern << /P " + pattern +
                                " >> /ColorSpace << /C /DeviceRGB >>" +
                                "/Font << /T << /Type /Font /Subtype /Type3 /FontMatrix [1 0 0 1 0 0] /CharProcs << /g " + glyph +
                                " >> /Encoding << /Differences [65 /g] >> /FirstChar 65 /Widths [9] >> >>";
  const int form = file.add_form("/Resources << " + resources + " >>", content.substr(std::min(middle + 1, content.size())));
  require(form == 6);
  file.add_page(resources, content.substr(0, middle));
  return read_document(file.finish());
}
