# Every source of a room is built: nothing is listed by hand, so nothing can be forgotten.
foreach(room IN ITEMS contextdata syntax embedded frontend tools)
  file(GLOB_RECURSE ${room}Sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${room}/*.cpp)
  if(NOT ${room}Sources)
    message(FATAL_ERROR "${room}/ has no sources")
  endif()
endforeach()

# What the include rules are checked on.
set(everySource "")
foreach(room IN ITEMS host syntax embedded include contextdata frontend tools tests examples)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/${room}/*.h ${PROJECT_SOURCE_DIR}/${room}/*.cpp ${PROJECT_SOURCE_DIR}/${room}/*.def)
  list(APPEND everySource ${found})
endforeach()
