// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/ordered_jobs.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

TEST(OrderedJobs, ResultsComeInOrderAndNotTooFarAhead) {
  for (const std::size_t threads : {0u, 1u, 2u, 5u}) {
    for (const std::size_t count : {0u, 1u, 3u, 40u}) {
      std::atomic<std::size_t> started = 0, emitted = 0;
      std::atomic<bool> too_far = false;
      std::vector<int> results;
      const auto work = [&](std::size_t i) {
        if (++started > emitted + 2 * threads + 1) too_far = true;
        if (i % 3 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return std::make_unique<int>(static_cast<int>(i));
      };
      const auto emit = [&](std::size_t i, std::unique_ptr<int> result) {
        EXPECT_EQ(i, static_cast<std::size_t>(*result));
        results.push_back(*result);
        ++emitted;
        return true;
      };
      OrderedJobs(count, threads, work, emit).run();
      EXPECT_EQ(results.size(), count) << threads;
      EXPECT_FALSE(too_far) << threads;
    }
  }
}

TEST(OrderedJobs, EndsEarlyWhenToldOrThrownAt) {
  for (const std::size_t threads : {1u, 3u}) {
    std::size_t emitted = 0;
    const auto work = [](std::size_t i) { return i; };
    OrderedJobs(100, threads, work, [&](std::size_t, std::size_t) { return ++emitted < 7; }).run();
    EXPECT_EQ(emitted, 7u);
    const auto fail = [](std::size_t, std::size_t) -> bool { throw std::runtime_error("full"); };
    OrderedJobs jobs(100, threads, work, fail);
    EXPECT_THROW(jobs.run(), std::runtime_error);
  }
}

}  // namespace
