# cmake -P CheckFormat.cmake: fails, naming the lines, if a source is not formatted according to
# .clang-format. Only one version of clang-format is used, because versions format differently; if
# it is not installed, the check is skipped.
cmake_minimum_required(VERSION 3.25)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
find_program(clang_format clang-format-14)
if(NOT clang_format)
  message("Skipped: clang-format-14 is not installed.")
  return()
endif()
set(sources)
foreach(room api app bench client docs fuzz hotkey platform shortcut tests ucclient unixsocket)
  file(GLOB_RECURSE found
    ${root}/${room}/*.h ${root}/${room}/*.c ${root}/${room}/*.cpp ${root}/${room}/*.mm)
  list(APPEND sources ${found})
endforeach()
execute_process(
  COMMAND ${clang_format} --dry-run --Werror ${sources}
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "Not formatted; run clang-format-14 -i on the files named above.")
endif()
