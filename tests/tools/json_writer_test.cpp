// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/json_writer.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/json_reader.h"

namespace {

TEST(JsonWriter, TextsAreUtf8InQuotesWhateverTheyHold) {
  const std::string bad = "\xEF\xBF\xBD";
  struct {
    const char* name;
    std::string text, json;
  } const cases[] = {
      {"empty", "", ""},
      {"quote and backslash", "a\"b\\c", "a\\\"b\\\\c"},
      {"controls", std::string("\0\n\x1F", 3), "\\u0000\\u000a\\u001f"},
      {"well-formed", "\x7F\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\x7F\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {"Latin-1", "caf\xE9", "caf" + bad},
      {"cut short", "\xE2\x82", bad + bad},
      {"overlong", "\xC0\xAF", bad + bad},
      {"surrogate", "\xED\xA0\x80", bad + bad + bad},
      {"beyond Unicode", "\xF4\x90\x80\x80", bad + bad + bad + bad},
  };
  for (const auto& c : cases) EXPECT_EQ(JsonObject::text_of(c.text), "\"" + c.json + "\"") << c.name;
}

TEST(JsonWriter, ObjectReadsBackAsItWasMeant) {
  JsonObject inner;
  inner.add("x", 0.1 + 0.2);
  JsonObject object;
  object.add("text", "a")
      .add("big", std::int64_t{1} << 40)
      .add("yes", true)
      .add("not finite", std::numeric_limits<double>::infinity())
      .add_null("nothing")
      .add_array("names", std::vector<std::string>{"b", "c"})
      .add_array("none", std::vector<int>{})
      .add_array("objects", std::vector<JsonObject>{inner, inner});
  EXPECT_EQ(object.text(), R"({"text": "a", "big": 1099511627776, "yes": true, "not finite": null, )"
                           R"("nothing": null, "names": ["b", "c"], "none": [], )"
                           R"("objects": [{"x": 0.3}, {"x": 0.3}]})");
  EXPECT_TRUE(JsonReader(object.text()).valid);
}

}  // namespace
