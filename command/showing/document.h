// The neutral form of what `krofx print` shows: sections with fields and tables of typed cells.
//
// Layouts say what is in it (layout.h), and three renderers turn it into text, JSON and CSV
// (renderers.h). Neither knows the other.

#ifndef KROFX_COMMAND_SHOWING_DOCUMENT_H_
#define KROFX_COMMAND_SHOWING_DOCUMENT_H_

#include <optional>
#include <string>
#include <vector>

#include "checking/notes.h"
#include "input/element_tree.h"

namespace krofx::command {

/// One value, fit for output.
struct Cell {
  ValueKind kind = ValueKind::kText;
  std::string text;
};

/// A named value. The key is part of the stable JSON form, the label is for people.
struct Field {
  std::string key;
  std::string label;
  Cell cell;
  bool detail = false;  ///< Left out of the text.
};

/// A column of a table.
struct Column {
  std::string key;
  std::string label;
  bool detail = false;  ///< Left out of the text.
};

/// Rows of cells; a cell without value was not in the file.
struct Table {
  std::string key;
  std::string title;
  std::vector<Column> columns;
  std::vector<std::vector<std::optional<Cell>>> rows;
};

/// One thing that a file says: a sign-on, the statement of an account, an answer without content.
struct Section {
  std::string kind;
  std::string title;
  std::string subject;  ///< The account or institution that it is about; may be empty.
  std::vector<Field> fields;
  std::vector<Table> tables;
};

/// One input.
struct Document {
  std::string file;
  std::string kind;  ///< "request", "response", "multipart", or empty when it could not be read.
  unsigned status = 0;
  std::string meaning;
  std::string problem;  ///< Why it is not usable; empty when it is.
  std::size_t warnings = 0;
  std::string notes;  ///< How many mendings and warnings, in words; empty for none.
  std::vector<ShownMending> mendings;
  std::vector<Section> sections;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_DOCUMENT_H_
