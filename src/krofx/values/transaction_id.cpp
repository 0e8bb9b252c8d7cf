// The identifiers of transactions: a time-based UUID (version 1), with a coarser clock than that
// standard's.
//
// An identifier is made of the time since 1582 in ten-thousandths of a second, a clock sequence
// that increases whenever the clock has gone backwards, and a node that identifies this process.
// The clock gives whole seconds; within a second a counter replaces the fraction. After 10,000
// identifiers in one second the counter reaches the next second; the clock then seems to go
// backwards, and the sequence keeps the identifiers distinct.

#include <sys/random.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <mutex>

#include "krofx/values/internal/clock.h"
#include "krofx/values/utility.h"

using krofx::internal::Clock;

u16 KRUtility::m_clockSequence = 0;
u16 KRUtility::m_nodeSet = 0;
u32 KRUtility::m_node25 = 0;
u16 KRUtility::m_node01 = 0;
s32 KRUtility::m_lastTime = 0;
u32 KRUtility::m_lastSecond = 0;
u32 KRUtility::m_nextFracSec = 0;

namespace {

std::mutex generatorMutex;

constexpr u16 kSequenceMask = 0x3fff;
constexpr u16 kVariant = 0x8000;
constexpr u32 kVersion = 0x1000;
constexpr u32 kLocalNode = 0x80000000;

// From the start of the Gregorian count in 1582 to 1900, and from there to 1970.
constexpr std::uint64_t kSecondsTo1970 = 10004083200 + 2208988800;
constexpr std::uint64_t kUnitsPerSecond = 10000;

// Not rand(), so that a host's own sequence is not disturbed. When the system has no randomness
// yet, the processor time and an address are used: two processes only have to differ.
u32 Random() {
  u32 value = 0;
  if (getrandom(&value, sizeof value, GRND_NONBLOCK) != sizeof value) {
    value = static_cast<u32>(reinterpret_cast<std::uintptr_t>(&value) >> 4) ^
            static_cast<u32>(std::clock()) * 2654435761u;
  }
  return value;
}

}  // namespace

u16 KRUtility::GetSequence() {
  if (m_clockSequence == 0) m_clockSequence = static_cast<u16>(Random() & kSequenceMask);
  m_clockSequence = static_cast<u16>((m_clockSequence + 1) & kSequenceMask);
  return m_clockSequence;
}

u16 KRUtility::GenerateTransactionID(char* out) {
  if (out == nullptr) return 0;
  const std::lock_guard lock(generatorMutex);

  const std::int64_t now = Clock::Current().Now();
  std::uint64_t time = (kSecondsTo1970 + static_cast<std::uint64_t>(now)) * kUnitsPerSecond;
  if (static_cast<u32>(now) == m_lastSecond) {
    time += ++m_nextFracSec;
  } else {
    m_nextFracSec = 0;
  }
  m_lastSecond = static_cast<u32>(now);

  // Equal times mean that the counter of the previous second ended here.
  const s32 present = static_cast<s32>(static_cast<u32>(time));
  if (m_clockSequence == 0 || present <= m_lastTime) GetSequence();
  m_lastTime = present;

  if (m_nodeSet != 1) {
    m_nodeSet = 1;
    m_node25 = Random() | kLocalNode;
    m_node01 = static_cast<u16>(Random());
  }

  const u32 timeLow = static_cast<u32>(time);
  const u32 timeMid = static_cast<u32>(time >> 32) & 0xffff;
  const u32 timeHigh = (static_cast<u32>(time >> 48) & 0x0fff) | kVersion;
  const u32 sequence = (m_clockSequence & kSequenceMask) | kVariant;
  std::snprintf(out, 37, "%08X-%04X-%04X-%04X-%08X%04X", timeLow, timeMid, timeHigh, sequence,
                m_node25, u32{m_node01});
  return 1;
}

u16 KRUtility::GetGUIDClockSequence() {
  const std::lock_guard lock(generatorMutex);
  return m_clockSequence;
}

void KRUtility::SetGUIDClockSequence(u16 value) {
  const std::lock_guard lock(generatorMutex);
  m_clockSequence = value;
}

void KRUtility::GetGUIDNode(u16* node01, u32* node25) {
  const std::lock_guard lock(generatorMutex);
  if (node01 != nullptr) *node01 = m_node01;
  if (node25 != nullptr) *node25 = m_node25;
}

void KRUtility::SetGUIDNode(u16 node01, u32 node25) {
  const std::lock_guard lock(generatorMutex);
  m_nodeSet = 1;
  m_node01 = node01;
  m_node25 = node25;
}
