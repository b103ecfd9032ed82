pkg_check_modules(GSL REQUIRED IMPORTED_TARGET gsl)
kxui_room_bench(curves SOURCES curves.cpp LIBS PkgConfig::GSL)
