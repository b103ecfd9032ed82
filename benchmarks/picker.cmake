find_package(QtColorWidgets REQUIRED)
find_package(KF5WidgetsAddons REQUIRED)
kxui_room_bench(picker SOURCES picker.cpp picker_swatches.cpp LIBS QtColorWidgets KF5::WidgetsAddons)
# The peer's headers use what newer versions of Qt have left behind.
set_source_files_properties(picker.cpp picker_swatches.cpp
  PROPERTIES COMPILE_OPTIONS -UQT_DISABLE_DEPRECATED_BEFORE)
