// Timing contenders against each other on a machine that drifts: all of them in every round, and
// the medians of the rounds.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Contender {
    std::string name;
    std::function<void()> run;
    /// Comes before every run and is not timed.
    std::function<void()> prepare = {};
};

struct Standing {
    double seconds;  // median time of one run
    double ratio;    // median over the rounds of its time to the first contender's
};

/// Runs every contender once to warm up, then in `rounds` rounds, each long enough to be timed
/// well. The order rotates. A standing's `ratio` above 1 says that the first contender is faster.
std::vector<Standing> measure(const std::vector<Contender>& contenders, int rounds);

/// Runs one contender once, inside a function that callgrind finds by its name, `countedRun`. The
/// program's exit code.
int runOnce(const std::vector<Contender>& contenders, const std::string& name);

double geometricMean(const std::vector<double>& values);
