// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/inline_data.h"

#include <gtest/gtest.h>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

#include "pdf/doc/object_values.h"

namespace {

TEST(InlineData, EndsWhereItEnds) {
  const std::string gray = "/W 8 /H 1 /BPC 8 /CS /G";
  const std::string binary("\x01 EI \x02\x03\x04", 7);
  // A stored block, whose bytes stand as they are.
  const std::string with_ei = std::string("\x78\x01\x01\x1E\x00\xE1\xFF", 7) + " EI Q q 1 0 0 1 0 0 cm /Im0 Do" + "\x5F\x0D\x06\x8B";
  const struct {
    const char* name;
    std::string dict;
    std::string after_id;
    std::string data;
    std::string rest;
  } cases[] = {
      {"the length that the size implies", gray, " a EI Q b\nEI Q", "a EI Q b", " Q"},
      {"a line end of two bytes after ID", gray, "\r\na EI Q b\r\nEI\nQ", "a EI Q b", "\nQ"},
      {"a line feed that is data", gray, "\r\nEI Q bc EI Q", "\nEI Q bc", " Q"},
      {"no white space before EI", gray, " 12345678EI Q", "12345678", " Q"},
      {"a stated length", "/L 6 /W 99 /H 9 /BPC 8 /CS /G", " a EI b EI Q", "a EI b", " Q"},
      {"a wrong size: content follows EI", gray, " ab EI Q", "ab", " Q"},
      {"a wrong size: EI inside binary data", "/W 99 /H 9 /BPC 8 /CS /G", " " + binary + "\nEI Q", binary, " Q"},
      {"a stencil", "/W 9 /H 2 /IM true", " EI \nEI Q", "EI \n", " Q"},
      {"the end of a filter", gray + " /F /A85", " 5s EI *00~> EI Q", "5s EI *00~>", " Q"},
      {"a filter that sees no end", gray + " /F /AHx", " 4142 EI Q", "4142", " Q"},
      {"a filter's end right before EI", gray + " /F /AHx", " 4142434445464748>EI Q", "4142434445464748>", " Q"},
      {"the end of Flate data, which EI stands in", "/W 30 /H 1 /BPC 8 /CS /G /F /Fl", " " + with_ei + "\nEI Q", with_ei, " Q"},
      {"an unknown filter", gray + " /F /What", " ab EI Q", "ab", " Q"},
      {"EI that ends the content", gray, " 12345678 EI", "12345678", ""},
      {"no EI", gray, " abc", "abc", ""},
      {"nothing at all", gray, "", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    CPDFObjHolder dict;
    pdfbmp::convert_object(QPDFObjectHandle::parse("<< " + c.dict + " >>"), dict);
    const std::string content = "ID" + c.after_id;
    const pdfbmp::InlineData found = pdfbmp::find_inline_data(content, 2, *dict.dict(), nullptr, nullptr, {});
    EXPECT_EQ(content.substr(found.begin, found.length), c.data);
    EXPECT_EQ(content.substr(found.next), c.rest);
  }
}

}  // namespace
