kelvo_by_itself(
  kelvoctl/calibration.cpp
  kelvoctl/doctor_checks.cpp
  kelvoctl/head_moves.cpp
  kelvoctl/interrupters.cpp
  kelvoctl/iris.cpp
  kelvoctl/motor_table.cpp
  kelvoctl/offers.cpp
  kelvoctl/pid.cpp
  kelvoctl/pt5111.cpp
  kelvoctl/raw.cpp)

# The camera at a prompt. It runs on the camera too, where nothing of C++ is installed.
add_executable(kelvoctl
  kelvoctl/adc.cpp
  kelvoctl/attach.cpp
  kelvoctl/boot.cpp
  kelvoctl/boot_progress.cpp
  kelvoctl/calibrate.cpp
  kelvoctl/calibration.cpp
  kelvoctl/child.cpp
  kelvoctl/columns.cpp
  kelvoctl/command_table.cpp
  kelvoctl/commands.cpp
  kelvoctl/doctor.cpp
  kelvoctl/doctor_checks.cpp
  kelvoctl/exit_code.cpp
  kelvoctl/file_content.cpp
  kelvoctl/filter.cpp
  kelvoctl/head.cpp
  kelvoctl/head_axis.cpp
  kelvoctl/head_limits.cpp
  kelvoctl/head_moves.cpp
  kelvoctl/head_settings.cpp
  kelvoctl/head_status.cpp
  kelvoctl/heater.cpp
  kelvoctl/history_file.cpp
  kelvoctl/homing.cpp
  kelvoctl/interrupters.cpp
  kelvoctl/iris.cpp
  kelvoctl/i2c.cpp
  kelvoctl/lens_names.cpp
  kelvoctl/lens_status.cpp
  kelvoctl/lens_use.cpp
  kelvoctl/library_output.cpp
  kelvoctl/line.cpp
  kelvoctl/main.cpp
  kelvoctl/motor.cpp
  kelvoctl/motor_table.cpp
  kelvoctl/motors.cpp
  kelvoctl/numbers.cpp
  kelvoctl/offers.cpp
  kelvoctl/ois.cpp
  kelvoctl/options.cpp
  kelvoctl/pan_tilt.cpp
  kelvoctl/pause.cpp
  kelvoctl/pid.cpp
  kelvoctl/plain_reader.cpp
  kelvoctl/printable.cpp
  kelvoctl/pt5111.cpp
  kelvoctl/record.cpp
  kelvoctl/record_file.cpp
  kelvoctl/raw.cpp
  kelvoctl/results.cpp
  kelvoctl/run.cpp
  kelvoctl/session.cpp
  kelvoctl/shell.cpp
  kelvoctl/signals.cpp
  kelvoctl/simulation.cpp
  kelvoctl/status.cpp
  kelvoctl/tuning.cpp
  kelvoctl/tuning_file.cpp
  kelvoctl/words.cpp)
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
add_library(kelvoctl_no_editor OBJECT kelvoctl/no_editor.cpp)
target_link_libraries(kelvoctl_no_editor PRIVATE kelvo_tools_launch kelvo_options)
if(KELVO_SHELL_EDITING)
  find_path(KELVO_LIBEDIT_FOLDER histedit.h)
  find_library(KELVO_LIBEDIT edit)
  if(NOT KELVO_LIBEDIT_FOLDER OR NOT KELVO_LIBEDIT)
    message(FATAL_ERROR "histedit.h is not found: install Debian's package libedit-dev, or set "
                        "KELVO_SHELL_EDITING to OFF.")
  endif()
  target_sources(kelvoctl PRIVATE kelvoctl/editor.cpp)
  target_link_libraries(kelvoctl PRIVATE ${KELVO_LIBEDIT})
else()
  target_link_libraries(kelvoctl PRIVATE kelvoctl_no_editor)
endif()
if(CMAKE_CROSSCOMPILING)
  target_link_options(kelvoctl PRIVATE -static-libstdc++ -static-libgcc -Wl,--as-needed)
endif()
add_dependencies(kelvoctl kelvo_sim)
