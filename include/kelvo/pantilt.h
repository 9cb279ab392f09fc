/**
 * The pan/tilt head: the I2C link, and the two motor controllers on it, their state, travel limits,
 * set-up, gains and moves.
 *
 * Slave address 40 pans, 41 tilts. The conventions at the top of kelvo.h hold for all of it. There
 * is no latch and no lock: the kernel takes requests of several processes one by one, and a
 * sequence of them is not protected. Nothing is retried or printed when a transfer fails. Registers
 * of more than one byte travel high byte first.
 */
#ifndef KELVO_PANTILT_H
#define KELVO_PANTILT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Descriptor of /dev/i2c-2; 0 at load, negative while closed.
 *
 * Written by Init_I2C() and Release_I2C(). Because it begins as 0, a transfer before the first
 * Init_I2C() is a request on descriptor 0, the process's standard input, and fails there as a rule.
 */
extern int32_t hndl;

/**
 * Open the I2C device.
 *
 * Each lens module's boot calls it; an application that only pans and tilts calls it first. A
 * device that is open already is opened once more, and the descriptor held before is not closed:
 * call Release_I2C() first.
 *
 * @return 0: hndl is open; -1: /dev/i2c-2 cannot be opened for reading and writing, and hndl is -1
 *
 * Prints: "open /dev/i2c-2 error" on standard output when it fails.
 */
int32_t Init_I2C(void);

/**
 * Close the I2C device if it is open, and set hndl to -1.
 *
 * Descriptor 0 is never closed.
 *
 * @return 0, always
 */
int32_t Release_I2C(void);

/**
 * Write a register of a controller: the register byte and the bytes behind it in one message.
 *
 * `length` is the length of the message and counts the register byte: 1 is a command without data,
 * 3 a 16-bit value, 5 a 32-bit one. With 0 the message is empty, and the register is not sent
 * either.
 *
 * @param[in] slave   7-bit address: 40 pan, 41 tilt
 * @param[in] reg     register, 0 to 255
 * @param[in] data    `length` - 1 bytes; may be null when `length` is 0 or 1
 * @param[in] length  bytes in the message, 0 to 256. More than 256 overruns a buffer of the
 *                    library: the caller is responsible.
 * @return 1 for success, the number of messages; -1: the device is not open, nobody answered at the
 *         address, the kernel refused, or there was no memory
 *
 * Blocks: 2 ms behind the transfer, a failed one too, when the controllers are known to be of the
 *         Vetra family.
 * Sends: address, reg, data.
 */
int32_t SendI2C(uint16_t slave, uint8_t reg, const uint8_t *data, uint32_t length);

/**
 * Read a register of a controller: the register byte out and bytes in, without a stop between them.
 *
 * @param[in]  slave   7-bit address: 40 pan, 41 tilt
 * @param[in]  reg     register, 0 to 255
 * @param[out] buffer  `length` bytes; zeros after a transfer that failed; untouched when the device
 *                     is not open or there was no memory. May be null when `length` is 0.
 * @param[in]  length  bytes to read, 0 to 256. Any other value can overrun a buffer of the library:
 *                     the caller is responsible.
 * @return 0 for success; -1: the device is not open, nobody answered at the address, or the kernel
 *         refused. 0 too, without a transfer, when there was no memory for the messages: a caller
 *         that clears its buffer first reads zeros then.
 *
 * Blocks: as SendI2C().
 * Sends: address, reg; reads behind a repeated start.
 */
int32_t ReadI2C(uint16_t slave, uint8_t reg, uint8_t *buffer, int32_t length);

/**
 * Read a register whose index has more than one byte.
 *
 * As ReadI2C(), with further bytes behind the register byte. Nothing in the library calls it.
 *
 * @param[in]  slave         7-bit address: 40 pan, 41 tilt
 * @param[in]  reg           first byte of the index
 * @param[in]  more          `write_length` - 1 further bytes; may be null when `write_length` is 0
 *                           or 1
 * @param[in]  write_length  bytes in the message out, 0 to 256, counting `reg` as SendI2C()'s
 *                           length does. More than 256 overruns a buffer of the library: the caller
 *                           is responsible.
 * @param[out] buffer        `read_length` bytes, as ReadI2C()'s
 * @param[in]  read_length   bytes to read, 0 to 256, as ReadI2C()'s
 * @return as ReadI2C()
 *
 * Blocks: as SendI2C().
 * Sends: address, reg, more; reads behind a repeated start.
 */
int32_t ReadI2C_M(uint16_t slave, uint8_t reg, const uint8_t *more, uint32_t write_length,
                  uint8_t *buffer, int32_t read_length);

/* ---- Controllers: family, position, state -------------------------------------------------------
 *
 * There are two families of controllers, Vetra and Tasmere, with registers of their own;
 * docs/wire.md lists them. From here on a "Serves" line names families: for the other one a
 * function sends nothing and returns 0, unless it says otherwise. A pan function talks to slave 40,
 * its tilt twin to slave 41.
 *
 * Every function below that depends on the family begins with GetMotorType(), so the first of them
 * that is called in a process detects it. The exceptions say so.
 *
 * Positions are on the common scale, 0 to 65535 for one full range, unless a comment names counts.
 * It is the Tasmere controllers' own. Vetra controllers count 18000 to the range, the other way
 * round, and tilt from a zero of its own: what comes and goes is converted, in single and double
 * precision as the comments say, cut toward zero, and held at the ends of the result's type.
 *
 * What became of a write is not passed on. A read that fails leaves zeros, which each function then
 * decodes as if they had been read; its comment says into what. "Sends" gives the register, and the
 * bytes behind it or the number that is read. On Vetra every transfer sleeps 2 ms (SendI2C()),
 * which "Blocks" leaves out.
 */

/**
 * What the tilt controller says of its Hall sensor: 1 the axis positions by it, 0 it does not; -1
 * not read yet, as at load.
 *
 * Written by GetTiltHallSetting() on Tasmere, with the byte as it is read. The tilt positions,
 * limits and moves of that family read it, and fill it first while it is -1. On Vetra it stays -1.
 * Of other bytes, the limits and TiltABSMove() take any but 0 for a sensor in use, GetTiltPos()
 * none but 1.
 */
extern int32_t giSerTiltUseHall;

/**
 * Tell the controllers' family, and detect it when this is the first call.
 *
 * The pan controller is asked for its signature, once per process; both axes are taken to be of the
 * family that it answers. A read that fails, as with a link that is not open yet, makes it Tasmere
 * for good: call Init_I2C() first. On Vetra the detection goes on with GetPanVersion() and
 * GetTiltVersion(), which set the full ranges to 18000 counts.
 *
 * @return 1 Vetra, 2 Tasmere
 *
 * Blocks: 2 ms when it detects a Vetra controller.
 * Sends: once, pan register 240, 2 bytes; "VX" is Vetra. Then on Vetra pan register 48, 1 byte.
 * Prints: once, "Motor Type[0]:" and "Type[1]:" with the two bytes.
 */
int32_t GetMotorType(void);

/**
 * Tell where an axis stands.
 *
 * GetPanPos() does not begin with GetMotorType(): before the family is known it takes the
 * controller for a Vetra one with 3600 counts to the range.
 *
 * On Vetra, with N the full range and c the count read, pan is (N - c) * 65535 / N + 0.5: count 0
 * is 65535, N is 0, and a count above N saturates at 0. Tilt is Vetra2Tasmere(c). On Tasmere the
 * position is what is read, except for a tilt axis whose giSerTiltUseHall is 1: there 27852 is
 * taken off, and 65535 added to what would be negative (27851 becomes 65534).
 *
 * @param[out] pos  0 to 65535. After a read that failed, on Vetra 65535 (pan) or 12742 (tilt), on
 *                  Tasmere 0, or 37683 for a tilt axis with its Hall sensor in use
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: register 50 (Vetra) or 4 (Tasmere), 2 bytes; GetTiltPos() on Tasmere GetTiltHallSetting()
 *        before, while giSerTiltUseHall is -1.
 */
int32_t GetPanPos(uint32_t *pos);
int32_t GetTiltPos(uint32_t *pos);

/**
 * Read a controller's firmware version.
 *
 * The twins differ. GetPanVersion() does not begin with GetMotorType(): before the family is known
 * it takes the controller for a Vetra one. GetTiltVersion() asks a Vetra controller nothing and
 * returns 0. On Vetra each sets the full range of its axis to 18000 counts.
 *
 * @return Vetra: pan 0 to 255, tilt 0. Tasmere: the last two of the four bytes OR-ed and shifted by
 *         eight, so the low byte is always 0 (01 02 03 04 becomes 0x0700). 0 after a read that
 *         failed.
 *
 * Serves: pan Vetra, Tasmere; tilt Tasmere.
 * Sends: register 48, 1 byte (Vetra pan), or 27, 4 bytes (Tasmere).
 */
int32_t GetPanVersion(void);
int32_t GetTiltVersion(void);

/**
 * Tell whether an axis is calibrated.
 *
 * @return 0 calibrated; -1 not, or the read failed
 *
 * Serves: Vetra, Tasmere.
 * Sends: register 49, 1 byte, whose low two bits are 2 (Vetra), or register 2, 1 byte, which is 1
 *        (Tasmere), when it is calibrated.
 */
int32_t PanGetCaliStatus(void);
int32_t TiltGetCaliStatus(void);

/**
 * Tell whether an axis positions by its Hall sensor.
 *
 * The twins differ: the tilt twin stores the byte in giSerTiltUseHall, each time that it is called
 * on Tasmere, and on Vetra it returns 1.
 *
 * @return Tasmere: 1 in use; 0 not, or the read failed. Vetra: pan 0, tilt 1.
 *
 * Serves: Tasmere.
 * Sends: register 79, 1 byte.
 */
int32_t GetPanHallSetting(void);
int32_t GetTiltHallSetting(void);

/**
 * Tell whether an axis is at rest.
 *
 * A Tasmere controller that sleeps, or cannot say whether it does, is at rest. So after failed
 * reads this is 0 on Tasmere and -1 on Vetra, where a wait for 0 does not end then.
 *
 * @return 0 at rest or asleep; -1 moving or not ready
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 49, 1 byte, whose bit 2 is set at rest; Tasmere register 48, 1 byte, and
 *        when that is 0 (awake), register 3, 1 byte, which is 0 at rest.
 */
int32_t GetPanStatus(void);
int32_t GetTiltStatus(void);

/**
 * Tell whether an axis sleeps.
 *
 * @return Tasmere: 0 awake, 1 to 255 asleep, -1 the read failed; Vetra: 0
 *
 * Serves: Tasmere.
 * Sends: register 48, 1 byte.
 */
int32_t GetPanSleepMode(void);
int32_t GetTiltSleepMode(void);

/**
 * Read a controller's program state.
 *
 * @return Tasmere: the state byte, 0 to 255, or -1 when the read failed; Vetra: 0
 *
 * Serves: Tasmere.
 * Sends: register 254, 1 byte.
 */
int32_t GetPanProgState(void);
int32_t GetTiltProgState(void);

/**
 * Read a controller's temperature.
 *
 * @return Tasmere: 0 to 65535, in the controller's unit, 0 when the read failed; Vetra: 0
 *
 * Serves: Tasmere.
 * Sends: register 155, 2 bytes.
 */
int32_t GetPanTemp(void);
int32_t GetTiltTemp(void);

/**
 * Convert a tilt count of a Vetra controller to the common scale.
 *
 * With R counts to the range (18000, but 3600 until a Vetra controller is detected): d = count -
 * 3500, plus R when negative; the result is (R - d) * 65535 / R, computed in double precision and
 * cut. Does not begin with GetMotorType().
 *
 * @param[in] count  0 to R - 1; from R + 3500 to 0x7FFFFFFF the result is 0
 * @return position, 0 to 65535: 3500 gives 65535, 3499 gives 3, 12500 gives 32767
 */
uint32_t Vetra2Tasmere(uint32_t count);

/**
 * Convert a tilt position of the common scale to a count of a Vetra controller.
 *
 * With R as above: y = pos * R, in single precision, / 65535 - 0.5, in double precision, rounded to
 * single; n = R - y, cut, plus 3500; the result is n below R, else n - R, once. Not the exact
 * inverse of Vetra2Tasmere(). Does not begin with GetMotorType().
 *
 * @param[in] pos  0 to 65535; other values are converted as they are, without a limit
 * @return count, 0 to R - 1: 0 and 65535 give 3500, 32768 gives 12500
 */
int32_t Tasmere2Vetra(int32_t pos);

/* ---- Travel limits ------------------------------------------------------------------------------
 *
 * The controllers enforce the limits themselves. Switching them on and setting them are separate
 * calls. The library neither clamps nor orders what it is given; for tilt moves it keeps a copy of
 * the last arguments of TiltLimitEn() and TiltLimit() (see TiltABSMove()), for pan none.
 */

/**
 * Set the step that a controller uses near a limit, by the speed of the move to come.
 *
 * @param[in] speed  up to 100 step 5; 101 to 400 step 15; from 401 on step 30
 * @return 0, always
 *
 * Serves: Vetra.
 * Sends: register 10 with 00, step.
 * Prints: "###Pan limit step ispeed:" or "###Tilt limit step ispeed:" with the speed, and "iStep:"
 *         with the step.
 */
int32_t PanLimitstep(int32_t speed);
int32_t TiltLimitstep(int32_t speed);

/**
 * Switch an axis's travel limits.
 *
 * The tilt twin keeps its argument for TiltABSMove(), whatever the family.
 *
 * @param[in] enable  1 on; 0 off. Any other value is off on Vetra, and on Tasmere mode 0, which is
 *                    neither.
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 4 with 01 or 00; Tasmere register 25 with 00 and 02 (on), 01 (off:
 *        continuous rotation) or 00.
 */
int32_t PanLimitEn(int32_t enable);
int32_t TiltLimitEn(int32_t enable);

/**
 * Set the travel limits of pan.
 *
 * On Vetra a position p becomes the count N - (p * N / 65535 - 0.5), with N counts to the range:
 * the product in single precision, quotient and difference in double, rounded to single and cut.
 *
 * @param[in] start  position, 0 to 65535
 * @param[in] end    position, 0 to 65535; below `start` the travel goes through 65535
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 5 with the counts of start and end; Tasmere register 18 with start, then 19
 *        with the length, end - start, plus 65535 when start is above end. Of each number the low
 *        16 bits.
 */
int32_t PanLimitSet(int32_t start, int32_t end);

/**
 * Set the travel limits of tilt, and keep them for TiltABSMove().
 *
 * On Vetra the limits go in the opposite order to pan's, end first, because the conversion turns
 * the direction. On Tasmere with a Hall sensor in use, each limit is moved by 27852, and 65535
 * taken off from 65535 on.
 *
 * @param[in] start  position, 0 to 65535
 * @param[in] end    position, 0 to 65535; below `start` the travel goes through 65535
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 5 with Tasmere2Vetra() of end and then of start. Tasmere
 *        GetTiltHallSetting() while giSerTiltUseHall is -1; register 18 with start, then 19 with
 *        the length as PanLimitSet(), of the limits as moved.
 * Prints: on Vetra "Limit S:" with end and its count, "E:" with start and its count.
 */
int32_t TiltLimit(uint32_t start, uint32_t end);

/**
 * Tell whether an axis's travel limits are on.
 *
 * @return Vetra: the byte read, 1 on; Tasmere: 1 on, 0 off. 0 after a read that failed.
 *
 * Serves: Vetra, Tasmere.
 * Sends: register 51, 1 byte (Vetra), or 26, 2 bytes, of which the second is 2 when they are on
 *        (Tasmere).
 */
int32_t GetPanLimitEn(void);
int32_t GetTiltLimitEn(void);

/**
 * Read the travel limits of an axis.
 *
 * On Vetra both are the controller's counts, not converted back, so they are not what was set. On
 * Tasmere the end is start plus length, without a wrap at 65535. The tilt twin differs there: with
 * a Hall sensor in use 27852 is taken off the start, which can become negative, stored modulo 2^32;
 * without one the length is read and ignored, and the end is the start.
 *
 * @param[out] start  position or count, 0 to 65535 but for the above; after reads that failed 0,
 *                    and -27852 modulo 2^32 for a Tasmere tilt axis with a Hall sensor
 * @param[out] end    likewise
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 52, 4 bytes. Tasmere registers 74 and 75, 2 bytes each, of tilt 4 bytes
 *        each; GetTiltLimitPos() before that GetTiltHallSetting() while giSerTiltUseHall is -1.
 * Prints: for tilt "Tilt istart:" and "iend:" with the two as signed numbers.
 */
int32_t GetPanLimitPos(uint32_t *start, uint32_t *end);
int32_t GetTiltLimitPos(uint32_t *start, uint32_t *end);

/* ---- Set-up and current ---------------------------------------------------------------------- */

/**
 * Restart a controller.
 *
 * What the library has last sent of gains stays in its memory, and it takes these for still in
 * force (Pan_Setup_PID()).
 *
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: register 34 (Vetra) or 1 (Tasmere) without data.
 */
int32_t PanReset(void);
int32_t TiltReset(void);

/**
 * Stop an axis.
 *
 * Gains stay as they are; Set_stop_PID() sets those for standing still.
 *
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: register 6 without data (Vetra) or 7 with 00 00 (Tasmere).
 */
int32_t PanStop(void);
int32_t TiltStop(void);

/**
 * Wake a controller from its sleep.
 *
 * The result is no measure of success: a wake-up that the controller has taken returns -1, because
 * SendI2C() has 1 for it, and one that failed -1 too. GetPanSleepMode() and GetTiltSleepMode()
 * tell. Callers rely on this, and do not take the -1 for an error.
 *
 * @return Tasmere: -1, woken or not; 0 only if the kernel reports that it transferred no message.
 *         Vetra: 0
 *
 * Serves: Tasmere.
 * Sends: an empty message; register 28 itself is not sent.
 */
int32_t SetPanWakeUp(void);
int32_t SetTiltWakeUp(void);

/**
 * Switch the turbo mode of a controller.
 *
 * SetPanCurrent(), SetTILTCurrent() and the set-up switch it on.
 *
 * @param[in] on  0 off; any other value on
 * @return 0, always
 *
 * Serves: Tasmere.
 * Sends: register 83 with 01 or 00.
 */
int32_t PanTurboMode(int32_t on);
int32_t TiltTurboMode(int32_t on);

/**
 * Set a motor's current (Vetra), or write one of two drive profiles (Tasmere).
 *
 * A profile is gains, drive parameters, maximum current and turbo mode on. Profile B of tilt has
 * lower gains and current than that of pan; the profiles A are equal. On Tasmere the gains of the
 * last move are overwritten, and the next one does not notice (iPanTASMERE_PID).
 *
 * @param[in] current  Vetra: 0 to 65535, in the controller's unit. Tasmere: 1 profile A; any other
 *                     value profile B
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 18 with `current`; Tasmere 14 registers, from 12 to 83; docs/wire.md lists
 *        them.
 * Prints: SetPanCurrent() on Vetra "Current :" with the value; the tilt twin nothing.
 */
int32_t SetPanCurrent(int32_t current);
int32_t SetTILTCurrent(uint32_t current);

/**
 * Set up a new controller, save that in its flash, and restart it. Once for each controller.
 *
 * Pan becomes an axis of continuous rotation with its Hall sensor in use, tilt one without, with
 * travel mode 0 and the limits 0 and 20025. Maximum current is 0.5 A, and sleep on power-up off. A
 * write that fails does not end the sequence: save and restart follow all the same. Nothing in the
 * library calls it; each call wears the flash.
 *
 * @return 0, always
 *
 * Blocks: 3 s.
 * Serves: Tasmere.
 * Sends: 21 registers (pan) or 22 (tilt), with 1 s behind 29, 35 (save) and 1 (restart);
 *        docs/wire.md lists them.
 * Prints: for pan a line before each step, from "Set Turbo" to "Reset Pan"; for tilt nothing.
 */
int32_t PanInitParam(void);
int32_t TiltInitParam(void);

/* ---- Gains and ramps ------------------------------------------------------------------------- */

/**
 * The tuning table of the head: gains, currents and ramps, in twelve rows of seven words; zeros at
 * load.
 *
 * Written by Init_Setup_PID() alone. Word w of row r is giMOTOR_Init_Reg[7 * r + w]. Rows used:
 *
 *     row  family   axis  for                            words
 *     0    Tasmere  pan   continuous moves and stops     1 to 3: P, I, D
 *     1    Tasmere  pan   absolute moves                 1 to 3
 *     2    Tasmere  tilt  continuous moves and stops     1 to 3
 *     3    Tasmere  tilt  absolute moves                 1 to 3
 *     4    Tasmere  pan   standing still                 1 to 3
 *     8    Vetra    pan   continuous moves and stops     0 to 6, below
 *     9    Vetra    pan   absolute moves                 0 to 6
 *     10   Vetra    tilt  continuous moves and stops     0 to 6
 *     11   Vetra    tilt  absolute moves                 0 to 6
 *
 * A row of seven: 0 position-loop P, 1 position-loop I, 2 speed-loop P, 3 speed-loop I, 4 motor
 * current, 5 acceleration, 6 deceleration. The other words are not read. Gains and currents are
 * sent with their low 16 bits, ramps with 32.
 */
extern int32_t giMOTOR_Init_Reg[84];

/**
 * Load the tuning table into giMOTOR_Init_Reg.
 *
 * Before the first move: until then the table is zeros, and moves set zero gains. Nothing is sent;
 * the next moves write what differs from what was last written.
 *
 * @param[in] table  336 bytes: 84 signed 32-bit words in the processor's byte order
 * @return 0, always
 */
int32_t Init_Setup_PID(const uint8_t *table);

/**
 * Freeze the gains, or let them follow the moves again.
 *
 * While they are frozen, Pan_Setup_PID() and Tilt_Setup_PID() do nothing, in moves too, so that
 * gains set by hand stay in force.
 *
 * @param[in] on  1 freeze; any other value lets go
 * @return 0, always
 */
int32_t Debug_PID_En(int32_t on);

/**
 * Write a register that holds two 16-bit values.
 *
 * @param[in] reg  register, 0 to 255
 * @param[in] a    first value, 16 bits
 * @param[in] b    second value, 16 bits
 * @return 0, always
 *
 * Serves: Vetra.
 * Sends: register `reg` with a, b.
 */
int32_t SetVetraPanPID(uint32_t reg, int16_t a, int16_t b);
int32_t SetVetraTiltPID(uint32_t reg, int16_t a, int16_t b);

/**
 * Read a register that holds two 16-bit values.
 *
 * @param[in]  reg  register, 0 to 255
 * @param[out] a    first value, 0 to 65535; 0 after a read that failed; untouched on Tasmere
 * @param[out] b    second value, likewise
 * @return 0, always
 *
 * Serves: Vetra.
 * Sends: register `reg`, 4 bytes.
 */
int32_t GetVetraPanPID(uint32_t reg, uint32_t *a, uint32_t *b);
int32_t GetVetraTiltPID(uint32_t reg, uint32_t *a, uint32_t *b);

/**
 * Set the gains of a position loop.
 *
 * @param[in] p  P, 16 bits
 * @param[in] i  I, 16 bits
 * @return 0, always
 *
 * Serves: Vetra.
 * Sends: register 16 with p, i.
 */
int32_t PanPosPIDsetup(int16_t p, int16_t i);
int32_t TiltPosPIDsetup(int16_t p, int16_t i);

/**
 * Set the gains of a speed loop (Vetra) or of the loop (Tasmere).
 *
 * @param[in] p  P, 0 to 65535; the rest is not sent
 * @param[in] i  I, likewise
 * @param[in] d  D, 16 bits; ignored on Vetra
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Vetra register 17 with p, i; Tasmere registers 12 with p, 14 with i and 16 with d.
 * Prints: for pan on Vetra "P:" and "I:" with the two in hexadecimal; for tilt nothing.
 */
int32_t PanPIDsetup(uint32_t p, uint32_t i, int16_t d);
int32_t TiltPIDsetup(uint32_t p, uint32_t i, int16_t d);

/**
 * Set the ramps of an axis.
 *
 * Does not begin with GetMotorType() and does not look at the family: a Tasmere controller is sent
 * the same, and its register 19 is the length of the travel limits. Callers must know the family.
 *
 * @param[in] acc  acceleration, 32 bits, in the controller's unit
 * @param[in] dec  deceleration, likewise
 * @return 0, always
 *
 * Serves: Vetra.
 * Sends: register 19 with the four bytes of `acc`, then 21 with those of `dec`.
 */
int32_t Pan_AccDec_setup(int32_t acc, int32_t dec);
int32_t Tilt_AccDec_setup(int32_t acc, int32_t dec);

/* ---- Gains that follow the speed ------------------------------------------------------------- */

/**
 * What the moves have last written to each controller, so that like moves write nothing again;
 * zeros at load.
 *
 * Of Vetra 0 position-loop P, 1 position-loop I, 2 speed-loop P, 3 speed-loop I, 4 motor current, 5
 * acceleration, 6 deceleration; of Tasmere 1 P, 2 I, 3 D, and the others stay 0. Written by
 * Pan_Setup_PID() and Tilt_Setup_PID(), whether or not the transfers got through, and by nothing
 * else: after a controller's restart, or gains set by hand, they hold what was there before. An
 * application that sets them to other values makes the next move write these groups again.
 */
extern int32_t iPanVETRA_Motor_Reg[7];
extern int32_t iTiltVETRA_Motor_Reg[7];
extern int32_t iPanTASMERE_PID[7];
extern int32_t iTiltTASMERE_PID[7];

/**
 * Set gains, current and ramps of pan for a move.
 *
 * The moves call it, so an application need not. Does nothing at all while gains are frozen
 * (Debug_PID_En()). Values come in groups: position loop, speed loop, current, ramps; on Tasmere
 * one of P, I, D. A group is written when one of its values is not the one last written
 * (iPanVETRA_Motor_Reg, iPanTASMERE_PID). T is row 8 of giMOTOR_Init_Reg in mode 0, row 9 in mode
 * 1. On Vetra, by mode and size of the speed:
 *
 *     mode  speed             position P, I  speed P, I  current  ramps
 *     0     1 to 29           20, 0          5000, 5000  T        40000, 40000
 *     0     30 to 99          20, 0          4000, 3000  T        40000, 40000
 *     0     0, 100 and above  T              T           T        T
 *     1     1 to 1509         20, 0          1152, 100   T        4000000, 4000000
 *     1     0, 1510 and above by distance, T T           T        T
 *
 * The distance d is the one between the count read and the target, in counts, without regard to the
 * wrap of a full turn: P is T for 0; 36 - 0.01 * d up to 999; 27 - 0.001 * d above. Each is a fused
 * multiply-add in double precision, cut: 35 for 1 to 100, 31 for 500, 26 for 1000.
 *
 * On Tasmere the group is row 0 or 1; with mode 0 and speed 0 that of row 4 is then set as well, so
 * every stop writes both while they differ.
 *
 * @param[in] mode   0 continuous move or stop, 1 absolute move; others take rows for which the
 *                   table was not made, and words beyond it as 0
 * @param[in] speed  speed of the move, of which the size counts; 0 for a stop
 * @param[in] pos    target, 0 to 65535; mode 1 only
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: for the distance register 50, 2 bytes, a count of 0 when that fails; then
 *        PanPosPIDsetup(), PanPIDsetup(), SetPanCurrent(), Pan_AccDec_setup() for the groups that
 *        changed; on Tasmere PanPIDsetup().
 * Prints: a line for each group that is written, before it: "pos", "spd", "cur", "Gain" or "gain"
 *         with the number of the case, "pan" and the new values in hexadecimal; on Tasmere
 *         "TASMERE" with P, I, D. The "cur" line of mode 1 up to 1509 shows the current before the
 *         change, and that of mode 0 up to 29 follows the write.
 */
int32_t Pan_Setup_PID(int32_t mode, int32_t speed, int32_t pos);

/**
 * Set gains, current and ramps of tilt for a move.
 *
 * As Pan_Setup_PID(), with T row 10 or 11 of giMOTOR_Init_Reg (Vetra), the group of row 2 or 3 and
 * none for standing still (Tasmere), and these differences on Vetra:
 *
 *  - The current is written before the speed loop. All four groups are those of T, but for position
 *    P in mode 1: T for a distance of 0 or above 999, else 35 - 0.02 * d, fused and cut likewise:
 *    34 for 1 to 50, 33 for 100, 15 for 999.
 *  - That distance goes around the limits: the target is first moved to the nearer limit when it
 *    lies between them and TiltLimitEn() was last given 1, and a way that would cross them is
 *    counted through the other end of the range. Unlike TiltABSMove(), this asks for the flag alone
 *    and not for limits other than 0.
 *  - In mode 0 with a speed of 1 to 149 position P 40 and speed P 3000 are then set in place of
 *    those of T. So each such move writes both, T's first, unless T has the same numbers: repeating
 *    it does not end the traffic, as it does for pan.
 *
 * @param[in] mode   0 continuous move or stop, 1 absolute move, as Pan_Setup_PID()
 * @param[in] speed  speed of the move, of which the size counts; 0 for a stop
 * @param[in] pos    target, 0 to 65535; mode 1 only
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: in mode 1 on Vetra register 50, 2 bytes; then TiltPosPIDsetup(), SetTILTCurrent(),
 *        TiltPIDsetup(), Tilt_AccDec_setup() for the groups that changed; on Tasmere
 *        TiltPIDsetup().
 * Prints: a line before each group that is written: "pos 1", "cur 1", "spd 1", "gain 1" or "spd 3",
 *         "Tilt" and the values in hexadecimal; in mode 1 on Vetra first "iStart:", "iEnd:" and
 *         "istep:" with the counts of the end and of the start, in this order, and `pos`. On
 *         Tasmere "TASMERE", "tilt" and P, I, D of pan, not of tilt (iPanTASMERE_PID).
 */
int32_t Tilt_Setup_PID(int32_t mode, int32_t speed, int32_t pos);

/**
 * Set the gains of both axes for standing still.
 *
 * Stops nothing: PanStop() and TiltStop() do.
 *
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Pan_Setup_PID() and Tilt_Setup_PID(), each with zeros.
 * Prints: the lines of these.
 */
int32_t Set_stop_PID(void);

/* ---- Moves --------------------------------------------------------------------------------------
 *
 * A move sets gains, current and ramps (Pan_Setup_PID(), Tilt_Setup_PID()), writes one register and
 * returns; GetPanStatus() and GetTiltStatus() tell when it is over. Speeds reach from 0 to 7200,
 * full speed, in the controllers' unit. Above, they are cut to 7200; a negative one is sent as it
 * is scaled, modulo 65536. What the two directions are belongs to the head.
 */

/**
 * Move an axis until it is stopped.
 *
 * @param[in] dir    0 or 1
 * @param[in] speed  0 to 7200, above as 7200
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Pan_Setup_PID() or Tilt_Setup_PID() with 0, speed, 0. Then on Vetra register 3 with `dir`
 *        XOR 1 and speed; on Tasmere register 7 with speed * 32767 / 7200, cut, which for direction
 *        1 becomes its one's complement (7200 backward is 80 00, 0 backward FF FF), unlike that of
 *        the absolute moves. While giSerTiltUseHall is -1, tilt on Tasmere calls
 *        GetTiltHallSetting() before it writes.
 * Prints: the lines of the gains; "TServomotor=" with the family; on Vetra, behind the write,
 *         "Manaul Dir:" with the direction sent and "Speed:".
 */
int32_t PanContinuousMove(int32_t dir, int32_t speed);
int32_t TiltContinuousMove(int32_t dir, int32_t speed);

/**
 * Move pan to a position.
 *
 * @param[in] dir    0 or 1
 * @param[in] speed  0 to 7200, above as 7200
 * @param[in] pos    0 to 65535; other values are converted as they are
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Pan_Setup_PID() with 1, speed, pos. Then on Vetra register 1 with `dir` XOR 1, the count
 *        of `pos` (as PanLimitSet()) and speed; on Tasmere register 66 with `pos` and speed * 24575
 *        / 7200, cut, which for direction 1 is negated (7200 becomes A0 01).
 * Prints: the lines of the gains.
 */
int32_t PanABSMove(int32_t dir, int32_t speed, uint32_t pos);

/**
 * Move tilt to a position, within the travel limits of this process.
 *
 * The limits are the last arguments of TiltLimit(), in force when neither is 0 and the last one of
 * TiltLimitEn() was 1. Limits that another process has set, or that the controller has saved, do
 * not count here. A target beyond them is pulled to the nearer limit. On Vetra that is done in
 * counts, where the forbidden side lies between the two, and a target exactly in its middle stays;
 * on Tasmere on the common scale, and only for an axis with a Hall sensor.
 *
 * @param[in] dir    0 or 1
 * @param[in] speed  0 to 7200, above as 7200
 * @param[in] pos    0 to 65535; other values are converted as they are
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: Tilt_Setup_PID() with 1, speed, pos. Then on Vetra register 1 with `dir` as it is, unlike
 *        pan, the target's count and speed. On Tasmere GetTiltHallSetting() while giSerTiltUseHall
 *        is -1; register 66 with the target and v = speed * 24575 / 7200, cut. With a Hall sensor
 *        27852 is added to the target, modulo 65536, and v becomes its one's complement for
 *        direction 0; without one v is negated for direction 1, as for pan.
 * Prints: the lines of the gains; on Vetra, behind the write, "ABS Tilt:" with direction, `pos`,
 *         the count sent in hexadecimal, and speed.
 */
int32_t TiltABSMove(int32_t dir, int32_t speed, uint32_t pos);

/**
 * Write any register with a number of 1 to 8 bytes.
 *
 * Does not begin with GetMotorType(); the family does not matter.
 *
 * @param[in] reg    register, 0 to 255
 * @param[in] value  the number; high byte first for up to 4 bytes. Beyond that the bytes repeat: 5
 *                   of 0x11223344 are 44 11 22 33 44.
 * @param[in] n      bytes, 1 to 8; 0 and above 8 nothing is sent. Below 0 there are no bytes, and
 *                   SendI2C() is called with the length `n` + 1 all the same: -1 sends an empty
 *                   message, and for others the caller is responsible.
 * @return 0, always
 *
 * Serves: Vetra, Tasmere.
 * Sends: register `reg` with the bytes.
 */
int32_t Pan_SendI2C_Advanced(uint32_t reg, uint32_t value, int32_t n);
int32_t Tilt_SendI2C_Advanced(uint32_t reg, uint32_t value, int32_t n);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
