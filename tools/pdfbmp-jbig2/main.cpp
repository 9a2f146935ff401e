// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// Decodes one JBIG2 page from standard input to standard output, as protocol.h tells. It is a
// program of its own so that a fault in the decoder can reach nothing: it has no rights but to
// compute.

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <jbig2.h>
#include <sys/time.h>
#include <unistd.h>

#include "tools/pdfbmp-jbig2/bounded_allocator.h"
#include "tools/pdfbmp-jbig2/budget.h"
#include "tools/pdfbmp-jbig2/confine.h"
#include "tools/pdfbmp-jbig2/page.h"
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

void answer(const Jbig2Image* page, const Jbig2Problem& problem) {
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

// The decoder cannot be asked to stop, so the answer is given in its midst.
void on_timer(int) {
  Jbig2Problem problem;
  problem.say("the JBIG2 data takes longer than the limits allow");
  answer(nullptr, problem);
  _exit(0);
}

// Of the processor's time; 0 stops the timer.
void set_timer(std::uint64_t seconds) {
  itimerval timer = {};
  timer.it_value.tv_sec = static_cast<time_t>(seconds);
  setitimer(ITIMER_PROF, &timer, nullptr);
}

}  // namespace

int main() {
  Jbig2Request request;
  std::signal(SIGPROF, on_timer);
  if (!read_all(&request, sizeof request) ||
      !confine(request.max_bytes, request.seconds_for(request.max_pixels) + 1)) {
    _exit(1);
  }
  Input input;
  Jbig2Problem problem;
  const Jbig2Image* page = nullptr;
  if (input.load(static_cast<std::size_t>(request.max_bytes))) {
    const auto allowance = Jbig2Allowance::of(request, input.bytes, input.size);
    BoundedAllocator allocator(static_cast<std::size_t>(allowance.bytes));
    set_timer(allowance.seconds);
    page = decode_page(request, input.bytes, input.size, &allocator, problem);
    set_timer(0);
    if (allocator.ran_out) {
      problem = Jbig2Problem();  // It weighs more than what followed from it.
      problem.say("the JBIG2 data needs more memory than the limits allow");
    }
  } else {
    problem.say("the JBIG2 data is larger than the limits allow");
  }
  answer(page, problem);
  _exit(0);  // Memory goes with the process.
}
