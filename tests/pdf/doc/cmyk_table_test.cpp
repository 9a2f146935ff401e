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
  // 0 and 15 are the first two nodes of an axis.
  for (const int k : {0, 8, 15, 102, 204, 255}) {
    const auto light = [&](int ink) { return (255 - ink) * (255 - k) / 255; };
    for (const int c : {0, 8, 15, 102, 204, 255})
      for (const int m : {0, 15, 51, 153, 255})
        for (const int y : {0, 15, 85, 170, 255}) expect_near(rgb_of(*space, {c, m, y, k}), {light(c), light(m), light(y)}, 2, "inks");
  }
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
