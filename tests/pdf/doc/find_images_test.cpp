// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "tests/pdf/doc/documents.h"
#include "tools/encoders/pdf_builder.h"

namespace {

std::string ref(int number) { return PdfBuilder::ref(number); }

// Images are told apart by their widths. Each is painted on one inch where it is painted at all.
TEST(FindImages, EachHidingPlaceOnce) {
  PdfBuilder pdf;
  const auto image = [&](int width) { return "/XObject << /Im " + ref(pdf.add_image(width, 1)) + " >>"; };
  const std::string paint = "q 72 0 0 72 0 0 cm /Im Do Q ";

  const int inner = pdf.add_form("/Resources << " + image(11) + " >>", paint);
  const int outer =
      pdf.add_form("/Matrix [2 0 0 2 0 0] /Resources << /XObject << /In " + ref(inner) + " >> >>", "0.5 0 0 0.5 0 0 cm /In Do");
  const std::string tiling = "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 100 100] /XStep 100 /YStep 100 ";
  const int pattern = pdf.add_stream(tiling + "/Matrix [1 0 0 1 10 20] /Resources << " + image(12) + " >>", paint);
  const int glyph = pdf.add_stream("", "1 0 d0 720 0 0 720 0 0 cm BI /W 13 /H 1 /BPC 8 /CS /G ID xxxxxxxxxxxxx EI");
  const int font = pdf.add(
      "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [0.01 0 0 0.01 0 0] /FirstChar 65 /LastChar 65 "
      "/Widths [1000] /Encoding << /Differences [65 /a] >> /CharProcs << /a " +
      ref(glyph) + " >> >>");
  const int group = pdf.add_form("/Group << /S /Transparency >> /Resources << " + image(14) + " >>", paint);
  const int state = pdf.add("<< /SMask << /S /Luminosity /G " + ref(group) + " >> >>");
  const int on = pdf.add_form("/Resources << " + image(15) + " >>", "100 0 0 100 0 0 cm /Im Do");
  const int off = pdf.add_form("/Resources << " + image(16) + " >>", paint);
  const int widget =
      pdf.add("<< /Subtype /Widget /Rect [100 100 172 172] /AS /On /AP << /N << /On " + ref(on) + " /Off " + ref(off) + " >> >> >>");
  const int mask = pdf.add_image(18, 1, "/ImageMask true");
  const int soft = pdf.add_image(19, 1);
  const int masked = pdf.add_image(17, 1, "/Mask " + ref(mask) + " /SMask " + ref(soft));
  const int unused = pdf.add_image(20, 1);
  pdf.add_page("/XObject << /Fm " + ref(outer) + " /M " + ref(masked) + " /U " + ref(unused) + " /S " + ref(soft) + " >> /Pattern << /P " +
                   ref(pattern) + " >> /Font << /F " + ref(font) + " >> /ExtGState << /G " + ref(state) + " >>",
               "/Fm Do /Pattern cs /P scn 0 0 9 9 re f /G gs q 72 0 0 72 0 0 cm /M Do Q "
               "BT /F 10 Tf 1 0 0 1 5 6 Tm (AA) Tj ET",
               "/Annots [" + ref(widget) + "]");
  const auto images = images_of(pdf);

  const struct {
    const char* name;
    int width;
    CPDFImageKind kind;
    std::vector<std::array<double, 2>> corners;  ///< Lower left, of each placement.
  } cases[] = {
      {"a form in a form", 11, CPDFImageKind::image, {{0, 0}}},
      {"a tiling pattern", 12, CPDFImageKind::image, {{10, 20}}},
      {"a Type 3 glyph, inline", 13, CPDFImageKind::inline_image, {{5, 6}, {105, 6}}},
      {"a soft-mask group", 14, CPDFImageKind::image, {{0, 0}}},
      {"an appearance", 15, CPDFImageKind::image, {{100, 100}}},
      {"an appearance that is not shown", 16, CPDFImageKind::image, {}},
      {"an image with masks", 17, CPDFImageKind::image, {{0, 0}}},
      {"a mask", 18, CPDFImageKind::mask, {{0, 0}}},
      {"a soft mask", 19, CPDFImageKind::smask, {{0, 0}}},
      {"named but not painted", 20, CPDFImageKind::image, {}},
  };
  EXPECT_EQ(images.size(), std::size(cases));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto found = std::find_if(images.begin(), images.end(), [&](const auto& one) { return one.width == c.width; });
    ASSERT_NE(found, images.end());
    EXPECT_EQ(found->kind, c.kind);
    EXPECT_EQ(found->pages, std::vector<int>{1});
    ASSERT_EQ(found->placements.size(), c.corners.size());
    for (std::size_t i = 0; i < c.corners.size(); ++i) {
      const auto& [page, matrix, bbox, ppi] = found->placements[i];
      const double got[] = {bbox[0], bbox[1], bbox[2] - bbox[0], ppi[0], ppi[1]};
      const double want[] = {c.corners[i][0], c.corners[i][1], 72, static_cast<double>(c.width), 1};
      for (std::size_t k = 0; k < 5; ++k) EXPECT_NEAR(got[k], want[k], 1e-9) << k;
    }
    if (c.width != 17) continue;
    ASSERT_LT(found + 2, images.end());  // Masks stand right behind their image.
    EXPECT_EQ(found[1].mask_of, masked);
    EXPECT_EQ(found[2].object, soft);
  }
}

TEST(FindImages, OneImageOnManyPagesAndPagesInRange) {
  PdfBuilder pdf;
  const int image = pdf.add_image(8, 8);
  const int form = pdf.add_form("/Resources << /XObject << /Im " + ref(image) + " >> >>", "0 72 -36 0 0 0 cm /Im Do");
  const std::string resources = "/XObject << /Im " + ref(image) + " /Fm " + ref(form) + " >>";
  for (int page = 1; page <= 30; ++page) { pdf.add_page(resources, page % 2 == 0 ? "/Fm Do /Fm Do" : ""); }
  pdf.add_page(resources, "72 0 0 72 10 10 cm /Im Do", "/CropBox [10 10 100 100] /UserUnit 2");
  const auto document = open_bytes(pdf.finish());
  ASSERT_NE(document, nullptr);
  const auto images = all_images(*document);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].page, 2);
  EXPECT_EQ(images[0].pages.size(), 16u);
  ASSERT_EQ(images[0].placements.size(), 31u);
  EXPECT_EQ(images[0].placements[0].bbox, (std::array<double, 4>{-36, 0, 0, 72}));
  EXPECT_EQ(images[0].placements[0].ppi, (std::array<double, 2>{8, 16}));
  EXPECT_EQ(images[0].placements.back().bbox, (std::array<double, 4>{0, 0, 144, 144}));

  EXPECT_EQ(document->find_images(4, 5)[0].pages, std::vector<int>{4});
  EXPECT_EQ(document->find_images(5, 5)[0].placements.size(), 0u);
  EXPECT_EQ(document->find_images(-3, 99)[0].pages.size(), 16u);
  EXPECT_TRUE(document->find_images(9, 3).empty());
}

TEST(FindImages, WhatLeadsToItselfEnds) {
  PdfBuilder pdf;
  const int image = pdf.add_image(8, 8, "/SMask 3 0 R");  // Itself: object 3.
  const std::string both = "/Resources << /XObject << /A 4 0 R /B 5 0 R /Im 3 0 R >> >>";
  const int first = pdf.add_form(both, "/B Do /Im Do /A Do"), second = pdf.add_form(both, "/A Do /Im Do /B Do");
  // Each of these runs the one before it twice: 2^40 paths lead to the image.
  int tower = second;
  for (int i = 0; i < 40; ++i) { tower = pdf.add_form("/Resources << /XObject << /T " + ref(tower) + " >> >>", "/T Do /T Do"); }
  pdf.add_page("/XObject << /A " + ref(first) + " /T " + ref(tower) + " >>", "/A Do /T Do");
  const auto document = open_bytes(pdf.finish());
  ASSERT_NE(document, nullptr);
  const auto images = all_images(*document);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].object, image);
  EXPECT_GE(images[0].placements.size(), 2u);
  EXPECT_NE(document->load_image(images[0]).image->stream, nullptr);
  EXPECT_NE(document->warnings().back().find("nested deeper than the limits"), std::string::npos);
}

TEST(FindImages, AnInlineImageOfSharedContentIsOne) {
  PdfBuilder pdf;
  const int content = pdf.add_stream("",
                                     "q 36 0 0 36 0 0 cm BI /W 4 /H 2 /BPC 8 /CS /Cs1 ID\na EI Q b EI Q BI /W 1 /H 1 /IM true ID\n\x80 EI "
                                     "BI /W -1 /H 1 /IM true ID x EI");
  for (int page = 0; page < 3; ++page) { pdf.add_page_of("/ColorSpace << /Cs1 [/Indexed /DeviceRGB 1 <000000FFFFFF>] >>", content); }
  const auto document = open_bytes(pdf.finish());
  ASSERT_NE(document, nullptr);
  const auto images = all_images(*document);
  ASSERT_EQ(images.size(), 3u);
  EXPECT_EQ(images[2].placements.at(0).ppi, (std::array<double, 2>{0, 72}));
  EXPECT_EQ(images[0].pages, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(images[0].colorspace + " over " + images[0].base, "Indexed over DeviceRGB");
  EXPECT_EQ(read_all(document->raw_stream(images[0]).get()), "a EI Q b");
  EXPECT_TRUE(images[1].image_mask && images[1].bytes == 1);
  const CPDFLoadedImage loaded = document->load_image(images[0]);
  EXPECT_EQ(loaded.problem, "");
  EXPECT_EQ(loaded.image->cs_borrowed, 1);
  EXPECT_EQ(read_all(loaded.image->stream), "a EI Q b");
  EXPECT_EQ(loaded.report->bytes, 8);
}

}  // namespace
