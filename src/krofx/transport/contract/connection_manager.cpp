// The operations of a connection manager that have a default.

#include "krofx/transport/contract/connection_manager.h"

#include <ctime>

void VYNConnectionManager::VCRelease(void* /*session*/, void* /*exchange*/) {}

void VYNConnectionManager::VCWork(u32 milliseconds) {
  timespec left{static_cast<time_t>(milliseconds / 1000),
                static_cast<long>(milliseconds % 1000) * 1000000};
  while (nanosleep(&left, &left) != 0) {
    // Interrupted by a signal: sleep for the rest of the time.
  }
}

void VYNConnectionManager::VCPaceWork() {}
