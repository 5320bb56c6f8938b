#include "store/PlantCopy.h"

#include "runtime/VBError.h"
#include "store/Backend.h"
#include "store/DataStore.h"
#include "store/Schema.h"
#include "store/StoreErrors.h"

namespace store {

namespace {

/// Rows a plant gets by itself (the seeded frequency kinds and the sessions) do not make
/// a database hold a plant.
bool holdsPlant(backend::Connection& conn, const QStringList& tables)
{
    for (const QString& t : tables) {
        if (t.compare(QLatin1String("Tbl_Maint_Tipo"), Qt::CaseInsensitive) == 0 ||
            t.compare(QLatin1String("Tbl_Register"), Qt::CaseInsensitive) == 0)
            continue;
        auto st = conn.prepare(QStringLiteral("SELECT 1 FROM \"%1\" LIMIT 1").arg(t));
        if (st->step())
            return true;
    }
    return false;
}

QStringList storedTables(backend::Connection& conn)
{
    QStringList tables;
    auto st = conn.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE "
                                          "'sqlite\\_%' ESCAPE '\\' ORDER BY name"));
    while (st->step())
        tables << st->value(0, ColumnType::Text, false).toString();
    return tables;
}

/// The target's table as the source declares it, when their columns' types differ (an
/// old file's texts where the program keeps dates): made again, empty.
std::shared_ptr<backend::StoredTable> sameTable(backend::Connection& from, backend::Connection& to, const QString& name)
{
    const auto source = from.table(name);
    auto target = to.table(name);
    if (!source)
        return target;
    if (target) {
        bool same = true;
        for (qsizetype i = 0; i < source->columns.size() && same; ++i) {
            const int t = target->index.value(source->columns[i].toLower(), -1);
            same = t >= 0 && target->types[size_t(t)] == source->types[size_t(i)];
        }
        if (same)
            return target;
        to.exec(QStringLiteral("DROP TABLE \"%1\" CASCADE").arg(target->name));
    }
    std::vector<std::pair<QString, QString>> columns;
    auto info = from.prepare(QStringLiteral("SELECT name, type, pk FROM pragma_table_info(?1)"));
    info->bind({vb::Variant(name)});
    while (info->step()) {
        QString decl = info->value(1, ColumnType::Text, false).toString();
        if (info->integer(2) == 1 && source->autoincrement)
            decl += QStringLiteral(" PRIMARY KEY AUTOINCREMENT");
        columns.emplace_back(info->value(0, ColumnType::Text, false).toString(), decl);
    }
    for (const QString& statement : postgresTable(source->name, columns))
        to.exec(statement);
    return to.table(name);
}

} // namespace

std::vector<std::pair<QString, qint64>> copyPlant(DataStore& fromStore, DataStore& toStore, bool replace)
{
    backend::Connection& from = fromStore.connection();
    backend::Connection& to = toStore.connection();
    const QStringList tables = storedTables(from);
    if (!replace && holdsPlant(to, tables))
        throw vb::VBError(errors::Unspecified,
                          QStringLiteral("Il database del server contiene già un impianto: non viene sovrascritto. Per "
                                         "sostituirlo ripetere il comando con --replace."));
    std::vector<std::pair<QString, qint64>> result;
    to.begin();
    try {
        for (const QString& name : tables) {
            const auto target = sameTable(from, to, name);
            if (!target)
                throw vb::VBError(errors::Unspecified,
                                  QStringLiteral("La tabella '%1' non esiste sul server.").arg(name));
            to.exec(QStringLiteral("DELETE FROM \"%1\"").arg(target->name));
            auto source = from.prepare(QStringLiteral("SELECT * FROM \"%1\"").arg(name));
            QStringList columns, marks;
            std::vector<int> positions;
            for (int i = 0; i < source->columnCount(); ++i) {
                if (!target->index.contains(source->columnName(i).toLower()))
                    continue;
                positions.push_back(i);
                columns << QLatin1Char('"') + target->columns[target->index.value(source->columnName(i).toLower())] +
                               QLatin1Char('"');
                marks << to.marker(int(positions.size()));
            }
            auto insert =
                to.prepare(QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)")
                               .arg(target->name, columns.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
            qint64 rows = 0;
            while (source->step()) {
                std::vector<vb::Variant> values;
                // The engine's own values: numbers, day numbers and texts as stored.
                for (const int i : positions)
                    values.push_back(source->value(i, ColumnType::Unknown, false));
                insert->bind(values);
                try {
                    insert->run();
                } catch (const vb::VBError& e) {
                    throw vb::VBError(e.number(), QStringLiteral("Tabella '%1': %2").arg(name, e.description()));
                }
                insert->reset();
                ++rows;
            }
            result.emplace_back(name, rows);
        }
        // The reports' stored queries over tables made again.
        for (const QString& view : postgresViewStatements()) {
            try {
                to.exec(QStringLiteral("SAVEPOINT jet_view; %1; RELEASE jet_view").arg(view));
            } catch (const vb::VBError&) {
                to.exec(QStringLiteral("ROLLBACK TO jet_view"));
            }
        }
        to.commit();
    } catch (...) {
        to.rollback();
        throw;
    }
    return result;
}

} // namespace store
