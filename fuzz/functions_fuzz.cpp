// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Parses a PDF function and evaluates it inside its domain, at its ends and beyond.
//
// Input: objects in text (fuzz/text_objects.h).
#include <cmath>

#include "fuzz/target.h"
#include "fuzz/text_objects.h"
#include "pdf/cs/parsed/function.h"

std::string run_target(FuzzInput in, bool) {
  TextObjects objects(in.text());
  CPDFObjHolder entry;
  objects.get_entity(entry, {0, 0});
  CPDFCSParseContext context(&objects);
  const std::unique_ptr<CPDFFunction> function = CPDFFunction::parse(&entry, context);
  std::string results;
  if (function == nullptr) return results;
  require(function->inputs() >= 1 && function->inputs() <= CPDFFunction::max_inputs);
  require(function->outputs() >= 1 && function->outputs() <= CPDFFunction::max_outputs);
  for (const double x : {0.0, 1.0, 0.5, 0.3, 100.0, -1e300, 1e300, std::nan("")}) {
    double inputs[CPDFFunction::max_inputs], outputs[CPDFFunction::max_outputs];
    for (int i = 0; i < CPDFFunction::max_inputs; ++i) inputs[i] = i % 2 == 0 ? x : 1 - x;
    function->evaluate(inputs, outputs);
    for (int i = 0; i < function->outputs(); ++i) {
      require(std::isfinite(outputs[i]));
      results += std::to_string(outputs[i]) + ' ';
    }
  }
  return results;
}
