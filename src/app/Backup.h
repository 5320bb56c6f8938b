#pragma once
/// @file Backup.h
/// The command-line options of the store's copies:
///
///   velmora --backup FILE [--home DIR]     an online copy of the store into FILE
///   velmora --restore FILE [--home DIR]    FILE in place of the store, once found sound
///                                          and while no Velmora has the folder open

#include <optional>

namespace app {

/// --backup or --restore is on the command line.
bool wantsBackupCommandLine(int argc, char** argv);

/// After the data folder is set. Returns an exit code when one of the options was given,
/// nothing when the start goes on.
std::optional<int> runBackupCommandLine(int argc, char** argv);

} // namespace app
