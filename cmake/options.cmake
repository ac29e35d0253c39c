# How everything is built. Warnings are errors only where our own CI asks for it.
include_guard(GLOBAL)
include(GNUInstallDirs)
find_package(PkgConfig REQUIRED)

option(TESMAR_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
option(TESMAR_SDL "Build the host for SDL 2 (tesmar::sdl)" ON)
option(TESMAR_QT6 "Build the overlay for widgets of Qt 6 (tesmar::qt6)" OFF)
option(TESMAR_EXAMPLES "Build the examples and the player" ${PROJECT_IS_TOP_LEVEL})
option(TESMAR_TOOLS "Build the tools for developers" ${PROJECT_IS_TOP_LEVEL})
option(TESMAR_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
set(TESMAR_SANITIZE "" CACHE STRING "Sanitizers for every target, such as address,undefined")
option(TESMAR_FUZZ "Build the fuzz targets (clang only)" OFF)

# tesmar_needs(OPTION FOUND WHAT): ends with one line that says what is missing for an option.
function(tesmar_needs option found what)
  if(NOT found)
    message(FATAL_ERROR "${option} needs ${what}. Install that, or configure with -D${option}=OFF.")
  endif()
endfunction()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
  endif()
endif()

if(TESMAR_SANITIZE)
  add_compile_options(-fsanitize=${TESMAR_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TESMAR_SANITIZE})
endif()

if(TESMAR_FUZZ)
  # Every layer reports the branches that it takes; only the fuzz targets link the fuzzer's main.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Every include reads "tesmar/<layer>/<file>", in the tree as in an installed package.
get_filename_component(TESMAR_INCLUDE_DIR "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)

include(${CMAKE_CURRENT_LIST_DIR}/layers.cmake)
set(TESMAR_MODULES_DIR ${PROJECT_BINARY_DIR})

# Versions with the same number here have a compatible binary interface.
file(STRINGS ${TESMAR_INCLUDE_DIR}/tesmar/version.h numbers REGEX "define TESMAR_VERSION_M")
string(REGEX MATCHALL "[0-9]+" numbers "${numbers}")
list(POP_FRONT numbers TESMAR_COMPATIBLE minor)
if(TESMAR_COMPATIBLE EQUAL 0)
  set(TESMAR_COMPATIBLE 0.${minor})
endif()

# The library runs in other people's processes, on bytes from outside.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection TESMAR_HAS_CET)
function(tesmar_hardening target)
  if(NOT TESMAR_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fstack-protector-strong $<$<BOOL:${TESMAR_HAS_CET}>:-fcf-protection>
      $<$<NOT:$<CONFIG:Debug,>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>) # needs optimisation
  endif()
endfunction()

function(tesmar_warnings target)
  # g++ 12's -Wrestrict sees overlaps in any std::string that is put together (GCC bug 105651).
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
                         $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
                         $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
                         $<$<BOOL:${TESMAR_WARNINGS_AS_ERRORS}>:-Werror>)
endfunction()
