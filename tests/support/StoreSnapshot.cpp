#include "support/StoreSnapshot.h"

#include "store/DataStore.h"

#include <algorithm>
#include <sqlite3.h>

namespace testkit {

namespace {

QList<QStringList> rowsOf(sqlite3* db, const QString& sql)
{
    QList<QStringList> rows;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
        return rows;
    while (sqlite3_step(st) == SQLITE_ROW) {
        QStringList row;
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            row << (sqlite3_column_type(st, i) == SQLITE_NULL
                        ? QStringLiteral("<null>")
                        : QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                            sqlite3_column_bytes(st, i)));
        rows << row;
    }
    sqlite3_finalize(st);
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace

StoreSnapshot::StoreSnapshot()
{
    sqlite3* db = store::DataStore::instance().handle();
    for (const QStringList& t : rowsOf(db, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'")))
        m_tables.insert(t[0], rowsOf(db, QStringLiteral("SELECT * FROM \"%1\"").arg(t[0])));
}

StoreChange StoreSnapshot::since(const StoreSnapshot& before) const
{
    StoreChange change;
    QStringList names = m_tables.keys() + before.m_tables.keys();
    names.removeDuplicates();
    for (const QString& name : names) {
        const QList<QStringList> now = m_tables.value(name), then = before.m_tables.value(name);
        if (now == then && m_tables.contains(name) == before.m_tables.contains(name))
            continue;
        StoreChange::Rows& rows = change.tables[name];
        std::set_difference(now.begin(), now.end(), then.begin(), then.end(), std::back_inserter(rows.added));
        std::set_difference(then.begin(), then.end(), now.begin(), now.end(), std::back_inserter(rows.removed));
    }
    return change;
}

bool StoreChange::within(const StoreChange& allowed) const
{
    for (auto it = tables.begin(); it != tables.end(); ++it) {
        if (!allowed.tables.contains(it.key()))
            return false;
        const Rows& a = allowed.tables[it.key()];
        if (it->added.size() > a.added.size() || it->removed.size() > a.removed.size())
            return false;
    }
    return true;
}

bool StoreChange::oneRowAtMost() const
{
    int changed = 0;
    for (auto it = tables.begin(); it != tables.end(); ++it) {
        if (it.key() == QLatin1String("sqlite_sequence"))
            continue;
        if (++changed > 1 || it->added.size() > 1 || it->removed.size() > 1)
            return false;
    }
    return true;
}

bool StoreChange::holdsAnyOf(const QStringList& texts) const
{
    for (const Rows& r : tables)
        for (const QStringList& row : r.added)
            for (const QString& cell : row)
                if (texts.contains(cell))
                    return true;
    return false;
}

QString StoreChange::describe() const
{
    QStringList out;
    for (auto it = tables.begin(); it != tables.end(); ++it)
        out << QStringLiteral("%1 +%2 -%3").arg(it.key()).arg(it->added.size()).arg(it->removed.size());
    return out.join(QStringLiteral(", "));
}

} // namespace testkit
