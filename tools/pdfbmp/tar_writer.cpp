// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/tar_writer.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::int64_t block_size = 512;

// The header of POSIX.1-1988, numbers in octal digits.
struct Header {
  char name[100];
  char mode[8];
  char uid[8];
  char gid[8];
  char size[12];
  char mtime[12];
  char checksum[8];
  char type;
  char linkname[100];
  char magic[6];
  char version[2];
  char uname[32];
  char gname[32];
  char devmajor[8];
  char devminor[8];
  char prefix[155];
  char padding[12];
};
static_assert(sizeof(Header) == block_size);

constexpr std::int64_t largest_octal_size = (std::int64_t{1} << 33) - 1;  // Eleven digits.

template <std::size_t N>
void store_octal(char (&field)[N], std::int64_t value) {
  std::snprintf(field, N, "%0*llo", static_cast<int>(N - 1), static_cast<long long>(value));
}

// A pax record begins with its own length in decimal, those digits included.
std::string pax_record(const std::string& key, const std::string& value) {
  const std::string rest = " " + key + "=" + value + "\n";
  std::size_t length = rest.size();
  while (std::to_string(length).size() + rest.size() != length) {
    length = std::to_string(length).size() + rest.size();
  }
  return std::to_string(length) + rest;
}

}  // namespace

bool TarWriter::write_header(const std::string& name, std::int64_t size, char type) {
  Header header = {};
  std::memcpy(header.name, name.data(), name.size() < 100 ? name.size() : 100);
  store_octal(header.mode, 0644);
  store_octal(header.uid, 0);
  store_octal(header.gid, 0);
  store_octal(header.size, size <= largest_octal_size ? size : 0);
  store_octal(header.mtime, 0);
  header.type = type;
  std::memcpy(header.magic, "ustar", 6);
  std::memcpy(header.version, "00", 2);

  // The sum of all bytes, its own field taken as spaces.
  std::memset(header.checksum, ' ', sizeof(header.checksum));
  unsigned char bytes[block_size];
  std::memcpy(bytes, &header, sizeof(bytes));
  std::int64_t sum = 0;
  for (const unsigned char byte : bytes) sum += byte;
  std::snprintf(header.checksum, sizeof(header.checksum), "%06llo", static_cast<long long>(sum));
  return sink_.write(&header, sizeof(header));
}

bool TarWriter::begin(const std::string& name, std::int64_t size) {
  std::string records;
  if (name.size() > sizeof(Header::name)) records += pax_record("path", name);
  if (size > largest_octal_size) records += pax_record("size", std::to_string(size));
  if (!records.empty()) {
    const auto length = static_cast<std::int64_t>(records.size());
    if (!write_header("pax", length, 'x') || !write(records.data(), records.size()) || !end()) {
      return false;
    }
  }
  return write_header(name, size, '0');
}

bool TarWriter::write(const void* bytes, std::size_t n) {
  in_block_ = (in_block_ + static_cast<std::int64_t>(n)) % block_size;
  return sink_.write(bytes, n);
}

bool TarWriter::end() {
  static constexpr char zeros[block_size] = {};
  const std::int64_t missing = in_block_ == 0 ? 0 : block_size - in_block_;
  in_block_ = 0;
  return sink_.write(zeros, static_cast<std::size_t>(missing));
}

bool TarWriter::finish() {
  static constexpr char zeros[2 * block_size] = {};
  return sink_.write(zeros, sizeof(zeros));
}
