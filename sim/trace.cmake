# What crosses the wires: kept in memory that processes share, and decoded.
add_library(kelvo_trace STATIC
  trace/boot_frame.cpp
  trace/decoder.cpp
  trace/event.cpp
  trace/head_request.cpp
  trace/lens_frame.cpp
  trace/motor_register.cpp
  trace/pt5111_word.cpp
  trace/recording.cpp
  trace/ring.cpp
  trace/situation.cpp
  trace/text.cpp)
target_include_directories(kelvo_trace PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_options(kelvo_trace PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fvisibility=hidden> ${kelvo_false_alarms})
target_link_libraries(kelvo_trace PRIVATE kelvo_options INTERFACE rt)
