# The models of what hangs on the lens controller's program.
target_sources(kelvo_camera PRIVATE
  camera/calibration_run.cpp
  camera/counters.cpp
  camera/filter_coil.cpp
  camera/lens_summary.cpp
  camera/motor_states.cpp
  camera/program_values.cpp
  camera/sensors.cpp
  camera/stabiliser.cpp)
