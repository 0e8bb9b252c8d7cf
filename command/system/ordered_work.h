// Many pieces of work on several threads, with their results in the order of the pieces.

#ifndef KROFX_COMMAND_SYSTEM_ORDERED_WORK_H_
#define KROFX_COMMAND_SYSTEM_ORDERED_WORK_H_

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace krofx::command {

/// @return how many threads the machine runs at once; at least 1.
inline std::size_t CountCores() { return std::max(1U, std::thread::hardware_concurrency()); }

/// Does pieces of work on several threads and hands each result to the calling thread, in the order
/// of the pieces. Only so many results wait at a time, however long the first piece takes. An
/// exception of either function ends the work and comes out of here.
/// @param make makes the result of the piece of a number, on any thread.
/// @param take takes a result, on the calling thread.
template <class Result, class Make, class Take>
void WorkInOrder(std::size_t pieces, std::size_t threads, Make make, Take take) {
  if (std::min(pieces, threads) <= 1) {
    for (std::size_t piece = 0; piece < pieces; ++piece) take(make(piece));
    return;
  }
  // Enough for the threads to go on while an early piece takes long.
  const std::size_t window = threads * 16;
  std::vector<std::optional<Result>> waiting(window);
  std::mutex mutex;
  std::condition_variable changed;
  std::exception_ptr failure;
  std::size_t next = 0;
  std::size_t taken = 0;
  bool stop = false;
  const auto fail = [&] {
    const std::lock_guard lock(mutex);
    if (!failure) failure = std::current_exception();
    stop = true;
    changed.notify_all();
  };
  const auto work = [&] {
    for (std::unique_lock lock(mutex);;) {
      changed.wait(lock, [&] { return stop || next == pieces || next < taken + window; });
      if (stop || next == pieces) return;
      const std::size_t piece = next++;
      lock.unlock();
      Result result = make(piece);
      lock.lock();
      waiting[piece % window] = std::move(result);
      if (piece == taken) changed.notify_all();
    }
  };
  {
    std::vector<std::jthread> workers;
    const auto guarded = [&] {
      try {
        work();
      } catch (...) {
        fail();
      }
    };
    try {
      for (std::size_t count = std::min(pieces, threads); count > 0; --count) {
        workers.emplace_back(guarded);
      }
      std::unique_lock lock(mutex);
      while (taken < pieces) {
        changed.wait(lock, [&] { return stop || waiting[taken % window].has_value(); });
        if (stop) break;
        Result result = std::move(*waiting[taken % window]);
        waiting[taken % window].reset();
        ++taken;
        lock.unlock();
        changed.notify_all();
        take(std::move(result));
        lock.lock();
      }
    } catch (...) {
      fail();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_ORDERED_WORK_H_
