// SPDX-License-Identifier: MIT
//
// sample-image <version word> <file>: writes a made-up firmware image that a simulated board takes.
// It begins with the version word, high byte first, which such a board reports once it runs; the
// rest is noise, the same for the same version.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "storage/ReplaceFile.h"

namespace {

// As large as real firmware, so that programming it takes about a second.
constexpr int kImageBytes = 30000;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "Usage: sample-image <version word> <file>\n";
    return EXIT_FAILURE;
  }
  const auto version = static_cast<unsigned>(std::strtoul(argv[1], nullptr, 16));
  std::string image = {static_cast<char>(version >> 8 & 0xFF), static_cast<char>(version & 0xFF)};
  std::minstd_rand noise(version);
  while (image.size() < kImageBytes) image.push_back(static_cast<char>(noise() >> 8 & 0xFF));
  const auto problem = quillon::ReplaceFile(argv[2], image, quillon::FileReaders::kEverybody);
  if (problem) std::cerr << argv[2] << ": " << problem->Sentence("It") << '\n';
  return problem ? EXIT_FAILURE : EXIT_SUCCESS;
}
