/**
 * I2C link to the two motor controllers of the head: slave address 40 pans, 41 tilts.
 *
 * The conventions at the top of kelvo.h hold for all of it. There is no latch and no lock: the
 * kernel takes requests of several processes one by one, and a sequence of them is not protected.
 * Nothing is retried or printed when a transfer fails. Registers of more than one byte travel high
 * byte first.
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

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
