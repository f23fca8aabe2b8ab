"""A Windows program's headers (PE format), as far as finishing and checking one needs them."""

import struct

LOAD_CONFIG = 10
LOAD_CONFIG_SIZE = 0x94


class ProgramFile:
    def __init__(self, data):
        self.data = bytearray(data)
        self.coff = self.number("<I", 0x3C) + 4  # behind the signature "PE\0\0"
        if self.data[self.coff - 4:self.coff] != b"PE\0\0" or self.number("<H", self.optional) != 0x20B:
            raise ValueError("not a 64-bit Windows program")

    def number(self, form, offset):
        return struct.unpack_from(form, self.data, offset)[0]

    def put(self, form, offset, *values):
        struct.pack_into(form, self.data, offset, *values)

    @property
    def optional(self):
        return self.coff + 20

    @property
    def time_offset(self):
        return self.coff + 4

    @property
    def checksum_offset(self):
        return self.optional + 64

    def subsystem(self):
        """Subsystem, and its lowest version of Windows."""
        major, minor = struct.unpack_from("<HH", self.data, self.optional + 48)
        return self.number("<H", self.optional + 68), (major, minor)

    def characteristics(self):
        return self.number("<H", self.optional + 70)

    def directory_offset(self, index):
        return self.optional + 112 + 8 * index

    def directory(self, index):
        """Address in memory and size of one of the data directories."""
        return struct.unpack_from("<II", self.data, self.directory_offset(index))

    def sections(self):
        """Address in memory, size, place in the file."""
        first = self.optional + self.number("<H", self.coff + 16)
        for index in range(self.number("<H", self.coff + 2)):
            size, address, stored, place = struct.unpack_from("<IIII", self.data, first + 40 * index + 8)
            yield address, max(size, stored), place

    def place_of(self, address):
        for start, size, place in self.sections():
            if start <= address < start + size:
                return place + address - start
        raise ValueError(f"nothing is stored for {address:#x}")

    def address_of(self, place):
        for start, size, first in self.sections():
            if first <= place < first + size:
                return start + place - first
        raise ValueError(f"{place:#x} is in no section")

    def text_at(self, address):
        place = self.place_of(address)
        return self.data[place:self.data.index(0, place)].decode("ascii")

    def imports(self):
        """Pairs of library and function, the library in lower case; a function without a name is its number."""
        entry = self.place_of(self.directory(1)[0])
        while self.number("<I", entry + 12):
            library = self.text_at(self.number("<I", entry + 12)).lower()
            thunk = self.place_of(self.number("<I", entry) or self.number("<I", entry + 16))
            while value := self.number("<Q", thunk):
                yield library, f"#{value & 0xFFFF}" if value >> 63 else self.text_at(value + 2)
                thunk += 8
            entry += 20

    def set_checksum(self):
        """The sum of all 16-bit words, carries added, and the file's size."""
        self.put("<I", self.checksum_offset, 0)
        words = self.data + b"\0" * (len(self.data) % 2)
        total = sum(struct.unpack(f"<{len(words) // 2}H", words))
        while total >> 16:
            total = (total & 0xFFFF) + (total >> 16)
        self.put("<I", self.checksum_offset, total + len(self.data))
