// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/function.h"

#include <gtest/gtest.h>

#include "tests/support/pdf_text.h"

namespace {

using namespace testing_support;
using namespace std::string_literals;

std::unique_ptr<CPDFFunction> function_of(const std::string& text, TextXRef& xref) {
  CPDFObjHolder entry;
  parse_pdf(text, entry);
  CPDFCSParseContext context(&xref);
  return CPDFFunction::parse(&entry, context);
}

TEST(Function, GivesWhatTheStandardSays) {
  TextXRef xref;
  const auto add_ramp = [&xref](int number, const std::string& more, const std::string& bytes) {
    xref.add_stream(number, "<</Domain [0 1] /Range [0 1] /FunctionType 0 " + more + ">>", bytes);
  };
  add_ramp(1, "/Size [3] /BitsPerSample 8", "\x00\xFF\x33"s);
  add_ramp(2, "/Size [2] /BitsPerSample 8 /Decode [1 0]", "\x00\xFF"s);
  add_ramp(3, "/Size [2] /BitsPerSample 8 /Encode [1 0]", "\x00\xFF"s);
  add_ramp(4, "/Size [4] /BitsPerSample 1", "\x50"s);
  add_ramp(5, "/Size [4] /BitsPerSample 2", "\x1B"s);
  add_ramp(6, "/Size [3] /BitsPerSample 4", "\x0F\x30"s);
  add_ramp(7, "/Size [3] /BitsPerSample 12", "\x00\x0F\xFF\x80\x00"s);
  add_ramp(8, "/Size [2] /BitsPerSample 16", "\x00\x00\xFF\xFF"s);
  add_ramp(9, "/Size [2] /BitsPerSample 24", "\x00\x00\x00\x80\x00\x00"s);
  add_ramp(10, "/Size [2] /BitsPerSample 32", "\x00\x00\x00\x00\xFF\xFF\xFF\xFF"s);
  add_ramp(11, "/Size [4] /BitsPerSample 8", "\xFF\xFF"s);  // Short.
  // Two inputs, two outputs; the first input varies fastest.
  xref.add_stream(12,
                  "<</FunctionType 0 /Domain [0 1 0 2] /Range [0 255 0 255] /Size [2 2] "
                  "/BitsPerSample 8>>",
                  "\x00\x0A\x64\x14\xC8\x1E\xFF\x28"s);
  xref.add_stream(13, "<</FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1]>>", "{ add dup neg }");
  xref.add_stream(14, "<</FunctionType 4 /Domain [0 1] /Range [0.25 1]>>", "{ 0 div }");
  xref.add_stream(15, "<</FunctionType 4 /Domain [0 1] /Range [0.25 1]>>", "{ pop pop }");
  const std::string ramp = "<</FunctionType 2 /Domain [0 1] /N 1>>";
  const std::string drop = "<</FunctionType 2 /Domain [0 1] /N 1 /C0 [1] /C1 [0]>>";
  xref.add(16, "<</FunctionType 3 /Domain [0 1] /Bounds [0.5] /Encode [0 1 0 1] /Functions [" + ramp + drop + "]>>");
  xref.add(17,
           "<</FunctionType 3 /Domain [0 1] /Bounds [0.25 0.25] /Encode [0 1 1 0 0 1] "
           "/Functions [" +
               ramp + ramp + drop + "]>>");
  struct Case {
    const char* function;
    std::vector<double> in, out;
  };
  const Case cases[] = {
      {"1 0 R", {0.5}, {1}},
      {"1 0 R", {0.25}, {0.5}},
      {"1 0 R", {0.75}, {0.6}},
      {"1 0 R", {-3}, {0}},
      {"1 0 R", {7}, {0.2}},
      {"2 0 R", {0.25}, {0.75}},
      {"3 0 R", {0.25}, {0.75}},
      {"4 0 R", {1 / 3.0}, {1}},
      {"4 0 R", {0.5}, {0.5}},
      {"5 0 R", {2 / 3.0}, {2 / 3.0}},
      {"6 0 R", {0.5}, {1}},
      {"6 0 R", {1}, {0.2}},
      {"7 0 R", {0.5}, {4095 / 4095.0}},
      {"7 0 R", {1}, {2048 / 4095.0}},
      {"8 0 R", {0.5}, {0.5}},
      {"9 0 R", {1}, {8388608 / 16777215.0}},
      {"10 0 R", {0.5}, {0.5}},
      {"11 0 R", {1}, {0}},
      {"12 0 R", {0, 0}, {0, 10}},
      {"12 0 R", {1, 0}, {100, 20}},
      {"12 0 R", {0, 2}, {200, 30}},
      {"12 0 R", {0.5, 1}, {(0 + 100 + 200 + 255) / 4.0, 25}},
      {"12 0 R", {0.25, 0.5}, {(0 * 9 + 100 * 3 + 200 * 3 + 255) / 16.0, 17.5}},
      {"13 0 R", {0.3, 0.4}, {0.7, 0}},
      {"14 0 R", {0.5}, {0.25}},
      {"15 0 R", {0.5}, {0.25}},
      {"<</FunctionType 2 /Domain [0 1] /N 2 /C0 [0.5 1] /C1 [1 0]>>", {0.5}, {0.625, 0.75}},
      {"<</FunctionType 2 /Domain [0 1] /N 1>>", {0.3}, {0.3}},
      {"<</FunctionType 2 /Domain [0 1] /N -1>>", {0}, {0}},
      {"<</FunctionType 2 /Domain [0 1] /N 1 /C1 [4] /Range [0 2]>>", {0.75}, {2}},
      {"<</FunctionType 2 /Domain [0.25 0.5] /N 1>>", {0.9}, {0.5}},
      {"16 0 R", {0.25}, {0.5}},
      {"16 0 R", {0.5}, {1}},
      {"16 0 R", {1}, {0}},
      {"17 0 R", {0.125}, {0.5}},
      {"17 0 R", {0.25}, {1}},
      {"17 0 R", {0.625}, {0.5}},
  };
  for (const Case& c : cases) {
    const auto function = function_of(c.function, xref);
    ASSERT_TRUE(function) << c.function;
    ASSERT_EQ(function->inputs(), static_cast<int>(c.in.size())) << c.function;
    ASSERT_EQ(function->outputs(), static_cast<int>(c.out.size())) << c.function;
    std::vector<double> out(c.out.size());
    function->evaluate(c.in.data(), out.data());
    for (std::size_t i = 0; i < out.size(); ++i) EXPECT_NEAR(out[i], c.out[i], 1e-6) << c.function << " of " << c.in[0] << ", result " << i;
  }
}

TEST(Function, RefusesWhatIsMalformedOrEndless) {
  TextXRef xref;
  const std::string sampled = "<</FunctionType 0 /Range [0 1] /BitsPerSample ";
  xref.add_stream(1, sampled + "8 /Domain [0 1] /Size [0]>>", "\xFF");
  xref.add_stream(2, sampled + "33 /Domain [0 1] /Size [1]>>", "\xFF");
  xref.add_stream(3, sampled + "8 /Domain [0 1 0 1] /Size [2]>>", "\xFF");
  xref.add_stream(4, sampled + "8 /Domain [0 1 0 1 0 1] /Size [30000 30000 30000]>>", "\xFF");
  xref.add_stream(5, sampled + "8 /Domain [0 1] /Size [2]>>", "");
  xref.add_stream(6, "<</FunctionType 4 /Domain [0 1]>>", "{}");
  xref.add_stream(7, "<</FunctionType 4 /Domain [0 1] /Range [0 1]>>", "{");
  xref.add(8, "<</FunctionType 3 /Domain [0 1] /Bounds [] /Encode [0 1] /Functions [8 0 R]>>");
  xref.add(9,
           "<</FunctionType 3 /Domain [0 1] /Bounds [0.2 0.4 0.6] /Encode [0 1 0 1 0 1 0 1] "
           "/Functions [9 0 R 9 0 R 9 0 R 9 0 R]>>");
  const char* const refused[] = {
      "null",
      "5",
      "[]",
      "<<>>",
      "99 0 R",
      "1 0 R",
      "2 0 R",
      "3 0 R",
      "4 0 R",
      "5 0 R",
      "6 0 R",
      "7 0 R",
      "8 0 R",
      "9 0 R",
      "<</FunctionType 1 /Domain [0 1]>>",
      "<</FunctionType 2 /N 1>>",
      "<</FunctionType 2 /Domain [0 1]>>",
      "<</FunctionType 2 /Domain [1 0] /N 1>>",
      "<</FunctionType 2 /Domain [0 1 2] /N 1>>",
      "<</FunctionType 2 /Domain [0 1 0 1] /N 1>>",
      "<</FunctionType 2 /Domain [0 1] /N 1 /C0 [0 0] /C1 [1]>>",
      "<</FunctionType 2 /Domain [0 1] /N 1 /Range [0 1 0 1]>>",
      "<</FunctionType 2 /Domain [0 1] /N 1 /Range [0]>>",
      "<</FunctionType 3 /Domain [0 1] /Bounds [] /Encode [0 1] /Functions []>>",
      "<</FunctionType 0 /Domain [0 1] /Range [0 1] /Size [2] /BitsPerSample 8>>",
  };
  for (const char* text : refused) EXPECT_FALSE(function_of(text, xref)) << text;
}

}  // namespace
