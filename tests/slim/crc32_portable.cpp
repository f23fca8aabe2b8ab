// The checksum once more, as it is where the processor cannot fold.
#define MIRELO_PORTABLE
#define crc32 crc32Portable
#include "slim/crc32.cpp"
