// ZIP archives in memory: parse, look up, extract, mark deleted, replace. Single-disk archives with
// 32-bit sizes; stored and deflated entries can be extracted, others are only carried along.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

/// One entry as the central directory tells it.
struct ZipEntry {
    /// The name's bytes as they stand in the central directory, and decoded as UTF-8 whatever the
    /// entry's flags say.
    std::string rawName;
    std::wstring name;
    std::uint16_t method = 0;
    std::uint16_t modTime = 0;
    std::uint16_t modDate = 0;
    std::uint32_t crc32 = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t uncompressedSize = 0;
    /// A deleted entry is invisible to every look-up and is not written again.
    bool deleted = false;

    /// The stored bytes, compressed for a deflated entry: a view of the archive's image, or of the
    /// contents that replaced it. Empty when the local header could not be used.
    ByteView data() const { return replacement ? ByteView(*replacement) : stored; }

    ByteView stored;
    std::optional<Bytes> replacement;
};

struct OpenResult {
    bool ok = false;
    /// The entries parsed, also on failure.
    std::uint32_t entryCount = 0;
    /// "ZIP structure parsing failed", or empty.
    std::wstring error;
};

/// An archive and the file image that its entries view. Names match in an ordinal comparison that
/// ignores case and takes "\" for "/"; look-ups find the first entry that matches and is not
/// deleted. Nothing here throws on any input; memory that runs out fails the one call.
class ZipArchive {
  public:
    ZipArchive() = default;
    ZipArchive(ZipArchive&&) = default;
    ZipArchive& operator=(ZipArchive&&) = default;
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    /// Parses a whole file image, which the archive keeps; handed over by move it is not copied.
    /// An archive whose directory breaks off opens with the entries before the break. What was
    /// open before is dropped.
    OpenResult openFromBytes(Bytes bytes);

    /// The same without taking the image over: it has to outlive the archive.
    OpenResult openView(ByteView image);

    /// The decoded contents. Empty when nothing matches, the method is neither 0 nor 8, or the
    /// contents do not decode. A deflated entry gives at most its `uncompressedSize` bytes; a
    /// stream that holds more is an error, one that holds fewer is not.
    Bytes extractEntry(std::wstring_view name);

    /// The same without a copy of stored contents: a view of the archive's own bytes, or of
    /// `scratch` after decoding into it.
    ByteView viewEntry(std::wstring_view name, Bytes& scratch);

    bool hasEntry(std::wstring_view name) const;

    /// The names of the entries that are not deleted, in order.
    std::vector<std::wstring> listEntryNames() const;

    /// False if nothing matches.
    bool removeEntry(std::wstring_view name);

    /// Removes every entry below a folder given as a prefix that ends in "/"; gives their number.
    std::uint32_t removeEntriesUnder(std::wstring_view prefix);

    /// Makes `bytes` the contents of an entry, which becomes stored and keeps its time and its raw
    /// name. False if nothing matches, or for contents of 4 GiB and more.
    bool replaceEntry(std::wstring_view name, Bytes bytes);

    /// The number of entries, deleted ones included.
    std::size_t entryCount() const { return entries_.size(); }

    /// In the order of the central directory, deleted ones included.
    const std::vector<ZipEntry>& entries() const { return entries_; }

    /// The file image, and where in it the end record stands that was found.
    ByteView image() const { return image_; }
    std::size_t endRecord() const { return endRecord_; }

    /// Gives away the image that `openFromBytes` took. Only the entries remain, and what they view
    /// is the new owner's to keep.
    Bytes takeImage() { return std::move(owned_); }

    bool loaded() const { return loaded_; }

    /// True once memory was too short to extract an entry: an empty result may then not mean what
    /// it says.
    bool outOfMemory() const { return outOfMemory_; }

    /// True when `name` begins with `prefix`, compared as names are.
    static bool nameStartsWith(std::wstring_view name, std::wstring_view prefix);

  private:
    OpenResult parse();

    Bytes owned_;
    ByteView image_;
    std::size_t endRecord_ = 0;
    std::vector<ZipEntry> entries_;
    bool loaded_ = false;
    bool outOfMemory_ = false;
};

/// The length of an entry's extraction, found without memory for its contents.
std::uint64_t extractedLength(const ZipEntry& entry);
