// Recursive-descent parser of the Jet statements the screens write. Operator precedence
// is VBA's: ^, unary -, * /, \, Mod, + -, &, comparisons (= <> < > <= >= Like Is Between
// In), Not, And, Or, Xor, Eqv, Imp. What Jet refuses is refused with Jet's own wording.

#include "store/jet/Syntax.h"

namespace store::jet {

namespace {

const QString MissingOperator =
    QStringLiteral("Errore di sintassi (operatore mancante) nell'espressione della query '%1'.");

bool sameWord(const QString& a, const char* kw)
{
    return a.compare(QLatin1String(kw), Qt::CaseInsensitive) == 0;
}

// Words that end an expression or a name list: never a column or a table name when bare.
bool isReserved(const QString& w)
{
    static const char* const words[] = {
        "SELECT",      "FROM",  "WHERE", "GROUP", "HAVING", "ORDER",  "BY",      "AND",    "OR",  "NOT",
        "XOR",         "EQV",   "IMP",   "LIKE",  "IS",     "IN",     "BETWEEN", "AS",     "ON",  "INNER",
        "LEFT",        "RIGHT", "JOIN",  "OUTER", "UNION",  "INTO",   "SET",     "VALUES", "MOD", "DISTINCT",
        "DISTINCTROW", "TOP",   "ASC",   "DESC",  "NULL",   "EXISTS", "ALL"};
    for (const char* kw : words)
        if (sameWord(w, kw))
            return true;
    return false;
}

class Parser
{
public:
    Parser(const QString& src, const Lexed& lx) : m_src(src), m_lx(lx) { }

    Statement statement()
    {
        Statement st;
        const Token& first = peek();
        if (isWord(first, "SELECT")) {
            st.kind = Statement::Kind::Select;
            st.select = select();
        } else if (isWord(first, "INSERT")) {
            insert(st);
        } else if (isWord(first, "UPDATE")) {
            update(st);
        } else if (isWord(first, "DELETE")) {
            del(st);
        } else if (isWord(first, "CREATE")) {
            create(st);
        } else if (isWord(first, "ALTER")) {
            alter(st);
        } else if (isWord(first, "DROP")) {
            drop(st);
        } else {
            syntaxError(QStringLiteral(
                "Istruzione SQL non valida. Prevista 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."));
        }
        finish();
        return st;
    }

private:
    // ---- tokens --------------------------------------------------------------------
    const Token& peek(int k = 0) const
    {
        const size_t i = std::min(m_pos + size_t(k), m_lx.tokens.size() - 1);
        return m_lx.tokens[i];
    }
    const Token& next() { return m_lx.tokens[std::min(m_pos++, m_lx.tokens.size() - 1)]; }
    static bool isWord(const Token& t, const char* kw) { return t.kind == TokenKind::Word && sameWord(t.text, kw); }
    static bool isSym(const Token& t, const char* s)
    {
        return t.kind == TokenKind::Symbol && t.text == QLatin1String(s);
    }
    bool acceptWord(const char* kw)
    {
        if (!isWord(peek(), kw))
            return false;
        ++m_pos;
        return true;
    }
    bool acceptSym(const char* s)
    {
        if (!isSym(peek(), s))
            return false;
        ++m_pos;
        return true;
    }
    bool atEnd() const { return peek().kind == TokenKind::End || isSym(peek(), ";"); }

    void finish()
    {
        acceptSym(";");
        if (peek().kind != TokenKind::End)
            syntaxError(QStringLiteral("Caratteri trovati dopo la fine dell'istruzione SQL."));
    }

    QString tail(int from) const
    {
        QString t = m_src.mid(from).trimmed();
        while (t.endsWith(u';'))
            t.chop(1);
        return t.trimmed();
    }

    [[noreturn]] void missingOperator() const { syntaxError(MissingOperator.arg(tail(m_exprStart))); }

    // A name: a bare word that is not reserved, or a bracketed name.
    bool isName(const Token& t) const
    {
        return t.kind == TokenKind::Bracketed || (t.kind == TokenKind::Word && !isReserved(t.text));
    }
    QString name(const QString& error)
    {
        if (!isName(peek()))
            syntaxError(error);
        return next().text;
    }

    // ---- SELECT --------------------------------------------------------------------
    std::shared_ptr<Select> select()
    {
        auto s = std::make_shared<Select>();
        next(); // SELECT
        if (acceptWord("DISTINCT"))
            s->distinct = true;
        else if (!acceptWord("DISTINCTROW"))
            acceptWord("ALL");
        if (acceptWord("TOP")) {
            if (peek().kind != TokenKind::Number)
                syntaxError(MissingOperator.arg(tail(peek().begin)));
            s->topLiteral = next().literal;
            if (acceptWord("PERCENT"))
                s->topPercent = true;
        }
        // select list
        const int listStart = peek().begin;
        do {
            m_exprStart = peek().begin;
            SelectItem item;
            item.expr = expr();
            if (acceptWord("AS"))
                item.alias = name(MissingOperator.arg(tail(m_exprStart)));
            s->items.push_back(std::move(item));
        } while (acceptSym(","));
        if (acceptWord("INTO")) {
            s->into = name(QStringLiteral("Errore di sintassi nella clausola INTO."));
            if (acceptWord("IN")) {
                if (peek().kind != TokenKind::String)
                    syntaxError(QStringLiteral("Errore di sintassi nella clausola INTO."));
                s->intoFileLiteral = next().literal;
            }
        }
        if (acceptWord("FROM")) {
            s->from.push_back(tableRef());
            while (acceptSym(","))
                s->from.push_back(tableRef());
        } else if (!atEnd() && !isSym(peek(), ")")) {
            m_exprStart = listStart;
            missingOperator();
        }
        if (isWord(peek(), "WHERE")) {
            next();
            s->where = clauseExpr();
        }
        if (isWord(peek(), "GROUP")) {
            next();
            if (!acceptWord("BY"))
                syntaxError(QStringLiteral("Errore di sintassi nella clausola GROUP BY."));
            const int start = peek().begin;
            do {
                m_exprStart = start;
                s->groupBy.push_back(expr());
            } while (acceptSym(","));
            m_exprStart = start;
            expectClauseEnd({"HAVING", "ORDER"});
        }
        if (isWord(peek(), "HAVING")) {
            next();
            s->having = clauseExpr();
            expectClauseEnd({"ORDER"});
        }
        if (isWord(peek(), "ORDER")) {
            next();
            if (!acceptWord("BY"))
                syntaxError(QStringLiteral("Errore di sintassi nella clausola ORDER BY."));
            const int start = peek().begin;
            do {
                m_exprStart = start;
                OrderItem o;
                o.expr = expr();
                if (acceptWord("DESC"))
                    o.descending = true;
                else
                    acceptWord("ASC");
                s->orderBy.push_back(std::move(o));
            } while (acceptSym(","));
            m_exprStart = start;
            expectClauseEnd({});
        }
        if (isWord(peek(), "UNION"))
            syntaxError(QStringLiteral("Operazione UNION non supportata in questa istruzione."));
        if (!atEnd() && !isSym(peek(), ")"))
            expectClauseEnd({});
        return s;
    }

    Expr clauseExpr()
    {
        m_exprStart = peek().begin;
        Expr e = expr();
        expectClauseEnd({"GROUP", "HAVING", "ORDER"});
        return e;
    }

    // After a clause only a later clause, the end or a closing bracket may follow.
    void expectClauseEnd(std::initializer_list<const char*> followers)
    {
        if (atEnd() || isSym(peek(), ")"))
            return;
        for (const char* f : followers)
            if (isWord(peek(), f))
                return;
        missingOperator();
    }

    // FROM: one table, or a join with at most one JOIN per bracket level (Jet's rule).
    TableRef tableRef()
    {
        TableRef left = tableAtom();
        if (!isJoinWord())
            return left;
        TableRef join;
        join.kind = TableRef::Kind::Join;
        if (acceptWord("INNER")) {
            join.join = TableRef::JoinType::Inner;
        } else if (acceptWord("LEFT")) {
            join.join = TableRef::JoinType::Left;
            acceptWord("OUTER");
        } else {
            next(); // RIGHT
            join.join = TableRef::JoinType::Right;
            acceptWord("OUTER");
        }
        if (!acceptWord("JOIN"))
            syntaxError(QStringLiteral("Errore di sintassi nella clausola FROM."));
        TableRef right = tableAtom();
        if (!acceptWord("ON"))
            syntaxError(QStringLiteral("Errore di sintassi nell'operazione JOIN."));
        m_exprStart = peek().begin;
        join.on = expr();
        if (isJoinWord())
            missingOperator();
        join.sides.push_back(std::move(left));
        join.sides.push_back(std::move(right));
        return join;
    }

    bool isJoinWord() const { return isWord(peek(), "INNER") || isWord(peek(), "LEFT") || isWord(peek(), "RIGHT"); }

    TableRef tableAtom()
    {
        const QString fromError = QStringLiteral("Errore di sintassi nella clausola FROM.");
        TableRef t;
        if (acceptSym("(")) {
            if (isWord(peek(), "SELECT")) {
                t.kind = TableRef::Kind::Subquery;
                t.select = select();
                if (!acceptSym(")"))
                    syntaxError(fromError);
                acceptWord("AS");
                if (isName(peek()))
                    t.alias = next().text;
                return t;
            }
            t = tableRef();
            if (!acceptSym(")"))
                syntaxError(fromError);
            return t;
        }
        t.kind = TableRef::Kind::Table;
        t.name = name(fromError);
        if (acceptWord("AS"))
            t.alias = name(fromError);
        else if (isName(peek()))
            t.alias = next().text;
        return t;
    }

    // ---- expressions ---------------------------------------------------------------
    Expr binary(Expr l, const QString& op, Expr r)
    {
        Expr e;
        e.kind = Expr::Kind::Binary;
        e.op = op;
        e.begin = l.begin;
        e.end = r.end;
        e.args.push_back(std::move(l));
        e.args.push_back(std::move(r));
        return e;
    }

    Expr expr() { return logical(0); }

    // Imp < Eqv < Xor < Or < And, then Not.
    Expr logical(int level)
    {
        static const char* const ops[] = {"IMP", "EQV", "XOR", "OR", "AND"};
        if (level == 5)
            return notExpr();
        Expr l = logical(level + 1);
        while (isWord(peek(), ops[level])) {
            next();
            l = binary(std::move(l), QString::fromLatin1(ops[level]), logical(level + 1));
        }
        return l;
    }

    Expr notExpr()
    {
        if (isWord(peek(), "NOT")) {
            const int begin = next().begin;
            Expr e;
            e.kind = Expr::Kind::Unary;
            e.op = QStringLiteral("NOT");
            e.args.push_back(notExpr());
            e.begin = begin;
            e.end = e.args[0].end;
            return e;
        }
        return comparison();
    }

    Expr comparison()
    {
        Expr l = concat();
        for (;;) {
            const Token& t = peek();
            if (t.kind == TokenKind::Symbol &&
                (t.text == u'=' || t.text == u'<' || t.text == u'>' || t.text == QLatin1String("<>") ||
                 t.text == QLatin1String("<=") || t.text == QLatin1String(">="))) {
                const QString op = next().text;
                l = binary(std::move(l), op, concat());
                continue;
            }
            bool negated = false;
            if (isWord(t, "NOT") && (isWord(peek(1), "LIKE") || isWord(peek(1), "BETWEEN") || isWord(peek(1), "IN"))) {
                next();
                negated = true;
            }
            if (acceptWord("LIKE")) {
                l = binary(std::move(l), QStringLiteral("LIKE"), concat());
                l.negated = negated;
            } else if (acceptWord("BETWEEN")) {
                Expr e;
                e.kind = Expr::Kind::Between;
                e.negated = negated;
                e.begin = l.begin;
                e.args.push_back(std::move(l));
                e.args.push_back(concat());
                if (!acceptWord("AND"))
                    missingOperator();
                e.args.push_back(concat());
                e.end = e.args.back().end;
                l = std::move(e);
            } else if (acceptWord("IN")) {
                Expr e;
                e.negated = negated;
                e.begin = l.begin;
                e.args.push_back(std::move(l));
                if (!acceptSym("("))
                    missingOperator();
                if (isWord(peek(), "SELECT")) {
                    e.kind = Expr::Kind::InSelect;
                    e.select = select();
                } else {
                    e.kind = Expr::Kind::InList;
                    do
                        e.args.push_back(expr());
                    while (acceptSym(","));
                }
                if (!isSym(peek(), ")"))
                    missingOperator();
                e.end = next().end;
                l = std::move(e);
            } else if (!negated && isWord(t, "IS")) {
                next();
                Expr e;
                e.kind = Expr::Kind::IsNull;
                e.negated = acceptWord("NOT");
                if (!isWord(peek(), "NULL"))
                    missingOperator();
                e.end = next().end;
                e.begin = l.begin;
                e.args.push_back(std::move(l));
                l = std::move(e);
            } else {
                return l;
            }
        }
    }

    Expr concat()
    {
        Expr l = additive();
        while (acceptSym("&"))
            l = binary(std::move(l), QStringLiteral("&"), additive());
        return l;
    }

    Expr additive()
    {
        Expr l = modulo();
        while (isSym(peek(), "+") || isSym(peek(), "-")) {
            const QString op = next().text;
            l = binary(std::move(l), op, modulo());
        }
        return l;
    }

    Expr modulo()
    {
        Expr l = intDiv();
        while (acceptWord("MOD"))
            l = binary(std::move(l), QStringLiteral("MOD"), intDiv());
        return l;
    }

    Expr intDiv()
    {
        Expr l = multiplicative();
        while (acceptSym("\\"))
            l = binary(std::move(l), QStringLiteral("\\"), multiplicative());
        return l;
    }

    Expr multiplicative()
    {
        Expr l = unary();
        while (isSym(peek(), "*") || isSym(peek(), "/")) {
            const QString op = next().text;
            l = binary(std::move(l), op, unary());
        }
        return l;
    }

    Expr unary()
    {
        if (isSym(peek(), "-") || isSym(peek(), "+")) {
            const Token& t = next();
            Expr e;
            e.kind = Expr::Kind::Unary;
            e.op = t.text;
            e.begin = t.begin;
            e.args.push_back(unary());
            e.end = e.args[0].end;
            return e;
        }
        return power();
    }

    Expr power()
    {
        Expr l = primary();
        while (acceptSym("^"))
            l = binary(std::move(l), QStringLiteral("^"), primary());
        return l;
    }

    Expr primary()
    {
        const Token& t = peek();
        Expr e;
        e.begin = t.begin;
        e.end = t.end;
        switch (t.kind) {
        case TokenKind::String:
        case TokenKind::Number:
        case TokenKind::Date:
        case TokenKind::Param:
            e.kind = Expr::Kind::Literal;
            e.literal = next().literal;
            return e;
        case TokenKind::Symbol:
            if (isSym(t, "(")) {
                next();
                if (isWord(peek(), "SELECT")) {
                    e.kind = Expr::Kind::Subquery;
                    e.select = select();
                } else {
                    e = expr();
                }
                if (!isSym(peek(), ")"))
                    missingOperator();
                e.end = next().end;
                e.begin = t.begin;
                return e;
            }
            if (isSym(t, "*")) {
                next();
                e.kind = Expr::Kind::Star;
                return e;
            }
            missingOperator();
        case TokenKind::Word:
            if (isSym(peek(1), "(") && !isWord(t, "IN")) {
                if (isWord(t, "EXISTS")) {
                    next();
                    next();
                    e.kind = Expr::Kind::Exists;
                    if (!isWord(peek(), "SELECT"))
                        missingOperator();
                    e.select = select();
                    if (!isSym(peek(), ")"))
                        missingOperator();
                    e.end = next().end;
                    return e;
                }
                return call();
            }
            if (isWord(t, "NULL")) {
                next();
                e.kind = Expr::Kind::Null;
                return e;
            }
            if (isWord(t, "TRUE") || isWord(t, "FALSE")) {
                e.kind = Expr::Kind::Boolean;
                e.boolValue = isWord(t, "TRUE");
                next();
                return e;
            }
            if (isReserved(t.text))
                missingOperator();
            return column();
        case TokenKind::Bracketed: return column();
        case TokenKind::End: missingOperator();
        }
        missingOperator();
    }

    Expr call()
    {
        const Token& nameTok = next();
        next(); // (
        Expr e;
        e.kind = Expr::Kind::Call;
        e.op = nameTok.text;
        e.begin = nameTok.begin;
        if (!isSym(peek(), ")")) {
            do {
                if (isSym(peek(), "*") && (isSym(peek(1), ")"))) {
                    Expr star;
                    star.kind = Expr::Kind::Star;
                    next();
                    e.args.push_back(star);
                } else {
                    e.args.push_back(expr());
                }
            } while (acceptSym(","));
        }
        if (!isSym(peek(), ")"))
            missingOperator();
        e.end = next().end;
        return e;
    }

    // name, [name], T.name, [T]![name], T.*, [T.name] (a bracketed dotted name).
    Expr column()
    {
        const Token& first = next();
        Expr e;
        e.kind = Expr::Kind::Column;
        e.begin = first.begin;
        e.end = first.end;
        if (isSym(peek(), ".") || isSym(peek(), "!")) {
            next();
            e.qualifier = first.text;
            if (isSym(peek(), "*")) {
                e.kind = Expr::Kind::Star;
                e.end = next().end;
                return e;
            }
            if (!isName(peek()) && peek().kind != TokenKind::Word)
                missingOperator();
            const Token& second = next();
            e.name = second.text;
            e.end = second.end;
            return e;
        }
        e.name = first.text;
        const int dot = first.kind == TokenKind::Bracketed ? int(e.name.indexOf(u'.')) : -1;
        if (dot > 0) {
            e.qualifier = e.name.left(dot);
            e.name = e.name.mid(dot + 1);
        }
        return e;
    }

    // ---- action statements ---------------------------------------------------------
    void insert(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione INSERT INTO.");
        st.kind = Statement::Kind::Insert;
        next();
        if (!acceptWord("INTO"))
            syntaxError(error);
        st.table = name(error);
        if (acceptSym("(")) {
            do
                st.columns.push_back(qualifiedName(error));
            while (acceptSym(","));
            if (!acceptSym(")"))
                syntaxError(error);
        }
        if (acceptWord("VALUES")) {
            if (!acceptSym("("))
                syntaxError(error);
            do {
                m_exprStart = peek().begin;
                st.values.push_back(expr());
            } while (acceptSym(","));
            if (!acceptSym(")"))
                syntaxError(error);
            if (!st.columns.empty() && st.columns.size() != st.values.size())
                syntaxError(QStringLiteral("Il numero di valori della query deve coincidere con il numero dei "
                                           "campi di destinazione."));
        } else if (isWord(peek(), "SELECT")) {
            st.select = select();
        } else {
            syntaxError(error);
        }
    }

    // A column name that may carry its table: Col, T.Col, [T].[Col], [T.Col].
    QString qualifiedName(const QString& error)
    {
        QString n = name(error);
        if (acceptSym(".") || acceptSym("!"))
            n = name(error);
        else if (const int dot = int(n.indexOf(u'.')); dot > 0)
            n = n.mid(dot + 1);
        return n;
    }

    void update(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione UPDATE.");
        st.kind = Statement::Kind::Update;
        next();
        st.target = tableRef();
        if (!acceptWord("SET"))
            syntaxError(error);
        do {
            m_exprStart = peek().begin;
            if (!isName(peek()))
                syntaxError(error);
            Expr target = column();
            if (target.kind != Expr::Kind::Column || !acceptSym("="))
                syntaxError(error);
            m_exprStart = peek().begin;
            Expr value = expr();
            st.assignments.emplace_back(std::move(target), std::move(value));
        } while (acceptSym(","));
        if (acceptWord("WHERE"))
            st.where = clauseExpr();
        if (!atEnd())
            syntaxError(error);
    }

    void del(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione DELETE.");
        st.kind = Statement::Kind::Delete;
        next();
        // DELETE [*| T.* | columns] FROM ...
        while (!isWord(peek(), "FROM") && !atEnd())
            next();
        if (!acceptWord("FROM"))
            syntaxError(error);
        st.target = tableRef();
        if (acceptWord("WHERE"))
            st.where = clauseExpr();
        if (!atEnd())
            syntaxError(error);
    }

    ColumnDef columnDef(const QString& error)
    {
        ColumnDef c;
        c.name = name(error);
        if (peek().kind != TokenKind::Word)
            syntaxError(error);
        c.type = next().text.toUpper();
        if (acceptSym("(")) {
            if (peek().kind != TokenKind::Number)
                syntaxError(error);
            c.size = m_lx.literals[size_t(next().literal)].rawLong();
            if (!acceptSym(")"))
                syntaxError(error);
        }
        for (;;) {
            if (acceptWord("NOT")) {
                if (!acceptWord("NULL"))
                    syntaxError(error);
                c.notNull = true;
            } else if (acceptWord("NULL")) {
                c.notNull = false;
            } else if (acceptWord("PRIMARY")) {
                if (!acceptWord("KEY"))
                    syntaxError(error);
                c.primaryKey = true;
            } else if (acceptWord("CONSTRAINT")) {
                name(error);
                if (acceptWord("PRIMARY") && acceptWord("KEY"))
                    c.primaryKey = true;
                else
                    syntaxError(error);
            } else {
                break;
            }
        }
        return c;
    }

    void create(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione CREATE TABLE.");
        next();
        if (!acceptWord("TABLE"))
            syntaxError(error);
        st.kind = Statement::Kind::CreateTable;
        st.table = name(error);
        if (!acceptSym("("))
            syntaxError(error);
        do
            st.columnDefs.push_back(columnDef(error));
        while (acceptSym(","));
        if (!acceptSym(")"))
            syntaxError(error);
    }

    void alter(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione ALTER TABLE.");
        next();
        if (!acceptWord("TABLE"))
            syntaxError(error);
        st.table = name(error);
        if (acceptWord("ADD")) {
            acceptWord("COLUMN");
            st.kind = Statement::Kind::AlterAdd;
            st.columnDefs.push_back(columnDef(error));
        } else if (acceptWord("DROP")) {
            acceptWord("COLUMN");
            st.kind = Statement::Kind::AlterDrop;
            st.columns.push_back(name(error));
        } else {
            syntaxError(error);
        }
    }

    void drop(Statement& st)
    {
        const QString error = QStringLiteral("Errore di sintassi nell'istruzione DROP TABLE o DROP INDEX.");
        next();
        if (!acceptWord("TABLE"))
            syntaxError(error);
        st.kind = Statement::Kind::DropTable;
        st.table = name(error);
    }

    const QString& m_src;
    const Lexed& m_lx;
    size_t m_pos = 0;
    int m_exprStart = 0;
};

} // namespace

Statement parse(const QString& source, const Lexed& lexed)
{
    return Parser(source, lexed).statement();
}

} // namespace store::jet
