find_package(QtColorWidgets REQUIRED)
kxui_room_bench(picker SOURCES picker.cpp LIBS QtColorWidgets)
# The peer's headers use what newer versions of Qt have left behind.
set_source_files_properties(picker.cpp PROPERTIES COMPILE_OPTIONS -UQT_DISABLE_DEPRECATED_BEFORE)
