#include "store/pg/PgSession.h"

#include "runtime/Clock.h"
#include "runtime/VBFunctions.h"
#include "store/Schema.h"
#include "store/StoreErrors.h"
#include "store/jet/PostgresGenerator.h"

#include <QUrl>
#include <QUrlQuery>

#include <cmath>
#include <cstring>
#include <libpq-fe.h>
#include <sqlite3.h>

namespace store::pg {

namespace {

// Type OIDs of the server's built-in types (pg_type.h).
constexpr Oid BoolOid = 16, Int8Oid = 20, Int2Oid = 21, Int4Oid = 23, TextOid = 25, Float4Oid = 700, Float8Oid = 701,
              NumericOid = 1700;

struct ResultDeleter
{
    void operator()(PGresult* r) const { PQclear(r); }
};
using Result = std::unique_ptr<PGresult, ResultDeleter>;

// The server's tables as the generator sees them: columns in order without the hidden
// key, each with the Jet name of its declared type.
class PgSchema : public jet::SchemaInfo
{
public:
    explicit PgSchema(PgSession& session) : m_session(session) { }
    const jet::TableInfo* table(const QString& name) const override
    {
        const QString key = name.toLower();
        if (auto it = m_tables.find(key.toStdString()); it != m_tables.end())
            return it->second.get();
        const PgResult r = m_session.exec(
            QStringLiteral(
                "SELECT c.relname, c.relkind = 'v', a.attname, coalesce(dt.typname, format_type(a.atttypid, NULL)), "
                "coalesce(nullif(a.atttypmod, -1) - 4, 0), coalesce(pg_get_expr(d.adbin, d.adrelid) LIKE 'nextval(%', "
                "false) FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT "
                "a.attisdropped LEFT JOIN pg_type dt ON dt.oid = a.atttypid AND dt.typtype = 'd' LEFT JOIN pg_attrdef "
                "d ON d.adrelid = c.oid AND d.adnum = a.attnum WHERE c.relnamespace = current_schema()::regnamespace "
                "AND c.relkind IN ('r', 'v', 'p') AND lower(c.relname) = $1 AND a.attname <> 'jet_rowid' ORDER BY "
                "(c.relname = $2) DESC, c.relname, a.attnum"),
            {vb::Variant(key), vb::Variant(name)});
        if (r.rows.empty())
            return nullptr;
        auto info = std::make_unique<jet::TableInfo>();
        info->name = r.rows[0][0].rawString();
        info->isView = r.rows[0][1].toBool();
        for (const auto& row : r.rows) {
            if (row[0].rawString() != info->name)
                break;
            jet::ColumnInfo c;
            c.name = row[2].rawString();
            c.declType = jet::jetDeclOfPostgres(row[3].rawString(), int(row[4].toDouble()), row[5].toBool());
            c.kind = jet::kindOfDecl(c.declType);
            info->columns.push_back(std::move(c));
        }
        const jet::TableInfo* out = info.get();
        m_tables.emplace(key.toStdString(), std::move(info));
        return out;
    }
    quint64 version() const override { return m_version; }
    void changed()
    {
        ++m_version;
        m_tables.clear();
    }

private:
    PgSession& m_session;
    quint64 m_version = 0;
    mutable std::unordered_map<std::string, std::unique_ptr<jet::TableInfo>> m_tables;
};

vb::Variant readValue(const PGresult* r, int row, int col, Oid type, bool isDate)
{
    if (PQgetisnull(r, row, col))
        return vb::Variant::null();
    const char* text = PQgetvalue(r, row, col);
    switch (type) {
    case BoolOid: return vb::Variant(text[0] == 't');
    case Int2Oid:
    case Int4Oid:
    case Int8Oid:
        if (isDate)
            return vb::Variant(vb::JetDate{double(QByteArray(text).toLongLong())});
        return vb::Variant(std::int64_t(QByteArray(text).toLongLong()));
    case Float4Oid:
    case Float8Oid:
    case NumericOid: {
        const double d = QByteArray(text).toDouble();
        if (isDate)
            return vb::Variant(vb::JetDate{d});
        return vb::Variant(d);
    }
    default: return vb::Variant(QString::fromUtf8(text));
    }
}

bool readsClock(const QString& sql)
{
    return sql.contains(QLatin1String("jet_now(")) || sql.contains(QLatin1String("jet_date(")) ||
           sql.contains(QLatin1String("jet_time(")) || sql.contains(QLatin1String("jet_cdate("));
}

} // namespace

QString connectionFailureText(const QString& message, const QString& uri)
{
    const QUrl url(uri);
    QString database = url.path().mid(1);
    if (database.isEmpty())
        database = QUrlQuery(url).queryItemValue(QStringLiteral("dbname"));
    if (message.contains(QLatin1String("password authentication failed")) ||
        message.contains(QLatin1String("no password supplied")) ||
        message.contains(QLatin1String("authentication failed")))
        return QStringLiteral("Accesso negato dal server del database: nome utente o password errati.");
    if (message.contains(QLatin1String("does not exist")) && message.contains(QLatin1String("database")))
        return QStringLiteral("Il database '%1' non esiste sul server.").arg(database);
    if (message.contains(QLatin1String("invalid")) || message.contains(QLatin1String("missing")))
        return QStringLiteral("Indirizzo del server del database non valido: %1").arg(uri);
    return QStringLiteral("Impossibile connettersi al server del database: il server non risponde o non è "
                          "raggiungibile.");
}

PgSession::PgSession(const QString& uri, Store store)
{
    m_conn = PQconnectdb(uri.toUtf8().constData());
    if (PQstatus(m_conn) != CONNECTION_OK) {
        const QString message = QString::fromUtf8(PQerrorMessage(m_conn));
        PQfinish(m_conn);
        m_conn = nullptr;
        throw vb::VBError(errors::Unspecified, connectionFailureText(message, uri));
    }
    PQsetClientEncoding(m_conn, "UTF8");
    // Notices (a table that already exists for IF NOT EXISTS...) are not the user's business.
    PQsetNoticeProcessor(
        m_conn, [](void*, const char*) {}, nullptr);
    // The plant's tables, or the report store's; the dialect's functions beside either.
    const QByteArray path = store == Store::Report ? QByteArray("SET search_path = ") + jet::ReportSchema + ", jet"
                                                   : QByteArray("SET search_path = public, jet");
    PQclear(PQexec(m_conn, path.constData()));
    m_schema = std::make_unique<PgSchema>(*this);
}

PgSession::~PgSession()
{
    m_schema.reset();
    if (m_conn)
        PQfinish(m_conn);
}

const jet::SchemaInfo& PgSession::schema() const
{
    return *m_schema;
}

void PgSession::schemaChanged()
{
    static_cast<PgSchema*>(m_schema.get())->changed();
    forgetPrepared();
}

vb::VBError PgSession::errorOf(PGresult* r) const
{
    auto field = [&](int code) { return QString::fromUtf8(r ? PQresultErrorField(r, code) : nullptr); };
    if (!r)
        return errors::fromPostgres(QString(), QString::fromUtf8(PQerrorMessage(m_conn)), QString());
    return errors::fromPostgres(field(PG_DIAG_SQLSTATE), field(PG_DIAG_MESSAGE_PRIMARY), field(PG_DIAG_MESSAGE_DETAIL));
}

unsigned PgSession::baseType(unsigned oid) const
{
    if (oid == BoolOid || oid == Int2Oid || oid == Int4Oid || oid == Int8Oid || oid == Float4Oid || oid == Float8Oid ||
        oid == NumericOid || oid == TextOid)
        return oid;
    if (auto it = m_baseTypes.constFind(oid); it != m_baseTypes.constEnd())
        return *it;
    const QByteArray sql =
        "SELECT typbasetype FROM pg_type WHERE oid = " + QByteArray::number(oid) + " AND typtype = 'd'";
    Result r(PQexec(m_conn, sql.constData()));
    unsigned base = oid;
    if (PQresultStatus(r.get()) == PGRES_TUPLES_OK && PQntuples(r.get()) == 1)
        base = QByteArray(PQgetvalue(r.get(), 0, 0)).toUInt();
    m_baseTypes.insert(oid, base);
    return base;
}

PgResult PgSession::exec(const QString& sql, const std::vector<vb::Variant>& params,
                         const std::vector<bool>& dateColumns)
{
    std::vector<QByteArray> values(params.size());
    std::vector<const char*> pointers(params.size(), nullptr);
    std::vector<Oid> types(params.size(), TextOid);
    for (size_t i = 0; i < params.size(); ++i) {
        const vb::Variant& v = params[i];
        using T = vb::Variant::Type;
        switch (v.type()) {
        case T::Null: types[i] = 0; continue; // the server takes the type the statement gives it
        case T::Empty: values[i] = QByteArray(); break;
        case T::Boolean:
            values[i] = v.rawBool() ? "-1" : "0";
            types[i] = Int4Oid;
            break;
        case T::Integer:
        case T::Long:
            values[i] = QByteArray::number(qlonglong(v.rawLong()));
            types[i] = std::abs(v.rawLong()) <= 2147483647 ? Int4Oid : Int8Oid;
            break;
        case T::Double:
            values[i] = QByteArray::number(v.rawDouble(), 'g', 17);
            types[i] = Float8Oid;
            break;
        case T::Date:
            values[i] = QByteArray::number(v.rawDate().serial, 'g', 17);
            types[i] = Float8Oid;
            break;
        case T::String: values[i] = v.rawString().toUtf8(); break;
        }
        pointers[i] = values[i].constData();
    }
    Result r(send(sql.toUtf8(), types, pointers));
    const ExecStatusType status = PQresultStatus(r.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        throw errorOf(r.get());
    PgResult out;
    out.affected = QByteArray(PQcmdTuples(r.get())).toLongLong();
    const int columns = PQnfields(r.get());
    std::vector<Oid> oids;
    for (int c = 0; c < columns; ++c) {
        out.columns << QString::fromUtf8(PQfname(r.get(), c));
        oids.push_back(baseType(PQftype(r.get(), c)));
    }
    const int rows = PQntuples(r.get());
    out.rows.reserve(size_t(rows));
    for (int row = 0; row < rows; ++row) {
        std::vector<vb::Variant> values;
        values.reserve(size_t(columns));
        for (int c = 0; c < columns; ++c)
            values.push_back(
                readValue(r.get(), row, c, oids[size_t(c)], size_t(c) < dateColumns.size() && dateColumns[size_t(c)]));
        out.rows.push_back(std::move(values));
    }
    return out;
}

PgResult PgSession::run(const jet::Translation& t)
{
    for (const jet::SqliteStatement& s : t.statements)
        if (readsClock(s.sql)) {
            sendClock(s.sql);
            break;
        }
    PgResult out;
    // SELECT ... INTO is two statements: all or nothing, unless the caller holds a transaction.
    const bool together = t.statements.size() > 1 && !inTransaction();
    if (together)
        execScript(QStringLiteral("BEGIN"));
    try {
        for (const jet::SqliteStatement& s : t.statements)
            out = exec(s.sql, s.params, t.kind == jet::StatementKind::Select ? t.dateColumns : std::vector<bool>{});
    } catch (...) {
        if (together)
            execScript(QStringLiteral("ROLLBACK"));
        throw;
    }
    if (together)
        execScript(QStringLiteral("COMMIT"));
    switch (t.kind) {
    case jet::StatementKind::SelectInto:
    case jet::StatementKind::CreateTable:
    case jet::StatementKind::AlterTable:
    case jet::StatementKind::DropTable: schemaChanged(); break;
    default: break;
    }
    if (!t.baseTable.isEmpty() && !out.columns.isEmpty()) {
        out.columns.removeLast();
        for (auto& row : out.rows)
            row.pop_back();
    }
    return out;
}

void PgSession::execScript(const QString& sql)
{
    Result r(PQexec(m_conn, sql.toUtf8().constData()));
    // A rollback (to a savepoint too) anywhere in the script may take the clock back.
    if (m_clockPending && sql.contains(QLatin1String("ROLLBACK"), Qt::CaseInsensitive))
        m_clock = std::numeric_limits<double>::quiet_NaN();
    noteTransaction(r.get());
    const ExecStatusType status = PQresultStatus(r.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        throw errorOf(r.get());
}

bool PgSession::inTransaction() const
{
    return PQtransactionStatus(m_conn) != PQTRANS_IDLE;
}

void PgSession::sendClock(const QString& sql)
{
    if (!readsClock(sql))
        return;
    const double now = std::round(vb::toSerial(vb::Clock::now()) * 86400.0) / 86400.0;
    if (now == m_clock)
        return;
    exec(QStringLiteral("SELECT set_config('jet.now', $1, false)"), {vb::Variant(QString::number(now, 'g', 17))});
    m_clock = now;
    m_clockPending = inTransaction();
}

void PgSession::noteTransaction(const PGresult* r)
{
    // A setting made in a transaction lasts only if the transaction commits.
    if (!m_clockPending || inTransaction())
        return;
    if (!r || std::strcmp(PQcmdStatus(const_cast<PGresult*>(r)), "COMMIT") != 0)
        m_clock = std::numeric_limits<double>::quiet_NaN();
    m_clockPending = false;
}

namespace {
/// "Cached plan must not change result type" (feature not supported): another workstation changed a
/// table a prepared SELECT reads.
bool planOutdated(const PGresult* r)
{
    const char* state = PQresultErrorField(r, PG_DIAG_SQLSTATE);
    return state && std::strcmp(state, "0A000") == 0;
}

bool worthPreparing(const QByteArray& sql)
{
    const QByteArray head = sql.left(7).toUpper();
    return head.startsWith("SELECT") || head.startsWith("INSERT") || head.startsWith("UPDATE") ||
           head.startsWith("DELETE") || head.startsWith("WITH");
}
} // namespace

PGresult* PgSession::send(const QByteArray& sql, const std::vector<unsigned>& types,
                          const std::vector<const char*>& values)
{
    const int n = int(types.size());
    QByteArray key;
    if (worthPreparing(sql)) {
        key = sql;
        key.append('\0').append(reinterpret_cast<const char*>(types.data()), qsizetype(types.size() * sizeof(Oid)));
    }
    auto it = key.isEmpty() ? m_prepared.end() : m_prepared.find(key);
    if (it == m_prepared.end() && !key.isEmpty()) {
        if (m_prepared.size() >= 1000)
            forgetPrepared();
        it = m_prepared.insert(key, QByteArray());
        key.clear(); // seen once: run unnamed, as a statement that never comes back costs no more
    }
    // Unnamed in a transaction: a plan another workstation's change of a table outdated
    // would fail the transaction, where outside one it is parsed again at no loss.
    if (key.isEmpty() || inTransaction()) {
        PGresult* r = PQexecParams(m_conn, sql.constData(), n, types.data(), values.data(), nullptr, nullptr, 0);
        noteTransaction(r);
        return r;
    }
    if (it->isEmpty()) {
        const QByteArray name = "jet_" + QByteArray::number(++m_preparedCount);
        Result p(PQprepare(m_conn, name.constData(), sql.constData(), n, types.data()));
        if (PQresultStatus(p.get()) != PGRES_COMMAND_OK)
            return p.release();
        *it = name;
    }
    PGresult* r = PQexecPrepared(m_conn, it->constData(), n, values.data(), nullptr, nullptr, 0);
    if (PQresultStatus(r) == PGRES_FATAL_ERROR && planOutdated(r)) {
        PQclear(r);
        PQclear(PQexec(m_conn, ("DEALLOCATE " + *it).constData()));
        it->clear();
        r = PQexecParams(m_conn, sql.constData(), n, types.data(), values.data(), nullptr, nullptr, 0);
    }
    noteTransaction(r);
    return r;
}

void PgSession::forgetPrepared()
{
    // A statement the server could not forget now (a failed transaction) keeps its name
    // there unused: names are never given twice.
    // Only ours by name: a caller may have prepared its own on the handle.
    QByteArray script;
    for (const QByteArray& name : std::as_const(m_prepared))
        if (!name.isEmpty())
            script += "DEALLOCATE " + name + ';';
    if (!script.isEmpty() && PQtransactionStatus(m_conn) != PQTRANS_INERROR)
        PQclear(PQexec(m_conn, script.constData()));
    m_prepared.clear();
}

DatabaseContents PgSession::contents()
{
    const PgResult r = exec(QStringLiteral(
        "SELECT count(*), count(*) FILTER (WHERE relname IN ('Tbl_Macchina', 'Tbl_Maintenance', 'Tbl_Maint_Tipo')) "
        "FROM pg_class WHERE relnamespace = current_schema()::regnamespace AND relkind IN ('r', 'v', 'p')"));
    const qint64 all = r.rows[0][0].rawLong(), ours = r.rows[0][1].rawLong();
    if (all == 0)
        return DatabaseContents::Empty;
    return ours == 3 ? DatabaseContents::Plant : DatabaseContents::OtherProgram;
}

qint64 PgSession::nextCounter(const QString& table, const QString& column)
{
    const PgResult r = exec(QStringLiteral("SELECT nextval(pg_get_serial_sequence($1, $2))"),
                            {vb::Variant(jet::postgresIdent(table)), vb::Variant(column)});
    return r.rows.empty() ? 0 : r.rows[0][0].rawLong();
}

QString PgSession::databaseName() const
{
    return QString::fromUtf8(PQdb(m_conn));
}

namespace {
void runInOneTransaction(PgSession& session, const QStringList& all)
{
    try {
        session.execScript(QStringLiteral("BEGIN;\n") + all.join(QStringLiteral(";\n")) + QStringLiteral(";\nCOMMIT;"));
    } catch (...) {
        PQclear(PQexec(session.handle(), "ROLLBACK"));
        throw;
    }
    session.schemaChanged();
}
} // namespace

void createPostgresSchema(PgSession& session)
{
    runInOneTransaction(session, jet::postgresFunctionStatements() + postgresSchemaStatements());
}

void createPostgresFunctions(PgSession& session)
{
    runInOneTransaction(session, jet::postgresFunctionStatements());
}

namespace {
void copyTable(sqlite3* from, PgSession& to, const QString& table)
{
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(from, QStringLiteral("SELECT * FROM \"%1\"").arg(table).toUtf8().constData(), -1, &st, nullptr);
    QStringList cols, markers;
    for (int c = 0; c < sqlite3_column_count(st); ++c) {
        cols << jet::postgresIdent(QString::fromUtf8(sqlite3_column_name(st, c)));
        markers << QStringLiteral("$%1").arg(c + 1);
    }
    const QString insert = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                               .arg(jet::postgresIdent(table), cols.join(u','), markers.join(u','));
    to.exec(QStringLiteral("DELETE FROM ") + jet::postgresIdent(table));
    try {
        while (sqlite3_step(st) == SQLITE_ROW) {
            std::vector<vb::Variant> values;
            for (int c = 0; c < cols.size(); ++c) {
                switch (sqlite3_column_type(st, c)) {
                case SQLITE_INTEGER: values.emplace_back(std::int64_t(sqlite3_column_int64(st, c))); break;
                case SQLITE_FLOAT: values.emplace_back(sqlite3_column_double(st, c)); break;
                case SQLITE_NULL: values.push_back(vb::Variant::null()); break;
                default:
                    values.emplace_back(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c))));
                }
            }
            to.exec(insert, values);
        }
    } catch (...) {
        sqlite3_finalize(st);
        throw;
    }
    sqlite3_finalize(st);
}
} // namespace

void copyRows(sqlite3* from, PgSession& to)
{
    sqlite3_stmt* tables = nullptr;
    sqlite3_prepare_v2(from, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name <> 'sqlite_sequence'", -1,
                       &tables, nullptr);
    QStringList names;
    while (sqlite3_step(tables) == SQLITE_ROW)
        names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(tables, 0)));
    sqlite3_finalize(tables);
    for (const QString& table : names)
        copyTable(from, to, table);
}

} // namespace store::pg
