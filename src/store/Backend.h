#pragma once
/// @file Backend.h
/// The engine under a DataStore: the embedded SQLite file, or a PostgreSQL server. The
/// recordsets work through this interface alone, so that the screens see one store
/// whichever engine holds the plant.

#include "runtime/Variant.h"
#include "store/Schema.h"
#include "store/jet/Jet.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace store::backend {

/// A stored table as the recordsets write its rows back.
struct StoredTable
{
    QString name; ///< as the store spells it
    QStringList columns;
    std::vector<ColumnType> types;
    QHash<QString, int> index; ///< lower-case column name -> position
    int key = -1;              ///< the autonumber key column (SQLite's rowid)
    bool autoincrement = false;
};

/// One prepared statement: bound, stepped through its rows, reset for the next use.
/// Every failure raises vb::VBError with the provider's number and text.
class Statement
{
public:
    virtual ~Statement() = default;
    /// Binds values to the markers in order (?1, ?2, ... or $1, $2, ...).
    virtual void bind(const std::vector<vb::Variant>& params) = 0;
    /// The next row: false at the end.
    virtual bool step() = 0;
    /// Runs to the end, reading nothing.
    void run()
    {
        while (step()) { }
    }
    /// Back to before the first step, the bindings cleared.
    virtual void reset() = 0;
    virtual int columnCount() const = 0;
    virtual QString columnName(int i) const = 0;
    /// The declared type of a result column that is a stored column ("" otherwise).
    virtual QString declType(int i) const = 0;
    /// The stored table and column a result column reads, when it reads one.
    virtual std::optional<std::pair<QString, QString>> origin(int i) const = 0;
    /// The current row's value: Date columns (and date expressions) as dates, Yes/No
    /// columns as booleans.
    virtual vb::Variant value(int i, ColumnType type, bool date) const = 0;
    /// Appends the current row's first `count` values to `into`, each as value() reads it
    /// with types[i] and dates[i].
    virtual void appendRow(std::vector<vb::Variant>& into, int count, const ColumnType* types,
                           const std::vector<bool>& dates) const
    {
        for (int i = 0; i < count; ++i)
            into.push_back(value(i, types[i], dates[size_t(i)]));
    }
    virtual std::int64_t integer(int i) const = 0;
};

/// One connection to the engine.
class Connection
{
public:
    virtual ~Connection() = default;
    virtual std::unique_ptr<Statement> prepare(const QString& sql) = 0;
    /// Runs SQL text of the engine's own (several statements allowed), reading nothing.
    virtual void exec(const QString& sql) = 0;
    virtual jet::Translation translate(const QString& jetSql) = 0;
    /// The version of the tables the translations are made for.
    virtual quint64 schemaVersion() = 0;
    /// From here the schema's version is read in a read transaction that stays open until
    /// endRead(): the SELECT stepped first reads its rows in it, under the schema it was
    /// translated for, instead of beginning a transaction of its own. endRead() comes
    /// before anything that writes.
    virtual void beginRead() { }
    virtual void endRead() { }
    /// The key the last INSERT gave its row, and the rows the last action changed.
    virtual std::int64_t lastInsertKey(const StoredTable& table) = 0;
    virtual std::int64_t changes() = 0;
    /// A stored table, null when there is none of that name.
    virtual std::shared_ptr<StoredTable> table(const QString& name) = 0;
    /// Whether a table (or view) exists, in the store itself or in the store attached
    /// for a "SELECT ... INTO ... IN".
    virtual bool tableExists(const QString& table, bool attached) = 0;
    /// The next autonumber of a table, taken now and recorded as used.
    virtual std::int64_t reserveKey(const StoredTable& table) = 0;
    /// "SELECT ... INTO ... IN file": the other store reachable under jet::IntoDatabase.
    virtual void attach(const QString& file) = 0;
    virtual void detach() = 0;
    /// What finds one row of a table again (SQLite's rowid), and a statement's n-th
    /// marker (1-based), in the engine's own SQL.
    virtual QString rowIdentity(const StoredTable& table) const = 0;
    virtual QString marker(int n) const = 0;
    /// The comparison that finds a row again by a value that may be Null.
    virtual QString sameValue() const = 0;
    /// How a lock on one row is asked for at the end of a SELECT ("" when the engine
    /// locks the whole store for a writing transaction anyway).
    virtual QString rowLock() const = 0;
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;
    /// Whether a transaction is open on the connection. A server answers a BEGIN inside
    /// one with a warning alone, so this, not a refused BEGIN, tells who is to end it.
    virtual bool inTransaction() const = 0;
    /// Whether the store holds no table yet, and its full schema (or the report store's)
    /// for one that does not.
    virtual bool empty() = 0;
    virtual void createSchema(bool report) = 0;
    /// The SQLite handle of an embedded store (null on a server).
    virtual struct sqlite3* sqliteHandle() const { return nullptr; }
};

/// The embedded store at path (":memory:" for one in memory), opened or created.
std::unique_ptr<Connection> openSqlite(const QString& path);

/// Whether a store's name is a server's libpq URI ("postgresql://...") rather than a file.
bool isServerUri(const QString& store);

/// The server database at a libpq URI: an empty one gets the full schema (the report
/// store's included) first; one holding another program's tables is refused with an
/// Italian text, nothing written. The report store is its rpt schema.
std::unique_ptr<Connection> openPostgres(const QString& uri, bool report);

} // namespace store::backend
