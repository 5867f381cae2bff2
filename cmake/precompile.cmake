# precompile(TARGET HEADER...): precompiles the slowest headers for a target. Not in a debug build, which thus shows a
# file that relies on another's includes.
function(precompile target)
  if(NOT CMAKE_BUILD_TYPE STREQUAL Debug OR KORVANA_SANITIZE OR KORVANA_THREAD_SANITIZER)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
