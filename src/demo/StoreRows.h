#pragma once
/// @file StoreRows.h
/// Adding a row as the screens add one: a recordset, AddNew, the new key read at once,
/// the fields written, UpdateBatch.

#include "store/DataStore.h"

#include <QString>

namespace demo {

/// A text of the catalogue (UTF-8) as the store's text.
inline QString text(const char* s)
{
    return QString::fromUtf8(s);
}

/// Adds a row to table and returns its new key (field key; 0 when key is empty).
template <typename Fill> int addRow(const QString& table, const QString& key, Fill&& fill)
{
    store::Recordset rs;
    // An empty selection to add to: the screens open the whole table, which would make
    // every row of a large store cost as much as the table.
    rs.Open(key.isEmpty() ? QStringLiteral("Select * from ") + table
                          : QStringLiteral("Select * from %1 Where %2 = 0").arg(table, key));
    rs.AddNew();
    const int id = key.isEmpty() ? 0 : rs.Fields(key).Value().toLong();
    fill(rs);
    rs.UpdateBatch();
    return id;
}

} // namespace demo
