// SPDX-License-Identifier: MIT
//
// quillon-tour <folder>: shows the main job of Quillon on simulated boards and leaves a transcript
// and pictures in the folder. Fails when something is not as it should be.
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "app/CQuillonApp.h"
#include "stage/Palettes.h"
#include "stage/Surroundings.h"
#include "tour/Tour.h"

namespace {

constexpr std::chrono::seconds kLongest{50};

int Show(int& argc, char** argv) {
  if (argc != 2) {
    std::fputs("Usage: quillon-tour <folder>\n", stderr);
    return EXIT_FAILURE;
  }
  const QDir folder(QString::fromLocal8Bit(argv[1]));
  if (!folder.mkpath(QStringLiteral("."))) throw std::runtime_error("There is no such folder.");
  quillon::stage::UseSimulatedBoards(folder);
  quillon::stage::UseLargeOffscreen(folder);
  quillon::CQuillonApp application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  quillon::stage::UsePalette(QStringLiteral("light"));
  // Also while a box waits for an answer that does not come.
  QTimer::singleShot(kLongest, [] {
    std::fputs("quillon-tour: it takes too long; the transcript says how far it came\n", stderr);
    std::_Exit(EXIT_FAILURE);
  });
  quillon::Tour(folder).Run();
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Show(argc, argv);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "quillon-tour: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}
