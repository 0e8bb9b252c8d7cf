# Warnings are errors on hand-written code. Link krofx_warnings privately.
add_library(krofx_warnings INTERFACE)
target_compile_options(krofx_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                -Werror)

# The same for code that uses std::string: when GCC 12 optimises, it reports overflows in the
# inlined code of std::string that are not there.
add_library(krofx_warnings_of_strings INTERFACE)
target_link_libraries(krofx_warnings_of_strings INTERFACE krofx_warnings)
target_compile_options(
  krofx_warnings_of_strings
  INTERFACE "$<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-stringop-overflow;-Wno-array-bounds>")
