#pragma once
/// @file Backup.h
/// The store's copies of safety: the daily copy at start, the copy on demand, putting a
/// copy back, and the check that tells a sound store from a damaged one.

#include <QDate>
#include <QString>
#include <QStringList>

namespace store::backup {

/// The folder of the daily copies: "backup" in the data folder.
QString folder(const QString& dataFolder);

/// "" when `file` is a Velmora store that passes SQLite's integrity check (the quicker
/// one when `quick`), else what is wrong with it, in Italian.
QString problemOf(const QString& file, bool quick = false);

/// An online copy of the store `from` into `to`, consistent while the program writes:
/// "" or the reason it failed. `to` appears whole or not at all.
QString copy(const QString& from, const QString& to);

/// The daily copies of the data folder, the newest first.
QStringList dailyCopies(const QString& dataFolder);

/// When the newest daily copy is older than `today`, a new one in folder(); then only
/// the last 7 daily and 4 weekly copies are kept. The new copy's path, or "".
QString makeDailyCopy(const QString& dataFolder, const QDate& today);

/// Puts the copy `file` in place of the data folder's store, once it is found sound and
/// no Velmora has the folder open; the store it replaces stays beside it as a dated copy.
/// "" or why it was refused, in Italian.
QString restore(const QString& file, const QString& dataFolder, const QDate& today);

/// The running program's hold on its data folder: any number of programs share it, and a
/// restore needs it alone. The system lets it go when the program ends, however it ends.
/// Returns false when the hold could not be taken (nothing else changes).
bool holdFolder(const QString& dataFolder);
/// Lets the hold of holdFolder go.
void releaseFolder();

} // namespace store::backup
