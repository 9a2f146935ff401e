// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/native_file.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

#include "tests/pdf/doc/documents.h"
#include "tools/encoders/encoders.h"
#include "tools/encoders/jbig2_encoder.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/pdf_builder.h"

namespace {

using encoders::FaxAlign;
using encoders::jbig2_segment;

constexpr int width = 16, height = 3;
const encoders::FaxRows fax_rows = {"0001111000011000", "1111111111111111", "0000000000000001"};

std::string jpeg(int adobe) {
  return encoders::encode_jpeg({JCS_YCbCr, adobe, width, height}, [](int x, int y, int c) { return 9 * x + y + c; });
}

// The directory of a TIFF file that begins at byte 8; values by tag.
std::map<int, unsigned> tags_of(const std::string& tiff) {
  const auto number = [&](std::size_t at, int n) {
    unsigned v = 0;
    while (n-- > 0) v = v << 8 | static_cast<unsigned char>(tiff[at + static_cast<std::size_t>(n)]);
    return v;
  };
  std::map<int, unsigned> tags;
  for (std::size_t i = 0; i < number(8, 2); ++i) tags[static_cast<int>(number(10 + 12 * i, 2))] = number(18 + 12 * i, 4);
  return tags;
}

TEST(NativeFile, PassesTheCodecsBytesOn) {
  const std::string jpx = encoders::encode_jpx({{{}}}, [](int, int x, int y) { return x + y; });
  const std::string jp2 = encoders::jpx::file_of(jpx, encoders::jpx::color_box(17));
  const std::string globals = jbig2_segment(0, 16, 0, "table"), magic("\x97JB2\r\n\x1A\n\1\0\0\0\1", 13);
  const std::string page = encoders::jbig2_page(width, height) + encoders::jbig2_generic(7, fax_rows, 0);
  const std::string end_of_page = jbig2_segment(8, 49, 1, ""), end_of_file = jbig2_segment(9, 51, 0, "");
  // A region whose length is not known: the marker and the number of rows end it.
  const std::string open_region = encoders::jpx::big_endian(2, 4) + std::string("\46\0\1\xFF\xFF\xFF\xFF", 7) + std::string(26, 'x') +
                                  "\xFF\xAC" + std::string(4, '\0');
  const auto fax = [](int k, bool codes, FaxAlign align = FaxAlign::none) { return encoders::encode_fax(fax_rows, {k, codes, align}); };
  const std::string columns = "/Filter /CCITTFaxDecode /DecodeParms << /Columns 16 ";
  struct {
    const char* name;
    std::string entries, data;
    const char* suffix;                                  // Empty: it cannot be passed on.
    std::string before, bytes, after;                    // Of the file, but for a TIFF's begin.
    unsigned compression = 0, options = 0, is_dark = 0;  // Of a TIFF file.
  } const cases[] = {
      {"JPEG", "/Filter /DCTDecode", jpeg(-1), "jpg", "", jpeg(-1), ""},
      {"deflated JPEG", "/Filter [/FlateDecode /DCTDecode]", encoders::deflate(jpeg(1)), "jpg", "", jpeg(1), ""},
      {"transform that only the PDF tells", "/Filter /DCTDecode /DecodeParms << /ColorTransform 0 >>", jpeg(-1), "", "", "", ""},
      {"codestream", "/Filter /JPXDecode", jpx, "j2k", "", jpx, ""},
      {"JP2", "/Filter /JPXDecode", jp2, "jp2", "", jp2, ""},
      {"JBIG2", "/Filter /JBIG2Decode /DecodeParms << /JBIG2Globals 3 0 R >>", page, "jb2", magic + globals, page,
       end_of_page + end_of_file},
      {"JBIG2 of unknown length", "/Filter /JBIG2Decode", page + open_region + end_of_page, "jb2", magic, page + open_region + end_of_page,
       end_of_file},
      {"JBIG2 cut", "/Filter /JBIG2Decode", page.substr(0, page.size() - 1), "", "", "", ""},
      {"G4", columns + "/K -1 >>", fax(-1, false), "tif", "", fax(-1, false), "", 4, 0, 0},
      {"G4, dark", columns + "/K -1 /BlackIs1 true >>", fax(-1, false), "tif", "", fax(-1, false), "", 4, 0, 1},
      {"G4, aligned", columns + "/K -1 /EncodedByteAlign true >>", fax(-1, false, FaxAlign::row), "", "", "", ""},
      {"G3", columns + ">>", fax(0, true), "tif", "", fax(0, true), "", 3, 0, 0},
      {"G3, two dimensions", columns + "/K 1 >>", fax(1, true), "tif", "", fax(1, true), "", 3, 1, 0},
      {"G3 without codes", columns + ">>", fax(0, false), "", "", "", ""},
      {"G3, aligned rows", columns + "/EncodedByteAlign true >>", fax(0, false, FaxAlign::row), "tif", "", fax(0, false, FaxAlign::row), "",
       2, 0, 0},
  };
  for (const auto& c : cases) {
    PdfBuilder pdf;
    pdf.add_stream("", globals);
    pdf.add_page_with({pdf.add_image(width, height, "/ColorSpace /DeviceGray /BitsPerComponent 1 " + c.entries, c.data)});
    const auto document = open_bytes(pdf.finish());
    CPDFNativeFile file;
    ASSERT_EQ(pdfbmp::open_native_file(*document, all_images(*document).at(0), {}, file), *c.suffix != '\0') << c.name;
    if (*c.suffix == '\0') continue;
    EXPECT_STREQ(file.suffix, c.suffix) << c.name;
    EXPECT_TRUE(c.bytes == std::string(file.data->data(), file.data->data() + file.data->size())) << c.name;
    EXPECT_TRUE(file.tail == c.after && file.problem.empty()) << c.name;
    if (c.compression == 0) {
      EXPECT_TRUE(file.head == c.before) << c.name;
      continue;
    }
    auto tags = tags_of(file.head);
    EXPECT_TRUE(tags[256] == width && tags[257] == height) << c.name;
    EXPECT_TRUE(tags[259] == c.compression && tags[292] == c.options && tags[262] == c.is_dark) << c.name;
    EXPECT_TRUE(tags[273] == file.head.size() && tags[279] == c.bytes.size()) << c.name;
  }
}

}  // namespace
