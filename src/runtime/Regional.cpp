#include "runtime/Regional.h"

#include "runtime/Clock.h"
#include "runtime/Variant.h"

#include <QDate>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace vb::regional {

namespace {

const char* const kMonths[] = {"gennaio", "febbraio", "marzo",     "aprile",  "maggio",   "giugno",
                               "luglio",  "agosto",   "settembre", "ottobre", "novembre", "dicembre"};
const char* const kDays[] = {"domenica", "lunedì", "martedì", "mercoledì", "giovedì", "venerdì", "sabato"};

/// The 15 significant digits of |value| and its decimal exponent: 1234.5 gives
/// "123450000000000" and 3.
struct Significant
{
    QString digits;
    int exponent = 0;
};

Significant significant(double value)
{
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    // buf looks like "1.23450000000000e+03".
    const QString s = QString::fromLatin1(buf);
    const int e = s.indexOf(u'e');
    Significant out;
    out.digits = s.left(1) + s.mid(2, e - 2);
    out.exponent = s.mid(e + 1).toInt();
    return out;
}

int twoDigitYear(int y)
{
    // The OLE window: 00-29 are this century's, 30-99 the last one's.
    return y < 30 ? 2000 + y : 1900 + y;
}

std::optional<int> monthFromName(const QString& word)
{
    const QString w = word.toLower();
    for (int i = 0; i < 12; ++i) {
        const QString full = QString::fromUtf8(kMonths[i]);
        if (w == full || (w.size() >= 3 && full.startsWith(w)))
            return i + 1;
    }
    return std::nullopt;
}

bool isDayName(const QString& word)
{
    const QString w = word.toLower();
    for (const char* d : kDays) {
        const QString full = QString::fromUtf8(d);
        if (w == full || (w.size() >= 3 && full.startsWith(w)))
            return true;
    }
    return false;
}

/// Day, month and year from the date part's pieces; nullopt when they make no date.
std::optional<QDate> dateFromParts(const QStringList& parts)
{
    QStringList p = parts;
    if (!p.isEmpty() && !p.front().front().isDigit() && isDayName(p.front()))
        p.removeFirst();
    if (p.size() < 2 || p.size() > 3)
        return std::nullopt;

    // A month given by name may stand anywhere; the numbers around it are day and year.
    for (int i = 0; i < p.size(); ++i) {
        if (p[i].front().isDigit())
            continue;
        const auto month = monthFromName(p[i]);
        if (!month)
            return std::nullopt;
        QStringList nums = p;
        nums.removeAt(i);
        for (const QString& n : nums)
            if (!n.front().isDigit())
                return std::nullopt;
        int day = 1;
        int year = Clock::today().year();
        if (nums.size() == 2) {
            day = nums[0].toInt();
            year = nums[1].size() <= 2 ? twoDigitYear(nums[1].toInt()) : nums[1].toInt();
        } else if (nums[0].size() > 2) {
            year = nums[0].toInt();
        } else {
            day = nums[0].toInt();
        }
        const QDate d(year, *month, day);
        return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
    }

    std::vector<int> n;
    for (const QString& s : p)
        n.push_back(s.toInt());
    auto valid = [](int y, int m, int d) -> std::optional<QDate> {
        if (y < 100 || y > 9999)
            return std::nullopt;
        const QDate date(y, m, d);
        return date.isValid() ? std::optional<QDate>(date) : std::nullopt;
    };
    if (p.size() == 3) {
        if (p[0].size() >= 3) // year first: 2016/07/03
            return valid(n[0], n[1], n[2]);
        const int year = p[2].size() <= 2 ? twoDigitYear(n[2]) : n[2];
        if (auto d = valid(year, n[1], n[0]))
            return d;
        return valid(year, n[0], n[1]); // VB tries month/day when day/month does not fit
    }
    // Two numbers: day and month of this year, else month and year.
    const int thisYear = Clock::today().year();
    if (p[1].size() <= 2) {
        if (auto d = valid(thisYear, n[1], n[0]))
            return d;
        if (auto d = valid(thisYear, n[0], n[1]))
            return d;
    }
    const int year = p[1].size() <= 2 ? twoDigitYear(n[1]) : n[1];
    return valid(year, n[0], 1);
}

/// "dd/mm/yyyy", the form the program writes its dates in: read without the patterns
/// of parseDateTime, which find the same three parts and no time in it.
bool isPlainDate(QStringView s)
{
    if (s.size() != 10 || s[2] != u'/' || s[5] != u'/')
        return false;
    for (int i : {0, 1, 3, 4, 6, 7, 8, 9})
        if (!s[i].isDigit())
            return false;
    return true;
}

/// A plain date of ASCII digits read as dateFromParts reads it (day/month, else
/// month/day), without making its parts: nullopt when the text is no such date.
std::optional<std::optional<QDate>> plainDate(QStringView s)
{
    if (!isPlainDate(s))
        return std::nullopt;
    auto number = [&](int at, int length) {
        int v = 0;
        for (int i = at; i < at + length; ++i) {
            const char16_t c = s[i].unicode();
            if (c < u'0' || c > u'9')
                return -1;
            v = v * 10 + (c - u'0');
        }
        return v;
    };
    const int day = number(0, 2), month = number(3, 2), year = number(6, 4);
    if (day < 0 || month < 0 || year < 0)
        return std::nullopt; // other digits: read the long way
    if (year < 100)
        return std::optional<QDate>();
    for (const QDate d : {QDate(year, month, day), QDate(year, day, month)})
        if (d.isValid())
            return std::optional<QDate>(d);
    return std::optional<QDate>();
}

} // namespace

bool RoundedDigits::isZero() const
{
    for (QChar c : integer)
        if (c != u'0')
            return false;
    for (QChar c : fraction)
        if (c != u'0')
            return false;
    return true;
}

QString monthName(int month, bool abbreviated)
{
    if (month < 1 || month > 12)
        return {};
    const QString full = QString::fromUtf8(kMonths[month - 1]);
    return abbreviated ? full.left(3) : full;
}

QString dayName(int vbWeekday, bool abbreviated)
{
    if (vbWeekday < 1 || vbWeekday > 7)
        return {};
    const QString full = QString::fromUtf8(kDays[vbWeekday - 1]);
    return abbreviated ? full.left(3) : full;
}

QString numberText(double value)
{
    if (value == 0.0 || !std::isfinite(value))
        return QStringLiteral("0");
    Significant s = significant(value);
    while (s.digits.size() > 1 && s.digits.endsWith(u'0'))
        s.digits.chop(1);
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    const int e = s.exponent;
    if (e >= 15 || e < -4) {
        QString mantissa = s.digits.left(1);
        if (s.digits.size() > 1)
            mantissa += DecimalSeparator + s.digits.mid(1);
        return sign + mantissa + u'E' + QChar(e < 0 ? u'-' : u'+') +
               QString::number(std::abs(e)).rightJustified(2, u'0');
    }
    if (e < 0)
        return sign + u'0' + DecimalSeparator + QString(-e - 1, u'0') + s.digits;
    QString integer = s.digits.left(e + 1);
    integer += QString(e + 1 - integer.size(), u'0');
    const QString fraction = s.digits.mid(e + 1);
    return sign + integer + (fraction.isEmpty() ? QString() : DecimalSeparator + fraction);
}

RoundedDigits roundDigits(double value, int decimals)
{
    RoundedDigits out;
    if (value == 0.0 || !std::isfinite(value)) {
        out.fraction = QString(decimals, u'0');
        return out;
    }
    const Significant s = significant(value);
    QString integer;
    QString fraction;
    if (s.exponent >= 0) {
        integer = s.digits.left(s.exponent + 1);
        integer += QString(s.exponent + 1 - integer.size(), u'0');
        fraction = s.digits.mid(s.exponent + 1);
    } else {
        fraction = QString(-s.exponent - 1, u'0') + s.digits;
    }
    bool roundUp = false;
    if (fraction.size() > decimals) {
        roundUp = fraction.at(decimals) >= u'5';
        fraction.truncate(decimals);
    }
    fraction += QString(decimals - fraction.size(), u'0');
    QString all = integer + fraction;
    if (roundUp) {
        int i = all.size() - 1;
        while (i >= 0 && all[i] == u'9') {
            all[i] = u'0';
            --i;
        }
        if (i < 0)
            all.prepend(u'1');
        else
            all[i] = QChar(all[i].unicode() + 1);
    }
    out.fraction = all.right(decimals);
    out.integer = all.left(all.size() - decimals);
    while (out.integer.startsWith(u'0'))
        out.integer.remove(0, 1);
    return out;
}

std::optional<double> parseNumber(QStringView text)
{
    QString s = text.trimmed().toString();
    if (s.isEmpty())
        return std::nullopt;

    if (s.size() > 2 && s[0] == u'&' && (s[1].toUpper() == u'H' || s[1].toUpper() == u'O')) {
        bool ok = false;
        const int base = s[1].toUpper() == u'H' ? 16 : 8;
        const qulonglong raw = s.mid(2).toULongLong(&ok, base);
        if (!ok || raw > 0xFFFFFFFFull)
            return std::nullopt;
        // Up to 16 bits the number is a VB Integer, up to 32 a Long: &HFFFF is -1.
        if (raw <= 0xFFFF)
            return static_cast<double>(static_cast<std::int16_t>(raw));
        return static_cast<double>(static_cast<std::int32_t>(raw));
    }

    bool negative = false;
    if (s.startsWith(u'(') && s.endsWith(u')')) {
        negative = true;
        s = s.mid(1, s.size() - 2).trimmed();
    }
    if (!s.isEmpty() && (s[0] == u'-' || s[0] == u'+')) {
        negative = negative != (s[0] == u'-');
        s = s.mid(1).trimmed();
    }

    QString plain; // C-locale form for strtod
    int i = 0;
    bool digits = false;
    for (; i < s.size() && (s[i].isDigit() || s[i] == ThousandsSeparator); ++i) {
        if (s[i].isDigit()) {
            plain += s[i];
            digits = true;
        }
    }
    if (i < s.size() && s[i] == DecimalSeparator) {
        plain += u'.';
        for (++i; i < s.size() && s[i].isDigit(); ++i) {
            plain += s[i];
            digits = true;
        }
    }
    if (!digits)
        return std::nullopt;
    if (i < s.size() && QStringLiteral("eEdD").contains(s[i])) {
        plain += u'e';
        ++i;
        if (i < s.size() && (s[i] == u'-' || s[i] == u'+'))
            plain += s[i++];
        const int start = i;
        for (; i < s.size() && s[i].isDigit(); ++i)
            plain += s[i];
        if (i == start)
            return std::nullopt;
    }
    if (i != s.size())
        return std::nullopt;
    const double v = std::strtod(plain.toLatin1().constData(), nullptr);
    if (!std::isfinite(v))
        return std::nullopt;
    return negative ? -v : v;
}

std::optional<double> parseDateTime(QStringView text)
{
    if (const auto plain = plainDate(text.trimmed()))
        return *plain ? std::optional<double>(toSerial(**plain)) : std::nullopt;
    QString s = text.trimmed().toString();
    if (s.isEmpty())
        return std::nullopt;
    if (isPlainDate(s)) {
        const auto date = dateFromParts({s.left(2), s.mid(3, 2), s.mid(6)});
        return date ? std::optional<double>(toSerial(*date)) : std::nullopt;
    }

    // The time, if any, stands at the end: h.n[.s] or h:n[:s], with an optional AM/PM.
    static const QRegularExpression timeRe(
        QStringLiteral(R"((?:^|\s)(\d{1,2})[.:](\d{1,2})(?:[.:](\d{1,2}))?\s*([AaPp][Mm]?)?$)"));
    double time = 0.0;
    bool hasTime = false;
    const auto m = timeRe.match(s);
    if (m.hasMatch()) {
        int h = m.captured(1).toInt();
        const int n = m.captured(2).toInt();
        const int sec = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
        const QString ampm = m.captured(4).toUpper();
        if (!ampm.isEmpty()) {
            if (h > 12)
                return std::nullopt;
            if (ampm.startsWith(u'P') && h < 12)
                h += 12;
            else if (ampm.startsWith(u'A') && h == 12)
                h = 0;
        }
        if (h > 23 || n > 59 || sec > 59)
            return std::nullopt;
        time = (h * 3600 + n * 60 + sec) / 86400.0;
        hasTime = true;
        s = s.left(m.capturedStart()).trimmed();
    }
    if (s.isEmpty())
        return hasTime ? std::optional<double>(time) : std::nullopt;

    static const QRegularExpression sepRe(QStringLiteral(R"([/\-,\s]+)"));
    const QStringList parts = s.split(sepRe, Qt::SkipEmptyParts);
    for (const QString& p : parts) {
        const bool number = p.size() <= 4 && std::all_of(p.begin(), p.end(), [](QChar c) { return c.isDigit(); });
        const bool word = std::all_of(p.begin(), p.end(), [](QChar c) { return c.isLetter(); });
        if (!number && !word)
            return std::nullopt;
    }
    // The comma is the decimal separator: "1,5" is a number, "15,11,2026" a date.
    if (s.contains(u',') && parts.size() != 3)
        return std::nullopt;
    const auto date = dateFromParts(parts);
    if (!date)
        return std::nullopt;
    const double day = toSerial(*date);
    // Before 30/12/1899 the time is counted away from zero, as in VB.
    return day < 0 ? day - time : day + time;
}

QString dateText(double serial)
{
    const QDate d = dateFromSerial(serial);
    const QTime t = timeFromSerial(serial);
    auto two = [](int v) { return QString::number(v).rightJustified(2, u'0'); };
    const QString time = two(t.hour()) + TimeSeparator + two(t.minute()) + TimeSeparator + two(t.second());
    if (d == QDate(1899, 12, 30))
        return time;
    const QString date = d.toString(QStringLiteral("dd/MM/yyyy"));
    return t == QTime(0, 0) ? date : date + u' ' + time;
}

} // namespace vb::regional
