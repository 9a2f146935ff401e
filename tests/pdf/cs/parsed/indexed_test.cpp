// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <vector>

#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_cmyk_ext.h"
#include "tests/pdf/cs/parsed/spaces.h"

namespace {

using namespace testing_support;

TEST(ParserCs, FindsFamiliesByNameAndRefusesTheRest) {
  TextXRef xref;
  xref.add(1, "/DeviceRGB");
  xref.add(2, "[/Indexed 2 0 R 1 <0000>]");  // Its own base.
  xref.add(3, "[3 0 R]");                    // Its own name.
  xref.add(4, "[/Indexed 1 0 R 0 <010203>]");
  struct {
    int family, components;  ///< 0 where there is no space.
    std::vector<const char*> entries;
  } const cases[] = {
      {1, 1, {"/DeviceGray", "/G", "[/G]"}},
      {3, 3, {"/DeviceRGB", "/RGB", "1 0 R"}},
      {5, 4, {"/DeviceCMYK", "/CMYK", "[/DeviceCMYK]", "[/CalCMYK <<>>]"}},
      {8, 1, {"[/I /RGB 0 <000000>]", "4 0 R"}},
      {2, 1, {"[/CalGray <</WhitePoint [0.9505 1 1.089]>>]"}},
      {4, 3, {"[/CalRGB <</WhitePoint [0.9505 1 1.089]>>]"}},
      {6, 3, {"[/Lab <</WhitePoint [0.9505 1 1.089]>>]"}},
      {0,
       0,
       {"/Pattern", "[/Pattern /DeviceRGB]", "[/Indexed /Pattern 1 <0000>]", "[/Indexed [/Indexed /DeviceGray 1 <00FF>] 1 <0001>]",
        "/Indexed", "/Cs1", "[]", "[/CalGray]", "[/Lab 5]", "42", "null", "2 0 R", "3 0 R", "99 0 R"}}};
  for (const auto& c : cases) {
    for (const char* entry : c.entries) {
      const auto space = space_of(entry, &xref);
      EXPECT_EQ(space ? space->family : 0, c.family) << entry;
      EXPECT_EQ(space ? space->comp_count : 0, c.components) << entry;
    }
  }
  EXPECT_EQ(CPDFCSBase::parser_cs(nullptr, &xref), nullptr);
  EXPECT_FALSE(space_of("1 0 R"));
}

TEST(ParserCs, TakesTheCmykTableWhileOneIsInstalled) {
  std::vector<unsigned short> table(17 * 17 * 17 * 17 * 3, 0x4080);
  CPDFCSDeviceCMYKExt::ms_icc = table.data();
  CPDFCSDeviceCMYKExt::ms_icc_end = table.data() + table.size();
  const auto space = space_of("/CMYK");
  const auto indexed = space_of("[/Indexed /DeviceCMYK 0 <00000000>]");
  const Rgb of_index = rgb_of(*indexed, {0});
  CPDFCSDeviceCMYKExt::ms_icc = CPDFCSDeviceCMYKExt::ms_icc_end = nullptr;
  EXPECT_EQ(space->family, 12);
  EXPECT_EQ(of_index, (Rgb{0x40, 0x40, 0x40}));
  EXPECT_EQ(space_of("/CMYK")->family, 5);
}

TEST(Indexed, LooksColoursUp) {
  TextXRef xref;
  xref.add_stream(7, "<</Length 6>>", "\x0A\x14\x1E\x28\x32\x3C");
  xref.add(8, "(ABC)");
  xref.add(9, "1");
  struct Case {
    const char* name;
    const char* entry;
    int index;
    Rgb want;
  };
  const Case cases[] = {
      {"first", "[/Indexed /DeviceRGB 1 <0102030A141E>]", 0, {1, 2, 3}},
      {"last", "[/Indexed /DeviceRGB 1 <0102030A141E>]", 1, {10, 20, 30}},
      {"beyond hival", "[/Indexed /DeviceRGB 1 <0102030A141E>]", 2, {10, 20, 30}},
      {"far beyond", "[/Indexed /DeviceRGB 1 <0102030A141E>]", 300, {10, 20, 30}},
      {"below 0", "[/Indexed /DeviceRGB 1 <0102030A141E>]", -1, {1, 2, 3}},
      {"gray base", "[/Indexed /DeviceGray 2 <0080FF>]", 1, {128, 128, 128}},
      {"cmyk base", "[/Indexed /DeviceCMYK 1 <00000000000000FF>]", 1, {34, 31, 31}},
      {"stream", "[/Indexed /DeviceRGB 1 7 0 R]", 1, {40, 50, 60}},
      {"string behind a reference", "[/Indexed /DeviceRGB 0 8 0 R]", 0, {65, 66, 67}},
      {"hival behind a reference", "[/Indexed /DeviceRGB 9 0 R <0102030A141E>]", 1, {10, 20, 30}},
      {"short table", "[/Indexed /DeviceRGB 2 <0102030A141E>]", 2, {0, 0, 0}},
      {"part of an entry", "[/Indexed /DeviceRGB 1 <0102030A14>]", 1, {0, 0, 0}},
      {"entry before the part", "[/Indexed /DeviceRGB 1 <0102030A14>]", 0, {1, 2, 3}},
      {"long table", "[/Indexed /DeviceRGB 0 <0102030A141E>]", 1, {1, 2, 3}},
      {"short stream", "[/Indexed /DeviceRGB 9 7 0 R]", 2, {0, 0, 0}},
      {"missing table", "[/Indexed /DeviceRGB 1 55 0 R]", 0, {0, 0, 0}},
      {"no table", "[/Indexed /DeviceRGB 1]", 0, {0, 0, 0}},
      {"number for a table", "[/Indexed /DeviceRGB 1 5]", 0, {0, 0, 0}},
      {"negative hival", "[/Indexed /DeviceRGB -4 <010203>]", 0, {1, 2, 3}},
      {"large hival", "[/Indexed /DeviceGray 70000 <0102>]", 1, {2, 2, 2}},
      {"calibrated base", "[/Indexed [/CalGray <</Gamma 1.0>>] 1 <00FF>]", 1, {255, 255, 255}},
  };
  for (const Case& c : cases) {
    const auto space = space_of(c.entry, &xref);
    ASSERT_TRUE(space) << c.name;
    EXPECT_EQ(rgb_of(*space, {c.index}), c.want) << c.name;
  }
}

}  // namespace
