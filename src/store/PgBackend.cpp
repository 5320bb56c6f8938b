// The server store: a PostgreSQL database through the session layer, with the report
// store as its second schema (rpt). Every table carries a hidden jet_rowid, the row
// identity the recordsets write back by.
#include "runtime/VBError.h"
#include "store/Backend.h"
#include "store/StoreErrors.h"
#include "store/jet/PostgresGenerator.h"
#include "store/pg/PgSession.h"

namespace store::backend {

using vb::JetDate;
using vb::Variant;
using vb::VBError;

namespace {

class PgConnection;

/// A statement runs on the server when its first row (or its columns) are asked for; the
/// session hands back every row at once.
class PgStatement final : public Statement
{
public:
    PgStatement(PgConnection& conn, QString sql) : m_conn(conn), m_sql(std::move(sql)) { }
    void bind(const std::vector<Variant>& params) override { m_params = params; }
    bool step() override
    {
        run();
        return ++m_row < qsizetype(m_result->rows.size());
    }
    void reset() override
    {
        m_params.clear();
        m_result.reset();
        m_row = -1;
    }
    int columnCount() const override { return int(const_cast<PgStatement*>(this)->run().columns.size()); }
    QString columnName(int i) const override { return const_cast<PgStatement*>(this)->run().columns.value(i); }
    QString declType(int) const override { return {}; }
    // The server names the column, not its table: the select's one table is meant.
    std::optional<std::pair<QString, QString>> origin(int i) const override
    {
        return std::pair{QString(), columnName(i)};
    }
    Variant value(int i, ColumnType type, bool date) const override
    {
        const Variant& v = m_result->rows[size_t(m_row)][size_t(i)];
        const bool number =
            v.type() == Variant::Type::Double || v.type() == Variant::Type::Long || v.type() == Variant::Type::Integer;
        if (date && number)
            return Variant(JetDate{v.toDouble()});
        if (type == ColumnType::Boolean && number)
            return Variant(v.toDouble() != 0.0);
        return v;
    }
    std::int64_t integer(int i) const override
    {
        return std::int64_t(m_result->rows[size_t(m_row)][size_t(i)].toDouble());
    }

private:
    const pg::PgResult& run();
    PgConnection& m_conn;
    QString m_sql;
    std::vector<Variant> m_params;
    std::optional<pg::PgResult> m_result;
    qsizetype m_row = -1;
};

class PgConnection final : public Connection
{
public:
    PgConnection(const QString& uri, pg::PgSession::Store store) : session(uri, store) { }

    std::unique_ptr<Statement> prepare(const QString& sql) override
    {
        return std::make_unique<PgStatement>(*this, sql);
    }
    void exec(const QString& sql) override { session.execScript(sql); }
    jet::Translation translate(const QString& jetSql) override
    {
        return jet::translate(jetSql, &session.schema(), jet::Dialect::Postgres);
    }
    quint64 schemaVersion() override { return session.schema().version(); }
    std::int64_t lastInsertKey(const StoredTable& table) override
    {
        const pg::PgResult r =
            session.exec(QStringLiteral("SELECT currval(pg_get_serial_sequence($1, 'jet_rowid'))"),
                         {Variant(jet::postgresIdent(schemaName) + QLatin1Char('.') + jet::postgresIdent(table.name))});
        return std::int64_t(r.rows.at(0).at(0).toDouble());
    }
    std::int64_t changes() override { return affected; }

    std::shared_ptr<StoredTable> table(const QString& name) override
    {
        const jet::TableInfo* t = session.schema().table(name);
        if (!t || t->isView)
            return nullptr;
        auto info = std::make_shared<StoredTable>();
        info->name = t->name;
        for (const jet::ColumnInfo& c : t->columns) {
            ColumnType type = columnTypeOfDecl(c.declType);
            if (type == ColumnType::Counter && info->key < 0)
                info->key = int(info->columns.size());
            info->index.insert(c.name.toLower(), int(info->columns.size()));
            info->columns << c.name;
            info->types.push_back(type);
        }
        info->autoincrement = info->key >= 0;
        return info;
    }

    bool tableExists(const QString& table, bool attached) override
    {
        const pg::PgResult r = session.exec(
            QStringLiteral("SELECT 1 FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace WHERE n.nspname = "
                           "$1 AND lower(c.relname) = lower($2) AND c.relkind IN ('r', 'v', 'p')"),
            {Variant(attached ? QString::fromLatin1(jet::ReportSchema) : schemaName), Variant(table)});
        return !r.rows.empty();
    }

    std::int64_t reserveKey(const StoredTable& table) override
    {
        // The sequence hands a number to one workstation only.
        return session.nextCounter(table.name, table.columns[table.key]);
    }

    // The report store is the rpt schema of the same database: nothing to attach.
    void attach(const QString&) override { }
    void detach() override { }
    QString rowIdentity(const StoredTable&) const override { return QStringLiteral("jet_rowid"); }
    QString marker(int n) const override { return QStringLiteral("$%1").arg(n); }
    QString sameValue() const override { return QStringLiteral("IS NOT DISTINCT FROM"); }
    QString rowLock() const override { return QStringLiteral(" FOR UPDATE"); }
    void begin() override { exec(QStringLiteral("BEGIN")); }
    void commit() override { exec(QStringLiteral("COMMIT")); }
    void rollback() override
    {
        try {
            exec(QStringLiteral("ROLLBACK"));
        } catch (const VBError&) {
        }
    }
    bool inTransaction() const override { return session.inTransaction(); }
    bool empty() override { return session.contents() == pg::DatabaseContents::Empty; }
    void createSchema(bool) override { pg::createPostgresSchema(session); }

    pg::PgSession session;
    QString schemaName = QStringLiteral("public");
    std::int64_t affected = 0;
};

const pg::PgResult& PgStatement::run()
{
    if (!m_result) {
        m_conn.session.sendClock(m_sql);
        m_result = m_conn.session.exec(m_sql, m_params);
        m_conn.affected = m_result->affected;
        const QString head = m_sql.left(12).trimmed().toUpper();
        if (head.startsWith(QLatin1String("CREATE")) || head.startsWith(QLatin1String("ALTER")) ||
            head.startsWith(QLatin1String("DROP")))
            m_conn.session.schemaChanged();
        m_row = -1;
    }
    return *m_result;
}

} // namespace

bool isServerUri(const QString& store)
{
    return store.startsWith(QLatin1String("postgresql://")) || store.startsWith(QLatin1String("postgres://"));
}

std::unique_ptr<Connection> openPostgres(const QString& uri, bool report)
{
    auto conn = std::make_unique<PgConnection>(uri, pg::PgSession::Store::Main);
    switch (conn->session.contents()) {
    case pg::DatabaseContents::OtherProgram:
        throw VBError(errors::Unspecified,
                      QStringLiteral("Il database '%1' contiene già le tabelle di un altro programma: Velmora non lo "
                                     "usa. Indicare un database vuoto o quello di un impianto Velmora.")
                          .arg(conn->session.databaseName()));
    case pg::DatabaseContents::Empty: conn->createSchema(false); break;
    case pg::DatabaseContents::Plant: break;
    }
    if (report) {
        conn = std::make_unique<PgConnection>(uri, pg::PgSession::Store::Report);
        conn->schemaName = QString::fromLatin1(jet::ReportSchema);
    }
    return conn;
}

} // namespace store::backend
