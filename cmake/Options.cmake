# The options, and the settings for all targets.

option(KROFX_TRANSPORT "Have certificates and exchanges with a server, which need OpenSSL and libcurl" ON)
option(KROFX_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(KROFX_BUILD_PACKAGE_TESTS "Test the installed library from outside projects" OFF)
option(KROFX_BUILD_COMMAND "Build the command krofx" ${PROJECT_IS_TOP_LEVEL})
option(KROFX_BUILD_EXAMPLES "Build the example programs" ${PROJECT_IS_TOP_LEVEL})
option(KROFX_BUILD_BENCH "Build the benchmarks" OFF)
option(KROFX_BUILD_FUZZ "Build the fuzz targets, which needs clang" OFF)
option(KROFX_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(KROFX_SANITIZE_THREAD "Build with the thread sanitizer" OFF)
option(KROFX_COVERAGE "Build for a coverage report, which needs clang" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# A host changes the library's behaviour by overriding virtual functions, not by replacing exported
# functions at load time, so calls between exported functions can be direct.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

if(KROFX_SANITIZE AND KROFX_SANITIZE_THREAD)
  message(FATAL_ERROR "KROFX_SANITIZE and KROFX_SANITIZE_THREAD exclude each other")
endif()
if(KROFX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # The checks come with millions of addresses, which a program that may lie anywhere would have to
  # correct each time it starts: half of the time of a small test.
  add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
  # There are many large test programs, and this linker needs a tenth of the time for each.
  find_program(KROFX_MOLD mold)
  if(KROFX_MOLD)
    add_link_options(-fuse-ld=mold)
  endif()
endif()
if(KROFX_SANITIZE_THREAD)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(KROFX_COVERAGE)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "KROFX_COVERAGE needs clang: configure with the preset coverage")
  endif()
  # clang counts the conditions of the source; GCC would count the branches that it makes of them, most
  # of those that no test takes being its own. Each program adds to its file whatever its environment is.
  set(counted "-fprofile-instr-generate=${PROJECT_BINARY_DIR}/profile/%m.profraw")
  # What threads count at once must add up: what is left of a function after its conditions is a difference.
  add_compile_options(${counted} -fcoverage-mapping -fprofile-update=atomic)
  add_link_options(${counted})
endif()
if(KROFX_BUILD_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "KROFX_BUILD_FUZZ needs clang: configure with the preset fuzz")
  endif()
  # The library is instrumented; only the fuzz targets link libFuzzer itself.
  add_compile_options(-fsanitize=fuzzer-no-link)
  # To note every comparison of numbers takes half of the time. What texts are compared with is noted
  # all the same, and the dictionary has the tags.
  add_compile_options(-fno-sanitize-coverage=trace-cmp)
endif()
