// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <csignal>
#include <exception>
#include <new>

#include "tools/pdfbmp/extract.h"
#include "tools/pdfbmp/gallery.h"
#include "tools/pdfbmp/list.h"
#include "tools/pdfbmp/memory.h"
#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"
#include "tools/pdfbmp/ordered_jobs.h"

namespace {

Outcome run(const Options& options, Messages& messages) {
  switch (options.command) {
    case Command::list:
      return run_list(options, messages);
    case Command::extract:
      return run_extract(options, messages);
    case Command::gallery:
      return run_gallery(options, messages);
  }
  return Outcome::usage;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is an output that cannot be written, told as any other.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    Options options;
    if (const auto outcome = parse_options(argc, argv, options)) return exit_code_of(*outcome);
    Messages messages(options.quiet, options.files.size());
    bound_memory(options, thread_count(options.jobs));
    try {
      return exit_code_of(run(options, messages));
    } catch (const std::bad_alloc&) {
      messages.error("", memory_problem(options));
      return exit_code_of(Outcome::unreadable);
    }
  } catch (const std::exception&) {
    // Not even the message could be made.
  }
  return exit_code_of(Outcome::incomplete);
}
