// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

/// Threads for so many jobs at a time; 0 asks for one a processor.
inline std::size_t thread_count(int jobs) {
  if (jobs > 0) return static_cast<std::size_t>(jobs);
  const unsigned processors = std::thread::hardware_concurrency();
  return processors == 0 ? 1 : processors;
}

/// Does work(0) ... work(count - 1) on up to `threads` threads, and hands the results to
/// emit(i, result) on the calling thread, in order. Work runs ahead of emit by twice the threads at
/// most, so results do not pile up. Work must not throw.
template <class Work, class Emit>
class OrderedJobs {
 public:
  OrderedJobs(std::size_t count, std::size_t threads, Work work, Emit emit)
      : count_(count),
        wanted_(threads < count ? threads : count),
        ahead_(2 * threads),
        work_(work),
        emit_(emit) {}

  ~OrderedJobs() {
    {
      const std::lock_guard lock(mutex_);
      stop_ = true;
    }
    room_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  /// Once. Ends early where emit returns false.
  void run() {
    if (wanted_ > 1) start();
    if (threads_.empty()) {
      for (std::size_t i = 0; i < count_ && emit_(i, work_(i)); ++i) {
      }
    } else {
      emit_all();
    }
  }

 private:
  using Result = decltype(std::declval<Work&>()(std::size_t{}));

  void start() {
    results_.resize(count_);
    threads_.reserve(wanted_);
    try {
      while (threads_.size() < wanted_) threads_.emplace_back([this] { work_on(); });
    } catch (const std::system_error&) {
      // As many as the system gives.
    }
  }

  void work_on() {
    std::unique_lock lock(mutex_);
    for (;;) {
      room_.wait(lock, [this] { return stop_ || next_ >= count_ || next_ < emitted_ + ahead_; });
      if (stop_ || next_ >= count_) return;
      const std::size_t i = next_++;
      lock.unlock();
      Result result = work_(i);
      lock.lock();
      results_[i].emplace(std::move(result));
      if (i == emitted_) done_.notify_one();
    }
  }

  void emit_all() {
    std::unique_lock lock(mutex_);
    while (emitted_ < count_) {
      done_.wait(lock, [this] { return results_[emitted_].has_value(); });
      Result result = std::move(*results_[emitted_]);
      results_[emitted_].reset();
      lock.unlock();
      const bool go_on = emit_(emitted_, std::move(result));
      lock.lock();
      ++emitted_;
      room_.notify_all();
      if (!go_on) return;
    }
  }

  std::size_t count_, wanted_, ahead_;
  Work work_;
  Emit emit_;

  std::mutex mutex_;
  std::condition_variable room_, done_;
  std::vector<std::optional<Result>> results_;
  std::size_t next_ = 0;     // The first one that nobody works on.
  std::size_t emitted_ = 0;  // Written by the calling thread only.
  bool stop_ = false;
  std::vector<std::thread> threads_;
};
