# Every header compiles by itself and bears being included twice. What the program sees of the framework does so without
# the toolkit in reach; only headers named Native* may need it.

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets DBus Multimedia Test)
find_package(GTest REQUIRED)

function(ombrivel_headers_alone target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "HEADERS;LIBRARIES")
  if(NOT ARG_HEADERS)
    return()
  endif()
  set(sources)
  foreach(HEADER IN LISTS ARG_HEADERS)
    set(source ${CMAKE_BINARY_DIR}/headers_alone/${HEADER}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "#include \"@HEADER@\"\n#include \"@HEADER@\"\n" @ONLY)
    list(APPEND sources ${source})
  endforeach()
  add_library(${target} OBJECT EXCLUDE_FROM_ALL ${sources})
  target_compile_options(${target} PRIVATE -O0 -g0)
  target_link_libraries(${target} PRIVATE ombrivel_options ${ARG_LIBRARIES})
  add_dependencies(headers_alone ${target})
endfunction()

file(GLOB_RECURSE headers RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  framework/*.h core/*.h engine/*.h settings/*.h ui/*.h update/*.h)
set(native_headers ${headers})
list(FILTER headers EXCLUDE REGEX "/Native[^/]*$")
list(FILTER native_headers INCLUDE REGEX "/Native[^/]*$")
file(GLOB_RECURSE test_headers RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS tests/*.h bench/*.h fuzz/*.h)

set(toolkit Qt6::Core Qt6::Gui Qt6::Widgets Qt6::DBus Qt6::Multimedia Qt6::Test)
add_custom_target(headers_alone)
ombrivel_headers_alone(headers_alone_plain HEADERS ${headers})
ombrivel_headers_alone(headers_alone_native HEADERS ${native_headers} LIBRARIES ${toolkit})
ombrivel_headers_alone(headers_alone_tests HEADERS ${test_headers} LIBRARIES ${toolkit} GTest::gtest program_places)

# All in one source: checks of headers need not read what they include once for each of them.
set(together ${native_headers} ${headers} ${test_headers})
list(TRANSFORM together REPLACE "(.+)" "#include \"\\1\"\n")
list(JOIN together "" together)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/headers_together.cpp CONTENT "${together}" @ONLY)
add_library(headers_together OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/headers_together.cpp)
target_link_libraries(headers_together PRIVATE ombrivel_options ${toolkit} GTest::gtest program_places)
