#include "runtime/Variant.h"

#include "runtime/Regional.h"
#include "runtime/VBError.h"

#include <cmath>
#include <utility>

namespace vb {

namespace {

const QDate kDayZero(1899, 12, 30);

// VB's dates run from 1 January 100 to 31 December 9999.
constexpr double kFirstSerial = -657434.0;
constexpr double kLastSerial = 2958465.99999999;

/// CInt/CLng rounding: to the nearest whole number, halves to the even one.
double bankersRound(double v)
{
    const double r = std::nearbyint(v); // the default rounding mode is to nearest even
    return r == 0.0 ? 0.0 : r;          // no "-0"
}

} // namespace

Variant Variant::null()
{
    Variant v;
    v.m_type = Type::Null;
    return v;
}

Variant::Variant(bool b) : m_type(Type::Boolean), m_bool(b)
{
}

Variant::Variant(int v) : m_type(Type::Long), m_long(v)
{
}

Variant::Variant(std::int64_t v) : m_type(Type::Long), m_long(v)
{
}

Variant::Variant(double v) : m_type(Type::Double), m_double(v)
{
}

Variant::Variant(JetDate d) : m_type(Type::Date), m_double(d.serial)
{
}

Variant::Variant(const QString& s) : m_type(Type::String), m_string(s)
{
}

Variant::Variant(const char* s) : Variant(QString::fromUtf8(s))
{
}

Variant Variant::fromInteger(std::int16_t v)
{
    Variant out(static_cast<std::int64_t>(v));
    out.m_type = Type::Integer;
    return out;
}

Variant Variant::fromDate(const QDate& d)
{
    return Variant(JetDate{toSerial(d)});
}

Variant Variant::fromDateTime(const QDateTime& dt)
{
    return Variant(JetDate{toSerial(dt)});
}

bool Variant::isNumeric() const
{
    switch (m_type) {
    case Type::Boolean:
    case Type::Integer:
    case Type::Long:
    case Type::Double: return true;
    default: return false;
    }
}

QString Variant::toString() const
{
    switch (m_type) {
    case Type::Empty: return {};
    case Type::Null: throw VBError(err::InvalidUseOfNull);
    case Type::Boolean: return m_bool ? QStringLiteral("Vero") : QStringLiteral("Falso");
    case Type::Integer:
    case Type::Long: return QString::number(m_long);
    case Type::Double:
        if (!std::isfinite(m_double))
            throw VBError(err::Overflow);
        return regional::numberText(m_double);
    case Type::Date: return regional::dateText(m_double);
    case Type::String: return m_string;
    }
    return {};
}

double Variant::toDouble() const
{
    switch (m_type) {
    case Type::Empty: return 0.0;
    case Type::Null: throw VBError(err::InvalidUseOfNull);
    case Type::Boolean: return m_bool ? -1.0 : 0.0; // VB's True is -1
    case Type::Integer:
    case Type::Long: return static_cast<double>(m_long);
    case Type::Double:
    case Type::Date: return m_double;
    case Type::String:
        if (const auto n = regional::parseNumber(m_string))
            return *n;
        throw VBError(err::TypeMismatch);
    }
    return 0.0;
}

std::int16_t Variant::toInteger() const
{
    if (m_type == Type::Integer || m_type == Type::Long) {
        if (m_long < -32768 || m_long > 32767)
            throw VBError(err::Overflow);
        return static_cast<std::int16_t>(m_long);
    }
    const double r = bankersRound(toDouble());
    if (!(r >= -32768.0 && r <= 32767.0))
        throw VBError(err::Overflow);
    return static_cast<std::int16_t>(r);
}

std::int32_t Variant::toLong() const
{
    if (m_type == Type::Integer || m_type == Type::Long) {
        if (m_long < INT32_MIN || m_long > INT32_MAX)
            throw VBError(err::Overflow);
        return static_cast<std::int32_t>(m_long);
    }
    const double r = bankersRound(toDouble());
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        throw VBError(err::Overflow);
    return static_cast<std::int32_t>(r);
}

bool Variant::toBool() const
{
    switch (m_type) {
    case Type::Empty: return false;
    case Type::Null: throw VBError(err::InvalidUseOfNull);
    case Type::Boolean: return m_bool;
    case Type::String: {
        const QString s = m_string.trimmed();
        if (s.compare(QLatin1String("Vero"), Qt::CaseInsensitive) == 0 ||
            s.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (s.compare(QLatin1String("Falso"), Qt::CaseInsensitive) == 0 ||
            s.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
        return toDouble() != 0.0;
    }
    default: return toDouble() != 0.0;
    }
}

JetDate Variant::toDate() const
{
    switch (m_type) {
    case Type::Null: throw VBError(err::InvalidUseOfNull);
    case Type::Date: return JetDate{m_double};
    case Type::String: {
        if (const auto serial = regional::parseDateTime(m_string))
            return JetDate{*serial};
        throw VBError(err::TypeMismatch);
    }
    default: {
        const double serial = toDouble();
        if (!(serial >= kFirstSerial && serial <= kLastSerial))
            throw VBError(err::Overflow);
        return JetDate{serial};
    }
    }
}

QString Variant::displayText() const
{
    if (m_type == Type::Null || m_type == Type::Empty)
        return {};
    return toString();
}

bool Variant::operator==(const Variant& o) const
{
    if (m_type != o.m_type)
        return false;
    switch (m_type) {
    case Type::Empty:
    case Type::Null: return true;
    case Type::Boolean: return m_bool == o.m_bool;
    case Type::Integer:
    case Type::Long: return m_long == o.m_long;
    case Type::Double:
    case Type::Date: return m_double == o.m_double;
    case Type::String: return m_string == o.m_string;
    }
    return false;
}

double toSerial(const QDate& d)
{
    return d.isValid() ? static_cast<double>(kDayZero.daysTo(d)) : 0.0;
}

double toSerial(const QDateTime& dt)
{
    const double day = toSerial(dt.date());
    const double time = dt.time().msecsSinceStartOfDay() / 86400000.0;
    // Before day zero the serial is the (negative) day minus the time: -1.25 is
    // 29/12/1899 06:00, not 18:00.
    return day < 0 ? day - time : day + time;
}

namespace {

/// A serial's day and second of the day, without going through the local time zone (a
/// serial is a wall-clock reading). The program works in whole seconds; a time that
/// rounds up to midnight is the next day.
std::pair<QDate, int> splitSerial(double serial)
{
    if (!std::isfinite(serial))
        return {kDayZero, 0};
    const double day = std::trunc(serial);
    qint64 seconds = std::llround(std::fabs(serial - day) * 86400.0);
    QDate date = kDayZero.addDays(static_cast<qint64>(day));
    if (seconds >= 86400) {
        date = date.addDays(1);
        seconds -= 86400;
    }
    return {date, static_cast<int>(seconds)};
}

} // namespace

QDateTime fromSerial(double serial)
{
    const auto [date, seconds] = splitSerial(serial);
    return QDateTime(date, QTime(0, 0).addSecs(seconds));
}

QDate dateFromSerial(double serial)
{
    return splitSerial(serial).first;
}

QTime timeFromSerial(double serial)
{
    return QTime(0, 0).addSecs(splitSerial(serial).second);
}

} // namespace vb
