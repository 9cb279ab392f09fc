/**
 * Bus lock, delays, and the five frames that the lens controller understands.
 *
 * The conventions at the top of kelvo.h hold for all of it.
 */
#ifndef KELVO_BUS_H
#define KELVO_BUS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Descriptor of /dev/spi_renesas, the lens controller's device; -1 at load and while closed.
 *
 * Written by InitSPI(), so by every function that sends a frame to the lens controller, and by
 * CloseSPI(). After an open that failed it is -1.
 */
extern int32_t fd;

/**
 * Code of the fitted lens module: 7 DE015, 8 DF033, 9 T5391; 7 at load.
 *
 * Written by Init30516(), Init30516_DF033(), Init30516_T5391() and SetLensType(). Every function
 * with a "Serves" line reads it. GetLensType() also tells whether it means anything yet.
 */
extern int32_t gi30516Ver;

/* ---- Bus lock -----------------------------------------------------------------------------------
 *
 * A System V semaphore set with one member: 0 the bus is free, 1 somebody holds it. Its key is
 * ftok("/lib/libkelvo.so", 0), made anew for each lock and each unlock. Every frame function but
 * RecvCommand() takes the lock by itself, for its one transfer, and makes the transfer all the same
 * when the lock cannot be had. The lock counts holders, not owners: a process that holds it and
 * sends a frame waits for itself, for ever.
 */

/**
 * Find the semaphore set of a key, or create it free.
 *
 * A set that exists keeps its value. A new one has one member of value 0 and mode 0666. It is never
 * removed.
 *
 * @param[in] key  System V key, as ftok() returns it; its -1 is passed on as the key 0xFFFFFFFF
 * @return the identifier of the set; -1: it could neither be found nor created, or a new one could
 *         not be set to 0
 */
int32_t makeSem(uint32_t key);

/**
 * Take the bus lock.
 *
 * One semop() on member 0: wait for the value 0 and add 1, both with SEM_UNDO, so the kernel gives
 * the lock back when the process ends, however it ends.
 *
 * @param[in] semid  what makeSem() returned; its -1 makes the call fail
 * @return 0: the caller holds the lock; -1: no such set, the set was removed, or a signal handler
 *         ran
 *
 * Blocks: until the lock is free; there is no time-out.
 */
int32_t lockSem(uint32_t semid);

/**
 * Give the bus lock back.
 *
 * A lock that is free is left alone: a value below 0 could never be waited for again. Who took the
 * lock is not asked.
 *
 * @param[in] semid  what makeSem() returned; its -1 makes the call fail
 * @return 0: the lock is free now; -1: it was free already, or there is no such set
 */
int32_t unlockSem(uint32_t semid);

/**
 * Sleep.
 *
 * @param[in] ms  milliseconds, 0 to 4294967; the product in microseconds has 32 bits, so larger
 *                values wrap around (4294968 sleeps for 704 us)
 * @return 0: the time is over; -1: a signal handler cut it short
 *
 * Blocks: `ms`.
 */
int32_t delay_ms(uint32_t ms);

/* ---- Device and reset line ------------------------------------------------------------------- */

/**
 * Open the lens controller's device unless it is open.
 *
 * Every frame function begins with this, so an application need not. When it fails, the frame
 * function goes on, and its transfer fails on descriptor -1.
 *
 * @return 0: fd is open; -1: /dev/spi_renesas cannot be opened for reading and writing
 *
 * Prints: "Open /dev/spi_renesas fail" on standard error when it fails.
 */
int32_t InitSPI(void);

/**
 * Close the lens controller's device if it is open, and set fd to -1.
 *
 * Nothing in the library calls it; the next frame opens the device again.
 *
 * @return 0, always
 */
int32_t CloseSPI(void);

/**
 * Leave the bus speed of an open device as it is.
 *
 * The speed request is made only when the device could not be opened, on descriptor -1 and under
 * the bus lock, where it fails. It never reaches an open device, and the bus keeps the driver's own
 * speed. A boot asks for 250000 Hz before a download and 1000000 Hz after it, and nothing changes.
 * Callers rely on this.
 *
 * @param[in] speed  bus speed in hertz, any value
 * @return 0, always
 */
int32_t setSPISpeed(uint32_t speed);

/**
 * Reset the lens controller through its reset line, GPIO 33.
 *
 * Four shell commands, run with system(): export the line, make it an output, drive it low, and,
 * after 500 ms, high. How they end is not looked at; an exported line makes the first one fail, and
 * that is fine. The controller then has no program and understands boot-loader frames only.
 *
 * @return the result of the last sleep: 0, or -1 when a signal handler cut it short
 *
 * Blocks: 600 ms, and the shells.
 * Sends: nothing on a bus; writes to /sys/class/gpio.
 */
int32_t ResetR2J30516(void);

/* ---- Boot-loader frames -------------------------------------------------------------------------
 *
 * Understood between a reset and the start of the downloaded program. They neither look at the
 * latch nor change it.
 */

/**
 * Send one boot-loader command.
 *
 * No retry. What is received is printed and then lost.
 *
 * @param[in] code  command: 0xE2 to 0xE5, 0xF0 to 0xF5 (docs/wire.md lists them)
 * @param[in] d1    first data byte; of a number the lowest
 * @param[in] d2    second data byte
 * @param[in] d3    third data byte
 * @return the driver's result: 0 sent; -1 the device is not open or refused the transfer
 *
 * Sends: code, d1, d2, d3, 0xA0.
 * Prints: "Addr:" with the code and the five received bytes.
 */
int32_t WriteCommand(uint8_t code, uint8_t d1, uint8_t d2, uint8_t d3);

/**
 * Send one program image to the boot loader: a header that names the memory, then the image.
 *
 * Address and size must have been sent before (DownloadCode() does all of it). Header and image are
 * two transfers with the lock taken for each. No retry; the header's result is not looked at.
 *
 * @param[in] memId  memory of the controller: 0x21, 0x22 or 0x23
 * @param[in] size   bytes in the image, 0 or more
 * @param[in] data   the image, `size` bytes; may be null when `size` is negative
 * @return the driver's result for the image: 0 sent; -1 the device is not open or refused the
 *         transfer; -1 too, with the header but no image sent, when `size` is negative or there is
 *         no memory for two buffers of that size
 *
 * Blocks: 200 ms, half of it before the header and half behind it.
 * Sends: 0xE1, 0x11, memId, 0x00, 0xA0; then the image.
 * Prints: "Download FW size:" with the size; "Read Addr2:" with the memory and sixteen bytes, which
 *         are always 0x00 because they are shown before the image is exchanged.
 */
int32_t WriteData(uint8_t memId, int32_t size, const uint8_t *data);

/**
 * Ask the boot loader one question.
 *
 * One retry when the transfer fails. The result does not tell whether it failed: clear `rx` before
 * the call to know a reply when it comes.
 *
 * @param[in]  code  question: 0x66 bits 0 to 15 of the last download's checksum, 0x67 bits 16 to 31
 * @param[out] rx    the five received bytes, of which rx[2] is the low byte of the answer and rx[3]
 *                   the high one; after a failure whatever the driver left there, as a rule what
 *                   was there before
 * @param[in]  len   ignored; always five bytes are exchanged
 * @return the latch, unchanged, not the outcome: 0 after a boot or SetLensType(), -1 in a process
 *         in which neither has run, else the result of the command or query frame that failed
 *
 * Sends: code, 0x00, 0x00, 0x00, 0xA0.
 * Prints: "ReadSpi Error" with the driver's result when the retry fails too.
 */
int32_t ReadSpi(uint8_t code, uint8_t *rx, int32_t len);

/* ---- Frames of the running program --------------------------------------------------------------
 *
 * Codes 0x00 to 0x7F are commands and 0x80 to 0xFF queries, but for the query 0x3A of
 * GetZoom3Count(); docs/wire.md lists those in use. The frame functions send whatever code they are
 * given.
 */

/**
 * Send one command to the lens controller's program.
 *
 * One retry when the transfer fails; any result of the driver but 0 is a failure. A second failure
 * sets the latch. The bus lock is taken in any case, so a process whose latch is set still waits
 * its turn.
 *
 * @param[in] cmd  command code
 * @param[in] a1   first argument byte
 * @param[in] a2   second argument byte
 * @param[in] a3   third argument byte; of a 16-bit value the high one
 * @param[in] a4   fourth argument byte; of a 16-bit value the low one
 * @return the low byte of the latch: 0 sent; 0xFF the transfer and its retry failed with -1, or
 *         nothing was sent because of such a failure before or because no boot or SetLensType() has
 *         run; another value likewise for another result of the driver
 *
 * Sends: cmd, a1, a2, a3, a4, their sum modulo 256, 0x00.
 * Prints: "SendCommand Error" with the driver's result when the retry fails too.
 */
uint8_t SendCommand(uint8_t cmd, uint8_t a1, uint8_t a2, uint8_t a3, uint8_t a4);

/**
 * Ask the lens controller's program one question.
 *
 * No retry, and no bus lock: this one transfer can meet another process's frame. A failure sets the
 * latch without a word.
 *
 * @param[in]  cmd  query code
 * @param[in]  a1   argument byte
 * @param[out] out  four reply bytes; a 16-bit answer is out[2] (high) and out[3] (low). After a
 *                  transfer that failed what the driver received, as a rule zeros; untouched when
 *                  the latch was set before. May be null only while the latch is set.
 * @return the low byte of the latch: 0 received; else as SendCommand()
 *
 * Sends: cmd, 0x00, a1, 0x00, 0x01, the sum of these modulo 256, and six times 0x00; the argument
 *        is in byte 1 instead of byte 2 for the codes 0xA0 and 0x81, and byte 4 is 0x00 for 0x81.
 */
uint8_t RecvCommand(uint8_t cmd, uint8_t a1, uint8_t *out);

/**
 * Write a 16-bit register through the lens controller's program.
 *
 * @param[in] reg    register, 0 to 255
 * @param[in] value  16 bits; the sign has no meaning
 * @return as SendCommand()
 *
 * Sends: command 15 on DE015 and command 12 for every other module code, with 0, reg, value high,
 *        value low.
 */
uint8_t reg_wt16_0x0c(uint8_t reg, int16_t value);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
