#include "store/Shape.h"

#include "runtime/VBError.h"

namespace store::shape {

namespace {

class Parser
{
public:
    explicit Parser(const QString& text) : s(text) { }

    std::shared_ptr<Command> command()
    {
        expectWord(u"SHAPE");
        auto cmd = std::make_shared<Command>();
        cmd->sql = braced();
        skipAlias();
        if (acceptWord(u"APPEND")) {
            do {
                cmd->children.push_back(child());
            } while (accept(u','));
        }
        return cmd;
    }

    void end()
    {
        skipBlanks();
        if (i < s.size())
            fail();
    }

private:
    // "({child} [AS name] RELATE a TO b, ...) [AS name]", the child a braced statement
    // or a shaped command of its own, bracketed or not.
    Child child()
    {
        Child c;
        expect(u'(');
        skipBlanks();
        if (peek(u'{')) {
            c.command = std::make_shared<Command>();
            c.command->sql = braced();
        } else if (accept(u'(')) {
            c.command = command();
            expect(u')');
        } else {
            c.command = command();
        }
        if (acceptWord(u"AS"))
            c.name = name();
        expectWord(u"RELATE");
        do {
            QString parentColumn = name();
            expectWord(u"TO");
            c.relate.emplace_back(parentColumn, name());
        } while (accept(u','));
        expect(u')');
        if (acceptWord(u"AS"))
            c.name = name();
        if (c.name.isEmpty())
            c.name = QStringLiteral("Chapter1");
        return c;
    }

    void skipAlias()
    {
        const qsizetype save = i;
        if (acceptWord(u"AS")) {
            const QString n = name();
            if (n.compare(QLatin1String("APPEND"), Qt::CaseInsensitive) == 0)
                i = save;
        }
    }

    QString braced()
    {
        skipBlanks();
        expect(u'{');
        const qsizetype start = i;
        QChar quote;
        for (; i < s.size(); ++i) {
            const QChar c = s[i];
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == u'\'' || c == u'"') {
                quote = c;
            } else if (c == u'}') {
                return s.mid(start, i++ - start).trimmed();
            }
        }
        fail();
    }

    QString name()
    {
        skipBlanks();
        if (accept(u'[')) {
            const qsizetype end = s.indexOf(u']', i);
            if (end < 0)
                fail();
            QString n = s.mid(i, end - i);
            i = end + 1;
            return n;
        }
        const qsizetype start = i;
        while (i < s.size() && (s[i].isLetterOrNumber() || s[i] == u'_'))
            ++i;
        if (i == start)
            fail();
        return s.mid(start, i - start);
    }

    void skipBlanks()
    {
        while (i < s.size() && s[i].isSpace())
            ++i;
    }

    bool peek(char16_t c)
    {
        skipBlanks();
        return i < s.size() && s[i] == c;
    }

    bool accept(char16_t c)
    {
        if (!peek(c))
            return false;
        ++i;
        return true;
    }

    void expect(char16_t c)
    {
        if (!accept(c))
            fail();
    }

    bool acceptWord(QStringView word)
    {
        skipBlanks();
        if (s.mid(i, word.size()).compare(word, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype after = i + word.size();
        if (after < s.size() && (s[after].isLetterOrNumber() || s[after] == u'_'))
            return false;
        i = after;
        return true;
    }

    void expectWord(QStringView word)
    {
        if (!acceptWord(word))
            fail();
    }

    [[noreturn]] void fail()
    {
        throw vb::VBError(vb::err::SyntaxError, QStringLiteral("Errore di sintassi nel comando SHAPE."));
    }

    const QString& s;
    qsizetype i = 0;
};

} // namespace

bool isShape(const QString& text)
{
    const QStringView t = QStringView(text).trimmed();
    return t.startsWith(QLatin1String("SHAPE"), Qt::CaseInsensitive) &&
           (t.size() == 5 || t[5].isSpace() || t[5] == u'{');
}

std::shared_ptr<Command> parse(const QString& text)
{
    Parser p(text);
    auto cmd = p.command();
    p.end();
    return cmd;
}

} // namespace store::shape
