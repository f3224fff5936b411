# The icon theme "light-blue". Each icon is drawn on a grid of 24 in scalable/ and once more on a
# grid of 16 in small/, where the other would blur.

set(icon_names
  about actions/media-playback-pause actions/media-playback-stop actions/media-record actions/snap
  add-new appearance cww-camera cww-close cww-lock cww-lock-on cww-pause cww-pause-on
  document-print document-save edit-undo excel file file-quit fullscreen gallery mea-angle
  mea-angle4 mea-annulus mea-arc mea-arrow mea-arrow-blue mea-arrow-green mea-arrow-red
  mea-arrow-white mea-circle mea-circle2 mea-circle3 mea-counter mea-crosshair mea-delete mea-drag
  mea-drag-on mea-line mea-linedistance mea-multipleperpendicular mea-parallel mea-perpendicular
  mea-polygon mea-polyline mea-rectange mea-scalebar mea-scalebar-on mea-select mea-select-on
  mea-text mea-twocircles mea-twocircles2 mea-twocircles3 measurement modify record-start
  record-stop save scale-bar settings snap tableview view-camera view-measure zoom-in zoom-out)

macro(theme_icon name)
  foreach(size IN ITEMS 16 24 32 48)
    set(svg "icons/light-blue/scalable/${name}.svg")
    if(size EQUAL 16)
      set(svg "icons/light-blue/small/${name}.svg")
    endif()
    math(EXPR size_twice "${size} * 2")
    resource_png("icons/light-blue/${size}x${size}/${name}.png" ${size} ${size} "${svg}")
    resource_png("icons/light-blue/${size}x${size}@2/${name}.png"
      ${size_twice} ${size_twice} "${svg}")
  endforeach()
  resource_file("icons/light-blue/scalable/${name}.svg"
    "${CMAKE_CURRENT_SOURCE_DIR}/icons/light-blue/scalable/${name}.svg")
endmacro()

foreach(icon IN LISTS icon_names)
  theme_icon("${icon}")
endforeach()

set(index "icons/light-blue/index.theme")
resource_file("${index}" "${CMAKE_CURRENT_SOURCE_DIR}/${index}")
list(APPEND plain_sources "${CMAKE_CURRENT_SOURCE_DIR}/${index}")
