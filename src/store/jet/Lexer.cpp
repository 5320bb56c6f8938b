#include "runtime/VBError.h"
#include "store/jet/Syntax.h"

#include <QDate>
#include <QTime>

#include <cmath>

namespace store::jet {

void syntaxError(const QString& text)
{
    throw vb::VBError(vb::err::SyntaxError, text);
}

namespace {

bool isWordStart(QChar c)
{
    return c.isLetter() || c == u'_';
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

int twoDigitYear(int y)
{
    return y < 30 ? 2000 + y : 1900 + y;
}

// A time "hh:nn[:ss] [AM|PM]"; nullopt when it is not one.
std::optional<double> parseTime(QString t)
{
    t = t.trimmed().toUpper();
    int addHours = 0;
    bool pm = t.endsWith(QLatin1String("PM"));
    bool am = t.endsWith(QLatin1String("AM"));
    if (pm || am) {
        t.chop(2);
        t = t.trimmed();
    }
    const QStringList parts = t.split(u':');
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    int v[3] = {0, 0, 0};
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        v[i] = parts[i].trimmed().toInt(&ok);
        if (!ok)
            return std::nullopt;
    }
    if (pm && v[0] < 12)
        addHours = 12;
    if (am && v[0] == 12)
        addHours = -12;
    const int h = v[0] + addHours;
    if (h < 0 || h > 23 || v[1] > 59 || v[2] > 59)
        return std::nullopt;
    return (h * 3600 + v[1] * 60 + v[2]) / 86400.0;
}

} // namespace

/// A Jet date literal's text (between the #s): US month/day/year, or year-month-day,
/// with an optional time; the day number, or nullopt.
std::optional<double> parseDateLiteral(const QString& text)
{
    QString t = text.trimmed();
    QString datePart = t, timePart;
    const int space = t.indexOf(u' ');
    if (space > 0) {
        datePart = t.left(space);
        timePart = t.mid(space + 1);
    } else if (t.contains(u':')) {
        datePart.clear();
        timePart = t;
    }
    double serial = 0;
    if (!datePart.isEmpty()) {
        QString norm = datePart;
        norm.replace(u'-', u'/').replace(u'.', u'/');
        const QStringList p = norm.split(u'/');
        if (p.size() != 3)
            return std::nullopt;
        int n[3];
        for (int i = 0; i < 3; ++i) {
            bool ok = false;
            n[i] = p[i].toInt(&ok);
            if (!ok)
                return std::nullopt;
        }
        int y, m, d;
        if (p[0].size() == 4) {
            y = n[0], m = n[1], d = n[2];
        } else {
            m = n[0], d = n[1], y = n[2];
            if (p[2].size() <= 2)
                y = twoDigitYear(y);
            if (m > 12 && d <= 12)
                std::swap(m, d);
        }
        const QDate date(y, m, d);
        if (!date.isValid())
            return std::nullopt;
        serial = vb::toSerial(date);
    }
    if (!timePart.isEmpty()) {
        const auto time = parseTime(timePart);
        if (!time)
            return std::nullopt;
        serial += serial < 0 ? -*time : *time;
    }
    return serial;
}

Lexed lex(const QString& src, bool withTokens)
{
    Lexed out;
    if (withTokens)
        out.tokens.reserve(src.size() / 4 + 4);
    out.shape.reserve(src.size() + 16);
    const int n = int(src.size());
    int i = 0;
    auto addShape = [&](QChar tag, QStringView text) {
        out.shape += tag;
        out.shape += text;
        out.shape += QChar(0x1f);
    };
    while (i < n) {
        const QChar c = src[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        Token tok;
        tok.begin = i;
        if (isWordStart(c)) {
            int j = i + 1;
            while (j < n && isWordChar(src[j]))
                ++j;
            tok.kind = TokenKind::Word;
            if (withTokens)
                tok.text = src.mid(i, j - i);
            addShape(u'w', QStringView(src).mid(i, j - i));
            i = j;
        } else if (c == u'[') {
            const int close = src.indexOf(u']', i + 1);
            if (close < 0)
                syntaxError(QStringLiteral("Errore di sintassi (operatore mancante) nell'espressione della query '%1'.")
                                .arg(src.mid(i).trimmed()));
            tok.kind = TokenKind::Bracketed;
            if (withTokens)
                tok.text = src.mid(i + 1, close - i - 1);
            addShape(u'b', QStringView(src).mid(i + 1, close - i - 1));
            i = close + 1;
        } else if (c == u'\'' || c == u'"') {
            // The text up to the closing quote; a doubled quote stands for one.
            int j = i + 1;
            bool closed = false;
            bool doubled = false;
            while (j < n) {
                j = int(src.indexOf(c, j));
                if (j < 0) {
                    j = n;
                    break;
                }
                if (j + 1 < n && src[j + 1] == c) {
                    doubled = true;
                    j += 2;
                    continue;
                }
                closed = true;
                ++j;
                break;
            }
            QString value = src.mid(i + 1, j - i - 2);
            if (doubled)
                value.replace(QString(2, c), QString(c));
            if (!closed)
                syntaxError(QStringLiteral("Errore di sintassi nella stringa nell'espressione della query '%1'.")
                                .arg(src.mid(i).trimmed()));
            tok.kind = TokenKind::String;
            tok.literal = int(out.literals.size());
            out.literals.emplace_back(value);
            addShape(u'\'', u"s");
            i = j;
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && src[i + 1].isDigit())) {
            int j = i;
            while (j < n && src[j].isDigit())
                ++j;
            bool isReal = false;
            if (j < n && src[j] == u'.' && !(j + 1 < n && isWordStart(src[j + 1]))) {
                isReal = true;
                ++j;
                while (j < n && src[j].isDigit())
                    ++j;
            }
            if (j < n && (src[j] == u'e' || src[j] == u'E')) {
                int k = j + 1;
                if (k < n && (src[k] == u'+' || src[k] == u'-'))
                    ++k;
                if (k < n && src[k].isDigit()) {
                    isReal = true;
                    j = k;
                    while (j < n && src[j].isDigit())
                        ++j;
                }
            }
            const QString text = src.mid(i, j - i);
            tok.kind = TokenKind::Number;
            tok.literal = int(out.literals.size());
            bool ok = false;
            const qlonglong whole = isReal ? 0 : text.toLongLong(&ok);
            if (ok && whole <= 2147483647LL)
                out.literals.emplace_back(std::int64_t(whole));
            else
                out.literals.emplace_back(text.toDouble());
            addShape(u'\'', u"n");
            i = j;
        } else if (c == u'#') {
            const int close = src.indexOf(u'#', i + 1);
            const auto serial = close < 0 ? std::nullopt : parseDateLiteral(src.mid(i + 1, close - i - 1));
            if (!serial)
                syntaxError(QStringLiteral("Errore di sintassi nella data nell'espressione della query '%1'.")
                                .arg(close < 0 ? src.mid(i) : src.mid(i, close - i + 1)));
            tok.kind = TokenKind::Date;
            tok.literal = int(out.literals.size());
            out.literals.emplace_back(vb::JetDate{*serial});
            addShape(u'\'', u"d");
            i = close + 1;
        } else if (c == u'?') {
            tok.kind = TokenKind::Param;
            tok.literal = int(out.literals.size());
            out.userParams.push_back(tok.literal);
            out.literals.push_back(vb::Variant::null());
            addShape(u'\'', u"?");
            ++i;
        } else {
            tok.kind = TokenKind::Symbol;
            const QChar d = i + 1 < n ? src[i + 1] : QChar();
            if ((c == u'<' && (d == u'>' || d == u'=')) || (c == u'>' && d == u'=')) {
                tok.text = QString(c) + d;
                i += 2;
            } else if (QStringLiteral("=<>+-*/\\^&(),.!;{}").contains(c)) {
                tok.text = QString(c);
                ++i;
            } else {
                syntaxError(QStringLiteral("Carattere non valido nell'espressione della query '%1'.")
                                .arg(src.mid(i).trimmed()));
            }
            addShape(u's', tok.text);
        }
        tok.end = i;
        if (withTokens)
            out.tokens.push_back(std::move(tok));
    }
    Token end;
    end.begin = end.end = n;
    out.tokens.push_back(end);
    return out;
}

} // namespace store::jet
