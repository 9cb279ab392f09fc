/**
 * Lens modules, bring-up of the lens controller, and what a lens has: motors with their counters,
 * status and photo-interrupters; iris, IR-cut filter, heater and converter.
 *
 * The conventions at the top of kelvo.h hold for all of it.
 */
#ifndef KELVO_LENS_H
#define KELVO_LENS_H

#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* ---- Lens modules and service ---------------------------------------------------------------- */

/**
 * Say which lens module is fitted, and clear the latch.
 *
 * For a process that works with a controller which another process has booted: it is neither reset
 * nor programmed. Also the way to use the link again after a failed transfer.
 *
 * @param[in] type  7 DE015, 8 DF033, 9 T5391; any other value is stored too, and nothing serves it
 * @return 0, always
 */
int32_t SetLensType(int32_t type);

/**
 * Tell which lens module is fitted.
 *
 * @return the module's code, 7 to 9 or what SetLensType() was given; -1: the latch is -1, so
 *         neither a boot nor SetLensType() has run in this process, or a transfer has failed with
 *         -1 since. Any other failure does not hide the code.
 */
int32_t GetLensType(void);

/**
 * Read and print the version of the lens controller's program.
 *
 * @param[out] out  version, 0 to 0xFFFF: reply byte 2 is its high byte, 3 its low byte; 0 when
 *                  nothing was received; untouched for a module that is not served
 * @return 0 read; else the low byte of the latch; 0 too for a module that is not served
 *
 * Serves: DE015, DF033, T5391.
 * Sends: query 0x85 (DE015) or 0x86 (DF033, T5391) with argument 0.
 * Prints: "Ver:" and the four reply bytes.
 */
uint8_t getVersion(uint32_t *out);

/**
 * Send one raw frame, for service tools.
 *
 * @param[in] frame  code and four argument bytes; codes from 0x80 are queries, of which frame[1]
 *                   alone is the argument; 0x3A, the one query below, goes out as a command; may
 *                   be null when `len` is below 5
 * @param[in] len    bytes in `frame`; below 5 nothing happens, and bytes beyond the fifth are
 *                   ignored
 * @return 0, always; how the transfer ended is not passed on
 *
 * Sends: one command frame (SendCommand()) or one query frame (RecvCommand()).
 * Prints: for a query "Recv:" and the four reply bytes, zeros when nothing was received; nothing
 *         for a command.
 */
int32_t CommTest(const uint8_t *frame, int32_t len);

/**
 * Bring a file's data to storage, before it is closed and power can be cut.
 *
 * Flushes the stream and synchronises its descriptor, if it has one (a stream in memory has none).
 *
 * @param[in] stream  open stdio stream
 * @return 0, always; that data could not be written is not passed on
 *
 * Blocks: as long as the storage takes.
 */
int32_t FileSync(FILE *stream);

/* ---- Program images and boot ----------------------------------------------------------------- */

/**
 * The programs of the lens controller, three images for each lens module; read-only.
 *
 * One byte per element, in the order in which they are sent. A boot sends them in the order in
 * which they stand here; the first goes to memory 0x21 at address 0x000200, the second (3) to
 * memory 0x22 at 0xFFE000, the third (2) to memory 0x23 at 0xFFD000. DF033's and T5391's second and
 * third images are equal, and are arrays of their own. The build embeds them (docs/guide.md); those
 * in the source tree are placeholders that only the simulated camera runs.
 */
extern const uint8_t CORVO_PROGRAM_DATA_DE015[33276];
extern const uint8_t CORVO_PROGRAM3_DATA_DE015[1228];
extern const uint8_t CORVO_PROGRAM2_DATA_DE015[944];
extern const uint8_t CORVO_PROGRAM_DATA_DF033[35000];
extern const uint8_t CORVO_PROGRAM3_DATA_DF033[1160];
extern const uint8_t CORVO_PROGRAM2_DATA_DF033[648];
extern const uint8_t CORVO_PROGRAM_DATA_T5391[33000];
extern const uint8_t CORVO_PROGRAM3_DATA_T5391[1160];
extern const uint8_t CORVO_PROGRAM2_DATA_T5391[648];

/**
 * Download one image into the lens controller and have its boot loader's checksum confirm it.
 *
 * The checksum alone decides; a failed transfer shows only as a checksum that does not match. An
 * answer that never came counts as zeros, or, for the high half, as the answer for the low half.
 * The controller must be in its boot loader with its clocks set up, as in the middle of a boot.
 *
 * @param[in] memId     memory: 0x21, 0x22 or 0x23
 * @param[in] addr      load address, of which the low 24 bits are sent
 * @param[in] size      bytes in the image, 0 to 0xFFFFFF
 * @param[in] checksum  what the boot loader must answer
 * @param[in] image     the image, `size` bytes
 * @return 0: both halves of the checksum match; 1: one does not
 *
 * Blocks: 200 ms.
 * Sends: 0xE3 with the address, 0xE4 with the size, WriteData(), and the reads 0x66 and 0x67. The
 *        latch does not matter.
 * Prints: the lines of these frames; "Checksum:" with the expected value; "66 Read Checksum:" or
 *         "67 Read Checksum:" with the other value for a half that does not match; "ChecksumError:"
 *         with the result.
 */
int32_t DownloadCode(uint8_t memId, uint32_t addr, int32_t size, uint32_t checksum,
                     const uint8_t *image);

/**
 * Bring up a DE015 module: reset, clocks, downloads, program start, PT5111, I2C, stabiliser
 * calibration.
 *
 * Sets gi30516Ver to 7 and clears the latch. Up to ten attempts of reset, clock set-up and three
 * downloads; the program is started after the last one, whatever its outcome, and all further steps
 * follow. One failed download in any attempt makes the result nonzero for good: a first attempt
 * that fails is followed by nine others, even when the second is perfect. Transfers that fail show
 * only as checksums that do not match; after the program's start a failed one sets the latch.
 * Calling it again repeats the whole boot.
 *
 * Afterwards: the device is open, hndl is what Init_I2C() made of it, the values of
 * /bin/OIS_S_Cali.dat have been sent if there is such a file (Load_QC()), and the PT5111 is
 * initialised and stopped.
 *
 * @return 0: every image was confirmed in the first attempt; 1: some download failed its check
 *
 * Blocks: 1.8 s: an attempt 1.2 s, the rest 0.6 s. With a failed first attempt 22.6 s: ten
 *         attempts, each followed by 1 s, and the rest.
 * Sends: in each attempt ResetR2J30516(), the clock set-up, DownloadCode() for the memories 0x21,
 *        0x22 and 0x23, 0xE5; then 0xE2, PT5111_Initialize(), Load_QC(), command 5 with zeros.
 * Prints: the lines of these, and none of its own.
 */
int32_t Init30516(void);

/**
 * Bring up a DF033 or T5391 module: reset, clocks, downloads, program start, I2C, iris calibration.
 *
 * As Init30516(), with gi30516Ver 8 or 9 and these differences: every step of an attempt is
 * announced on standard output; I2C comes first after the program's start; the iris calibration is
 * loaded (Load_DC()) instead of the stabiliser's; command 39 follows command 5. DF033 alone
 * initialises the PT5111, at the very end; T5391 has none.
 *
 * @return 0: every image was confirmed in the first attempt; 1: some download failed its check
 *
 * Blocks: 1.5 s (DF033) or 1.3 s (T5391): an attempt 1.2 s, the rest 0.3 s or 0.1 s. With a failed
 *         first attempt 22 s and the rest.
 * Sends: the attempts as Init30516(); then 0xE2, Load_DC(), command 5 with zeros, command 39 with
 *        0, 0, 0, 1, and for DF033 PT5111_Initialize().
 * Prints: "Reset R2J30516", the name of each register before its frame, "DownloadCode", and the
 *         lines of the functions it calls.
 */
int32_t Init30516_DF033(void);
int32_t Init30516_T5391(void);

/**
 * Boot the controller once, without calibration, for a quality check of the stabiliser or the iris.
 *
 * InitOIS_K() downloads the DE015 images, InitDC_K() the DF033 images. One attempt, whose outcome
 * is not looked at. gi30516Ver and the latch stay as they are, and neither I2C nor the PT5111 is
 * touched: in a process without a boot or SetLensType() the program runs and no command reaches it.
 *
 * @return 0, always
 *
 * Blocks: 1.3 s.
 * Sends: one attempt as in Init30516(), then 0xE2.
 * Prints: the lines of the frames and downloads.
 */
int32_t InitOIS_K(void);
int32_t InitDC_K(void);

/* ---- Zoom and focus moves -----------------------------------------------------------------------
 *
 * Each function starts a move relative to where the motor stands and returns; it waits neither for
 * this move nor for one before it, which it reprograms. getZoom1Status() and its like tell when it
 * is over. Results of the frames before the last one are not looked at, and with the latch set
 * everything is gone through without sending.
 *
 * A motor's first move after load or after its power-off waits for the coils to settle; "Blocks"
 * gives that time, and later moves do not wait. It is slept while the latch is set, too.
 *
 * A module drives a motor in one of three ways:
 *
 * - by a block of eight commands of the controller's program. The rate is sent in steps a second
 *   (zoom 1: speed * 960 / 255, cut) or in eighths of that (zoom 3: speed * 1320 / 255, cut, times
 *   8). The count has 16 bits; the rest of `steps` is lost without notice.
 * - by eleven 16-bit register writes to one of two motor channels, focus and zoom. The step period
 *   is entry `speed` of a step-rate table (below). The count, `steps` times the scale of the drive
 *   mode, has 20 bits; the rest is lost without notice.
 * - through the PT5111 (below), whose results are dropped: the move returns 0 whatever happened.
 *
 * docs/wire.md shows a move of each kind byte by byte.
 */

/**
 * Move zoom 1 forward or backward.
 *
 * @param[in] speed  level, 0 (slowest; rate 0 on DE015) to 255
 * @param[in] steps  motor steps: 0 to 65535 on DE015 and DF033, 0 to 524287 on T5391
 * @return DE015, T5391: status of the last frame, 0 sent; DF033: 0
 *
 * Blocks: first move 50 ms (DE015), 5 ms (T5391), never on DF033.
 * Serves: DE015, DF033, T5391.
 * Sends: DE015 commands 56 to 63 with mode 1 (micro-step); DF033 PT5111Zoom1Forward() or
 *        PT5111Zoom1Backward(); T5391 zoom channel, 2-2 phase drive, count `steps` * 2, period
 *        PPS_2_2Phase[speed].
 */
uint32_t setZoom1Forward(uint8_t speed, uint32_t steps);
uint32_t setZoom1Backward(uint8_t speed, uint32_t steps);

/**
 * Move zoom 1 forward or backward in 2-2 phase drive.
 *
 * The twins differ: forward serves DE015 alone, backward all three modules, on DF033 and T5391
 * exactly as setZoom1Backward().
 *
 * @param[in] speed  level, 0 (slowest; rate 0 on DE015) to 255
 * @param[in] steps  motor steps, as setZoom1Forward()
 * @return DE015, T5391: status of the last frame, 0 sent; DF033: 0
 *
 * Blocks: first move 50 ms (DE015), 5 ms (T5391 backward), never on DF033.
 * Serves: forward DE015; backward DE015, DF033, T5391.
 * Sends: DE015 commands 56 to 63 with mode 0 (2-2 phase); else as setZoom1Backward().
 */
uint32_t setZoom1Forward2_2(uint8_t speed, uint32_t steps);
uint32_t setZoom1Backward2_2(uint8_t speed, uint32_t steps);

/**
 * Move zoom 1 forward or backward, with more time before the coils are energised for a first move.
 *
 * The twins differ in their waits and in the count: backward takes a signed one. DF033 moves by its
 * absolute value, DE015 sends the low 16 bits of it (-300 becomes 65236).
 *
 * @param[in] speed  level, 0 (slowest; rate 0 on DE015) to 255
 * @param[in] steps  motor steps, 0 to 65535; backward on DF033 also -65535 to -1
 * @return DE015: status of the last frame, 0 sent; DF033: 0
 *
 * Blocks: first move on DE015 100 ms forward and 150 ms backward, of which the last 50 ms lie
 *         behind the command that energises the coils; never on DF033.
 * Serves: DE015, DF033.
 * Sends: DE015 commands 56 to 63 with mode 1; DF033 uPT5111Zoom1Forward() or
 *        uPT5111Zoom1Backward().
 */
uint32_t setZoom1uForward(uint8_t speed, uint32_t steps);
uint32_t setZoom1uBackward(uint8_t speed, int32_t steps);

/**
 * Move the focus forward or backward.
 *
 * @param[in] speed  level, 0 (slowest) to 255
 * @param[in] steps  motor steps: 0 to 131071 on DE015 and DF033, 0 to 1048575 on T5391
 * @return status of the last frame, 0 sent
 *
 * Blocks: first move 50 ms (DE015), 10 ms (DF033, T5391).
 * Serves: DE015, DF033, T5391.
 * Sends: focus channel. DE015, DF033: 512 micro-step drive, count `steps` * 8, period
 *        PPS_512uStepPhase[speed]; T5391: 1-2 phase drive, count `steps`, period
 *        PPS_1_2Phase_800[speed].
 */
uint32_t setFocusForward(uint8_t speed, uint32_t steps);
uint32_t setFocusBackward(uint8_t speed, uint32_t steps);

/**
 * Move zoom 2 forward or backward.
 *
 * @param[in] speed  level, 0 (slowest) to 255
 * @param[in] steps  motor steps, 0 to 131071
 * @return status of the last frame, 0 sent
 *
 * Blocks: first move 50 ms (DE015), 5 ms (DF033).
 * Serves: DE015, DF033.
 * Sends: zoom channel, 512 micro-step drive, count `steps` * 8, period PPS_512uStepPhase[speed].
 */
uint32_t setZoom2Forward(uint8_t speed, uint32_t steps);
uint32_t setZoom2Backward(uint8_t speed, uint32_t steps);

/**
 * Move zoom 2 forward or backward by eighths of a step.
 *
 * @param[in] speed  level, 0 (slowest) to 255
 * @param[in] steps  eighth steps, 0 to 1048575; of a negative value the low 20 bits are sent
 * @return status of the last frame, 0 sent
 *
 * Blocks: first move 50 ms (DE015), 5 ms (DF033).
 * Serves: DE015, DF033.
 * Sends: as setZoom2Forward() and setZoom2Backward(), with `steps` as the count.
 */
uint32_t setZoom2Forward512(uint8_t speed, int32_t steps);
uint32_t setZoom2Backward512(uint8_t speed, int32_t steps);

/**
 * Move zoom 3 forward or backward.
 *
 * @param[in] speed  level, 0 (rate 0) to 255
 * @param[in] steps  motor steps, 0 to 65535
 * @return status of the last frame, 0 sent
 *
 * Blocks: first move 5 ms.
 * Serves: DF033.
 * Sends: commands 22, 23, 24, 29, 25, 26, 27, 28, in this order.
 */
uint32_t setZoom3Forward(uint8_t speed, uint32_t steps);
uint32_t setZoom3Backward(uint8_t speed, uint32_t steps);

/* ---- Step-rate tables ------------------------------------------------------------------------ */

/**
 * Step-period words of the motor channels, one table for each drive mode and scale; 256 words each.
 *
 * The index is the speed level of a move. A word is r * 1024 + p. In range r the step clock of
 * 4882.8125 Hz (5 MHz divided by 1024) runs 2^r times as fast, and a motor step lasts p of its
 * periods times the factor of the drive mode: 64 in 512 micro-step drive, 2 in 2-2 phase, 1 in 1-2
 * phase. The rate grows in equal parts with the index i, so
 *
 *     p = clock * 2^r / (factor * rate(i))
 *
 *     table                   rate(i), steps a second      p is     used by
 *     PPS_512uStepPhase1320   1320 * (i + 1) / 256         rounded  nothing
 *     PPS_512uStepPhase       960 * min(i + 1, 229) / 255  cut      focus, zoom 2 (DE015, DF033)
 *     PPS_1_2Phase            960 * min(i + 1, 255) / 255  cut      nothing
 *     PPS_2_2Phase            800 * (i + 1) / 256          rounded  zoom 1 (T5391)
 *     PPS_1_2Phase_800        800 * (i + 1) / 256          rounded  focus (T5391); entry 0 is 1024
 *
 * Halves round up. docs/architecture.md says where each range begins; there the words jump upward.
 * Where p has more than ten bits it carries into r: PPS_1_2Phase at 0 and 138 to 161,
 * PPS_1_2Phase_800 at 10, 11 and 128 to 194.
 *
 * The five lie one after the other in this order and are writable: the library reads them at each
 * move and never writes them. An application that does changes its own process, and should keep
 * each word below 65536, because the low 16 bits are sent.
 */
extern uint32_t PPS_512uStepPhase1320[256];
extern uint32_t PPS_512uStepPhase[256];
extern uint32_t PPS_1_2Phase[256];
extern uint32_t PPS_2_2Phase[256];
extern uint32_t PPS_1_2Phase_800[256];

/**
 * Divider and period words of the PT5111's moves; read-only.
 *
 * SpeedTable[255 - L] serves the level L, which is the speed divided by 6, at most 38. Column 0 is
 * the divider word, 64 * d, where d is 2 for L = 1; 3 up to 3; 4 up to 6; 5 up to 12; 6 up to 25; 7
 * up to 50; 8 up to 100; 9 up to 200; 10 up to 255. Column 2 is the period word, 781.25 * 2^(d - 2)
 * / L, cut. Columns 1 and 3 are 0. The last row, level 0, is all 0: a move at a speed below 6 has
 * divider and period 0. Rows 0 to 216 are read only by a SteppingMove() on a block that has no
 * motor.
 */
extern const uint16_t SpeedTable[256][4];

/* ---- PT5111 stepping-motor driver ---------------------------------------------------------------
 *
 * A second chip with two motors, A and B: on DE015 the IR-cut filter and the P-iris, on DF033 zoom
 * 1 and the IR-cut filter. DE015 reaches it on a device of its own, without latch and bus lock;
 * DF033 through the lens controller, a command frame for each word. The functions below send the
 * same words on both, whatever is fitted there: which module a function is meant for stands in
 * "Serves".
 *
 * "The last word's result" is SendPT5111CMD()'s. Words that failed do not end a sequence. On any
 * other module each word sends nothing and has the module's code as its result: here convention 3
 * does not hold.
 */

/**
 * Whether a PT5111 motor was moved last or all were stopped: 1 or 0; 0 at load.
 *
 * Set by SteppingMove() and uSteppingMove() and all that is built of them, cleared by stop(),
 * whether or not anything could be sent. It is there for the application; nothing in the library
 * reads it.
 */
extern int32_t cMotorPower;

/**
 * Send one word to the PT5111.
 *
 * On DE015 the chip's device is opened with the first word and stays open; after a failure each
 * word tries again. A descriptor of 0 (a process without standard input) counts as open, but
 * nothing is sent on it. Nothing is read back.
 *
 * @param[in] word  16 bits: register (0 to 63) in bits 15 to 10, value in bits 9 to 0; higher bits
 *                  are ignored
 * @return DE015: the driver's result, 0 sent, -1 refused; 0 for a descriptor of 0; 26, the length
 *         of the message, when the device could not be opened, or a negative value when the message
 *         could not be written either. DF033: as SendCommand(), 0 sent. Else the module's code.
 *
 * Serves: DE015, DF033.
 * Sends: DE015 the word, high byte first, on /dev/spi_pt5111; DF033 command 47 with 2, word high,
 *        word low, 0.
 * Prints: "Open /dev/spi_pt5111 fail" on standard error when that is so.
 */
int64_t SendPT5111CMD(int32_t word);

/**
 * Start a move of a PT5111 motor; the u twin with the alternative stepping, without bit 7 of its
 * first word.
 *
 * Sets cMotorPower. The speed is divided by 6, from 234 on as 233, and chooses a row of SpeedTable.
 *
 * @param[in] block  0 motor A, 0x4000 motor B. For any other value the coils are not energised and
 *                   the speed chooses row 255 - speed, modulo 65536; a row beyond the table reads
 *                   as zeros.
 * @param[in] dir    0 or 512
 * @param[in] speed  level, 0 to 233, above as 233; below 6 divider and period are 0
 * @param[in] steps  motor steps, 0 to 65535
 * @return the last word's result
 *
 * Serves: DE015, DF033.
 * Sends: for a motor the words 0xCFC0, 0x3400, 0x7400; then direction, count low, count high,
 *        period, divider and run, each OR-ed with `block`.
 */
int64_t SteppingMove(uint16_t block, uint16_t dir, uint16_t speed, uint16_t steps);
int64_t uSteppingMove(uint16_t block, uint16_t dir, uint16_t speed, uint16_t steps);

/**
 * Stop both PT5111 motors and cut their power.
 *
 * Clears cMotorPower.
 *
 * @return the last word's result
 *
 * Serves: DE015, DF033.
 * Sends: the words 0xCC00, 0x3C00, 0x7C00.
 */
int64_t stop(void);

/**
 * Open or close the P-iris.
 *
 * @param[in] steps  motor steps, 0 to 65535; the rest is lost without notice
 * @return the last word's result
 *
 * Serves: DE015. On DF033 motor B, which the same words reach, is the IR-cut filter.
 * Sends: SteppingMove() of motor B at speed 100, direction 512 to open and 0 to close.
 */
int64_t piris_open(uint32_t steps);
int64_t piris_close(uint32_t steps);

/**
 * Move the IR-cut filter into its on or off position.
 *
 * DE015 has a stepping motor for it; every other module is treated as having a coil that gets a
 * pulse.
 *
 * @param[in] steps  DE015: motor steps, 0 to 65535, the rest is lost without notice; else ignored
 * @return the last word's result; on T5391, which has no PT5111, its code 9
 *
 * Blocks: 200 ms on every module but DE015, on T5391 too.
 * Serves: DE015, DF033.
 * Sends: DE015 SteppingMove() of motor A at speed 100, direction 0 for on and 512 for off; else the
 *        words 0xCFC0, 0x4140, 0x73EF (on) or 0x71EF (off), 0x7E00 and, after the wait, 0x7C00.
 */
int64_t ICR_ON(uint32_t steps);
int64_t ICR_OFF(uint32_t steps);

/**
 * Initialise the PT5111.
 *
 * The boots of DE015 and DF033 call it. On DE015 it ends stopped, with the power off; on every
 * other module with the IR-cut filter on.
 *
 * @return DE015: stop()'s result; else ICR_ON()'s
 *
 * Blocks: 500 ms on DE015, else 200 ms.
 * Serves: DE015, DF033.
 * Sends: DE015 thirteen words, after the wait 0xCA80, then stop(); else eleven words, then
 *        ICR_ON(). docs/wire.md lists them; 0xC400 is sent twice.
 */
int64_t PT5111_Initialize(void);

/**
 * Move zoom 1 through the PT5111, forward or backward; the u twins with the alternative stepping.
 *
 * @param[in] speed  level, 0 to 233, above as 233; below 6 divider and period are 0
 * @param[in] steps  motor steps, 0 to 65535; the rest is lost without notice
 * @return the last word's result
 *
 * Serves: DF033. On DE015 motor A, which the same words reach, is the IR-cut filter.
 * Sends: SteppingMove() or uSteppingMove() of motor A, direction 0 forward and 512 backward.
 */
int64_t PT5111Zoom1Forward(uint8_t speed, uint32_t steps);
int64_t PT5111Zoom1Backward(uint8_t speed, uint32_t steps);
int64_t uPT5111Zoom1Forward(uint8_t speed, uint32_t steps);
int64_t uPT5111Zoom1Backward(uint8_t speed, uint32_t steps);

/**
 * Switch the photo-interrupter at the PT5111.
 *
 * @param[in] on  1 on; any other value off
 * @return the word's result
 *
 * Serves: DE015, DF033.
 * Sends: the word 0xCA00 (on) or 0xC800 (off).
 */
int64_t PT5111PI1(int32_t on);

/**
 * Cut the power of PT5111 motor A, zoom 1 on DF033.
 *
 * cMotorPower stays as it is.
 *
 * @return 0, always
 *
 * Serves: DF033. On DE015 motor A, which the same word reaches, is the IR-cut filter.
 * Sends: the word 0x35C0.
 */
int32_t PT5111Zoom1OFF(void);

/* ---- Counters, status and power-off -------------------------------------------------------------
 *
 * The lens controller keeps a position counter for each motor and knows whether it moves. Counts
 * are in the controller's own unit, and no function resets them but the presets below. Nothing here
 * waits for a motor.
 *
 * A motor channel that is driven by registers (zoom 2 and focus on DE015, zoom 1 on T5391) is read
 * folded: of the raw 16-bit value v, 0x3FFF down to 0 stands for 0 to 16383, and 0x7FFF down to
 * 0x4000 for 16384 to 32767. Outside of that, 0xFFFF down to 0xC000 reads as 49152 to 65535, and
 * 0x8000 to 0xBFFF as 0x3FFF - v modulo 2^32 (0x8000 as 0xFFFFBFFF). A preset is the count itself:
 * the controller folds what it answers, not what it is sent.
 *
 * A query that fails, or is not sent because of the latch, leaves its reply at zeros. The counters
 * do not tell: such a count is 0, and a folded one 16383. GetLensType() is -1 then.
 */

/**
 * Tell where a motor stands.
 *
 * Zoom 1 and zoom 3 are without sign: a count of -5 is returned as 5, and T5391's folded value
 * below 0 likewise (raw 0x8000 as 16385). Zoom 2 and focus are returned as they are decoded.
 *
 * @return the count: 32 bits (zoom 1 on DE015 and DF033, zoom 3), folded (zoom 1 on T5391, zoom 2
 *         and focus on DE015), or 0 to 65535 as it is (focus on DF033); 0 too for a module that is
 *         not served
 *
 * Serves: zoom 1 DE015, DF033, T5391; zoom 2 DE015; zoom 3 DF033; focus DE015, DF033.
 * Sends: zoom 1 query 0xC7 (DE015), 0x87 (DF033) with argument 0, or 0x8F with 52 (T5391); zoom 2
 *        query 0x8F with 52; zoom 3 query 0x3A with 0, the one query below 0x80; focus query 0x8F
 *        (DE015) or 0x8C (DF033) with 20.
 */
uint32_t GetZoom1Count(void);
uint32_t GetZoom2Count(void);
uint32_t GetZoom3Count(void);
uint32_t GetFocusCount(void);

/**
 * Preset a motor's counter, or clear it: zoom 1 on DE015 and zoom 3 take no value.
 *
 * @param[in] count  zoom 1: ignored on DE015, whose counter is set to 0; 32 bits on DF033; 0 to
 *                   32767 on T5391. Zoom 2 and focus: 0 to 65535, or 32767 where it is read
 *                   folded. The rest is lost without notice. Zoom 3: ignored, the counter is set
 *                   to 0.
 * @return status of the frame, 0 sent; 0 too for a module that is not served, except that the
 *         result of SetZoom1Count() means nothing then
 *
 * Serves: zoom 1 DE015, DF033, T5391; zoom 2 DE015; zoom 3 DF033; focus DE015, DF033, T5391.
 * Sends: zoom 1 command 70 with zeros (DE015), 78 with the four bytes of `count` (DF033), or
 *        register 52 (T5391); zoom 2 register 52; zoom 3 command 35 with zeros; focus register 20.
 */
uint8_t SetZoom1Count(uint32_t count);
uint8_t SetZoom2Count(uint32_t count);
uint8_t SetZoom3Count(uint32_t count);
uint8_t SetFocusCount(uint32_t count);

/**
 * Tell whether a motor is moving.
 *
 * @param[out] running  1 moving, 0 at rest; 0 too when nothing was received, so look at the result;
 *                      untouched for a module that is not served
 * @return status of the query, 0 received; 0 too for a module that is not served
 *
 * Serves: zoom 1 and focus DE015, DF033, T5391; zoom 2 DE015, DF033; zoom 3 DF033.
 * Sends: zoom 1 query 0xBF (DE015), 0x8D (DF033) with argument 0, or 0x8C with 60 (T5391); zoom 2
 *        query 0x8F (DE015) or 0x8C (DF033) with 60; zoom 3 query 0xAC with 0; focus query 0x8F
 *        (DE015) or 0x8C (DF033, T5391) with 28. Reply byte 3 decides for the queries with argument
 *        0, reply byte 2 for the others.
 */
uint8_t getZoom1Status(uint8_t *running);
uint8_t getZoom2Status(uint8_t *running);
uint8_t getZoom3Status(uint8_t *running);
uint8_t getFocusStatus(uint8_t *running);

/**
 * De-energise a motor.
 *
 * Zoom 1 of DE015 is left energised at its holding value. A motor that moves is not waited for. The
 * motor's next move waits for the coils again, as its first one did; that holds for every module
 * code, also where nothing is sent.
 *
 * @return status of the last frame, 0 sent; 0 for zoom 1 on DF033, and for a module that is not
 *         served
 *
 * Blocks: zoom 1 on DE015 20 ms.
 * Serves: zoom 1 and focus DE015, DF033, T5391; zoom 2 DE015, DF033; zoom 3 DF033.
 * Sends: zoom 1 on DE015 command 62 with zeros, 61 with 0, 0, 0, 20 and 62 with 0, 0, 0, 1, each 10
 *        ms behind the one before; on DF033 PT5111Zoom1OFF(); on T5391 register 56 := 0x3DF. Zoom 2
 *        register 56 and focus register 24 := 0x3DF (DE015; focus on T5391 too) or 0x1DF (DF033).
 *        Zoom 3 command 26 with 0, 0, 0, 34.
 */
uint32_t setZoom1PowerOff(void);
uint32_t setZoom2PowerOff(void);
uint32_t setZoom3PowerOff(void);
uint32_t setFocusPowerOff(void);

/**
 * Do nothing: iris and IR-cut filter have no power-off of their own.
 *
 * @param[in] value  any value
 * @return `value`
 */
uint32_t setIrisPowerOff(uint32_t value);
uint32_t setICRPowerOff(uint32_t value);

/**
 * Do nothing: iris and IR-cut filter do not tell whether they move.
 *
 * @param[out] running  untouched; may be null
 * @return 0, always
 */
uint8_t getIrisStatus(uint8_t *running);
uint8_t getICRStatus(uint8_t *running);

/* ---- Photo-interrupters -------------------------------------------------------------------------
 *
 * A photo-interrupter marks a reference position of each lens motor. An application homes a motor
 * by moving it until getPI() changes; the controller can calibrate its interrupters by itself and
 * report the offsets.
 */

/**
 * Start the controller's calibration of one photo-interrupter, or of all.
 *
 * @param[in] which  0, 1 or 2 (not on T5391, which has no third); -1 all, one after the other; for
 *                   any other value nothing is sent
 * @return 0, always
 *
 * Serves: DE015, DF033, T5391.
 * Sends: for each, command 113 (DE015) or 32 (DF033, T5391) with its number, 0, 0 and 99 (DE015,
 *        DF033) or 97 (T5391).
 */
int32_t setPICalibraition(int32_t which);

/**
 * Switch the verification of the focus interrupter.
 *
 * DE015 can only be switched on.
 *
 * @param[in] on  not 0: on; 0: off, for which DE015 is sent nothing
 * @return 0, always
 *
 * Serves: DE015, DF033, T5391.
 * Sends: DE015 command 113 with 0, 0, 0, 16 and again with 1, 0, 0, 16; DF033, T5391 command 32
 *        with 0, 0, 0 and 16 (on) or 0 (off).
 */
int32_t FocusPIVerification(int32_t on);

/**
 * Switch the supply of the photo-interrupters.
 *
 * @param[in] on  1 on; any other value off
 * @return 0, always
 *
 * Sends: register 136 := 3 (on) or 0 (off).
 */
int32_t SetPIPower(int32_t on);

/**
 * Tell whether a photo-interrupter is interrupted.
 *
 * On DE015 its supply is switched on for that and stays on; the level at the converter decides,
 * from 1229 on interrupted.
 *
 * @param[in] sensor  number of the interrupter, 0 to 255
 * @return 1 interrupted; 0 not, or nothing was received; 0xFFFFFFFF for a module that is not served
 *
 * Blocks: 10 ms on DE015.
 * Serves: DE015, DF033, T5391.
 * Sends: DE015 register 252 := 499, register 136 := 2 and, after the wait, query 0x81 with
 *        `sensor`; DF033, T5391 query 0xA0 with `sensor`.
 */
uint32_t getPI(uint32_t sensor);

/**
 * Tell whether an interrupter of the DE051 unit is calibrated.
 *
 * @param[in] sensor  number of the interrupter, 0 to 255
 * @return bit 0 of reply byte 3: 1 calibrated; 0 not, or nothing was received
 *
 * Sends: query 0xCD with `sensor`, on every module code.
 */
uint32_t getPI_Cali_DE051(uint32_t sensor);

/**
 * Read the offset that a calibration found between a photo-interrupter and the motor's zero.
 *
 * GetFocusOffset() on DE015 is the query of getPI_Cali_DE051(0), read as a number.
 *
 * @return the offset, 32 bits, in counts of the motor; 0 too when nothing was received, and for a
 *         module that is not served
 *
 * Serves: focus DE015, DF033, T5391; zoom 2 DE015.
 * Sends: focus query 0xCD (DE015) or 0x91 (DF033, T5391), zoom 2 query 0xCE, with argument 0.
 */
uint32_t GetFocusOffset(void);
uint32_t GetZoom2Offset(void);

/* ---- Iris, IR-cut filter, heater and converter ----------------------------------------------- */

/**
 * Close (forward) or open (backward) the P-iris.
 *
 * What became of the words is not passed on.
 *
 * @param[in] speed  ignored; the iris moves at speed 100
 * @param[in] steps  motor steps, 0 to 65535; the rest is lost without notice
 * @return 0, always
 *
 * Serves: DE015.
 * Sends: piris_close() forward, piris_open() backward.
 */
uint32_t setIrisForward(uint8_t speed, uint32_t steps);
uint32_t setIrisBackward(uint8_t speed, uint32_t steps);

/**
 * Set the target of the DC iris.
 *
 * @param[in] level  0 to 65535, the rest is not sent; Get_DC_Range() has the unit's travel
 * @return `level` as it was given, sent or not: no status
 *
 * Sends: command 97 with 0, 0, level high, level low, on every module code.
 */
uint32_t setDCIrisABS(uint32_t level);

/**
 * Move the IR-cut filter into its on or off position.
 *
 * On T5391 the controller's own coil does it, in eleven register writes that no other register
 * write may come between. What became of them, or of the words, is not passed on.
 *
 * @param[in] speed  ignored
 * @param[in] steps  DE015: motor steps, as ICR_ON(); else ignored
 * @return 0, always
 *
 * Blocks: 200 ms (DF033), 510 ms (T5391).
 * Serves: DE015, DF033, T5391.
 * Sends: DE015, DF033 ICR_ON() or ICR_OFF(). T5391 registers 252 := 496, 130 := 0, 144 := 403, 160
 *        := 0, 182 := 0, 186 := 255 (on) or 767 (off), 190 := 8, 252 := 499, 130 := 3; after 500 ms
 *        130 := 1; after 10 ms 130 := 0.
 * Prints: on T5391 "T5391 ICR on" or "T5391 ICR off", before anything is sent.
 */
uint32_t setICRon(uint8_t speed, uint32_t steps);
uint32_t setICRoff(uint8_t speed, uint32_t steps);

/**
 * Set the heater.
 *
 * @param[in] level  0 to 255, in the program's unit; the rest is lost without notice
 * @return 0, always
 *
 * Sends: command 7 with 0, 0, 0, level, on every module code.
 */
uint32_t setHeater(uint32_t level);

/**
 * Read a channel of the converter.
 *
 * @param[in] channel  0 to 255
 * @return the reading, 0 to 65535; 0 too when nothing was received
 *
 * Blocks: 10 ms.
 * Sends: command 32 with 0, 0, 0, 96, and after the wait query 0x81 with `channel`, on every module
 *        code, whether or not the module has such an input.
 */
uint32_t getADC(uint32_t channel);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
