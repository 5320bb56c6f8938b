#pragma once
/// @file PgSession.h
/// One connection to the server store (PostgreSQL, through libpq): statements with
/// bound vb::Variants, rows read back as vb::Variants (dates where the translation says
/// so), the server's faults as the VB errors and Italian texts of the embedded store,
/// and what the generator needs to know of the server's tables (PgSchema).

#include "runtime/VBError.h"
#include "runtime/Variant.h"
#include "store/jet/Jet.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <limits>
#include <memory>
#include <unordered_map>
#include <vector>

struct pg_conn;
struct sqlite3;
struct pg_result;

namespace store::pg {

/// What a statement gave: the rows of its result (if any) and how many rows it changed.
struct PgResult
{
    QStringList columns;
    std::vector<std::vector<vb::Variant>> rows;
    qint64 affected = 0;
};

/// What a server database holds, before a plant is opened on it.
enum class DatabaseContents { Empty, Plant, OtherProgram };

class PgSession
{
public:
    /// Which store the session's unqualified names reach: the plant's tables (schema
    /// public) or the report store's (schema rpt); the dialect's functions (schema jet)
    /// either way.
    enum class Store { Main, Report };

    /// Connects by a libpq URI ("postgresql://user@host/db", "postgresql://user@/db?host=/run/dir&port=5433").
    /// A server that is down, a refused password or a missing database raise
    /// vb::VBError(errors::Unspecified) with a clear Italian text.
    explicit PgSession(const QString& uri, Store store = Store::Main);
    ~PgSession();
    PgSession(const PgSession&) = delete;
    PgSession& operator=(const PgSession&) = delete;

    /// Runs one statement; params bound to $1..$n in order. dateColumns: result columns
    /// read back as dates. Raises the VB error of a failure (errors::fromPostgres).
    PgResult exec(const QString& sql, const std::vector<vb::Variant>& params = {},
                  const std::vector<bool>& dateColumns = {});
    /// Runs a translation's statements in order; the rows are the last one's, without
    /// the recordset's jet_rowid when the translation carries one. The workstation's
    /// clock (vb::Clock) goes to the server for Date(), Now(), Time().
    PgResult run(const jet::Translation& t);
    /// Several statements without parameters (schema creation), in one round trip.
    void execScript(const QString& sql);
    /// Whether a transaction is open (or failed and not yet ended) on the connection.
    bool inTransaction() const;
    /// Before a statement that calls Date(), Now() or Time(): the workstation's clock
    /// (vb::Clock, to the second) to the server, unless it holds that value already.
    void sendClock(const QString& sql);

    /// The generator's view of this connection's tables.
    const jet::SchemaInfo& schema() const;
    /// Forgets the tables read so far (after DDL, also run by run() itself).
    void schemaChanged();

    /// Whether the database is empty, holds a plant, or holds another program's tables.
    DatabaseContents contents();
    /// The next autonumber of table.column, taken at once and never handed out again
    /// (the recordset's AddNew shows it before the row is written).
    qint64 nextCounter(const QString& table, const QString& column);

    /// The database's name (for messages).
    QString databaseName() const;

    pg_conn* handle() const { return m_conn; }

private:
    vb::VBError errorOf(pg_result* r) const;
    pg_result* send(const QByteArray& sql, const std::vector<unsigned>& types, const std::vector<const char*>& values);
    void forgetPrepared();
    void noteTransaction(const pg_result* r);
    pg_conn* m_conn = nullptr;
    /// Statements run more than once are parsed by the server once: SQL text and
    /// parameter types -> the server's name of the prepared statement ("" when seen once).
    QHash<QByteArray, QByteArray> m_prepared;
    quint64 m_preparedCount = 0;
    /// The clock the server holds in jet.now (NaN: unknown), and whether it was set in a
    /// transaction that may still be rolled back (which takes it back).
    double m_clock = std::numeric_limits<double>::quiet_NaN();
    bool m_clockPending = false;
    std::unique_ptr<jet::SchemaInfo> m_schema;
    mutable QHash<unsigned, unsigned> m_baseTypes; ///< domain OID -> base type OID
    unsigned baseType(unsigned oid) const;
};

/// Creates on an empty server database everything a new plant needs: the collation,
/// the column domains and functions, the tables and seed rows, and the report schema.
void createPostgresSchema(PgSession& session);

/// Only what the generated SQL calls (collation, domains, functions), with no tables.
void createPostgresFunctions(PgSession& session);

/// Copies every row of every table of an embedded store (an open SQLite connection)
/// into the same tables on the server, replacing what they hold (the seed rows):
/// values as stored, autonumbers kept, their sequences moved past them.
void copyRows(sqlite3* from, PgSession& to);

/// The text of a connection failure, in Italian, from libpq's message.
QString connectionFailureText(const QString& libpqMessage, const QString& uri);

} // namespace store::pg
