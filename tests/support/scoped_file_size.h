// A limit on the size of files while an object lives: a write beyond it fails as on a full disk.

#ifndef KROFX_TESTS_SUPPORT_SCOPED_FILE_SIZE_H_
#define KROFX_TESTS_SUPPORT_SCOPED_FILE_SIZE_H_

#include <signal.h>
#include <sys/resource.h>

class ScopedFileSize {
 public:
  explicit ScopedFileSize(rlim_t bytes) : m_handler(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ScopedFileSize(const ScopedFileSize&) = delete;
  ScopedFileSize& operator=(const ScopedFileSize&) = delete;
  ~ScopedFileSize() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    signal(SIGXFSZ, m_handler);
  }

 private:
  sighandler_t m_handler;
  rlimit m_before{};
};

#endif  // KROFX_TESTS_SUPPORT_SCOPED_FILE_SIZE_H_
