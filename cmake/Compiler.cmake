# Warnings, sanitizers and the compiler cache, for every target of the project.
find_program(CCACHE ccache)
if(CCACHE)
  # Paths are taken relative to the checkout, so that a second one builds from the same cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic)
if(ORV_WERROR)
  add_compile_options(-Werror)
endif()

if(ORV_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(ORV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
