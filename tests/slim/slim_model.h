// A second, straightforward model of slimming: every step builds its whole result anew. The product
// is compared with it byte for byte.
#pragma once

#include <string>

#include "base/bytes.h"

bool modelIsRiff(const Bytes& stream);
std::uint32_t modelCount(const Bytes& stream, const std::string& fourcc);
int modelStrip(Bytes& stream, const std::string& fourcc);
void modelNormalise(Bytes& stream);

struct ModelOutcome {
    /// "clean", "written" or words of the failure.
    std::string state;
    Bytes image;
    std::uint32_t views = 0;
    std::uint32_t colors = 0;
    std::uint32_t previews = 0;
};

ModelOutcome modelSlim(const Bytes& file);
