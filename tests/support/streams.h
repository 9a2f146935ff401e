// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "pdf/obj/jpx_stream.h"

/// What streams under test were asked for. It outlives them.
struct StreamLog {
  std::vector<int> reads, alpha_reads;  ///< The byte counts asked for, in order.
  int live = 0;                         ///< Streams that were made and not deleted.
};

/// Byte `i` of what read number `call` delivers: any value, the same for the same arguments.
inline unsigned char sample_byte(unsigned seed, int call, int i) {
  unsigned h = seed * 2654435761U + static_cast<unsigned>(call) * 97787U;
  h = (h ^ (h >> 15) ^ static_cast<unsigned>(i)) * 2246822519U;
  return static_cast<unsigned char>((h ^ (h >> 13)) * 3266489917U >> 24);
}

/// How reads are answered: `answer(call, n)` is the count that a read of `n` bytes claims; as many
/// bytes are delivered, but never more than `n`.
struct ReadScript {
  std::function<int(int call, int n)> answer = [](int, int n) { return n; };
  unsigned seed = 1;
  int calls = 0;

  int run(std::vector<int>& log, void* dst, int n) {
    log.push_back(n);
    const int call = calls++;
    const int claim = answer(call, n);
    for (int i = 0; i < std::min(claim, n); ++i) { static_cast<unsigned char*>(dst)[i] = sample_byte(seed, call, i); }
    return claim;
  }
};

class ScriptedStream : public CPDFStream {
 public:
  ScriptedStream(StreamLog& log, ReadScript script) : log_(log), script_(std::move(script)) { ++log_.live; }
  ~ScriptedStream() override { --log_.live; }
  int read_block(void* dst, int n) override { return script_.run(log_.reads, dst, n); }

 private:
  StreamLog& log_;
  ReadScript script_;
};

class ScriptedJpxStream : public CPDFStreamJPX {
 public:
  ScriptedJpxStream(StreamLog& log, ReadScript color, ReadScript alpha) : log_(log), color_(std::move(color)), alpha_(std::move(alpha)) {
    ++log_.live;
  }
  ~ScriptedJpxStream() override { --log_.live; }
  int read_block(void* dst, int n) override { return color_.run(log_.reads, dst, n); }
  int read_alpha(void* dst, int n) override { return alpha_.run(log_.alpha_reads, dst, n); }

 private:
  StreamLog& log_;
  ReadScript color_, alpha_;
};
