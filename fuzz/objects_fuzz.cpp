// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Builds a tree of objects as the input says, copies it, and checks that the copy is equal, that it
// stays so when the original goes, and that nothing is left of either.
//
// The input is read as a list of orders, a byte each, with their operands behind them: what the
// value at hand becomes, a step into it, or a step out.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fuzz/input.h"
#include "pdf/obj/object.h"

namespace {

constexpr int max_depth = 64;

// A short NUL-terminated text without NUL inside.
struct Text {
  explicit Text(FuzzInput& in) {
    std::size_t n = in.byte() % (sizeof chars - 1);
    const std::uint8_t* from = in.bytes(n);
    for (std::size_t i = 0; i < n; ++i) chars[i] = static_cast<char>(from[i] | 1U);
  }
  char chars[16] = {};
};

bool equal(const CPDFObj& a, const CPDFObj& b);

int compare_keys(const CPDFObj* a, const CPDFObj* b) { return std::strcmp(CPDFDictionary::key_of(a), CPDFDictionary::key_of(b)); }

bool equal(const CPDFDictionary& a, const CPDFDictionary& b) {
  const auto entries_equal = [](const CPDFObj* x, const CPDFObj* y) { return compare_keys(x, y) == 0 && equal(*x, *y); };
  return std::equal(a.items, a.items + a.count, b.items, b.items + b.count, entries_equal);
}

bool equal(const CPDFObj& a, const CPDFObj& b) {
  if (a.type != b.type) return false;
  switch (a.type) {
    case PDF_STRING:
      return a.as_int() == b.as_int() && a.str_bytes != b.str_bytes &&
             std::memcmp(a.str_bytes, b.str_bytes, static_cast<std::size_t>(a.as_int()) + 1) == 0;
    case PDF_NAME: return a.name() != b.name() && std::strcmp(a.name(), b.name()) == 0;
    case PDF_ARRAY:
      return a.array() != b.array() &&
             std::equal(a.array()->items, a.array()->items + a.array()->count, b.array()->items, b.array()->items + b.array()->count,
                        [](const CPDFObj& x, const CPDFObj& y) { return equal(x, y); });
    case PDF_DICTIONARY: return a.dict() != b.dict() && equal(*a.dict(), *b.dict());
    case PDF_STREAM:
      return a.stream() != b.stream() && equal(a.stream()->dict, b.stream()->dict) &&
             std::memcmp(a.stream()->location, b.stream()->location, sizeof a.stream()->location) == 0;
    default: return a.value == b.value;
  }
}

// One order on `obj`. Returns the value that the next order is for: `obj`, or one inside it.
CPDFObj* change(CPDFObj* obj, FuzzInput& in) {
  switch (in.byte() % 12) {
    case 0: obj->free(); break;
    case 1: obj->set_bool((in.byte() & 1) != 0); break;
    case 2: obj->set_int(static_cast<int>(in.word())); break;
    case 3: obj->set_real(static_cast<std::int64_t>(in.word())); break;
    case 4: {
      std::size_t n = in.byte();
      const std::uint8_t* from = in.bytes(n);
      obj->set_string(from, static_cast<int>(n));
      require(obj->as_int() == static_cast<int>(n) && obj->str_bytes[n] == 0);
      break;
    }
    case 5: obj->set_name(Text(in).chars); break;
    case 6: require(obj->set_array() == obj->array() && obj->array() != nullptr); break;
    case 7: require(obj->set_dict() == obj->dict() && obj->dict() != nullptr); break;
    case 8: obj->set_ref(PDF_REF{in.byte(), in.byte()}); break;
    case 9: obj->set_stream()->location[in.byte() & 3] = in.word(); break;
    default: {  // Into a container, twice as likely as each of the others.
      if (obj->array() != nullptr) return obj->array()->append();
      CPDFDictionary* dict = obj->stream() != nullptr ? &obj->stream()->dict : obj->dict();
      if (dict == nullptr) break;
      CPDFObj* entry = dict->set(Text(in).chars);
      require(entry->type == PDF_EMPTY);
      for (int i = 1; i < dict->count; ++i) require(compare_keys(dict->items[i - 1], dict->items[i]) < 0);
      return entry;
    }
  }
  return obj;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput in(data, size);
  CPDFObjHolder root;
  CPDFObj* obj = &root;
  int depth = 0;
  while (!in.done()) {
    CPDFObj* next = change(obj, in);
    if (next != obj) ++depth;
    obj = next;
    if (depth == max_depth || in.byte() % 4 == 0) {
      // Out of all containers: the next order replaces the root, or steps into it again.
      obj = &root;
      depth = 0;
    }
  }

  CPDFObjHolder copy;
  copy.set_name("what the copy replaces");
  copy.copy_from(&root);
  require(equal(root, copy));

  CPDFObjHolder second;
  second.copy_from(&copy);
  root.free();
  require(root.type == PDF_EMPTY && equal(copy, second));

  copy.copy_from(nullptr);
  require(copy.type == PDF_EMPTY);
  return 0;
}
