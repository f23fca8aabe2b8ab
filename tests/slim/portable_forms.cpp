// The decoder and the checksum once more, as they are where the processor lacks what the fast forms
// use.
#define MIRELO_PORTABLE
#define crc32 crc32Portable
#define inflateRaw inflateRawPortable
#define sumDecoded sumDecodedPortable
#include "slim/crc32.cpp"
#include "slim/inflate.cpp"
