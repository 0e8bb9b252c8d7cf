// A terminal that nobody sits at, for what is shown only to a person.

#ifndef KROFX_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
#define KROFX_TESTS_SUPPORT_PSEUDO_TERMINAL_H_

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <string>

/// A terminal of some columns.
class PseudoTerminal {
 public:
  explicit PseudoTerminal(unsigned short columns = 0)
      : m_side(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
    EXPECT_EQ(grantpt(m_side), 0);
    EXPECT_EQ(unlockpt(m_side), 0);
    char name[64] = "";
    EXPECT_EQ(ptsname_r(m_side, name, sizeof name), 0);
    m_name = name;
    // Open as long as this is, since what was shown is gone when nobody has it open.
    m_open = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    struct winsize size {};
    size.ws_col = columns;
    EXPECT_EQ(ioctl(m_side, TIOCSWINSZ, &size), 0);
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() {
    close(m_open);
    close(m_side);
  }

  /// The device that a stream can be led to.
  const std::string& Name() const { return m_name; }
  /// What was shown since the last time.
  std::string Take() const {
    std::string shown;
    char bytes[4096];
    for (ssize_t got = 0; (got = read(m_side, bytes, sizeof bytes)) > 0;) {
      shown.append(bytes, static_cast<std::size_t>(got));
    }
    return shown;
  }

 private:
  int m_side;
  int m_open = -1;
  std::string m_name;
};

#endif  // KROFX_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
