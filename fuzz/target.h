// A fuzz target: a name and a function that takes any bytes.
//
// Each target is one source, which says so by a constant of class Target. libFuzzer runs it through
// engine.cpp, one program for each target; the tests run the kept inputs of all targets through
// replay.cpp, without libFuzzer.

#ifndef KROFX_FUZZ_TARGET_H_
#define KROFX_FUZZ_TARGET_H_

#include <cstddef>
#include <string_view>

namespace krofx::fuzz {

/// What a fuzz target is given.
using Bytes = std::string_view;

/// A target of this program. Each one adds itself to the list of them all.
class Target {
 public:
  /// @param run takes any bytes, and ends the process when a property does not hold.
  Target(const char* name, void (*run)(Bytes bytes));

  const char* Name() const { return m_name; }
  void Run(Bytes bytes) const { m_run(bytes); }
  const Target* Next() const { return m_next; }

  /// The first of the list; null when the program has none.
  static const Target* First();

 private:
  const char* m_name;
  void (*m_run)(Bytes bytes);
  const Target* m_next;
};

/// Ends the process when a property does not hold, and says which.
void Expect(bool holds, const char* property);

/// As Expect, for two texts that must be the same; shows them when they are not.
void ExpectSame(std::string_view first, std::string_view second, const char* property);

/// Choices that are read from the front of bytes, for targets that build what they try.
class Choices {
 public:
  explicit Choices(Bytes bytes) : m_bytes(bytes) {}

  /// Whether all bytes are used up; what is asked for then is 0 and empty.
  bool AtEnd() const { return m_bytes.empty(); }
  /// A number below `count`, which is from 1 to 65,536.
  std::size_t Below(std::size_t count);
  /// A text of at most `most` characters, which is at most 255: the first byte says how many.
  Bytes Text(std::size_t most);
  /// Everything that is left.
  Bytes Rest() const { return m_bytes; }

 private:
  unsigned char TakeByte();

  Bytes m_bytes;
};

}  // namespace krofx::fuzz

#endif  // KROFX_FUZZ_TARGET_H_
