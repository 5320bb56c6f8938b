#pragma once
// A bare in-memory SQLite connection with the dialect's functions and collation, for
// tests that run Jet statements straight through translate() with no store around them.

#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "store/jet/Jet.h"

#include <QDateTime>
#include <QStringList>

#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>

namespace store::jet::testing {

/// What the dialect's corpus runs on: the embedded store, or the server (ServerJet).
class JetRunner
{
public:
    virtual ~JetRunner() = default;
    virtual QString run(const QString& jetSql, const std::vector<vb::Variant>& user = {}) = 0;
    virtual QString prepareOnly(const QString& jetSql) const = 0;
    virtual const SchemaInfo* schema() const = 0;
    virtual const Translation& last() const = 0;
    virtual Dialect dialect() const { return Dialect::Sqlite; }
};

/// A translation with the caller's values in its "?" parameters.
inline Translation withUserParams(Translation t, const std::vector<vb::Variant>& user)
{
    for (size_t i = 0; i < user.size() && i < t.userParams.size(); ++i)
        for (SqliteStatement& s : t.statements)
            if (size_t(t.userParams[i]) < s.params.size())
                s.params[size_t(t.userParams[i])] = user[i];
    return t;
}

/// One open connection and its schema; closes both on destruction.
class JetConnection : public JetRunner
{
public:
    JetConnection()
    {
        if (sqlite3_open(":memory:", &m_db) != SQLITE_OK)
            ADD_FAILURE() << "in-memory store does not open";
        registerFunctions(m_db);
        m_schema = std::make_unique<SqliteSchema>(m_db);
    }
    ~JetConnection() override
    {
        m_schema.reset();
        sqlite3_close(m_db);
    }
    JetConnection(const JetConnection&) = delete;
    JetConnection& operator=(const JetConnection&) = delete;

    sqlite3* db() const { return m_db; }
    const SqliteSchema* schema() const override { return m_schema.get(); }

    /// Prepares every generated statement without running it; "" when all prepare,
    /// else SQLite's message for the first that does not.
    QString prepareOnly(const QString& jetSql) const override
    {
        const Translation t = translate(jetSql, m_schema.get());
        for (const SqliteStatement& s : t.statements) {
            sqlite3_stmt* st = nullptr;
            const int rc = sqlite3_prepare_v2(m_db, s.sql.toUtf8().constData(), -1, &st, nullptr);
            sqlite3_finalize(st);
            if (rc != SQLITE_OK)
                return QString::fromUtf8(sqlite3_errmsg(m_db));
        }
        return {};
    }

    /// Runs a Jet statement and gives the rows of its last generated statement as
    /// "a|1;b|2" (Null as "Null", reals with up to 15 digits). A value raised by one
    /// of the dialect's functions comes back as that VBError; any other failure of
    /// SQLite as a VBError numbered -1 with SQLite's message. `user` fills the
    /// statement's "?" parameters, as the parameter commands do.
    QString run(const QString& jetSql, const std::vector<vb::Variant>& user = {}) override
    {
        return runTranslation(withUserParams(translate(jetSql, m_schema.get()), user));
    }

    /// Runs a translation as run() does (a test may have changed its SQL).
    QString runTranslation(Translation translation)
    {
        m_last = std::move(translation);
        QStringList rows;
        for (const SqliteStatement& s : m_last.statements) {
            rows.clear();
            sqlite3_stmt* st = nullptr;
            if (sqlite3_prepare_v2(m_db, s.sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
                throw vb::VBError(-1, QString::fromUtf8(sqlite3_errmsg(m_db)));
            for (size_t i = 0; i < s.params.size(); ++i)
                bindValue(st, int(i) + 1, s.params[i]);
            const int columns = sqlite3_column_count(st) - (m_last.baseTable.isEmpty() ? 0 : 1);
            std::vector<vb::Variant> values; // for the order the store gives the rows
            int rc;
            while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
                QStringList row;
                for (int c = 0; c < columns; ++c) {
                    row << text(st, c);
                    values.push_back(value(st, c));
                }
                rows << row.join(u'|');
            }
            const QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
            sqlite3_finalize(st);
            if (rc != SQLITE_DONE) {
                if (auto e = errorFromMessage(message))
                    throw *e;
                throw vb::VBError(-1, message);
            }
            if (!m_last.order.terms.empty()) {
                QStringList ordered;
                for (const size_t r : orderRows(m_last.order, size_t(rows.size()),
                                                [&](size_t r) { return values.data() + r * size_t(columns); }))
                    ordered << rows[qsizetype(r)];
                rows = ordered;
            }
        }
        return rows.join(u';');
    }

    /// The translation of the last statement run.
    const Translation& last() const override { return m_last; }

private:
    static void bindValue(sqlite3_stmt* st, int i, const vb::Variant& v)
    {
        using T = vb::Variant::Type;
        switch (v.type()) {
        case T::Integer:
        case T::Long: sqlite3_bind_int64(st, i, v.rawLong()); return;
        case T::Double: sqlite3_bind_double(st, i, v.rawDouble()); return;
        case T::Date: sqlite3_bind_double(st, i, v.rawDate().serial); return;
        case T::Boolean: sqlite3_bind_int(st, i, v.rawBool() ? -1 : 0); return;
        case T::String: {
            const QByteArray u = v.rawString().toUtf8();
            sqlite3_bind_text(st, i, u.constData(), int(u.size()), SQLITE_TRANSIENT);
            return;
        }
        default: sqlite3_bind_null(st, i); return;
        }
    }

    static vb::Variant value(sqlite3_stmt* st, int c)
    {
        switch (sqlite3_column_type(st, c)) {
        case SQLITE_NULL: return vb::Variant::null();
        case SQLITE_INTEGER: return vb::Variant(std::int64_t(sqlite3_column_int64(st, c)));
        case SQLITE_FLOAT: return vb::Variant(sqlite3_column_double(st, c));
        default: return vb::Variant(text(st, c));
        }
    }

    static QString text(sqlite3_stmt* st, int c)
    {
        switch (sqlite3_column_type(st, c)) {
        case SQLITE_NULL: return QStringLiteral("Null");
        case SQLITE_INTEGER: return QString::number(sqlite3_column_int64(st, c));
        case SQLITE_FLOAT: return QString::number(sqlite3_column_double(st, c), 'g', 15);
        default: return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)));
        }
    }

    sqlite3* m_db = nullptr;
    std::unique_ptr<SqliteSchema> m_schema;
    Translation m_last;
};

/// The syntax error translate() raises for a statement, "" when it accepts it.
inline QString refusal(const QString& jetSql, const SchemaInfo* schema, Dialect dialect = Dialect::Sqlite)
{
    try {
        translate(jetSql, schema, dialect);
    } catch (const vb::VBError& e) {
        if (e.number() != vb::err::SyntaxError)
            return QStringLiteral("<error %1> ").arg(e.number()) + e.description();
        return e.description();
    }
    return {};
}

} // namespace store::jet::testing
