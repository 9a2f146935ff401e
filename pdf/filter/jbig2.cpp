// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jbig2.h"

#include <cstdint>
#include <new>
#include <string>
#include <utility>

#include "pdf/filter/declared_size.h"
#include "pdf/filter/jbig2_helper.h"
#include "pdf/filter/jbig2_process.h"
#include "pdf/filter/loaded_bytes.h"
#include "pdf/filter/row_bytes.h"
#include "pdf/filter/window_stream.h"
#include "pdf/obj/access.h"
#include "pdf/obj/object.h"
#include "pdf/obj/xref.h"
#include "tools/pdfbmp-jbig2/protocol.h"

namespace {

class JBIG2Stream : public CPDFWindowStream {
 public:
  JBIG2Stream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report, 1),
        size_(pdfbmp::declared_size(setup)),
        limits_(setup.limits),
        input_(std::move(input)),
        globals_(pdfbmp::open_jbig2_globals(setup)) {}

  void close() override {
    input_.reset();
    globals_.reset();
    CPDFWindowStream::close();
  }

 protected:
  int produce(unsigned char* dst, int capacity) override {
    if (!started_ && !start()) return 0;
    const int n = rows_.read(dst, capacity, [&](unsigned char* row) { return next_row(row); });
    if (n > 0 || y_ == size_.height) return n;
    return stop(y_ == reply_.height ? "the JBIG2 page has fewer rows than the image" : ended_early);
  }

 private:
  bool start() {
    started_ = true;
    const std::string path = pdfbmp::jbig2_helper();
    if (path.empty()) {
      stop("JBIG2 is not decoded without its helper program");
    } else if (!process_.start(path.c_str())) {
      stop("the JBIG2 helper program cannot be started");
    } else {
      return ask() && take_size();
    }
    return false;
  }

  bool take_size() {
    constexpr std::uint32_t most = 0x7FFFFFFF;
    if (reply_.width < 1 || reply_.width > most || reply_.height < 1 || reply_.height > most) {
      stop(words_[0] != '\0' ? words_ : "there is no page in the JBIG2 data");
      return false;
    }
    if (words_[0] != '\0') note(words_);
    if (size_.width == 0) size_.width = static_cast<int>(reply_.width);
    if (size_.height == 0) size_.height = static_cast<int>(reply_.height);
    const auto bytes_of = [](std::int64_t width) { return (width + 7) / 8; };
    if (rows_.set_size(bytes_of(reply_.width), bytes_of(size_.width), 0xFF)) return true;
    stop("no memory for a row");
    return false;
  }

  // Sends everything; the helper does not answer before it has all, so neither waits for the other.
  // Where it stops listening, its answer says why.
  bool ask() {
    CPDFLoadedBytes globals(
        globals_ != nullptr ? std::move(globals_) : std::make_unique<CPDFStream>(),
        limits_.max_codec_bytes);
    globals.load_all();
    Jbig2Request request;
    request.max_pixels = static_cast<std::uint64_t>(limits_.max_pixels);
    request.max_bytes = static_cast<std::uint64_t>(limits_.max_codec_bytes);
    request.max_seconds = static_cast<std::uint64_t>(limits_.max_codec_seconds);
    request.globals_bytes = static_cast<std::uint64_t>(globals.size());
    bool heard = process_.send(&request, sizeof request) &&
                 process_.send(globals.data(), static_cast<std::size_t>(globals.size()));
    CPDFInput page(std::move(input_));
    while (heard && page.fill()) {
      heard = process_.send(page.begin, static_cast<std::size_t>(page.end - page.begin));
    }
    process_.end_input();
    if (process_.receive(&reply_, sizeof reply_) == sizeof reply_ &&
        reply_.problem_bytes < sizeof words_ &&
        process_.receive(words_, reply_.problem_bytes) == reply_.problem_bytes) {
      // Words from a program that may have been taken over go to nobody's terminal as they are.
      for (char* c = words_; *c != '\0'; ++c) *c = *c < ' ' || *c > '~' ? '?' : *c;
      return true;
    }
    stop(ended_early);
    return false;
  }

  bool next_row(unsigned char* row) {
    if (y_ == size_.height || y_ == reply_.height) return false;
    const std::size_t n = (std::size_t{reply_.width} + 7) / 8;
    if (process_.receive(row, n) != n) return false;
    ++y_;
    return true;
  }

  static constexpr const char* ended_early = "the JBIG2 helper ended before its time";

  pdfbmp::DeclaredSize size_;
  CPDFFilterLimits limits_;
  std::unique_ptr<CPDFStream> input_, globals_;
  CPDFHelperProcess process_;
  Jbig2Reply reply_;
  CPDFRowBytes rows_;
  std::int64_t y_ = 0;
  bool started_ = false;
  char words_[256] = "";
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> open_jbig2_globals(const CPDFFilterSetup& setup) {
  if (setup.parms == nullptr || setup.xref == nullptr) return nullptr;
  const CPDFObj* const entry = find_key(setup.parms, "JBIG2Globals");
  if (entry == nullptr) return nullptr;
  CPDFObjHolder value;
  resolve_copy(entry, setup.xref, value);
  const CPDFStreamRec* const record = value.stream();
  return std::unique_ptr<CPDFStream>(record != nullptr ? setup.xref->make_stream(record) : nullptr);
}

std::unique_ptr<CPDFStream> make_jbig2(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow) JBIG2Stream(std::move(input), setup));
}

}  // namespace pdfbmp
