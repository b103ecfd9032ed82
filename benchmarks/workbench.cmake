# Only what needs no image files: the grading engine.
set(workbench "${PROJECT_SOURCE_DIR}/workbench")
kxui_room_bench(workbench
  SOURCES workbench.cpp
    "${workbench}/grade/Grade.cpp" "${workbench}/grade/PreparedGrade.cpp"
    "${workbench}/media/DisplayTable.cpp" "${workbench}/media/Histogram.cpp")
target_include_directories(bench_workbench PRIVATE "${workbench}")
