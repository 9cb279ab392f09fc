/* Embeds the program images as the nine exported arrays. The folder comes with the include path. */

    .macro image symbol, file, size
    .globl \symbol
    .type \symbol, %object
    .size \symbol, \size
    .balign 8
\symbol:
    .incbin "\file"
    .if (. - \symbol) != \size
    .error "\file must have exactly \size bytes"
    .endif
    .endm

#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) image symbol, file, size

    .section .rodata
#include "wire/program_images.inc"

    .section .note.GNU-stack, "", %progbits
