# The language level, warnings, hardening and instrumentation that every native target shares.

set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(VOSMAR_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
option(VOSMAR_COVERAGE "Instrument for gcov" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
add_compile_definitions(_GNU_SOURCE)

if(VOSMAR_SANITIZE)
  add_compile_options(-fsanitize=${VOSMAR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VOSMAR_SANITIZE})
else()
  add_compile_options(-fstack-protector-strong)
  # Undefined symbols are the sanitizer runtime's only in sanitized builds.
  string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,--no-undefined -Wl,-z,relro,-z,now")
endif()

if(VOSMAR_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path)
  add_link_options(--coverage)
endif()
