// A variable of the environment, set for the length of a scope.

#ifndef KROFX_TESTS_SUPPORT_SCOPED_VARIABLE_H_
#define KROFX_TESTS_SUPPORT_SCOPED_VARIABLE_H_

#include <cstdlib>
#include <optional>
#include <string>

/// Sets a variable, and puts back what it was.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::string& value) : m_name(std::move(name)) {
    if (const char* const before = getenv(m_name.c_str())) m_before = before;
    setenv(m_name.c_str(), value.c_str(), 1);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() {
    if (m_before.has_value()) {
      setenv(m_name.c_str(), m_before->c_str(), 1);
    } else {
      unsetenv(m_name.c_str());
    }
  }

 private:
  std::string m_name;
  std::optional<std::string> m_before;
};

#endif  // KROFX_TESTS_SUPPORT_SCOPED_VARIABLE_H_
