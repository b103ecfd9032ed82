# The grading engine, and playback of the whole program beside ffmpeg.
if(NOT KXUI_BUILD_WORKBENCH)
  return()
endif()
set(workbench "${PROJECT_SOURCE_DIR}/workbench")
kxui_room_bench(workbench
  SOURCES workbench.cpp workbench_play.cpp
    "${workbench}/grade/Grade.cpp" "${workbench}/grade/PreparedGrade.cpp"
    "${workbench}/media/DisplayTable.cpp" "${workbench}/media/Histogram.cpp"
    "${workbench}/sample/SampleFrame.cpp"
  LIBS PkgConfig::OpenImageIO PkgConfig::Imath)
target_include_directories(bench_workbench PRIVATE "${workbench}")
target_compile_definitions(bench_workbench PRIVATE
  "KXUI_WORKBENCH_TOOL=\"$<TARGET_FILE:kxui-workbench-tool>\"")
add_dependencies(bench_workbench kxui-workbench-tool)
