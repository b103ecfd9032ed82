# The peer LTTng-UST records only while its session daemon runs; the benchmark starts one if it can.
pkg_check_modules(LTTNG_UST IMPORTED_TARGET lttng-ust)

kxui_room_bench(eventgraph SOURCES eventgraph.cpp)
if(LTTNG_UST_FOUND)
  target_sources(bench_eventgraph PRIVATE eventgraph_lttng.cpp eventgraph_lttng.h)
  target_link_libraries(bench_eventgraph PRIVATE PkgConfig::LTTNG_UST ${CMAKE_DL_LIBS})
  target_compile_definitions(bench_eventgraph PRIVATE KXUI_BENCH_LTTNG)
  # The macros of its headers are not written for the warnings of this tree.
  set_source_files_properties(eventgraph_lttng.cpp PROPERTIES COMPILE_OPTIONS "-w")
endif()
