// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx_codestream.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <openjpeg.h>
#include <utility>

namespace {

// A codec of this kind can say much in few bytes, but no picture of this size in so few: a blank
// page of A4 at 300 pixels an inch in three colours is free.
constexpr std::int64_t free_bytes = std::int64_t{112} << 20, most_expansion = 16384;

// Markers of segments that OpenJPEG reads or passes over by their length.
bool is_known(std::uint32_t marker) {
  constexpr unsigned char known[] = {0x50, 0x51, 0x52, 0x53, 0x55, 0x57, 0x58,
                                     0x59, 0x5C, 0x5D, 0x5E, 0x5F, 0x60, 0x61,
                                     0x63, 0x64, 0x74, 0x75, 0x77, 0x78, 0x90};
  return std::find(std::begin(known), std::end(known), marker & 0xFF) != std::end(known);
}

// The encoded bytes as OpenJPEG reads them, with an end marker after them, which it insists on.
struct Reader {
  static constexpr unsigned char tail[] = {0xFF, 0xD9};

  const unsigned char* data;
  std::int64_t data_size;
  std::int64_t size = data_size + std::int64_t{sizeof tail};
  std::int64_t at = 0;
  bool warned = false;
  char message[128] = "";

  void take(const char* text) {
    if (message[0] != '\0') return;
    std::snprintf(message, sizeof message, "%s", text);
    message[std::strcspn(message, "\r\n")] = '\0';
  }

  static Reader& of(void* user) { return *static_cast<Reader*>(user); }

  static OPJ_SIZE_T read(void* dst, OPJ_SIZE_T n, void* user) {
    Reader& reader = of(user);
    const bool in_data = reader.at < reader.data_size;
    const auto left = (in_data ? reader.data_size : reader.size) - reader.at;
    const auto k = std::min(static_cast<OPJ_SIZE_T>(left), n);
    if (k == 0) return static_cast<OPJ_SIZE_T>(-1);  // The end; 0 would be asked again for ever.
    std::memcpy(dst, in_data ? reader.data + reader.at : tail + (reader.at - reader.data_size), k);
    reader.at += static_cast<std::int64_t>(k);
    return k;
  }

  static OPJ_OFF_T skip(OPJ_OFF_T n, void* user) {
    Reader& reader = of(user);
    if (n < 0 || n > reader.size - reader.at) return -1;
    reader.at += n;
    return n;
  }

  static OPJ_BOOL seek(OPJ_OFF_T place, void* user) {
    Reader& reader = of(user);
    if (place < 0 || place > reader.size) return OPJ_FALSE;
    reader.at = place;
    return OPJ_TRUE;
  }
};

struct Decoder {
  opj_codec_t* codec = opj_create_decompress(OPJ_CODEC_J2K);
  opj_stream_t* stream = opj_stream_create(64 * 1024, OPJ_TRUE);
  opj_image_t* image = nullptr;

  Decoder() = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() {
    if (codec != nullptr) opj_destroy_codec(codec);
    if (stream != nullptr) opj_stream_destroy(stream);
    if (image != nullptr) opj_image_destroy(image);
  }

  bool open(Reader& reader) {
    if (codec == nullptr || stream == nullptr) return false;
    opj_set_info_handler(
        codec, [](const char*, void*) {}, nullptr);
    opj_set_warning_handler(codec, on_warning, &reader);
    opj_set_error_handler(codec, on_warning, &reader);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    if (!opj_setup_decoder(codec, &parameters)) return false;
    opj_decoder_set_strict_mode(codec, OPJ_FALSE);  // Strict gives nothing of cut data.
    opj_stream_set_user_data(stream, &reader, nullptr);
    opj_stream_set_user_data_length(stream, static_cast<OPJ_UINT64>(reader.size));
    opj_stream_set_read_function(stream, Reader::read);
    opj_stream_set_skip_function(stream, Reader::skip);
    opj_stream_set_seek_function(stream, Reader::seek);
    if (!opj_read_header(stream, codec, &image)) return false;
    reader.warned = false;  // What it says about a header that it accepts is of no weight.
    reader.message[0] = '\0';
    return true;
  }

  static void on_warning(const char* text, void* user) {
    Reader::of(user).warned = true;
    Reader::of(user).take(text);
  }
};

}  // namespace

CPDFJpxCodestream::CPDFJpxCodestream(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterLimits& limits, std::int64_t file_bytes)
    : bytes_(std::move(input), limits.max_codec_bytes), limits_(limits), file_bytes_(file_bytes) {}

CPDFJpxCodestream::~CPDFJpxCodestream() {
  if (image_ != nullptr) opj_image_destroy(image_);
}

void CPDFJpxCodestream::say(const char* what, const char* detail) {
  if (problem_[0] == '\0') std::snprintf(problem_, sizeof problem_, "%s%s", what, detail);
}

bool CPDFJpxCodestream::read_header() {
  const char* const wrong = header_.read(bytes_);
  if (wrong != nullptr) {
    say(wrong);
    return false;
  }
  if (header_.width() > limits_.max_pixels / header_.height()) {
    say("the JPEG 2000 image declares more pixels than the limits allow");
    return false;
  }
  return true;
}

// Bytes of the codestream. Those of a picture hardly deflate: what another filter has blown up is
// made to take memory.
std::int64_t CPDFJpxCodestream::plausible_size() const {
  const std::int64_t size = bytes_.size() - header_.codestream;
  return file_bytes_ > 0 ? std::min(size, 2 * file_bytes_ + 1024) : size;
}

// What it takes for the parts of a tile, used or not. Every precinct has a packet in each layer, of
// a byte at least; code blocks come at no cost where they are empty.
bool CPDFJpxCodestream::check_records() {
  constexpr double precinct_record = 1024, block_record = 768, free_precincts = 65'536;
  constexpr double free_packets = 1 << 22;
  const auto size = static_cast<double>(plausible_size());
  const double precincts = structure_.precincts();
  const double held = static_cast<double>(row_bytes_) + precincts * precinct_record +
                      structure_.code_blocks() * block_record;
  const bool fits = precincts <= free_precincts + size &&
                    structure_.packets() <= free_packets + size &&
                    held <= static_cast<double>(limits_.max_codec_bytes) &&
                    held <= std::max<double>(free_bytes, most_expansion * size);
  if (!fits) say("the JPEG 2000 image is divided more finely than the limits allow");
  return fits;
}

// What OpenJPEG would take is reckoned before it is called: it takes memory by what is declared.
bool CPDFJpxCodestream::check_limits() {
  const auto components = static_cast<std::int64_t>(header_.components.size());
  const std::int64_t tiles = header_.tiles_across() * header_.tiles_down();
  const std::int64_t lines = std::min(header_.y1 - header_.y0, header_.tile_height);
  for (const CPDFJpxHeader::Component& c : header_.components) {
    // Both factors are below 2^31, and the product below the pixels' limit.
    row_bytes_ += (header_.x1 - header_.x0 + c.dx) / c.dx * ((lines + c.dy) / c.dy) * 4;
  }
  constexpr std::int64_t tile_record = 8 * 1024, component_record = 2 * 1024;
  constexpr std::int64_t least_tile = 14;  // Bytes of a tile with nothing in it.
  constexpr std::int64_t free_records = std::int64_t{96} << 20, most_records = 256;
  const std::int64_t size = plausible_size();
  const std::int64_t records = tiles * (tile_record + components * component_record);
  if (tiles > 65535 || tiles > std::max<std::int64_t>(size / least_tile, 1) ||
      (records > free_records && records / most_records > size)) {
    say("the JPEG 2000 image declares more tiles than its data can hold");
  } else if (row_bytes_ + records > limits_.max_codec_bytes) {
    say("the JPEG 2000 image needs more memory at a time than the limits allow");
  } else if (row_bytes_ > free_bytes && row_bytes_ / most_expansion > size) {
    say("the JPEG 2000 image declares a size beyond the limits for so little data");
  } else {
    return true;
  }
  return false;
}

// OpenJPEG gives up all that it has where data ends inside the header of a tile-part, or inside one
// that it passes over; so it is found out before where the data breaks off.
void CPDFJpxCodestream::find_end() {
  constexpr std::uint32_t part_start = 0xFF90, part_data = 0xFF93, end_marker = 0xFFD9;
  constexpr std::uint32_t coding_style = 0xFF52, component_style = 0xFF53, comment = 0xFF64;
  const std::int64_t base = header_.codestream;
  const std::int64_t size = bytes_.size() - base;
  const auto number = [&](std::int64_t at, int count) { return bytes_.number(base + at, count); };
  whole_size_ = size;
  // What OpenJPEG expects the next part of each tile to be numbered.
  const std::int64_t tiles = header_.tiles_across() * header_.tiles_down();
  const std::unique_ptr<unsigned char[]> next(
      new (std::nothrow) unsigned char[static_cast<std::size_t>(tiles)]());
  bool ended = false, parts_seen = false;
  std::int64_t part = -1, part_length = 0, part_row = 0;  // The tile-part whose header is read.
  std::int64_t at = 2;
  while (!ended && at + 2 <= size) {
    const std::uint32_t marker = number(at, 2);
    if (marker == part_data && part >= 0) {
      last_row_ = std::max(last_row_, part_row);
      // A length of 0 is that of the last one: it goes to the end.
      if (part_length == 0 || part_length > size - part) {
        ended = part_length == 0 && number(size - 2, 2) == end_marker;
        break;
      }
      at = std::max(part + part_length, at + 2);
      part = -1;
    } else if (marker == end_marker) {
      ended = true;
    } else {
      if (at + 12 > size) break;
      const bool is_start = marker == part_start;
      if (part < 0 && parts_seen && !is_start) part_row = -1;
      if (is_start) {
        const std::size_t tile = number(at + 4, 2);
        const bool in_turn = tile < static_cast<std::size_t>(tiles) && next != nullptr &&
                             number(at + 10, 1) == next[tile];
        part_length = number(at + 6, 4);
        const bool sound = in_turn && (part_length == 0 || part_length >= 12);
        part_row = sound ? static_cast<std::int64_t>(tile) / header_.tiles_across() : -1;
        if (sound) ++next[tile];
        parts_seen = true;
      }
      // A changed header: the data breaks off before it, and no row is cut.
      if (part_row < 0) break;
      if (is_start) part = at;
      if (marker == coding_style || marker == component_style) {
        structure_.add(bytes_, base + at, header_);
      } else if (marker >> 8 == 0xFF && !is_known(marker)) {
        // In such a segment OpenJPEG looks for markers; a comment it passes over, as is done here.
        bytes_.put_number(base + at, comment << 16 | number(at + 2, 2));
      }
      at += 2 + number(at + 2, 2);
    }
  }
  if (ended) return;
  say("the JPEG 2000 data ends early");
  cut_row_ = part_row;
  whole_size_ = part >= 0 ? part : std::min(at, size);
}

// OpenJPEG takes as much memory as a tile-part declares bytes, up to 4 GB, before it reads them. No
// sound part holds these four bytes, or declares more than there is.
void CPDFJpxCodestream::bound_parts() {
  constexpr unsigned char head[] = {0xFF, 0x90, 0, 10};
  const unsigned char* const begin = bytes_.data();
  const unsigned char* const end = begin + bytes_.size();
  for (auto part = std::search(begin, end, head, head + 4); part != end;
       part = std::search(part + 1, end, head, head + 4)) {
    const std::int64_t at = part - begin + 6;
    const std::uint32_t declared = bytes_.number(at, 4);
    if (declared > end - part) bytes_.put_number(at, static_cast<std::uint32_t>(end - part));
  }
}

// OpenJPEG begins anew for each band, and passes over the tiles before it. So rows of few samples
// are decoded together, but for the one whose data breaks off.
std::int64_t CPDFJpxCodestream::rows_at_once(std::int64_t row) const {
  constexpr std::int64_t few_bytes = std::int64_t{1} << 22;
  if (row == cut_row_) return 1;
  const std::int64_t end = cut_row_ > row ? cut_row_ : last_row_ + 1;
  return std::clamp<std::int64_t>(few_bytes / std::max<std::int64_t>(row_bytes_, 1), 1, end - row);
}

bool CPDFJpxCodestream::prepare() {
  bytes_.load_all();
  if (!check_limits()) return false;
  find_end();
  if (!check_records()) return false;
  bound_parts();
  return true;
}

bool CPDFJpxCodestream::decode_at(std::int64_t y) {
  if (y >= band_from_ && y < band_to_) return !failed_;
  if (!is_prepared_) {
    is_prepared_ = true;  // Once: whoever is refused a row may ask for every other.
    is_refused_ = !prepare();
  }
  if (is_refused_) return false;
  const std::int64_t row = (y - header_.tile_y0) / header_.tile_height;
  if (row > last_row_) return false;
  const std::int64_t next_row = row + rows_at_once(row);
  band_from_ = std::max(header_.y0, header_.tile_y0 + row * header_.tile_height);
  band_to_ = std::min(header_.y1, header_.tile_y0 + next_row * header_.tile_height);
  // The line of a coarse component that the first line shows may lie in the tiles above.
  std::int64_t from = band_from_;
  for (const CPDFJpxHeader::Component& c : header_.components) {
    from = std::min(from, band_from_ - band_from_ % c.dy);
  }
  failed_ = !decode(std::max(from, header_.y0), band_to_, row == cut_row_);
  return !failed_;
}

bool CPDFJpxCodestream::decode(std::int64_t from, std::int64_t to, bool cut) {
  if (image_ != nullptr) opj_image_destroy(std::exchange(image_, nullptr));
  Reader reader{.data = bytes_.data() + header_.codestream,
                .data_size = cut ? bytes_.size() - header_.codestream : whole_size_};
  Decoder decoder;
  bool good = decoder.open(reader);
  if (good && (from != header_.y0 || to != header_.y1)) {
    good = opj_set_decode_area(decoder.codec, decoder.image, static_cast<OPJ_INT32>(header_.x0),
                               static_cast<OPJ_INT32>(from), static_cast<OPJ_INT32>(header_.x1),
                               static_cast<OPJ_INT32>(to));
  }
  good = good && opj_decode(decoder.codec, decoder.stream, decoder.image);
  if (!good || reader.warned) {
    say("broken JPEG 2000 data: ", reader.message);
  }
  // Where it failed half-way, what decoded before that may be there.
  std::swap(image_, decoder.image);
  return image_ != nullptr && image_->numcomps == header_.components.size() &&
         std::any_of(image_->comps, image_->comps + image_->numcomps,
                     [](const opj_image_comp_t& c) { return c.data != nullptr; });
}

CPDFJpxPlane CPDFJpxCodestream::plane(int component) const {
  const opj_image_comp_t& c = image_->comps[component];
  return {c.data, c.x0, c.y0, c.w, c.h};
}
