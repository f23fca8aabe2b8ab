// The data that the benchmarks decode: made here, the same on every machine, shaped like what the
// entries of documents hold.
#pragma once

#include "base/bytes.h"

/// Nested lists of chunks: pointer leaves of 16 bytes, and objects with outlines of 32-bit
/// coordinates.
Bytes riffSample(std::size_t size);
/// The same with saved views before its top-level chunks: 560 before the first, or one before each.
Bytes riffWithViews(std::size_t size, bool isEverywhere);
/// A colour palette with one element a line.
Bytes paletteSample(std::size_t size);
/// An uncompressed 24-bit drawing: a white page with a photograph, flat and graded shapes.
Bytes bitmapSample(std::size_t size);
/// A photograph's rows as PNG stores them: a filter byte and differences to the left neighbour.
Bytes pngRowsSample(std::size_t size);
/// Sentences of words in a natural distribution.
Bytes textSample(std::size_t size);
/// Three bytes over and over, as the rows of a one-coloured bitmap.
Bytes periodThreeSample(std::size_t size);
/// The first bytes of a large program of this system; empty where none is found.
Bytes executableSample(std::size_t size);
