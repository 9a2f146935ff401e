// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/dct_decoder.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

// jpeglib.h needs what <cstdio> declares, and the messages depend on what it defines.
#include <jpeglib.h>
//
#include <jerror.h>

namespace {

// A warning that the decoded samples may not be those that were encoded. The others are about
// markers, and common in files that every viewer shows.
bool spoils_samples(int code) {
  switch (code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
    case JWRN_MUST_RESYNC:
    case JWRN_EXTRANEOUS_DATA:
      return true;
    default:
      return false;
  }
}

// Where in the bytes after the start marker a frame header leaves the height open: it is 0 there,
// and follows the first scan, which is too late for the decoder. Null where it does not, or where
// the header lies beyond these bytes, the first piece of the data.
const unsigned char* find_open_height(const unsigned char* at, const unsigned char* end) {
  while (end - at >= 7 && at[0] == 0xFF) {
    const int code = at[1];
    if (code == 0xFF) {
      ++at;
      continue;
    }
    if (code == 0xDA) return nullptr;
    const bool frame = code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 && code != 0xCC;
    if (frame) return at[5] == 0 && at[6] == 0 ? at + 5 : nullptr;
    const int segment = 2 + (at[2] << 8 | at[3]);
    if (segment > end - at) return nullptr;
    at += segment;
  }
  return nullptr;
}

}  // namespace

struct CPDFJpegDecoder::State {
  struct Piece {
    const JOCTET* begin = nullptr;
    const JOCTET* end = nullptr;
  };
  static constexpr JOCTET start_marker[] = {0xFF, 0xD8};

  State(std::unique_ptr<CPDFStream> stream, int open_height)
      : input(std::move(stream)),
        height{static_cast<JOCTET>(open_height >> 8), static_cast<JOCTET>(open_height)} {}

  jpeg_decompress_struct info = {};
  jpeg_error_mgr errors = {};
  jpeg_source_mgr source = {};
  std::jmp_buf escape = {};
  CPDFInput input;
  JOCTET height[2];  ///< Put in where a frame header leaves it open.
  Piece head[4];     ///< What is given to the decoder before the next piece of the input.
  std::size_t head_at = 0;
  int spoiled = 0;           ///< Warnings so far of those that spoil samples.
  bool made_up_end = false;  ///< The data ended without its end marker.
  bool ended = false, coarse = false;
  JDIMENSION sound_rows = JPEG_MAX_DIMENSION + 1;
  char problem[JMSG_LENGTH_MAX + 32] = "";

  static State& of(j_common_ptr info) { return *static_cast<State*>(info->client_data); }
  static State& of(j_decompress_ptr info) { return *static_cast<State*>(info->client_data); }

  void say(const char* what) {
    if (problem[0] == '\0') std::snprintf(problem, sizeof problem, "%s", what);
  }

  void say_message(j_common_ptr common) {
    char text[JMSG_LENGTH_MAX];
    (*common->err->format_message)(common, text);
    if (problem[0] == '\0') std::snprintf(problem, sizeof problem, "broken JPEG data: %s", text);
  }

  static void on_error(j_common_ptr common) {
    State& state = of(common);
    state.say_message(common);
    std::longjmp(state.escape, 1);
  }

  static void on_message(j_common_ptr common, int level) {
    State& state = of(common);
    if (level >= 0 || !spoils_samples(common->err->msg_code)) return;
    state.say_message(common);
    ++state.spoiled;
  }

  static void give(j_decompress_ptr info, const Piece& piece) {
    info->src->next_input_byte = piece.begin;
    info->src->bytes_in_buffer = static_cast<std::size_t>(piece.end - piece.begin);
  }

  static boolean fill_input(j_decompress_ptr info) {
    State& state = of(info);
    if (state.head_at < std::size(state.head)) {
      const Piece& piece = state.head[state.head_at++];
      if (piece.begin == piece.end) return fill_input(info);
      give(info, piece);
    } else if (state.input.fill()) {
      give(info, {state.input.begin, state.input.end});
    } else {
      static constexpr JOCTET end_marker[] = {0xFF, JPEG_EOI};
      state.made_up_end = true;
      give(info, {std::begin(end_marker), std::end(end_marker)});
    }
    return TRUE;
  }

  static void skip_input(j_decompress_ptr info, long count) {
    while (count > 0) {
      if (info->src->bytes_in_buffer == 0) {
        if (of(info).made_up_end) return;
        fill_input(info);
      }
      const auto k = std::min(static_cast<std::size_t>(count), info->src->bytes_in_buffer);
      info->src->next_input_byte += k;
      info->src->bytes_in_buffer -= k;
      count -= static_cast<long>(k);
    }
  }

  // Drops what stands before the start of the image; false where there is none.
  bool find_start() {
    int before = -1;
    for (int byte = input.get(); byte >= 0; before = byte, byte = input.get()) {
      if (before != 0xFF || byte != 0xD8) continue;
      head[0] = {std::begin(start_marker), std::end(start_marker)};
      head[1] = {input.cursor, input.end};
      const unsigned char* const place = find_open_height(input.cursor, input.end);
      if (place != nullptr && height[0] + height[1] > 0) {
        head[1].end = place;
        head[2] = {std::begin(height), std::end(height)};
        head[3] = {place + 2, input.end};
      }
      return true;
    }
    return false;
  }

  void create() {
    info.err = jpeg_std_error(&errors);
    errors.error_exit = on_error;
    errors.emit_message = on_message;
    errors.output_message = [](j_common_ptr) {};
    info.client_data = this;
    jpeg_create_decompress(&info);
    source.init_source = [](j_decompress_ptr) {};
    source.term_source = [](j_decompress_ptr) {};
    source.fill_input_buffer = fill_input;
    source.skip_input_data = skip_input;
    source.resync_to_restart = jpeg_resync_to_restart;
    info.src = &source;
  }

  // ISO 32000-2, table 13: the marker overrides the parameter; without both, three components are
  // YCC and four are not transformed. Component names that spell RGB are believed before that.
  void choose_colors(int color_transform) {
    const bool marked = info.saw_Adobe_marker;
    const int transform = marked ? info.Adobe_transform : color_transform;
    if (info.num_components == 3) {
      const auto named = [&](int i, int c) { return info.comp_info[i].component_id == c; };
      const bool rgb = named(0, 'R') && named(1, 'G') && named(2, 'B');
      const bool ycc = transform < 0 ? info.saw_JFIF_marker || !rgb : transform != 0;
      info.jpeg_color_space = ycc ? JCS_YCbCr : JCS_RGB;
      info.out_color_space = JCS_RGB;
    } else if (info.num_components == 4) {
      info.jpeg_color_space = transform > 0 ? JCS_YCCK : JCS_CMYK;
      info.out_color_space = JCS_CMYK;
    } else {
      info.out_color_space = info.jpeg_color_space;
    }
  }

  std::int64_t blocks() const {
    std::int64_t blocks = 0;
    for (int i = 0; i < info.num_components; ++i) {
      blocks +=
          std::int64_t{info.comp_info[i].width_in_blocks} * info.comp_info[i].height_in_blocks;
    }
    return blocks;
  }

  // Of coefficients. Each block takes a bit of the first scan at least, and coded data hardly
  // deflates: where another filter has blown it up, that does not make it more.
  static std::int64_t plausible_bytes(std::int64_t file_bytes) {
    constexpr std::int64_t free_bytes = std::int64_t{96} << 20;
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const std::int64_t of_a_byte = 2 * 8 * static_cast<std::int64_t>(sizeof(JBLOCK));
    return file_bytes > 0 ? std::max(free_bytes, file_bytes * of_a_byte) : most;
  }

  // Reads every scan of data whose coefficients come in several.
  bool read_scans(const CPDFFilterLimits& limits) {
    constexpr int usual_scans = 16;
    constexpr std::int64_t large_blocks = std::int64_t{1} << 20;
    for (;;) {
      const int before = spoiled;
      const int result = jpeg_consume_input(&info);
      if (result == JPEG_REACHED_EOI || result == JPEG_SUSPENDED) break;
      if (info.input_scan_number > limits.max_scans) {
        problem[0] = '\0';  // It weighs more than what was odd before.
        say("the JPEG has more scans than the limits allow");
        return false;
      }
      if (info.input_scan_number > usual_scans &&
          blocks() > limits.max_scan_blocks / (info.input_scan_number - usual_scans)) {
        problem[0] = '\0';  // It weighs more than what was odd before.
        say("the JPEG has more scans than the limits allow for its size");
        return false;
      }
      // Below a break in the first scan there is nothing at all.
      if (before == 0 && spoiled != 0 && info.input_scan_number == 1) {
        const auto done = info.input_iMCU_row > 0 ? info.input_iMCU_row - 1 : 0;
        sound_rows = done * static_cast<JDIMENSION>(info.max_v_samp_factor * DCTSIZE);
        // Of what may come after it a large image is better off without, for its memory.
        if (made_up_end || blocks() > large_blocks) break;
      }
    }
    coarse = spoiled != 0 || (made_up_end && !all_arrived());
    if (coarse) say("the JPEG ends before its last scan");
    return true;
  }

  bool all_arrived() const {
    for (int i = 0; i < info.num_components; ++i) {
      if (info.comp_info[i].quant_table == nullptr) return false;  // It was in no scan.
      if (info.coef_bits == nullptr) continue;
      for (int k = 0; k < DCTSIZE2; ++k) {
        if (info.coef_bits[i][k] != 0) return false;
      }
    }
    return true;
  }

  bool start(int color_transform, const CPDFFilterLimits& limits, std::int64_t file_bytes);
  bool next_row(unsigned char* dst);
};

// The functions that set the point of return hold no object that would have to be destroyed.

bool CPDFJpegDecoder::State::start(int color_transform, const CPDFFilterLimits& limits,
                                   std::int64_t file_bytes) {
  if (!find_start()) {
    say("there is no JPEG in the data");
    return false;
  }
  if (setjmp(escape) != 0) return false;
  create();
  if (jpeg_read_header(&info, TRUE) != JPEG_HEADER_OK) return false;
  if (std::int64_t{info.image_width} * info.image_height > limits.max_pixels) {
    say("the JPEG declares more pixels than the limits allow");
    return false;
  }
  choose_colors(color_transform);
  if (jpeg_has_multiple_scans(&info)) {
    const std::int64_t held = blocks() * static_cast<std::int64_t>(sizeof(JBLOCK));
    if (held > limits.max_codec_bytes || held > plausible_bytes(file_bytes)) {
      say("the JPEG's coefficients need more memory than the limits allow");
      return false;
    }
    info.buffered_image = TRUE;
  }
  spoiled = 0;
  if (!jpeg_start_decompress(&info)) return false;
  if (!info.buffered_image) return true;
  return read_scans(limits) && jpeg_start_output(&info, info.input_scan_number);
}

bool CPDFJpegDecoder::State::next_row(unsigned char* dst) {
  if (ended || info.output_scanline >= info.output_height) return false;
  if (setjmp(escape) != 0) {
    ended = true;
    return false;
  }
  JSAMPROW row = dst;
  ended = jpeg_read_scanlines(&info, &row, 1) != 1 || info.output_scanline > sound_rows ||
          (!info.buffered_image && spoiled != 0);
  return !ended;
}

CPDFJpegDecoder::CPDFJpegDecoder(std::unique_ptr<CPDFStream> input, int height)
    : state_(new (std::nothrow) State(std::move(input), height)) {}

CPDFJpegDecoder::~CPDFJpegDecoder() {
  if (state_ != nullptr) jpeg_destroy_decompress(&state_->info);
}

bool CPDFJpegDecoder::start(int color_transform, const CPDFFilterLimits& limits,
                            std::int64_t file_bytes) {
  return state_ != nullptr && state_->start(color_transform, limits, file_bytes);
}

int CPDFJpegDecoder::width() const { return static_cast<int>(state_->info.output_width); }
int CPDFJpegDecoder::height() const { return static_cast<int>(state_->info.output_height); }
int CPDFJpegDecoder::components() const { return state_->info.output_components; }
bool CPDFJpegDecoder::next_row(unsigned char* dst) { return state_->next_row(dst); }
bool CPDFJpegDecoder::coarse() const { return state_->coarse; }

const char* CPDFJpegDecoder::problem() const {
  if (state_ == nullptr) return "no memory for the JPEG decoder";
  return state_->problem[0] != '\0' ? state_->problem : nullptr;
}
