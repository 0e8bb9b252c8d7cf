// The reply of an exchange, which the connection manager leaves in two files: the body, and the
// header lines. They are read here, and removed when they are no longer needed.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_REPLY_FILES_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_REPLY_FILES_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/files/internal/local_file.h"

namespace krofx::internal {

/// The files of the last exchange of a request, and the saved headers of all its exchanges.
class KROFX_API ReplyFiles {
 public:
  ReplyFiles() : m_savedHeaders(0, 0) {}
  ReplyFiles(const ReplyFiles&) = delete;
  ReplyFiles& operator=(const ReplyFiles&) = delete;
  ~ReplyFiles() { Delete(); }

  /// Takes over the files that a record names, and measures the reply.
  void Take(const VYFinishedRecord& record);
  /// Deletes the files; there is no reply then.
  void Drop();
  /// Deletes the files before a new exchange is created, whose files may have the same names. The
  /// reply can still be loaded until Forget, in case the exchange cannot be created.
  void ClearNames();
  /// Forgets the reply, for a new exchange.
  void Forget();

  /// @return the bytes of the reply; 0 when there is none.
  u32 Size() const { return m_replySize; }
  /// Appends the reply at the cursor of `target` and deletes the files.
  /// @return whether the target's size is then the reply's. When there is no reply, or its file
  ///         does not open, the result is false and the files stay.
  bool Load(KRBuffer& target);

  /// Appends the file of headers, if there is one, to the saved headers.
  void SaveHeaders();
  /// @return the saved headers. A buffer without memory means that memory was exhausted when this
  ///         object was made.
  const KRBuffer& SavedHeaders() const { return m_savedHeaders; }
  /// Gets the value of the first saved header of a name, whatever the case of its letters.
  /// @return 1; 0, with `value` unchanged, when there is none.
  u16 FindHeader(const KRString& name, KRString& value) const;

 private:
  // Bytes of a file name, the NUL included.
  static constexpr u32 kNameRoom = 1024;

  void Delete();

  char m_replyFile[kNameRoom] = {};
  char m_headerFile[kNameRoom] = {};
  // Whether there are files to delete.
  bool m_filesLeft = false;
  // The open reply file, after its name was removed.
  LocalFile m_unnamed;
  u32 m_replySize = 0;
  KRBuffer m_savedHeaders;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_REPLY_FILES_H_
