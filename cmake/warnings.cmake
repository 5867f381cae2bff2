# Options for every target of the project: warnings are errors, and arithmetic is the same on every machine (no
# contraction into fused operations, no value-changing optimisation).
add_library(korvana-flags INTERFACE)
target_compile_options(korvana-flags INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wformat=2 -Wundef -Wcast-align
  -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 sees overlapping copies in `"text" + std::string` that are not there (GCC bug 105651).
  target_compile_options(korvana-flags INTERFACE -Wno-restrict)
endif()
if(KORVANA_SANITIZE)
  # One build serves tests and fuzzers. Types of hidden visibility have type information in each library, which the
  # checks of vptr and function would take for different types.
  target_compile_options(korvana-flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined
    -fno-sanitize=vptr,function -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(korvana-flags INTERFACE -fsanitize=address,undefined)
endif()
if(KORVANA_THREAD_SANITIZER)
  target_compile_options(korvana-flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(korvana-flags INTERFACE -fsanitize=thread)
endif()
