pkg_check_modules(LTC REQUIRED IMPORTED_TARGET ltc)
pkg_check_modules(AVUTIL REQUIRED IMPORTED_TARGET libavutil)

kxui_room_bench(base
  SOURCES base.cpp
  LIBS PkgConfig::LTC PkgConfig::AVUTIL)
