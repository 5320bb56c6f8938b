#pragma once
/// @file Screenshots.h
/// Pictures of the program as a new user first sees it: the main screen after the
/// start, then every screen that exists, each shown by the registry as a menu would
/// show it, grabbed to a PNG file named after the screen.

#include <QString>
#include <QStringList>

namespace demo {

/// Starts the program on the store of AppPath with scripted boxes and manual timers,
/// writes DIR/{screen}.png for frmMain, frmAbout and every built working screen (the
/// documents DataReportN are left out), and returns the names written. A screen that fails to show is left out, with a
/// line on standard error.
QStringList writeScreenshots(const QString& dir);

} // namespace demo
