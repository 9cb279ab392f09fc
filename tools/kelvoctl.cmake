# The camera at a prompt. It runs on the camera too, where nothing of C++ is installed.
add_executable(kelvoctl
  kelvoctl/boot.cpp
  kelvoctl/commands.cpp
  kelvoctl/doctor.cpp
  kelvoctl/doctor_checks.cpp
  kelvoctl/i2c.cpp
  kelvoctl/main.cpp
  kelvoctl/raw.cpp
  kelvoctl/simulation.cpp
  kelvoctl/status.cpp
  kelvoctl/common/bus_lock.cpp
  kelvoctl/common/child.cpp
  kelvoctl/common/columns.cpp
  kelvoctl/common/command_table.cpp
  kelvoctl/common/exit_code.cpp
  kelvoctl/common/file_content.cpp
  kelvoctl/common/lens_names.cpp
  kelvoctl/common/library_output.cpp
  kelvoctl/common/numbers.cpp
  kelvoctl/common/options.cpp
  kelvoctl/common/printable.cpp
  kelvoctl/common/results.cpp
  kelvoctl/common/session.cpp
  kelvoctl/common/signals.cpp
  kelvoctl/common/words.cpp
  kelvoctl/head/head.cpp
  kelvoctl/head/head_axis.cpp
  kelvoctl/head/head_limits.cpp
  kelvoctl/head/head_moves.cpp
  kelvoctl/head/head_settings.cpp
  kelvoctl/head/head_status.cpp
  kelvoctl/head/pan_tilt.cpp
  kelvoctl/head/pid.cpp
  kelvoctl/head/tuning.cpp
  kelvoctl/head/tuning_file.cpp
  kelvoctl/lens/adc.cpp
  kelvoctl/lens/attach.cpp
  kelvoctl/lens/boot_progress.cpp
  kelvoctl/lens/filter.cpp
  kelvoctl/lens/heater.cpp
  kelvoctl/lens/homing.cpp
  kelvoctl/lens/interrupters.cpp
  kelvoctl/lens/iris.cpp
  kelvoctl/lens/lens_status.cpp
  kelvoctl/lens/lens_use.cpp
  kelvoctl/lens/motor.cpp
  kelvoctl/lens/motor_table.cpp
  kelvoctl/lens/motors.cpp
  kelvoctl/lens/ois.cpp
  kelvoctl/lens/pt5111.cpp
  kelvoctl/prompt/history_file.cpp
  kelvoctl/prompt/line.cpp
  kelvoctl/prompt/offers.cpp
  kelvoctl/prompt/pause.cpp
  kelvoctl/prompt/plain_reader.cpp
  kelvoctl/prompt/run.cpp
  kelvoctl/prompt/shell.cpp
  kelvoctl/records/calibrate.cpp
  kelvoctl/records/calibration.cpp
  kelvoctl/records/iris_range.cpp
  kelvoctl/records/record.cpp
  kelvoctl/records/record_file.cpp)
target_compile_options(kelvoctl PRIVATE ${kelvo_false_alarms})
set_target_properties(kelvoctl PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
target_compile_definitions(kelvoctl PRIVATE KELVO_VERSION="${PROJECT_VERSION}")
target_link_libraries(kelvoctl PRIVATE kelvo kelvo_tools_launch kelvo_options)
if(CMAKE_CROSSCOMPILING)
  set(editing OFF)
else()
  set(editing ON)
endif()
option(KELVO_SHELL_EDITING "History and completion in the shell of kelvoctl" ${editing})
# Built in either case, so that it is checked.
add_library(kelvoctl_no_editor OBJECT kelvoctl/prompt/no_editor.cpp)
target_link_libraries(kelvoctl_no_editor PRIVATE kelvo_tools_launch kelvo_options)
if(KELVO_SHELL_EDITING)
  find_path(KELVO_LIBEDIT_FOLDER histedit.h)
  find_library(KELVO_LIBEDIT edit)
  if(NOT KELVO_LIBEDIT_FOLDER OR NOT KELVO_LIBEDIT)
    message(FATAL_ERROR "histedit.h is not found: install Debian's package libedit-dev, or set "
                        "KELVO_SHELL_EDITING to OFF.")
  endif()
  target_sources(kelvoctl PRIVATE kelvoctl/prompt/editor.cpp)
  target_link_libraries(kelvoctl PRIVATE ${KELVO_LIBEDIT})
else()
  target_link_libraries(kelvoctl PRIVATE kelvoctl_no_editor)
endif()
if(CMAKE_CROSSCOMPILING)
  target_link_options(kelvoctl PRIVATE -static-libstdc++ -static-libgcc -Wl,--as-needed)
endif()
add_dependencies(kelvoctl kelvo_sim)
