// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"
#include "pdf/obj/stream.h"

/// The base of streams that make their bytes in pieces: answers reads of any size, from a window
/// that is taken when a read is too small to be filled directly. A derived class says how pieces
/// are made.
class CPDFWindowStream : public CPDFStream {
 public:
  static constexpr int window_bytes = 64 * 1024;  ///< Size of a window, unless pieces are larger.

  void close() override;
  int read_block(void* dst, int n) override;

 protected:
  /// `least` is the smallest room that produce() needs. `look_ahead` makes the next piece as soon
  /// as the last byte of one is delivered, for data whose end says whether it was good.
  explicit CPDFWindowStream(std::shared_ptr<CPDFDecodeReport> report, int least = window_bytes,
                            bool look_ahead = false);

  /// Writes between 1 and `capacity` bytes (at least the `least` of the constructor) to `dst` and
  /// returns how many; 0 at the end, after which it is not called again.
  virtual int produce(unsigned char* dst, int capacity) = 0;

  /// The data is broken, and what was delivered may be touched by it: told at once.
  void note(const char* what);

  /// The data stops here: told only to a reader that asks for more, since one that has all of its
  /// rows misses nothing. The result is 0, for produce() to return.
  int stop(const char* why);

 private:
  bool fill();

  std::shared_ptr<CPDFDecodeReport> report_;
  const char* stopped_ = nullptr;
  int least_;
  bool look_ahead_;
  bool ended_ = false;
};

namespace pdfbmp {

/// Reads until `n` bytes have come or the stream gives none, so that a stream with something to
/// say about its end says it. Returns how many came.
int read_fully(CPDFStream& stream, void* dst, int n);

}  // namespace pdfbmp
