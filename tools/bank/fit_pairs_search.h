// Searches for the parameters of a pair.
#pragma once

#include <functional>
#include <vector>

namespace talix::bank {

// Place of the smallest value between LOW and HIGH: a scan over STEPS intervals, then the golden section around the
// best of them.
double golden_search(const std::function<double(double)>& f, double low, double high, int steps);

// Downhill simplex of Nelder and Mead, begun twice: from START with edges STEP, then from the first result.
std::vector<double> simplex_search(const std::function<double(const std::vector<double>&)>& f,
                                   const std::vector<double>& start, const std::vector<double>& step);

}  // namespace talix::bank
