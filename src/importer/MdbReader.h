#pragma once
/// @file MdbReader.h
/// Reading an old Velmora.mdb (Jet 3 or Jet 4) through libmdb: its tables, their
/// columns and every row, values as they are stored (dates as Jet day numbers).

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace importer {

/// Jet's own column types, as the old file declares them.
enum class JetType {
    Boolean,
    Byte,
    Integer, ///< 16-bit
    Long,
    Currency,
    Single,
    Double,
    DateTime,
    Text,
    Memo,
    Binary, ///< OLE object or binary
    Guid,   ///< replication id
    Decimal,
    Other,
};

struct MdbColumnInfo
{
    QString name;
    JetType type = JetType::Other;
    int length = 0;    ///< characters, for Text
    int precision = 0; ///< for Decimal
    int scale = 0;     ///< for Decimal
    bool autoNumber = false;
};

struct MdbTableInfo
{
    QString name;
    std::vector<MdbColumnInfo> columns;
    qint64 rowCount = 0; ///< the count the file keeps in the table's definition
};

/// One stored value. Text is UTF-8. Jet keeps booleans as -1/0 integers and dates as
/// day numbers (days since 30/12/1899, the time as the fraction).
struct MdbValue
{
    enum Kind { Null, Integer, Real, Text, Blob } kind = Null;
    qint64 integer = 0;
    double real = 0;
    QByteArray bytes;
};

/// Why a file could not be read.
enum class MdbProblem { None, Missing, NotJet, Damaged };

/// An open old file. Not copyable; closes the file when destroyed.
class MdbReader
{
public:
    MdbReader();
    ~MdbReader();
    MdbReader(const MdbReader&) = delete;
    MdbReader& operator=(const MdbReader&) = delete;

    /// Opens the file and reads its catalogue of user tables. On failure problem() and
    /// detail() say why and nothing is open.
    bool open(const QString& path);
    MdbProblem problem() const { return m_problem; }
    /// A short Italian explanation of the failure.
    QString detail() const { return m_detail; }

    /// The user tables (no MSys* tables), in the file's catalogue order.
    const std::vector<MdbTableInfo>& tables() const { return m_tables; }

    /// Calls onRow for every row of the table, values in the columns' order. Returns the
    /// number of rows read, or -1 if the table cannot be read (detail() says why).
    /// onRow returns false to stop.
    qint64 readRows(const MdbTableInfo& table, const std::function<bool(const std::vector<MdbValue>&)>& onRow);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
    MdbProblem m_problem = MdbProblem::None;
    QString m_detail;
    std::vector<MdbTableInfo> m_tables;
};

} // namespace importer
