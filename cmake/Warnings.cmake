# Warnings are errors on hand-written code. Link krofx_warnings privately.
add_library(krofx_warnings INTERFACE)
target_compile_options(krofx_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                                -Werror)
