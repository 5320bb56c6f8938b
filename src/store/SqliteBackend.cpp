// The embedded store: one SQLite file with the dialect's functions and collation.
#include "runtime/Regional.h"
#include "runtime/VBError.h"
#include "store/Backend.h"
#include "store/DataStore.h"
#include "store/StoreErrors.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QUrl>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sqlite3.h>
#include <string>
#include <unordered_map>

namespace store::backend {

using vb::JetDate;
using vb::Variant;
using vb::VBError;

namespace {

const char* const kAttachedAlias = jet::IntoDatabase;

/// Texts that repeat down a column (a machine's name on every row of the machine) held
/// once: per column a small table of the texts read last, found by their bytes. A list of
/// 100k register rows holds a few hundred names, not 400k copies.
class SharedTexts
{
public:
    QString text(int column, const char* p, int n)
    {
        if (m_slots.size() <= size_t(column) * Slots)
            m_slots.resize((size_t(column) + 1) * Slots);
        const size_t at = size_t(column) * Slots + slotOf(p, size_t(n));
        Slot& slot = m_slots[at];
        // A slot never filled holds no text, not even an empty one: an empty value is read.
        if (slot.text.isNull() || slot.bytes.size() != size_t(n) || std::memcmp(slot.bytes.data(), p, size_t(n)) != 0) {
            if (slot.text.isNull())
                m_used.push_back(at);
            slot.bytes.assign(p, size_t(n));
            slot.text = n > 0 ? QString::fromUtf8(p, n) : QStringLiteral("");
        }
        return slot.text;
    }
    /// The texts are let go; the room for them is kept for the next run of the statement
    /// (a list read again would otherwise allocate and clear it each time).
    void clear()
    {
        for (const size_t at : m_used) {
            std::string().swap(m_slots[at].bytes);
            m_slots[at].text = QString();
        }
        m_used.clear();
    }

private:
    static constexpr size_t Slots = 256;
    /// The slot of a text: its length and its first and last eight bytes, mixed. Short
    /// names (a machine's, a model's) differ there; texts that do not only share a slot.
    static size_t slotOf(const char* p, size_t n)
    {
        std::uint64_t head = 0, tail = 0;
        if (n > 0)
            std::memcpy(&head, p, std::min<size_t>(n, 8));
        if (n > 8)
            std::memcpy(&tail, p + n - std::min<size_t>(n - 8, 8), std::min<size_t>(n - 8, 8));
        const std::uint64_t mixed = (head * 0x9E3779B97F4A7C15ull) ^ (tail * 0xC2B2AE3D27D4EB4Full) ^ n;
        return size_t((mixed * 0x165667B19E3779F9ull) >> 56) & (Slots - 1);
    }
    struct Slot
    {
        std::string bytes;
        QString text;
    };
    std::vector<Slot> m_slots;
    std::vector<size_t> m_used; ///< the slots holding a text, to let go without a walk of them all
};

class SqliteStatement final : public Statement
{
public:
    SqliteStatement(sqlite3* db, sqlite3_stmt* st) : m_db(db), m_st(st) { }
    ~SqliteStatement() override { sqlite3_finalize(m_st); }

    void bind(const std::vector<Variant>& params) override
    {
        for (size_t i = 0; i < params.size(); ++i)
            bindValue(int(i) + 1, params[i]);
    }

    bool step() override
    {
        const int rc = sqlite3_step(m_st);
        if (rc == SQLITE_ROW) {
            ++m_rows;
            return true;
        }
        if (rc != SQLITE_DONE)
            throw errors::fromSqlite(m_db);
        return false;
    }

    void reset() override
    {
        m_rows = 0;
        m_texts.clear();
        sqlite3_reset(m_st);
        sqlite3_clear_bindings(m_st);
    }

    int columnCount() const override { return sqlite3_column_count(m_st); }
    QString columnName(int i) const override { return QString::fromUtf8(sqlite3_column_name(m_st, i)); }
    QString declType(int i) const override
    {
        const char* decl = sqlite3_column_decltype(m_st, i);
        return decl ? QString::fromUtf8(decl) : QString();
    }
    std::optional<std::pair<QString, QString>> origin(int i) const override
    {
        const char* column = sqlite3_column_origin_name(m_st, i);
        const char* table = sqlite3_column_table_name(m_st, i);
        if (!column || !table)
            return std::nullopt;
        return std::pair{QString::fromUtf8(table), QString::fromUtf8(column)};
    }

private:
    /// Reads column i of the current row and hands it to `make` as the arguments of the
    /// Variant it is: Date columns (and date expressions) as dates, Yes/No as booleans.
    template <class Make> decltype(auto) read(int i, ColumnType type, bool date, Make&& make) const
    {
        // The column's value is looked up once and read through: each sqlite3_column_*
        // call would look it up again (one thread runs everything, see openSqlite).
        sqlite3_value* value = sqlite3_column_value(m_st, i);
        switch (sqlite3_value_type(value)) {
        case SQLITE_NULL: return make(Variant::null());
        case SQLITE_INTEGER: {
            const sqlite3_int64 v = sqlite3_value_int64(value);
            if (date)
                return make(JetDate{double(v)});
            if (type == ColumnType::Boolean)
                return make(v != 0);
            return make(std::int64_t(v));
        }
        case SQLITE_FLOAT: {
            const double d = sqlite3_value_double(value);
            if (date)
                return make(JetDate{d});
            if (type == ColumnType::Boolean)
                return make(d != 0.0);
            return make(d);
        }
        default: {
            const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(value));
            const int n = sqlite3_value_bytes(value);
            // A short result is read as it comes; sharing pays from a list's length on.
            QString s = m_rows > 64 ? m_texts.text(i, p, n) : QString::fromUtf8(p, n);
            if (date && !s.isEmpty()) {
                if (const auto serial = vb::regional::parseDateTime(s))
                    return make(JetDate{*serial});
            }
            return make(std::move(s));
        }
        }
    }

public:
    Variant value(int i, ColumnType type, bool date) const override
    {
        return read(i, type, date, [](auto&&... v) { return Variant(std::forward<decltype(v)>(v)...); });
    }

    void appendRow(std::vector<Variant>& into, int count, const ColumnType* types,
                   const std::vector<bool>& dates) const override
    {
        for (int i = 0; i < count; ++i)
            read(i, types[i], dates[size_t(i)],
                 [&](auto&&... v) { into.emplace_back(std::forward<decltype(v)>(v)...); });
    }

    std::int64_t integer(int i) const override { return sqlite3_column_int64(m_st, i); }

    void bindValue(int i, const Variant& v)
    {
        switch (v.type()) {
        case Variant::Type::Empty:
        case Variant::Type::Null: sqlite3_bind_null(m_st, i); break;
        case Variant::Type::Boolean: sqlite3_bind_int64(m_st, i, v.rawBool() ? -1 : 0); break;
        case Variant::Type::Integer:
        case Variant::Type::Long: sqlite3_bind_int64(m_st, i, v.rawLong()); break;
        case Variant::Type::Double:
        case Variant::Type::Date: sqlite3_bind_double(m_st, i, v.rawDouble()); break;
        case Variant::Type::String: {
            const QByteArray b = v.rawString().toUtf8();
            sqlite3_bind_text(m_st, i, b.constData(), int(b.size()), SQLITE_TRANSIENT);
            break;
        }
        }
    }

private:
    sqlite3* m_db;
    sqlite3_stmt* m_st;
    int m_rows = 0;
    mutable SharedTexts m_texts;
};

class SqliteConnection final : public Connection
{
public:
    explicit SqliteConnection(sqlite3* db) : m_db(db), m_schema(std::make_unique<jet::SqliteSchema>(db)) { }
    ~SqliteConnection() override
    {
        m_nextKey.clear();
        m_seqUpdate.reset();
        m_seqInsert.reset();
        m_schema.reset();
        sqlite3_close_v2(m_db);
    }

    std::unique_ptr<Statement> prepare(const QString& sql) override
    {
        sqlite3_stmt* st = nullptr;
        const QByteArray utf8 = sql.toUtf8();
        if (sqlite3_prepare_v2(m_db, utf8.constData(), int(utf8.size()), &st, nullptr) != SQLITE_OK) {
            sqlite3_finalize(st);
            throw errors::fromSqlite(m_db);
        }
        return std::make_unique<SqliteStatement>(m_db, st);
    }

    void exec(const QString& sql) override
    {
        if (sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw errors::fromSqlite(m_db);
    }

    jet::Translation translate(const QString& jetSql) override { return jet::translate(jetSql, m_schema.get()); }
    quint64 schemaVersion() override { return m_schema->version(); }
    void beginRead() override { m_schema->hold(); }
    void endRead() override { m_schema->release(); }
    std::int64_t lastInsertKey(const StoredTable&) override { return sqlite3_last_insert_rowid(m_db); }
    std::int64_t changes() override { return sqlite3_changes(m_db); }

    std::shared_ptr<StoredTable> table(const QString& name) override
    {
        auto info = std::make_shared<StoredTable>();
        auto st =
            prepare(QStringLiteral("SELECT m.name, p.name, p.type, p.pk, instr(upper(m.sql), 'AUTOINCREMENT') > 0 "
                                   "FROM sqlite_master AS m, pragma_table_info(m.name) AS p "
                                   "WHERE m.type = 'table' AND m.name = ?1 COLLATE NOCASE ORDER BY p.cid"));
        st->bind({Variant(name)});
        while (st->step()) {
            info->name = st->value(0, ColumnType::Text, false).toString();
            const QString col = st->value(1, ColumnType::Text, false).toString();
            const QString decl = st->value(2, ColumnType::Text, false).toString();
            ColumnType type = columnTypeOfDecl(decl);
            if (st->integer(3) == 1 && decl.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0) {
                info->key = int(info->columns.size());
                type = ColumnType::Counter;
            }
            info->autoincrement = st->integer(4) != 0;
            info->index.insert(col.toLower(), int(info->columns.size()));
            info->columns << col;
            info->types.push_back(type);
        }
        if (info->columns.isEmpty())
            return nullptr;
        return info;
    }

    bool tableExists(const QString& table, bool attached) override
    {
        const QString sql = QStringLiteral("SELECT 1 FROM %1.sqlite_master WHERE type IN ('table','view') AND "
                                           "name = ?1 COLLATE NOCASE")
                                .arg(attached ? QLatin1String(kAttachedAlias) : QLatin1String("main"));
        try {
            auto st = prepare(sql);
            st->bind({Variant(table)});
            return st->step();
        } catch (const VBError&) {
            return false;
        }
    }

    std::int64_t reserveKey(const StoredTable& table) override
    {
        // Kept prepared: a loop of AddNew takes a key for every row.
        std::unique_ptr<Statement>& next = m_nextKey[table.name];
        if (!next)
            next = prepare(QStringLiteral("SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ?1 "
                                          "COLLATE NOCASE), 0), coalesce((SELECT max(rowid) FROM \"%1\"), 0)) + 1")
                               .arg(QString(table.name).replace(QLatin1Char('"'), QLatin1String("\"\""))));
        const std::int64_t key = [&] {
            const auto done = qScopeGuard([&] { next->reset(); });
            next->bind({Variant(table.name)});
            if (!next->step())
                throw errors::fromSqlite(m_db);
            return next->integer(0);
        }();
        if (table.autoincrement) {
            keptRun(m_seqUpdate, "UPDATE sqlite_sequence SET seq = ?2 WHERE name = ?1 COLLATE NOCASE", table.name, key);
            if (changes() == 0)
                keptRun(m_seqInsert, "INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)", table.name, key);
        }
        return key;
    }

    void attach(const QString& file) override
    {
        auto st = prepare(QStringLiteral("ATTACH DATABASE ?1 AS %1").arg(QLatin1String(kAttachedAlias)));
        st->bind({Variant(file)});
        st->run();
    }

    void detach() override
    {
        sqlite3_exec(m_db, (QByteArray("DETACH DATABASE ") + kAttachedAlias).constData(), nullptr, nullptr, nullptr);
    }

    QString rowIdentity(const StoredTable&) const override { return QStringLiteral("rowid"); }
    QString marker(int n) const override { return QStringLiteral("?%1").arg(n); }
    QString sameValue() const override { return QStringLiteral("IS"); }
    QString rowLock() const override { return {}; }
    // A writing transaction takes the store's lock at once, so that two programs on one
    // file wait for each other instead of failing half way.
    void begin() override { exec(QStringLiteral("BEGIN IMMEDIATE")); }
    void commit() override { exec(QStringLiteral("COMMIT")); }
    void rollback() override { sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr); }
    bool inTransaction() const override { return !sqlite3_get_autocommit(m_db); }

    bool empty() override
    {
        auto st = prepare(QStringLiteral("SELECT count(*) FROM sqlite_master"));
        return st->step() && st->integer(0) == 0;
    }

    void createSchema(bool report) override
    {
        if (report)
            store::createReportSchema(m_db);
        else
            store::createSchema(m_db);
    }

    sqlite3* sqliteHandle() const override { return m_db; }

private:
    /// Runs a statement of the autonumbers' bookkeeping, prepared on its first use.
    void keptRun(std::unique_ptr<Statement>& slot, const char* sql, const QString& table, std::int64_t key)
    {
        if (!slot)
            slot = prepare(QString::fromLatin1(sql));
        const auto done = qScopeGuard([&] { slot->reset(); });
        slot->bind({Variant(table), Variant(key)});
        slot->run();
    }

    sqlite3* m_db;
    std::unique_ptr<jet::SqliteSchema> m_schema;
    /// The statements that take a table's next autonumber, by the table's name.
    std::unordered_map<QString, std::unique_ptr<Statement>> m_nextKey;
    std::unique_ptr<Statement> m_seqUpdate, m_seqInsert;
};

} // namespace

std::unique_ptr<Connection> openSqlite(const QString& path)
{
    // Nothing reads SQLite's count of its memory: without it, every block SQLite takes or
    // gives back (a sort's rows, a text read) goes without a lock of the whole process.
    // It can be set only before SQLite's first use; later it stays as it is.
    [[maybe_unused]] static const bool uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK;
    sqlite3* db = nullptr;
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
    if (sqlite3_open_v2(file.constData(), &db, flags, nullptr) != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_close(db);
        throw VBError(errors::Unspecified, QStringLiteral("Impossibile aprire il file '%1' (%2).").arg(path, message));
    }
    auto connection = std::make_unique<SqliteConnection>(db);
    sqlite3_busy_timeout(db, LockWaitMs);
    sqlite3_extended_result_codes(db, 0);
    // A committed statement is on the disk before the screen goes on: it survives a power
    // cut, not only the end of the program.
    connection->exec(readOnly
                         ? QStringLiteral("PRAGMA foreign_keys=OFF")
                         : QStringLiteral("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF"));
    jet::registerFunctions(db);
    return connection;
}

} // namespace store::backend
