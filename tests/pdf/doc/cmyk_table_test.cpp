// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/cmyk_table.h"

#include "pdf/cs/device_cmyk_ext.h"
#include "tests/pdf/cs/parsed/profiles.h"
#include "tests/pdf/cs/parsed/spaces.h"

namespace {

using namespace testing_support;

bool install(const std::string& profile, std::string& error) { return pdfbmp::install_cmyk_table(profile.data(), profile.size(), error); }

TEST(CmykTable, HoldsTheColoursOfTheProfile) {
  std::string error;
  ASSERT_TRUE(install(cmyk_profile(0, 18), error)) << error;
  ASSERT_EQ(CPDFCSDeviceCMYKExt::ms_icc_end - CPDFCSDeviceCMYKExt::ms_icc, 17 * 17 * 17 * 17 * 3);
  const auto space = space_of("/DeviceCMYK");
  for (int c = 0; c < 256; c += 51)
    for (int m = 0; m < 256; m += 51)
      for (int y = 0; y < 256; y += 85)
        for (int k = 0; k < 256; k += 51) {
          const auto light = [&](int ink) { return (255 - ink) * (255 - k) / 255; };
          expect_near(rgb_of(*space, {c, m, y, k}), {light(c), light(m), light(y)}, 2, "inks");
        }

  // Node 0 of each axis holds no ink, as node 1 at 15 holds some.
  const unsigned short* table = CPDFCSDeviceCMYKExt::ms_icc;
  EXPECT_EQ(table[0] >> 8, 255);
  EXPECT_NEAR(table[14739] >> 8, 240, 2);  // Cyan: red.
  EXPECT_NEAR(table[867 + 1] >> 8, 240, 2);
  EXPECT_NEAR(table[51 + 2] >> 8, 240, 2);
  EXPECT_NEAR(table[3] >> 8, 240, 2);
  pdfbmp::remove_cmyk_table();
  EXPECT_EQ(CPDFCSDeviceCMYKExt::ms_icc, nullptr);
  EXPECT_EQ(space_of("/DeviceCMYK")->family, 5);
}

TEST(CmykTable, RefusesWhatIsNoCmykProfile) {
  const std::string good = cmyk_profile();
  std::string error;
  ASSERT_TRUE(install(good, error));
  for (const std::string& profile : {std::string(), std::string("nonsense"), good.substr(0, 100), rgb_profile(2.2)}) {
    error.clear();
    EXPECT_FALSE(install(profile, error));
    EXPECT_FALSE(error.empty());
    EXPECT_NE(CPDFCSDeviceCMYKExt::ms_icc, nullptr) << "the earlier table goes";
  }
  pdfbmp::remove_cmyk_table();
}

}  // namespace
