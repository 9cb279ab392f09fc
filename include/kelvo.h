/**
 * libkelvo: drives the motorised lens and the pan/tilt head of a camera module.
 *
 * This header takes in the four that make up the interface: kelvo/bus.h (bus lock, delays, frames
 * of the lens controller), kelvo/lens.h (lens modules, boot, lens motors), kelvo/ois.h
 * (calibration, stabiliser, quality checks) and kelvo/pantilt.h (the head). docs/guide.md is the
 * introduction, docs/interface.md shows what is called in which order, docs/wire.md every frame.
 *
 * What holds for every function is said here, once:
 *
 *  1. Results. 0 is success. -1 is a device, file or lock that could not be had, or a request that
 *     the kernel refused. An 8-bit status of a frame is 0 when the frame was sent and the low byte
 *     of the latch (2) when it was not. What reads otherwise says so: SendI2C() has 1 for success,
 *     ReadI2C() 0; ReadSpi() returns the latch; SendPT5111CMD() can return a lens module's code or
 *     the length of a message; SetPanWakeUp() and SetTiltWakeUp() return -1 for success. Questions
 *     of state to the head have 0 for yes (GetPanStatus() at rest, PanGetCaliStatus() calibrated)
 *     and -1 for no. Functions that return a count, a position or a setting have no value for a
 *     failure. Many return 0 whatever the bus did. errno is no part of the interface.
 *  2. Latch. Command and query frames to the lens controller, and all that is built of them, share
 *     one error latch in each process. It is -1 at load, so nothing is sent before a boot or
 *     SetLensType(). While it is 0, each transfer leaves its result there. Once it is not 0, these
 *     functions send nothing, return its low byte (0xFF for -1) and go on to their end, until one
 *     of Init30516(), Init30516_DF033(), Init30516_T5391() and SetLensType() clears it. Boot-loader
 *     frames (WriteCommand(), WriteData(), ReadSpi()), the PT5111 on its own device (DE015) and the
 *     I2C link have no latch: each call tries anew.
 *  3. Lens modules and controller families. Code 7 is DE015, 8 is DF033, 9 is T5391; gi30516Ver
 *     holds it. The head's controllers are of the Vetra family, 1, or of the Tasmere family, 2; the
 *     first pan/tilt call of a process finds out which, once and for good (GetMotorType()). A
 *     "Serves" line names the modules, or in kelvo/pantilt.h the families, for which a function
 *     does its work; for any other it sends nothing and returns 0, a position too, unless it says
 *     otherwise. That is not an error.
 *  4. Buffers belong to the caller and are used during the call alone. The library keeps no pointer
 *     and returns none. Where a function reads replies into a buffer of its own, that buffer is
 *     zeroed once, when the function begins: while nothing is received, what is printed or returned
 *     is zero or the last reply that did come, never memory that nobody wrote.
 *  5. Null pointers are not checked. A call with one is undefined, except where a comment says "may
 *     be null". Neither are ranges: a value outside the one given is cut to the bits that are sent,
 *     unless the comment says what else it does.
 *  6. Processes. Several processes can use the lens controller at once: a lock between them, the
 *     bus lock, is held for exactly one transfer and its one retry. A boot, a move or a calibration
 *     is many transfers, and another process can come between them. No lock is held for query
 *     frames, the PT5111 on its own device and the I2C link. What the library remembers (latch,
 *     module, family, gains last written, tilt limits) each process remembers for itself.
 *  7. Threads. There are none in the library, and all of its state is plain variables of the
 *     process: one thread at a time may call.
 *  8. Units. Speeds of lens moves are levels without a unit, 0 to 255, and speeds of the head 0 to
 *     7200; counts are motor steps, positions of the head 0 to 65535 for one full range of an axis,
 *     times milliseconds and bus speeds hertz, unless a comment names others. Numbers of 16 and 32
 *     bits travel high byte first, but low byte first in boot-loader frames.
 *  9. Time. Every function runs to its end on the caller's thread and sleeps where its "Blocks"
 *     line says so, with usleep() and sleep(). The transfers themselves and waiting for the bus
 *     lock, which has no time-out, come on top. No move is waited for.
 * 10. Diagnostics go to standard output, through stdio, always. Only the open failures of the two
 *     SPI devices go to standard error ("Open /dev/spi_renesas fail", "Open /dev/spi_pt5111 fail").
 *     "Prints" gives the lines. Neither stream is flushed.
 * 11. Names. Exported data bind as usual: a program that defines an `fd`, `hndl` or another of
 *     these names with external linkage replaces the library's, and both then work on that one
 *     variable. Functions bind inside the library: a program that has a stop() of its own calls its
 *     own, and the library goes on calling the library's.
 * 12. What is not in these headers is not interface. There are no macros beside the include guards.
 *
 * Comments have one shape: what the function does; parameters with direction, unit and range; the
 * results with their causes; then "Blocks" (time slept), "Serves" (lens modules or controller
 * families), "Sends" (bytes on a wire, frames without their checksums) and "Prints". A line that is
 * missing means: does not sleep; the same for every lens module or family; sends nothing; prints
 * nothing. Twins share one comment.
 */
#ifndef KELVO_H
#define KELVO_H

#include "kelvo/bus.h"      // IWYU pragma: export
#include "kelvo/lens.h"     // IWYU pragma: export
#include "kelvo/ois.h"      // IWYU pragma: export
#include "kelvo/pantilt.h"  // IWYU pragma: export

#endif
