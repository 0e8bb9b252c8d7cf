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

/// Does pieces of work on several threads, of which the calling one is one, and hands each result
/// to the calling thread, in the order of the pieces. Only so many results wait at a time, however
/// long the first piece takes. An exception of either function ends the work and comes out of here.
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
  // Nobody waits for either while there is work, so that small pieces cost no change of threads.
  std::condition_variable hasRoom;
  std::condition_variable isNextReady;
  std::exception_ptr failure;
  std::size_t next = 0;
  std::size_t taken = 0;
  bool stop = false;
  const auto fail = [&] {
    const std::lock_guard lock(mutex);
    if (!failure) failure = std::current_exception();
    stop = true;
    hasRoom.notify_all();
    isNextReady.notify_all();
  };
  const auto mayMake = [&] { return next < pieces && next < taken + window; };
  const auto makeOne = [&](std::unique_lock<std::mutex>& lock) {
    const std::size_t piece = next++;
    lock.unlock();
    Result result = make(piece);
    lock.lock();
    waiting[piece % window] = std::move(result);
    if (piece == taken) isNextReady.notify_one();
  };
  const auto work = [&] {
    for (std::unique_lock lock(mutex);;) {
      hasRoom.wait(lock, [&] { return stop || next == pieces || mayMake(); });
      if (stop || next == pieces) return;
      makeOne(lock);
    }
  };
  const auto takeOne = [&](std::unique_lock<std::mutex>& lock) {
    Result result = std::move(*waiting[taken % window]);
    waiting[taken % window].reset();
    ++taken;
    lock.unlock();
    hasRoom.notify_all();
    take(std::move(result));
    lock.lock();
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
      for (std::size_t count = std::min(pieces, threads); count > 1; --count) {
        workers.emplace_back(guarded);
      }
      const auto isReady = [&] { return waiting[taken % window].has_value(); };
      std::unique_lock lock(mutex);
      while (taken < pieces && !stop) {
        if (isReady()) {
          takeOne(lock);
        } else if (mayMake()) {
          makeOne(lock);
        } else {
          isNextReady.wait(lock, [&] { return stop || isReady(); });
        }
      }
    } catch (...) {
      fail();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_ORDERED_WORK_H_
