#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace reader_test {

/// One of the samples, changed in one to eight places.
std::string mutate(const std::vector<std::string>& samples, std::mt19937& random);

/// How many documents to make: what the environment variable TAVRIN_MUTATIONS says, or `standard`.
std::size_t mutationCount(std::size_t standard);

}  // namespace reader_test
