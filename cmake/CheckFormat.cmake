# cmake -P CheckFormat.cmake: fails, naming the lines, when a source is not formatted as
# .clang-format says.
cmake_minimum_required(VERSION 3.25)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(sources)
foreach(room api app bench docs hotkey platform shortcut tests ucclient unixsocket)
  file(GLOB_RECURSE found
    ${root}/${room}/*.h ${root}/${room}/*.c ${root}/${room}/*.cpp ${root}/${room}/*.mm)
  list(APPEND sources ${found})
endforeach()
execute_process(
  COMMAND clang-format-14 --dry-run --Werror ${sources}
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "Not formatted; run clang-format-14 -i on the files named above.")
endif()
