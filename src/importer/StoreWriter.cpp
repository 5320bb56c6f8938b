#include "importer/StoreWriter.h"

#include "runtime/VBError.h"
#include "store/Schema.h"
#include "store/jet/Jet.h"

#include <QHash>

#include <sqlite3.h>

namespace importer {

namespace {

// What a column holds, as far as the import cares: a number, a Jet date, a text, a long
// text, or something else. An old file and the store that disagree on this are resolved
// in favour of the old file, whose values must arrive as they are.
enum class Kind { Number, Date, Text, Memo, Other };

Kind kindOf(store::ColumnType t)
{
    switch (t) {
    case store::ColumnType::Date: return Kind::Date;
    case store::ColumnType::Text: return Kind::Text;
    case store::ColumnType::Memo: return Kind::Memo;
    case store::ColumnType::Unknown: return Kind::Other;
    default: return Kind::Number;
    }
}

Kind kindOf(JetType t)
{
    switch (t) {
    case JetType::DateTime: return Kind::Date;
    case JetType::Text: return Kind::Text;
    case JetType::Memo: return Kind::Memo;
    case JetType::Binary:
    case JetType::Guid:
    case JetType::Other: return Kind::Other;
    default: return Kind::Number;
    }
}

QString quoted(const QString& name)
{
    QString q = name;
    q.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

QString textColumn(sqlite3_stmt* stmt, int i)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
    return QString::fromUtf8(text ? text : "");
}

// A statement that runs once and is finalised however it ends.
class Query
{
public:
    Query(sqlite3* db, const QString& sql, const QStringList& params = {})
    {
        m_ok = sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &m_stmt, nullptr) == SQLITE_OK;
        for (int i = 0; m_ok && i < params.size(); ++i) {
            const QByteArray p = params.at(i).toUtf8();
            sqlite3_bind_text(m_stmt, i + 1, p.constData(), int(p.size()), SQLITE_TRANSIENT);
        }
    }
    ~Query() { sqlite3_finalize(m_stmt); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    bool next() { return m_ok && sqlite3_step(m_stmt) == SQLITE_ROW; }
    QString text(int i) const { return textColumn(m_stmt, i); }
    qint64 integer(int i) const { return sqlite3_column_int64(m_stmt, i); }
    bool isNull(int i) const { return sqlite3_column_type(m_stmt, i) == SQLITE_NULL; }

private:
    sqlite3_stmt* m_stmt = nullptr;
    bool m_ok = false;
};

} // namespace

StoreWriter::~StoreWriter()
{
    close();
}

QString StoreWriter::declaration(const MdbColumnInfo& column, bool asKey)
{
    if (asKey)
        return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    const QString collate = QStringLiteral(" COLLATE ") + QLatin1String(store::jet::Collation);
    switch (column.type) {
    case JetType::Boolean: return QStringLiteral("BIT");
    case JetType::Byte: return QStringLiteral("TINYINT");
    case JetType::Integer: return QStringLiteral("SMALLINT");
    case JetType::Long: return QStringLiteral("LONG");
    case JetType::Currency: return QStringLiteral("CURRENCY");
    case JetType::Single: return QStringLiteral("SINGLE");
    case JetType::Double: return QStringLiteral("DOUBLE");
    case JetType::DateTime: return QStringLiteral("DATE");
    case JetType::Text: return QStringLiteral("VARCHAR(%1)").arg(column.length > 0 ? column.length : 255) + collate;
    case JetType::Memo: return QStringLiteral("LONGTEXT") + collate;
    case JetType::Binary: return QStringLiteral("BLOB");
    case JetType::Guid: return QStringLiteral("GUID");
    case JetType::Decimal: return QStringLiteral("DECIMAL(%1,%2)").arg(column.precision).arg(column.scale);
    case JetType::Other: break;
    }
    return {};
}

bool StoreWriter::fail(const QString& what)
{
    const char* message = m_db ? sqlite3_errmsg(m_db) : "";
    m_error = what;
    if (message && *message && QString::fromUtf8(message) != QLatin1String("not an error"))
        m_error += QStringLiteral(" (%1)").arg(QString::fromUtf8(message));
    return false;
}

bool StoreWriter::exec(const QString& sql)
{
    if (sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return fail(QStringLiteral("il nuovo archivio non accetta l'istruzione «%1»").arg(sql.left(120)));
    return true;
}

bool StoreWriter::create(const QString& path)
{
    m_path = path;
    if (sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) !=
        SQLITE_OK)
        return fail(QStringLiteral("impossibile creare il file %1").arg(path));
    // The file is thrown away if anything fails, so no journal on disk is needed; the
    // one commit at the end still reaches the disk in full.
    if (!exec(QStringLiteral("PRAGMA journal_mode=MEMORY; PRAGMA cache_size=-65536")))
        return false;
    try {
        store::createSchema(m_db);
    } catch (const vb::VBError& e) {
        m_error = QStringLiteral("impossibile creare le tabelle del nuovo archivio (%1)").arg(e.description());
        return false;
    }
    return exec(QStringLiteral("BEGIN"));
}

bool StoreWriter::beginTable(const MdbTableInfo& table)
{
    sqlite3_finalize(m_insert);
    m_insert = nullptr;

    QString name = table.name;
    QString storeSql;
    {
        Query known(m_db,
                    QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name = ?1 "
                                   "COLLATE NOCASE"),
                    {table.name});
        if (known.next()) {
            name = known.text(0);
            storeSql = known.text(1);
        }
    }
    m_table = name;

    if (storeSql.isEmpty()) {
        // A table the store does not know: as the old file declares it.
        QStringList cols;
        bool keyTaken = false;
        for (const MdbColumnInfo& c : table.columns) {
            const bool key = c.autoNumber && !keyTaken;
            keyTaken = keyTaken || key;
            cols << quoted(c.name) + QLatin1Char(' ') + declaration(c, key);
        }
        if (!exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(quoted(name), cols.join(QStringLiteral(", ")))))
            return false;
    } else {
        QHash<QString, QString> conflicts; // lower-case name -> the old file's declaration
        QStringList missing;
        for (const MdbColumnInfo& c : table.columns) {
            const store::ColumnType have = store::columnType(m_db, name, c.name);
            bool exists = have != store::ColumnType::Unknown;
            if (!exists) {
                Query q(m_db, QStringLiteral("SELECT 1 FROM pragma_table_info(?1) WHERE name = ?2 COLLATE NOCASE"),
                        {name, c.name});
                exists = q.next();
            }
            if (!exists)
                missing << quoted(c.name) + QLatin1Char(' ') + declaration(c, false);
            else if (kindOf(have) != Kind::Other && kindOf(have) != kindOf(c.type))
                conflicts.insert(c.name.toLower(), declaration(c, false));
        }
        if (!conflicts.isEmpty() && !rebuild(name, storeSql, conflicts))
            return false;
        for (const QString& col : std::as_const(missing))
            if (!exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2").arg(quoted(name), col)))
                return false;
        // The store's seed rows give way to the old file's own.
        if (!exec(QStringLiteral("DELETE FROM %1").arg(quoted(name))))
            return false;
        Query hasSequence(m_db, QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'sqlite_sequence'"));
        if (hasSequence.next() && !exec(QStringLiteral("DELETE FROM sqlite_sequence WHERE name = '%1' COLLATE NOCASE")
                                            .arg(QString(name).replace(QLatin1Char('\''), QLatin1String("''")))))
            return false;
    }

    QStringList cols, params;
    for (int i = 0; i < int(table.columns.size()); ++i) {
        cols << quoted(table.columns[size_t(i)].name);
        params << QStringLiteral("?%1").arg(i + 1);
    }
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(quoted(name), cols.join(QStringLiteral(", ")), params.join(QStringLiteral(", ")));
    if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &m_insert, nullptr) != SQLITE_OK)
        return fail(QStringLiteral("impossibile scrivere nella tabella %1").arg(name));
    return true;
}

// SQLite cannot change a column's type in place: the (still empty) table is made again
// with the store's columns, defaults and key, and the old file's type where it differs.
bool StoreWriter::rebuild(const QString& name, const QString& storeSql, const QHash<QString, QString>& overrides)
{
    struct Col
    {
        QString name, type, dflt;
        bool notNull = false;
        int pk = 0;
    };
    std::vector<Col> cols;
    {
        Query info(m_db, QStringLiteral("SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_info(?1)"),
                   {name});
        while (info.next())
            cols.push_back({info.text(0), info.text(1), info.isNull(3) ? QString() : info.text(3), info.integer(2) != 0,
                            int(info.integer(4))});
    }
    QStringList keys;
    for (const Col& c : cols)
        if (c.pk > 0)
            keys << quoted(c.name);
    const bool autoIncrement = storeSql.contains(QLatin1String("AUTOINCREMENT"), Qt::CaseInsensitive);
    const QString collate = QStringLiteral(" COLLATE ") + QLatin1String(store::jet::Collation);

    QStringList defs;
    for (const Col& c : cols) {
        QString def = quoted(c.name) + QLatin1Char(' ');
        if (overrides.contains(c.name.toLower())) {
            def += overrides.value(c.name.toLower());
        } else if (c.pk > 0 && keys.size() == 1) {
            def += c.type + QStringLiteral(" PRIMARY KEY");
            if (autoIncrement && c.type.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0)
                def += QStringLiteral(" AUTOINCREMENT");
        } else {
            def += c.type;
            if (store::isTextType(store::columnTypeOfDecl(c.type)))
                def += collate;
        }
        if (c.notNull)
            def += QStringLiteral(" NOT NULL");
        if (!c.dflt.isEmpty())
            def += QStringLiteral(" DEFAULT ") + c.dflt;
        defs << def;
    }
    if (keys.size() > 1)
        defs << QStringLiteral("PRIMARY KEY (%1)").arg(keys.join(QStringLiteral(", ")));
    return exec(QStringLiteral("DROP TABLE %1").arg(quoted(name))) &&
           exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(quoted(name), defs.join(QStringLiteral(", "))));
}

bool StoreWriter::insert(const std::vector<MdbValue>& row)
{
    for (int i = 0; i < int(row.size()); ++i) {
        const MdbValue& v = row[size_t(i)];
        switch (v.kind) {
        case MdbValue::Null: sqlite3_bind_null(m_insert, i + 1); break;
        case MdbValue::Integer: sqlite3_bind_int64(m_insert, i + 1, v.integer); break;
        case MdbValue::Real: sqlite3_bind_double(m_insert, i + 1, v.real); break;
        case MdbValue::Text:
            sqlite3_bind_text(m_insert, i + 1, v.bytes.constData(), int(v.bytes.size()), SQLITE_STATIC);
            break;
        case MdbValue::Blob:
            sqlite3_bind_blob(m_insert, i + 1, v.bytes.constData(), int(v.bytes.size()), SQLITE_STATIC);
            break;
        }
    }
    const int rc = sqlite3_step(m_insert);
    sqlite3_reset(m_insert);
    if (rc != SQLITE_DONE)
        return fail(QStringLiteral("una riga della tabella %1 non è stata accettata").arg(m_table));
    return true;
}

qint64 StoreWriter::endTable()
{
    sqlite3_finalize(m_insert); // the next table, or the commit, needs it gone
    m_insert = nullptr;
    Query count(m_db, QStringLiteral("SELECT COUNT(*) FROM %1").arg(quoted(m_table)));
    return count.next() ? count.integer(0) : -1;
}

bool StoreWriter::finish()
{
    if (!exec(QStringLiteral("COMMIT")))
        return false;
    if (!close())
        return fail(QStringLiteral("impossibile chiudere il file %1").arg(m_path));
    return true;
}

bool StoreWriter::close()
{
    sqlite3_finalize(m_insert);
    m_insert = nullptr;
    const int rc = sqlite3_close(m_db);
    m_db = nullptr;
    return rc == SQLITE_OK;
}

} // namespace importer
