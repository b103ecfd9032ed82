find_package(Threads REQUIRED)
kxui_room_bench(progress SOURCES progress.cpp LIBS Threads::Threads)
