set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# What every target of the project is compiled with.
add_library(kelvo_options INTERFACE)
target_compile_options(kelvo_options INTERFACE
  $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wpedantic -Wshadow>
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>)
if(KELVO_WARNINGS_AS_ERRORS)
  target_compile_options(kelvo_options INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Werror>)
endif()
if(KELVO_SANITIZE)
  target_compile_options(kelvo_options INTERFACE
    $<$<COMPILE_LANGUAGE:C,CXX>:-fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all
      -fno-omit-frame-pointer>)
  target_link_options(kelvo_options INTERFACE -fsanitize=${KELVO_SANITIZE})
endif()

# The faster presets compile sources in batches, as one: a name that is local to a source is the only one of
# its kind in its program.
if(CMAKE_UNITY_BUILD)
  target_compile_options(kelvo_options INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Wno-shadow>)
endif()

# gcc 12 sees overruns inside std::string when it optimises highly; the sanitizers see the real ones.
# For programs that put text together; the library has no std::string.
set(kelvo_false_alarms
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-array-bounds -Wno-stringop-overflow -Wno-restrict>)
