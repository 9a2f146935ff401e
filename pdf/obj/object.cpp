// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/object.h"

#include <bit>
#include <cstring>
#include <new>

#include "kx/alloc.h"

namespace {

std::int64_t word_of(const void* pointer) {
  return static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(pointer));
}

template <class T>
T* pointer_in(std::int64_t word) {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(word));
}

/// `length` bytes and a 0 after them, or null.
unsigned char* copy_bytes(const void* bytes, int length) {
  const auto n = static_cast<std::size_t>(length);
  auto* copy = static_cast<unsigned char*>(KXAlloc(n + 1));
  if (copy == nullptr) return nullptr;
  if (n != 0) std::memcpy(copy, bytes, n);
  copy[n] = 0;
  return copy;
}

}  // namespace

void CPDFObj::free() {
  switch (type) {
    case PDF_STRING:
      KXFree(str_bytes);
      str_bytes = nullptr;
      break;
    case PDF_NAME:
      KXFree(pointer_in<char>(value));
      break;
    case PDF_ARRAY:
      delete array();  // The destructors clear the containers.
      break;
    case PDF_DICTIONARY:
      delete dict();
      break;
    case PDF_STREAM:
      delete stream();
      break;
    default:
      break;
  }
  value = 0;
  type = PDF_EMPTY;
}

void CPDFObj::copy_from(const CPDFObj* src) {
  free();
  if (src == nullptr) return;
  switch (src->type) {
    case PDF_STRING:
      set_string(src->str_bytes, src->as_int());
      return;
    case PDF_NAME:
      set_name(src->name());
      return;
    case PDF_ARRAY:
      if (CPDFArray* copy = set_array()) copy->copy_from(src->array());
      break;
    case PDF_DICTIONARY:
      if (CPDFDictionary* copy = set_dict()) copy->copy_from(src->dict());
      break;
    case PDF_STREAM: {
      CPDFStreamRec* copy = set_stream();
      const CPDFStreamRec* from = src->stream();
      if (copy != nullptr && from != nullptr) {
        copy->dict.copy_from(&from->dict);
        std::memcpy(copy->location, from->location, sizeof copy->location);
      }
      break;
    }
    default:
      value = src->value;
      break;
  }
  type = src->type;  // Also where a container could not be made: it is then one without storage.
}

int CPDFObj::as_int() const {
  const bool has_int = type == PDF_BOOLEAN || type == PDF_INTEGER || type == PDF_STRING;
  return has_int ? static_cast<int>(static_cast<std::uint32_t>(value)) : 0;
}

std::int64_t CPDFObj::as_fixed() const { return type == PDF_REAL ? value : 0; }

template <class T>
T* CPDFObj::pointer_of(std::uint32_t tag) const {
  return type == tag ? pointer_in<T>(value) : nullptr;
}

const char* CPDFObj::name() const { return pointer_of<const char>(PDF_NAME); }
CPDFArray* CPDFObj::array() const { return pointer_of<CPDFArray>(PDF_ARRAY); }
CPDFDictionary* CPDFObj::dict() const { return pointer_of<CPDFDictionary>(PDF_DICTIONARY); }
CPDFStreamRec* CPDFObj::stream() const { return pointer_of<CPDFStreamRec>(PDF_STREAM); }

PDF_REF CPDFObj::ref() const {
  return type == PDF_REFERENCE ? std::bit_cast<PDF_REF>(value) : PDF_REF{0, 0};
}

void CPDFObj::set_bool(bool b) {
  free();
  type = PDF_BOOLEAN;
  value = b ? 1 : 0;
}

void CPDFObj::set_int(int i) {
  free();
  type = PDF_INTEGER;
  value = i;
}

void CPDFObj::set_real(std::int64_t fixed) {
  free();
  type = PDF_REAL;
  value = fixed;
}

void CPDFObj::set_string(const void* bytes, int length) {
  // The copy comes first: the bytes may be this value's own.
  unsigned char* copy = bytes != nullptr && length >= 0 ? copy_bytes(bytes, length) : nullptr;
  free();
  type = PDF_STRING;
  str_bytes = copy;
  value = copy != nullptr ? length : 0;
}

void CPDFObj::set_name(const char* text) {
  char* copy = nullptr;
  if (text != nullptr) {
    const std::size_t size = std::strlen(text) + 1;
    copy = static_cast<char*>(KXAlloc(size));
    if (copy != nullptr) std::memcpy(copy, text, size);
  }
  free();
  if (copy == nullptr) return;
  type = PDF_NAME;
  value = word_of(copy);
}

template <class T>
T* CPDFObj::own(std::uint32_t tag, T* made) {
  if (made == nullptr) return nullptr;
  type = tag;
  value = word_of(made);
  return made;
}

CPDFArray* CPDFObj::set_array() {
  free();
  return own(PDF_ARRAY, new (std::nothrow) CPDFArray);
}

CPDFDictionary* CPDFObj::set_dict() {
  free();
  return own(PDF_DICTIONARY, new (std::nothrow) CPDFDictionary);
}

void CPDFObj::set_ref(PDF_REF ref) {
  free();
  type = PDF_REFERENCE;
  value = std::bit_cast<std::int64_t>(ref);
}

CPDFStreamRec* CPDFObj::set_stream() {
  free();
  return own(PDF_STREAM, new (std::nothrow) CPDFStreamRec);
}
