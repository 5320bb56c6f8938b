// The VBA functions, operators, aggregates, collation and LIKE that the generated SQL
// calls, with Jet's results under Italian settings. Values cross as SQLite values; a
// first "flags" argument tells which arguments the generator knows to be dates (a
// date is a REAL day number in the store, which SQLite cannot tell from a number).

#include "runtime/Clock.h"
#include "runtime/Regional.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"
#include "store/jet/Jet.h"

#include <QDate>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <optional>
#include <sqlite3.h>

namespace store::jet {

namespace {

const char ErrorPrefix[] = "jet-error:";

using vb::Variant;

Variant toVariant(sqlite3_value* v, bool isDate = false)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        if (isDate)
            return Variant(vb::JetDate{double(sqlite3_value_int64(v))});
        return Variant(std::int64_t(sqlite3_value_int64(v)));
    case SQLITE_FLOAT:
        if (isDate)
            return Variant(vb::JetDate{sqlite3_value_double(v)});
        return Variant(sqlite3_value_double(v));
    case SQLITE_TEXT:
        return Variant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v)));
    default: return Variant::null();
    }
}

void setText(sqlite3_context* ctx, const QString& s)
{
    const QByteArray utf8 = s.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

void setResult(sqlite3_context* ctx, const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Null: sqlite3_result_null(ctx); break;
    case Variant::Type::Empty: sqlite3_result_text(ctx, "", 0, SQLITE_STATIC); break;
    case Variant::Type::Boolean: sqlite3_result_int(ctx, v.rawBool() ? -1 : 0); break;
    case Variant::Type::Integer:
    case Variant::Type::Long: sqlite3_result_int64(ctx, v.rawLong()); break;
    case Variant::Type::Double: sqlite3_result_double(ctx, v.rawDouble()); break;
    case Variant::Type::Date: sqlite3_result_double(ctx, v.rawDate().serial); break;
    case Variant::Type::String: setText(ctx, v.rawString()); break;
    }
}

void setError(sqlite3_context* ctx, const vb::VBError& e)
{
    const QByteArray msg =
        (QString::fromLatin1(ErrorPrefix) + QString::number(e.number()) + u':' + e.description()).toUtf8();
    sqlite3_result_error(ctx, msg.constData(), int(msg.size()));
}

// Runs a function body; a VB error becomes the statement's error.
template <typename F> void guarded(sqlite3_context* ctx, F&& body)
{
    try {
        body();
    } catch (const vb::VBError& e) {
        setError(ctx, e);
    }
}

bool isNull(sqlite3_value* v)
{
    return sqlite3_value_type(v) == SQLITE_NULL;
}

[[noreturn]] void typeMismatch()
{
    throw vb::VBError(jeterr::TypeMismatchInCriteria,
                      QStringLiteral("Tipo di dati non corrispondenti nell'espressione criterio."));
}

// A value as a number the way Jet reads a text under Italian settings.
double number(sqlite3_value* v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER: return double(sqlite3_value_int64(v));
    case SQLITE_FLOAT: return sqlite3_value_double(v);
    case SQLITE_TEXT: {
        const auto n = vb::regional::parseNumber(
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v)));
        if (!n)
            typeMismatch();
        return *n;
    }
    default: typeMismatch();
    }
}

void setNumber(sqlite3_context* ctx, double d)
{
    if (std::floor(d) == d && std::fabs(d) < 9.0e15)
        sqlite3_result_int64(ctx, sqlite3_int64(d));
    else
        sqlite3_result_double(ctx, d);
}

// A value as a day number: numbers are day numbers, texts are read as CDate reads them.
double serial(sqlite3_value* v)
{
    if (sqlite3_value_type(v) == SQLITE_TEXT) {
        const auto d = vb::regional::parseDateTime(
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v)));
        if (!d)
            throw vb::VBError(vb::err::TypeMismatch);
        return *d;
    }
    return number(v);
}

// Date and time parts, the time rounded to the whole second first (as VB does).
struct Parts
{
    QDate date;
    int seconds = 0; ///< of the day
};

Parts parts(double s)
{
    double day = std::trunc(s);
    qint64 secs = std::llround(std::fabs(s - day) * 86400.0);
    if (secs >= 86400) {
        secs -= 86400;
        day += s < 0 ? -1 : 1;
    }
    return {QDate(1899, 12, 30).addDays(qint64(day)), int(secs)};
}

int intArg(sqlite3_value* v)
{
    if (isNull(v))
        throw vb::VBError(vb::err::InvalidUseOfNull);
    return int(std::lround(number(v)));
}

// ---- scalar functions -----------------------------------------------------------------

/// A unit's number is mostly a text of 1 to 15 digits only: what Val gives for it, read
/// without the run time's text (once per row of the sorts by Val).
template <class Code> std::optional<double> plainDigits(const Code* p, qsizetype n)
{
    if (n < 1 || n > 15)
        return std::nullopt;
    std::int64_t digits = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (p[i] < '0' || p[i] > '9')
            return std::nullopt;
        digits = digits * 10 + (p[i] - '0');
    }
    return double(digits);
}

#define JET_FN(name) void name(sqlite3_context* ctx, int argc, sqlite3_value** argv)

JET_FN(fnVal)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
        if (const auto digits = plainDigits(sqlite3_value_text(argv[0]), sqlite3_value_bytes(argv[0])))
            return sqlite3_result_double(ctx, *digits);
    }
    guarded(ctx, [&] { sqlite3_result_double(ctx, vb::Val(toVariant(argv[0]))); });
}

JET_FN(fnLeft)
{
    guarded(ctx, [&] { setResult(ctx, vb::Left(toVariant(argv[0]), intArg(argv[1]))); });
}

JET_FN(fnRight)
{
    guarded(ctx, [&] { setResult(ctx, vb::Right(toVariant(argv[0]), intArg(argv[1]))); });
}

JET_FN(fnMid)
{
    guarded(ctx,
            [&] { setResult(ctx, vb::Mid(toVariant(argv[0]), intArg(argv[1]), argc > 2 ? intArg(argv[2]) : -1)); });
}

JET_FN(fnLen)
{
    guarded(ctx, [&] { setResult(ctx, vb::Len(toVariant(argv[0]))); });
}

JET_FN(fnTrim)
{
    guarded(ctx, [&] { setResult(ctx, vb::Trim(toVariant(argv[0]))); });
}

void sideTrim(sqlite3_context* ctx, sqlite3_value* v, bool left)
{
    guarded(ctx, [&] {
        const Variant s = toVariant(v);
        if (s.isNull())
            return sqlite3_result_null(ctx);
        QString t = s.toString();
        if (left) {
            int i = 0;
            while (i < t.size() && t[i] == u' ')
                ++i;
            t.remove(0, i);
        } else {
            while (t.endsWith(u' '))
                t.chop(1);
        }
        setText(ctx, t);
    });
}

JET_FN(fnLTrim)
{
    sideTrim(ctx, argv[0], true);
}

JET_FN(fnRTrim)
{
    sideTrim(ctx, argv[0], false);
}

JET_FN(fnUCase)
{
    guarded(ctx, [&] { setResult(ctx, vb::UCase(toVariant(argv[0]))); });
}

JET_FN(fnLCase)
{
    guarded(ctx, [&] { setResult(ctx, vb::LCase(toVariant(argv[0]))); });
}

JET_FN(fnInStr)
{
    guarded(ctx, [&] {
        int start = 1;
        int a = 0;
        if (argc == 3) {
            start = intArg(argv[0]);
            a = 1;
        }
        if (isNull(argv[a]) || isNull(argv[a + 1]))
            return sqlite3_result_null(ctx);
        const QString s = toVariant(argv[a]).toString();
        const QString f = toVariant(argv[a + 1]).toString();
        sqlite3_result_int(ctx, int(s.indexOf(f, std::max(0, start - 1), Qt::CaseInsensitive)) + 1);
    });
}

JET_FN(fnReplace)
{
    guarded(ctx, [&] {
        setResult(ctx,
                  vb::Replace(toVariant(argv[0]), toVariant(argv[1]).displayText(), toVariant(argv[2]).displayText()));
    });
}

template <int Which> JET_FN(fnDatePart)
{
    guarded(ctx, [&] {
        if (isNull(argv[0]))
            return sqlite3_result_null(ctx);
        const Parts p = parts(serial(argv[0]));
        int r = 0;
        switch (Which) {
        case 0: r = p.date.year(); break;
        case 1: r = p.date.month(); break;
        case 2: r = p.date.day(); break;
        case 3: r = p.seconds / 3600; break;
        case 4: r = p.seconds / 60 % 60; break;
        case 5: r = p.seconds % 60; break;
        case 6: {
            const int first = argc > 1 && !isNull(argv[1]) ? intArg(argv[1]) : 1; // vbSunday
            const int vbDay = p.date.dayOfWeek() % 7 + 1;                         // Sunday = 1
            r = (vbDay - first + 7) % 7 + 1;
            break;
        }
        }
        sqlite3_result_int(ctx, r);
    });
}

JET_FN(fnDate)
{
    sqlite3_result_double(ctx, vb::toSerial(vb::Clock::today()));
}

double nowSerial()
{
    const double s = vb::toSerial(vb::Clock::now());
    return std::round(s * 86400.0) / 86400.0;
}

JET_FN(fnNow)
{
    sqlite3_result_double(ctx, nowSerial());
}

JET_FN(fnTime)
{
    const double s = nowSerial();
    sqlite3_result_double(ctx, s - std::floor(s));
}

JET_FN(fnFormat)
{
    guarded(ctx, [&] {
        const qint64 flags = sqlite3_value_int64(argv[0]);
        const Variant v = toVariant(argv[1], flags & 1);
        const QString pattern = argc > 2 ? toVariant(argv[2]).displayText() : QString();
        setResult(ctx, vb::Format(v, pattern));
    });
}

JET_FN(fnCStr)
{
    guarded(ctx, [&] {
        const Variant v = toVariant(argv[1], sqlite3_value_int64(argv[0]) & 1);
        if (v.isNull())
            return sqlite3_result_null(ctx);
        setResult(ctx, vb::CStr(v));
    });
}

template <Variant (*Convert)(const Variant&)> JET_FN(fnConvert)
{
    guarded(ctx, [&] {
        const Variant v = toVariant(argv[0]);
        if (v.isNull())
            return sqlite3_result_null(ctx);
        setResult(ctx, Convert(v));
    });
}

JET_FN(fnCDate)
{
    guarded(ctx, [&] {
        if (isNull(argv[0]))
            return sqlite3_result_null(ctx);
        if (sqlite3_value_type(argv[0]) == SQLITE_TEXT && sqlite3_value_bytes(argv[0]) == 0)
            throw vb::VBError(vb::err::TypeMismatch);
        sqlite3_result_double(ctx, serial(argv[0]));
    });
}

template <bool Floor> JET_FN(fnIntFix)
{
    guarded(ctx, [&] {
        if (isNull(argv[0]))
            return sqlite3_result_null(ctx);
        const double d = number(argv[0]);
        setNumber(ctx, Floor ? std::floor(d) : std::trunc(d));
    });
}

// VB's Round: half to even.
JET_FN(fnRound)
{
    guarded(ctx, [&] {
        if (isNull(argv[0]))
            return sqlite3_result_null(ctx);
        const int places = argc > 1 ? intArg(argv[1]) : 0;
        const double scale = std::pow(10.0, places);
        const double r = std::nearbyint(number(argv[0]) * scale) / scale;
        if (places == 0)
            setNumber(ctx, r);
        else
            sqlite3_result_double(ctx, r);
    });
}

// "&": one Null counts as "", all Null give Null; numbers through CStr, dates as dates.
JET_FN(fnConcat)
{
    guarded(ctx, [&] {
        const qint64 flags = sqlite3_value_int64(argv[0]);
        Variant acc = toVariant(argv[1], flags & 1);
        for (int i = 2; i < argc; ++i)
            acc = vb::Concat(acc, toVariant(argv[i], (flags >> (i - 1)) & 1));
        setResult(ctx, acc);
    });
}

JET_FN(fnNum)
{
    guarded(ctx, [&] {
        sqlite3_value* v = argv[0];
        const int t = sqlite3_value_type(v);
        if (t == SQLITE_NULL || (t == SQLITE_TEXT && sqlite3_value_bytes(v) == 0))
            return sqlite3_result_null(ctx);
        if (t == SQLITE_INTEGER || t == SQLITE_FLOAT)
            return sqlite3_result_value(ctx, v);
        setNumber(ctx, number(v));
    });
}

// Arithmetic on values of no known type, with VB's rules: Null gives Null, numeric
// texts are numbers (Italian), "+" of two texts joins them.
template <int Op> JET_FN(fnArith)
{
    guarded(ctx, [&] {
        if (isNull(argv[0]) || (argc > 1 && isNull(argv[1])))
            return sqlite3_result_null(ctx);
        if (Op == 0 && sqlite3_value_type(argv[0]) == SQLITE_TEXT && sqlite3_value_type(argv[1]) == SQLITE_TEXT) {
            setText(ctx, toVariant(argv[0]).rawString() + toVariant(argv[1]).rawString());
            return;
        }
        const double a = number(argv[0]);
        if (Op == 7)
            return setNumber(ctx, -a);
        const double b = number(argv[1]);
        switch (Op) {
        case 0: return setNumber(ctx, a + b);
        case 1: return setNumber(ctx, a - b);
        case 2: return setNumber(ctx, a * b);
        case 3:
            if (b == 0)
                throw vb::VBError(11);
            return sqlite3_result_double(ctx, a / b);
        case 4:
        case 5: {
            const double ia = std::nearbyint(a), ib = std::nearbyint(b);
            if (ib == 0)
                throw vb::VBError(11);
            return setNumber(ctx, Op == 4 ? std::trunc(ia / ib) : std::fmod(ia, ib));
        }
        case 6: return setNumber(ctx, std::pow(a, b));
        }
    });
}

// ---- aggregates -----------------------------------------------------------------------

struct SumState
{
    double sum = 0;
    qint64 isum = 0;
    qint64 count = 0;
    bool allIntegers = true;
};

void sumStep(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    auto* s = static_cast<SumState*>(sqlite3_aggregate_context(ctx, sizeof(SumState)));
    if (!s || isNull(argv[0]))
        return;
    guarded(ctx, [&] {
        if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER) {
            s->isum += sqlite3_value_int64(argv[0]);
        } else {
            s->allIntegers = false;
            s->sum += number(argv[0]);
        }
        ++s->count;
    });
}

void sumFinal(sqlite3_context* ctx)
{
    auto* s = static_cast<SumState*>(sqlite3_aggregate_context(ctx, 0));
    if (!s || s->count == 0)
        return sqlite3_result_null(ctx);
    if (s->allIntegers)
        sqlite3_result_int64(ctx, s->isum);
    else
        sqlite3_result_double(ctx, s->sum + double(s->isum));
}

void avgFinal(sqlite3_context* ctx)
{
    auto* s = static_cast<SumState*>(sqlite3_aggregate_context(ctx, 0));
    if (!s || s->count == 0)
        return sqlite3_result_null(ctx);
    sqlite3_result_double(ctx, (s->sum + double(s->isum)) / double(s->count));
}

// ---- collation ------------------------------------------------------------------------

// Per UTF-16 unit: the letter without accent and case (first level), and the letter
// without case (second level): "a" = "A" < "à" < "b".
struct Keys
{
    std::array<char16_t, 65536> primary;
    std::array<char16_t, 65536> secondary;
    Keys()
    {
        for (int i = 0; i < 65536; ++i) {
            const QChar c{char16_t(i)};
            char16_t folded = c.toCaseFolded().unicode();
            if (i >= 0xD800 && i < 0xE000)
                folded = char16_t(i);
            secondary[size_t(i)] = folded;
            char16_t base = folded;
            if (i >= 128 && c.decompositionTag() == QChar::Canonical) {
                const QString d = c.decomposition();
                if (!d.isEmpty())
                    base = d[0].toCaseFolded().unicode();
            }
            primary[size_t(i)] = base;
        }
    }
};

const Keys& keys()
{
    static const Keys k;
    return k;
}

int compareTexts(QStringView s1, QStringView s2)
{
    const Keys& k = keys();
    const qsizetype n = std::min(s1.size(), s2.size());
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t p1 = k.primary[s1[i].unicode()], p2 = k.primary[s2[i].unicode()];
        if (p1 != p2)
            return p1 < p2 ? -1 : 1;
    }
    if (s1.size() != s2.size())
        return s1.size() < s2.size() ? -1 : 1;
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c1 = k.secondary[s1[i].unicode()], c2 = k.secondary[s2[i].unicode()];
        if (c1 != c2)
            return c1 < c2 ? -1 : 1;
    }
    return 0;
}

int compareSlow(int n1, const char* a, int n2, const char* b)
{
    return compareTexts(QString::fromUtf8(a, n1), QString::fromUtf8(b, n2));
}

int jetCollate(void*, int n1, const void* p1, int n2, const void* p2)
{
    const auto* a = static_cast<const unsigned char*>(p1);
    const auto* b = static_cast<const unsigned char*>(p2);
    // Equal bytes are equal characters whatever they are (the texts are UTF-8), and the
    // groupings compare mostly equal texts, the sorts many that begin alike: the same
    // texts at once, the same beginnings a word at a time.
    if (n1 == n2 && std::memcmp(a, b, size_t(n1)) == 0)
        return 0;
    const int n = std::min(n1, n2);
    int i = 0;
    for (std::uint64_t x = 0, y = 0; i + 8 <= n; i += 8) {
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        if (x != y)
            break;
    }
    // Plain ASCII: letters compare without case.
    for (; i < n; ++i) {
        unsigned char x = a[i], y = b[i];
        if (x == y)
            continue;
        if ((x | y) & 0x80)
            return compareSlow(n1, static_cast<const char*>(p1), n2, static_cast<const char*>(p2));
        if (x >= 'A' && x <= 'Z')
            x += 32;
        if (y >= 'A' && y <= 'Z')
            y += 32;
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (n1 == n2)
        return 0;
    // The longer one may go on in non-ASCII; only its length decides then.
    return n1 < n2 ? -1 : 1;
}

// ---- LIKE -----------------------------------------------------------------------------

struct LikeItem
{
    enum Kind { Char, One, Any, Set } kind = Char;
    char16_t c = 0;
    bool negated = false;
    std::vector<std::pair<char16_t, char16_t>> ranges;
};

using LikePattern = std::vector<LikeItem>;

char16_t fold(QChar c)
{
    return keys().secondary[c.unicode()];
}

LikePattern compileLike(const QString& p)
{
    LikePattern out;
    for (qsizetype i = 0; i < p.size(); ++i) {
        LikeItem it;
        const QChar c = p[i];
        if (c == u'%') {
            it.kind = LikeItem::Any;
        } else if (c == u'_') {
            it.kind = LikeItem::One;
        } else if (c == u'[' && p.indexOf(u']', i + 1) > i) {
            const qsizetype close = p.indexOf(u']', i + 2 <= p.size() ? i + 2 : i + 1);
            QString body = p.mid(i + 1, close - i - 1);
            i = close;
            if (body.size() > 1 && body[0] == u'!') {
                it.negated = true;
                body.remove(0, 1);
            }
            if (body.size() == 1 && !it.negated) {
                it.kind = LikeItem::Char; // "[%]" matches a "%"
                it.c = fold(body[0]);
                out.push_back(it);
                continue;
            }
            it.kind = LikeItem::Set;
            for (qsizetype j = 0; j < body.size(); ++j) {
                if (j + 2 < body.size() && body[j + 1] == u'-') {
                    it.ranges.emplace_back(fold(body[j]), fold(body[j + 2]));
                    j += 2;
                } else {
                    it.ranges.emplace_back(fold(body[j]), fold(body[j]));
                }
            }
        } else {
            it.c = fold(c);
        }
        out.push_back(std::move(it));
    }
    return out;
}

bool matchOne(const LikeItem& it, char16_t c)
{
    switch (it.kind) {
    case LikeItem::Char: return it.c == c;
    case LikeItem::One: return true;
    case LikeItem::Set: {
        bool in = false;
        for (const auto& [lo, hi] : it.ranges)
            if (c >= lo && c <= hi)
                in = true;
        return in != it.negated;
    }
    case LikeItem::Any: break;
    }
    return false;
}

bool matchLike(const LikePattern& p, const QString& s)
{
    // Iterative wildcard matching with back-tracking to the last "%".
    size_t pi = 0;
    qsizetype si = 0;
    size_t starP = size_t(-1);
    qsizetype starS = 0;
    while (si < s.size()) {
        if (pi < p.size() && p[pi].kind == LikeItem::Any) {
            starP = pi++;
            starS = si;
        } else if (pi < p.size() && matchOne(p[pi], fold(s[si]))) {
            ++pi;
            ++si;
        } else if (starP != size_t(-1)) {
            pi = starP + 1;
            si = ++starS;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi].kind == LikeItem::Any)
        ++pi;
    return pi == p.size();
}

void likeImpl(sqlite3_context* ctx, sqlite3_value* text, sqlite3_value* pattern, int patternArg)
{
    if (isNull(text) || isNull(pattern))
        return sqlite3_result_null(ctx);
    auto* compiled = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, patternArg));
    if (!compiled) {
        compiled = new LikePattern(compileLike(toVariant(pattern).displayText()));
        sqlite3_set_auxdata(ctx, patternArg, compiled, [](void* p) { delete static_cast<LikePattern*>(p); });
        compiled = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, patternArg));
        if (!compiled) // SQLite may drop it at once when the pattern is not constant
            return sqlite3_result_int(
                ctx, matchLike(compileLike(toVariant(pattern).displayText()), toVariant(text).displayText()));
    }
    sqlite3_result_int(ctx, matchLike(*compiled, toVariant(text).displayText()) ? 1 : 0);
}

JET_FN(fnJetLike)
{
    likeImpl(ctx, argv[0], argv[1], 1);
}

// SQLite's own like(pattern, text), for conditions written in plain SQLite.
JET_FN(fnSqliteLike)
{
    likeImpl(ctx, argv[1], argv[0], 0);
}

#undef JET_FN

using Scalar = void (*)(sqlite3_context*, int, sqlite3_value**);

struct Registration
{
    const char* name;
    int args;
    Scalar fn;
    bool deterministic = true;
};

} // namespace

void registerFunctions(sqlite3* db)
{
    static const Registration scalars[] = {
        {"jet_val", 1, fnVal},
        {"jet_left", 2, fnLeft},
        {"jet_right", 2, fnRight},
        {"jet_mid", 2, fnMid},
        {"jet_mid", 3, fnMid},
        {"jet_len", 1, fnLen},
        {"jet_trim", 1, fnTrim},
        {"jet_ltrim", 1, fnLTrim},
        {"jet_rtrim", 1, fnRTrim},
        {"jet_ucase", 1, fnUCase},
        {"jet_lcase", 1, fnLCase},
        {"jet_instr", 2, fnInStr},
        {"jet_instr", 3, fnInStr},
        {"jet_replace", 3, fnReplace},
        {"jet_year", 1, fnDatePart<0>},
        {"jet_month", 1, fnDatePart<1>},
        {"jet_day", 1, fnDatePart<2>},
        {"jet_hour", 1, fnDatePart<3>},
        {"jet_minute", 1, fnDatePart<4>},
        {"jet_second", 1, fnDatePart<5>},
        {"jet_weekday", 1, fnDatePart<6>},
        {"jet_weekday", 2, fnDatePart<6>},
        {"jet_date", 0, fnDate, false},
        {"jet_now", 0, fnNow, false},
        {"jet_time", 0, fnTime, false},
        {"jet_format", 2, fnFormat},
        {"jet_format", 3, fnFormat},
        {"jet_cstr", 2, fnCStr},
        {"jet_cint", 1, fnConvert<vb::CInt>},
        {"jet_clng", 1, fnConvert<vb::CLng>},
        {"jet_cdbl", 1, fnConvert<vb::CDbl>},
        {"jet_cdate", 1, fnCDate},
        {"jet_int", 1, fnIntFix<true>},
        {"jet_fix", 1, fnIntFix<false>},
        {"jet_round", 1, fnRound},
        {"jet_round", 2, fnRound},
        {"jet_concat", -1, fnConcat},
        {"jet_num", 1, fnNum},
        {"jet_add", 2, fnArith<0>},
        {"jet_sub", 2, fnArith<1>},
        {"jet_mul", 2, fnArith<2>},
        {"jet_div", 2, fnArith<3>},
        {"jet_intdiv", 2, fnArith<4>},
        {"jet_mod", 2, fnArith<5>},
        {"jet_pow", 2, fnArith<6>},
        {"jet_neg", 1, fnArith<7>},
        {"jet_like", 2, fnJetLike},
        {"like", 2, fnSqliteLike},
    };
    for (const Registration& r : scalars)
        sqlite3_create_function_v2(db, r.name, r.args,
                                   SQLITE_UTF8 | (r.deterministic ? SQLITE_DETERMINISTIC : 0) | SQLITE_INNOCUOUS,
                                   nullptr, r.fn, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "jet_sum", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, nullptr, sumStep,
                               sumFinal, nullptr);
    sqlite3_create_function_v2(db, "jet_avg", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, nullptr, sumStep,
                               avgFinal, nullptr);
    sqlite3_create_collation_v2(db, Collation, SQLITE_UTF8, nullptr, jetCollate, nullptr);
    keys(); // built once, before the first comparison
}

std::optional<vb::VBError> errorFromMessage(const QString& message)
{
    const qsizetype at = message.indexOf(QLatin1String(ErrorPrefix));
    if (at < 0)
        return std::nullopt;
    const QString rest = message.mid(at + qsizetype(sizeof(ErrorPrefix)) - 1);
    const qsizetype colon = rest.indexOf(u':');
    bool ok = false;
    const int number = rest.left(colon).toInt(&ok);
    if (!ok || colon < 0)
        return std::nullopt;
    return vb::VBError(number, rest.mid(colon + 1));
}

std::vector<size_t> orderRows(const RowOrder& order, size_t count, const std::function<const vb::Variant*(size_t)>& row)
{
    using Kind = RowOrder::Term::Kind;
    // A value's place in SQLite's order of types (Null, numbers, texts), and the
    // number or the text.
    struct Key
    {
        int rank = 0;
        double number = 0;
        const QString* text = nullptr;
    };
    auto keyOf = [](const vb::Variant& v) {
        if (v.isNull() || v.isEmpty())
            return Key{};
        return v.isString() ? Key{2, 0, &v.rawString()} : Key{1, v.toDouble(), nullptr};
    };
    auto val = [](const vb::Variant& v) {
        const std::optional<double> digits =
            v.isString() ? plainDigits(v.rawString().utf16(), v.rawString().size()) : std::nullopt;
        return digits ? *digits : vb::Val(v);
    };
    // Val is read once per row; the other terms from the row's values as they are.
    const size_t width = order.terms.size();
    std::vector<const vb::Variant*> rows(count);
    std::vector<size_t> slots(width, 0);
    size_t vals = 0;
    for (size_t t = 0; t < width; ++t)
        if (order.terms[t].kind == Kind::Val)
            slots[t] = vals++;
    std::vector<double> valued(count * vals);
    for (size_t r = 0; r < count; ++r) {
        rows[r] = row(r);
        for (size_t t = 0; t < width; ++t)
            if (order.terms[t].kind == Kind::Val)
                valued[r * vals + slots[t]] = val(rows[r][order.terms[t].column]);
    }
    auto key = [&](size_t r, size_t t) {
        const RowOrder::Term& term = order.terms[t];
        const vb::Variant* v = rows[r];
        if (term.kind == Kind::Val)
            return Key{1, valued[r * vals + slots[t]], nullptr};
        if (term.kind == Kind::CountOf && (v[term.of].isNull() || v[term.of].isEmpty()))
            return Key{1, 0, nullptr};
        return keyOf(v[term.column]);
    };
    auto compare = [&](size_t a, size_t b, size_t from, size_t to) {
        for (size_t t = from; t < to; ++t) {
            const Key x = key(a, t), y = key(b, t);
            int c = x.rank - y.rank;
            if (c == 0 && x.rank == 2)
                c = compareTexts(*x.text, *y.text);
            else if (c == 0 && x.rank == 1)
                c = x.number < y.number ? -1 : x.number > y.number ? 1 : 0;
            if (c != 0)
                return order.terms[t].descending ? -c : c;
        }
        return 0;
    };
    std::vector<size_t> out(count);
    std::iota(out.begin(), out.end(), size_t(0));
    // The rows come in order by the leading terms: each run of rows equal on them is
    // sorted on the rest. Checked pair by pair; rows come otherwise, all are sorted.
    const size_t lead = std::min(order.arriving, width);
    auto sortRun = [&](size_t first, size_t last, size_t from) {
        if (last - first > 1)
            std::stable_sort(out.begin() + std::ptrdiff_t(first), out.begin() + std::ptrdiff_t(last),
                             [&](size_t a, size_t b) { return compare(a, b, from, width) < 0; });
    };
    size_t first = 0;
    for (size_t r = 1; r <= count; ++r) {
        const int c = r < count ? compare(r - 1, r, 0, lead) : -1;
        if (c > 0) {
            // From the rows as they came, not as the runs before were left.
            std::iota(out.begin(), out.end(), size_t(0));
            sortRun(0, count, 0);
            return out;
        }
        if (c < 0) {
            sortRun(first, r, lead);
            first = r;
        }
    }
    return out;
}

} // namespace store::jet
