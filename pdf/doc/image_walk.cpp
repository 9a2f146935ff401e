// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/image_walk.h"

#include <map>

#include "pdf/doc/describe.h"
#include "pdf/doc/object_values.h"
#include "pdf/doc/page_list.h"

namespace pdfbmp {

std::vector<CPDFFoundImage> walk_images(CPDFObjectTable& table,
                                        std::vector<QPDFObjectHandle>& pages, int first, int last) {
  std::vector<CPDFFoundImage> found;
  std::map<int, std::size_t> known;
  for (int page = first; page <= last; ++page) {
    QPDFObjectHandle resources =
        page_attribute(pages[static_cast<std::size_t>(page) - 1], "/Resources");
    if (!resources.isDictionary() || !resources.getKey("/XObject").isDictionary()) continue;
    for (const auto& entry : resources.getKey("/XObject").ditems()) {
      QPDFObjectHandle image = entry.second;
      if (!image.isStream() || !image.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
        continue;
      }
      const PDF_REF ref = ref_of(image);
      const auto [at, is_new] = known.try_emplace(ref.num, found.size());
      if (!is_new) {
        if (found[at->second].pages.back() != page) found[at->second].pages.push_back(page);
        continue;
      }
      CPDFObjHolder value;
      convert_object(image, value);
      CPDFFoundImage record;
      record.page = page;
      record.pages.push_back(page);
      record.object = ref.num;
      record.generation = ref.gen;
      describe_image(value.stream()->dict, &table, nullptr, record);
      record.bytes = table.encoded_bytes(ref);
      found.push_back(std::move(record));
    }
  }
  return found;
}

}  // namespace pdfbmp
