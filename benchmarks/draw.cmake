kxui_room_bench(draw SOURCES draw.cpp)
