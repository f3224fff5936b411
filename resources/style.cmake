# The style sheet and the marks that it draws on controls.

set(style_marks
  arrow-down arrow-down-active arrow-down-disabled arrow-right arrow-right-active
  arrow-right-disabled arrow-up arrow-up-active arrow-up-disabled branch-closed
  branch-closed-active branch-closed-disabled branch-open branch-open-active branch-open-disabled
  checkbox-checked checkbox-checked-disabled checkbox-disabled checkbox-indeterminate
  checkbox-indeterminate-disabled checkbox-unchecked close close-active close-disabled radio-off
  radio-off-disabled radio-on radio-on-disabled size-grip)

set(style_files style.qss)
foreach(mark IN LISTS style_marks)
  list(APPEND style_files "${mark}.svg")
endforeach()
foreach(file IN LISTS style_files)
  resource_file("res/style/${file}" "${CMAKE_CURRENT_SOURCE_DIR}/style/${file}")
  list(APPEND plain_sources "${CMAKE_CURRENT_SOURCE_DIR}/style/${file}")
endforeach()
