// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kx/api.h"

class CPDFArray;
class CPDFDictionary;
struct CPDFStreamRec;

/// An indirect reference. The image unit copies its eight bytes and hands them to
/// CPDFXRefTable::get_entity; what the numbers mean is that table's business.
struct PDF_REF {
  int num;
  int gen;
};
static_assert(sizeof(PDF_REF) == 8);

/// The kinds of a CPDFObj, the values of its `type`.
enum CPDFObjType : std::uint32_t {
  PDF_EMPTY = 0,
  PDF_BOOLEAN = 1,
  PDF_INTEGER = 2,
  PDF_REAL = 3,  ///< Signed 64-bit fixed point, 26 fraction bits (pdf/obj/fixed.h).
  PDF_STRING = 4,
  PDF_NAME = 5,
  PDF_ARRAY = 6,
  PDF_DICTIONARY = 7,
  PDF_REFERENCE = 8,
  PDF_STREAM = 9,
};

/// One PDF object: a tag, a 64-bit word and, for strings, a pointer.
///
///     type             value                                       str_bytes
///     0 empty          0                                           null
///     1 boolean        signed 32-bit, non-zero is true             null
///     2 integer        signed 32-bit                               null
///     3 real           fixed point                                 null
///     4 string         signed 32-bit length in bytes               length + 1 bytes, the last 0
///     5 name           pointer to NUL-terminated text              null
///     6 array          pointer to a CPDFArray                      null
///     7 dictionary     pointer to a CPDFDictionary                 null
///     8 reference      a PDF_REF, by value                         null
///     9 stream         pointer to a CPDFStreamRec                  null
///
/// A value owns its text, string bytes (memory of KXAlloc) and containers (`new`). It has no
/// destructor: containers move values about as plain memory. Whoever embeds a value calls free()
/// before it goes; a CPDFObjHolder does that for a local one.
class PDFBMP_API CPDFObj {
 public:
  CPDFObj() = default;
  CPDFObj(const CPDFObj&) = delete;
  CPDFObj& operator=(const CPDFObj&) = delete;

  std::uint32_t type = PDF_EMPTY;
  std::int64_t value = 0;
  unsigned char* str_bytes = nullptr;

  /// Releases what the value owns and leaves it empty.
  void free();

  /// Makes this a deep copy of `src`, or empty where `src` is null. Frees the old value first, so
  /// `src` must not be this value or a part of it. Where memory fails a string is left empty (but
  /// a string), a name becomes the empty value, and a container is short or has no storage.
  void copy_from(const CPDFObj* src);

  bool is_number() const { return (type & ~1U) == PDF_INTEGER; }

  // Readers. Each is meaningful for its own tag only: for any other the numbers read as 0, the
  // pointers as null.
  int as_int() const;             ///< The low 32 bits of a boolean, integer or string length.
  std::int64_t as_fixed() const;  ///< A real's fixed-point number.
  const char* name() const;       ///< A name's text, owned by the value.
  CPDFArray* array() const;       ///< Owned by the value.
  CPDFDictionary* dict() const;   ///< Owned by the value.
  CPDFStreamRec* stream() const;  ///< Owned by the value.
  PDF_REF ref() const;

  // Setters. Each frees the old value first. One that returns a pointer returns the new, empty
  // container (owned by this value), or null where memory failed; the value is then empty.
  void set_bool(bool b);
  void set_int(int i);
  void set_real(std::int64_t fixed);
  void set_string(const void* bytes, int length);  ///< Copies; empty string where memory fails.
  void set_name(const char* text);                 ///< Copies; empty value where memory fails.
  CPDFArray* set_array();
  CPDFDictionary* set_dict();
  void set_ref(PDF_REF ref);
  CPDFStreamRec* set_stream();

 private:
  template <class T>
  T* pointer_of(std::uint32_t tag) const;
  template <class T>
  T* own(std::uint32_t tag, T* made);
};

/// A local value that frees itself.
class CPDFObjHolder : public CPDFObj {
 public:
  CPDFObjHolder() = default;
  ~CPDFObjHolder() { free(); }
};

/// A run of values, stored one after the other.
class PDFBMP_API CPDFArray {
 public:
  CPDFArray() = default;
  ~CPDFArray() { clear(); }
  CPDFArray(const CPDFArray&) = delete;
  CPDFArray& operator=(const CPDFArray&) = delete;

  CPDFObj* items = nullptr;  ///< `count` values, memory of KXAlloc.
  int count = 0;

  void clear();  ///< Frees all items; the array is empty then.

  /// Replaces the items by deep copies of those of `src`. Where memory fails the array holds the
  /// items copied so far.
  void copy_from(const CPDFArray* src);

  /// A new empty item at the end, or null where memory failed. Earlier item pointers end here.
  CPDFObj* append();
};

/// A dictionary: item pointers sorted by their keys (ascending `strcmp`). Each item is a CPDFObj
/// followed directly by its NUL-terminated key in the same allocation (KXAlloc).
class PDFBMP_API CPDFDictionary {
 public:
  CPDFDictionary() = default;
  ~CPDFDictionary() { clear(); }
  CPDFDictionary(const CPDFDictionary&) = delete;
  CPDFDictionary& operator=(const CPDFDictionary&) = delete;

  CPDFObj** items = nullptr;
  int count = 0;
  std::uint64_t words[2] = {~std::uint64_t{0},
                            ~std::uint64_t{0}};  ///< For the parser; not read here.

  void clear();  ///< Frees all items; the dictionary is empty then.

  /// Replaces the entries by deep copies of those of `src`, keys too. Where memory fails the
  /// entries that could not be copied are absent.
  void copy_from(const CPDFDictionary* src);

  /// The entry of `key`, emptied, or a new empty one in its sorted place; null where memory
  /// failed (the dictionary is then as it was). The pointer stays good until the entry goes.
  CPDFObj* set(const char* key);

  /// The key of an item of any dictionary.
  static const char* key_of(const CPDFObj* item);

  // Keys of the image dictionary. Every look-up reads the variable's current value.
  static const char* sm_tag_width;   ///< "Width"
  static const char* sm_tag_height;  ///< "Height"
  static const char* sm_tag_bpc;     ///< "BitsPerComponent"
  static const char* sm_tag_cs;      ///< "ColorSpace"
  static const char* sm_tag_decode;  ///< "Decode"
  static const char* sm_tag_filter;  ///< "Filter"
};

/// A stream object as it stands in the file: its dictionary and where its data lies.
struct CPDFStreamRec {
  CPDFDictionary dict;

  /// The parser's own. Two records denote the same stream when the low 32 bits of `location[1]`
  /// are equal.
  std::uint64_t location[4] = {0, 0, 0, 0};
};
