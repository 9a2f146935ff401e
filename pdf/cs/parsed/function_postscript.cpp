// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/function.h"
#include "pdf/cs/parsed/postscript_program.h"

// Type 4, ISO 32000-1 7.10.5.

namespace {

constexpr int max_program_bytes = 1 << 18;

class CPDFPostScriptFunction final : public CPDFFunction {
 public:
  CPDFPostScriptFunction(CPDFFunctionSource& source, CPDFPostScriptProgram program)
      : CPDFFunction(source.domain, source.range, static_cast<int>(source.range.size())),
        program_(std::move(program)) {}

  std::int64_t work() const override { return 8 * program_.instructions(); }

 protected:
  void compute(const double* in, double* out) const override {
    program_.run(in, inputs(), out, outputs());  // Where it fails `out` stays zeros.
  }

 private:
  CPDFPostScriptProgram program_;
};

}  // namespace

std::unique_ptr<CPDFFunction> pdfbmp::make_postscript_function(CPDFFunctionSource& source) {
  if (source.range.empty()) return nullptr;
  const std::vector<unsigned char> bytes =
      source.context.load_stream(source.object, max_program_bytes);
  CPDFPostScriptProgram program;
  if (!program.compile(std::string(bytes.begin(), bytes.end()))) return nullptr;
  return std::make_unique<CPDFPostScriptFunction>(source, std::move(program));
}
