// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/stream.h"

#include "gtest/gtest.h"

#include <climits>
#include <optional>

#include "kx/alloc.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/streams.h"

namespace {

TEST(Stream, BlocksInMemory) {
  unsigned char bytes[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  CPDFStream stream(bytes, 10, 1);
  int at = 0;
  for (const auto& [n, result] : {std::pair{4, 4}, {0, 0}, {5, 5}, {5, 1}, {5, 0}, {0, 0}}) {
    unsigned char out[5] = {99, 99, 99, 99, 99};
    EXPECT_EQ(stream.read_block(out, n), result);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(out[i], i < result ? at + i : 99);
    at += result;
    EXPECT_EQ(stream.cursor, bytes + at);
    EXPECT_EQ(stream.remaining, 10 - at);
  }
}

TEST(Stream, CloseFreesOnlyItsOwn) {
  for (const int borrowed : {0, 1}) {
    for (const bool explicitly : {false, true}) {
      const int before = fault_alloc::live;
      auto* bytes = static_cast<unsigned char*>(KXAlloc(3));
      std::optional<CPDFStream> stream(std::in_place, bytes, 3, borrowed);
      if (explicitly) {
        stream->close();
        EXPECT_TRUE(stream->data == nullptr && stream->cursor == nullptr && stream->length == 3);
        EXPECT_EQ(stream->remaining + stream->data_borrowed, 0);
        EXPECT_EQ(stream->read_block(bytes, 1), 0);
      }
      stream.reset();
      EXPECT_EQ(fault_alloc::live, before + borrowed);
      if (borrowed != 0) KXFree(bytes);
    }
  }
}

/// One long run of bytes: what is delivered does not depend on how it is asked for.
ReadScript bytes_to(int size) {
  return {[left = size](int, int n) mutable {
    const int read = std::min(n, left);
    left -= read;
    return read;
  }};
}

TEST(BufferLoad, GrowsByItsPolicy) {
  const int no_limit = 1 << 30;
  struct {
    const char* name;
    int size, hint, length, limit;
    std::vector<int> reads;
    int loaded;
  } const cases[] = {
      {"short", 500, 1000, 0, no_limit, {1024}, 500},
      {"longer", 5000, 1000, 0, no_limit, {1024, 1024, 2048, 4096}, 5000},
      {"hint from length", 500, 0, 2000, no_limit, {2048}, 500},
      {"no hint at all", 1500, 0, 0, no_limit, {0, 1024, 2048}, 1500},
      {"exactly the hint", 1024, 1024, 9, no_limit, {1024, 1024}, 1024},
      {"exactly a chunk", 2048, 1024, 0, no_limit, {1024, 1024, 2048}, 2048},
      {"limit below the first chunk", 9000, 1024, 0, 10, {1024, 1024}, 2048},
      {"limit in the loop", 9000, 1024, 0, 4096, {1024, 1024, 2048}, 4096},
      {"limit one less", 9000, 1024, 0, 4095, {1024, 1024}, 2048},
      {"chunks of 64 KiB", 500000, 1, 0, 200000, {1024, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 65536}, 196608},
      {"negative hint", 500, -5000, 0, no_limit, {}, -1},
      {"hint wraps", 500, INT_MAX, 0, no_limit, {}, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    StreamLog log;
    ScriptedStream stream(log, bytes_to(c.size));
    stream.length = c.length;
    fault_alloc::sizes.clear();
    int len = c.hint;
    unsigned char* buf = stream.buffer_load(c.limit, len);
    EXPECT_EQ(log.reads, c.reads);
    EXPECT_EQ(buf != nullptr, c.loaded >= 0);
    EXPECT_EQ(len, std::max(c.loaded, 0));
    // Each read has room for all before it, itself and a few bytes more.
    ASSERT_EQ(fault_alloc::sizes.size(), log.reads.size());
    std::size_t room = 4;
    int at = 0;
    for (std::size_t call = 0; call < log.reads.size(); ++call) {
      room += static_cast<std::size_t>(log.reads[call]);
      EXPECT_EQ(fault_alloc::sizes[call], room);
      for (int i = 0; i < log.reads[call] && at < len; ++i, ++at) { ASSERT_EQ(buf[at], sample_byte(1, static_cast<int>(call), i)); }
    }
    if (buf != nullptr) { EXPECT_EQ(buf[len], 0); }
    KXFree(buf);
  }
}

TEST(BufferLoad, StreamsThatLie) {
  for (const int claim : {-3, 5000}) {
    StreamLog log;
    ScriptedStream stream(log, {[claim](int call, int n) { return call == 0 ? n : claim; }});
    int len = 100;
    KXFree(stream.buffer_load(3000, len));
    EXPECT_EQ(len, claim < 0 ? 1024 : 2048);
  }
}

TEST(BufferLoad, SurvivesFailingAllocations) {
  fault_alloc::sweep([&] {
    StreamLog log;
    ScriptedStream stream(log, bytes_to(9000));
    int len = 100;
    unsigned char* buf = stream.buffer_load(1 << 30, len);
    EXPECT_EQ(buf == nullptr, fault_alloc::failed);
    EXPECT_EQ(len, buf == nullptr ? 0 : 9000);
    KXFree(buf);
  });
}

}  // namespace
