# skyrama_library(<name> [DEPS <targets>...] [INCLUDES <dirs>...] [EXCLUDE <files>...])
#   One static library per subsystem folder, made of every .cpp file in the calling
#   folder except the EXCLUDEd ones (new files are picked up at the next build without
#   editing CMake). A folder without sources yet gives an interface library.
function(skyrama_library name)
  cmake_parse_arguments(ARG "" "" "DEPS;INCLUDES;EXCLUDE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  foreach(excluded ${ARG_EXCLUDE})
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${excluded})
  endforeach()
  if(sources)
    add_library(${name} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_link_libraries(${name} ${scope} ${ARG_DEPS})
  if(ARG_INCLUDES)
    target_include_directories(${name} ${scope} ${ARG_INCLUDES})
  endif()
endfunction()

# skyrama_bench(<name> SOURCES <files>... [DEPS <targets>...])
function(skyrama_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} benchmark::benchmark)
  target_compile_definitions(${name} PRIVATE SKYRAMA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endfunction()

# skyrama_test(<name> SOURCES <files>... [DEPS <targets>...] [DISPLAY])
#   A GoogleTest executable registered with CTest. DISPLAY marks tests that open
#   windows: they carry the label "display", the test runner gives them an Xvfb, and they
#   run one at a time.
function(skyrama_test name)
  cmake_parse_arguments(ARG "DISPLAY" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} GTest::gtest GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE
    SKYRAMA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    SKYRAMA_BINARY_DIR="${PROJECT_BINARY_DIR}")
  set(labels nodisplay)
  if(ARG_DISPLAY)
    set(labels display)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES LABELS "${labels}" TIMEOUT 600
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
  if(ARG_DISPLAY)
    # Windows on one X server share the keyboard focus: display tests run one at a time
    # even under ctest -j, so that no test types into another's window.
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK x_display)
  endif()
endfunction()
