// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/html.h"

#include <gtest/gtest.h>

namespace {

TEST(Html, Base64) {
  // RFC 4648, section 10, and bytes above 127.
  const std::string cases[][2] = {{"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
                                  {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {std::string("\xFB\xFF\xFE\0", 4), "+//+AA=="}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(base64(bytes), text);
}

TEST(Html, ValuesAreNotTemplates) { EXPECT_EQ(fill_html("<{{a}}|{{b}}|{{c}}>{{", {{"a", "{{b}}"}, {"b", "}}"}}), "<{{b}}|}}|>{{"); }

}  // namespace
