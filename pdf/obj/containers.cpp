// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "kx/alloc.h"
#include "pdf/obj/object.h"

// Both containers are always exactly as long as their count: the runs of image dictionaries are
// short, and one that was filled by hand can be added to like any other.

namespace {

/// `run` with room for one more than `count` entries, or null where there is none to be had.
template <class T>
T* with_room(T* run, int count) {
  const std::uint64_t bytes = (static_cast<std::uint64_t>(count) + 1) * sizeof(T);
  if (count == std::numeric_limits<int>::max() || bytes > std::numeric_limits<std::size_t>::max()) {
    return nullptr;
  }
  return static_cast<T*>(KXRealloc(run, static_cast<std::size_t>(bytes)));
}

/// An item with its key behind it, or null.
CPDFObj* make_item(const char* key) {
  const std::size_t key_size = std::strlen(key) + 1;
  void* memory = KXAlloc(sizeof(CPDFObj) + key_size);
  if (memory == nullptr) return nullptr;
  std::memcpy(static_cast<char*>(memory) + sizeof(CPDFObj), key, key_size);
  return new (memory) CPDFObj;
}

void free_item(CPDFObj* item) {
  if (item == nullptr) return;
  item->free();
  KXFree(item);
}

}  // namespace

void CPDFArray::clear() {
  for (int i = 0; i < count; ++i) items[i].free();
  KXFree(items);
  items = nullptr;
  count = 0;
}

void CPDFArray::copy_from(const CPDFArray* src) {
  if (src == this) return;
  clear();
  if (src == nullptr) return;
  for (int i = 0; i < src->count; ++i) {
    CPDFObj* item = append();
    if (item == nullptr) return;
    item->copy_from(&src->items[i]);
  }
}

CPDFObj* CPDFArray::append() {
  CPDFObj* grown = with_room(items, count);
  if (grown == nullptr) return nullptr;
  items = grown;
  return new (&items[count++]) CPDFObj;
}

void CPDFDictionary::clear() {
  for (int i = 0; i < count; ++i) free_item(items[i]);
  KXFree(items);
  items = nullptr;
  count = 0;
}

void CPDFDictionary::copy_from(const CPDFDictionary* src) {
  if (src == this) return;
  clear();
  if (src == nullptr) return;
  for (int i = 0; i < src->count; ++i) {
    const CPDFObj* from = src->items[i];
    if (from == nullptr) continue;
    if (CPDFObj* item = set(key_of(from))) item->copy_from(from);
  }
}

CPDFObj* CPDFDictionary::set(const char* key) {
  int lo = 0;
  int hi = count;
  while (lo < hi) {
    const int mid = lo + (hi - lo) / 2;
    const int order = std::strcmp(key, key_of(items[mid]));
    if (order == 0) {
      items[mid]->free();
      return items[mid];
    }
    if (order < 0) {
      hi = mid;
    } else {
      lo = mid + 1;
    }
  }

  CPDFObj** grown = with_room(items, count);
  if (grown == nullptr) return nullptr;
  items = grown;
  CPDFObj* item = make_item(key);
  if (item == nullptr) return nullptr;
  std::memmove(items + lo + 1, items + lo, static_cast<std::size_t>(count - lo) * sizeof *items);
  items[lo] = item;
  ++count;
  return item;
}

const char* CPDFDictionary::key_of(const CPDFObj* item) {
  return reinterpret_cast<const char*>(item) + sizeof(CPDFObj);
}
