#pragma once
/// @file DataStore.h
/// The store as the screens see it: ADO's recordset operations over the Velmora
/// store, every statement written in Jet SQL and translated on the way in.

#include "runtime/Trap.h"
#include "runtime/Variant.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <memory>
#include <vector>

struct sqlite3;

namespace store {

namespace jet {
struct Translation;
}
namespace backend {
class Connection;
}

using vb::Variant;

class Recordset;

/// How long a statement waits for a store that another program is writing (ms).
inline constexpr int LockWaitMs = 5000;

/// One result column as the grids need it.
struct Column
{
    QString name;
    QString declType; ///< the column's type as the store knows it ("" for expressions)
};

/// The one connection of the program to Velmora.sqlite in the program's folder.
/// Every action statement commits at once, synchronised to the disk; only the loops
/// that write row after row group their statements (store::Batch).
class DataStore
{
public:
    /// The store of the program's folder, opened (and created with the full schema) on
    /// first use.
    static DataStore& instance();
    /// Closes the current stores; the next instance() opens AppPath()'s store again.
    static void reset();
    /// The program's store on a server (a libpq URI, "postgresql://user@host/db") instead
    /// of the program's folder's file; "" for the file. Takes effect at the next instance().
    static void setServer(const QString& uri);
    static QString server();

    /// Which file a DataStore stands for: the main store gets the full schema when it is
    /// new; the report store holds only what "SELECT ... INTO ... IN" puts there.
    enum class Kind { Main, Report };

    /// The report store of the program's folder (RPT_Velmora.sqlite), opened on first use.
    static DataStore& report();

    /// Opens (creating if missing) the store at path, or the server database at a libpq
    /// URI (its report store the rpt schema).
    explicit DataStore(const QString& path, Kind kind = Kind::Main);
    ~DataStore();
    DataStore(const DataStore&) = delete;
    DataStore& operator=(const DataStore&) = delete;

    /// Runs an action statement (Jet SQL); raises VBError on failure.
    void Execute(const QString& jetSql);
    /// Runs a SELECT (Jet SQL or SHAPE) into a new recordset.
    std::unique_ptr<Recordset> Query(const QString& jetSql);
    /// Runs one of the store's named parameter commands with its one parameter.
    std::unique_ptr<Recordset> Command(const QString& name, const Variant& parameter);
    /// The walk of a screen that reads the rows of `keys` (a Jet SELECT, the key in its
    /// first column) and runs the action statement `perRow` for each, the row's key put
    /// where "{key}" stands, each statement under the caller's trap. When `perRow` finds
    /// its rows by that key alone, the walk runs as one statement over the same rows,
    /// which leaves the same store; should that statement fail, it changes nothing and
    /// the walk runs row by row.
    void RunForEachRow(const QString& keys, const QString& perRow, vb::Trap& trap);

    QString path() const { return m_path; }
    /// The embedded store's SQLite handle (null on a server).
    sqlite3* handle() const { return m_db; }
    backend::Connection& connection() const { return *m_conn; }

    /// What the store knows of its tables and its prepared statements (internal).
    struct Cache;
    Cache& cache() const { return *m_cache; }

private:
    friend class Recordset;
    QString m_path;
    std::unique_ptr<backend::Connection> m_conn;
    sqlite3* m_db = nullptr;
    std::unique_ptr<Cache> m_cache;
};

/// A field of the current row: read with Value(), written with setValue() (or =).
class Field
{
public:
    Field(Recordset* rs, int index) : m_rs(rs), m_index(index) { }
    Variant Value() const;
    void setValue(const Variant& v);
    Field& operator=(const Variant& v)
    {
        setValue(v);
        return *this;
    }
    QString Name() const;

private:
    Recordset* m_rs;
    int m_index;
};

/// ADO's recordset as the program uses it: keyset cursor, optimistic lock, text command.
class Recordset
{
public:
    Recordset();
    ~Recordset();

    /// Open: a SELECT, a SHAPE command or any action statement (which runs at once and
    /// leaves an empty, closed recordset).
    void Open(const QString& jetSql, DataStore& store = DataStore::instance());
    /// Open of a SELECT whose rows stay locked against other workstations until the
    /// store's RowLock ends: the read of a read-modify-write. The same rows as Open.
    void OpenLocked(const QString& jetSql, DataStore& store = DataStore::instance());

    bool Eof() const;
    bool Bof() const;
    Field Fields(const QString& name); ///< unknown name: error 3265
    Field Fields(int position);
    int FieldCount() const;
    const std::vector<Column>& Columns() const;

    void AddNew();
    void UpdateBatch();
    void Delete();
    void MoveNext();
    void MovePrevious();
    void MoveFirst();
    void MoveLast();
    void Move(int rows);          ///< relative to the current row, as ADO's Move
    int AbsolutePosition() const; ///< 0-based current row, -1 at EOF/BOF

    /// Narrows the rows to a criteria text ("Reparto like 'A%'"); "" removes the filter.
    void setFilter(const QString& criteria);
    int RecordCount() const;
    void Close();
    bool isOpen() const;

    /// SHAPE results: the child rows of the current parent row for the member name.
    Recordset* Child(const QString& member);
    /// The member names of a SHAPE result ("Dati"); empty for a plain recordset.
    QStringList ChildNames() const;

    /// The current row's values (for grids).
    const Variant& value(int row, int column) const;

    struct Impl;

private:
    friend class DataStore;
    void openTranslated(const jet::Translation& tr, DataStore& store);
    friend class Field;
    std::unique_ptr<Impl> d;
};

/// A short transaction around one read-modify-write (the stock of a part): the rows read
/// with OpenLocked stay locked against other workstations until it ends, and what was
/// written commits then. On one workstation the store ends as without it.
class RowLock
{
public:
    explicit RowLock(DataStore& store = DataStore::instance());
    ~RowLock();
    RowLock(const RowLock&) = delete;
    RowLock& operator=(const RowLock&) = delete;

private:
    DataStore& m_store;
    bool m_open = false;
};

/// Runs an action statement on the program's store, as the screens run theirs: through a
/// recordset that is never read.
inline void Run(const QString& jetSql)
{
    DataStore::instance().Execute(jetSql);
}

/// A field and the value a screen writes into it.
struct FieldValue
{
    const char* field;
    Variant value;
};

/// Writes each value into its field of the current row, one trapped step a field: a
/// field that refuses its value is passed over and the next one is written.
inline void WriteFields(vb::Trap& trap, Recordset& rs, std::initializer_list<FieldValue> values)
{
    for (const FieldValue& v : values)
        trap.step([&] { rs.Fields(QString::fromLatin1(v.field)) = v.value; });
}

/// DataStore::RunForEachRow on the program's store.
inline void RunForEachRow(const QString& keys, const QString& perRow, vb::Trap& trap)
{
    DataStore::instance().RunForEachRow(keys, perRow, trap);
}

} // namespace store
