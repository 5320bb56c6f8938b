#pragma once
// Every row of every table of the program's store, to tell what an action changed.

#include "store/DataStore.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <sqlite3.h>

namespace testkit {

/// A statement's rows, each its values joined by a unit separator, sorted.
inline QStringList storeRows(const QString& sql)
{
    QStringList rows;
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(store::DataStore::instance().handle(), sql.toUtf8().constData(), -1, &st, nullptr);
    while (st && sqlite3_step(st) == SQLITE_ROW) {
        QStringList row;
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            row << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                     sqlite3_column_bytes(st, i));
        rows << row.join(QChar(0x1f));
    }
    sqlite3_finalize(st);
    rows.sort();
    return rows;
}

/// Each table's rows (the autonumbers' table aside).
inline QMap<QString, QStringList> storeSnapshot()
{
    QMap<QString, QStringList> all;
    for (const QString& t :
         storeRows(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name <> 'sqlite_sequence'")))
        all.insert(t, storeRows(QStringLiteral("SELECT * FROM \"%1\"").arg(t)));
    return all;
}

/// What changed since a snapshot: tables touched (created and dropped too), rows added
/// and removed (a changed row is one of each).
struct StoreChange
{
    int tables = 0, removed = 0;
    QStringList added;

    explicit StoreChange(const QMap<QString, QStringList>& before)
    {
        const QMap<QString, QStringList> now = storeSnapshot();
        QStringList names = now.keys() + before.keys();
        names.removeDuplicates();
        for (const QString& name : names) {
            const QStringList a = now.value(name), b = before.value(name);
            if (a == b && now.contains(name) == before.contains(name))
                continue;
            ++tables;
            std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(added));
            QStringList gone;
            std::set_difference(b.begin(), b.end(), a.begin(), a.end(), std::back_inserter(gone));
            removed += int(gone.size());
        }
    }
    bool oneRowAtMost() const { return tables <= 1 && added.size() <= 1 && removed <= 1; }
    /// A row added holds one of the texts as one of its values, exactly.
    bool holdsAnyOf(const QStringList& texts) const
    {
        for (const QString& row : added)
            for (const QString& cell : row.split(QChar(0x1f)))
                if (texts.contains(cell))
                    return true;
        return false;
    }
};

} // namespace testkit
