#pragma once
/// @file Program.h
/// The start and the end of the program, as the screens see them.

#include <functional>

namespace shell {

/// The start procedure: shows frmMain modeless, whose load is the whole start-up.
void startProgram();

/// Ends the process at once (lblExit, the close of frmMain). What "ends" means is the
/// host's: the desktop program quits; the automation driver drops every screen and
/// stays for the next command.
void endProgram();
void setEndHandler(std::function<void()> handler);

/// The top of the program: an error that no trap caught in a handler shows the run time's
/// box "{number} {description}", then the program ends (endProgram). What was written to
/// the store before it stays. Installed at the start and by the driver.
void endOnUncaughtErrors();

} // namespace shell
