// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The two functions that the image library asks whoever links it for.
#include <cctype>
#include <cstring>
#include <new>

#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/obj/access.h"
#include "pdf/obj/stream.h"

namespace {

/// ASCIIHexDecode. The bytes lie in the base, which also closes them.
class HexStream : public CPDFStream {
 public:
  HexStream(unsigned char* data, int length) : CPDFStream(data, length, 1) {}

  int read_block(void* dst, int n) override {
    auto* out = static_cast<unsigned char*>(dst);
    int done = 0;
    while (done < n) {
      const int high = next_digit();
      if (high < 0) break;
      const int low = next_digit();
      out[done++] = static_cast<unsigned char>(high * 16 + (low < 0 ? 0 : low));
    }
    return done;
  }

 private:
  /// The next digit's value; -1 at the end.
  int next_digit() {
    while (remaining > 0 && *cursor != '>') {
      const int c = *cursor++;
      --remaining;
      if (std::isdigit(c)) return c - '0';
      if (std::isxdigit(c)) return std::tolower(c) - 'a' + 10;
    }
    return -1;
  }
};

}  // namespace

CPDFStream* CPDFStream::make_inline_stream(unsigned char* data, int len, const char* filter,
                                           const CPDFDictionary* /*parms*/) {
  if (filter == nullptr) return new (std::nothrow) CPDFStream(data, len, 1);
  if (std::strcmp(filter, "ASCIIHexDecode") == 0 || std::strcmp(filter, "AHx") == 0) {
    return new (std::nothrow) HexStream(data, len);
  }
  return nullptr;  // the image then has no stream, and its requests give null
}

CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj* entry, CPDFXRefTable* xref) {
  CPDFObjHolder space;
  resolve_copy(entry, xref, space);
  const char* name = space.name();
  if (name == nullptr) return nullptr;
  if (std::strcmp(name, "DeviceGray") == 0) return new (std::nothrow) CPDFCSDeviceGray;
  if (std::strcmp(name, "DeviceRGB") == 0) return new (std::nothrow) CPDFCSDeviceRGB;
  if (std::strcmp(name, "DeviceCMYK") == 0) return new (std::nothrow) CPDFCSDeviceCMYK;
  return nullptr;
}
