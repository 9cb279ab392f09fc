/**
 * The stabiliser (DE015) and the iris loop (DF033, T5391): calibration records, run-time controls
 * and the factory's quality checks.
 *
 * The conventions at the top of kelvo.h hold for all of it. A record is a small binary file of
 * 32-bit numbers in the processor's byte order, each a 16-bit value; docs/wire.md lists the fields.
 * A quality check writes it, and a boot reads it: a file that opens but is short, empty or cannot
 * be read is not noticed, and what is missing counts as 0.
 */
#ifndef KELVO_OIS_H
#define KELVO_OIS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* ---- Calibration records --------------------------------------------------------------------- */

/**
 * Send the iris calibration to the lens controller, and read it back.
 *
 * The record is /bin/DC_S_Cali.dat, 24 bytes. Without it, T5391 takes /bin/DC_S_Cali_T5391.dat, and
 * any other module keeps its program's own values: nothing is sent. Init30516_DF033() and
 * Init30516_T5391() call this; how it ended shows in the latch and in the printed lines only.
 *
 * Sends: commands 0x21, 0x51, 0x53, 0x57, 0x58, each with 0, 0, value high, value low; then the
 *        queries 0xA1, 0xD1, 0xD3, 0xC5, 0xC6, 0x98 with argument 0. The record's last value is not
 *        sent.
 * Prints: "Load default DC Calibration" when the T5391 record is tried, found or not; one line for
 *         each query with its four reply bytes.
 */
void Load_DC(void);

/**
 * Send the stabiliser calibration to the lens controller.
 *
 * The record is /bin/OIS_S_Cali.dat, 60 bytes. Init30516() calls this and ignores the result:
 * without the file the program keeps its own values. The four noise values of the record are not
 * sent, and nothing is read back.
 *
 * @return 0: the file was there, whatever became of its values; -1: it cannot be opened, nothing
 *         sent
 *
 * Sends: commands 0x21, 0x51, 0x53, 0x57, 0x58, 0x63, 0x52, 0x54, 0x59, 0x5A, 0x65, each with 0, 0,
 *        value high, value low.
 */
int32_t Load_QC(void);

/**
 * Read the travel of the iris from its calibration record.
 *
 * The record is /bin/DC_S_Cali.dat; the default record of T5391 is never used. On T5391 the stream
 * is left open, so each call there costs the process one descriptor; callers should ask once.
 *
 * @param[out] max  travel maximum, as it stands in the file; untouched when the result is -1
 * @param[out] min  travel minimum, likewise
 * @return 0: read; -1: the file cannot be opened
 */
int32_t Get_DC_Range(uint32_t *max, uint32_t *min);

/* ---- Stabiliser ---------------------------------------------------------------------------------
 *
 * Run-time controls of the controller's program. Each is one frame unless its comment says more,
 * sent on every module code unless "Serves" says otherwise. Units and ranges of gains, ranges, coma
 * and sensor values belong to the program: the library passes them through.
 *
 * Setters return 0 whether or not anything was sent. Readers return what was received, or 0: a
 * failure shows in GetLensType() and in the results of Get_HallX_Data() and Get_HallY_Data() alone.
 */

/**
 * Start or stop the stabiliser.
 *
 * A boot leaves it off. Either way the stabilisation range of both axes is set to 1 first, as
 * Set_XY_Definition(1) does, so a range of one's own has to be set again behind this.
 *
 * @param[in] on  0 stop; any other value start
 * @return 0, always
 *
 * Sends: command 107 with 0, 0, 0, 1; then command 2 (start) or 3 (stop) with zeros.
 */
int32_t OIS_En(int32_t on);

/**
 * Pause the stabiliser or let it go on.
 *
 * @param[in] pause  the program's pause setting, 0 to 255; the rest is lost without notice
 * @return 0, always
 *
 * Serves: DE015.
 * Sends: command 10 with 0, 0, 0, pause.
 */
int32_t OIS_Pause(uint32_t pause);

/**
 * Read the pause setting back.
 *
 * @return the setting, 32 bits; 0 when nothing was received, and for a module that is not served
 *
 * Serves: DE015.
 * Sends: query 0x8A with argument 0.
 */
uint32_t Read_OIS_Pause(void);

/**
 * Set the gyro gain of an axis.
 *
 * @param[in] gain  32 bits
 * @return 0, always
 *
 * Sends: command 104 (X) or 105 (Y) with the four bytes of `gain`, the highest first.
 */
int32_t Set_X_GyroGain(int32_t gain);
int32_t Set_Y_GyroGain(int32_t gain);

/**
 * Read the gyro gain of an axis back.
 *
 * @return the gain, 32 bits; 0 when nothing was received
 *
 * Sends: query 0xE8 (X) or 0xE9 (Y) with argument 0.
 */
uint32_t Read_X_GyroGain(void);
uint32_t Read_Y_GyroGain(void);

/**
 * Set the stabilisation range of both axes or of one.
 *
 * OIS_En() sets that of both axes to 1.
 *
 * @param[in] value  0 to 255; the rest is lost without notice
 * @return 0, always
 *
 * Sends: command 107 (both), 108 (X) or 109 (Y) with 0, 0, 0, value.
 */
int32_t Set_XY_Definition(uint32_t value);
int32_t Set_X_Definition(uint32_t value);
int32_t Set_Y_Definition(uint32_t value);

/**
 * Read the gyro values of both axes.
 *
 * @param[out] x  0 to 65535, reply bytes 0 and 1; 0 when nothing was received
 * @param[out] y  0 to 65535, reply bytes 2 and 3; likewise
 * @return 0, always
 *
 * Sends: query 0xF7 with argument 0.
 */
int32_t Get_XY_Data(uint32_t *x, uint32_t *y);

/**
 * Read the Hall values of both axes.
 *
 * @param[out] x  0 to 65535, reply bytes 0 and 1; 0 when nothing was received
 * @param[out] y  0 to 65535, reply bytes 2 and 3; likewise
 * @return what `y` is set to: no status
 *
 * Sends: query 0xF2 with argument 0.
 */
uint32_t Get_HallXY_Data(uint32_t *x, uint32_t *y);

/**
 * Read the Hall value of one axis.
 *
 * @param[out] x  the value, here and in `y` 0 to 65535, reply bytes 2 and 3; 0 when nothing was
 *                received
 * @return status of the query: 0 received; else as RecvCommand()
 *
 * Sends: query 0xF3 (X) or 0xF4 (Y) with argument 0.
 */
uint8_t Get_HallX_Data(uint32_t *x);
uint8_t Get_HallY_Data(uint32_t *y);

/**
 * Set the mode of the controller's loop.
 *
 * @param[in] mode  0 normal, as after a boot; 1 calibration, as in a quality check; the low byte is
 *                  sent
 * @return 0, always
 *
 * Sends: command 5 with 0, 0, 0, mode.
 */
int32_t Set_Mode(uint32_t mode);

/**
 * Set the coma, by which Stationary_detection() chooses its mode.
 *
 * @param[in] value  0 to 255; the rest is lost without notice
 * @return 0, always
 *
 * Sends: command 34 with 0, 0, 0, value.
 */
int32_t Set_Coma(uint32_t value);

/**
 * Read the coma setting back.
 *
 * @return the setting, 32 bits; 0 when nothing was received
 *
 * Sends: query 0xA2 with argument 0.
 */
uint32_t Read_Coma(void);

/**
 * Switch stationary detection.
 *
 * What is switched on follows the coma setting at this moment: mode 2 for coma 0, 3 for coma 5, 4
 * for any other. Set_Coma() afterwards does not change it.
 *
 * @param[in] on  0 off; any other value on
 * @return 0, always
 *
 * Sends: off: command 17 with zeros. On: query 0xA2 with argument 0, then command 17 with 0, 0, 0,
 *        mode.
 */
int32_t Stationary_detection(uint32_t on);

/**
 * Read the mode of stationary detection back.
 *
 * On DF033 and T5391 this is the same frame as GetFocusOffset()'s.
 *
 * @return the mode, 32 bits; 0 when nothing was received
 *
 * Sends: query 0x91 with argument 0.
 */
uint32_t Read_Stationary_detection(void);

/**
 * Set the limit up to which the gyro counts as stable.
 *
 * @param[in] value  16 bits; the sign has no meaning, and the rest is lost without notice
 * @return 0, always
 *
 * Sends: command 18 with 0, 0, value high, value low.
 */
int32_t Gyro_stability(int32_t value);

/**
 * Read the limit of gyro stability back.
 *
 * @return the limit, 32 bits; 0 when nothing was received
 *
 * Sends: query 0x92 with argument 0.
 */
uint32_t Read_Gyro_stability(void);

/**
 * Tell whether the gyro is stable.
 *
 * @return the program's flag, 32 bits; 0 when nothing was received
 *
 * Sends: query 0xF9 with argument 0.
 */
uint32_t Get_gyro_stable_flag(void);

/* ---- Quality checks -----------------------------------------------------------------------------
 *
 * Factory procedures: the controller measures a fitted unit, and the results become its calibration
 * record. A check boots the controller for the measurement and once more, normally, at the end, so
 * whatever the outcome the camera runs afterwards, with gi30516Ver set and the latch as that boot
 * left it. Nobody else should use the controller meanwhile.
 *
 * The first of the boots does not clear the latch. In a process in which neither a boot nor
 * SetLensType() has run, or after a failed frame, nothing is measured: see GetLensType() first.
 *
 * The record goes to /mnt/nand, /tmp and /bin, in this order, each file truncated, written,
 * synchronised (FileSync()) and closed. A file that cannot be opened or written is passed over
 * without a word. Only the one in /bin is read by a boot.
 *
 * A query that fails counts as zeros, and so do all behind it. When the state was asked for, the
 * measurement counts as not finished; later, as a unit without errors, and the record consists of
 * zeros from there on. The printed replies show it.
 */

/**
 * Calibrate the iris loop of a DF033 unit, and write its record.
 *
 * The state is asked for once a second until it is 4, for ever if need be: there is no time-out,
 * and with the latch set the check never ends. The six values are read, and the record is written,
 * only when the unit has no error.
 *
 * @return the error byte of the unit, reply byte 3 of query 0x82: 0 passed, 1 to 255 failed
 *
 * Blocks: InitDC_K(), 1 s for each time that the state is asked for, Init30516_DF033().
 * Serves: DF033, whatever gi30516Ver is; it is 8 afterwards.
 * Sends: InitDC_K(); commands 4 and 5, each with 0, 0, 0, 1; query 0x80 each second; query 0x82;
 *        without an error 0xA1, 0xD1, 0xD3, 0xC5, 0xC6, 0x98, all with argument 0;
 *        Init30516_DF033().
 * Prints: "State:" and the four reply bytes in decimal, each second; "Error Code:" and one line for
 *         each value with its four reply bytes; the lines of the boots.
 */
int32_t DC_Quality_Check(void);

/**
 * Calibrate the stabiliser of a DE015 unit, and write its record.
 *
 * The state is asked for once a second, 40 times at most: 4 is finished, and 0 means that the
 * calibration does not run, which ends the check at once. The fifteen values are read and the
 * record is written whatever the error code is, unlike in DC_Quality_Check(); callers that do not
 * want the record of a failed unit remove it. The stabiliser is off afterwards.
 *
 * @return 0 passed; 1 to 255 the error code of the unit, reply bytes 2 and 3 of query 0x82 OR-ed;
 *         -1: the calibration did not run or was not finished in 40 s, and no file is touched
 *
 * Blocks: InitOIS_K(), 1 s for each time that the state is asked for, Init30516().
 * Serves: DE015, whatever gi30516Ver is; it is 7 afterwards.
 * Sends: InitOIS_K(); commands 4 and 5, each with 0, 0, 0, 1; command 18 with 0, 0, 0, 171; query
 *        0x92; query 0x80 each second; query 0x82; 0xA1, 0xD1, 0xD3, 0xD7, 0xD8, 0xE3, 0x96, 0x9A,
 *        0xD2, 0xD4, 0xD9, 0xDA, 0xE5, 0x97, 0x9B, all with argument 0; Init30516(); command 3 with
 *        zeros. With the result -1, what lies between the last 0x80 and Init30516() is left out.
 * Prints: "gyro_stability_spec 0x92:" and the four reply bytes; then as DC_Quality_Check().
 */
int32_t OIS_Quality_Check(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
