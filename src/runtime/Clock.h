#pragma once
/// @file Clock.h
/// The program's clock: every date and time the program reads comes from here,
/// SQL Date() and Now() included, so that the automation driver can freeze it.

#include <QDateTime>

namespace vb {

class Clock
{
public:
    static QDateTime now();
    static QDate today();
    /// Freezes the clock at the given time (automation and tests).
    static void freeze(const QDateTime& at);
    /// Moves a frozen clock by seconds.
    static void advance(qint64 seconds);
    static void unfreeze();
    static bool frozen();
};

} // namespace vb
