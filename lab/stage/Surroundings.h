// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

namespace quillon::stage {

// Puts the process on simulated boards, with a profile below `own` in place of the user's. A tool
// calls this before it starts the program; nothing of the user's is read or written then. A rig or
// an exchange time that the environment sets stays.
void UseSimulatedBoards(const QDir& own);

// The next start of the program finds the boards of this rig file; an empty name: the usual ones.
void UseRig(const QString& file);

// The boards keep their state in this folder, which is emptied first.
void UseFreshState(const QString& folder);

// Every call to the boards goes to this file from the next start of the program on.
void UseTrace(const QString& file);

// The number of exchanges, that is of requests written, in a trace so far.
int ExchangesIn(const QString& trace);

// Before the application object: gives Qt's offscreen platform, if it is the chosen one, a screen
// as large as a desktop. Its usual screen has no room for a menu beside a window. The file is
// written to `own`.
void UseLargeOffscreen(const QDir& own);

// Writes the whole file or throws std::runtime_error with the reason.
void WriteFile(const QString& file, const QByteArray& content);

}  // namespace quillon::stage
