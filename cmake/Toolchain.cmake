# How everything in this repository is compiled. Targets link `project_options`.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(CCACHE ccache)
if(CCACHE)
  # What precompiled headers take to be kept.
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_C_COMPILER_LAUNCHER})
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

set(DATACACHE_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_compile_definitions(project_options INTERFACE _GNU_SOURCE)
if(DATACACHE_SANITIZE)
  set(SANITIZER_OPTIONS -fsanitize=${DATACACHE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_compile_options(${SANITIZER_OPTIONS})
  add_link_options(-fsanitize=${DATACACHE_SANITIZE})
endif()
