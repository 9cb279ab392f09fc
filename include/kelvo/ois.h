/**
 * Calibration of the stabiliser (DE015) and of the iris loop (DF033, T5391).
 *
 * The conventions at the top of kelvo.h hold for all of it. A record is a small binary file of
 * 32-bit numbers in the processor's byte order, each a 16-bit value; docs/wire.md lists the fields.
 * A file that opens but is short, empty or cannot be read is not noticed: what is missing counts as
 * 0.
 */
#ifndef KELVO_OIS_H
#define KELVO_OIS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

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

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
