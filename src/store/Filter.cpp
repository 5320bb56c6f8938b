#include "store/Filter.h"

#include "runtime/Regional.h"
#include "runtime/VBError.h"

#include <QRegularExpression>

namespace store::filter {

using vb::Variant;

namespace {

bool isNumberLike(const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Boolean:
    case Variant::Type::Integer:
    case Variant::Type::Long:
    case Variant::Type::Double: return true;
    default: return false;
    }
}

double numberOf(const Variant& v)
{
    if (v.type() == Variant::Type::Boolean)
        return v.rawBool() ? -1.0 : 0.0;
    if (v.type() == Variant::Type::Double || v.type() == Variant::Type::Date)
        return v.rawDouble();
    return static_cast<double>(v.rawLong());
}

int sign(double d)
{
    return d < 0 ? -1 : (d > 0 ? 1 : 0);
}

} // namespace

std::optional<int> compare(const Variant& a, const Variant& b)
{
    if (a.isNull() || b.isNull())
        return std::nullopt;
    const bool aNum = isNumberLike(a) || a.isDate();
    const bool bNum = isNumberLike(b) || b.isDate();
    if (aNum && bNum)
        return sign(numberOf(a) - numberOf(b));
    if (a.isString() && b.isString())
        return a.rawString().compare(b.rawString(), Qt::CaseInsensitive);
    // One side text: read it as the other side's kind, as the provider converts.
    const Variant& text = a.isString() ? a : b;
    const Variant& other = a.isString() ? b : a;
    std::optional<double> n =
        other.isDate() ? vb::regional::parseDateTime(text.rawString()) : vb::regional::parseNumber(text.rawString());
    if (!n)
        return std::nullopt;
    const int c = sign(*n - numberOf(other));
    return a.isString() ? c : -c;
}

bool like(const QString& text, const QString& pattern)
{
    QString rx;
    for (const QChar c : pattern) {
        if (c == u'%' || c == u'*')
            rx += QLatin1String(".*");
        else if (c == u'_' || c == u'?')
            rx += QLatin1Char('.');
        else
            rx += QRegularExpression::escape(QString(c));
    }
    const QRegularExpression re(QRegularExpression::anchoredPattern(rx),
                                QRegularExpression::CaseInsensitiveOption |
                                    QRegularExpression::DotMatchesEverythingOption);
    return re.match(text).hasMatch();
}

struct Criteria::Node
{
    enum Kind { And, Or, Not, Compare, IsNull } kind = Compare;
    std::unique_ptr<Node> left, right;
    int column = -1;
    QString op;
    Variant literal;

    bool eval(std::span<const Variant> row) const
    {
        switch (kind) {
        case And: return left->eval(row) && right->eval(row);
        case Or: return left->eval(row) || right->eval(row);
        case Not: return !left->eval(row);
        case IsNull: return row[column].isNull();
        case Compare: break;
        }
        const Variant& v = row[column];
        if (v.isNull() || literal.isNull())
            return false;
        if (op == QLatin1String("LIKE"))
            return like(v.displayText(), literal.displayText());
        const std::optional<int> c = compare(v, literal);
        if (!c)
            return false;
        if (op == QLatin1String("="))
            return *c == 0;
        if (op == QLatin1String("<>"))
            return *c != 0;
        if (op == QLatin1String("<"))
            return *c < 0;
        if (op == QLatin1String(">"))
            return *c > 0;
        if (op == QLatin1String("<="))
            return *c <= 0;
        return *c >= 0;
    }
};

namespace {

class Parser
{
public:
    Parser(const QString& text, const QStringList& columns) : s(text), cols(columns) { }

    std::unique_ptr<Criteria::Node> parse()
    {
        auto n = orExpr();
        skip();
        if (i < s.size())
            fail();
        return n;
    }

private:
    using Node = Criteria::Node;

    std::unique_ptr<Node> orExpr()
    {
        auto n = andExpr();
        while (word(u"OR"))
            n = binary(Node::Or, std::move(n), andExpr());
        return n;
    }

    std::unique_ptr<Node> andExpr()
    {
        auto n = factor();
        while (word(u"AND"))
            n = binary(Node::And, std::move(n), factor());
        return n;
    }

    std::unique_ptr<Node> factor()
    {
        if (word(u"NOT")) {
            auto n = std::make_unique<Node>();
            n->kind = Node::Not;
            n->left = factor();
            return n;
        }
        skip();
        if (i < s.size() && s[i] == u'(') {
            ++i;
            auto n = orExpr();
            skip();
            if (i >= s.size() || s[i] != u')')
                fail();
            ++i;
            return n;
        }
        auto n = std::make_unique<Node>();
        n->column = column();
        if (word(u"IS")) {
            const bool negated = word(u"NOT");
            if (!word(u"NULL"))
                fail();
            n->kind = Node::IsNull;
            if (negated) {
                auto outer = std::make_unique<Node>();
                outer->kind = Node::Not;
                outer->left = std::move(n);
                return outer;
            }
            return n;
        }
        n->op = op();
        n->literal = literal();
        return n;
    }

    static std::unique_ptr<Node> binary(Node::Kind k, std::unique_ptr<Node> l, std::unique_ptr<Node> r)
    {
        auto n = std::make_unique<Node>();
        n->kind = k;
        n->left = std::move(l);
        n->right = std::move(r);
        return n;
    }

    int column()
    {
        skip();
        QString name;
        if (i < s.size() && s[i] == u'[') {
            const qsizetype end = s.indexOf(u']', i);
            if (end < 0)
                fail();
            name = s.mid(i + 1, end - i - 1);
            i = end + 1;
        } else {
            const qsizetype start = i;
            while (i < s.size() && (s[i].isLetterOrNumber() || s[i] == u'_' || s[i] == u'.'))
                ++i;
            name = s.mid(start, i - start);
        }
        for (int c = 0; c < cols.size(); ++c)
            if (cols[c].compare(name, Qt::CaseInsensitive) == 0)
                return c;
        fail();
    }

    QString op()
    {
        if (word(u"LIKE"))
            return QStringLiteral("LIKE");
        skip();
        for (const char* o : {"<>", "<=", ">=", "=", "<", ">"}) {
            const QLatin1String t(o);
            if (s.mid(i, t.size()) == t) {
                i += t.size();
                return t;
            }
        }
        fail();
    }

    Variant literal()
    {
        skip();
        if (i >= s.size())
            fail();
        const QChar c = s[i];
        if (c == u'\'' || c == u'"' || c == u'#') {
            QString text;
            for (++i; i < s.size(); ++i) {
                if (s[i] == c) {
                    if (c != u'#' && i + 1 < s.size() && s[i + 1] == c) {
                        text += c;
                        ++i;
                        continue;
                    }
                    ++i;
                    if (c == u'#') {
                        const auto serial = vb::regional::parseDateTime(text);
                        if (!serial)
                            fail();
                        return Variant(vb::JetDate{*serial});
                    }
                    return Variant(text);
                }
                text += s[i];
            }
            fail();
        }
        if (word(u"NULL"))
            return Variant::null();
        const qsizetype start = i;
        while (i < s.size() && (s[i].isDigit() || s[i] == u'.' || s[i] == u'-' || s[i] == u'+'))
            ++i;
        bool ok = false;
        const double d = s.mid(start, i - start).toDouble(&ok);
        if (!ok)
            fail();
        return Variant(d);
    }

    bool word(QStringView w)
    {
        skip();
        if (s.mid(i, w.size()).compare(w, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype after = i + w.size();
        if (after < s.size() && (s[after].isLetterOrNumber() || s[after] == u'_'))
            return false;
        i = after;
        return true;
    }

    void skip()
    {
        while (i < s.size() && s[i].isSpace())
            ++i;
    }

    [[noreturn]] void fail()
    {
        throw vb::VBError(3001, QStringLiteral("Gli argomenti sono di tipo errato, non sono compresi nell'intervallo "
                                               "consentito o sono in conflitto tra loro."));
    }

    const QString& s;
    const QStringList& cols;
    qsizetype i = 0;
};

} // namespace

Criteria::Criteria(const QString& text, const QStringList& columns) : m_root(Parser(text, columns).parse())
{
}

Criteria::~Criteria() = default;

bool Criteria::matches(std::span<const Variant> row) const
{
    return m_root->eval(row);
}

} // namespace store::filter
