// Memory in large pages, for files that take much of it.

#ifndef KROFX_COMMAND_SYSTEM_LARGE_PAGES_H_
#define KROFX_COMMAND_SYSTEM_LARGE_PAGES_H_

#include <cstddef>

namespace krofx::command {

/// Asks the system to give the next so many bytes that the process takes in large pages. The first
/// touch of a page of 4 kB takes a microsecond or more; the tree of a file of 3.5 MB has 3,500 of
/// them, and that takes longer than the parse. Where the system has no large pages nothing changes.
void PreferLargePages(std::size_t bytes);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_LARGE_PAGES_H_
