#pragma once

#include <random>
#include <string>

namespace testing_support {

// Documents as archives really hold them, made from the examples; each as the lines of its file.

/// An example that lost some of its features.
std::string DamagedExample(std::mt19937& random);
/// An example in which some attributes hold values that nobody expects there.
std::string OddExample(std::mt19937& random);

}  // namespace testing_support
