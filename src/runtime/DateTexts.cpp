#include "runtime/DateTexts.h"

#include "runtime/VBError.h"

#include <cmath>

namespace vb {

namespace {

QString pad2(qint64 v)
{
    const QString s = QString::number(v);
    return s.size() == 1 ? u'0' + s : s;
}

/// VB's Mod on a floating value: the value is first rounded to a whole number
/// (halves to even), the remainder keeps the dividend's sign.
qint64 vbMod(double value, qint64 divisor)
{
    return static_cast<qint64>(std::nearbyint(value)) % divisor;
}

QString duration(double seconds)
{
    const auto h = static_cast<qint64>(std::trunc(seconds / 3600.0));
    const qint64 n = static_cast<qint64>(std::trunc(seconds / 60.0)) % 60;
    const qint64 s = vbMod(seconds, 60);
    return pad2(h) + u':' + pad2(n) + u':' + pad2(s);
}

} // namespace

QString SessionStamp(const QDateTime& at)
{
    const QDate d = at.date();
    const QTime t = at.time();
    return QStringLiteral("%1/%2/%3  %4.%5.%6")
        .arg(d.day())
        .arg(d.month())
        .arg(d.year())
        .arg(t.hour())
        .arg(t.minute())
        .arg(t.second());
}

QString DurationText(double minutes)
{
    return duration(minutes * 60.0);
}

QString DurationText16(double minutes)
{
    // The seconds go into a VB Integer first: rounded half to even, overflow above 32767.
    const double seconds = std::nearbyint(minutes * 60.0);
    if (!(seconds >= -32768.0 && seconds <= 32767.0))
        throw VBError(err::Overflow);
    return duration(seconds);
}

} // namespace vb
