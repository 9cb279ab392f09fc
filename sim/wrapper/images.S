/* The program images once more, so that the camera knows an intact download from any other. The folder
 * comes with the include path; the sizes are those that the library's own copy is checked for. */

    .macro image symbol, file
    .globl \symbol
    .hidden \symbol
    .type \symbol, %object
\symbol:
    .incbin "\file"
    .size \symbol, . - \symbol
    .endm

#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) image sim_##symbol, file

    .section .rodata
#include "wire/program_images.inc"

    .section .note.GNU-stack, "", %progbits
