# The interpreter of the tests and of the Python package: the system's, since scripts/setup.sh installs the system's
# packages for it; another one where Python3_EXECUTABLE names it, or where the system has none.
if(NOT Python3_EXECUTABLE AND EXISTS /usr/bin/python3)
  set(Python3_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "The Python interpreter")
endif()
