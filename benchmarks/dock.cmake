find_package(qtadvanceddocking REQUIRED)
kxui_room_bench(dock SOURCES dock.cpp LIBS ads::qtadvanceddocking)
# As a system folder: its headers are not written for the warnings of this tree.
target_include_directories(bench_dock SYSTEM PRIVATE /usr/include/qtadvanceddocking)
