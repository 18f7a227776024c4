#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tgx::bench {

/// What a process took.
struct Cost {
  double seconds = 0;    ///< from start to end
  double processor = 0;  ///< seconds of the processor, which a busy machine changes less
  double megabytes = 0;  ///< peak resident set
};

/// Runs a command to its end, its output thrown away. Throws if it cannot be run or fails.
Cost Run(const std::vector<std::string>& command);

/// What `work` answers, run in a process of its own. For work that takes much memory: the peak of a process counts that of
/// the process which it was started from.
std::size_t Apart(const std::function<std::size_t()>& work);

/// Of each number by itself.
Cost Median(std::vector<Cost> costs);

/// One process after the other.
Cost Together(const Cost& first, const Cost& second);

void PrintLine(const char* what, const Cost& cost);
void PrintRatio(const char* what, const Cost& cost, const Cost& base);

/// Gives `work` a folder that lives as long as it runs. The answer is an exit status: 1 when it throws, with the reason on
/// standard error.
int InTemporaryFolder(const std::function<void(const std::string& folder)>& work);

}  // namespace tgx::bench
