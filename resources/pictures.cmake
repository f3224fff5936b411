# Pictures that the program asks for by path, the program's logo and the cursors.

set(theme "icons/light-blue/scalable")
resource_png_pair("images" "save" 24 24 "${theme}/document-save.svg")
resource_png_pair("images" "print" 24 24 "${theme}/document-print.svg")
resource_png_pair("images" "undo" 24 24 "${theme}/edit-undo.svg")
resource_png_pair("images" "close_btn_icon" 16 16 "pictures/titlebar-close.svg")
resource_png_pair("images" "record_indicator" 12 12 "pictures/record-indicator.svg")
foreach(pen IN ITEMS solidline dashline dotline dashdotline dashdotdotline)
  resource_png_pair("images" "penstyle_${pen}" 16 16 "pictures/penstyle-${pen}.svg")
endforeach()
resource_png_pair("images" "calibrate_instruction" 360 200 "pictures/calibrate-instruction.svg")

resource_png_pair("res/images" "menu_btn_icon" 16 16 "pictures/titlebar-menu.svg")
resource_png_pair("res/images" "min_btn_icon" 16 16 "pictures/titlebar-minimize.svg")
resource_png_pair("res/images" "max_btn_icon" 16 16 "pictures/titlebar-maximize.svg")
resource_png_pair("res/images" "restore_btn_icon" 16 16 "pictures/titlebar-restore.svg")
resource_png_pair("res/images" "close_btn_icon" 16 16 "pictures/titlebar-close.svg")

resource_png("res/cursors/cur_moveitem.png" 24 24 "cursors/move-item.svg")

resource_ico("res/logo.ico" "logo-small.svg" "logo.svg")
resource_file("oem/logo.ico" "${drawn}/res/logo.ico")
