// Turns a tree of elements into the sections of a document, by the layouts.

#ifndef KROFX_COMMAND_SHOWING_SECTION_MAKER_H_
#define KROFX_COMMAND_SHOWING_SECTION_MAKER_H_

#include <vector>

#include "input/element_tree.h"
#include "showing/document.h"

namespace krofx::command {

class HeldTransactions;
class StreamedRows;

/// @param arena takes the texts that are made; the sections need it and that of the tree.
/// @param held gives the transactions that were taken out of the tree.
/// @param streamed gives the elements that were never in it; null when there are none.
/// @return what a tree holds, section by section. Personal identifiers are masked unless asked for.
std::vector<Section> MakeSections(const Element& file, TextArena& arena, bool showIdentifiers,
                                  HeldTransactions& held, StreamedRows* streamed);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_SECTION_MAKER_H_
