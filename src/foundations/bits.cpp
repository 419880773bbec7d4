/* Bit scans of a 32-bit word. Plain arithmetic: a compiler's own bit count may bring a table along.
 */
#include "kxmaths5/foundations.h"

uint32_t KXBitCount(uint32_t v)
{
    // Counts of pairs of bits, then of groups of four, then of bytes, which the product adds up in
    // its highest byte.
    v = v - ((v >> 1) & 0x55555555U);
    v = (v & 0x33333333U) + ((v >> 2) & 0x33333333U);
    v = (v + (v >> 4)) & 0x0f0f0f0fU;
    return (v * 0x01010101U) >> 24;
}

uint32_t KXLSB(uint32_t v)
{
    // The bits below the lowest one; without any, all 32.
    return KXBitCount(~v & (v - 1U));
}

uint32_t KXMSB(uint32_t v)
{
    // The highest bit and all below it, without bit 0: none of them for 0 and for 1.
    v |= v >> 1;
    v |= v >> 2;
    v |= v >> 4;
    v |= v >> 8;
    v |= v >> 16;
    return KXBitCount(v >> 1);
}
