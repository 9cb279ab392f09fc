#ifndef KELVO_WIRE_PATHS_H
#define KELVO_WIRE_PATHS_H

namespace kelvo::wire {

// Device nodes.
inline constexpr char lens_controller_device[] = "/dev/spi_renesas";
inline constexpr char pt5111_device[]          = "/dev/spi_pt5111";
inline constexpr char pan_tilt_device[]        = "/dev/i2c-2";

/// The bus lock's key is made from this file, the installed library itself.
inline constexpr char lock_key_path[] = "/lib/libkelvo.so";
inline constexpr int lock_key_project = 0;

// The lens controller's reset line, GPIO 33, low = reset.
inline constexpr char reset_line_export[]  = "echo 33 > /sys/class/gpio/export";
inline constexpr char reset_line_output[]  = "echo \"out\" > /sys/class/gpio/gpio33/direction";
inline constexpr char reset_line_assert[]  = "echo 0 > /sys/class/gpio/gpio33/value";
inline constexpr char reset_line_release[] = "echo 1 > /sys/class/gpio/gpio33/value";

// Calibration records.
inline constexpr char iris_record[]         = "/bin/DC_S_Cali.dat";
inline constexpr char iris_default_record[] = "/bin/DC_S_Cali_T5391.dat";
inline constexpr char stabiliser_record[]   = "/bin/OIS_S_Cali.dat";

// Where a quality check writes a record, in this order. The last is the one that is read at boot.
inline constexpr const char* iris_record_copies[] = {
    "/mnt/nand/DC_S_Cali.dat",
    "/tmp/DC_S_Cali.dat",
    iris_record,
};
inline constexpr const char* stabiliser_record_copies[] = {
    "/mnt/nand/OIS_S_Cali.dat",
    "/tmp/OIS_S_Cali.dat",
    stabiliser_record,
};

/// A record that is replaced whole is written beside its place, under its name and this.
inline constexpr char record_part[] = ".new";

}  // namespace kelvo::wire

#endif
