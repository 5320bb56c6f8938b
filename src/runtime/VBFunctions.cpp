#include "runtime/VBFunctions.h"

#include "runtime/Clock.h"
#include "runtime/Regional.h"
#include "runtime/VBError.h"

#include <QHash>

#include <cmath>
#include <vector>

namespace vb {

namespace {

constexpr int kInvalidCall = 5; // "Chiamata di routine o argomento non validi"

// ---------------------------------------------------------------- named formats

/// The named formats and the patterns they stand for under Italian settings.
QString namedPattern(const QString& name)
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("fixed"), QStringLiteral("0.00")},
        {QStringLiteral("standard"), QStringLiteral("#,##0.00")},
        {QStringLiteral("percent"), QStringLiteral("0.00%")},
        {QStringLiteral("scientific"), QStringLiteral("0.00E+00")},
        {QStringLiteral("currency"), QStringLiteral("\"€ \"#,##0.00;-\"€ \"#,##0.00")},
        {QStringLiteral("long date"), QStringLiteral("dddd d mmmm yyyy")},
        {QStringLiteral("medium date"), QStringLiteral("dd-mmm-yy")},
        {QStringLiteral("short date"), QStringLiteral("dd/mm/yyyy")},
        {QStringLiteral("long time"), QStringLiteral("hh:nn:ss")},
        {QStringLiteral("medium time"), QStringLiteral("hh:nn AM/PM")},
        {QStringLiteral("short time"), QStringLiteral("hh:nn")},
    };
    return names.value(name.toLower());
}

/// "Yes/No" and its kin: the Italian words for a number that is / is not zero.
bool truthWords(const QString& name, QString& yes, QString& no)
{
    const QString n = name.toLower();
    if (n == QLatin1String("yes/no")) {
        yes = QStringLiteral("Sì");
        no = QStringLiteral("No");
    } else if (n == QLatin1String("true/false")) {
        yes = QStringLiteral("Vero");
        no = QStringLiteral("Falso");
    } else if (n == QLatin1String("on/off")) {
        yes = QStringLiteral("Attivato");
        no = QStringLiteral("Disattivato");
    } else {
        return false;
    }
    return true;
}

/// Splits a pattern on ';' outside quotes and escapes.
QStringList sections(const QString& pattern)
{
    QStringList out{QString()};
    bool quoted = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'"')
            quoted = !quoted;
        if (!quoted && c == u'\\' && i + 1 < pattern.size()) {
            out.back() += c;
            out.back() += pattern[++i];
            continue;
        }
        if (!quoted && c == u';')
            out.append(QString());
        else
            out.back() += c;
    }
    return out;
}

// ---------------------------------------------------------------- number patterns

struct Token
{
    enum Kind { Zero, Hash, Point, Comma, Percent, Exponent, Literal } kind;
    QString text; // Literal text; for Exponent "E+" or "E-" as written
};

std::vector<Token> tokenize(const QString& section)
{
    std::vector<Token> out;
    bool seenPoint = false;
    for (int i = 0; i < section.size(); ++i) {
        const QChar c = section[i];
        if (c == u'"') {
            const int end = section.indexOf(u'"', i + 1);
            const int stop = end < 0 ? section.size() : end;
            out.push_back({Token::Literal, section.mid(i + 1, stop - i - 1)});
            i = stop;
        } else if (c == u'\\' && i + 1 < section.size()) {
            out.push_back({Token::Literal, QString(section[++i])});
        } else if (c == u'0') {
            out.push_back({Token::Zero, {}});
        } else if (c == u'#') {
            out.push_back({Token::Hash, {}});
        } else if (c == u'.' && !seenPoint) {
            seenPoint = true;
            out.push_back({Token::Point, {}});
        } else if (c == u',') {
            out.push_back({Token::Comma, {}});
        } else if (c == u'%') {
            out.push_back({Token::Percent, {}});
        } else if ((c == u'E' || c == u'e') && i + 1 < section.size() &&
                   (section[i + 1] == u'+' || section[i + 1] == u'-')) {
            out.push_back({Token::Exponent, section.mid(i, 2)});
            ++i;
        } else {
            out.push_back({Token::Literal, QString(c)});
        }
    }
    return out;
}

bool isDigitToken(const Token& t)
{
    return t.kind == Token::Zero || t.kind == Token::Hash;
}

QString grouped(const QString& digits)
{
    QString out;
    for (int i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            out += regional::ThousandsSeparator;
        out += digits[i];
    }
    return out;
}

/// One section of a number pattern applied to a value that is not negative.
QString formatSection(double x, const std::vector<Token>& tokens)
{
    const int n = static_cast<int>(tokens.size());
    int point = n, exponent = n;
    for (int i = 0; i < n; ++i) {
        if (tokens[i].kind == Token::Point && point == n)
            point = i;
        if (tokens[i].kind == Token::Exponent && exponent == n)
            exponent = i;
    }
    const int intEnd = std::min(point, exponent);

    std::vector<int> intSlots, fracSlots;
    for (int i = 0; i < intEnd; ++i)
        if (isDigitToken(tokens[i]))
            intSlots.push_back(i);
    for (int i = point + 1; i < exponent; ++i)
        if (isDigitToken(tokens[i]))
            fracSlots.push_back(i);

    // A comma between digit placeholders groups thousands; after the last one it
    // divides by a thousand.
    bool grouping = false;
    int scale = 0;
    for (int i = 0; i < intEnd; ++i) {
        if (tokens[i].kind != Token::Comma || intSlots.empty() || i < intSlots.front())
            continue;
        if (i < intSlots.back())
            grouping = true;
        else
            ++scale;
    }
    for (const Token& t : tokens)
        if (t.kind == Token::Percent)
            x *= 100.0;
    for (int i = 0; i < scale; ++i)
        x /= 1000.0;

    const int fracCount = static_cast<int>(fracSlots.size());
    int exp = 0;
    if (exponent < n && x != 0.0) {
        const int intDigits = std::max<int>(1, static_cast<int>(intSlots.size()));
        exp = static_cast<int>(std::floor(std::log10(x))) - (intDigits - 1);
        if (regional::roundDigits(x / std::pow(10.0, exp), fracCount).integer.size() > intDigits)
            ++exp;
        x /= std::pow(10.0, exp);
    }

    const regional::RoundedDigits r = regional::roundDigits(x, fracCount);
    QString digits = r.integer;
    int minDigits = 0;
    for (std::size_t k = 0; k < intSlots.size(); ++k) {
        if (tokens[intSlots[k]].kind == Token::Zero) {
            minDigits = static_cast<int>(intSlots.size() - k);
            break;
        }
    }
    if (digits.size() < minDigits)
        digits = QString(minDigits - digits.size(), u'0') + digits;

    QString fraction = r.fraction;
    for (int k = fracCount - 1; k >= 0 && tokens[fracSlots[k]].kind == Token::Hash && fraction.endsWith(u'0'); --k)
        fraction.chop(1);

    QString out;
    const int slotCount = static_cast<int>(intSlots.size());
    int intSlot = 0, fracSlot = 0;
    for (int i = 0; i < n; ++i) {
        const Token& t = tokens[i];
        switch (t.kind) {
        case Token::Zero:
        case Token::Hash:
            if (i < intEnd) {
                if (grouping) {
                    if (intSlot == 0)
                        out += grouped(digits);
                } else {
                    // Digits fill the placeholders from the right; the first takes the overflow.
                    const int at = static_cast<int>(digits.size()) - slotCount + intSlot;
                    if (intSlot == 0 && at >= 0)
                        out += digits.left(at + 1);
                    else if (at >= 0)
                        out += digits[at];
                }
                ++intSlot;
            } else if (i < exponent) {
                if (fracSlot < fraction.size())
                    out += fraction[fracSlot];
                ++fracSlot;
            }
            break;
        case Token::Point: out += regional::DecimalSeparator; break;
        case Token::Percent: out += u'%'; break;
        case Token::Exponent: {
            int expZeros = 0;
            for (int j = i + 1; j < n && isDigitToken(tokens[j]); ++j)
                expZeros += tokens[j].kind == Token::Zero ? 1 : 0;
            out += QStringLiteral("E");
            if (exp < 0)
                out += u'-';
            else if (t.text.endsWith(u'+'))
                out += u'+';
            out += QString::number(std::abs(exp)).rightJustified(expZeros, u'0');
            while (i + 1 < n && isDigitToken(tokens[i + 1]))
                ++i;
            break;
        }
        case Token::Comma: break;
        case Token::Literal: out += t.text; break;
        }
    }
    return out;
}

QString formatNumber(double value, const QString& pattern)
{
    const QStringList parts = sections(pattern);
    QString section = parts[0];
    bool minus = value < 0;
    if (value < 0 && parts.size() >= 2 && !parts[1].isEmpty()) {
        section = parts[1]; // the negative section carries its own sign, if any
        minus = false;
    } else if (value == 0 && parts.size() >= 3 && !parts[2].isEmpty()) {
        section = parts[2];
    }
    const std::vector<Token> tokens = tokenize(section);
    const QString text = formatSection(std::fabs(value), tokens);
    if (!minus)
        return text;
    // A negative that rounds to nothing shows no sign.
    bool allZero = true;
    for (QChar c : text)
        if (c.isDigit() && c != u'0')
            allZero = false;
    return allZero ? text : u'-' + text;
}

// ---------------------------------------------------------------- date patterns

bool startsWithCi(const QString& s, int at, QLatin1String what)
{
    // Patterns are read one place at a time: most places fail on their first character.
    if (at >= s.size() || what.isEmpty() ||
        QChar::toCaseFolded(s[at].unicode()) != QChar::toCaseFolded(char16_t(what.front().unicode())))
        return false;
    return QStringView(s).mid(at).startsWith(what, Qt::CaseInsensitive);
}

/// Whether a pattern (outside quotes) holds date or time placeholders.
bool isDatePattern(const QString& pattern)
{
    bool quoted = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'"') {
            quoted = !quoted;
            continue;
        }
        if (quoted)
            continue;
        if (c == u'\\') {
            ++i;
            continue;
        }
        if (QStringLiteral("dwmyhnsqc").contains(c.toLower()) || startsWithCi(pattern, i, QLatin1String("ttttt")) ||
            startsWithCi(pattern, i, QLatin1String("AM/PM")) || startsWithCi(pattern, i, QLatin1String("A/P")))
            return true;
    }
    return false;
}

QString two(int v)
{
    if (v >= 0 && v < 100) {
        const QChar digits[2] = {QChar(u'0' + v / 10), QChar(u'0' + v % 10)};
        return QString(digits, 2);
    }
    return QStringLiteral("%1").arg(v, 2, 10, QChar(u'0'));
}

QString formatDate(double serial, const QString& pattern)
{
    const QDate d = dateFromSerial(serial);
    const QTime t = timeFromSerial(serial);
    const int vbWeekday = d.dayOfWeek() % 7 + 1;

    bool twelveHour = false;
    for (int i = 0; i < pattern.size(); ++i)
        if (startsWithCi(pattern, i, QLatin1String("AM/PM")) || startsWithCi(pattern, i, QLatin1String("A/P")) ||
            startsWithCi(pattern, i, QLatin1String("AMPM")))
            twelveHour = true;
    const int hour = twelveHour ? (t.hour() % 12 == 0 ? 12 : t.hour() % 12) : t.hour();

    QString out;
    out.reserve(pattern.size() + 8);
    bool afterHour = false; // "m" right after an hour means minutes
    for (int i = 0; i < pattern.size();) {
        const QChar c = pattern[i];
        if (c == u'"') {
            const int end = pattern.indexOf(u'"', i + 1);
            const int stop = end < 0 ? pattern.size() : end;
            out += pattern.mid(i + 1, stop - i - 1);
            i = stop + 1;
            continue;
        }
        if (c == u'\\') {
            if (i + 1 < pattern.size())
                out += pattern[i + 1];
            i += 2;
            continue;
        }
        if (startsWithCi(pattern, i, QLatin1String("AM/PM"))) {
            const bool lower = c.isLower();
            const QString s = t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
            out += lower ? s.toLower() : s;
            i += 5;
            continue;
        }
        if (startsWithCi(pattern, i, QLatin1String("A/P"))) {
            const QString s = t.hour() < 12 ? QStringLiteral("A") : QStringLiteral("P");
            out += c.isLower() ? s.toLower() : s;
            i += 3;
            continue;
        }
        if (startsWithCi(pattern, i, QLatin1String("AMPM"))) {
            out += t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
            i += 4;
            continue;
        }
        const QChar lc = c.toLower();
        int run = 1;
        while (i + run < pattern.size() && pattern[i + run].toLower() == lc)
            ++run;
        bool placeholder = true;
        switch (lc.unicode()) {
        case 'd':
            if (run == 1)
                out += QString::number(d.day());
            else if (run == 2)
                out += two(d.day());
            else if (run == 3)
                out += regional::dayName(vbWeekday, true);
            else if (run == 4)
                out += regional::dayName(vbWeekday);
            else if (run == 5)
                out += ShortDate(d);
            else
                out += formatDate(serial, namedPattern(QStringLiteral("Long Date")));
            break;
        case 'w': out += QString::number(run == 1 ? vbWeekday : WeekOfYear(d)); break;
        case 'm':
            if (afterHour && run <= 2)
                out += run == 1 ? QString::number(t.minute()) : two(t.minute());
            else if (run == 1)
                out += QString::number(d.month());
            else if (run == 2)
                out += two(d.month());
            else
                out += regional::monthName(d.month(), run == 3);
            break;
        case 'y':
            if (run == 1)
                out += QString::number(d.dayOfYear());
            else if (run == 2)
                out += two(d.year() % 100);
            else
                out += QString::number(d.year()).rightJustified(4, u'0');
            break;
        case 'h': out += run == 1 ? QString::number(hour) : two(hour); break;
        case 'n': out += run == 1 ? QString::number(t.minute()) : two(t.minute()); break;
        case 's': out += run == 1 ? QString::number(t.second()) : two(t.second()); break;
        case 'q': out += QString::number((d.month() - 1) / 3 + 1); break;
        case 'c': out += regional::dateText(serial); break;
        case 't':
            if (run >= 5) {
                out += formatDate(serial, namedPattern(QStringLiteral("Long Time")));
                run = 5;
            } else {
                out += pattern.mid(i, run);
                placeholder = false;
            }
            break;
        case ':':
            out += QString(run, regional::TimeSeparator);
            placeholder = false;
            break;
        case '/':
            out += QString(run, regional::DateSeparator);
            placeholder = false;
            break;
        default: out += pattern.mid(i, run); placeholder = false;
        }
        if (placeholder)
            afterHour = lc == u'h';
        i += run;
    }
    return out;
}

// ---------------------------------------------------------------- Val

/// Hex or octal digits as Val reads them: a VB Integer up to 16 bits, a Long up to 32.
double radixValue(const QString& digits, int base)
{
    if (digits.isEmpty())
        return 0.0;
    bool ok = false;
    const qulonglong raw = digits.toULongLong(&ok, base);
    if (!ok || raw > 0xFFFFFFFFull)
        throw VBError(err::Overflow);
    if (raw <= 0xFFFF)
        return static_cast<std::int16_t>(raw);
    return static_cast<std::int32_t>(raw);
}

} // namespace

// ---------------------------------------------------------------- conversions

Variant CStr(const Variant& v)
{
    return Variant(v.toString());
}

Variant CDbl(const Variant& v)
{
    return Variant(v.toDouble());
}

Variant CInt(const Variant& v)
{
    return Variant::fromInteger(v.toInteger());
}

Variant CLng(const Variant& v)
{
    return Variant(static_cast<std::int64_t>(v.toLong()));
}

Variant CDate(const Variant& v)
{
    return Variant(v.toDate());
}

bool IsNumeric(const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Empty: return true;
    case Variant::Type::String: return regional::parseNumber(v.rawString()).has_value();
    default: return v.isNumeric();
    }
}

bool IsDate(const Variant& v)
{
    if (v.isDate())
        return true;
    return v.isString() && regional::parseDateTime(v.rawString()).has_value();
}

bool IsNull(const Variant& v)
{
    return v.isNull();
}

double Val(const Variant& v)
{
    if (v.isNull())
        throw VBError(err::InvalidUseOfNull);
    // A number reaches Val as its Italian text, so Val(1.5) reads "1,5" and gives 1.
    QString s;
    for (QChar c : v.toString())
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r')
            s += c;

    if (s.size() >= 2 && s[0] == u'&') {
        const QChar kind = s[1].toUpper();
        const int base = kind == u'H' ? 16 : kind == u'O' ? 8 : 0;
        if (base) {
            int end = 2;
            while (end < s.size() &&
                   QStringLiteral("0123456789abcdefABCDEF").left(base == 16 ? 22 : 8).contains(s[end]))
                ++end;
            return radixValue(s.mid(2, end - 2), base);
        }
        return 0.0;
    }

    QString plain;
    int i = 0;
    if (i < s.size() && (s[i] == u'-' || s[i] == u'+'))
        plain += s[i++];
    bool digits = false;
    for (; i < s.size() && s[i].isDigit(); ++i, digits = true)
        plain += s[i];
    if (i < s.size() && s[i] == u'.') {
        plain += u'.';
        for (++i; i < s.size() && s[i].isDigit(); ++i, digits = true)
            plain += s[i];
    }
    if (!digits)
        return 0.0;
    if (i + 1 < s.size() && QStringLiteral("eEdD").contains(s[i])) {
        int j = i + 1;
        QString exp = QStringLiteral("e");
        if (s[j] == u'-' || s[j] == u'+')
            exp += s[j++];
        const int start = j;
        for (; j < s.size() && s[j].isDigit(); ++j)
            exp += s[j];
        if (j > start)
            plain += exp;
    }
    const double r = std::strtod(plain.toLatin1().constData(), nullptr);
    if (!std::isfinite(r))
        throw VBError(err::Overflow);
    return r;
}

// ---------------------------------------------------------------- Format

Variant Format(const Variant& v, const QString& pattern)
{
    if (v.isNull())
        return Variant::null();
    if (v.isEmpty())
        return Variant(QString());
    if (pattern.isEmpty())
        return Variant(v.toString()); // text stays exactly as it is
    // A date in the register's own pattern, written once per row by the loops over the
    // register: no named format, no text to read, straight to the date's places.
    if (v.type() == Variant::Type::Date && pattern == QLatin1String("dd/mm/yyyy")) {
        const QDate d = dateFromSerial(v.rawDouble());
        int year = 0, month = 0, day = 0;
        d.getDate(&year, &month, &day);
        if (year >= 0 && year <= 9999) {
            // Written in one go: ten characters, no pieces joined.
            const char16_t text[10] = {char16_t(u'0' + day / 10),         char16_t(u'0' + day % 10),
                                       regional::DateSeparator.unicode(), char16_t(u'0' + month / 10),
                                       char16_t(u'0' + month % 10),       regional::DateSeparator.unicode(),
                                       char16_t(u'0' + year / 1000),      char16_t(u'0' + year / 100 % 10),
                                       char16_t(u'0' + year / 10 % 10),   char16_t(u'0' + year % 10)};
            return Variant(QString(reinterpret_cast<const QChar*>(text), 10));
        }
        return Variant(two(day) + regional::DateSeparator + two(month) + regional::DateSeparator +
                       QString::number(year).rightJustified(4, u'0'));
    }

    QString yes, no;
    if (truthWords(pattern, yes, no)) {
        if (v.isString() && !regional::parseNumber(v.rawString()))
            return Variant(v.rawString());
        return Variant(v.toDouble() != 0.0 ? yes : no);
    }
    const QString lower = pattern.toLower();
    const QString named = namedPattern(pattern);
    const QString effective = named.isEmpty() ? pattern : named;
    const bool general = lower == QLatin1String("general number");
    const bool generalDate = lower == QLatin1String("general date");
    const bool asDate = !general && (generalDate || isDatePattern(effective));

    // Text is read as a number first, then as a date; text that is neither stays as it is.
    double value = 0.0;
    if (v.isString()) {
        const auto number = regional::parseNumber(v.rawString());
        const auto date = number ? std::nullopt : regional::parseDateTime(v.rawString());
        if (!number && !date)
            return Variant(v.rawString());
        value = number ? *number : *date;
    } else {
        value = v.toDouble();
    }

    if (generalDate)
        return Variant(regional::dateText(value));
    if (general)
        return Variant(regional::numberText(value));
    if (asDate)
        return Variant(formatDate(value, effective));
    return Variant(formatNumber(value, effective));
}

int WeekOfYear(const QDate& d)
{
    const int jan1 = QDate(d.year(), 1, 1).dayOfWeek() % 7; // 0 = Sunday
    return (d.dayOfYear() - 1 + jan1) / 7 + 1;
}

QString ShortDate(const QDate& d)
{
    return d.toString(QStringLiteral("dd/MM/yyyy"));
}

// ---------------------------------------------------------------- text functions

namespace {
/// The text of a string function's argument; nullopt for Null, which the function returns.
std::optional<QString> textOf(const Variant& v)
{
    if (v.isNull())
        return std::nullopt;
    return v.toString();
}
} // namespace

Variant Left(const Variant& s, int n)
{
    if (n < 0)
        throw VBError(kInvalidCall);
    const auto t = textOf(s);
    return t ? Variant(t->left(n)) : Variant::null();
}

Variant Right(const Variant& s, int n)
{
    if (n < 0)
        throw VBError(kInvalidCall);
    const auto t = textOf(s);
    return t ? Variant(t->right(n)) : Variant::null();
}

Variant Mid(const Variant& s, int start, int length)
{
    if (start < 1 || length < -1)
        throw VBError(kInvalidCall);
    const auto t = textOf(s);
    return t ? Variant(t->mid(start - 1, length)) : Variant::null();
}

Variant Trim(const Variant& s)
{
    const auto t = textOf(s);
    if (!t)
        return Variant::null();
    // VB's Trim takes blanks only, not tabs or line ends.
    int b = 0, e = static_cast<int>(t->size());
    while (b < e && t->at(b) == u' ')
        ++b;
    while (e > b && t->at(e - 1) == u' ')
        --e;
    return Variant(t->mid(b, e - b));
}

Variant UCase(const Variant& s)
{
    const auto t = textOf(s);
    return t ? Variant(t->toUpper()) : Variant::null();
}

Variant LCase(const Variant& s)
{
    const auto t = textOf(s);
    return t ? Variant(t->toLower()) : Variant::null();
}

Variant Len(const Variant& s)
{
    const auto t = textOf(s);
    return t ? Variant(static_cast<int>(t->size())) : Variant::null();
}

Variant Replace(const Variant& s, const QString& find, const QString& with)
{
    // Unlike Left or Mid, VB's Replace takes a text only: Null is error 94.
    QString t = s.toString();
    if (find.isEmpty())
        return Variant(t);
    return Variant(t.replace(find, with));
}

Variant Concat(const Variant& a, const Variant& b)
{
    if (a.isNull() && b.isNull())
        return Variant::null();
    return Variant(a.displayText() + b.displayText());
}

QString KeyText(const QString& text)
{
    return QString::number(Variant(text).toInteger());
}

QString DoubledQuotes(QString text)
{
    return text.replace(QLatin1Char('\''), QStringLiteral("''"));
}

Variant Today()
{
    return Variant::fromDate(Clock::today());
}

} // namespace vb
