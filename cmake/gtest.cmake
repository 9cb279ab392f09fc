# GTest::gtest and GTest::gtest_main: the machine's own libraries, or built for the target when that is
# another one.

if(CMAKE_CROSSCOMPILING)
  set(KELVO_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's source")
  if(NOT EXISTS ${KELVO_GTEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "GoogleTest's source is not in ${KELVO_GTEST_SOURCE}: "
                        "install Debian's package googletest or set KELVO_GTEST_SOURCE.")
  endif()
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(${KELVO_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/gtest EXCLUDE_FROM_ALL SYSTEM)
  foreach(target gtest gtest_main)
    target_compile_options(${target} PRIVATE -w)
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "" EXPORT_COMPILE_COMMANDS OFF)
  endforeach()
else()
  find_package(GTest REQUIRED)
endif()

# Most of a test's build time is this header.
if(TARGET gtest_main)
  set(kelvo_gtest_main gtest_main)  # a target that is built here has the other name as an alias
else()
  set(kelvo_gtest_main GTest::gtest_main)
endif()
set_property(TARGET ${kelvo_gtest_main} PROPERTY
  INTERFACE_PRECOMPILE_HEADERS "$<$<COMPILE_LANGUAGE:CXX>:<gtest/gtest.h$<ANGLE-R>>")
