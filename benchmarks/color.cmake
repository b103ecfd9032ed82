pkg_check_modules(SWSCALE REQUIRED IMPORTED_TARGET libswscale libavutil)
find_library(YUV_LIBRARY yuv REQUIRED)
kxui_room_bench(color SOURCES color.cpp colorwheel.cpp LIBS PkgConfig::SWSCALE ${YUV_LIBRARY})
