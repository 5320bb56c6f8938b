#pragma once
// The dialect's corpus on the server store: the same Jet statements translated for
// PostgreSQL and run through PgSession on a new database, rows written as JetConnection
// writes SQLite's.

#include "JetTestSupport.h"
#include "store/pg/PgSession.h"
#include "support/TestServer.h"

#include <libpq-fe.h>

namespace store::jet::testing {

class ServerJet : public JetRunner
{
public:
    ServerJet() { pg::createPostgresFunctions(m_db.session()); }

    QString run(const QString& jetSql, const std::vector<vb::Variant>& user = {}) override
    {
        m_last = withUserParams(translate(jetSql, schema(), Dialect::Postgres), user);
        const pg::PgResult r = m_db.session().run(m_last);
        QStringList rows;
        for (const auto& row : r.rows) {
            QStringList cells;
            for (const vb::Variant& v : row)
                cells << text(v);
            rows << cells.join(u'|');
        }
        return rows.join(u';');
    }

    QString prepareOnly(const QString& jetSql) const override
    {
        const Translation t = translate(jetSql, schema(), Dialect::Postgres);
        for (const SqliteStatement& s : t.statements) {
            PGresult* r = PQprepare(m_db.session().handle(), "", s.sql.toUtf8().constData(), 0, nullptr);
            const QString error =
                PQresultStatus(r) == PGRES_COMMAND_OK ? QString() : QString::fromUtf8(PQresultErrorMessage(r));
            PQclear(r);
            if (!error.isEmpty())
                return error;
        }
        return {};
    }

    const SchemaInfo* schema() const override { return &m_db.session().schema(); }
    const Translation& last() const override { return m_last; }
    Dialect dialect() const override { return Dialect::Postgres; }

private:
    // As SQLite's columns read: dates are REAL day numbers there.
    static QString text(const vb::Variant& v)
    {
        using T = vb::Variant::Type;
        switch (v.type()) {
        case T::Null: return QStringLiteral("Null");
        case T::Date: return QString::number(v.rawDate().serial, 'g', 15);
        case T::Double: return QString::number(v.rawDouble(), 'g', 15);
        case T::Integer:
        case T::Long: return QString::number(v.rawLong());
        case T::Boolean: return v.rawBool() ? QStringLiteral("-1") : QStringLiteral("0");
        default: return v.rawString();
        }
    }

    mutable testserver::ScratchDatabase m_db;
    Translation m_last;
};

} // namespace store::jet::testing
