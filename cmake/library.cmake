# The library. It ships as one shared object that needs libc alone, so it is linked by the C driver
# with every undefined symbol refused: any use of the C++ run-time library is a link error.

include(cmake/images.cmake)

add_library(kelvo_objects OBJECT
  bus/bus_lock.cpp
  bus/delay.cpp
  bus/boot_loader_link.cpp
  bus/program_link.cpp
  bus/reset_line.cpp
  bus/spi_device.cpp
  lens/boot/boot.cpp
  lens/boot/download.cpp
  lens/motors/command_block.cpp
  lens/motors/counters.cpp
  lens/motors/iris_and_filter.cpp
  lens/motors/motor_state.cpp
  lens/motors/motor_status.cpp
  lens/motors/photo_interrupters.cpp
  lens/motors/power_off.cpp
  lens/motors/pt5111.cpp
  lens/motors/register_move.cpp
  lens/motors/speed_table.cpp
  lens/motors/step_rates.cpp
  lens/motors/stepping.cpp
  lens/variant/variant.cpp
  ois/calibration/calibration_files.cpp
  ois/calibration/measuring.cpp
  ois/quality_check/quality_check.cpp
  ois/stabiliser/stabiliser.cpp
  pantilt/controller/axis.cpp
  pantilt/controller/current.cpp
  pantilt/controller/family.cpp
  pantilt/controller/limits.cpp
  pantilt/controller/position_scale.cpp
  pantilt/controller/queries.cpp
  pantilt/controller/set_up.cpp
  pantilt/controller/state_commands.cpp
  pantilt/link/i2c_link.cpp
  pantilt/motion/distance_rules.cpp
  pantilt/motion/moves.cpp
  pantilt/motion/pan_schedule.cpp
  pantilt/motion/register_sets.cpp
  pantilt/motion/tilt_schedule.cpp)
set_target_properties(kelvo_objects PROPERTIES UNITY_BUILD OFF)
target_include_directories(kelvo_objects
  PRIVATE ${PROJECT_SOURCE_DIR}
  PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
target_compile_options(kelvo_objects PRIVATE
  $<$<COMPILE_LANGUAGE:CXX>:
    -Wconversion -Wsign-conversion
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fvisibility=hidden
    -ffp-contract=off        # products and sums keep their own rounding on every machine
    -fno-math-errno
    -fno-stack-protector>)   # the stack guard of aarch64 lives in a second library
target_link_libraries(kelvo_objects PRIVATE $<BUILD_INTERFACE:kelvo_options>)
if(KELVO_COVERAGE)
  target_compile_options(kelvo_objects PRIVATE $<$<COMPILE_LANGUAGE:CXX>:--coverage -fno-inline -O0>)
endif()

add_library(kelvo_image_objects OBJECT ${KELVO_IMAGE_SOURCE})

# The version script is the list of what the library exports.
set(KELVO_EXPORTS ${PROJECT_SOURCE_DIR}/include/kelvo.map)

add_library(kelvo SHARED
  $<TARGET_OBJECTS:kelvo_objects>
  $<TARGET_OBJECTS:kelvo_image_objects>)
add_library(kelvo::kelvo ALIAS kelvo)
set_target_properties(kelvo PROPERTIES
  LINKER_LANGUAGE C
  LINK_DEPENDS ${KELVO_EXPORTS})
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")
target_include_directories(kelvo INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
target_link_options(kelvo PRIVATE
  -Wl,--version-script=${KELVO_EXPORTS}
  -Wl,-Bsymbolic-functions   # an application's own stop() is not called by a motor initialisation
  -Wl,--as-needed)
# The fused multiply-add, which is an instruction on the target: nothing is needed there.
target_link_libraries(kelvo PRIVATE m)
if(KELVO_COVERAGE)
  target_link_options(kelvo PRIVATE --coverage)
endif()
if(KELVO_SANITIZE)
  target_link_options(kelvo PRIVATE -fsanitize=${KELVO_SANITIZE})
else()
  target_link_options(kelvo PRIVATE -Wl,-z,defs)
endif()

# The same objects for tests of state that the shared object keeps to itself.
add_library(kelvo_static STATIC EXCLUDE_FROM_ALL
  $<TARGET_OBJECTS:kelvo_objects>
  $<TARGET_OBJECTS:kelvo_image_objects>)
target_include_directories(kelvo_static INTERFACE ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(kelvo_static INTERFACE m)
if(KELVO_COVERAGE)
  target_link_options(kelvo_static INTERFACE --coverage)
endif()
