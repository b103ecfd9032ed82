pkg_check_modules(MUPARSER REQUIRED IMPORTED_TARGET muparser)
kxui_room_bench(values SOURCES values.cpp values_sliders.cpp LIBS PkgConfig::MUPARSER)
