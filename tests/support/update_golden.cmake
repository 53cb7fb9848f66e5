# Moves every "<name>.received" under GOLDEN over "<name>".
file(GLOB_RECURSE received ${GOLDEN}/*.received)
foreach(file IN LISTS received)
  string(REGEX REPLACE "\\.received$" "" golden ${file})
  file(RENAME ${file} ${golden})
  message(STATUS "accepted ${golden}")
endforeach()
