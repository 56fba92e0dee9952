#pragma once

#include <cstddef>
#include <latch>
#include <thread>
#include <vector>

namespace orvantis::testing {

/// Runs `job(0)` to `job(count - 1)` on as many threads, which begin together, and waits for all of them.
template <typename Job>
void atOnce(int count, const Job& job) {
  std::latch start(count);
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&start, &job, i] {
      start.arrive_and_wait();
      job(i);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace orvantis::testing
