// Standard output or standard error, led to another file for the length of a scope.

#ifndef KROFX_TESTS_SUPPORT_REDIRECTED_STREAM_H_
#define KROFX_TESTS_SUPPORT_REDIRECTED_STREAM_H_

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <unistd.h>

#include <string>

/// Leads a stream to a file, which is made or emptied, or to a device.
class RedirectedStream {
 public:
  /// @param stream STDOUT_FILENO or STDERR_FILENO.
  RedirectedStream(int stream, const std::string& file) : m_stream(stream), m_kept(dup(stream)) {
    fflush(nullptr);
    const int other =
        open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, S_IRUSR | S_IWUSR);
    EXPECT_GE(dup2(other, m_stream), 0) << file;
    close(other);
  }
  RedirectedStream(const RedirectedStream&) = delete;
  RedirectedStream& operator=(const RedirectedStream&) = delete;
  ~RedirectedStream() {
    fflush(nullptr);
    dup2(m_kept, m_stream);
    close(m_kept);
  }

 private:
  int m_stream;
  int m_kept;
};

#endif  // KROFX_TESTS_SUPPORT_REDIRECTED_STREAM_H_
