# The compile options of every target of our own: warnings, Qt hardening, sanitizers, link time
# optimisation. Targets take them by linking orvo::options privately.

option(ORVO_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(ORVO_LTO "Optimise at link time" OFF)
option(ORVO_COVERAGE "Instrument for coverage" OFF)
set(ORVO_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize= (empty for none)")

add_library(orvo_options INTERFACE)
add_library(orvo::options ALIAS orvo_options)

target_compile_options(orvo_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
if(ORVO_WARNINGS_AS_ERRORS)
  target_compile_options(orvo_options INTERFACE -Werror)
endif()

target_compile_definitions(orvo_options INTERFACE
  QT_DEPRECATED_WARNINGS
  QT_DISABLE_DEPRECATED_BEFORE=0x050f00
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_FOREACH
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_URL_CAST_FROM_STRING
  QT_USE_QSTRINGBUILDER)

if(ORVO_SANITIZE)
  target_compile_options(orvo_options INTERFACE
    -fsanitize=${ORVO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -O1)
  target_link_options(orvo_options INTERFACE -fsanitize=${ORVO_SANITIZE})
endif()
if(ORVO_COVERAGE)
  target_compile_options(orvo_options INTERFACE --coverage)
  target_link_options(orvo_options INTERFACE --coverage)
endif()
if(ORVO_LTO)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()
