#pragma once
/// @file StoreChoice.h
/// Which store the program works on: the embedded file of the data folder, or a plant's
/// server database named by a libpq URI (--store, else VELMORA_STORE, else the
/// "[store] url=" line of velmora.ini in the data folder), and the moves of a plant's
/// data onto a server (--import OLD.mdb --store URL, --copy-to URL).

#include <QString>
#include <QStringList>

#include <functional>

namespace app {

/// The value of --store (or --copy-to) on the command line, "" when absent; a missing
/// value leaves an Italian text in error.
QString optionValue(const QStringList& args, const QString& option, QString& error);

/// The server named for this workstation: the command line's, else VELMORA_STORE, else
/// the data folder's velmora.ini; "" for the embedded store.
QString chosenStore(const QString& fromCommandLine, const QString& dataFolder);

/// Points the program at the chosen store and opens it once, so that a server that is
/// down, a refused password or a database of another program stop the start with an
/// Italian message (returned; "" when the store is ready). Nothing is written then.
QString openChosenStore(const QString& uri);

/// `velmora --import OLD.mdb --store URL [--replace]` and `velmora --copy-to URL
/// [--home DIR] [--replace]`: the plant onto the server database, refused when that
/// database already holds a plant unless --replace, with the importer's closing table.
/// Returns the exit code, or -1 when the command line asks for neither.
/// dataFolder is asked for only by --copy-to.
int runServerMove(const QStringList& args, const std::function<QString()>& dataFolder);

} // namespace app
