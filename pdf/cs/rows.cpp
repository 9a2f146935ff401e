// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "pdf/cs/rows_x86.h"

namespace {

constexpr CPDFCpu paths[] = {CPDFCpu::scalar, CPDFCpu::sse41, CPDFCpu::avx2, CPDFCpu::avx512};

CPDFCpu best_path() {
  CPDFCpu best = CPDFCpu::scalar;
  for (const CPDFCpu cpu : paths) {
    if (cpu_runs(cpu)) best = cpu;
  }
#ifdef PDFBMP_FORCE_CPU
  if (const char* forced = std::getenv("PDFBMP_CPU")) {
    for (const CPDFCpu cpu : paths) {
      if (std::strcmp(forced, cpu_name(cpu)) == 0 && cpu_runs(cpu)) best = cpu;
    }
  }
#endif
  return best;
}

}  // namespace

const CPDFRows& rows() {
  static const CPDFRows chosen = rows_of(best_path());
  return chosen;
}

const CPDFRows& rows_for(const void* dst, size_t dst_bytes, const void* src, size_t src_bytes) {
  const auto d = reinterpret_cast<uintptr_t>(dst), s = reinterpret_cast<uintptr_t>(src);
  return d < s + src_bytes && s < d + dst_bytes ? scalar_rows : rows();
}

bool cpu_runs(CPDFCpu cpu) {
#ifdef __x86_64__
  switch (cpu) {
    case CPDFCpu::scalar:
      return true;
    case CPDFCpu::sse41:
      return __builtin_cpu_supports("sse4.1");
    case CPDFCpu::avx2:
      return __builtin_cpu_supports("avx2");
    case CPDFCpu::avx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
             __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
             __builtin_cpu_supports("avx512vnni");
  }
  return false;
#else
  return cpu == CPDFCpu::scalar;
#endif
}

CPDFRows rows_of(CPDFCpu cpu) {
  CPDFRows rows = scalar_rows;
#ifdef __x86_64__
  if (cpu >= CPDFCpu::sse41) overlay_sse41(rows);
  if (cpu >= CPDFCpu::avx2) overlay_avx2(rows);
  if (cpu >= CPDFCpu::avx512) overlay_avx512(rows);
#endif
  rows.cpu = cpu;
  return rows;
}

const char* cpu_name(CPDFCpu cpu) {
  constexpr const char* names[] = {"scalar", "sse41", "avx2", "avx512"};
  return names[static_cast<int>(cpu)];
}
