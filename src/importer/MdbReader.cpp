#include "importer/MdbReader.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QtEndian>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <mdbtools.h>
#include <unistd.h>

namespace importer {

namespace {

constexpr int JetHeaderSize = 0x20;
// What libmdb's OLE reader may copy into a bound buffer at once.
constexpr size_t OleChunk = MDB_BIND_SIZE * 64;

/// libmdb writes its own English lines to standard error on a damaged file ("Unable to
/// read table ..."); the user gets our Italian message instead. Standard error goes to
/// the null device while libmdb reads.
class LibraryQuiet
{
public:
    LibraryQuiet()
    {
        std::fflush(stderr);
        m_saved = ::dup(STDERR_FILENO);
        const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (m_saved >= 0 && null >= 0)
            ::dup2(null, STDERR_FILENO);
        if (null >= 0)
            ::close(null);
    }
    ~LibraryQuiet()
    {
        std::fflush(stderr);
        if (m_saved >= 0) {
            ::dup2(m_saved, STDERR_FILENO);
            ::close(m_saved);
        }
    }
    LibraryQuiet(const LibraryQuiet&) = delete;
    LibraryQuiet& operator=(const LibraryQuiet&) = delete;

private:
    int m_saved = -1;
};

JetType jetType(int mdbType)
{
    switch (mdbType) {
    case MDB_BOOL: return JetType::Boolean;
    case MDB_BYTE: return JetType::Byte;
    case MDB_INT: return JetType::Integer;
    case MDB_LONGINT:
    case MDB_COMPLEX: return JetType::Long;
    case MDB_MONEY: return JetType::Currency;
    case MDB_FLOAT: return JetType::Single;
    case MDB_DOUBLE: return JetType::Double;
    case MDB_DATETIME: return JetType::DateTime;
    case MDB_TEXT: return JetType::Text;
    case MDB_MEMO: return JetType::Memo;
    case MDB_OLE:
    case MDB_BINARY: return JetType::Binary;
    case MDB_REPID: return JetType::Guid;
    case MDB_NUMERIC: return JetType::Decimal;
    default: return JetType::Other;
    }
}

// A Single as Access shows it (0.1, not 0.100000001490116): its shortest decimal form.
double singleValue(float f)
{
    char buf[32];
    const auto res = std::to_chars(buf, buf + sizeof buf - 1, f);
    *res.ptr = '\0';
    return std::strtod(buf, nullptr);
}

// libmdb converts text through a buffer of its bind size; make it big enough for the
// value in UTF-8 (at most three bytes for each stored byte), so nothing is cut.
char* textOf(MdbHandle* mdb, MdbColumn* col, size_t storedBytes)
{
    mdb_set_bind_size(mdb, storedBytes * 3 + 64);
    char* text = mdb_col_to_string(mdb, mdb->pg_buf, col->cur_value_start, col->col_type, col->cur_value_len);
    mdb_set_bind_size(mdb, MDB_BIND_SIZE);
    return text;
}

void takeText(MdbValue& v, char* text)
{
    v.kind = MdbValue::Text;
    v.bytes = QByteArray(text ? text : "");
    g_free(text);
}

} // namespace

struct MdbReader::Impl
{
    MdbHandle* mdb = nullptr;
    QHash<QString, MdbCatalogEntry*> entries;

    ~Impl()
    {
        if (mdb)
            mdb_close(mdb);
    }

    // The value of a column of the row libmdb has just fetched.
    void value(MdbColumn* col, MdbValue& v) const
    {
        const unsigned char* pg = mdb->pg_buf;
        const int start = col->cur_value_start;
        v = MdbValue{};
        // A boolean lives in the row's null mask: libmdb leaves 0 there for "set".
        if (col->col_type == MDB_BOOL) {
            v.kind = MdbValue::Integer;
            v.integer = col->cur_value_len == 0 ? -1 : 0;
            return;
        }
        if (col->cur_value_len == 0)
            return; // Null (and, for texts, also a zero-length text: see the docs)
        switch (col->col_type) {
        case MDB_BYTE:
            v.kind = MdbValue::Integer;
            v.integer = pg[start];
            break;
        case MDB_INT:
            v.kind = MdbValue::Integer;
            v.integer = qFromLittleEndian<qint16>(pg + start);
            break;
        case MDB_LONGINT:
        case MDB_COMPLEX:
            v.kind = MdbValue::Integer;
            v.integer = qFromLittleEndian<qint32>(pg + start);
            break;
        case MDB_MONEY:
            // Currency is a count of ten-thousandths.
            v.kind = MdbValue::Real;
            v.real = double(qFromLittleEndian<qint64>(pg + start)) / 10000.0;
            break;
        case MDB_FLOAT:
            v.kind = MdbValue::Real;
            v.real = singleValue(qFromLittleEndian<float>(pg + start));
            break;
        case MDB_DOUBLE:
        case MDB_DATETIME:
            v.kind = MdbValue::Real;
            v.real = qFromLittleEndian<double>(pg + start);
            break;
        case MDB_NUMERIC: {
            char* text = mdb_numeric_to_string(mdb, start, col->col_scale, col->col_prec);
            v.kind = MdbValue::Real;
            v.real = std::strtod(text, nullptr);
            g_free(text);
            break;
        }
        case MDB_TEXT: takeText(v, textOf(mdb, col, size_t(col->cur_value_len))); break;
        case MDB_MEMO: {
            // The first word holds the memo's stored length under two flag bits.
            const quint32 stored = qFromLittleEndian<quint32>(pg + start) & 0x3fffffffu;
            takeText(v, textOf(mdb, col, stored));
            break;
        }
        case MDB_REPID: takeText(v, mdb_uuid_to_string(mdb->pg_buf, start)); break;
        case MDB_BINARY:
            v.kind = MdbValue::Blob;
            v.bytes = QByteArray(reinterpret_cast<const char*>(pg + start), col->cur_value_len);
            break;
        case MDB_OLE: {
            size_t size = 0;
            void* data = mdb_ole_read_full(mdb, col, &size);
            v.kind = MdbValue::Blob;
            v.bytes = QByteArray(static_cast<const char*>(data), qsizetype(size));
            std::free(data);
            break;
        }
        default: break;
        }
    }
};

MdbReader::MdbReader() : d(std::make_unique<Impl>())
{
}

MdbReader::~MdbReader() = default;

bool MdbReader::open(const QString& path)
{
    auto fail = [this](MdbProblem problem, const QString& detail) {
        m_problem = problem;
        m_detail = detail;
        m_tables.clear();
        d = std::make_unique<Impl>();
        return false;
    };

    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return fail(MdbProblem::Missing, QStringLiteral("il file non esiste o non si può leggere"));
    // A Jet file starts with its signature; its version byte tells the page size.
    const QByteArray header = file.read(JetHeaderSize);
    const QByteArray signature = header.mid(4, 15);
    if (header.size() < JetHeaderSize || (signature != "Standard Jet DB" && signature != "Standard ACE DB"))
        return fail(MdbProblem::NotJet, QStringLiteral("non è un database Access (Jet)"));
    const qint64 pageSize = header.at(0x14) == 0 ? 2048 : 4096;
    if (file.size() < 2 * pageSize || file.size() % pageSize != 0)
        return fail(MdbProblem::Damaged, QStringLiteral("il file è troncato"));
    file.close();

    const LibraryQuiet quiet;
    d->mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!d->mdb)
        return fail(MdbProblem::Damaged, QStringLiteral("l'intestazione del file è illeggibile"));
    if (!mdb_read_catalog(d->mdb, MDB_TABLE))
        return fail(MdbProblem::Damaged, QStringLiteral("l'elenco delle tabelle è illeggibile"));

    for (unsigned i = 0; i < d->mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(d->mdb->catalog, i));
        if (!mdb_is_user_table(entry))
            continue;
        const QString name = QString::fromUtf8(entry->object_name);
        MdbTableDef* def = mdb_read_table(entry);
        if (!def || !mdb_read_columns(def)) {
            if (def)
                mdb_free_tabledef(def);
            return fail(MdbProblem::Damaged, QStringLiteral("la tabella %1 è illeggibile").arg(name));
        }
        MdbTableInfo info;
        info.name = name;
        info.rowCount = def->num_rows;
        const bool jet3 = d->mdb->f->jet_version == MDB_VER_JET3;
        for (unsigned c = 0; c < def->num_cols; ++c) {
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c));
            MdbColumnInfo ci;
            ci.name = QString::fromUtf8(col->name);
            ci.type = jetType(col->col_type);
            // Jet 4 keeps text sizes in bytes of UCS-2.
            ci.length = ci.type == JetType::Text ? (jet3 ? col->col_size : col->col_size / 2) : 0;
            ci.precision = col->col_prec;
            ci.scale = col->col_scale;
            ci.autoNumber = col->is_long_auto != 0;
            info.columns.push_back(ci);
        }
        mdb_free_tabledef(def);
        d->entries.insert(name, entry);
        m_tables.push_back(std::move(info));
    }
    m_problem = MdbProblem::None;
    m_detail.clear();
    return true;
}

qint64 MdbReader::readRows(const MdbTableInfo& table, const std::function<bool(const std::vector<MdbValue>&)>& onRow)
{
    const LibraryQuiet quiet;
    MdbCatalogEntry* entry = d->entries.value(table.name);
    MdbTableDef* def = entry ? mdb_read_table(entry) : nullptr;
    if (!def || !mdb_read_columns(def) || def->num_cols != table.columns.size()) {
        if (def)
            mdb_free_tabledef(def);
        m_detail = QStringLiteral("la tabella %1 è illeggibile").arg(table.name);
        return -1;
    }
    // OLE objects are read through a bound buffer; everything else straight from the page.
    std::vector<std::vector<char>> oleBuffers;
    for (unsigned c = 0; c < def->num_cols; ++c) {
        auto* col = static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c));
        if (col->col_type == MDB_OLE) {
            oleBuffers.emplace_back(OleChunk);
            mdb_bind_column(def, int(c) + 1, oleBuffers.back().data(), nullptr);
        }
    }
    mdb_rewind_table(def);
    std::vector<MdbValue> row(def->num_cols);
    qint64 count = 0;
    while (mdb_fetch_row(def)) {
        for (unsigned c = 0; c < def->num_cols; ++c)
            d->value(static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c)), row[c]);
        ++count;
        if (!onRow(row))
            break;
    }
    mdb_free_tabledef(def);
    return count;
}

} // namespace importer
