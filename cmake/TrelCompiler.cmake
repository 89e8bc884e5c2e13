# Compiler settings that everything in this tree is built with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(TREL_CCACHE ccache)
mark_as_advanced(TREL_CCACHE)
if(TREL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${TREL_CCACHE}")
endif()

# The same bits on every optimisation level and machine: no fused multiply-add, no x87, and no vectors of statements,
# in which g++ 12 loses the rounding of a double to single precision and back.
add_compile_options(-ffp-contract=off -fno-tree-slp-vectorize)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$")
  add_compile_options(-msse2 -mfpmath=sse)
endif()

add_compile_options(-Wall -Wextra -Wconversion -Wshadow -Wold-style-cast)
if(TREL_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()

if(TREL_SANITIZE)
  add_compile_options(-fsanitize=${TREL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TREL_SANITIZE})
endif()
