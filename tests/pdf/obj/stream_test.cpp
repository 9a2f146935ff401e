// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/stream.h"

#include "gtest/gtest.h"

#include <climits>
#include <cstring>
#include <memory>

#include "kx/alloc.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/streams.h"

namespace {

TEST(Stream, BlocksInMemory) {
  unsigned char bytes[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  CPDFStream stream(bytes, 10, 1);
  struct Read {
    int n, result;
  } const reads[] = {{4, 4}, {0, 0}, {5, 5}, {5, 1}, {5, 0}, {0, 0}};
  int at = 0;
  for (const Read& read : reads) {
    unsigned char out[5] = {99, 99, 99, 99, 99};
    EXPECT_EQ(stream.read_block(out, read.n), read.result);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(out[i], i < read.result ? at + i : 99);
    at += read.result;
    EXPECT_EQ(stream.cursor, bytes + at);
    EXPECT_EQ(stream.remaining, 10 - at);
  }
  EXPECT_EQ(stream.kind, 0);
}

TEST(Stream, CloseFreesOnlyItsOwn) {
  for (const int borrowed : {0, 1}) {
    for (const bool explicitly : {false, true}) {
      const int before = fault_alloc::live_blocks();
      auto* bytes = static_cast<unsigned char*>(KXAlloc(3));
      {
        const std::unique_ptr<CPDFStream> stream(new CPDFStream(bytes, 3, borrowed));
        stream->open();
        if (explicitly) {
          stream->close();
          EXPECT_EQ(stream->data, nullptr);
          EXPECT_EQ(stream->cursor, nullptr);
          EXPECT_EQ(stream->remaining + stream->data_borrowed, 0);
          EXPECT_EQ(stream->length, 3);
          unsigned char out = 0;
          EXPECT_EQ(stream->read_block(&out, 1), 0);
        }
      }
      EXPECT_EQ(fault_alloc::live_blocks(), before + borrowed);
      if (borrowed != 0) KXFree(bytes);
    }
  }
}

struct Case {
  const char* name;
  int size, hint, length, limit;
  std::vector<int> reads;
  std::vector<std::size_t> sizes;
  int loaded;
};

const int free_of_limit = 1 << 30;

const Case cases[] = {
    {"short", 500, 1000, 0, free_of_limit, {1024}, {1028}, 500},
    {"longer", 5000, 1000, 0, free_of_limit, {1024, 1024, 2048, 4096}, {1028, 2052, 4100, 8196}, 5000},
    {"hint from length", 500, 0, 2000, free_of_limit, {2048}, {2052}, 500},
    {"no hint at all", 1500, 0, 0, free_of_limit, {0, 1024, 2048}, {4, 1028, 3076}, 1500},
    {"exactly the hint", 1024, 1024, 9, free_of_limit, {1024, 1024}, {1028, 2052}, 1024},
    {"exactly a chunk", 2048, 1024, 0, free_of_limit, {1024, 1024, 2048}, {1028, 2052, 4100}, 2048},
    {"limit below the first chunk", 9000, 1024, 0, 10, {1024, 1024}, {1028, 2052}, 2048},
    {"limit in the loop", 9000, 1024, 0, 4096, {1024, 1024, 2048}, {1028, 2052, 4100}, 4096},
    {"limit one less", 9000, 1024, 0, 4095, {1024, 1024}, {1028, 2052}, 2048},
    {"negative hint", 500, -5000, 0, free_of_limit, {}, {}, -1},
    {"hint wraps", 500, INT_MAX, 0, free_of_limit, {}, {}, -1},
};

TEST(BufferLoad, GrowsByItsPolicy) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StreamLog log;
    // One long run of bytes: what is delivered does not depend on how it is asked for.
    int left = c.size;
    ScriptedStream stream(log, {[&left](int, int n) {
                            const int read = std::min(n, left);
                            left -= read;
                            return read;
                          }});
    stream.length = c.length;
    fault_alloc::take_sizes();
    int len = c.hint;
    unsigned char* buf = stream.buffer_load(c.limit, len);
    EXPECT_EQ(fault_alloc::take_sizes(), c.sizes);
    EXPECT_EQ(log.reads, c.reads);
    EXPECT_EQ(buf != nullptr, c.loaded >= 0);
    EXPECT_EQ(len, std::max(c.loaded, 0));
    if (buf == nullptr) continue;
    EXPECT_EQ(buf[len], 0);
    int at = 0;
    for (size_t call = 0; call < log.reads.size(); ++call) {
      for (int i = 0; i < log.reads[call] && at < len; ++i, ++at) { ASSERT_EQ(buf[at], sample_byte(1, static_cast<int>(call), i)); }
    }
    KXFree(buf);
  }
}

TEST(BufferLoad, ChunksStopAt64KiB) {
  StreamLog log;
  ScriptedStream stream(log, {});
  int len = 1;
  KXFree(stream.buffer_load(400000, len));
  EXPECT_EQ(log.reads, (std::vector<int>{1024, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 65536, 65536, 65536, 65536}));
  EXPECT_EQ(len, 1024 * 64 + 5 * 65536);
}

TEST(BufferLoad, StreamsThatLie) {
  for (const int claim : {-3, 5000}) {
    StreamLog log;
    ScriptedStream stream(log, {[claim](int call, int n) { return call == 0 ? n : claim; }});
    int len = 100;
    unsigned char* buf = stream.buffer_load(3000, len);
    ASSERT_NE(buf, nullptr);
    EXPECT_EQ(len, claim < 0 ? 1024 : 2048);
    KXFree(buf);
  }
}

TEST(BufferLoad, SurvivesFailingAllocations) {
  unsigned char bytes[9000] = {};
  fault_alloc::sweep([&] {
    CPDFStream stream(bytes, sizeof bytes, 1);
    int len = 100;
    unsigned char* buf = stream.buffer_load(free_of_limit, len);
    EXPECT_EQ(buf == nullptr, fault_alloc::has_failed());
    EXPECT_EQ(len, buf == nullptr ? 0 : 9000);
    KXFree(buf);
  });
}

}  // namespace
