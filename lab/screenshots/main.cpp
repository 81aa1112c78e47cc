// SPDX-License-Identifier: MIT
//
// quillon-screenshots <folder> [picture...] --palette light|dark --scale N: pictures of the window
// for every board and page, or only those of these file names, at N device pixels to a pixel.
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "app/CQuillonApp.h"
#include "screenshots/Screenshots.h"
#include "stage/Palettes.h"
#include "stage/Surroundings.h"

namespace {

using quillon::stage::UsePalette;

struct Wish {
  QString folder;
  QStringList pictures;
  QString palette;
  QString scale;
};

std::optional<Wish> WishOf(int argc, char** argv) {
  QCommandLineParser parser;
  parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where pictures go"));
  parser.addPositionalArgument(QStringLiteral("picture"), QStringLiteral("only these"));
  parser.addOption({QStringLiteral("palette"), QString(), QStringLiteral("light|dark")});
  parser.addOption({QStringLiteral("scale"), QString(), QStringLiteral("N")});
  QStringList words;
  for (int i = 0; i < argc; ++i) words << QString::fromLocal8Bit(argv[i]);
  const bool known = parser.parse(words);
  const QStringList names = parser.positionalArguments();
  const Wish wish{names.value(0), names.mid(1), parser.value(QStringLiteral("palette")),
                  parser.value(QStringLiteral("scale"))};
  const bool usable =
      known && !names.isEmpty() && wish.scale.toDouble() >= 1 && wish.scale.toDouble() <= 4;
  return usable ? std::optional(wish) : std::nullopt;
}

int Refuse() {
  std::fputs(
      "Usage: quillon-screenshots <folder> [picture...] --palette light|dark --scale N (1 to 4)\n",
      stderr);
  return EXIT_FAILURE;
}

int Take(int& argc, char** argv) {
  const std::optional<Wish> wish = WishOf(argc, argv);
  if (!wish) return Refuse();
  const QDir folder(wish->folder);
  if (!folder.mkpath(QStringLiteral("."))) throw std::runtime_error("There is no such folder.");
  const QTemporaryDir scratch;
  const QDir own(scratch.path());
  quillon::stage::UseSimulatedBoards(own);
  quillon::stage::UseLargeOffscreen(own);
  qputenv("QUILLON_SIM_LATENCY_US", "0");
  qputenv("QT_SCALE_FACTOR", wish->scale.toLatin1());
  quillon::CQuillonApp application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setCursorFlashTime(0);
  if (!UsePalette(wish->palette)) return Refuse();
  quillon::Screenshots screenshots(
      folder, QStringLiteral("-%1-%2x").arg(wish->palette, wish->scale), own, wish->pictures);
  screenshots.TakeAll();
  std::printf("%d pictures, %s, %sx\n", screenshots.Taken(), qPrintable(wish->palette),
              qPrintable(wish->scale));
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Take(argc, argv);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "quillon-screenshots: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}
