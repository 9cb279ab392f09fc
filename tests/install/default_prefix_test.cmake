# Nobody names a prefix: the library goes where the bus lock's key is made from.
include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)

file(REMOVE_RECURSE ${stage})
run(${CMAKE_COMMAND} -S ${source} -B ${stage}/build -G ${generator}
    -D CMAKE_C_COMPILER=${compiler} -D CMAKE_CXX_COMPILER=${cxx_compiler}
    -D CMAKE_TOOLCHAIN_FILE=${toolchain}
    -D KELVO_BUILD_SIM=OFF -D KELVO_BUILD_EXAMPLES=OFF -D KELVO_BUILD_TESTS=OFF)
run(${CMAKE_COMMAND} --build ${stage}/build)
set(ENV{DESTDIR} ${stage}/tree)
run(${CMAKE_COMMAND} --install ${stage}/build --component library)
file(GLOB_RECURSE installed RELATIVE ${stage}/tree ${stage}/tree/*)
expect_equal("Installed files" "${installed}" "lib/libkelvo.so")

file(STRINGS ${source}/wire/paths.h key REGEX "\"/lib/libkelvo\\.so\"")
if(NOT key)
  message(FATAL_ERROR "the bus lock's key is not made from /lib/libkelvo.so any more")
endif()
