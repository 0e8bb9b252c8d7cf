// Turns a tree of elements into the sections of a document, by the layouts.

#ifndef KROFX_COMMAND_SHOWING_SECTION_MAKER_H_
#define KROFX_COMMAND_SHOWING_SECTION_MAKER_H_

#include <vector>

#include "input/element_tree.h"
#include "showing/document.h"

namespace krofx::command {

class StreamedRows;

/// @param arena takes the texts that are made; the sections need it and that of the tree.
/// @param streamed gives the transactions that the tree does not have; null when it has all.
/// @return what a tree holds, section by section. Personal identifiers are masked unless asked for.
std::vector<Section> MakeSections(const Element& file, TextArena& arena, bool showIdentifiers,
                                  StreamedRows* streamed);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_SECTION_MAKER_H_
