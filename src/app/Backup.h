#pragma once
/// @file Backup.h
/// The command-line options of the store's copies:
///
///   velmora --backup FILE [--home DIR]     an online copy of the store into FILE
///   velmora --restore FILE [--home DIR]    FILE in place of the store, once found sound
///                                          and while no Velmora has the folder open
///
/// On the plant's server (--store, VELMORA_STORE or velmora.ini) the copy is a pg_dump
/// archive and the restore is pg_restore in one transaction, the database as it stood
/// kept first in the data folder's backup folder.

#include <optional>

namespace app {

/// --backup or --restore is on the command line.
bool wantsBackupCommandLine(int argc, char** argv);

/// After the data folder is set. Returns an exit code when one of the options was given,
/// nothing when the start goes on.
std::optional<int> runBackupCommandLine(int argc, char** argv);

} // namespace app
