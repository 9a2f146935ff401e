// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp-jbig2/page.h"

#include <cstdio>
#include <cstring>

#include "pdf/filter/jbig2_segments.h"
#include "tools/pdfbmp-jbig2/budget.h"

namespace {

// An arithmetic coder may leave out the marker at the end of its data; the decoder
// warns of it and goes on as it should.
bool is_harmless(const char* message) {
  return message != nullptr && std::strstr(message, "assuming terminating marker") != nullptr;
}

void on_message(void* problem, const char* message, Jbig2Severity severity, std::uint32_t) {
  if (severity < JBIG2_SEVERITY_WARNING || is_harmless(message)) return;
  char text[sizeof Jbig2Problem::text];
  std::snprintf(text, sizeof text, "broken JBIG2 data: %s", message != nullptr ? message : "");
  static_cast<Jbig2Problem*>(problem)->say(text);
}

// Hands on whole segments, one after the other, up to the first that is cut or does not decode.
// Returns how many of them drew on the page.
int decode_segments(Jbig2Ctx* context, const unsigned char* bytes, std::size_t size,
                    Jbig2Budget& budget, Jbig2Problem& problem) {
  int drawn = 0;
  while (size > 0) {
    const Jbig2Segment segment = read_segment(bytes, size);
    if (!segment.whole) {
      problem.say("the JBIG2 data ends early");
      break;
    }
    if (const char* const why = budget.refuses(segment)) {
      problem.say(why);
      if (segment.is_page()) return 0;
      break;
    }
    const bool was_good = problem.text[0] == '\0';
    if (jbig2_data_in(context, bytes, segment.bytes) < 0) {
      problem.say("broken JBIG2 data");
      break;
    }
    if (was_good && problem.text[0] != '\0') break;
    if (segment.is_drawn_region()) ++drawn;
    if (segment.is_end_of_page()) break;
    bytes += segment.bytes;
    size -= segment.bytes;
  }
  return drawn;
}

}  // namespace

void Jbig2Problem::say(const char* what) {
  if (text[0] == '\0') std::snprintf(text, sizeof text, "%s", what);
}

const Jbig2Image* decode_page(const Jbig2Request& request, const unsigned char* bytes,
                              std::size_t size, Jbig2Allocator* allocator, Jbig2Problem& problem) {
  if (size < request.globals_bytes) return nullptr;
  Jbig2Budget budget(request, size);
  const auto globals_size = static_cast<std::size_t>(request.globals_bytes);
  Jbig2GlobalCtx* globals = nullptr;
  if (globals_size > 0) {
    Jbig2Ctx* const context =
        jbig2_ctx_new(allocator, JBIG2_OPTIONS_EMBEDDED, nullptr, on_message, &problem);
    if (context != nullptr) {
      decode_segments(context, bytes, globals_size, budget, problem);
      globals = jbig2_make_global_ctx(context);  // Which takes the context over.
    }
  }
  Jbig2Ctx* const context =
      jbig2_ctx_new(allocator, JBIG2_OPTIONS_EMBEDDED, globals, on_message, &problem);
  if (context == nullptr) {
    problem.say("no memory for the JBIG2 decoder");
    return nullptr;
  }
  const bool any =
      decode_segments(context, bytes + globals_size, size - globals_size, budget, problem) > 0;
  if (!any && problem.text[0] != '\0') return nullptr;
  const Jbig2Image* page = jbig2_page_out(context);
  if (page == nullptr && jbig2_complete_page(context) == 0) page = jbig2_page_out(context);
  if (page == nullptr) problem.say("there is no page in the JBIG2 data");
  return page;
}
