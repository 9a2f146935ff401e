// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/table.h"

#include <gtest/gtest.h>

namespace {

TEST(Table, ColumnsAreAlignedAndForeignNamesTame) {
  std::vector<CPDFFoundImage> images(2);
  images[0].page = 1;
  images[0].object = 7;
  images[0].width = 10;
  images[0].height = 20;
  images[0].bpc = 8;
  images[0].components = 3;
  images[0].colorspace = "ICCBased";
  images[0].filters = {"ASCII85Decode", "DCTDecode"};
  images[0].bytes = 1536;
  images[0].placements.resize(1);
  images[0].placements[0].ppi = {149.6, 0};
  images[1].kind = CPDFImageKind::inline_image;
  images[1].page = 1;
  images[1].colorspace = "\x1B[31mred";
  images[1].bytes = 999;
  const std::string table = image_table(images);
  EXPECT_EQ(table,
            "page  num  type    width  height  color     comp  bpc  enc       interp  object"
            "  x-ppi  y-ppi  size\n" +
                std::string(table.find('\n'), '-') +
                "\n   1    1  image      10      20  icc          3    8  a85+jpeg  no           7"
                "    150      -  1.5K\n"
                "   1    2  inline      0       0  ?[31mred     0    0  raw       no           -"
                "      -      -  999B\n");
}

}  // namespace
