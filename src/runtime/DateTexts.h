#pragma once
/// @file DateTexts.h
/// The two date/time texts the program builds by hand: the session time stamp and the
/// duration of a workload.

#include <QDateTime>
#include <QString>

namespace vb {

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
