# orvo_test(<name> [LABEL unit|gui|camera|endtoend|slow] [DISPLAY] [NETWORK] [UDEV] [TIMEOUT seconds]
#           [SOURCES extra.cpp ...] [LIBS target ...] [ENV NAME=value ...])
#
# One QtTest executable made from <name>.cpp, run by CTest with a home, configuration and cache of
# its own. Without DISPLAY it runs on Qt's offscreen platform; with DISPLAY on a virtual X server
# with a window manager. With NETWORK it has a network of its own, out of which nothing gets. With
# UDEV it can make devices that only it sees.

find_package(Qt5 5.15 REQUIRED COMPONENTS Test)

set(ORVO_TEST_ISOLATED "${PROJECT_SOURCE_DIR}/tests/support/isolated.sh")
set(ORVO_TEST_DISPLAY "${PROJECT_SOURCE_DIR}/tests/support/with-display.sh")
set(ORVO_TEST_NETWORK "${PROJECT_SOURCE_DIR}/tests/support/private-network.sh")
set(ORVO_TEST_UDEV "${PROJECT_SOURCE_DIR}/tests/support/with-udev-testbed.sh")

# What sanitizers find in foreign libraries is left out; other builds do not read these. Pictures
# that are freed do not wait in the quarantine, since some tests measure the memory.
set(ORVO_TEST_SANITIZERS
  "ASAN_OPTIONS=quarantine_size_mb=8:thread_local_quarantine_size_kb=64"
  "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0"
  "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp"
  "UBSAN_OPTIONS=print_stacktrace=1")

# Sanitized programs take several times as long.
set(ORVO_TEST_SANITIZER_SLOWNESS 4)

function(orvo_test name)
  cmake_parse_arguments(ARG "DISPLAY;NETWORK;UDEV" "LABEL;TIMEOUT" "SOURCES;LIBS;ENV" ${ARGN})
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  if(ORVO_SANITIZE)
    math(EXPR ARG_TIMEOUT "${ARG_TIMEOUT} * ${ORVO_TEST_SANITIZER_SLOWNESS}")
  endif()

  add_executable(${name} ${name}.cpp ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE orvo::options orvo::testsupport Qt5::Test ${ARG_LIBS})

  set(runner "${ORVO_TEST_ISOLATED}")
  set(platform offscreen)
  if(ARG_DISPLAY)
    list(APPEND runner "${ORVO_TEST_DISPLAY}")
    set(platform xcb)
  endif()
  if(ARG_NETWORK)
    list(APPEND runner "${ORVO_TEST_NETWORK}")
  endif()
  if(ARG_UDEV)
    list(APPEND runner "${ORVO_TEST_UDEV}")
  endif()
  add_test(NAME ${name} COMMAND ${runner} $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES
    LABELS ${ARG_LABEL}
    TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=${platform};LC_ALL=C.UTF-8;QT_LOGGING_RULES=;${ORVO_TEST_SANITIZERS};${ARG_ENV}")
endfunction()
