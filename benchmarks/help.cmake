kxui_room_bench(help SOURCES help.cpp)

# The servers run as processes of their own, so that their CPU time can be told from the load's.
add_executable(bench_help_ours help_ours.cpp)
target_link_libraries(bench_help_ours PRIVATE kxui_objects Boost::regex kxui_build_flags)
add_executable(bench_help_epoll help_epoll.cpp)
target_link_libraries(bench_help_epoll PRIVATE kxui_build_flags)
add_dependencies(bench_help bench_help_ours bench_help_epoll)
