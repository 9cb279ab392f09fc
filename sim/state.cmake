# Cameras that several processes share.
add_library(kelvo_state STATIC
  state/attachment.cpp
  state/bus_key.cpp
  state/byte_lock.cpp
  state/directory.cpp
  state/folder.cpp
  state/futex.cpp
  state/make.cpp
  state/object.cpp
  state/pacing.cpp
  state/shared_camera.cpp
  state/shared_settings.cpp
  state/sleepers.cpp
  state/storage.cpp
  state/undo.cpp)
target_compile_options(kelvo_state PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fvisibility=hidden> ${kelvo_false_alarms})
target_link_libraries(kelvo_state
  PUBLIC kelvo_camera kelvo_fault kelvo_trace PRIVATE kelvo_options INTERFACE rt)
