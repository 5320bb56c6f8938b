#include "store/jet/SqliteGenerator.h"

#include "store/jet/PostgresGenerator.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <functional>
#include <sqlite3.h>
#include <tuple>

namespace store::jet {

namespace {

// The static type of an expression, as far as the generator can tell.
enum class Ty { Unknown, Number, Text, Date, Bool, Null };

Ty tyOf(ColumnKind k)
{
    switch (k) {
    case ColumnKind::Number: return Ty::Number;
    case ColumnKind::Text: return Ty::Text;
    case ColumnKind::Date: return Ty::Date;
    case ColumnKind::Boolean: return Ty::Bool;
    case ColumnKind::Unknown: break;
    }
    return Ty::Unknown;
}

/// The column a value is written to: its kind, and whether it holds whole numbers only.
struct Target
{
    ColumnKind kind = ColumnKind::Unknown;
    bool whole = false;
};

bool numeric(Ty t)
{
    return t == Ty::Number || t == Ty::Date || t == Ty::Bool;
}

struct G
{
    QString sql;
    Ty ty = Ty::Unknown;
    const ColumnInfo* column = nullptr; ///< a plain table column
    bool condition = false;             ///< a truth value (the server keeps those apart from numbers)
};

const QString CollateJet = QStringLiteral(" COLLATE JET");

QString sqliteIdent(const QString& name)
{
    bool simple = !name.isEmpty() && (name[0].isLetter() || name[0] == u'_') && name[0].unicode() < 128;
    for (QChar c : name)
        if (c.unicode() >= 128 || !(c.isLetterOrNumber() || c == u'_'))
            simple = false;
    if (simple) {
        const QByteArray utf8 = name.toUtf8();
        if (sqlite3_keyword_check(utf8.constData(), int(utf8.size())))
            simple = false;
    }
    return simple ? name : u'[' + name + u']';
}

struct Fn
{
    const char* jet;
    const char* sql;
    int minArgs;
    int maxArgs;
    Ty result;      ///< Unknown: the type of the first argument
    bool dateFlags; ///< the SQL function takes a first argument telling which values are dates
};

// The VBA functions a Jet statement may call, and what stands for them in SQLite.
const Fn Functions[] = {
    {"Val", "jet_val", 1, 1, Ty::Number, false},
    {"Left", "jet_left", 2, 2, Ty::Text, false},
    {"Right", "jet_right", 2, 2, Ty::Text, false},
    {"Mid", "jet_mid", 2, 3, Ty::Text, false},
    {"Len", "jet_len", 1, 1, Ty::Number, false},
    {"Trim", "jet_trim", 1, 1, Ty::Text, false},
    {"LTrim", "jet_ltrim", 1, 1, Ty::Text, false},
    {"RTrim", "jet_rtrim", 1, 1, Ty::Text, false},
    {"UCase", "jet_ucase", 1, 1, Ty::Text, false},
    {"LCase", "jet_lcase", 1, 1, Ty::Text, false},
    {"InStr", "jet_instr", 2, 3, Ty::Number, false},
    {"Replace", "jet_replace", 3, 3, Ty::Text, false},
    {"Year", "jet_year", 1, 1, Ty::Number, false},
    {"Month", "jet_month", 1, 1, Ty::Number, false},
    {"Day", "jet_day", 1, 1, Ty::Number, false},
    {"Hour", "jet_hour", 1, 1, Ty::Number, false},
    {"Minute", "jet_minute", 1, 1, Ty::Number, false},
    {"Second", "jet_second", 1, 1, Ty::Number, false},
    {"Weekday", "jet_weekday", 1, 2, Ty::Number, false},
    {"Date", "jet_date", 0, 0, Ty::Date, false},
    {"Now", "jet_now", 0, 0, Ty::Date, false},
    {"Time", "jet_time", 0, 0, Ty::Date, false},
    {"Format", "jet_format", 1, 2, Ty::Text, true},
    {"CStr", "jet_cstr", 1, 1, Ty::Text, true},
    {"CInt", "jet_cint", 1, 1, Ty::Number, false},
    {"CLng", "jet_clng", 1, 1, Ty::Number, false},
    {"CDbl", "jet_cdbl", 1, 1, Ty::Number, false},
    {"CSng", "jet_cdbl", 1, 1, Ty::Number, false},
    {"CCur", "jet_cdbl", 1, 1, Ty::Number, false},
    {"CDate", "jet_cdate", 1, 1, Ty::Date, false},
    {"DateValue", "jet_cdate", 1, 1, Ty::Date, false},
    {"Int", "jet_int", 1, 1, Ty::Number, false},
    {"Fix", "jet_fix", 1, 1, Ty::Number, false},
    {"Abs", "abs", 1, 1, Ty::Number, false},
    {"Sgn", "sign", 1, 1, Ty::Number, false},
    {"Round", "jet_round", 1, 2, Ty::Number, false},
    {"Sum", "jet_sum", 1, 1, Ty::Number, false},
    {"Avg", "jet_avg", 1, 1, Ty::Number, false},
    {"Min", "min", 1, 1, Ty::Unknown, false},
    {"Max", "max", 1, 1, Ty::Unknown, false},
    {"Count", "count", 1, 1, Ty::Number, false},
};

const Fn* findFunction(const QString& name)
{
    for (const Fn& f : Functions)
        if (name.compare(QLatin1String(f.jet), Qt::CaseInsensitive) == 0)
            return &f;
    return nullptr;
}

bool isAggregate(const Fn* f)
{
    const QLatin1String n(f->jet);
    return n == QLatin1String("Sum") || n == QLatin1String("Avg") || n == QLatin1String("Min") ||
           n == QLatin1String("Max") || n == QLatin1String("Count");
}

// One table of a FROM clause, as the expressions see it.
struct ScopeTable
{
    QString ref;  ///< what qualifies its columns: the alias, else the name
    QString name; ///< the table's name ("" for a subquery)
    const TableInfo* info = nullptr;
    std::shared_ptr<TableInfo> derived; ///< a subquery's columns
};

struct Scope
{
    std::vector<ScopeTable> tables;
    const Scope* parent = nullptr;
};

class Generator
{
public:
    Generator(const Lexed& lx, const SchemaInfo* schema, Dialect dialect)
        : m_lx(lx), m_schema(schema), m_pg(dialect == Dialect::Postgres)
    {
    }

    Generated run(const Statement& st)
    {
        Translation& t = m_out.translation;
        t.userParams = m_lx.userParams;
        switch (st.kind) {
        case Statement::Kind::Select:
            if (!st.select->into.isEmpty())
                selectInto(*st.select);
            else
                topSelect(*st.select);
            break;
        case Statement::Kind::Insert: insert(st); break;
        case Statement::Kind::Update: update(st); break;
        case Statement::Kind::Delete: del(st); break;
        case Statement::Kind::CreateTable:
        case Statement::Kind::AlterAdd:
        case Statement::Kind::AlterDrop:
        case Statement::Kind::DropTable: ddl(st); break;
        }
        return std::move(m_out);
    }

private:
    // ---- output --------------------------------------------------------------------
    void emit(const QString& sql)
    {
        m_out.translation.statements.push_back(SqliteStatement{sql, {}});
        m_out.paramCounts.push_back(m_maxParam);
        m_maxParam = 0;
    }

    const TableInfo* lookup(const QString& table) const { return m_schema ? m_schema->table(table) : nullptr; }

    // ---- what differs between the embedded store and the server -----------------------
    QString ident(const QString& name) const { return m_pg ? postgresIdent(name) : sqliteIdent(name); }
    /// The server's names keep their case: a table or column as the store spells it.
    QString tableName(const QString& written) const
    {
        const TableInfo* info = m_pg ? lookup(written) : nullptr;
        return ident(info ? info->name : written);
    }
    QString columnName(const TableInfo* info, const QString& written) const
    {
        const ColumnInfo* c = m_pg && info ? info->column(written) : nullptr;
        return ident(c ? c->name : written);
    }
    QString collate() const { return m_pg ? QStringLiteral(" COLLATE jet") : CollateJet; }
    QString rowid() const { return m_pg ? QStringLiteral("jet_rowid") : QStringLiteral("rowid"); }
    /// A value where SQL wants a truth value: the server does not read numbers as such.
    G truth(const G& g) const
    {
        if (!m_pg || g.condition)
            return g;
        return {u'(' + g.sql + QStringLiteral(" <> 0)"), Ty::Bool, nullptr, true};
    }
    /// A truth value where a number is wanted (1/0, as SQLite gives it).
    G number(const G& g) const
    {
        if (!m_pg || !g.condition)
            return g;
        return {u'(' + g.sql + QStringLiteral(")::integer"), Ty::Bool};
    }
    /// A value the server's text functions take: numbers and dates as the Italian CStr.
    G asText(const G& g) const
    {
        if (!m_pg)
            return g;
        switch (g.ty) {
        case Ty::Text: return g;
        case Ty::Date: return {QStringLiteral("jet_cstr(1, ") + g.sql + u')', Ty::Text};
        case Ty::Number:
        case Ty::Bool: return {QStringLiteral("jet_cstr(0, ") + number(g).sql + u')', Ty::Text};
        case Ty::Null: return {QStringLiteral("NULL::text"), Ty::Text};
        case Ty::Unknown: break;
        }
        return {QStringLiteral("jet_text(") + g.sql + u')', Ty::Text};
    }
    G cond(const Expr& e, const Scope& scope) { return truth(anyGen(e, scope)); }
    G gen(const Expr& e, const Scope& scope) { return number(anyGen(e, scope)); }

    // ---- scopes --------------------------------------------------------------------
    void collect(const TableRef& t, Scope& scope)
    {
        switch (t.kind) {
        case TableRef::Kind::Table: {
            ScopeTable st;
            st.name = t.name;
            st.info = lookup(t.name);
            st.ref = t.alias.isEmpty() ? (m_pg && st.info ? st.info->name : t.name) : t.alias;
            scope.tables.push_back(std::move(st));
            break;
        }
        case TableRef::Kind::Join:
            collect(t.sides[0], scope);
            collect(t.sides[1], scope);
            break;
        case TableRef::Kind::Subquery: {
            ScopeTable st;
            st.ref = t.alias;
            st.derived = std::make_shared<TableInfo>();
            st.info = st.derived.get();
            scope.tables.push_back(std::move(st));
            break;
        }
        }
    }

    // The column a name stands for: its table's reference and its info.
    std::pair<const ScopeTable*, const ColumnInfo*> resolve(const Expr& e, const Scope& scope) const
    {
        for (const Scope* s = &scope; s; s = s->parent) {
            for (const ScopeTable& t : s->tables) {
                if (!e.qualifier.isEmpty()) {
                    if (t.ref.compare(e.qualifier, Qt::CaseInsensitive) != 0 &&
                        t.name.compare(e.qualifier, Qt::CaseInsensitive) != 0)
                        continue;
                    return {&t, t.info ? t.info->column(e.name) : nullptr};
                }
                if (t.info)
                    if (const ColumnInfo* c = t.info->column(e.name))
                        return {&t, c};
            }
        }
        return {nullptr, nullptr};
    }

    // ---- expressions ---------------------------------------------------------------
    QString param(int literal)
    {
        m_maxParam = std::max(m_maxParam, literal + 1);
        return (m_pg ? u'$' : u'?') + QString::number(literal + 1);
    }

    Ty literalTy(int literal) const
    {
        const vb::Variant& v = m_lx.literals[size_t(literal)];
        switch (v.type()) {
        case vb::Variant::Type::String: return Ty::Text;
        case vb::Variant::Type::Date: return Ty::Date;
        case vb::Variant::Type::Null: return Ty::Unknown;
        default: return Ty::Number;
        }
    }

    G anyGen(const Expr& e, const Scope& scope)
    {
        switch (e.kind) {
        case Expr::Kind::Literal: return {param(e.literal), literalTy(e.literal)};
        case Expr::Kind::Null: return {QStringLiteral("NULL"), Ty::Null};
        case Expr::Kind::Boolean: return {e.boolValue ? QStringLiteral("-1") : QStringLiteral("0"), Ty::Bool};
        case Expr::Kind::Column: {
            const auto [table, col] = resolve(e, scope);
            G g;
            if (table)
                g.sql = ident(table->ref) + u'.' + (col ? ident(m_pg ? col->name : e.name) : ident(e.name));
            else
                g.sql = e.qualifier.isEmpty() ? ident(e.name) : ident(e.qualifier) + u'.' + ident(e.name);
            g.column = col;
            g.ty = col ? tyOf(col->kind) : Ty::Unknown;
            if (m_bareColumns && m_insideAggregate == 0 && table &&
                std::any_of(scope.tables.begin(), scope.tables.end(), [&](const ScopeTable& t) { return &t == table; }))
                return bareColumn(g);
            return g;
        }
        case Expr::Kind::Star:
            return {e.qualifier.isEmpty() ? QStringLiteral("*") : ident(e.qualifier) + QStringLiteral(".*"),
                    Ty::Unknown};
        case Expr::Kind::Unary: {
            G a = gen(e.args[0], scope);
            if (e.op == QLatin1String("NOT"))
                return {QStringLiteral("(NOT ") + truth(a).sql + u')', Ty::Bool, nullptr, true};
            if (e.op == QLatin1String("+"))
                return a;
            if (numeric(a.ty))
                return {QStringLiteral("(-") + a.sql + u')', a.ty == Ty::Bool ? Ty::Number : a.ty};
            return {QStringLiteral("jet_neg(") + a.sql + u')', Ty::Number};
        }
        case Expr::Kind::Binary: return binary(e, scope);
        case Expr::Kind::Call: return call(e, scope);
        case Expr::Kind::IsNull: {
            G a = gen(e.args[0], scope);
            return {u'(' + a.sql + (e.negated ? QStringLiteral(" IS NOT NULL)") : QStringLiteral(" IS NULL)")),
                    Ty::Bool, nullptr, true};
        }
        case Expr::Kind::Between: {
            G a = gen(e.args[0], scope), lo = gen(e.args[1], scope), hi = gen(e.args[2], scope);
            lo = asComparable(lo, a.ty);
            hi = asComparable(hi, a.ty);
            const bool text = isTextCompare(a.ty, lo.ty) || isTextCompare(a.ty, hi.ty);
            if (m_pg && text) {
                a = asText(a);
                lo = asText(lo);
                hi = asText(hi);
            }
            return {u'(' + a.sql + (text ? collate() : QString()) + (e.negated ? QStringLiteral(" NOT") : QString()) +
                        QStringLiteral(" BETWEEN ") + lo.sql + QStringLiteral(" AND ") + hi.sql + u')',
                    Ty::Bool, nullptr, true};
        }
        case Expr::Kind::InList: {
            G a = gen(e.args[0], scope);
            std::vector<G> values;
            bool text = false;
            for (size_t i = 1; i < e.args.size(); ++i) {
                values.push_back(asComparable(gen(e.args[i], scope), a.ty));
                text = text || isTextCompare(a.ty, values.back().ty);
            }
            QStringList items;
            for (const G& v : values)
                items << (m_pg && text ? asText(v) : v).sql;
            if (m_pg && text)
                a = asText(a);
            return {u'(' + a.sql + (text ? collate() : QString()) +
                        (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN (")) +
                        items.join(QStringLiteral(", ")) + QStringLiteral("))"),
                    Ty::Bool, nullptr, true};
        }
        case Expr::Kind::InSelect: {
            G a = gen(e.args[0], scope);
            const QString sub = selectSql(*e.select, &scope, nullptr, nullptr);
            return {u'(' + a.sql + (a.ty == Ty::Text ? collate() : QString()) +
                        (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN (")) + sub +
                        QStringLiteral("))"),
                    Ty::Bool, nullptr, true};
        }
        case Expr::Kind::Exists:
            return {QStringLiteral("(EXISTS (") + selectSql(*e.select, &scope, nullptr, nullptr) + QStringLiteral("))"),
                    Ty::Bool, nullptr, true};
        case Expr::Kind::Subquery: {
            std::vector<Ty> types;
            const QString sub = selectSql(*e.select, &scope, nullptr, &types);
            return {u'(' + sub + u')', types.empty() ? Ty::Unknown : types[0]};
        }
        }
        return {};
    }

    // The server's texts carry the collation with their columns; a collation on a
    // number is an error there, so it only goes where a side is known to be text.
    bool isTextCompare(Ty a, Ty b) const
    {
        return a == Ty::Text || b == Ty::Text || (!m_pg && a == Ty::Unknown && b == Ty::Unknown);
    }

    // A text compared with a date is read as a date, as Jet converts it.
    G asComparable(G v, Ty other)
    {
        if (other == Ty::Date && (v.ty == Ty::Text || v.ty == Ty::Unknown) && !v.column)
            return {QStringLiteral("jet_cdate(") + v.sql + u')', Ty::Date};
        return v;
    }

    // The operands of a chain of "&", flattened: a & b & c is one call.
    void concatArgs(const Expr& e, const Scope& scope, std::vector<G>& out)
    {
        if (e.kind == Expr::Kind::Binary && e.op == QLatin1String("&")) {
            concatArgs(e.args[0], scope, out);
            concatArgs(e.args[1], scope, out);
            return;
        }
        out.push_back(gen(e, scope));
    }

    G binary(const Expr& e, const Scope& scope)
    {
        const QString& op = e.op;
        if (op == QLatin1String("&")) {
            std::vector<G> parts;
            concatArgs(e, scope, parts);
            qint64 flags = 0;
            QString sql = QStringLiteral("jet_concat(%1");
            for (size_t i = 0; i < parts.size(); ++i) {
                if (parts[i].ty == Ty::Date && i < 62)
                    flags |= qint64(1) << i;
                sql += QStringLiteral(", ") + asText(parts[i]).sql;
            }
            return {sql.arg(flags) + u')', Ty::Text};
        }
        if (op == QLatin1String("AND") || op == QLatin1String("OR") || op == QLatin1String("IMP") ||
            (m_pg && (op == QLatin1String("XOR") || op == QLatin1String("EQV")))) {
            const G a = cond(e.args[0], scope), b = cond(e.args[1], scope);
            const QString form = op == QLatin1String("IMP")   ? QStringLiteral("(NOT %1 OR %2)")
                                 : op == QLatin1String("XOR") ? QStringLiteral("(%1 <> %2)")
                                 : op == QLatin1String("EQV") ? QStringLiteral("(%1 = %2)")
                                                              : QStringLiteral("(%1 ") + op + QStringLiteral(" %2)");
            return {form.arg(a.sql, b.sql), Ty::Bool, nullptr, true};
        }
        G a = gen(e.args[0], scope);
        G b = gen(e.args[1], scope);
        if (op == QLatin1String("XOR"))
            return {QStringLiteral("((%1 <> 0) <> (%2 <> 0))").arg(a.sql, b.sql), Ty::Bool};
        if (op == QLatin1String("EQV"))
            return {QStringLiteral("((%1 <> 0) = (%2 <> 0))").arg(a.sql, b.sql), Ty::Bool};
        if (op == QLatin1String("LIKE"))
            return {QStringLiteral("(%1jet_like(%2, %3))")
                        .arg(e.negated ? QStringLiteral("NOT ") : QString(), asText(a).sql, asText(b).sql),
                    Ty::Bool, nullptr, true};
        if (op == u'=' || op == u'<' || op == u'>' || op == QLatin1String("<>") || op == QLatin1String("<=") ||
            op == QLatin1String(">=")) {
            b = asComparable(b, a.ty);
            a = asComparable(a, b.ty);
            const bool text = isTextCompare(a.ty, b.ty);
            if (m_pg && text) { // a number compared with a text compares as text, as SQLite does
                a = asText(a);
                b = asText(b);
            }
            return {u'(' + a.sql + u' ' + op + u' ' + b.sql + (text ? collate() : QString()) + u')', Ty::Bool, nullptr,
                    true};
        }
        const bool native = numeric(a.ty) && numeric(b.ty);
        if (op == u'+' || op == u'-') {
            Ty ty = Ty::Number;
            if (a.ty == Ty::Date && b.ty != Ty::Date)
                ty = Ty::Date;
            else if (b.ty == Ty::Date && a.ty != Ty::Date && op == u'+')
                ty = Ty::Date;
            else if (op == u'+' && a.ty == Ty::Text && b.ty == Ty::Text)
                ty = Ty::Text;
            else if (!native && (a.ty == Ty::Unknown || b.ty == Ty::Unknown))
                ty = Ty::Unknown;
            if (native)
                return {u'(' + a.sql + u' ' + op + u' ' + b.sql + u')', ty};
            return {(op == u'+' ? QStringLiteral("jet_add(") : QStringLiteral("jet_sub(")) + a.sql +
                        QStringLiteral(", ") + b.sql + u')',
                    ty};
        }
        if (op == u'*' && native)
            return {u'(' + a.sql + QStringLiteral(" * ") + b.sql + u')', Ty::Number};
        static const QHash<QString, QString> fns = {{QStringLiteral("*"), QStringLiteral("jet_mul")},
                                                    {QStringLiteral("/"), QStringLiteral("jet_div")},
                                                    {QStringLiteral("\\"), QStringLiteral("jet_intdiv")},
                                                    {QStringLiteral("MOD"), QStringLiteral("jet_mod")},
                                                    {QStringLiteral("^"), QStringLiteral("jet_pow")}};
        return {fns.value(op) + u'(' + a.sql + QStringLiteral(", ") + b.sql + u')', Ty::Number};
    }

    G call(const Expr& e, const Scope& scope)
    {
        if (e.op.compare(QLatin1String("IIf"), Qt::CaseInsensitive) == 0) {
            if (e.args.size() != 3)
                wrongArguments(e);
            G c = cond(e.args[0], scope), a = gen(e.args[1], scope), b = gen(e.args[2], scope);
            Ty ty = a.ty == b.ty ? a.ty : a.ty == Ty::Null ? b.ty : b.ty == Ty::Null ? a.ty : Ty::Unknown;
            if (m_pg && (a.ty == Ty::Text) != (b.ty == Ty::Text) && a.ty != Ty::Null && b.ty != Ty::Null) {
                a = asText(a); // one column of one type on the server
                b = asText(b);
                ty = Ty::Text;
            }
            return {QStringLiteral("(CASE WHEN %1 THEN %2 ELSE %3 END)").arg(c.sql, a.sql, b.sql), ty};
        }
        if (e.op.compare(QLatin1String("Nz"), Qt::CaseInsensitive) == 0) {
            if (e.args.empty() || e.args.size() > 2)
                wrongArguments(e);
            G a = gen(e.args[0], scope);
            G d = e.args.size() == 2 ? gen(e.args[1], scope) : G{QStringLiteral("''"), Ty::Text};
            if (m_pg && (a.ty == Ty::Text) != (d.ty == Ty::Text) && d.ty != Ty::Null) {
                a = asText(a);
                d = asText(d);
            }
            return {(m_pg ? QStringLiteral("coalesce(%1, %2)") : QStringLiteral("ifnull(%1, %2)")).arg(a.sql, d.sql),
                    a.ty};
        }
        if (e.op.compare(QLatin1String("IsNull"), Qt::CaseInsensitive) == 0) {
            if (e.args.size() != 1)
                wrongArguments(e);
            return {u'(' + gen(e.args[0], scope).sql + QStringLiteral(" IS NULL)"), Ty::Bool, nullptr, true};
        }
        const Fn* f = findFunction(e.op);
        if (!f)
            syntaxError(QStringLiteral("Funzione '%1' non definita nell'espressione.").arg(e.op));
        if (int(e.args.size()) < f->minArgs || int(e.args.size()) > f->maxArgs)
            wrongArguments(e);
        const bool aggregate = isAggregate(f);
        if (aggregate)
            m_aggregate = true;
        std::vector<G> args;
        m_insideAggregate += aggregate ? 1 : 0;
        for (const Expr& a : e.args) {
            if (a.kind == Expr::Kind::Star) {
                if (!aggregate)
                    wrongArguments(e);
                args.push_back({QStringLiteral("*"), Ty::Unknown});
            } else {
                args.push_back(gen(a, scope));
            }
        }
        m_insideAggregate -= aggregate ? 1 : 0;
        if (m_pg)
            return postgresCall(f, args);
        QStringList parts;
        if (f->dateFlags)
            parts << QString::number(dateFlags(args));
        for (const G& a : args) {
            // Min and Max of a text compare as Jet compares texts.
            if ((f->sql == std::string_view("min") || f->sql == std::string_view("max")) && a.ty != Ty::Number &&
                a.ty != Ty::Date && !a.column)
                parts << a.sql + CollateJet;
            else
                parts << a.sql;
        }
        Ty ty = f->result;
        if (ty == Ty::Unknown && !args.empty())
            ty = args[0].ty;
        return {QLatin1String(f->sql) + u'(' + parts.join(QStringLiteral(", ")) + u')', ty};
    }

    // A column beside an aggregate without GROUP BY: SQLite takes it from the row of the
    // one Min or Max, else from any row; the server refuses the bare column, so it gets
    // the same value through array_agg.
    void bareColumnsOf(const Select& s, const Scope& scope)
    {
        std::vector<const Expr*> extremes;
        std::function<void(const Expr&)> find = [&](const Expr& e) {
            if (e.kind == Expr::Kind::Call && e.args.size() == 1 &&
                (e.op.compare(QLatin1String("Min"), Qt::CaseInsensitive) == 0 ||
                 e.op.compare(QLatin1String("Max"), Qt::CaseInsensitive) == 0))
                extremes.push_back(&e);
            for (const Expr& a : e.args)
                find(a);
        };
        for (const SelectItem& i : s.items)
            find(i.expr);
        m_bareOrder.clear();
        if (extremes.size() == 1 && extremes[0]->args[0].kind != Expr::Kind::Star) {
            ++m_insideAggregate;
            m_bareOrder = gen(extremes[0]->args[0], scope).sql +
                          (extremes[0]->op.compare(QLatin1String("Max"), Qt::CaseInsensitive) == 0
                               ? QStringLiteral(" DESC NULLS LAST")
                               : QStringLiteral(" ASC NULLS LAST"));
            --m_insideAggregate;
        }
        m_bareColumns = true;
    }
    G bareColumn(G g) const
    {
        g.sql = QStringLiteral("(array_agg(%1%2))[1]")
                    .arg(g.sql, m_bareOrder.isEmpty() ? QString() : QStringLiteral(" ORDER BY ") + m_bareOrder);
        return g;
    }

    // The first argument of the functions that must know which values are dates.
    static qint64 dateFlags(const std::vector<G>& args)
    {
        qint64 flags = 0;
        for (size_t i = 0; i < args.size(); ++i)
            if (args[i].ty == Ty::Date)
                flags |= qint64(1) << i;
        return flags;
    }

    // The same functions on the server: texts where the server's functions want texts,
    // the aggregates over Italian numeric texts read with jet_num.
    G postgresCall(const Fn* f, std::vector<G>& args) const
    {
        const std::string_view name(f->sql);
        const bool numericFn = name == "abs" || name == "sign" || name == "jet_sum" || name == "jet_avg";
        QStringList parts;
        if (f->dateFlags)
            parts << QString::number(dateFlags(args));
        // The string functions take texts where VBA takes any value (Left(123, 2)).
        const bool strings = name == "jet_left" || name == "jet_right" || name == "jet_mid" || name == "jet_len" ||
                             name == "jet_trim" || name == "jet_ltrim" || name == "jet_rtrim" || name == "jet_ucase" ||
                             name == "jet_lcase" || name == "jet_replace" || name == "jet_instr";
        for (size_t i = 0; i < args.size(); ++i) {
            const bool textArg =
                strings && (name == "jet_replace" || (name == "jet_instr" ? i + 2 >= args.size() : i == 0));
            const G& a = textArg ? asText(args[i]) : args[i];
            if (a.ty == Ty::Null)
                parts << (numericFn ? QStringLiteral("NULL::float8") : QStringLiteral("NULL::text"));
            else if (numericFn && !numeric(a.ty) && a.sql != u'*')
                parts << QStringLiteral("jet_num(") + a.sql + u')';
            else
                parts << a.sql;
        }
        QString sql = QLatin1String(f->sql);
        if (name == "jet_sum" || name == "jet_avg")
            sql = name == "jet_sum" ? QStringLiteral("sum") : QStringLiteral("avg");
        Ty ty = f->result;
        if (ty == Ty::Unknown && !args.empty())
            ty = args[0].ty;
        return {sql + u'(' + parts.join(QStringLiteral(", ")) + u')', ty};
    }

    [[noreturn]] static void wrongArguments(const Expr& e)
    {
        syntaxError(
            QStringLiteral("Numero di argomenti errato utilizzato con la funzione nell'espressione della query '%1'.")
                .arg(e.op));
    }

    // ---- SELECT --------------------------------------------------------------------
    QString fromSql(const TableRef& t, const Scope& scope, bool top)
    {
        switch (t.kind) {
        case TableRef::Kind::Table: {
            QString s = (m_qualifyMain ? (m_pg ? QStringLiteral("public.") : QStringLiteral("main.")) : QString()) +
                        tableName(t.name);
            if (!t.alias.isEmpty())
                s += QStringLiteral(" AS ") + ident(t.alias);
            return s;
        }
        case TableRef::Kind::Subquery: {
            // The subquery's columns become visible to the outer scope.
            std::vector<Ty> types;
            QStringList names;
            const QString sub = selectSql(*t.select, scope.parent, nullptr, &types, &names);
            for (const ScopeTable& st : scope.tables) {
                if (st.derived && st.ref == t.alias && st.derived->columns.empty()) {
                    for (int i = 0; i < names.size(); ++i) {
                        const Ty ty = i < int(types.size()) ? types[size_t(i)] : Ty::Unknown;
                        const ColumnKind k = ty == Ty::Text     ? ColumnKind::Text
                                             : ty == Ty::Date   ? ColumnKind::Date
                                             : ty == Ty::Number ? ColumnKind::Number
                                                                : ColumnKind::Unknown;
                        const_cast<TableInfo*>(st.derived.get())->columns.push_back({names[i], QString(), k});
                    }
                }
            }
            return u'(' + sub + QStringLiteral(") AS ") + ident(t.alias);
        }
        case TableRef::Kind::Join: {
            const TableRef* l = &t.sides[0];
            const TableRef* r = &t.sides[1];
            QString kw = QStringLiteral(" INNER JOIN ");
            if (t.join == TableRef::JoinType::Left) {
                kw = QStringLiteral(" LEFT JOIN ");
            } else if (t.join == TableRef::JoinType::Right) {
                if (m_pg || sqlite3_libversion_number() >= 3039000) {
                    kw = QStringLiteral(" RIGHT JOIN ");
                } else {
                    std::swap(l, r);
                    kw = QStringLiteral(" LEFT JOIN ");
                }
            }
            auto side = [&](const TableRef& s) {
                const QString sql = fromSql(s, scope, false);
                return s.kind == TableRef::Kind::Join ? u'(' + sql + u')' : sql;
            };
            const QString left = side(*l);
            const QString right = side(*r);
            return left + kw + right + QStringLiteral(" ON ") + cond(*t.on, scope).sql;
        }
        }
        Q_UNUSED(top);
        return {};
    }

    // Result columns of an item: one, or the columns of the "*".
    void starColumns(const Expr& star, const Scope& scope, std::vector<const ColumnInfo*>& cols, bool& known)
    {
        for (const ScopeTable& t : scope.tables) {
            if (!star.qualifier.isEmpty() && t.ref.compare(star.qualifier, Qt::CaseInsensitive) != 0 &&
                t.name.compare(star.qualifier, Qt::CaseInsensitive) != 0)
                continue;
            if (!t.info || (t.derived && t.derived->columns.empty())) {
                known = false;
                continue;
            }
            for (const ColumnInfo& c : t.info->columns)
                cols.push_back(&c);
        }
    }

    /// The SQL of a select; types/names receive the result columns' types and names.
    /// targetKinds: the kinds of the columns an INSERT ... SELECT writes (conversions).
    QString selectSql(const Select& s, const Scope* parent, const std::vector<Target>* targetKinds,
                      std::vector<Ty>* types, QStringList* names = nullptr, bool* starsKnown = nullptr,
                      std::vector<QString>* declTypes = nullptr, const QString& rowidOf = QString())
    {
        const bool outerAggregate = m_aggregate;
        m_aggregate = false;
        const auto outerBare = std::tuple(m_bareColumns, m_bareOrder, m_insideAggregate);
        m_bareColumns = false;
        m_insideAggregate = 0;
        Scope scope;
        scope.parent = parent;
        for (const TableRef& t : s.from)
            collect(t, scope);
        QStringList fromParts;
        for (const TableRef& t : s.from)
            fromParts << fromSql(t, scope, true);

        QString sql = QStringLiteral("SELECT ");
        if (s.distinct)
            sql += QStringLiteral("DISTINCT ");
        QStringList items;
        size_t position = 0;
        QHash<QString, size_t> itemPositions; // on the server: the select item a GROUP/ORDER BY term repeats
        if (m_pg && s.groupBy.empty() && hasAggregate(s))
            bareColumnsOf(s, scope);
        for (const SelectItem& item : s.items) {
            if (item.expr.kind == Expr::Kind::Star) {
                std::vector<const ColumnInfo*> cols;
                bool known = true;
                starColumns(item.expr, scope, cols, known);
                if (m_pg && known) // the server's tables hold a jet_rowid that "*" must not show
                    items << starList(item.expr, scope);
                else
                    items << gen(item.expr, scope).sql;
                if (!known && starsKnown)
                    *starsKnown = false;
                for (const ColumnInfo* c : cols) {
                    if (types)
                        types->push_back(tyOf(c->kind));
                    if (names)
                        *names << c->name;
                    if (declTypes)
                        declTypes->push_back(c->declType);
                }
                position += cols.size();
                continue;
            }
            G g = gen(item.expr, scope);
            if (targetKinds && position < targetKinds->size())
                g = convert(g, (*targetKinds)[position]);
            // A condition read as a value is Jet's True (-1) or False (0).
            if (g.ty == Ty::Bool && !g.column)
                g.sql = QStringLiteral("(-") + g.sql + u')';
            QString name = item.alias;
            QString text = g.sql;
            if (m_pg)
                itemPositions.insert(withLiteralValues(g.sql), position + 1);
            if (s.distinct && g.ty != Ty::Number && g.ty != Ty::Date && !g.column && !m_pg)
                text += collate();
            if (!item.alias.isEmpty()) {
                text += QStringLiteral(" AS ") + ident(item.alias);
            } else if (item.expr.kind == Expr::Kind::Column) {
                name = item.expr.name;
            } else {
                name = QStringLiteral("Expr%1").arg(m_exprCounter++);
                text += QStringLiteral(" AS ") + name;
            }
            items << text;
            if (types)
                types->push_back(g.ty);
            if (names)
                *names << name;
            if (declTypes)
                declTypes->push_back(g.column ? g.column->declType : QString());
            ++position;
        }
        if (!rowidOf.isEmpty())
            items << ident(rowidOf) + u'.' + rowid() + QStringLiteral(" AS jet_rowid");
        m_bareColumns = false;
        sql += items.join(QStringLiteral(", "));
        if (!fromParts.isEmpty())
            sql += QStringLiteral(" FROM ") + fromParts.join(QStringLiteral(", "));
        if (s.where)
            sql += QStringLiteral(" WHERE ") + cond(*s.where, scope).sql;
        if (!s.groupBy.empty()) {
            QStringList terms;
            for (size_t i = 0; i < s.groupBy.size(); ++i)
                if (m_pg || !determinedByEarlierTerm(s, i, scope))
                    terms << sortTerm(itemOrTerm(gen(s.groupBy[i], scope), itemPositions));
            sql += QStringLiteral(" GROUP BY ") + terms.join(QStringLiteral(", "));
        }
        if (s.having)
            sql += QStringLiteral(" HAVING ") + cond(*s.having, scope).sql;
        if (!s.orderBy.empty()) {
            QStringList terms;
            for (const OrderItem& o : s.orderBy)
                terms << sortTerm(itemOrTerm(gen(o.expr, scope), itemPositions)) +
                             (o.descending ? QStringLiteral(" DESC") : QString()) +
                             (m_pg ? (o.descending ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST"))
                                   : QString()); // Null sorts first, as in Jet and SQLite
            sql += QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
        }
        if (s.topLiteral >= 0) {
            if (s.topPercent)
                syntaxError(QStringLiteral("TOP PERCENT non supportato in questa istruzione."));
            sql += QStringLiteral(" LIMIT ") + param(s.topLiteral);
        }
        m_aggregate = outerAggregate;
        std::tie(m_bareColumns, m_bareOrder, m_insideAggregate) = outerBare;
        return sql;
    }

    // A GROUP BY term that the terms before it already determine splits no group and moves
    // none, so SQLite is not given it: the rest can then follow an index's order and the
    // grouping reads the index as it stands instead of sorting every row (the interventions
    // by machine unit). Each group's values come from its last row either way. Two kinds:
    // Val() of an earlier term (a text and its number; Jet's equal texts differ only in
    // case, which Val ignores), kept in the ORDER BY so that Val of a Null still fails before
    // the first row; and a column of a table inner-joined on its counter to an earlier term.
    bool determinedByEarlierTerm(const Select& s, size_t i, const Scope& scope) const
    {
        // Over whole tables only: the rows then reach the grouping in the same order either
        // way, so each group's last row stays the same.
        if (s.having || s.where)
            return false;
        auto earlier = [&](const Expr& c) {
            const auto target = resolve(c, scope);
            return c.kind == Expr::Kind::Column && target.second &&
                   std::any_of(s.groupBy.begin(), s.groupBy.begin() + std::ptrdiff_t(i), [&](const Expr& g) {
                       return g.kind == Expr::Kind::Column && resolve(g, scope) == target;
                   });
        };
        const Expr& e = s.groupBy[i];
        if (isValOfColumn(e)) {
            const auto ordered = [&](const OrderItem& o) {
                return isValOfColumn(o.expr) && resolve(o.expr.args[0], scope) == resolve(e.args[0], scope);
            };
            return earlier(e.args[0]) && std::any_of(s.orderBy.begin(), s.orderBy.end(), ordered);
        }
        if (e.kind != Expr::Kind::Column)
            return false;
        const auto [table, column] = resolve(e, scope);
        if (!column || table->derived)
            return false;
        for (const TableRef& t : s.from) {
            const Expr* on = innerJoinOn(t, table->ref);
            if (!on || on->kind != Expr::Kind::Binary || on->op != QLatin1String("=") || on->args.size() != 2)
                continue;
            for (int side = 0; side < 2; ++side) {
                const Expr& key = on->args[size_t(side)];
                const auto [keyTable, keyColumn] = resolve(key, scope);
                if (key.kind == Expr::Kind::Column && keyTable == table && keyColumn && keyColumn->rowidKey &&
                    earlier(on->args[size_t(1 - side)]))
                    return true;
            }
        }
        return false;
    }

    static bool isValOfColumn(const Expr& e)
    {
        return e.kind == Expr::Kind::Call && e.op.compare(QLatin1String("Val"), Qt::CaseInsensitive) == 0 &&
               e.args.size() == 1 && e.args[0].kind == Expr::Kind::Column;
    }

    // The ON of the inner join that has the table named ref as one side, through inner
    // joins only; nullptr when there is none.
    static const Expr* innerJoinOn(const TableRef& t, const QString& ref)
    {
        if (t.kind != TableRef::Kind::Join || t.join != TableRef::JoinType::Inner || !t.on)
            return nullptr;
        for (const TableRef& side : t.sides) {
            if (side.kind == TableRef::Kind::Table &&
                (side.alias.isEmpty() ? side.name : side.alias).compare(ref, Qt::CaseInsensitive) == 0)
                return &*t.on;
            if (const Expr* on = innerJoinOn(side, ref))
                return on;
        }
        return nullptr;
    }

    // GROUP BY and ORDER BY terms group and sort texts as Jet does.
    QString sortTerm(const G& g) const
    {
        // The server's texts carry the collation of their columns into expressions too,
        // and a GROUP BY term must read as its select item does.
        if (g.ty == Ty::Number || g.ty == Ty::Date || g.ty == Ty::Bool || m_pg)
            return g.sql;
        return g.sql + collate();
    }

    // The server binds each literal of the statement apart, so "Left(M, 1)" in the select
    // and in its GROUP BY differ there; a term that repeats a select item names its position.
    QString withLiteralValues(const QString& sql) const
    {
        static const QRegularExpression marker(QStringLiteral("\\$(\\d+)"));
        QString out;
        qsizetype at = 0;
        for (auto it = marker.globalMatch(sql); it.hasNext();) {
            const auto m = it.next();
            const vb::Variant& v = m_lx.literals[size_t(m.captured(1).toInt() - 1)];
            out += sql.mid(at, m.capturedStart() - at) + u'<' + QString::number(int(v.type())) + u':' +
                   (v.isNull() ? QString() : v.toString()) + u'>';
            at = m.capturedEnd();
        }
        return out + sql.mid(at);
    }
    G itemOrTerm(const G& g, const QHash<QString, size_t>& itemPositions) const
    {
        if (!m_pg || !g.sql.contains(u'$'))
            return g;
        const auto it = itemPositions.constFind(withLiteralValues(g.sql));
        if (it == itemPositions.constEnd())
            return g;
        return {QString::number(*it), g.ty};
    }

    // "*" spelled out as the store's columns, table by table.
    QString starList(const Expr& star, const Scope& scope) const
    {
        QStringList cols;
        for (const ScopeTable& t : scope.tables) {
            if (!star.qualifier.isEmpty() && t.ref.compare(star.qualifier, Qt::CaseInsensitive) != 0 &&
                t.name.compare(star.qualifier, Qt::CaseInsensitive) != 0)
                continue;
            for (const ColumnInfo& c : t.info->columns)
                cols << ident(t.ref) + u'.' + ident(c.name);
        }
        return cols.join(QStringLiteral(", "));
    }

    void topSelect(const Select& s)
    {
        Translation& t = m_out.translation;
        t.kind = StatementKind::Select;
        // A select of one stored table, row by row, can write its rows back.
        QString rowidOf;
        if (m_schema && s.from.size() == 1 && s.from[0].kind == TableRef::Kind::Table && !s.distinct &&
            s.groupBy.empty() && !s.having) {
            const TableInfo* info = lookup(s.from[0].name);
            if (info && !info->isView && !hasAggregate(s))
                rowidOf = s.from[0].alias.isEmpty() ? s.from[0].name : s.from[0].alias;
        }
        std::vector<Ty> types;
        bool known = true;
        QString sql = selectSql(s, nullptr, nullptr, &types, &t.columnNames, &known, nullptr, rowidOf);
        if (const QString counted = countedFirst(s, t.columnNames); !counted.isEmpty())
            sql = counted;
        if (!rowidOf.isEmpty())
            t.baseTable = s.from[0].name;
        if (known)
            for (Ty ty : types)
                t.dateColumns.push_back(ty == Ty::Date);
        else
            t.columnNames.clear();
        emit(sql);
    }

    // ---- a grouping by a looked-up name -------------------------------------------------
    // "GROUP BY R.a, R.b, T.name ... FROM R INNER JOIN T ON R.k = T.counter" with counts:
    // SQLite sorts every row of R to group them (the interventions by machine and cause).
    // Counting R by (a, b, k) first reads an index on those columns in its order, with no
    // sort, and leaves a row per group or fewer; the statement then groups and orders those
    // counted rows as it would have grouped R's, with the counts added up. The groups, their
    // order and their ties come out the same: the counted rows arrive in the order R's rows
    // would, each holding the values of its last row. When no two of T's rows have the same
    // looked-up values, each counted row is a group: one sort orders them instead of the
    // grouping's sort and the ORDER BY's. "" when the select is not of this shape.
    QString countedFirst(const Select& s, const QStringList& names)
    {
        if (m_pg || s.distinct || s.topLiteral >= 0 || s.where || s.having || s.from.size() != 1 || s.groupBy.empty() ||
            s.from[0].kind != TableRef::Kind::Join || s.from[0].join != TableRef::JoinType::Inner)
            return {};
        const TableRef& join = s.from[0];
        const Expr& on = *join.on;
        if (join.sides[0].kind != TableRef::Kind::Table || join.sides[1].kind != TableRef::Kind::Table ||
            on.kind != Expr::Kind::Binary || on.op != QLatin1String("=") || on.args.size() != 2)
            return {};
        Scope scope;
        collect(join, scope);
        using Ref = std::pair<const ScopeTable*, const ColumnInfo*>;
        auto columnOf = [&](const Expr& e) { return e.kind == Expr::Kind::Column ? resolve(e, scope) : Ref{}; };
        const ScopeTable* looked = nullptr;
        Ref key;
        for (size_t side = 0; side < 2; ++side) {
            const Ref counter = columnOf(on.args[side]), other = columnOf(on.args[1 - side]);
            if (counter.second && counter.second->rowidKey && other.second && other.first != counter.first)
                std::tie(looked, key) = std::pair(counter.first, other);
        }
        if (!looked)
            return {};
        auto refOf = [](const TableRef& t) { return t.alias.isEmpty() ? t.name : t.alias; };
        const bool countedLeft = refOf(join.sides[0]).compare(key.first->ref, Qt::CaseInsensitive) == 0;
        const TableRef& countedSide = join.sides[countedLeft ? 0 : 1];
        const TableRef& lookedSide = join.sides[countedLeft ? 1 : 0];

        // R's grouped columns, each once and before any looked-up one, then its key.
        QStringList firstColumns, firstGroups, groupTerms, lookedTerms;
        std::vector<Ref> groups;
        for (size_t i = 0; i < s.groupBy.size(); ++i) {
            const Ref c = columnOf(s.groupBy[i]);
            if (!c.second || c == key || std::find(groups.begin(), groups.end(), c) != groups.end() ||
                (c.first != looked && !groups.empty() && groups.back().first == looked))
                return {};
            groups.push_back(c);
            const G g = gen(s.groupBy[i], scope);
            if (!determinedByEarlierTerm(s, i, scope))
                groupTerms << sortTerm(g);
            if (c.first != looked) {
                firstColumns << g.sql + QStringLiteral(" AS ") + ident(c.second->name);
                firstGroups << sortTerm(g);
            } else {
                lookedTerms << sortTerm(g);
            }
        }
        if (groups.front().first == looked || groups.back().first != looked)
            return {};
        const QString keySql = ident(key.first->ref) + u'.' + ident(key.second->name);
        firstColumns << keySql + QStringLiteral(" AS ") + ident(key.second->name);
        firstGroups << keySql;

        // A count of R's column adds up R's counts; one of T's, the rows where it is not Null.
        // Each value both added up over a group and as one counted row holds it.
        QStringList firstCounts;
        auto value = [&](const Expr& e) -> std::pair<QString, QString> {
            const bool count = e.kind == Expr::Kind::Call &&
                               e.op.compare(QLatin1String("Count"), Qt::CaseInsensitive) == 0 && e.args.size() == 1;
            if (!count) {
                const bool grouped =
                    std::find(groups.begin(), groups.end(), columnOf(e)) != groups.end() ||
                    (e.kind == Expr::Kind::Call && e.op.compare(QLatin1String("Val"), Qt::CaseInsensitive) == 0 &&
                     e.args.size() == 1 &&
                     std::find(groups.begin(), groups.end(), columnOf(e.args[0])) != groups.end());
                const QString v = grouped ? gen(e, scope).sql : QString();
                return {v, v};
            }
            const Expr& a = e.args[0];
            const Ref c = columnOf(a);
            auto summed = [](const QString& v) { return std::pair(QStringLiteral("sum(%1)").arg(v), v); };
            // The join leaves no row whose key is Null: counting the key counts the rows.
            if ((a.kind == Expr::Kind::Star && a.qualifier.isEmpty()) || c == key)
                return summed(QStringLiteral("jet_rows"));
            if (c.second && c.first == looked)
                return summed(QStringLiteral("iif(%1 IS NULL, 0, jet_rows)").arg(gen(a, scope).sql));
            if (!c.second || c.first != key.first)
                return {};
            const QString name = QStringLiteral("jet_c") + QString::number(firstCounts.size());
            firstCounts << QStringLiteral("count(%1) AS %2").arg(gen(a, scope).sql, name);
            return summed(name);
        };
        QStringList items, order, rowItems, rowOrder;
        for (size_t i = 0; i < s.items.size(); ++i) {
            const auto [v, row] = value(s.items[i].expr);
            if (v.isEmpty() || int(i) >= names.size())
                return {};
            const bool aliased = !s.items[i].alias.isEmpty() || s.items[i].expr.kind != Expr::Kind::Column;
            const QString as = aliased ? QStringLiteral(" AS ") + ident(names[int(i)]) : QString();
            items << v + as;
            rowItems << row + as;
        }
        for (const OrderItem& o : s.orderBy) {
            const auto [v, row] = value(o.expr);
            if (v.isEmpty())
                return {};
            const Ty ty = o.expr.kind == Expr::Kind::Column ? gen(o.expr, scope).ty : Ty::Number;
            const QString desc = o.descending ? QStringLiteral(" DESC") : QString();
            order << sortTerm({v, ty}) + desc;
            rowOrder << sortTerm({row, ty}) + desc;
        }
        firstCounts << QStringLiteral("count(*) AS jet_rows");
        // Joined in this order, the counted rows stream to the join in the order counted.
        auto counted = [&](const QString& limit) {
            return QStringLiteral("(SELECT %1, %2 FROM %3 GROUP BY %4%5) AS %6 CROSS JOIN %7 ON %8")
                .arg(firstColumns.join(QStringLiteral(", ")), firstCounts.join(QStringLiteral(", ")),
                     fromSql(countedSide, scope, false), firstGroups.join(QStringLiteral(", ")), limit,
                     ident(key.first->ref), fromSql(lookedSide, scope, false), cond(on, scope).sql);
        };
        auto grouped = [&](const QString& limit) {
            QString sql =
                QStringLiteral("SELECT %1 FROM %2 GROUP BY %3")
                    .arg(items.join(QStringLiteral(", ")), counted(limit), groupTerms.join(QStringLiteral(", ")));
            if (!order.isEmpty())
                sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
            return sql;
        };
        const QString once = onceCounted(s, names, groupTerms, lookedTerms, rowOrder);
        if (once.isEmpty())
            return grouped(QString());
        // Every counted row its own group unless two of T's rows have the same looked-up
        // values: then the grouping as above. Only one of the two reads the counted rows.
        // The one sort is the store's when its terms are the rows' own columns: the counted
        // rows come in order by the leading ones already.
        const QString shared = QStringLiteral("EXISTS (SELECT 1 FROM %1 GROUP BY %2 HAVING count(*) > 1)")
                                   .arg(fromSql(lookedSide, scope, false), lookedTerms.join(QStringLiteral(", ")));
        m_out.translation.order = countedOrder(s, groups, key, looked, scope);
        const QString sorted = m_out.translation.order.terms.empty() ? QStringLiteral(" ORDER BY ") + once : QString();
        return QStringLiteral("SELECT * FROM (SELECT %1 FROM %2%3) UNION ALL SELECT * FROM (%4)")
            .arg(rowItems.join(QStringLiteral(", ")), counted(QStringLiteral(" LIMIT iif(%1, 0, -1)").arg(shared)),
                 sorted, grouped(QStringLiteral(" LIMIT iif(%1, -1, 0)").arg(shared)));
    }

    // The one sort of the counted rows (onceCounted's terms) as terms of the select's own
    // columns: a column, Val of one, a count of the rows, a count of a looked-up column (0
    // where it is Null). The grouping of the other form orders its groups the same way.
    // No terms where one is none of those.
    RowOrder countedOrder(const Select& s, const std::vector<std::pair<const ScopeTable*, const ColumnInfo*>>& groups,
                          std::pair<const ScopeTable*, const ColumnInfo*> key, const ScopeTable* looked,
                          const Scope& scope) const
    {
        using Kind = RowOrder::Term::Kind;
        auto columnOf = [&](const Expr& e) {
            return e.kind == Expr::Kind::Column ? resolve(e, scope) : decltype(key){};
        };
        auto isCall = [](const Expr& e, const char* name) {
            return e.kind == Expr::Kind::Call && e.op.compare(QLatin1String(name), Qt::CaseInsensitive) == 0 &&
                   e.args.size() == 1;
        };
        auto counted = [&](const Expr& e) {
            return isCall(e, "Count") && ((e.args[0].kind == Expr::Kind::Star && e.args[0].qualifier.isEmpty()) ||
                                          columnOf(e.args[0]) == key);
        };
        auto item = [&](auto&& is) {
            for (size_t i = 0; i < s.items.size(); ++i)
                if (is(s.items[i].expr))
                    return int(i);
            return -1;
        };
        auto itemOf = [&](const Expr& e) {
            const auto c = columnOf(e);
            return c.second ? item([&](const Expr& x) { return columnOf(x) == c; }) : -1;
        };
        auto term = [&](const Expr& e, bool descending) -> std::optional<RowOrder::Term> {
            int column = itemOf(e), of = -1;
            Kind kind = Kind::Value;
            if (column < 0 && isCall(e, "Val")) {
                column = itemOf(e.args[0]);
                kind = Kind::Val;
            } else if (column < 0 && counted(e)) {
                column = item(counted);
            } else if (column < 0 && isCall(e, "Count") && columnOf(e.args[0]).first == looked) {
                column = item(counted);
                of = itemOf(e.args[0]);
                kind = Kind::CountOf;
                if (of < 0)
                    return {};
            }
            if (column < 0)
                return {};
            // Dates and Yes/No reach the recordset converted (a date, True): their order and
            // their Val stay SQLite's.
            const ColumnInfo* info = columnOf(kind == Kind::Val ? e.args[0] : e).second;
            if (info && info->kind != ColumnKind::Text && info->kind != ColumnKind::Number)
                return {};
            return RowOrder::Term{kind, column, descending, of};
        };
        RowOrder order;
        for (const OrderItem& o : s.orderBy) {
            const auto t = term(o.expr, o.descending);
            if (!t)
                return {};
            order.terms.push_back(*t);
            // The counted rows come by R's grouped columns, ascending.
            if (order.arriving + 1 == order.terms.size() && order.arriving < groups.size() &&
                groups[order.arriving].first != looked && columnOf(o.expr) == groups[order.arriving] && !o.descending)
                ++order.arriving;
        }
        for (size_t i = 0; i < s.groupBy.size(); ++i) {
            const auto t = term(s.groupBy[i], s.groupBy.size() == s.orderBy.size() && s.orderBy[i].descending);
            if (!t)
                return {};
            // A term the ORDER BY has breaks no tie.
            if (std::none_of(order.terms.begin(), order.terms.end(), [&](const RowOrder::Term& o) {
                    return o.kind == t->kind && o.column == t->column && o.of == t->of;
                }))
                order.terms.push_back(*t);
        }
        return order;
    }

    // The order of "SELECT ... FROM counted rows GROUP BY groupTerms ORDER BY order" when
    // every counted row is a group of its own, as one sort: the ORDER BY's terms, then
    // the groups' order for its ties. SQLite sorts the groups and then sorts them again
    // for the ORDER BY, keeping the groups' order on ties; a GROUP BY with as many terms
    // as the ORDER BY takes their directions term by term; a term the ORDER BY already has
    // breaks no tie. "" where that does not hold: a term left to an earlier one, result
    // names SQLite would tell apart, no ORDER BY.
    static QString onceCounted(const Select& s, const QStringList& names, const QStringList& groupTerms,
                               const QStringList& lookedTerms, const QStringList& rowOrder)
    {
        if (rowOrder.isEmpty() || lookedTerms.isEmpty() || groupTerms.size() != qsizetype(s.groupBy.size()))
            return {};
        for (qsizetype i = 0; i < names.size(); ++i)
            for (qsizetype j = 0; j < i; ++j)
                if (names[i].compare(names[j], Qt::CaseInsensitive) == 0)
                    return {};
        QStringList terms = rowOrder;
        const auto ordered = [&](const QString& term) {
            return std::any_of(rowOrder.begin(), rowOrder.end(),
                               [&](const QString& o) { return o == term || o == term + QStringLiteral(" DESC"); });
        };
        for (qsizetype i = 0; i < groupTerms.size(); ++i)
            if (!ordered(groupTerms[i]))
                terms << groupTerms[i] +
                             (groupTerms.size() == qsizetype(s.orderBy.size()) && s.orderBy[size_t(i)].descending
                                  ? QStringLiteral(" DESC")
                                  : QString());
        return terms.join(QStringLiteral(", "));
    }

    static bool exprHasAggregate(const Expr& e)
    {
        if (e.kind == Expr::Kind::Call) {
            const Fn* f = findFunction(e.op);
            if (f && isAggregate(f))
                return true;
        }
        for (const Expr& a : e.args)
            if (exprHasAggregate(a))
                return true;
        return false;
    }

    static bool hasAggregate(const Select& s)
    {
        for (const SelectItem& i : s.items)
            if (exprHasAggregate(i.expr))
                return true;
        for (const OrderItem& o : s.orderBy)
            if (exprHasAggregate(o.expr))
                return true;
        return false;
    }

    // SELECT ... INTO T [IN "file"]: the table made with the select's column types, then
    // filled. Dates stay dates, texts keep the JET collation.
    void selectInto(const Select& s)
    {
        Translation& t = m_out.translation;
        t.kind = StatementKind::SelectInto;
        t.intoTable = s.into;
        QString target = ident(s.into);
        if (s.intoFileLiteral >= 0) {
            t.intoFile = m_lx.literals[size_t(s.intoFileLiteral)].rawString();
            m_out.intoFileLiteral = s.intoFileLiteral;
            target = QLatin1String(m_pg ? ReportSchema : IntoDatabase) + u'.' + target;
            m_qualifyMain = true;
        }
        std::vector<Ty> types;
        QStringList names;
        std::vector<QString> decls;
        bool known = true;
        const QString select = selectSql(s, nullptr, nullptr, &types, &names, &known, &decls);
        if (!known) {
            // Without the schema the types come from SQLite itself.
            emit(QStringLiteral("CREATE TABLE %1 AS SELECT * FROM (%2)%3 LIMIT 0")
                     .arg(target, select, m_pg ? QStringLiteral(" AS jet_s") : QString()));
        } else {
            QStringList cols;
            for (int i = 0; i < names.size(); ++i) {
                const QString decl = declFor(types[size_t(i)], decls[size_t(i)]);
                cols << ident(names[i]) + (m_pg && !decl.isEmpty() ? u' ' + postgresType(decl.mid(1)) : decl);
            }
            if (m_pg)
                cols << QLatin1String(RowidColumn);
            m_maxParam = 0; // CREATE TABLE binds nothing
            emit(QStringLiteral("CREATE TABLE %1 (%2)").arg(target, cols.join(QStringLiteral(", "))));
        }
        m_maxParam = 0;
        const QString again = selectSql(s, nullptr, nullptr, nullptr);
        QString columns;
        if (m_pg && known) {
            QStringList named;
            for (const QString& n : names)
                named << ident(n);
            columns = QStringLiteral("(") + named.join(QStringLiteral(", ")) + QStringLiteral(") ");
        }
        emit(QStringLiteral("INSERT INTO %1 ").arg(target) + columns + again);
        m_qualifyMain = false;
    }

    static QString declFor(Ty ty, QString decl)
    {
        if (!decl.isEmpty()) {
            const ColumnKind k = kindOfDecl(decl);
            if (decl.contains(QLatin1String("INTEGER"), Qt::CaseInsensitive) && k == ColumnKind::Number)
                decl = QStringLiteral("LONG"); // an autonumber copies as a Long
            if (k == ColumnKind::Text && !decl.contains(QLatin1String("COLLATE"), Qt::CaseInsensitive))
                decl += CollateJet;
            return u' ' + decl;
        }
        switch (ty) {
        case Ty::Text: return QStringLiteral(" VARCHAR(255)") + CollateJet;
        case Ty::Number: return QStringLiteral(" DOUBLE");
        case Ty::Date: return QStringLiteral(" DATE");
        case Ty::Bool: return QStringLiteral(" BIT");
        case Ty::Unknown:
        case Ty::Null: break;
        }
        return {};
    }

    // A value written to a column of a kind takes that kind, as Jet converts it; a
    // whole-number column keeps whole numbers only, rounded as CLng rounds (half to even).
    static G convert(const G& g, Target target)
    {
        switch (target.kind) {
        case ColumnKind::Text:
            if (g.ty == Ty::Date)
                return {QStringLiteral("jet_cstr(1, ") + g.sql + u')', Ty::Text};
            if (g.ty == Ty::Number || g.ty == Ty::Bool)
                return {QStringLiteral("jet_cstr(0, ") + g.sql + u')', Ty::Text};
            return g;
        case ColumnKind::Number:
        case ColumnKind::Boolean: {
            G out = g;
            if (g.ty == Ty::Text || g.ty == Ty::Unknown)
                out = {QStringLiteral("jet_num(") + g.sql + u')', Ty::Number};
            if (target.whole)
                out = {QStringLiteral("jet_clng(") + out.sql + u')', Ty::Number};
            return out;
        }
        case ColumnKind::Date:
            if (g.ty == Ty::Text || g.ty == Ty::Unknown)
                return {QStringLiteral("jet_cdate(") + g.sql + u')', Ty::Date};
            return g;
        case ColumnKind::Unknown: break;
        }
        return g;
    }

    static Target targetOf(const ColumnInfo* c)
    {
        if (!c)
            return {};
        const QString d = c->declType.toUpper();
        const bool whole =
            c->kind == ColumnKind::Number && (d.contains(QLatin1String("INT")) || d.contains(QLatin1String("LONG")) ||
                                              d.contains(QLatin1String("BYTE")) || d.contains(QLatin1String("SHORT")));
        return {c->kind, whole};
    }

    Target targetOf(const TableInfo* info, const QString& column) const
    {
        return targetOf(info ? info->column(column) : nullptr);
    }

    // ---- action statements ---------------------------------------------------------
    void insert(const Statement& st)
    {
        Translation& t = m_out.translation;
        t.kind = StatementKind::Insert;
        t.intoTable = st.table;
        const TableInfo* info = lookup(st.table);
        std::vector<Target> kinds;
        QStringList cols;
        if (!st.columns.empty()) {
            for (const QString& c : st.columns) {
                kinds.push_back(targetOf(info, c));
                cols << columnName(info, c);
            }
        } else if (info) {
            for (const ColumnInfo& c : info->columns) {
                kinds.push_back(targetOf(&c));
                if (m_pg) // the server's jet_rowid is no column of the statement's
                    cols << ident(c.name);
            }
        }
        QString sql = QStringLiteral("INSERT INTO ") + tableName(st.table);
        if (!cols.isEmpty())
            sql += QStringLiteral(" (") + cols.join(QStringLiteral(", ")) + u')';
        if (st.select) {
            sql += u' ' + selectSql(*st.select, nullptr, &kinds, nullptr);
        } else {
            Scope scope;
            QStringList values;
            for (size_t i = 0; i < st.values.size(); ++i) {
                G g = gen(st.values[i], scope);
                if (i < kinds.size())
                    g = convert(g, kinds[i]);
                values << g.sql;
            }
            sql += QStringLiteral(" VALUES (") + values.join(QStringLiteral(", ")) + u')';
        }
        emit(sql);
    }

    static void leaves(const TableRef& t, std::vector<const TableRef*>& tables, std::vector<const Expr*>& ons,
                       bool& innerOnly)
    {
        if (t.kind != TableRef::Kind::Join) {
            tables.push_back(&t);
            return;
        }
        if (t.join != TableRef::JoinType::Inner)
            innerOnly = false;
        leaves(t.sides[0], tables, ons, innerOnly);
        leaves(t.sides[1], tables, ons, innerOnly);
        ons.push_back(&*t.on);
    }

    // UPDATE T SET ... / UPDATE T1 INNER JOIN (...) ON ... SET T2.c = ... WHERE ...:
    // SQLite updates one table, the one the SET names, joined to the others with FROM.
    void update(const Statement& st)
    {
        Translation& t = m_out.translation;
        t.kind = StatementKind::Update;
        Scope scope;
        collect(*st.target, scope);
        // The table the assignments write.
        const ScopeTable* target = nullptr;
        for (const auto& [col, value] : st.assignments) {
            const auto [table, info] = resolve(col, scope);
            const ScopeTable* which = table ? table : &scope.tables.front();
            if (target && target != which)
                syntaxError(QStringLiteral("Errore di sintassi nell'istruzione UPDATE."));
            target = which;
        }
        if (!target || target->name.isEmpty())
            syntaxError(QStringLiteral("Errore di sintassi nell'istruzione UPDATE."));
        t.intoTable = target->name;
        QStringList sets;
        for (const auto& [col, value] : st.assignments) {
            G g = gen(value, scope);
            g = convert(g, targetOf(target->info, col.name));
            sets << columnName(target->info, col.name) + QStringLiteral(" = ") + g.sql;
        }
        QString sql = QStringLiteral("UPDATE ") + tableName(target->name);
        if (target->ref != target->name)
            sql += QStringLiteral(" AS ") + ident(target->ref);
        sql += QStringLiteral(" SET ") + sets.join(QStringLiteral(", "));
        QStringList conditions;
        if (st.target->kind == TableRef::Kind::Join) {
            std::vector<const TableRef*> tables;
            std::vector<const Expr*> ons;
            bool innerOnly = true;
            leaves(*st.target, tables, ons, innerOnly);
            if (innerOnly) {
                QStringList others;
                for (const TableRef* r : tables) {
                    const QString ref = r->alias.isEmpty() ? r->name : r->alias;
                    if (ref == target->ref)
                        continue;
                    others << fromSql(*r, scope, true);
                }
                if (!others.isEmpty())
                    sql += QStringLiteral(" FROM ") + others.join(QStringLiteral(", "));
                for (const Expr* on : ons)
                    conditions << cond(*on, scope).sql;
                if (st.where)
                    conditions << cond(*st.where, scope).sql;
            } else {
                QString sub = QStringLiteral("SELECT %1.%3 FROM %2")
                                  .arg(ident(target->ref), fromSql(*st.target, scope, true), rowid());
                if (st.where)
                    sub += QStringLiteral(" WHERE ") + cond(*st.where, scope).sql;
                conditions << QStringLiteral("%1.%3 IN (%2)").arg(ident(target->ref), sub, rowid());
            }
        } else if (st.where) {
            conditions << cond(*st.where, scope).sql;
        }
        if (!conditions.isEmpty())
            sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
        emit(sql);
    }

    void del(const Statement& st)
    {
        Translation& t = m_out.translation;
        t.kind = StatementKind::Delete;
        Scope scope;
        collect(*st.target, scope);
        const ScopeTable& first = scope.tables.front();
        t.intoTable = first.name;
        QString sql = QStringLiteral("DELETE FROM ") + tableName(first.name);
        if (st.target->kind == TableRef::Kind::Join) {
            QString sub =
                QStringLiteral("SELECT %1.%3 FROM %2").arg(ident(first.ref), fromSql(*st.target, scope, true), rowid());
            if (st.where)
                sub += QStringLiteral(" WHERE ") + cond(*st.where, scope).sql;
            sql += QStringLiteral(" WHERE %2 IN (%1)").arg(sub, rowid());
        } else {
            if (st.target->alias.size())
                sql += QStringLiteral(" AS ") + ident(st.target->alias);
            if (st.where)
                sql += QStringLiteral(" WHERE ") + cond(*st.where, scope).sql;
        }
        emit(sql);
    }

    // Jet's DDL types as the store declares them.
    QString typeSql(const ColumnDef& c)
    {
        m_out.cacheable = false;
        const QString& t = c.type;
        auto is = [&](std::initializer_list<const char*> names) {
            for (const char* n : names)
                if (t == QLatin1String(n))
                    return true;
            return false;
        };
        QString decl;
        if (is({"VARCHAR", "TEXT", "NVARCHAR", "STRING", "ALPHANUMERIC", "CHARACTER VARYING"}))
            decl = QStringLiteral("VARCHAR(%1)").arg(c.size > 0 ? c.size : 255) + CollateJet;
        else if (is({"CHAR", "NCHAR", "CHARACTER"}))
            decl = QStringLiteral("CHAR(%1)").arg(c.size > 0 ? c.size : 255) + CollateJet;
        else if (is({"MEMO", "LONGTEXT", "LONGCHAR", "NOTE", "NTEXT"}))
            decl = QStringLiteral("LONGTEXT") + CollateJet;
        else if (is({"INTEGER", "INT", "LONG", "INTEGER4"}))
            decl = QStringLiteral("LONG");
        else if (is({"SMALLINT", "SHORT", "INTEGER2"}))
            decl = QStringLiteral("SMALLINT");
        else if (is({"BYTE", "TINYINT", "INTEGER1"}))
            decl = QStringLiteral("BYTE");
        else if (is({"DOUBLE", "FLOAT", "FLOAT8", "NUMBER", "NUMERIC", "REAL", "SINGLE", "FLOAT4", "IEEEDOUBLE",
                     "IEEESINGLE", "DECIMAL"}))
            decl = QStringLiteral("DOUBLE");
        else if (is({"CURRENCY", "MONEY"}))
            decl = QStringLiteral("CURRENCY");
        else if (is({"DATE", "DATETIME", "TIME", "TIMESTAMP"}))
            decl = QStringLiteral("DATE");
        else if (is({"BIT", "YESNO", "LOGICAL", "LOGICAL1", "BOOLEAN"}))
            decl = QStringLiteral("BIT");
        else if (is({"COUNTER", "AUTOINCREMENT", "IDENTITY"}))
            return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
        else
            syntaxError(QStringLiteral("Errore di sintassi nella definizione del campo."));
        if (c.notNull)
            decl += QStringLiteral(" NOT NULL");
        if (c.primaryKey)
            decl += QStringLiteral(" PRIMARY KEY");
        return decl;
    }

    void ddl(const Statement& st)
    {
        Translation& t = m_out.translation;
        t.intoTable = st.table;
        switch (st.kind) {
        case Statement::Kind::CreateTable: {
            t.kind = StatementKind::CreateTable;
            QStringList cols;
            QStringList counters;
            for (const ColumnDef& c : st.columnDefs) {
                const QString type = typeSql(c);
                cols << ident(c.name) + u' ' + (m_pg ? postgresType(type) : type);
                if (m_pg && type.contains(QLatin1String("AUTOINCREMENT")))
                    counters << c.name;
            }
            if (m_pg)
                cols << QLatin1String(RowidColumn);
            emit(QStringLiteral("CREATE TABLE %1 (%2)").arg(ident(st.table), cols.join(QStringLiteral(", "))));
            for (const QString& c : counters)
                emit(postgresCounterTrigger(st.table, c));
            break;
        }
        case Statement::Kind::AlterAdd:
            t.kind = StatementKind::AlterTable;
            emit(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                     .arg(tableName(st.table), ident(st.columnDefs[0].name),
                          m_pg ? postgresType(typeSql(st.columnDefs[0])) : typeSql(st.columnDefs[0])));
            break;
        case Statement::Kind::AlterDrop:
            t.kind = StatementKind::AlterTable;
            emit(QStringLiteral("ALTER TABLE %1 DROP COLUMN %2")
                     .arg(tableName(st.table), columnName(lookup(st.table), st.columns[0])));
            break;
        case Statement::Kind::DropTable:
            t.kind = StatementKind::DropTable;
            emit(QStringLiteral("DROP TABLE ") + tableName(st.table));
            break;
        default: break;
        }
    }

    const Lexed& m_lx;
    const SchemaInfo* m_schema;
    Generated m_out;
    int m_maxParam = 0;
    int m_exprCounter = 1000;
    bool m_aggregate = false;
    bool m_qualifyMain = false;
    bool m_pg = false;          ///< writing for the server (PostgreSQL) rather than SQLite
    bool m_bareColumns = false; ///< server: columns of this select's items stand beside aggregates
    QString m_bareOrder;        ///< the row they come from (the one Min/Max), "" for any row
    int m_insideAggregate = 0;
};

} // namespace

Generated generate(const Statement& st, const Lexed& lexed, const SchemaInfo* schema, Dialect dialect)
{
    return Generator(lexed, schema, dialect).run(st);
}

Generated generateSqlite(const Statement& st, const Lexed& lexed, const SchemaInfo* schema)
{
    return generate(st, lexed, schema, Dialect::Sqlite);
}

} // namespace store::jet
