# precompile(TARGET HEADER...): the headers that take longest to read are read once for a target. Not in a debug build,
# which so shows a file that leans on another's includes.
function(precompile target)
  if(NOT CMAKE_BUILD_TYPE STREQUAL Debug OR KORVANA_SANITIZE)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
