#include "store/DataStore.h"

#include "runtime/AppPath.h"
#include "runtime/Regional.h"
#include "runtime/VBError.h"
#include "store/Batch.h"
#include "store/Filter.h"
#include "store/Schema.h"
#include "store/Shape.h"
#include "store/StoreErrors.h"
#include "store/jet/Jet.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QUrl>

#include <cmath>
#include <cstring>
#include <span>
#include <sqlite3.h>

namespace store {

using vb::JetDate;
using vb::VBError;

// ---------------------------------------------------------------------------------------
// What the connection knows of its tables, and its prepared statements.

namespace {

struct TableInfo
{
    QString name; ///< as the store spells it
    QStringList columns;
    std::vector<ColumnType> types;
    QHash<QString, int> index; ///< lower-case column name -> position
    int key = -1;              ///< the INTEGER PRIMARY KEY (rowid) column
    bool autoincrement = false;
};

/// What a prepared SELECT gives: its columns as the recordset shows them, worked out
/// once per statement and kept with it.
struct ResultShape
{
    std::vector<Column> columns;
    std::vector<ColumnType> readTypes;
    std::vector<bool> dates;
    std::vector<int> baseIndex; // position in the base table, -1 for other columns
    std::shared_ptr<TableInfo> table;
    int keyColumn = -1;
    int rowidColumn = -1;
};

/// A prepared statement kept for the next use of the same SQL. One in use when the
/// cache is emptied is finalized by its user when done.
struct CachedStatement
{
    sqlite3_stmt* stmt = nullptr;
    std::shared_ptr<const ResultShape> shape;
    size_t rowsLastTime = 0; ///< rows read at the last use: the room set aside for the next
    bool inUse = false;
    bool orphan = false;
};

std::unique_ptr<DataStore> g_main;
std::unique_ptr<DataStore> g_report;

constexpr int kMaxCachedStatements = 256;

} // namespace

struct DataStore::Cache
{
    sqlite3* db = nullptr;
    std::unique_ptr<jet::SqliteSchema> schema;         ///< what the dialect knows of the tables
    QHash<QString, std::shared_ptr<TableInfo>> tables; // lower-case name
    QHash<QString, std::shared_ptr<CachedStatement>> statements;

    ~Cache()
    {
        clearStatements();
        schema.reset();
    }

    jet::Translation translate(const QString& jetSql) { return jet::translate(jetSql, schema.get()); }

    void clearStatements()
    {
        for (const auto& s : std::as_const(statements)) {
            if (s->inUse)
                s->orphan = true;
            else
                sqlite3_finalize(s->stmt);
        }
        statements.clear();
    }

    void schemaChanged()
    {
        tables.clear();
        clearStatements();
    }

    std::shared_ptr<TableInfo> table(const QString& name)
    {
        const QString key = name.toLower();
        if (auto it = tables.constFind(key); it != tables.constEnd())
            return *it;
        auto info = std::make_shared<TableInfo>();
        sqlite3_stmt* st = nullptr;
        const char* sql = "SELECT m.name, p.name, p.type, p.pk, instr(upper(m.sql), 'AUTOINCREMENT') > 0 "
                          "FROM sqlite_master AS m, pragma_table_info(m.name) AS p "
                          "WHERE m.type = 'table' AND m.name = ?1 COLLATE NOCASE ORDER BY p.cid";
        if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK) {
            const QByteArray n = name.toUtf8();
            sqlite3_bind_text(st, 1, n.constData(), n.size(), SQLITE_TRANSIENT);
            while (sqlite3_step(st) == SQLITE_ROW) {
                info->name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
                const QString col = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)));
                const QString decl = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2)));
                ColumnType type = columnTypeOfDecl(decl);
                if (sqlite3_column_int(st, 3) == 1 &&
                    decl.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0) {
                    info->key = int(info->columns.size());
                    type = ColumnType::Counter;
                }
                info->autoincrement = sqlite3_column_int(st, 4) != 0;
                info->index.insert(col.toLower(), int(info->columns.size()));
                info->columns << col;
                info->types.push_back(type);
            }
        }
        sqlite3_finalize(st);
        if (info->columns.isEmpty())
            return nullptr;
        tables.insert(key, info);
        return info;
    }
};

namespace {

/// A prepared statement borrowed from the cache (or made for this use alone when the
/// cached one is still running), reset when given back.
class Lease
{
public:
    Lease(DataStore::Cache& cache, const QString& sql)
    {
        auto it = cache.statements.constFind(sql);
        if (it != cache.statements.constEnd() && !(*it)->inUse) {
            m_slot = *it;
        } else {
            m_slot = std::make_shared<CachedStatement>();
            const QByteArray utf8 = sql.toUtf8();
            if (sqlite3_prepare_v2(cache.db, utf8.constData(), int(utf8.size()), &m_slot->stmt, nullptr) != SQLITE_OK) {
                sqlite3_finalize(m_slot->stmt);
                m_slot->stmt = nullptr;
                throw errors::fromSqlite(cache.db);
            }
            if (it == cache.statements.constEnd()) {
                if (cache.statements.size() >= kMaxCachedStatements)
                    cache.clearStatements();
                cache.statements.insert(sql, m_slot);
            } else {
                m_slot->orphan = true; // the cached one is busy: this one is for this use alone
            }
        }
        m_slot->inUse = true;
    }
    ~Lease()
    {
        m_slot->inUse = false;
        if (m_slot->orphan) {
            sqlite3_finalize(m_slot->stmt);
        } else {
            sqlite3_reset(m_slot->stmt);
            sqlite3_clear_bindings(m_slot->stmt);
        }
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    sqlite3_stmt* get() const { return m_slot->stmt; }
    /// The result shape kept with the statement (null until first worked out).
    std::shared_ptr<const ResultShape>& shape() { return m_slot->shape; }
    size_t& rowsLastTime() { return m_slot->rowsLastTime; }

private:
    std::shared_ptr<CachedStatement> m_slot;
};

void bindValue(sqlite3_stmt* st, int i, const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: sqlite3_bind_null(st, i); break;
    case Variant::Type::Boolean: sqlite3_bind_int64(st, i, v.rawBool() ? -1 : 0); break;
    case Variant::Type::Integer:
    case Variant::Type::Long: sqlite3_bind_int64(st, i, v.rawLong()); break;
    case Variant::Type::Double:
    case Variant::Type::Date: sqlite3_bind_double(st, i, v.rawDouble()); break;
    case Variant::Type::String: {
        const QByteArray b = v.rawString().toUtf8();
        sqlite3_bind_text(st, i, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        break;
    }
    }
}

void bindAll(sqlite3_stmt* st, const std::vector<Variant>& params)
{
    for (size_t i = 0; i < params.size(); ++i)
        bindValue(st, int(i) + 1, params[i]);
}

/// Texts that repeat down a column (a machine's name on every row of the machine) held
/// once: per column a small table of the texts read last, found by their bytes. A list of
/// 100k register rows holds a few hundred names, not 400k copies.
class SharedTexts
{
public:
    explicit SharedTexts(int columns) : m_columns(size_t(columns)) { }

    QString text(int column, const char* p, int n)
    {
        if (m_slots.empty())
            m_slots.resize(m_columns * Slots);
        Slot& slot = m_slots[size_t(column) * Slots + (qHashBits(p, size_t(n)) & (Slots - 1))];
        if (slot.bytes.size() != size_t(n) || std::memcmp(slot.bytes.data(), p, size_t(n)) != 0) {
            slot.bytes.assign(p, size_t(n));
            slot.text = QString::fromUtf8(p, n);
        }
        return slot.text;
    }

private:
    static constexpr size_t Slots = 256;
    struct Slot
    {
        std::string bytes;
        QString text;
    };
    size_t m_columns;
    std::vector<Slot> m_slots;
};

/// A stored value as the recordset shows it: Date columns (and date expressions) as
/// dates, Yes/No columns as booleans.
Variant readValue(sqlite3_stmt* st, int i, ColumnType type, bool date, SharedTexts* texts = nullptr)
{
    switch (sqlite3_column_type(st, i)) {
    case SQLITE_NULL: return Variant::null();
    case SQLITE_INTEGER: {
        const sqlite3_int64 v = sqlite3_column_int64(st, i);
        if (date)
            return Variant(JetDate{double(v)});
        if (type == ColumnType::Boolean)
            return Variant(v != 0);
        return Variant(std::int64_t(v));
    }
    case SQLITE_FLOAT: {
        const double d = sqlite3_column_double(st, i);
        if (date)
            return Variant(JetDate{d});
        if (type == ColumnType::Boolean)
            return Variant(d != 0.0);
        return Variant(d);
    }
    default: {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
        const int n = sqlite3_column_bytes(st, i);
        QString s = texts ? texts->text(i, p, n) : QString::fromUtf8(p, n);
        if (date && !s.isEmpty()) {
            if (const auto serial = vb::regional::parseDateTime(s))
                return Variant(JetDate{*serial});
        }
        return Variant(std::move(s));
    }
    }
}

void stepToEnd(sqlite3* db, sqlite3_stmt* st)
{
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) { }
    if (rc != SQLITE_DONE)
        throw errors::fromSqlite(db);
}

bool isRowidName(const QString& n)
{
    return n.compare(QLatin1String("rowid"), Qt::CaseInsensitive) == 0 ||
           n.compare(QLatin1String("_rowid_"), Qt::CaseInsensitive) == 0 ||
           n.compare(QLatin1String("oid"), Qt::CaseInsensitive) == 0 ||
           n.compare(QLatin1String("jet_rowid"), Qt::CaseInsensitive) == 0;
}

QString quoteName(const QString& n)
{
    return QLatin1Char('"') + QString(n).replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

bool isDdl(jet::StatementKind k)
{
    using K = jet::StatementKind;
    return k == K::SelectInto || k == K::CreateTable || k == K::AlterTable || k == K::DropTable || k == K::Other;
}

const char* const kAttachedAlias = jet::IntoDatabase;

/// "SELECT ... INTO T IN 'file'": the other store is attached for the one statement.
class Attachment
{
public:
    Attachment(sqlite3* db, const QString& file) : m_db(db)
    {
        if (file.isEmpty())
            return;
        sqlite3_stmt* st = nullptr;
        const QByteArray sql = QByteArray("ATTACH DATABASE ?1 AS ") + kAttachedAlias;
        sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr);
        const QByteArray f = file.toUtf8();
        sqlite3_bind_text(st, 1, f.constData(), int(f.size()), SQLITE_TRANSIENT);
        const int rc = sqlite3_step(st);
        sqlite3_finalize(st);
        if (rc != SQLITE_DONE)
            throw errors::fromSqlite(db);
        m_attached = true;
    }
    ~Attachment()
    {
        if (m_attached)
            sqlite3_exec(m_db, (QByteArray("DETACH DATABASE ") + kAttachedAlias).constData(), nullptr, nullptr,
                         nullptr);
    }

private:
    sqlite3* m_db;
    bool m_attached = false;
};

bool tableExists(sqlite3* db, const QString& schema, const QString& table)
{
    const QString sql = QStringLiteral("SELECT 1 FROM %1.sqlite_master WHERE type IN ('table','view') AND name = ?1 "
                                       "COLLATE NOCASE")
                            .arg(schema);
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
        return false;
    const QByteArray t = table.toUtf8();
    sqlite3_bind_text(st, 1, t.constData(), int(t.size()), SQLITE_TRANSIENT);
    const bool found = sqlite3_step(st) == SQLITE_ROW;
    sqlite3_finalize(st);
    return found;
}

/// Runs the statements of a translation that read nothing (all of them for an action).
void runActions(DataStore& store, const jet::Translation& tr, size_t count)
{
    sqlite3* db = store.handle();
    if (tr.kind == jet::StatementKind::SelectInto) {
        const bool exists = tr.intoFile.isEmpty() ? tableExists(db, QStringLiteral("main"), tr.intoTable)
                                                  : tableExists(db, QLatin1String(kAttachedAlias), tr.intoTable);
        if (exists)
            throw errors::tableExists(tr.intoTable);
    }
    for (size_t i = 0; i < count; ++i) {
        const jet::SqliteStatement& s = tr.statements[i];
        try {
            Lease lease(store.cache(), s.sql);
            bindAll(lease.get(), s.params);
            stepToEnd(db, lease.get());
        } catch (const VBError& e) {
            if (isDdl(tr.kind))
                store.cache().schemaChanged();
            throw errors::forStatement(e, tr.kind);
        }
    }
    if (isDdl(tr.kind))
        store.cache().schemaChanged();
}

void exec(sqlite3* db, const char* sql)
{
    if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw errors::fromSqlite(db);
}

} // namespace

// ---------------------------------------------------------------------------------------
// DataStore

DataStore& DataStore::instance()
{
    if (!g_main)
        g_main = std::make_unique<DataStore>(vb::AppFile(QLatin1String(StoreFileName)));
    return *g_main;
}

DataStore& DataStore::report()
{
    if (!g_report)
        g_report = std::make_unique<DataStore>(vb::AppFile(QLatin1String(ReportStoreFileName)), Kind::Report);
    return *g_report;
}

void DataStore::reset()
{
    g_main.reset();
    g_report.reset();
}

DataStore::DataStore(const QString& path, Kind kind) : m_path(path), m_cache(std::make_unique<Cache>())
{
    if (path != QLatin1String(":memory:"))
        QDir().mkpath(QFileInfo(path).absolutePath());
    // A store that cannot be written (the file or its folder) opens to be read as it
    // stands on the disk: SQLite could not keep its side files beside it.
    const QFileInfo info(path);
    const bool readOnly = info.exists() && !(info.isWritable() && QFileInfo(info.absolutePath()).isWritable());
    const QByteArray file =
        readOnly ? QUrl::fromLocalFile(info.absoluteFilePath()).toEncoded() + "?immutable=1" : path.toUtf8();
    // One thread runs everything: the connection does without SQLite's per-call locking,
    // which otherwise costs a lock and an unlock on every value a recordset reads.
    const int flags = SQLITE_OPEN_NOMUTEX |
                      (readOnly ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (sqlite3_open_v2(file.constData(), &m_db, flags, nullptr) != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
        sqlite3_close(m_db);
        m_db = nullptr;
        throw VBError(errors::Unspecified, QStringLiteral("Impossibile aprire il file '%1' (%2).").arg(path, message));
    }
    m_cache->db = m_db;
    m_cache->schema = std::make_unique<jet::SqliteSchema>(m_db);
    sqlite3_busy_timeout(m_db, LockWaitMs);
    sqlite3_extended_result_codes(m_db, 0);
    // A committed statement is on the disk before the screen goes on: it survives a power
    // cut, not only the end of the program.
    exec(m_db, readOnly ? "PRAGMA foreign_keys=OFF"
                        : "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF");
    jet::registerFunctions(m_db);

    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(m_db, "SELECT count(*) FROM sqlite_master", -1, &st, nullptr);
    const bool empty = sqlite3_step(st) == SQLITE_ROW && sqlite3_column_int(st, 0) == 0;
    sqlite3_finalize(st);
    if (empty && kind == Kind::Main) {
        createSchema(m_db);
        // A new program folder gets its report store beside the main one, as the program
        // always came with both files; the whole chart's print finds it there.
        const QFileInfo main(path);
        const QString report = main.absoluteDir().filePath(QLatin1String(ReportStoreFileName));
        if (main.fileName() == QLatin1String(StoreFileName) && !QFileInfo::exists(report))
            DataStore(report, Kind::Report);
    } else if (empty) {
        createReportSchema(m_db);
    }
}

DataStore::~DataStore()
{
    m_cache.reset();
    if (m_db)
        sqlite3_close_v2(m_db);
}

void DataStore::Execute(const QString& jetSql)
{
    Recordset rs;
    rs.Open(jetSql, *this);
}

namespace {

/// The one statement of a walk over every key of `keys`: perRow with its "= ?N" on the
/// key turned into "IN (the keys)". Empty when the two do not have that shape (the key's
/// marker must be perRow's last, so that no other marker moves).
QString walkAsOneStatement(const jet::Translation& keys, const jet::Translation& perRow, sqlite3* db)
{
    if (keys.kind != jet::StatementKind::Select || keys.statements.size() != 1 || !keys.statements[0].params.empty())
        return {};
    if ((perRow.kind != jet::StatementKind::Update && perRow.kind != jet::StatementKind::Delete) ||
        perRow.statements.size() != 1 || perRow.userParams.size() != 1 ||
        size_t(perRow.userParams[0]) + 1 != perRow.statements[0].params.size())
        return {};
    const QString& sql = perRow.statements[0].sql;
    const QString marker = QStringLiteral("?%1").arg(perRow.userParams[0] + 1);
    const QString equals = QStringLiteral(" = ") + marker;
    const qsizetype at = sql.indexOf(equals);
    if (at < 0 || sql.indexOf(marker, at + equals.size()) >= 0)
        return {};
    const qsizetype end = at + equals.size();
    if (end < sql.size() && sql.at(end).isDigit())
        return {};
    // The key column's name as SQLite gives it for the first column of the select.
    sqlite3_stmt* st = nullptr;
    const QByteArray select = keys.statements[0].sql.toUtf8();
    if (sqlite3_prepare_v2(db, select.constData(), int(select.size()), &st, nullptr) != SQLITE_OK || !st)
        return {};
    const QString keyName = sqlite3_column_count(st) > 0 ? QString::fromUtf8(sqlite3_column_name(st, 0)) : QString();
    sqlite3_finalize(st);
    if (keyName.isEmpty())
        return {};
    return sql.left(at) + QStringLiteral(" IN (SELECT \"") +
           QString(keyName).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QStringLiteral("\" FROM (") +
           keys.statements[0].sql + QStringLiteral("))") + sql.mid(end);
}

} // namespace

void DataStore::RunForEachRow(const QString& keys, const QString& perRow, vb::Trap& trap)
{
    const QString placeholder = QStringLiteral("{key}");
    bool done = false;
    trap.step([&] {
        const jet::Translation keysTr = m_cache->translate(keys);
        jet::Translation rowTr = m_cache->translate(QString(perRow).replace(placeholder, QStringLiteral("?")));
        const QString whole = walkAsOneStatement(keysTr, rowTr, m_db);
        if (whole.isEmpty())
            return;
        // The key's marker was the last: its value goes, the others keep their places.
        rowTr.statements[0].params.pop_back();
        rowTr.statements[0].sql = whole;
        rowTr.userParams.clear();
        try {
            runActions(*this, rowTr, rowTr.statements.size());
            done = true;
        } catch (const VBError&) {
            // One statement changes every row or none: the walk row by row says which fail.
        }
    });
    if (done || trap.ended())
        return;
    Recordset rs;
    if (!trap.step([&] { rs.Open(keys, *this); }))
        return;
    Batch batch(*this);
    while (!trap.ended()) {
        bool more = false;
        trap.step([&] { more = !rs.Eof(); });
        if (!more)
            break;
        trap.step([&] { Execute(QString(perRow).replace(placeholder, rs.Fields(0).Value().toString())); });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
}

std::unique_ptr<Recordset> DataStore::Query(const QString& jetSql)
{
    auto rs = std::make_unique<Recordset>();
    rs->Open(jetSql, *this);
    return rs;
}

std::unique_ptr<Recordset> DataStore::Command(const QString& name, const Variant& parameter)
{
    const QString text = parameterCommand(name);
    if (text.isEmpty())
        throw VBError(3265);
    jet::Translation tr = m_cache->translate(text);
    // The command's one "?" takes the caller's value.
    for (const int position : tr.userParams)
        for (jet::SqliteStatement& s : tr.statements)
            if (size_t(position) < s.params.size())
                s.params[size_t(position)] = parameter;
    auto rs = std::make_unique<Recordset>();
    rs->openTranslated(tr, *this);
    return rs;
}

// ---------------------------------------------------------------------------------------
// Recordset

namespace {

/// A row of a recordset. Its values live in the recordset's one flat array of cells
/// (columns.size() of them from `first`): a list of thousands of rows is read without
/// an allocation per row.
struct RowData
{
    size_t first = 0;
    std::vector<Variant> original; ///< as read, for rows found again by their values
    std::vector<bool> changed;
    sqlite3_int64 rowid = 0;
    bool hasRowid = false;
    bool isNew = false;
    bool deleted = false;
    bool dirty = false;
};

struct ChildSpec
{
    QString name;
    std::shared_ptr<Recordset> all;
    std::vector<std::pair<int, int>> relate; // parent column, child column
    std::unique_ptr<Recordset> view;
    int viewOfRow = -1; // parent row the view was made for
};

} // namespace

struct Recordset::Impl
{
    DataStore* store = nullptr;
    bool open = false;
    std::vector<Column> columns;
    std::vector<ColumnType> readTypes;
    std::vector<bool> dates;
    std::vector<int> baseIndex; // position in the base table, -1 for other columns
    std::shared_ptr<TableInfo> table;
    int keyColumn = -1; // result column holding the table's key
    std::vector<RowData> rows;
    std::vector<Variant> cells; // the values of every row, row after row
    std::vector<int> view;      // rows visible under the filter, in order
    int pos = 0;                // index into view; view.size() is EOF, -1 BOF
    bool afterDelete = false;
    std::vector<ChildSpec> children;

    void reset()
    {
        open = false;
        columns.clear();
        readTypes.clear();
        dates.clear();
        baseIndex.clear();
        table.reset();
        keyColumn = -1;
        rows.clear();
        cells.clear();
        view.clear();
        pos = 0;
        afterDelete = false;
        children.clear();
    }

    int size() const { return int(view.size()); }
    std::span<Variant> values(const RowData& row) { return {cells.data() + row.first, columns.size()}; }
    std::span<const Variant> values(const RowData& row) const { return {cells.data() + row.first, columns.size()}; }
    bool eof() const { return pos >= size(); }
    bool bof() const { return pos < 0 || view.empty(); }

    void requireOpen() const
    {
        if (!open)
            throw VBError(3704);
    }

    RowData& current()
    {
        requireOpen();
        if (eof() || bof() || afterDelete)
            throw VBError(vb::err::NoCurrentRecord);
        return rows[size_t(view[size_t(pos)])];
    }

    int columnIndex(const QString& name) const
    {
        // The first column of that name, case ignored. Found without building a key: a
        // name of another length is passed over at once.
        auto find = [this](QStringView key) {
            for (size_t i = 0; i < columns.size(); ++i)
                if (columns[i].name.size() == key.size() &&
                    QStringView(columns[i].name).compare(key, Qt::CaseInsensitive) == 0)
                    return int(i);
            return -1;
        };
        if (const int i = find(name); i >= 0)
            return i;
        // "Tbl_X.Col" or "[Tbl_X]![Col]" for a column the store names "Col".
        const qsizetype dot = std::max(name.lastIndexOf(u'.'), name.lastIndexOf(u'!'));
        if (dot >= 0) {
            QString tail = name.mid(dot + 1);
            tail.remove(u'[').remove(u']');
            if (const int i = find(tail); i >= 0)
                return i;
        }
        throw VBError(3265);
    }

    void load(DataStore& st, const jet::Translation& tr);
    void loadShape(DataStore& st, const shape::Command& cmd);
    void rebuildView();
    void writeRow(RowData& row);
    void flushPending();
    sqlite3_int64 reserveKey();
    Variant toStored(const Variant& v, int column) const;
};

namespace {

std::shared_ptr<const ResultShape> resultShape(DataStore& st, sqlite3_stmt* stmt, const jet::Translation& tr)
{
    auto shape = std::make_shared<ResultShape>();
    int n = sqlite3_column_count(stmt);
    if (!tr.baseTable.isEmpty())
        shape->table = st.cache().table(tr.baseTable);
    const auto& table = shape->table;
    if (table && n > 0 && isRowidName(QString::fromUtf8(sqlite3_column_name(stmt, n - 1)))) {
        shape->rowidColumn = n - 1;
        --n;
    }
    shape->columns.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        const char* decl = sqlite3_column_decltype(stmt, i);
        Column c{i < tr.columnNames.size() ? tr.columnNames[i] : QString::fromUtf8(sqlite3_column_name(stmt, i)),
                 decl ? QString::fromUtf8(decl) : QString()};
        const ColumnType type = columnTypeOfDecl(c.declType);
        shape->readTypes.push_back(type);
        shape->dates.push_back(type == ColumnType::Date ||
                               (size_t(i) < tr.dateColumns.size() && tr.dateColumns[size_t(i)]));
        int base = -1;
        if (table) {
            const char* origin = sqlite3_column_origin_name(stmt, i);
            const char* originTable = sqlite3_column_table_name(stmt, i);
            if (origin && originTable && table->name.compare(QString::fromUtf8(originTable), Qt::CaseInsensitive) == 0)
                base = table->index.value(QString::fromUtf8(origin).toLower(), -1);
        }
        shape->baseIndex.push_back(base);
        if (table && base >= 0 && base == table->key && shape->keyColumn < 0)
            shape->keyColumn = i;
        shape->columns.push_back(std::move(c));
    }
    return shape;
}

} // namespace

void Recordset::Impl::load(DataStore& st, const jet::Translation& tr)
{
    store = &st;
    if (tr.statements.empty())
        return;
    runActions(st, tr, tr.statements.size() - 1);
    const jet::SqliteStatement& s = tr.statements.back();
    sqlite3* db = st.handle();
    Lease lease(st.cache(), s.sql);
    sqlite3_stmt* stmt = lease.get();
    bindAll(stmt, s.params);
    if (!lease.shape())
        lease.shape() = resultShape(st, stmt, tr);
    const ResultShape& shape = *lease.shape();
    columns = shape.columns;
    readTypes = shape.readTypes;
    dates = shape.dates;
    baseIndex = shape.baseIndex;
    table = shape.table;
    keyColumn = shape.keyColumn;
    const int n = int(columns.size());

    const ColumnType* types = shape.readTypes.data();
    const std::vector<bool>& isDate = shape.dates;
    // A list is read again and again with much the same rows: room for as many as last
    // time, so that the values are not moved as the array grows.
    rows.reserve(lease.rowsLastTime());
    cells.reserve(lease.rowsLastTime() * size_t(n));
    SharedTexts texts(n);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        // A short result is read as it comes; sharing pays from a list's length on.
        const bool share = rows.size() >= 64;
        RowData& row = rows.emplace_back();
        row.first = cells.size();
        for (int i = 0; i < n; ++i)
            cells.push_back(readValue(stmt, i, types[i], isDate[size_t(i)], share ? &texts : nullptr));
        if (shape.rowidColumn >= 0) {
            row.rowid = sqlite3_column_int64(stmt, shape.rowidColumn);
            row.hasRowid = true;
        } else if (keyColumn >= 0 && !cells[row.first + size_t(keyColumn)].isNull()) {
            row.rowid = cells[row.first + size_t(keyColumn)].rawLong();
            row.hasRowid = true;
        }
    }
    if (rc != SQLITE_DONE)
        throw errors::fromSqlite(db);
    if (rows.size() < lease.rowsLastTime() / 2) {
        // Far fewer rows than last time: the room left over is given back.
        rows.shrink_to_fit();
        cells.shrink_to_fit();
    }
    lease.rowsLastTime() = rows.size();
    open = true;
    rebuildView();
}

void Recordset::Impl::loadShape(DataStore& st, const shape::Command& cmd)
{
    load(st, st.cache().translate(cmd.sql));
    for (const shape::Child& c : cmd.children) {
        ChildSpec spec;
        spec.name = c.name;
        spec.all = std::make_shared<Recordset>();
        spec.all->d->loadShape(st, *c.command);
        for (const auto& [parentColumn, childColumn] : c.relate)
            spec.relate.emplace_back(columnIndex(parentColumn), spec.all->d->columnIndex(childColumn));
        children.push_back(std::move(spec));
    }
}

void Recordset::Impl::rebuildView()
{
    view.clear();
    view.reserve(rows.size());
    for (size_t i = 0; i < rows.size(); ++i)
        if (!rows[i].deleted)
            view.push_back(int(i));
    pos = 0;
    afterDelete = false;
}

sqlite3_int64 Recordset::Impl::reserveKey()
{
    // The next number is taken now, so that the screens can show it before saving, and
    // recorded at once as used: a number is never handed out twice, as Jet's counter.
    sqlite3* db = store->handle();
    const QString sql =
        QStringLiteral("SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ?1 COLLATE NOCASE), 0), "
                       "coalesce((SELECT max(rowid) FROM %1), 0)) + 1")
            .arg(quoteName(table->name));
    sqlite3_int64 next = 1;
    {
        Lease lease(store->cache(), sql);
        bindValue(lease.get(), 1, Variant(table->name));
        if (sqlite3_step(lease.get()) == SQLITE_ROW)
            next = sqlite3_column_int64(lease.get(), 0);
        else
            throw errors::fromSqlite(db);
    }
    if (table->autoincrement) {
        {
            Lease update(store->cache(),
                         QStringLiteral("UPDATE sqlite_sequence SET seq = ?2 WHERE name = ?1 COLLATE NOCASE"));
            bindValue(update.get(), 1, Variant(table->name));
            bindValue(update.get(), 2, Variant(std::int64_t(next)));
            stepToEnd(db, update.get());
        }
        if (sqlite3_changes(db) == 0) {
            Lease insert(store->cache(), QStringLiteral("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)"));
            bindValue(insert.get(), 1, Variant(table->name));
            bindValue(insert.get(), 2, Variant(std::int64_t(next)));
            stepToEnd(db, insert.get());
        }
    }
    return next;
}

Variant Recordset::Impl::toStored(const Variant& v, int column) const
{
    const int base = baseIndex[size_t(column)];
    const ColumnType type = (table && base >= 0) ? table->types[size_t(base)] : readTypes[size_t(column)];
    if (v.isNull() || v.isEmpty())
        return Variant::null();
    switch (type) {
    case ColumnType::Date: {
        if (v.isDate())
            return v;
        if (v.isString()) {
            if (const auto serial = vb::regional::parseDateTime(v.rawString().trimmed()))
                return Variant(JetDate{*serial});
            throw VBError(vb::err::TypeMismatch);
        }
        return Variant(JetDate{v.toDouble()});
    }
    case ColumnType::Text:
    case ColumnType::Memo:
        if (v.isDate())
            return Variant(vb::regional::dateText(v.rawDouble()));
        return Variant(v.toString());
    case ColumnType::Counter:
    case ColumnType::Long:
    case ColumnType::Integer: {
        double d = 0;
        if (v.isString()) {
            const auto n = vb::regional::parseNumber(v.rawString());
            if (!n)
                throw VBError(vb::err::TypeMismatch);
            d = *n;
        } else {
            d = v.toDouble();
        }
        const double r = std::nearbyint(d);
        const double limit = type == ColumnType::Integer ? 32768.0 : 2147483648.0;
        if (r >= limit || r < -limit)
            throw VBError(vb::err::Overflow);
        return Variant(std::int64_t(r));
    }
    case ColumnType::Double:
    case ColumnType::Currency: {
        if (v.isString()) {
            const auto n = vb::regional::parseNumber(v.rawString());
            if (!n)
                throw VBError(vb::err::TypeMismatch);
            return Variant(*n);
        }
        return Variant(v.toDouble());
    }
    case ColumnType::Boolean: return Variant(v.toBool());
    case ColumnType::Unknown: break;
    }
    return v;
}

void Recordset::Impl::writeRow(RowData& row)
{
    if (!row.dirty)
        return;
    if (!table)
        throw VBError(3251, QStringLiteral("L'operazione richiesta non è supportata dall'oggetto o dal provider."));
    sqlite3* db = store->handle();
    const QString tableName = quoteName(table->name);
    const std::span<Variant> rowValues = values(row);
    QStringList names;
    std::vector<Variant> values;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (!row.changed[i] || baseIndex[i] < 0)
            continue;
        names << quoteName(table->columns[baseIndex[i]]);
        values.push_back(rowValues[i]);
    }
    if (row.isNew) {
        if (table->key >= 0 && (keyColumn < 0 || !row.changed[size_t(keyColumn)])) {
            names << quoteName(table->columns[table->key]);
            values.push_back(Variant(std::int64_t(row.rowid)));
        }
        QStringList marks;
        for (size_t i = 0; i < values.size(); ++i)
            marks << QStringLiteral("?%1").arg(i + 1);
        const QString sql = names.isEmpty()
                                ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(tableName)
                                : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                      .arg(tableName, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
        {
            Lease lease(store->cache(), sql);
            bindAll(lease.get(), values);
            stepToEnd(db, lease.get());
        }
        row.rowid = sqlite3_last_insert_rowid(db);
        row.hasRowid = true;
        row.isNew = false;
        // The row as stored: the defaults of the columns not written show up at once.
        QStringList all;
        std::vector<int> positions;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (baseIndex[i] >= 0 && !row.changed[i]) {
                all << quoteName(table->columns[baseIndex[i]]);
                positions.push_back(int(i));
            }
        }
        if (!all.isEmpty()) {
            Lease reread(
                store->cache(),
                QStringLiteral("SELECT %1 FROM %2 WHERE rowid = ?1").arg(all.join(QLatin1Char(',')), tableName));
            sqlite3_bind_int64(reread.get(), 1, row.rowid);
            if (sqlite3_step(reread.get()) == SQLITE_ROW) {
                for (size_t k = 0; k < positions.size(); ++k) {
                    const size_t i = size_t(positions[k]);
                    rowValues[i] = readValue(reread.get(), int(k), readTypes[i], dates[i]);
                }
            }
        }
    } else if (!names.isEmpty()) {
        QStringList sets;
        for (int i = 0; i < names.size(); ++i)
            sets << QStringLiteral("%1 = ?%2").arg(names[i]).arg(i + 1);
        const int idx = int(values.size()) + 1;
        QString where;
        if (row.hasRowid) {
            where = QStringLiteral("rowid = ?%1").arg(idx);
            values.push_back(Variant(std::int64_t(row.rowid)));
        } else {
            // A table without a key: the row is found again by the values it was read with.
            QStringList match;
            for (size_t i = 0; i < columns.size(); ++i) {
                if (baseIndex[i] < 0)
                    continue;
                match
                    << QStringLiteral("%1 IS ?%2").arg(quoteName(table->columns[baseIndex[i]])).arg(values.size() + 1);
                values.push_back(row.original[i]);
            }
            where = QStringLiteral("rowid = (SELECT rowid FROM %1 WHERE %2 LIMIT 1)")
                        .arg(tableName, match.join(QLatin1String(" AND ")));
        }
        Lease lease(store->cache(),
                    QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(tableName, sets.join(QLatin1Char(',')), where));
        bindAll(lease.get(), values);
        stepToEnd(db, lease.get());
    }
    row.dirty = false;
    std::fill(row.changed.begin(), row.changed.end(), false);
    row.original.assign(rowValues.begin(), rowValues.end());
}

void Recordset::Impl::flushPending()
{
    if (!open || eof() || bof() || afterDelete)
        return;
    RowData& row = rows[size_t(view[size_t(pos)])];
    if (row.dirty)
        writeRow(row);
}

Recordset::Recordset() : d(std::make_unique<Impl>())
{
}

Recordset::~Recordset() = default;

void Recordset::Open(const QString& jetSql, DataStore& store)
{
    d->reset();
    d->store = &store;
    if (shape::isShape(jetSql)) {
        d->loadShape(store, *shape::parse(jetSql));
        return;
    }
    openTranslated(store.cache().translate(jetSql), store);
}

void Recordset::openTranslated(const jet::Translation& tr, DataStore& store)
{
    d->reset();
    d->store = &store;
    if (tr.kind == jet::StatementKind::Select) {
        d->load(store, tr);
        return;
    }
    // An action statement runs at once and leaves the recordset closed.
    Attachment attached(store.handle(), tr.intoFile);
    runActions(store, tr, tr.statements.size());
}

bool Recordset::Eof() const
{
    d->requireOpen();
    return d->eof();
}

bool Recordset::Bof() const
{
    d->requireOpen();
    return d->bof();
}

Field Recordset::Fields(const QString& name)
{
    d->requireOpen();
    return Field(this, d->columnIndex(name));
}

Field Recordset::Fields(int position)
{
    d->requireOpen();
    if (position < 0 || position >= FieldCount())
        throw VBError(3265);
    return Field(this, position);
}

int Recordset::FieldCount() const
{
    return int(d->columns.size());
}

const std::vector<Column>& Recordset::Columns() const
{
    return d->columns;
}

void Recordset::AddNew()
{
    d->requireOpen();
    d->flushPending();
    if (!d->table)
        throw VBError(3251, QStringLiteral("L'operazione richiesta non è supportata dall'oggetto o dal provider."));
    RowData row;
    row.changed.assign(d->columns.size(), false);
    row.isNew = true;
    row.dirty = true;
    if (d->table->key >= 0)
        row.rowid = d->reserveKey();
    row.first = d->cells.size();
    d->cells.resize(d->cells.size() + d->columns.size(), Variant::null());
    if (d->table->key >= 0 && d->keyColumn >= 0)
        d->cells[row.first + size_t(d->keyColumn)] = Variant(std::int64_t(row.rowid));
    d->rows.push_back(std::move(row));
    d->view.push_back(int(d->rows.size()) - 1);
    d->pos = d->size() - 1;
    d->afterDelete = false;
}

void Recordset::UpdateBatch()
{
    d->requireOpen();
    for (RowData& row : d->rows)
        if (row.dirty && !row.deleted)
            d->writeRow(row);
}

void Recordset::Delete()
{
    RowData& row = d->current();
    if (!d->table)
        throw VBError(3251, QStringLiteral("L'operazione richiesta non è supportata dall'oggetto o dal provider."));
    if (!row.isNew) {
        QString where = QStringLiteral("rowid = ?1");
        std::vector<Variant> values;
        if (row.hasRowid) {
            values.push_back(Variant(std::int64_t(row.rowid)));
        } else {
            QStringList match;
            for (size_t i = 0; i < d->columns.size(); ++i) {
                if (d->baseIndex[i] < 0)
                    continue;
                match << QStringLiteral("%1 IS ?%2")
                             .arg(quoteName(d->table->columns[d->baseIndex[i]]))
                             .arg(values.size() + 1);
                values.push_back(row.original.empty() ? d->values(row)[i] : row.original[i]);
            }
            where = QStringLiteral("rowid = (SELECT rowid FROM %1 WHERE %2 LIMIT 1)")
                        .arg(quoteName(d->table->name), match.join(QLatin1String(" AND ")));
        }
        Lease lease(d->store->cache(), QStringLiteral("DELETE FROM %1 WHERE %2").arg(quoteName(d->table->name), where));
        bindAll(lease.get(), values);
        stepToEnd(d->store->handle(), lease.get());
    }
    row.deleted = true;
    d->view.erase(d->view.begin() + d->pos);
    d->afterDelete = true;
}

void Recordset::MoveNext()
{
    d->requireOpen();
    if (d->afterDelete) {
        d->afterDelete = false; // the row after the deleted one is already current
        return;
    }
    if (d->eof())
        throw VBError(vb::err::NoCurrentRecord);
    d->flushPending();
    ++d->pos;
}

void Recordset::MovePrevious()
{
    d->requireOpen();
    if (d->pos < 0)
        throw VBError(vb::err::NoCurrentRecord);
    d->flushPending();
    d->afterDelete = false;
    --d->pos;
}

void Recordset::MoveFirst()
{
    d->requireOpen();
    if (d->view.empty())
        throw VBError(vb::err::NoCurrentRecord);
    d->flushPending();
    d->afterDelete = false;
    d->pos = 0;
}

void Recordset::MoveLast()
{
    d->requireOpen();
    if (d->view.empty())
        throw VBError(vb::err::NoCurrentRecord);
    d->flushPending();
    d->afterDelete = false;
    d->pos = d->size() - 1;
}

void Recordset::Move(int rows)
{
    d->requireOpen();
    if (rows == 0)
        return;
    if (d->view.empty() || (rows > 0 && d->eof()) || (rows < 0 && d->pos < 0))
        throw VBError(vb::err::NoCurrentRecord);
    d->flushPending();
    const int from = d->afterDelete && rows > 0 ? d->pos - 1 : d->pos;
    d->afterDelete = false;
    d->pos = std::clamp(from + rows, -1, d->size());
}

int Recordset::AbsolutePosition() const
{
    if (!d->open || d->eof() || d->bof())
        return -1;
    return d->pos;
}

void Recordset::setFilter(const QString& criteria)
{
    d->requireOpen();
    d->flushPending();
    d->rebuildView();
    if (criteria.trimmed().isEmpty())
        return;
    QStringList names;
    for (const Column& c : d->columns)
        names << c.name;
    const filter::Criteria c(criteria, names);
    std::vector<int> kept;
    for (int i : d->view)
        if (c.matches(d->values(d->rows[size_t(i)])))
            kept.push_back(i);
    d->view = std::move(kept);
    d->pos = 0;
}

int Recordset::RecordCount() const
{
    d->requireOpen();
    return d->size();
}

void Recordset::Close()
{
    d->requireOpen();
    d->reset();
}

bool Recordset::isOpen() const
{
    return d->open;
}

Recordset* Recordset::Child(const QString& member)
{
    d->requireOpen();
    for (ChildSpec& c : d->children) {
        if (c.name.compare(member, Qt::CaseInsensitive) != 0)
            continue;
        const RowData& parent = d->current();
        const int rowIndex = d->view[size_t(d->pos)];
        if (c.view && c.viewOfRow == rowIndex)
            return c.view.get();
        // The child rows of this parent row: those whose related columns equal the
        // parent's, by the relation as written (a relation on the month alone relates
        // every year's month).
        auto view = std::make_unique<Recordset>();
        Impl& v = *view->d;
        const Impl& all = *c.all->d;
        v.store = all.store;
        v.open = true;
        v.columns = all.columns;
        v.readTypes = all.readTypes;
        v.dates = all.dates;
        v.baseIndex.assign(all.columns.size(), -1);
        for (const RowData& r : all.rows) {
            bool match = true;
            for (const auto& [p, ch] : c.relate) {
                const auto cmp = filter::compare(d->values(parent)[size_t(p)], all.values(r)[size_t(ch)]);
                if (!cmp || *cmp != 0) {
                    match = false;
                    break;
                }
            }
            if (match) {
                const std::span<const Variant> cells = all.values(r);
                RowData& copy = v.rows.emplace_back(r);
                copy.first = v.cells.size();
                v.cells.insert(v.cells.end(), cells.begin(), cells.end());
            }
        }
        for (const ChildSpec& grand : all.children)
            v.children.push_back(ChildSpec{grand.name, grand.all, grand.relate, nullptr, -1});
        v.rebuildView();
        c.view = std::move(view);
        c.viewOfRow = rowIndex;
        return c.view.get();
    }
    throw VBError(3265);
}

QStringList Recordset::ChildNames() const
{
    QStringList names;
    for (const ChildSpec& c : d->children)
        names << c.name;
    return names;
}

const Variant& Recordset::value(int row, int column) const
{
    d->requireOpen();
    if (row < 0 || row >= d->size() || column < 0 || column >= FieldCount())
        throw VBError(vb::err::NoCurrentRecord);
    return d->values(d->rows[size_t(d->view[size_t(row)])])[size_t(column)];
}

// ---------------------------------------------------------------------------------------
// Field

Variant Field::Value() const
{
    Recordset::Impl& d = *m_rs->d;
    return d.values(d.current())[size_t(m_index)];
}

void Field::setValue(const Variant& v)
{
    Recordset::Impl& d = *m_rs->d;
    RowData& row = d.current();
    const Variant stored = d.toStored(v, m_index);
    if (row.changed.empty())
        row.changed.assign(d.columns.size(), false);
    const std::span<Variant> values = d.values(row);
    if (row.original.empty())
        row.original.assign(values.begin(), values.end());
    values[size_t(m_index)] = stored;
    row.changed[size_t(m_index)] = true;
    row.dirty = true;
}

QString Field::Name() const
{
    return m_rs->d->columns[size_t(m_index)].name;
}

} // namespace store
