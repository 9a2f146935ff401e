// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/obj/stream.h"

/// What the streams of make_jpx can do beyond CPDFStreamJPX.
class CPDFJpxChannels {
 public:
  virtual ~CPDFJpxChannels() = default;

  /// Makes the stream deliver all `count` colour channels of an image that has just that many,
  /// where it would leave some out or repeat one. False, with nothing changed, for any other count
  /// or where memory failed. To be called before the first read.
  virtual bool deliver_all(int count) = 0;
};

namespace pdfbmp {

/// As CPDFJpxChannels::deliver_all, for any stream: false for one that is no JPEG 2000 image.
inline bool deliver_all_channels(CPDFStream& stream, int count) {
  auto* const channels = dynamic_cast<CPDFJpxChannels*>(&stream);
  return channels != nullptr && channels->deliver_all(count);
}

}  // namespace pdfbmp
