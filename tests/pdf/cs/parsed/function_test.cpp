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
  const std::string unit = "/Domain [0 1] /Range [0 1] ", ramp = "<</FunctionType 2 /Domain [0 1] /N 1>>";
  const std::string drop = "<</FunctionType 2 /Domain [0 1] /N 1 /C0 [1] /C1 [0]>>", stitched = "/FunctionType 3 /Domain [0 1] ";
  struct Point {
    std::vector<double> in, out;
  };
  const struct {
    std::string dict, bytes;  ///< Of a stream, unless there are no bytes.
    std::vector<Point> points;
  } cases[] = {
      {unit + "/FunctionType 0 /Size [3] /BitsPerSample 8",
       "\x00\xFF\x33"s,
       {{{0.5}, {1}}, {{0.25}, {0.5}}, {{0.75}, {0.6}}, {{-3}, {0}}, {{7}, {0.2}}}},
      {unit + "/FunctionType 0 /Size [2] /BitsPerSample 8 /Decode [1 0]", "\x00\xFF"s, {{{0.25}, {0.75}}}},
      {unit + "/FunctionType 0 /Size [2] /BitsPerSample 8 /Encode [1 0]", "\x00\xFF"s, {{{0.25}, {0.75}}}},
      {unit + "/FunctionType 0 /Size [4] /BitsPerSample 1", "\x50", {{{1 / 3.0}, {1}}, {{0.5}, {0.5}}}},
      {unit + "/FunctionType 0 /Size [4] /BitsPerSample 2", "\x1B", {{{2 / 3.0}, {2 / 3.0}}}},
      {unit + "/FunctionType 0 /Size [3] /BitsPerSample 4", "\x0F\x30", {{{0.5}, {1}}, {{1}, {0.2}}}},
      {unit + "/FunctionType 0 /Size [3] /BitsPerSample 12", "\x00\x0F\xFF\x80\x00"s, {{{0.5}, {1}}, {{1}, {2048 / 4095.0}}}},
      {unit + "/FunctionType 0 /Size [2] /BitsPerSample 16", "\x00\x00\xFF\xFF"s, {{{0.5}, {0.5}}}},
      {unit + "/FunctionType 0 /Size [2] /BitsPerSample 24", "\x00\x00\x00\x80\x00\x00"s, {{{1}, {8388608 / 16777215.0}}}},
      {unit + "/FunctionType 0 /Size [2] /BitsPerSample 32", "\x00\x00\x00\x00\xFF\xFF\xFF\xFF"s, {{{0.5}, {0.5}}}},
      {unit + "/FunctionType 0 /Size [4] /BitsPerSample 8", "\xFF\xFF", {{{1}, {0}}}},  // Short.
      // The first of two inputs varies fastest.
      {"/FunctionType 0 /Domain [0 1 0 2] /Range [0 255 0 255] /Size [2 2] /BitsPerSample 8",
       "\x00\x0A\x64\x14\xC8\x1E\xFF\x28"s,
       {{{0, 0}, {0, 10}}, {{1, 0}, {100, 20}}, {{0, 2}, {200, 30}}, {{0.5, 1}, {555 / 4.0, 25}}, {{0.25, 0.5}, {1155 / 16.0, 17.5}}}},
      {"/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1]", "{ add dup neg }", {{{0.3, 0.4}, {0.7, 0}}}},
      {"/FunctionType 4 /Domain [0 1] /Range [0.25 1]", "{ 0 div }", {{{0.5}, {0.25}}}},
      {"/FunctionType 4 /Domain [0 1] /Range [0.25 1]", "{ pop pop }", {{{0.5}, {0.25}}}},
      {"/FunctionType 2 /Domain [0 1] /N 2 /C0 [0.5 1] /C1 [1 0]", "", {{{0.5}, {0.625, 0.75}}}},
      {"/FunctionType 2 /Domain [0 1] /N 1", "", {{{0.3}, {0.3}}}},
      {"/FunctionType 2 /Domain [0 1] /N -1", "", {{{0}, {0}}}},
      {"/FunctionType 2 /Domain [0 1] /N 1 /C1 [4] /Range [0 2]", "", {{{0.75}, {2}}}},
      {"/FunctionType 2 /Domain [0.25 0.5] /N 1", "", {{{0.9}, {0.5}}}},
      {stitched + "/Bounds [0.5] /Encode [0 1 0 1] /Functions [" + ramp + drop + "]", "", {{{0.25}, {0.5}}, {{0.5}, {1}}, {{1}, {0}}}},
      {stitched + "/Bounds [0.25 0.25] /Encode [0 1 1 0 0 1] /Functions [" + ramp + ramp + drop + "]",
       "",
       {{{0.125}, {0.5}}, {{0.25}, {1}}, {{0.625}, {0.5}}}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dict);
    TextXRef xref;
    xref.add_stream(1, "<<" + c.dict + ">>", c.bytes);
    const auto function = function_of(c.bytes.empty() ? "<<" + c.dict + ">>" : "1 0 R", xref);
    ASSERT_TRUE(function);
    for (const Point& point : c.points) {
      ASSERT_EQ(function->inputs(), static_cast<int>(point.in.size()));
      ASSERT_EQ(function->outputs(), static_cast<int>(point.out.size()));
      std::vector<double> out(point.out.size());
      function->evaluate(point.in.data(), out.data());
      for (std::size_t i = 0; i < out.size(); ++i) EXPECT_NEAR(out[i], point.out[i], 1e-6) << "of " << point.in[0] << ", result " << i;
    }
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
  xref.add(9, "<</FunctionType 3 /Domain [0 1] /Bounds [0.2 0.4] /Encode [0 1 0 1 0 1] /Functions [9 0 R 9 0 R 9 0 R]>>");
  for (int i = 1; i <= 9; ++i) EXPECT_FALSE(function_of(std::to_string(i) + " 0 R", xref)) << i;
  for (const char* text : {"null", "5", "[]", "<<>>", "99 0 R"}) EXPECT_FALSE(function_of(text, xref)) << text;
  for (const char* entries :
       {"1 /Domain [0 1]", "2 /N 1", "2 /Domain [0 1]", "2 /Domain [1 0] /N 1", "2 /Domain [0 1 2] /N 1", "2 /Domain [0 1 0 1] /N 1",
        "2 /Domain [0 1] /N 1 /C0 [0 0] /C1 [1]", "2 /Domain [0 1] /N 1 /Range [0 1 0 1]", "2 /Domain [0 1] /N 1 /Range [0]",
        "3 /Domain [0 1] /Bounds [] /Encode [0 1] /Functions []", "0 /Domain [0 1] /Range [0 1] /Size [2] /BitsPerSample 8"}) {
    EXPECT_FALSE(function_of(std::string("<</FunctionType ") + entries + ">>", xref)) << entries;
  }
}

}  // namespace
