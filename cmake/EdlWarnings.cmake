# Warnings are errors in our own code.

function(edl_set_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Werror
    -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wformat=2 -Wimplicit-fallthrough
    -Wundef -Wvla)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # clang's -Wdouble-promotion minds an explicit double{x} too.
    # The last three see, at -O3, overlaps in std::string's own operator+ and writes past
    # the end in std::vector's own growth (gcc bug 105651 and its kin). The sanitizers
    # find the real ones.
    target_compile_options(${target} PRIVATE
      -Wduplicated-cond -Wlogical-op -Wuseless-cast -Wsuggest-override -Wdouble-promotion
      -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow)
    if(EDL_SANITIZE)
      # Under the sanitizers gcc 12 sees uninitialised values inside std::regex.
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
  else()
    target_compile_options(${target} PRIVATE -Wsuggest-override)
  endif()
endfunction()

# Single-precision rate arithmetic must round after each operation, so no
# fused multiply-add and no excess precision anywhere.
add_compile_options(-ffp-contract=off)

if(EDL_SANITIZE OR EDL_FUZZ)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(EDL_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "EDL_FUZZ needs clang: use the preset \"fuzz\"")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
