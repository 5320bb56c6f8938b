#pragma once
/// @file DateGuides.h
/// The advice files on the computer's date format, and the two date/time texts the
/// program builds by hand: the session time stamp and the duration of a workload.

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace vb {

/// Writes "Errore_Formato_Data.txt" in the program's folder and opens it: the guide
/// shown when a date control refused a value because of the computer's date format.
void WriteDateErrorGuide();

/// The "Info" command of the screens with dates: writes "Info.txt", says where it was
/// saved (box "Info --"), then opens it.
void WriteDateInfo();

/// The lines of the two files, today's date first (through the program's clock).
QStringList DateErrorGuideLines();
QStringList DateInfoLines();

/// The session time stamp of the register: "3/7/2016  9.5.0" for 09:05:00 on 3 July
/// 2016 — day/month/year, two blanks, hour.minute.second, no leading zeros. CDate reads
/// it back.
QString SessionStamp(const QDateTime& at);

/// Minutes as "hh:mm:ss", each part at least two digits and hours not limited to 24
/// (2160 minutes give "36:00:00"). Seconds are the total seconds rounded as VB's Mod
/// rounds them (half to even), so 0.9917 minutes (59.5 s) give "00:00:00".
QString DurationText(double minutes);

/// The same computed with 16-bit integers, as the one command that kept them does:
/// more than 546 minutes (32767 seconds) raises overflow (VBError 6).
QString DurationText16(double minutes);

} // namespace vb
