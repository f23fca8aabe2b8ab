// A second, straightforward model of slimming: every step builds its whole result anew. The product
// is compared with it byte for byte.
#pragma once

#include <string>

#include "base/bytes.h"

bool modelIsRiff(const Bytes& stream);
/// The stream without these chunks, and their number; -1 for what is no stream.
int modelStrip(Bytes& stream, const std::string& fourcc);
void modelNormalise(Bytes& stream);

struct ModelOutcome {
    /// "clean", "written" or words of the failure.
    std::string state;
    Bytes image = {};
    std::uint32_t views = 0;
    std::uint32_t colors = 0;
    std::uint32_t previews = 0;
    /// Every entry is there, whole and as its headers say. What is not must not be written.
    bool isIntact = false;
    /// Repairing a stream changed what it holds; whether that is a loss is left open.
    bool isRepaired = false;
};

ModelOutcome modelSlim(const Bytes& file);
