// Reads the texts of one file, one after the other: strictly, and, where that does not suffice,
// with everything that can be mended.

#ifndef KROFX_READER_FILE_FILE_READER_H_
#define KROFX_READER_FILE_FILE_READER_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/tag_dictionary.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/file/strict_pass.h"
#include "krofx/reader/reading.h"
#include "krofx/reader/records/recorder.h"

namespace krofx::internal {

/// Makes the root that a text of its kind has.
/// @return false when memory is exhausted.
bool MakeRoot(OfxText& text);

/// Fills in what is known of a text whose headers are in its tree: version and character set.
/// @param bytes the text, or a part of it that shows its character set.
/// @return false when memory is exhausted.
bool DescribeText(OfxText& text, std::string_view bytes);

/// @return the graver of two statuses: exhausted memory, then a text that was read in part, then
///         warnings.
KRParseStatus GraverStatus(KRParseStatus left, KRParseStatus right);

/// One reading of one plain buffer.
class FileReader {
 public:
  FileReader(KRBuffer& buffer, const ReadOptions& options);
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;

  /// Reads all texts. To be called once.
  Reading Read();

 private:
  KRParseStatus ReadTexts();
  // Reads the text that begins at m_position, and moves past it.
  KRParseStatus ReadNext();
  KRBuffer* BufferOf(std::size_t from, std::size_t end, OwnedBuffer& copy);
  KRParseStatus ReadMending(OfxText& text, std::size_t from, std::size_t end);
  KRParseStatus ReadMultipart(OfxText& text, std::size_t from, std::size_t end);
  KRParseStatus ReadPart(OfxText& text, std::size_t from, std::size_t end);
  KRParseStatus ReadForm(OfxText& text, WorkingText& working);
  void Describe(KRParseStatus status);
  std::string_view Bytes() const { return m_file.Bytes(); }

  KRBuffer& m_buffer;
  const ReadOptions& m_options;
  Reading m_reading;
  Recorder m_recorder;
  std::string_view m_original;
  WorkingText m_file;
  TagDictionary* m_dictionary = nullptr;
  std::size_t m_position = 0;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_FILE_READER_H_
