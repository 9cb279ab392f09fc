#include "tools/kelvoctl/common/commands.h"

namespace kelvo::ctl {

void add_commands(CommandTable& table) {
  add_boot(table);
  add_attach(table);
  add_status(table);
  add_motors(table);
  add_iris(table);
  add_iris_range(table);
  add_filter(table);
  add_heater(table);
  add_adc(table);
  add_interrupters(table);
  add_pt5111(table);
  add_stabiliser(table);
  add_calibrate(table);
  add_calibration(table);
  add_pan_tilt(table);
  add_pid(table);
  add_head(table);
  add_raw(table);
  add_frame(table);
  add_i2c(table);
  add_run(table);
  add_sleep(table);
  add_shell(table);
  add_doctor(table);
}

}  // namespace kelvo::ctl
