#pragma once
/// @file CommandLine.h
/// The command-line options of the demo plant and the screenshots:
///
///   velmora --demo [--home DIR]              makes the demo plant in a new store, then starts
///   velmora --demo-if-new [--home DIR]       the same only when the folder has no store yet
///   velmora --screenshot DIR [--home DIR]    every screen that exists, as PNG files in DIR
///
/// With --demo and --screenshot together the pictures are of the new demo plant.

#include <optional>

namespace demo {

/// Before QApplication: pictures are taken on the offscreen platform unless
/// QT_QPA_PLATFORM says otherwise.
void prepareCommandLine(int argc, char** argv);

/// After QApplication and the data folder are set up. Returns an exit code when the
/// program is to end here, nothing when the start goes on.
std::optional<int> runCommandLine(int argc, char** argv);

} // namespace demo
