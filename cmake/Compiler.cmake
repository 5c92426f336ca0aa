# Warnings, sanitizers and the compiler cache, for every target of the project.
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic)
if(ORV_WERROR)
  add_compile_options(-Werror)
endif()

if(ORV_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
