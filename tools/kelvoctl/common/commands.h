// The commands. Each file adds its own to the table, with their options and what they do.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_COMMANDS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_COMMANDS_H

namespace kelvo::ctl {

class CommandTable;

void add_boot(CommandTable& table);
void add_attach(CommandTable& table);
void add_status(CommandTable& table);
void add_doctor(CommandTable& table);
void add_motors(CommandTable& table);
void add_iris(CommandTable& table);
void add_iris_range(CommandTable& table);
void add_filter(CommandTable& table);
void add_heater(CommandTable& table);
void add_adc(CommandTable& table);
void add_interrupters(CommandTable& table);
void add_pt5111(CommandTable& table);
void add_stabiliser(CommandTable& table);
void add_calibrate(CommandTable& table);
void add_calibration(CommandTable& table);
void add_pan_tilt(CommandTable& table);
void add_pid(CommandTable& table);
void add_head(CommandTable& table);
void add_raw(CommandTable& table);
void add_frame(CommandTable& table);
void add_i2c(CommandTable& table);
void add_run(CommandTable& table);
void add_sleep(CommandTable& table);
void add_shell(CommandTable& table);

/// All of them, in the order of help.
void add_commands(CommandTable& table);

}  // namespace kelvo::ctl

#endif
