// The decoder once more, as it is where the processor lacks what the fast form uses.
#define MIRELO_PORTABLE
#define inflateRaw inflateRawPortable
#include "slim/inflate.cpp"
