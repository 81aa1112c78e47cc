// SPDX-License-Identifier: MIT
//
// quillon-bench-views <rounds> <library that answers at once>: the tree and a page against bare
// views, without a screen.
#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "bench/PageRefresh.h"
#include "bench/TreeRebuild.h"
#include "devlink/LoadedLibrary.h"

int main(int argc, char** argv) {
  using namespace quillon;
  const QApplication application(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s <rounds> <library>\n", argv[0]);
    return 2;
  }
  const auto loaded = LoadLibraryFile(argv[2]);
  if (const auto* const reason = std::get_if<std::string>(&loaded)) {
    std::fprintf(stderr, "%s\n", reason->c_str());
    return 1;
  }
  const int rounds = std::atoi(argv[1]);
  const bool measured =
      bench::MeasureTreeRebuild(rounds) &&
      bench::MeasurePageRefresh(rounds, *std::get<std::unique_ptr<HidLibrary>>(loaded));
  return measured ? 0 : 1;
}
