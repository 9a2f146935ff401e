// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <string>

#include "pdf/doc/document.h"
#include "tests/pdf/doc/documents.h"
#include "tools/encoders/pdf_builder.h"

namespace {

/// A document of one page with one image of four bytes that has these entries.
std::unique_ptr<CPDFDocument> document_with(const std::string& entries, const std::string& resources = "") {
  PdfBuilder pdf;
  const int image = pdf.add_stream("/Subtype /Image /Width 2 /Height 2 " + entries, "abcd");
  pdf.add_page("/XObject << /Im " + PdfBuilder::ref(image) + " >> " + resources, "/Im Do");
  return open_bytes(pdf.finish());
}

TEST(LoadImage, SaysWhatIsMissing) {
  const struct {
    const char *entries, *problem;
  } cases[] = {
      {"/BitsPerComponent 8 /ColorSpace /DeviceGray", ""},
      {"/ImageMask true", ""},
      {"/ColorSpace /DeviceGray /Filter /Nonsense", "filter Nonsense is not supported"},
      {"/BitsPerComponent 8", "the image has no colour space"},
      {"/ColorSpace /Pattern", "colour space Pattern cannot be used for this image"},
      {"/ColorSpace 7", "the colour space is broken"},
      {"/ColorSpace /DeviceGray /Width 0", "the image has no size"},
  };
  for (const auto& [entries, problem] : cases) {
    const auto document = document_with(entries);
    EXPECT_EQ(document->load_image(all_images(*document).at(0)).problem, problem) << entries;
  }
}

TEST(LoadImage, DefaultSpacesStandIn) {
  const std::string spaces =
      "/ColorSpace << /DefaultGray [/CalGray << /WhitePoint [1 1 1] /Gamma 2 >>] "
      "/DefaultRGB [/Indexed /DeviceRGB 0 <000000>] /DefaultCMYK /DeviceGray >>";
  const struct {
    std::string entry;
    int family;
  } cases[] = {
      {"/DeviceGray", 2}, {"[/DeviceGray]", 2}, {"[/Indexed /DeviceGray 0 <00>]", 8}, {"[/CalRGB << /WhitePoint [1 1 1] >>]", 4},
      {"/DeviceRGB", 3},  {"/DeviceCMYK", 5},  // Their stand-ins have one component.
  };
  for (const auto& [entry, family] : cases) {
    const auto document = document_with("/BitsPerComponent 8 /ColorSpace " + entry, spaces);
    const CPDFLoadedImage loaded = document->load_image(all_images(*document).at(0));
    ASSERT_NE(loaded.image->cs, nullptr) << entry;
    EXPECT_EQ(loaded.image->cs->family, family) << entry;
  }
}

TEST(LoadImage, TheCodecSettlesTheDepth) {
  const std::pair<const char*, int> cases[] = {
      {"/Filter /JPXDecode /BitsPerComponent 16", 8},
      {"/Filter [/ASCIIHexDecode /CCITTFaxDecode]", 1},
      {"/Filter /FlateDecode /BitsPerComponent 4", 4},
  };
  for (const auto& [entries, bpc] : cases) EXPECT_EQ(all_images(*document_with(entries)).at(0).bpc, bpc) << entries;
}

TEST(OutputIntent, TheFirstProfileForCmyk) {
  PdfBuilder pdf;
  const int rgb = pdf.add_stream("/N 3", "rgb profile");
  const int cmyk = pdf.add_stream("/N 4 /Filter /ASCIIHexDecode", "434D594B>");
  pdf.set(1, "<< /Type /Catalog /Pages 2 0 R /OutputIntents [7 << /DestOutputProfile " + PdfBuilder::ref(rgb) +
                 " >> << /DestOutputProfile " + PdfBuilder::ref(cmyk) + " >>] >>");
  pdf.add_page("", "");
  EXPECT_EQ(open_bytes(pdf.finish())->output_intent_profile(), "CMYK");
  EXPECT_EQ(document_with("")->output_intent_profile(), "");
}

}  // namespace
