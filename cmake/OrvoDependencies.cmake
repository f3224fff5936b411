# Everything that the program takes from outside, found once.

find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network Svg LinguistTools)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswscale)
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)

# libyuv ships without a pkg-config file.
find_path(LIBYUV_INCLUDE_DIR libyuv.h REQUIRED)
find_library(LIBYUV_LIBRARY yuv REQUIRED)
add_library(libyuv INTERFACE)
target_include_directories(libyuv SYSTEM INTERFACE "${LIBYUV_INCLUDE_DIR}")
target_link_libraries(libyuv INTERFACE "${LIBYUV_LIBRARY}")
