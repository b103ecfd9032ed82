pkg_check_modules(AVFILTER REQUIRED IMPORTED_TARGET libavfilter libavutil)
pkg_check_modules(SCOPES_OIIO REQUIRED IMPORTED_TARGET OpenImageIO)
kxui_room_bench(scopes SOURCES scopes.cpp LIBS PkgConfig::AVFILTER PkgConfig::SCOPES_OIIO)
