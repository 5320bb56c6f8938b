#pragma once
/// @file DesktopServices.h
/// The desktop side of the program's services: message boxes on screen, documents
/// opened by the desktop's default program, the bundled fonts, Qt's words in Italian.

#include <QMessageBox>

namespace shell {

/// Installs the on-screen MsgBox presenter and the desktop opener (interactive runs only:
/// the automation driver scripts and records them instead).
void installDesktopServices();

/// Registers the bundled Liberation Sans faces and makes the screens' type the
/// application's, so that screens, boxes and pages measure the same on every machine.
void registerBundledFonts();

/// Makes Qt's own words Italian whatever the desktop's language: the standard buttons of
/// the boxes ("Sì", "No", "Annulla"), the file and print dialogs, the calendars. Uses the
/// translations the system's Qt ships; returns false when they are not installed.
bool installItalianTranslations();

/// The buttons of a VB flags value (the low three bits), in VB's order.
QMessageBox::StandardButtons buttonsFor(int vbFlags);
/// The icon of a VB flags value (16 critical, 32 question, 48 warning, 64 information).
QMessageBox::Icon iconFor(int vbFlags);
/// VB's return value for a pressed button.
int answerFor(QMessageBox::StandardButton button);

} // namespace shell
