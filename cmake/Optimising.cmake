# Optimisation beyond the default build: at link time, and by a profile of what the benchmarks do.
# docs/performance.md has what each brings.

option(KROFX_LTO "Optimise at link time; a static library then needs the same compiler to link" OFF)
# scripts/profiled_build.sh does both steps.
set(KROFX_PROFILE "" CACHE STRING
    "With GCC: generate builds programs that write a profile, use optimises by it; both in one folder")
set_property(CACHE KROFX_PROFILE PROPERTY STRINGS "" generate use)

if(KROFX_LTO)
  include(CheckIPOSupported)
  check_ipo_supported(LANGUAGES CXX)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
endif()

if(KROFX_PROFILE AND NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  message(FATAL_ERROR "KROFX_PROFILE needs GCC")
endif()
if(KROFX_PROFILE STREQUAL "generate")
  add_compile_options(-fprofile-generate -fprofile-update=prefer-atomic)
  add_link_options(-fprofile-generate)
elseif(KROFX_PROFILE STREQUAL "use")
  # What the profile does not know is optimised as without one, not for size.
  add_compile_options(-fprofile-use -fprofile-partial-training -Wno-missing-profile)
elseif(KROFX_PROFILE)
  message(FATAL_ERROR "KROFX_PROFILE is generate, use or empty, not ${KROFX_PROFILE}")
endif()
