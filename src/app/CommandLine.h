#pragma once
/// @file CommandLine.h
/// The program's options, read before anything else starts: --help and --version answer
/// without a display, a wrong option is refused with a usage line (exit 2), and the
/// paths that need no screen never create the windowed application.

#include <QString>

#include <optional>
#include <variant>

namespace app {

/// The program's version, as --version and the About screen's caption give it.
inline constexpr const char* Version = "3.0.3";

struct Options
{
    QString home;                      ///< --home: the data folder ("" for the default)
    std::optional<QString> drive;      ///< --drive FILE|-: driven by the automation protocol
    std::optional<QString> importFile; ///< --import OLD.mdb: take an old plant over, then end
    // --demo, --demo-if-new, --screenshot and --replace are checked here and read where
    // they act (src/demo, src/importer).
};

/// Reads argv. Options when the program is to go on; an exit code when it ends here
/// (0 after --help or --version, 2 for an option it does not know or a missing value).
/// Qt's own options (-platform, -style, ...) are left to Qt.
std::variant<Options, int> parseCommandLine(int argc, char** argv);

} // namespace app
