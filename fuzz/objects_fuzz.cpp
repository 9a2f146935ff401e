// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Builds a tree of objects as the input says, copies it, and checks that the copy is equal and
// stays so when the original goes.
//
// The input is read as a list of orders, a byte each, with their operands behind them: what the
// value at hand becomes, a step into it, or a step out.
#include "fuzz/target.h"
#include "tests/support/object_text.h"

using testing_support::text_of;

namespace {

constexpr int max_depth = 64;

std::string name_from(FuzzInput& in) {
  std::string name(in.text(in.byte() % 15));
  for (char& c : name) c = static_cast<char>(c | 1);  // No NUL inside.
  return name;
}

// One order on `obj`. Returns the value that the next order is for: `obj`, or one inside it.
CPDFObj* change(CPDFObj* obj, FuzzInput& in) {
  switch (in.byte() % 12) {
    case 0: obj->free(); break;
    case 1: obj->set_bool((in.byte() & 1) != 0); break;
    case 2: obj->set_int(static_cast<int>(in.number(8))); break;
    case 3: obj->set_real(static_cast<std::int64_t>(in.number(8))); break;
    case 4: {
      const std::string_view bytes = in.text(in.byte());
      obj->set_string(bytes.data(), static_cast<int>(bytes.size()));
      break;
    }
    case 5: obj->set_name(name_from(in).c_str()); break;
    case 6: require(obj->set_array() == obj->array()); break;
    case 7: require(obj->set_dict() == obj->dict()); break;
    case 8: obj->set_ref(PDF_REF{in.byte(), in.byte()}); break;
    case 9:
      if (CPDFStreamRec* record = obj->set_stream()) record->location[in.byte() & 3] = in.number(8);
      break;
    default:  // Into a container, twice as likely as each of the others.
      if (obj->array() != nullptr) return obj->array()->append();
      CPDFDictionary* dict = obj->stream() != nullptr ? &obj->stream()->dict : obj->dict();
      CPDFObj* entry = dict != nullptr ? dict->set(name_from(in).c_str()) : obj;
      require(dict == nullptr || entry == nullptr || entry->type == PDF_EMPTY);
      return entry;
  }
  return obj;
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  CPDFObjHolder root;
  CPDFObj* obj = &root;
  int depth = 0;
  while (!in.done()) {
    CPDFObj* next = change(obj, in);
    depth = next != obj ? depth + 1 : depth;
    obj = next;
    if (obj == nullptr || depth == max_depth || in.byte() % 4 == 0) {
      // Out of all containers: the next order replaces the root, or steps into it again.
      obj = &root;
      depth = 0;
    }
  }
  CPDFObjHolder copy, second;
  copy.set_name("what the copy replaces");
  copy.copy_from(&root);
  second.copy_from(&copy);
  const std::string of_root = text_of(root), of_copy = text_of(copy);
  require(memory_failed() || of_root == of_copy);
  root.free();
  require(root.type == PDF_EMPTY && text_of(copy) == of_copy);
  require(memory_failed() || text_of(second) == of_root);
  copy.copy_from(nullptr);
  require(copy.type == PDF_EMPTY);
  return of_root;
}
