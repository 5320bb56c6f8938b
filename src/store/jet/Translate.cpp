// translate(): lex, look the statement's shape up in the cache, else parse and generate.
// The shape is the token stream without the literals' values, so "ID = 3" and "ID = 4"
// share one translation; only the bound values differ.

#include "store/jet/Jet.h"
#include "store/jet/PostgresGenerator.h"
#include "store/jet/SqliteGenerator.h"
#include "store/jet/Syntax.h"

#include <QHash>
#include <QScopeGuard>

#include <algorithm>
#include <atomic>
#include <memory>
#include <sqlite3.h>

namespace store::jet {

namespace {

std::atomic<quint64> nextIdentity{1};

struct CacheKey
{
    quint64 schema = 0;
    quint64 version = 0;
    Dialect dialect = Dialect::Sqlite;
    QString shape;
    bool operator==(const CacheKey& o) const = default;
};

size_t qHash(const CacheKey& k, size_t seed = 0)
{
    return ::qHash(k.shape, seed) ^ (k.schema * 0x9E3779B97F4A7C15ull) ^ k.version ^ (size_t(k.dialect) << 61);
}

// Shared with the texts that gave the same shape: a text seen once adds no copy.
QHash<CacheKey, std::shared_ptr<const Generated>>& cache()
{
    static QHash<CacheKey, std::shared_ptr<const Generated>> c;
    return c;
}

// The same text again (a screen's loop runs one statement many times): no lexing at all.
struct Exact
{
    std::shared_ptr<const Generated> generated;
    std::vector<vb::Variant> literals;
};

QHash<CacheKey, Exact>& exactCache()
{
    static QHash<CacheKey, Exact> c;
    return c;
}

constexpr int CacheLimit = 4096;

Translation bindLiterals(const Generated& g, const std::vector<vb::Variant>& literals)
{
    Translation t = g.translation;
    for (size_t i = 0; i < t.statements.size(); ++i) {
        const int n = g.paramCounts[i];
        t.statements[i].params.assign(literals.begin(), literals.begin() + n);
    }
    if (g.intoFileLiteral >= 0)
        t.intoFile = literals[size_t(g.intoFileLiteral)].rawString();
    return t;
}

} // namespace

SchemaInfo::SchemaInfo() : m_identity(nextIdentity++)
{
}

const ColumnInfo* TableInfo::column(const QString& n) const
{
    for (const ColumnInfo& c : columns)
        if (c.name.compare(n, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

ColumnKind kindOfDecl(const QString& declType)
{
    const QString d = declType.toUpper();
    if (d.isEmpty())
        return ColumnKind::Unknown;
    if (d.contains(QLatin1String("DATE")) || d.contains(QLatin1String("TIME")))
        return ColumnKind::Date;
    if (d.contains(QLatin1String("CHAR")) || d.contains(QLatin1String("TEXT")) || d.contains(QLatin1String("MEMO")) ||
        d.contains(QLatin1String("CLOB")) || d.contains(QLatin1String("STRING")))
        return ColumnKind::Text;
    if (d.startsWith(QLatin1String("BIT")) || d.contains(QLatin1String("BOOL")) || d.contains(QLatin1String("YESNO")))
        return ColumnKind::Boolean;
    return ColumnKind::Number;
}

SqliteSchema::SqliteSchema(sqlite3* db) : m_db(db)
{
}

SqliteSchema::~SqliteSchema()
{
    sqlite3_finalize(m_versionStmt);
}

void SqliteSchema::refresh() const
{
    if (m_reading)
        return; // read in the transaction still open: nothing can have moved it
    if (!m_versionStmt)
        sqlite3_prepare_v2(m_db, "PRAGMA main.schema_version", -1, &m_versionStmt, nullptr);
    quint64 v = 0;
    if (m_versionStmt && sqlite3_step(m_versionStmt) == SQLITE_ROW) {
        v = quint64(sqlite3_column_int64(m_versionStmt, 0));
        m_reading = m_hold;
    }
    if (m_versionStmt && !m_reading)
        sqlite3_reset(m_versionStmt);
    if (v != m_version) {
        m_version = v;
        m_tables.clear();
    }
}

void SqliteSchema::hold()
{
    m_hold = true;
}

void SqliteSchema::release()
{
    m_hold = false;
    if (m_reading)
        sqlite3_reset(m_versionStmt);
    m_reading = false;
}

quint64 SqliteSchema::version() const
{
    refresh();
    return m_version;
}

const TableInfo* SqliteSchema::table(const QString& name) const
{
    refresh();
    const std::string key = name.toLower().toStdString();
    if (auto it = m_tables.find(key); it != m_tables.end())
        return it->second.get();
    auto info = std::make_unique<TableInfo>();
    sqlite3_stmt* st = nullptr;
    const QByteArray sql = "SELECT type, name FROM main.sqlite_schema WHERE type IN ('table','view') AND name = ?1 "
                           "COLLATE NOCASE";
    const QByteArray utf8 = name.toUtf8();
    bool found = false;
    if (sqlite3_prepare_v2(m_db, sql.constData(), -1, &st, nullptr) == SQLITE_OK) {
        sqlite3_bind_text(st, 1, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
        if (sqlite3_step(st) == SQLITE_ROW) {
            found = true;
            info->isView = qstrcmp(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)), "view") == 0;
            info->name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)));
        }
    }
    sqlite3_finalize(st);
    if (found && sqlite3_prepare_v2(m_db, "SELECT name, type, pk FROM pragma_table_info(?1, 'main')", -1, &st,
                                    nullptr) == SQLITE_OK) {
        const QByteArray real = info->name.toUtf8();
        sqlite3_bind_text(st, 1, real.constData(), int(real.size()), SQLITE_TRANSIENT);
        while (sqlite3_step(st) == SQLITE_ROW) {
            ColumnInfo c;
            c.name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
            c.declType = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)));
            c.kind = kindOfDecl(c.declType);
            c.rowidKey = sqlite3_column_int(st, 2) > 0; // checked below: a key of one INTEGER column
            info->columns.push_back(std::move(c));
        }
        sqlite3_finalize(st);
        const auto keys =
            std::count_if(info->columns.begin(), info->columns.end(), [](const ColumnInfo& c) { return c.rowidKey; });
        for (ColumnInfo& c : info->columns)
            c.rowidKey =
                c.rowidKey && keys == 1 && c.declType.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0;
    }
    const TableInfo* result = found ? info.get() : nullptr;
    if (found)
        m_tables.emplace(key, std::move(info));
    return result;
}

Translation translate(const QString& jetSql, const SchemaInfo* schema, Dialect dialect)
{
    const quint64 identity = schema ? schema->identity() : 0;
    const quint64 version = schema ? schema->version() : 0;
    auto& exact = exactCache();
    if (exact.size() >= CacheLimit)
        exact.clear();
    // One look-up for a text seen before and for one seen the first time: the slot taken
    // now is filled below, or given back when the text is not kept.
    CacheKey textKey{identity, version, dialect, jetSql};
    Exact& slot = exact[textKey];
    if (slot.generated)
        return bindLiterals(*slot.generated, slot.literals);
    bool kept = false;
    const auto giveBack = qScopeGuard([&] {
        if (!kept)
            exact.remove(textKey);
    });

    Lexed quick = lex(jetSql, false);
    CacheKey key{identity, version, dialect, std::move(quick.shape)};
    auto& c = cache();
    auto it = c.constFind(key);
    if (it == c.constEnd()) {
        const Lexed lx = lex(jetSql);
        const Statement st = parse(jetSql, lx);
        Generated g = dialect == Dialect::Postgres ? generatePostgres(st, lx, schema) : generateSqlite(st, lx, schema);
        if (!g.cacheable)
            return bindLiterals(g, lx.literals);
        if (c.size() >= CacheLimit)
            c.clear();
        it = c.insert(std::move(key), std::make_shared<const Generated>(std::move(g)));
    }
    Translation t = bindLiterals(**it, quick.literals);
    slot = Exact{*it, std::move(quick.literals)};
    kept = true;
    return t;
}

void clearCache()
{
    cache().clear();
    exactCache().clear();
}

} // namespace store::jet
