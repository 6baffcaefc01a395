# cvl_room(NAME SOURCES ... USES ...): one folder of src/ as a library.
#
# A room links only the rooms that it names, all of them from its own floor or
# below, so an include that points up the house doesn't link.
function(cvl_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
  add_library(cvl_${name} STATIC ${ROOM_SOURCES})
  target_include_directories(cvl_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(cvl_${name} PUBLIC ${ROOM_USES} PRIVATE cvl_options)
endfunction()
