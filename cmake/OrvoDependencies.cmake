# Everything that the program takes from outside, found once.

find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network Svg LinguistTools)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswscale)
if(NOT WIN32)
  pkg_check_modules(UDEV REQUIRED IMPORTED_TARGET libudev)
endif()
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)
# Its pkg-config file asks for that of libusb, whose package it does not pull in.
pkg_check_modules(ARAVIS REQUIRED IMPORTED_TARGET aravis-0.8)

# libyuv ships without a pkg-config file.
find_path(LIBYUV_INCLUDE_DIR libyuv.h REQUIRED)
find_library(LIBYUV_LIBRARY yuv REQUIRED)
add_library(libyuv INTERFACE)
target_include_directories(libyuv SYSTEM INTERFACE "${LIBYUV_INCLUDE_DIR}")
target_link_libraries(libyuv INTERFACE "${LIBYUV_LIBRARY}")
