// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "kx/api.h"

class CPDFDictionary;

/// A reader of decoded stream data. The class itself reads bytes in memory; filters derive from it.
/// A stream is read by one consumer, on one thread at a time, and deleted by its owner.
class PDFBMP_API CPDFStream {
 public:
  CPDFStream() = default;  ///< All fields zero: a stream at its end.

  /// A stream over `length` bytes at `data`. With `data_borrowed` 0 the stream owns `data` (memory
  /// of KXAlloc) and frees it; otherwise the bytes must outlive it.
  CPDFStream(unsigned char* data, int length, int data_borrowed);

  virtual ~CPDFStream();  ///< As the base's close().
  CPDFStream(const CPDFStream&) = delete;
  CPDFStream& operator=(const CPDFStream&) = delete;

  virtual void open();   ///< Does nothing here.
  virtual void close();  ///< Drops the data (freed unless borrowed); reads give 0 then.

  /// Copies up to `n` (0 or more) bytes of decoded data to `dst` and returns how many; 0 at the
  /// end. An override must answer between 0 and `n`, and may answer less than `n` only at the end
  /// of its data or where it cannot go on.
  virtual int read_block(void* dst, int n);

  /// Reads the rest of the stream into one new buffer (memory of KXAlloc, owned by the caller).
  /// `len` is a size hint on entry (0: use `length`), the number of bytes read on return. The byte
  /// after the data is 0. Reading stops, without notice, where the buffer would grow past
  /// `limit` bytes; the hint, rounded up to 1024, and 1024 bytes more are read whatever the limit.
  /// Null, with `len` 0, where memory failed or the rounded hint is negative or beyond an int.
  unsigned char* buffer_load(int limit, int& len);

  /// The seam to the filters: a new stream, owned by the caller, that decodes `len` bytes at `data`
  /// with one filter. `data` is borrowed: it stays the caller's and must outlive the stream. A
  /// null `filter` gives the bytes as they are; `parms` may be null and lives only as long as the
  /// call. Null for an unknown filter or where memory failed. Declared here, defined by whoever
  /// links the image library: the document library does so.
  static CPDFStream* make_inline_stream(unsigned char* data, int len, const char* filter,
                                        const CPDFDictionary* parms);

  int kind = 0;                     ///< 0 plain, 9 a CPDFStreamJPX; others are the filters' own.
  unsigned char* data = nullptr;    ///< The buffered bytes.
  unsigned char* cursor = nullptr;  ///< The next byte to read, inside `data`.
  int remaining = 0;                ///< Bytes from `cursor` to the end of the data.
  int length = 0;                   ///< The data's length when the stream was made, a hint.
  int data_borrowed = 0;            ///< Non-zero: `data` is somebody else's and is not freed.
};
