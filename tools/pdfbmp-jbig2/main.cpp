// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// Decodes one JBIG2 page from standard input to standard output, as protocol.h tells. It is a
// program of its own so that a fault in the decoder can reach nothing: it has no rights but to
// compute.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <jbig2.h>
#include <unistd.h>

#include "pdf/filter/jbig2_segments.h"
#include "tools/pdfbmp-jbig2/confine.h"
#include "tools/pdfbmp-jbig2/protocol.h"

namespace {

bool read_all(void* dst, std::size_t n) {
  auto* out = static_cast<unsigned char*>(dst);
  while (n > 0) {
    const ssize_t k = read(STDIN_FILENO, out, n);
    if (k <= 0) return false;
    out += k;
    n -= static_cast<std::size_t>(k);
  }
  return true;
}

void write_all(const void* src, std::size_t n) {
  const auto* in = static_cast<const unsigned char*>(src);
  while (n > 0) {
    const ssize_t k = write(STDOUT_FILENO, in, n);
    if (k <= 0) _exit(1);  // Nobody listens any more.
    in += k;
    n -= static_cast<std::size_t>(k);
  }
}

// An arithmetic coder may leave out the marker at the end of its data; the decoder
// warns of it and goes on as it should.
bool is_harmless(const char* message) {
  return message != nullptr && std::strstr(message, "assuming terminating marker") != nullptr;
}

struct Problem {
  char text[160] = "";

  void say(const char* what) {
    if (text[0] == '\0') std::snprintf(text, sizeof text, "%s", what);
  }

  static void on_message(void* self, const char* message, Jbig2Severity severity, std::uint32_t) {
    if (severity < JBIG2_SEVERITY_WARNING || is_harmless(message)) return;
    char text[sizeof Problem::text];
    std::snprintf(text, sizeof text, "broken JBIG2 data: %s", message != nullptr ? message : "");
    static_cast<Problem*>(self)->say(text);
  }
};

struct Input {
  unsigned char* bytes = nullptr;
  std::size_t size = 0;

  // Standard input to its end, or to `most` bytes.
  bool load(std::size_t most) {
    std::size_t room = 0;
    for (;;) {
      if (size == room) {
        room = room == 0 ? 64 * 1024 : room * 2;
        auto* const larger = static_cast<unsigned char*>(std::realloc(bytes, room));
        if (larger == nullptr || size > most) return false;
        bytes = larger;
      }
      const ssize_t k = read(STDIN_FILENO, bytes + size, room - size);
      if (k < 0) return false;
      if (k == 0) return true;
      size += static_cast<std::size_t>(k);
    }
  }
};

// The decoder takes the memory of a page as soon as it is declared; so this is looked at first.
bool page_fits(const Jbig2Segment& page, const Jbig2Request& request) {
  if (page.data_bytes < 8) return false;
  const auto number = [&](std::size_t at) {
    return std::uint64_t{page.data[at]} << 24 | std::uint64_t{page.data[at + 1]} << 16 |
           std::uint64_t{page.data[at + 2]} << 8 | page.data[at + 3];
  };
  const std::uint64_t width = number(0), height = number(4);
  // A height that is not known yet begins as that of a stripe, and grows within the memory limit.
  return height == 0xFFFFFFFF ? width <= request.max_pixels : width * height <= request.max_pixels;
}

// Hands on whole segments, one after the other, up to the first that is cut or does not decode.
// Returns how many of them drew on the page.
int decode_segments(Jbig2Ctx* context, const unsigned char* bytes, std::size_t size,
                    const Jbig2Request& request, Problem& problem) {
  int drawn = 0;
  while (size > 0) {
    const Jbig2Segment segment = read_segment(bytes, size);
    if (!segment.whole) {
      problem.say("the JBIG2 data ends early");
      break;
    }
    if (segment.is_page() && !page_fits(segment, request)) {
      problem.say("the JBIG2 page is larger than the limits allow");
      return 0;
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

void answer(const Jbig2Image* page, const Problem& problem) {
  Jbig2Reply reply;
  if (page != nullptr && page->data != nullptr) {
    reply.width = page->width;
    reply.height = page->height;
  }
  while (problem.text[reply.problem_bytes] != '\0') ++reply.problem_bytes;
  write_all(&reply, sizeof reply);
  write_all(problem.text, reply.problem_bytes);
  constexpr std::size_t most = 64 * 1024;
  static unsigned char inverted[most];
  const std::size_t row_bytes = (std::size_t{reply.width} + 7) / 8;
  std::size_t held = 0;
  for (std::uint32_t y = 0; y < reply.height; ++y) {
    const unsigned char* const row = page->data + std::size_t{y} * page->stride;
    for (std::size_t i = 0; i < row_bytes; ++i) {
      inverted[held++] = static_cast<unsigned char>(~row[i]);  // 1 is black here, 0 in PDF.
      if (held == most) {
        write_all(inverted, held);
        held = 0;
      }
    }
  }
  write_all(inverted, held);
}

// The page that the data describes, which the decoder owns; null where there is none.
const Jbig2Image* decode(const Jbig2Request& request, const Input& input, Problem& problem) {
  if (input.size < request.globals_bytes) return nullptr;
  const auto globals_size = static_cast<std::size_t>(request.globals_bytes);
  Jbig2GlobalCtx* globals = nullptr;
  if (globals_size > 0) {
    Jbig2Ctx* const context =
        jbig2_ctx_new(nullptr, JBIG2_OPTIONS_EMBEDDED, nullptr, Problem::on_message, &problem);
    if (context != nullptr) {
      decode_segments(context, input.bytes, globals_size, request, problem);
      globals = jbig2_make_global_ctx(context);  // Which takes the context over.
    }
  }
  Jbig2Ctx* const context =
      jbig2_ctx_new(nullptr, JBIG2_OPTIONS_EMBEDDED, globals, Problem::on_message, &problem);
  if (context == nullptr) {
    problem.say("no memory for the JBIG2 decoder");
    return nullptr;
  }
  const bool any = decode_segments(context, input.bytes + globals_size, input.size - globals_size,
                                   request, problem) > 0;
  if (!any && problem.text[0] != '\0') return nullptr;
  const Jbig2Image* page = jbig2_page_out(context);
  if (page == nullptr && jbig2_complete_page(context) == 0) page = jbig2_page_out(context);
  if (page == nullptr) problem.say("there is no page in the JBIG2 data");
  return page;
}

}  // namespace

int main() {
  Jbig2Request request;
  if (!read_all(&request, sizeof request) || !confine(request.max_bytes)) _exit(1);
  Input input;
  Problem problem;
  const Jbig2Image* page = nullptr;
  if (input.load(static_cast<std::size_t>(request.max_bytes))) {
    page = decode(request, input, problem);
  } else {
    problem.say("the JBIG2 data is larger than the limits allow");
  }
  answer(page, problem);
  _exit(0);  // Memory goes with the process.
}
