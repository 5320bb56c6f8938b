#pragma once
// Every row of every table of the program's store, to tell what an action changed.

#include <QMap>
#include <QString>
#include <QStringList>

namespace testkit {

/// What changed between two snapshots, table by table.
struct StoreChange
{
    struct Rows
    {
        QList<QStringList> added, removed;
    };
    QMap<QString, Rows> tables; ///< only the tables that changed (created or dropped too)

    bool empty() const { return tables.isEmpty(); }
    /// No table changed that `allowed` left alone, nor more rows of one than it changed.
    bool within(const StoreChange& allowed) const;
    /// One row of one table added, changed or removed at most (the autonumbers aside).
    bool oneRowAtMost() const;
    /// A row added holds one of the texts as one of its values, exactly.
    bool holdsAnyOf(const QStringList& texts) const;
    QString describe() const;
};

class StoreSnapshot
{
public:
    StoreSnapshot(); ///< of store::DataStore::instance()
    StoreChange since(const StoreSnapshot& before) const;

private:
    QMap<QString, QList<QStringList>> m_tables; ///< each table's rows, sorted
};

} // namespace testkit
