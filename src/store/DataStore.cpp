#include "store/DataStore.h"

#include "runtime/AppPath.h"
#include "runtime/Regional.h"
#include "runtime/VBError.h"
#include "store/Backend.h"
#include "store/Batch.h"
#include "store/Filter.h"
#include "store/Schema.h"
#include "store/Shape.h"
#include "store/StoreErrors.h"
#include "store/jet/Jet.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QScopeGuard>
#include <QUrl>

#include <array>
#include <cmath>
#include <cstring>
#include <span>

namespace store {

using vb::JetDate;
using vb::VBError;

// ---------------------------------------------------------------------------------------
// What the connection knows of its tables, and its prepared statements.

namespace {

using TableInfo = backend::StoredTable;

/// What a prepared SELECT gives: its columns as the recordset shows them, worked out
/// once per statement and kept with it.
struct CachedStatement;

/// The UPDATE that writes a set of changed columns of a row found by its key, and the
/// slot its statement was last found in (not kept alive by the shape, which may outlive
/// the store).
struct UpdateText
{
    QString sql;
    std::weak_ptr<CachedStatement> statement;
};

struct ResultShape
{
    std::vector<Column> columns;
    std::vector<ColumnType> readTypes;
    std::vector<bool> dates;
    std::vector<int> baseIndex; // position in the base table, -1 for other columns
    std::shared_ptr<TableInfo> table;
    int keyColumn = -1;
    int rowidColumn = -1;
    /// By the changed columns (a bit each, for the first 64): a row edited and written
    /// back again and again in a loop builds its UPDATE once.
    mutable QHash<quint64, UpdateText> updates;
};

/// The shape of a recordset that is not open: no columns.
const std::shared_ptr<const ResultShape>& noColumns()
{
    static const auto none = std::make_shared<const ResultShape>();
    return none;
}

/// A prepared statement kept for the next use of the same SQL. One in use when the
/// cache is emptied is finalized by its user when done.
struct CachedStatement
{
    std::unique_ptr<backend::Statement> stmt;
    std::shared_ptr<const ResultShape> shape;
    size_t rowsLastTime = 0; ///< rows read at the last use: the room set aside for the next
    quint64 generation = 0;  ///< the cache's generation it was kept in
    bool inUse = false;
    bool orphan = false;
};

/// A statement's text as last translated, and for a SELECT the slot its statement is kept
/// in: a list read again goes to its prepared statement without looking its SQL up.
struct CachedText
{
    quint64 version = 0; ///< of the tables the translation was made for
    jet::Translation translation;
    std::shared_ptr<CachedStatement> statement;
};

std::unique_ptr<DataStore> g_main;
std::unique_ptr<DataStore> g_report;
QString g_server;

constexpr int kMaxCachedStatements = 256;
/// SELECT texts kept with their translations: as many as the translator keeps, so that a
/// screen's per-row reads ("WHERE ID = n" for every row of a list) are found again when
/// the screen is opened again.
constexpr int kMaxCachedTexts = 4096;

/// Whether a statement's first word makes it an UPDATE, INSERT or DELETE (never a SELECT).
bool writesRows(const QString& jetSql)
{
    qsizetype i = 0;
    while (i < jetSql.size() && jetSql[i].isSpace())
        ++i;
    const QStringView rest = QStringView(jetSql).mid(i);
    if (rest.size() <= 6 || !rest[6].isSpace())
        return false;
    // Asked for every statement a loop runs: the first word upper-cased the plain way, as
    // Jet's keywords are written in plain letters.
    char word[7] = {};
    for (int k = 0; k < 6; ++k) {
        const char16_t c = rest[k].unicode();
        if (c >= 0x80)
            return false;
        word[k] = char(c >= u'a' && c <= u'z' ? c - 0x20 : c);
    }
    return qstrcmp(word, "UPDATE") == 0 || qstrcmp(word, "INSERT") == 0 || qstrcmp(word, "DELETE") == 0;
}

} // namespace

struct DataStore::Cache
{
    backend::Connection* conn = nullptr;
    QHash<QString, std::shared_ptr<TableInfo>> tables; // lower-case name
    QHash<QString, std::shared_ptr<CachedStatement>> statements;
    quint64 generation = 0;                            ///< moves whenever the kept statements are let go
    QHash<QString, std::shared_ptr<CachedText>> texts; // SELECTs, by their Jet text
    /// The SQL last leased and their slots. Texts of one shape share their translation's
    /// SQL (the same string data, kept alive here), so a loop's "WHERE ID = n" for ever
    /// new n finds its statement without hashing the SQL.
    struct Recent
    {
        QString sql;
        std::shared_ptr<CachedStatement> statement;
    };
    std::array<Recent, 4> recent;
    size_t nextRecent = 0;

    const std::shared_ptr<CachedStatement>* recentFor(const QString& sql) const
    {
        for (const Recent& r : recent)
            if (r.statement && sql.constData() == r.sql.constData() && sql.size() == r.sql.size())
                return &r.statement;
        return nullptr;
    }

    void remember(const QString& sql, const std::shared_ptr<CachedStatement>& statement)
    {
        recent[nextRecent] = {sql, statement};
        nextRecent = (nextRecent + 1) % recent.size();
    }

    /// A statement's translation for the tables as they are now.
    std::shared_ptr<CachedText> translate(const QString& jetSql)
    {
        const quint64 version = conn->schemaVersion();
        // Only SELECTs are kept: a loop's "UPDATE ... WHERE ID = n" skips the look-up and
        // the slot taken and given back for it.
        if (writesRows(jetSql))
            return std::make_shared<CachedText>(CachedText{version, conn->translate(jetSql), {}});
        if (texts.size() >= kMaxCachedTexts)
            texts.clear();
        // One look-up whether the text is known or not: the slot taken now is filled
        // for a SELECT and given back otherwise.
        std::shared_ptr<CachedText>& slot = texts[jetSql];
        if (slot && slot->version == version)
            return slot;
        bool kept = false;
        const auto giveBack = qScopeGuard([&] {
            if (!kept)
                texts.remove(jetSql);
        });
        auto text = std::make_shared<CachedText>(CachedText{version, conn->translate(jetSql), {}});
        if (text->translation.kind == jet::StatementKind::Select) {
            slot = text;
            kept = true;
        }
        return text;
    }

    void clearStatements()
    {
        // One in use is finalized by its user when done.
        for (const auto& s : std::as_const(statements))
            if (s->inUse)
                s->orphan = true;
        statements.clear();
        recent = {};
        ++generation;
        // The statements let go are not kept alive by the texts that led to them.
        texts.clear();
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
        auto info = conn->table(name);
        if (info)
            tables.insert(key, info);
        return info;
    }
};

namespace {

/// A prepared statement borrowed from the cache (or made for this use alone when the
/// cached one is still running), reset when given back. `known` is where the caller keeps
/// the slot of the statement found for the same SQL before: still kept and free, it is
/// taken without a look-up; otherwise it is set to the slot found now.
class Lease
{
public:
    Lease(DataStore::Cache& cache, const QString& sql, std::shared_ptr<CachedStatement>* known = nullptr)
    {
        if (known && *known && (*known)->generation == cache.generation && !(*known)->inUse) {
            m_slot = *known;
            m_slot->inUse = true;
            return;
        }
        auto it = cache.statements.constEnd();
        if (const auto* r = cache.recentFor(sql); r && !(*r)->inUse) {
            m_slot = *r;
        } else if (it = cache.statements.constFind(sql); it != cache.statements.constEnd() && !(*it)->inUse) {
            m_slot = *it;
            cache.remember(sql, m_slot);
        } else {
            m_slot = std::make_shared<CachedStatement>();
            m_slot->stmt = cache.conn->prepare(sql);
            if (it == cache.statements.constEnd()) {
                if (cache.statements.size() >= kMaxCachedStatements)
                    cache.clearStatements();
                m_slot->generation = cache.generation;
                cache.statements.insert(sql, m_slot);
                cache.remember(sql, m_slot);
            } else {
                m_slot->orphan = true; // the cached one is busy: this one is for this use alone
            }
        }
        if (known && !m_slot->orphan)
            *known = m_slot;
        m_slot->inUse = true;
    }
    ~Lease()
    {
        m_slot->inUse = false;
        if (!m_slot->orphan)
            m_slot->stmt->reset();
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    backend::Statement* get() const { return m_slot->stmt.get(); }
    /// The result shape kept with the statement (null until first worked out).
    std::shared_ptr<const ResultShape>& shape() { return m_slot->shape; }
    size_t& rowsLastTime() { return m_slot->rowsLastTime; }

private:
    std::shared_ptr<CachedStatement> m_slot;
};

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

/// The WHERE that finds a row of a table without a key again by the values it was read
/// with (the first such row); the values go after those already in `values`.
QString rowByValues(const backend::Connection& conn, const TableInfo& table, const std::vector<int>& baseIndex,
                    const std::vector<Variant>& read, std::vector<Variant>& values)
{
    QStringList match;
    for (size_t i = 0; i < baseIndex.size(); ++i) {
        if (baseIndex[i] < 0)
            continue;
        match << QStringLiteral("%1 %2 %3")
                     .arg(quoteName(table.columns[baseIndex[i]]), conn.sameValue(),
                          conn.marker(int(values.size()) + 1));
        values.push_back(read[i]);
    }
    const QString rowid = conn.rowIdentity(table);
    return QStringLiteral("%1 = (SELECT %1 FROM %2 WHERE %3 LIMIT 1)")
        .arg(rowid, quoteName(table.name), match.join(QLatin1String(" AND ")));
}

bool isDdl(jet::StatementKind k)
{
    using K = jet::StatementKind;
    return k == K::SelectInto || k == K::CreateTable || k == K::AlterTable || k == K::DropTable || k == K::Other;
}

/// "SELECT ... INTO T IN 'file'": the other store is attached for the one statement.
class Attachment
{
public:
    Attachment(backend::Connection& conn, const QString& file) : m_conn(conn)
    {
        if (file.isEmpty())
            return;
        m_conn.attach(file);
        m_attached = true;
    }
    ~Attachment()
    {
        if (m_attached)
            m_conn.detach();
    }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

private:
    backend::Connection& m_conn;
    bool m_attached = false;
};

/// The read a statement's translation began (backend::Connection::beginRead), ended
/// however the statement ends.
class ReadScope
{
public:
    explicit ReadScope(backend::Connection& conn) : m_conn(conn) { m_conn.beginRead(); }
    ~ReadScope() { m_conn.endRead(); }
    ReadScope(const ReadScope&) = delete;
    ReadScope& operator=(const ReadScope&) = delete;

private:
    backend::Connection& m_conn;
};

/// Runs the statements of a translation that read nothing (all of them for an action).
void runActions(DataStore& store, const jet::Translation& tr, size_t count)
{
    store.connection().endRead();
    if (tr.kind == jet::StatementKind::SelectInto) {
        if (store.connection().tableExists(tr.intoTable, !tr.intoFile.isEmpty()))
            throw errors::tableExists(tr.intoTable);
    }
    for (size_t i = 0; i < count; ++i) {
        const jet::SqliteStatement& s = tr.statements[i];
        try {
            Lease lease(store.cache(), s.sql);
            lease.get()->bind(s.params);
            lease.get()->run();
        } catch (const VBError& e) {
            if (isDdl(tr.kind))
                store.cache().schemaChanged();
            throw errors::forStatement(e, tr.kind);
        }
    }
    if (isDdl(tr.kind))
        store.cache().schemaChanged();
}

} // namespace

// ---------------------------------------------------------------------------------------
// DataStore

DataStore& DataStore::instance()
{
    if (!g_main)
        g_main = std::make_unique<DataStore>(g_server.isEmpty() ? vb::AppFile(QLatin1String(StoreFileName)) : g_server);
    return *g_main;
}

DataStore& DataStore::report()
{
    if (!g_report)
        g_report = std::make_unique<DataStore>(
            g_server.isEmpty() ? vb::AppFile(QLatin1String(ReportStoreFileName)) : g_server, Kind::Report);
    return *g_report;
}

void DataStore::reset()
{
    g_main.reset();
    g_report.reset();
}

void DataStore::setServer(const QString& uri)
{
    if (uri != g_server)
        reset();
    g_server = uri;
}

QString DataStore::server()
{
    return g_server;
}

DataStore::DataStore(const QString& path, Kind kind) : m_path(path), m_cache(std::make_unique<Cache>())
{
    if (backend::isServerUri(path)) {
        m_conn = backend::openPostgres(path, kind == Kind::Report);
        m_cache->conn = m_conn.get();
        return;
    }
    if (path != QLatin1String(":memory:"))
        QDir().mkpath(QFileInfo(path).absolutePath());
    m_conn = backend::openSqlite(path);
    m_db = m_conn->sqliteHandle();
    m_cache->conn = m_conn.get();
    if (m_conn->empty() && kind == Kind::Main) {
        m_conn->createSchema(false);
        // A new program folder gets its report store beside the main one, as the program
        // always came with both files; the whole chart's print finds it there.
        const QFileInfo main(path);
        const QString report = main.absoluteDir().filePath(QLatin1String(ReportStoreFileName));
        if (main.fileName() == QLatin1String(StoreFileName) && !QFileInfo::exists(report))
            DataStore(report, Kind::Report);
    } else if (m_conn->empty()) {
        m_conn->createSchema(true);
    }
}

DataStore::~DataStore()
{
    m_cache.reset();
    m_conn.reset();
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
QString walkAsOneStatement(const jet::Translation& keys, const jet::Translation& perRow, backend::Connection& conn)
{
    if (keys.kind != jet::StatementKind::Select || keys.statements.size() != 1 || !keys.statements[0].params.empty())
        return {};
    if ((perRow.kind != jet::StatementKind::Update && perRow.kind != jet::StatementKind::Delete) ||
        perRow.statements.size() != 1 || perRow.userParams.size() != 1 ||
        size_t(perRow.userParams[0]) + 1 != perRow.statements[0].params.size())
        return {};
    const QString& sql = perRow.statements[0].sql;
    const QString marker = conn.marker(perRow.userParams[0] + 1);
    const QString equals = QStringLiteral(" = ") + marker;
    const qsizetype at = sql.indexOf(equals);
    if (at < 0 || sql.indexOf(marker, at + equals.size()) >= 0)
        return {};
    const qsizetype end = at + equals.size();
    if (end < sql.size() && sql.at(end).isDigit())
        return {};
    // The key column's name as the store gives it for the first column of the select.
    QString keyName;
    try {
        const auto st = conn.prepare(keys.statements[0].sql);
        if (st->columnCount() > 0)
            keyName = st->columnName(0);
    } catch (const VBError&) {
        return {};
    }
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
        const auto keysText = m_cache->translate(keys);
        const jet::Translation& keysTr = keysText->translation;
        jet::Translation rowTr =
            m_cache->translate(QString(perRow).replace(placeholder, QStringLiteral("?")))->translation;
        const QString whole = walkAsOneStatement(keysTr, rowTr, *m_conn);
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
    jet::Translation tr = m_cache->translate(text)->translation;
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

/// What a row being written keeps beside its values.
struct RowEdit
{
    std::vector<Variant> original; ///< as read, for rows found again by their values
    std::vector<bool> changed;
};

/// A row of a recordset. Its values live in the recordset's cells (columns.size() of
/// them from `first`): a list of thousands of rows is read without an allocation per
/// row, and a row that is only read carries nothing for the writing of it.
struct RowData
{
    size_t first = 0;
    std::int64_t rowid = 0;
    std::unique_ptr<RowEdit> edits; ///< from the first write on
    bool hasRowid = false;
    bool isNew = false;
    bool deleted = false;
    bool dirty = false;

    RowData() = default;
    RowData(RowData&&) noexcept = default;
    RowData& operator=(RowData&&) noexcept = default;
    RowData(const RowData& o)
        : first(o.first), rowid(o.rowid), edits(o.edits ? std::make_unique<RowEdit>(*o.edits) : nullptr),
          hasRowid(o.hasRowid), isNew(o.isNew), deleted(o.deleted), dirty(o.dirty)
    {
    }
    RowData& operator=(const RowData&) = delete;

    RowEdit& edit()
    {
        if (!edits)
            edits = std::make_unique<RowEdit>();
        return *edits;
    }
};

/// The values of a recordset's rows, row after row, in blocks of a fixed number of rows:
/// a long list grows without a second copy of what it has read while it grows, and
/// keeps no more room than one block beyond its last row.
class Cells
{
public:
    /// Starts again for rows of `width` values, with room for `rows` rows in the first block.
    void reset(size_t width, size_t rows = 0)
    {
        m_blocks.clear();
        m_width = width;
        m_blockCells = BlockRows * std::max<size_t>(width, 1);
        if (rows > 0 && width > 0)
            m_blocks.emplace_back().reserve(std::min(rows, BlockRows) * width);
    }
    void clear() { reset(0); }
    /// Appends a row, its values made by make(column); returns where it starts.
    template <class Make> size_t append(Make&& make)
    {
        return appendWith([&](std::vector<Variant>& block) {
            for (size_t i = 0; i < m_width; ++i)
                block.push_back(make(i));
        });
    }
    /// Appends a row whose values fill(block) puts at the end of `block`, all of them at
    /// once (a statement's row in one call); returns where it starts.
    template <class Fill> size_t appendWith(Fill&& fill)
    {
        if (m_blocks.empty() || m_blocks.back().size() + m_width > m_blockCells) {
            m_blocks.emplace_back().reserve(m_blocks.size() == 1 ? std::min(m_blockCells, m_width * 16) : m_blockCells);
        }
        std::vector<Variant>& block = m_blocks.back();
        if (block.size() + m_width > block.capacity())
            block.reserve(std::min(m_blockCells, std::max(block.capacity() * 2, block.size() + m_width)));
        const size_t first = (m_blocks.size() - 1) * m_blockCells + block.size();
        fill(block);
        return first;
    }
    Variant* at(size_t first) { return m_blocks[first / m_blockCells].data() + first % m_blockCells; }
    const Variant* at(size_t first) const { return m_blocks[first / m_blockCells].data() + first % m_blockCells; }
    /// Gives back the room the last block keeps beyond its rows.
    void shrink()
    {
        if (!m_blocks.empty())
            m_blocks.back().shrink_to_fit();
    }

private:
    static constexpr size_t BlockRows = 1024;
    std::vector<std::vector<Variant>> m_blocks;
    size_t m_width = 0;
    size_t m_blockCells = BlockRows;
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
    /// The columns as the statement gives them, shared with the cached statement: a list
    /// read again does not copy them.
    std::shared_ptr<const ResultShape> result = noColumns();
    std::shared_ptr<TableInfo> table;
    int keyColumn = -1; // result column holding the table's key
    std::vector<RowData> rows;
    Cells cells;           // the values of every row, row after row
    std::vector<int> view; // rows visible under the filter, in order
    int pos = 0;           // index into view; view.size() is EOF, -1 BOF
    bool afterDelete = false;
    std::vector<ChildSpec> children;

    void reset()
    {
        open = false;
        result = noColumns();
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
    std::span<Variant> values(const RowData& row) { return {cells.at(row.first), result->columns.size()}; }
    std::span<const Variant> values(const RowData& row) const { return {cells.at(row.first), result->columns.size()}; }
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

    /// Two names of one length, case ignored. A loop reads its fields by name on every
    /// row: names of plain letters are compared as such, any other goes to Qt's folding.
    static bool sameName(QStringView a, QStringView b)
    {
        for (qsizetype i = 0; i < a.size(); ++i) {
            const char16_t x = a[i].unicode(), y = b[i].unicode();
            if (x == y)
                continue;
            if (x >= 0x80 || y >= 0x80)
                return a.compare(b, Qt::CaseInsensitive) == 0;
            const char16_t lower = x | 0x20;
            if (lower != (y | 0x20) || lower < u'a' || lower > u'z')
                return false;
        }
        return true;
    }

    int columnIndex(const QString& name) const
    {
        // The first column of that name, case ignored. Found without building a key: a
        // name of another length is passed over at once.
        auto find = [this](QStringView key) {
            for (size_t i = 0; i < result->columns.size(); ++i)
                if (result->columns[i].name.size() == key.size() && sameName(result->columns[i].name, key))
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

    void load(DataStore& st, const jet::Translation& tr, std::shared_ptr<CachedStatement>* known = nullptr);
    void loadShape(DataStore& st, const shape::Command& cmd);
    void rebuildView();
    void writeRow(RowData& row);
    void flushPending();
    std::int64_t reserveKey();
    Variant toStored(const Variant& v, int column) const;
};

namespace {

std::shared_ptr<const ResultShape> resultShape(DataStore& st, const backend::Statement& stmt,
                                               const jet::Translation& tr)
{
    auto shape = std::make_shared<ResultShape>();
    int n = stmt.columnCount();
    if (!tr.baseTable.isEmpty())
        shape->table = st.cache().table(tr.baseTable);
    const auto& table = shape->table;
    if (table && n > 0 && isRowidName(stmt.columnName(n - 1))) {
        shape->rowidColumn = n - 1;
        --n;
    }
    shape->columns.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        Column c{i < tr.columnNames.size() ? tr.columnNames[i] : stmt.columnName(i), stmt.declType(i)};
        ColumnType type = columnTypeOfDecl(c.declType);
        int base = -1;
        if (table) {
            // The server names a column but not its table: the select's one table is meant,
            // and the column's type is the table's.
            const auto origin = stmt.origin(i);
            const bool unnamed = origin && origin->first.isEmpty();
            if (origin && (unnamed || table->name.compare(origin->first, Qt::CaseInsensitive) == 0))
                base = table->index.value(origin->second.toLower(), -1);
            if (unnamed && base >= 0)
                type = table->types[size_t(base)];
        }
        shape->readTypes.push_back(type);
        shape->dates.push_back(type == ColumnType::Date ||
                               (size_t(i) < tr.dateColumns.size() && tr.dateColumns[size_t(i)]));
        shape->baseIndex.push_back(base);
        if (table && base >= 0 && base == table->key && shape->keyColumn < 0)
            shape->keyColumn = i;
        shape->columns.push_back(std::move(c));
    }
    return shape;
}

} // namespace

void Recordset::Impl::load(DataStore& st, const jet::Translation& tr, std::shared_ptr<CachedStatement>* known)
{
    store = &st;
    if (tr.statements.empty())
        return;
    if (tr.statements.size() > 1)
        runActions(st, tr, tr.statements.size() - 1);
    const jet::SqliteStatement& s = tr.statements.back();
    Lease lease(st.cache(), s.sql, known);
    backend::Statement* stmt = lease.get();
    stmt->bind(s.params);
    if (!lease.shape())
        lease.shape() = resultShape(st, *stmt, tr);
    const ResultShape& shape = *lease.shape();
    result = lease.shape();
    table = shape.table;
    keyColumn = shape.keyColumn;
    const int n = int(result->columns.size());

    const ColumnType* types = shape.readTypes.data();
    const std::vector<bool>& isDate = shape.dates;
    // A list is read again and again with much the same rows: room for as many as last
    // time, so that the values are not moved as the array grows.
    rows.reserve(lease.rowsLastTime());
    cells.reset(size_t(n), lease.rowsLastTime());
    bool more = stmt->step();
    // The statement's rows are read in its own transaction from here.
    st.connection().endRead();
    while (more) {
        RowData& row = rows.emplace_back();
        row.first = cells.appendWith([&](std::vector<Variant>& block) { stmt->appendRow(block, n, types, isDate); });
        if (shape.rowidColumn >= 0) {
            row.rowid = stmt->integer(shape.rowidColumn);
            row.hasRowid = true;
        } else if (keyColumn >= 0) {
            if (const Variant& key = cells.at(row.first)[keyColumn]; !key.isNull()) {
                row.rowid = key.rawLong();
                row.hasRowid = true;
            }
        }
        more = stmt->step();
    }
    if (!tr.order.terms.empty()) {
        // The statement left its rows' order to us: the rows take their places in it.
        const std::vector<size_t> order =
            jet::orderRows(tr.order, rows.size(), [&](size_t r) { return cells.at(rows[r].first); });
        std::vector<RowData> ordered;
        ordered.reserve(rows.size());
        for (const size_t r : order)
            ordered.push_back(rows[r]);
        rows = std::move(ordered);
    }
    if (rows.size() < lease.rowsLastTime() / 2) {
        // Far fewer rows than last time: the room left over is given back.
        rows.shrink_to_fit();
        cells.shrink();
    }
    lease.rowsLastTime() = rows.size();
    open = true;
    rebuildView();
}

void Recordset::Impl::loadShape(DataStore& st, const shape::Command& cmd)
{
    const auto text = st.cache().translate(cmd.sql);
    load(st, text->translation, &text->statement);
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

std::int64_t Recordset::Impl::reserveKey()
{
    // The next number is taken now, so that the screens can show it before saving, and
    // recorded at once as used: a number is never handed out twice, as Jet's counter.
    return store->connection().reserveKey(*table);
}

Variant Recordset::Impl::toStored(const Variant& v, int column) const
{
    const int base = result->baseIndex[size_t(column)];
    const ColumnType type = (table && base >= 0) ? table->types[size_t(base)] : result->readTypes[size_t(column)];
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
    backend::Connection& conn = store->connection();
    const std::span<Variant> rowValues = values(row);
    RowEdit& edit = row.edit();
    if (!row.isNew && row.hasRowid && result->columns.size() <= 64) {
        quint64 changed = 0;
        std::vector<Variant> values;
        for (size_t i = 0; i < result->columns.size(); ++i) {
            if (!edit.changed[i] || result->baseIndex[i] < 0)
                continue;
            changed |= quint64(1) << i;
            values.push_back(rowValues[i]);
        }
        if (!values.empty()) {
            UpdateText& update = result->updates[changed];
            if (update.sql.isEmpty()) {
                QStringList sets;
                for (size_t i = 0; i < result->columns.size(); ++i)
                    if (changed & (quint64(1) << i))
                        sets << QStringLiteral("%1 = %2").arg(quoteName(table->columns[result->baseIndex[i]]),
                                                              conn.marker(int(sets.size()) + 1));
                update.sql = QStringLiteral("UPDATE %1 SET %2 WHERE %3 = %4")
                                 .arg(quoteName(table->name), sets.join(QLatin1Char(',')), conn.rowIdentity(*table),
                                      conn.marker(int(values.size()) + 1));
            }
            values.push_back(Variant(std::int64_t(row.rowid)));
            std::shared_ptr<CachedStatement> known = update.statement.lock();
            Lease lease(store->cache(), update.sql, &known);
            update.statement = known;
            lease.get()->bind(values);
            lease.get()->run();
        }
        // The row is found by its key: the values as read are not kept.
        row.dirty = false;
        std::fill(edit.changed.begin(), edit.changed.end(), false);
        return;
    }
    const QString tableName = quoteName(table->name);
    const QString rowid = conn.rowIdentity(*table);
    QStringList names;
    std::vector<Variant> values;
    for (size_t i = 0; i < result->columns.size(); ++i) {
        if (!edit.changed[i] || result->baseIndex[i] < 0)
            continue;
        names << quoteName(table->columns[result->baseIndex[i]]);
        values.push_back(rowValues[i]);
    }
    if (row.isNew) {
        if (table->key >= 0 && (keyColumn < 0 || !edit.changed[size_t(keyColumn)])) {
            names << quoteName(table->columns[table->key]);
            values.push_back(Variant(std::int64_t(row.rowid)));
        }
        QStringList marks;
        for (size_t i = 0; i < values.size(); ++i)
            marks << conn.marker(int(i) + 1);
        const QString sql = names.isEmpty()
                                ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(tableName)
                                : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                      .arg(tableName, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
        {
            Lease lease(store->cache(), sql);
            lease.get()->bind(values);
            lease.get()->run();
        }
        row.rowid = conn.lastInsertKey(*table);
        row.hasRowid = true;
        row.isNew = false;
        // The row as stored: the defaults of the columns not written show up at once.
        QStringList all;
        std::vector<int> positions;
        for (size_t i = 0; i < result->columns.size(); ++i) {
            if (result->baseIndex[i] >= 0 && !edit.changed[i]) {
                all << quoteName(table->columns[result->baseIndex[i]]);
                positions.push_back(int(i));
            }
        }
        if (!all.isEmpty()) {
            Lease reread(store->cache(), QStringLiteral("SELECT %1 FROM %2 WHERE %3 = %4")
                                             .arg(all.join(QLatin1Char(',')), tableName, rowid, conn.marker(1)));
            reread.get()->bind({Variant(std::int64_t(row.rowid))});
            if (reread.get()->step()) {
                for (size_t k = 0; k < positions.size(); ++k) {
                    const size_t i = size_t(positions[k]);
                    rowValues[i] = reread.get()->value(int(k), result->readTypes[i], result->dates[i]);
                }
            }
        }
    } else if (!names.isEmpty()) {
        QStringList sets;
        for (int i = 0; i < names.size(); ++i)
            sets << QStringLiteral("%1 = %2").arg(names[i], conn.marker(i + 1));
        const int idx = int(values.size()) + 1;
        QString where;
        if (row.hasRowid) {
            where = QStringLiteral("%1 = %2").arg(rowid, conn.marker(idx));
            values.push_back(Variant(std::int64_t(row.rowid)));
        } else {
            // A table without a key: the row is found again by the values it was read with.
            where = rowByValues(conn, *table, result->baseIndex, edit.original, values);
        }
        Lease lease(store->cache(),
                    QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(tableName, sets.join(QLatin1Char(',')), where));
        lease.get()->bind(values);
        lease.get()->run();
    }
    row.dirty = false;
    std::fill(edit.changed.begin(), edit.changed.end(), false);
    edit.original.assign(rowValues.begin(), rowValues.end());
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
    const ReadScope read(store.connection());
    const auto text = store.cache().translate(jetSql);
    if (text->translation.kind == jet::StatementKind::Select)
        d->load(store, text->translation, &text->statement);
    else
        openTranslated(text->translation, store);
}

void Recordset::OpenLocked(const QString& jetSql, DataStore& store)
{
    jet::Translation tr = store.cache().translate(jetSql)->translation;
    const QString lock = store.connection().rowLock();
    if (tr.kind == jet::StatementKind::Select && !tr.statements.empty() && !lock.isEmpty())
        tr.statements.back().sql += lock;
    openTranslated(tr, store);
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
    store.connection().endRead();
    Attachment attached(store.connection(), tr.intoFile);
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
    return int(d->result->columns.size());
}

const std::vector<Column>& Recordset::Columns() const
{
    return d->result->columns;
}

void Recordset::AddNew()
{
    d->requireOpen();
    d->flushPending();
    if (!d->table)
        throw VBError(3251, QStringLiteral("L'operazione richiesta non è supportata dall'oggetto o dal provider."));
    RowData row;
    row.edit().changed.assign(d->result->columns.size(), false);
    row.isNew = true;
    row.dirty = true;
    if (d->table->key >= 0)
        row.rowid = d->reserveKey();
    row.first = d->cells.append([](size_t) { return Variant::null(); });
    if (d->table->key >= 0 && d->keyColumn >= 0)
        d->cells.at(row.first)[d->keyColumn] = Variant(std::int64_t(row.rowid));
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
        backend::Connection& conn = d->store->connection();
        QString where = QStringLiteral("%1 = %2").arg(conn.rowIdentity(*d->table), conn.marker(1));
        std::vector<Variant> values;
        if (row.hasRowid) {
            values.push_back(Variant(std::int64_t(row.rowid)));
        } else {
            std::vector<Variant> read(d->values(row).begin(), d->values(row).end());
            const bool asRead = !row.edits || row.edits->original.empty();
            where = rowByValues(conn, *d->table, d->result->baseIndex, asRead ? read : row.edits->original, values);
        }
        Lease lease(d->store->cache(), QStringLiteral("DELETE FROM %1 WHERE %2").arg(quoteName(d->table->name), where));
        lease.get()->bind(values);
        lease.get()->run();
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
    for (const Column& c : d->result->columns)
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
        auto shape = std::make_shared<ResultShape>();
        shape->columns = all.result->columns;
        shape->readTypes = all.result->readTypes;
        shape->dates = all.result->dates;
        shape->baseIndex.assign(all.result->columns.size(), -1);
        v.result = std::move(shape);
        v.cells.reset(all.result->columns.size());
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
                copy.first = v.cells.append([&](size_t i) { return cells[i]; });
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
// RowLock

RowLock::RowLock(DataStore& store) : m_store(store)
{
    // Inside a transaction already: its end commits these writes too (or undoes them
    // with what came before).
    if (m_store.connection().inTransaction())
        return;
    try {
        m_store.connection().begin();
        m_open = true;
    } catch (const VBError&) {
        // A store another program holds for writing: each statement waits on its own.
    }
}

RowLock::~RowLock()
{
    if (!m_open)
        return;
    try {
        m_store.connection().commit();
    } catch (const VBError&) {
        m_store.connection().rollback();
    }
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
    RowEdit& edit = row.edit();
    if (edit.changed.empty())
        edit.changed.assign(d.result->columns.size(), false);
    const std::span<Variant> values = d.values(row);
    if (!row.hasRowid && edit.original.empty()) // a row found by its key needs no copy
        edit.original.assign(values.begin(), values.end());
    values[size_t(m_index)] = stored;
    edit.changed[size_t(m_index)] = true;
    row.dirty = true;
}

QString Field::Name() const
{
    return m_rs->d->result->columns[size_t(m_index)].name;
}

} // namespace store
