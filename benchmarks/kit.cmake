find_package(KF5WidgetsAddons REQUIRED)
kxui_room_bench(kit SOURCES kit.cpp LIBS KF5::WidgetsAddons)
