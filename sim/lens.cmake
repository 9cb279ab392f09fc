# The models of the lens side: the controller, its programs, and what hangs on them.
target_sources(kelvo_camera PRIVATE
  lens/boot_loader.cpp
  lens/boot_log.cpp
  lens/calibration_run.cpp
  lens/command_motor.cpp
  lens/counters.cpp
  lens/dc_iris.cpp
  lens/filter_coil.cpp
  lens/lens_controller.cpp
  lens/lens_program.cpp
  lens/lens_summary.cpp
  lens/motor_block.cpp
  lens/motor_states.cpp
  lens/payload.cpp
  lens/program_values.cpp
  lens/pt5111.cpp
  lens/reset_line.cpp
  lens/sensors.cpp
  lens/stabiliser.cpp
  lens/stepper.cpp)
