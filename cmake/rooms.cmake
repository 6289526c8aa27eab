# velgrove_room(NAME SOURCES files... USES targets...)
#
# A folder of src/ as a library. Its headers are included as "NAME/header.h", and only by targets that link it:
# the include path holds one link to this folder and nothing else, so that a wrong include doesn't build.
function(velgrove_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
  set(door ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${door})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${name} ${door}/${name} SYMBOLIC)

  add_library(velgrove_${name} STATIC)
  foreach(source ${ROOM_SOURCES})
    target_sources(velgrove_${name} PRIVATE ${CMAKE_SOURCE_DIR}/src/${name}/${source})
  endforeach()
  target_include_directories(velgrove_${name} PUBLIC ${door})
  target_link_libraries(velgrove_${name} PUBLIC ${ROOM_USES})
endfunction()
