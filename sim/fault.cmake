# Faults: their text, and which transfers they strike.
add_library(kelvo_fault STATIC
  fault/busy.cpp
  fault/fault.cpp
  fault/fault_table.cpp
  fault/names.cpp
  fault/parse.cpp
  fault/transfer.cpp
  fault/words.cpp)
target_include_directories(kelvo_fault PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_options(kelvo_fault PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fvisibility=hidden> ${kelvo_false_alarms})
target_link_libraries(kelvo_fault PRIVATE kelvo_options)
