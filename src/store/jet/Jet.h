#pragma once
/// @file Jet.h
/// The Jet SQL dialect: statements as the screens write them, translated to SQLite.
/// Lexer -> parser -> syntax tree -> generator; literals lifted out and bound, so one
/// translation serves every value of the same statement shape.
///
/// How the store uses it:
///  1. registerFunctions(db) once on every connection (also the report store's).
///  2. One SqliteSchema per connection, passed to every translate() on that connection:
///     the generator learns from it which columns are dates, texts and numbers (date
///     arithmetic, text comparison under the JET collation, what SELECT INTO creates,
///     which result columns read back as dates).
///  3. translate(jet, &schema), then prepare and run Translation::statements in order,
///     binding params[i] to ?(i+1). A Select's rows come from the last statement.
///  4. A failing step: errorFromMessage(sqlite3_errmsg(db)) gives the VB error that one
///     of our SQL functions raised (94 for Val(Null), ...); anything else is the store's
///     to map (no such column, no such table, ...).
///
/// On the server store the same translation comes with Dialect::Postgres (parameters
/// $1..$n in the same order); store/pg/PgSession runs it (PostgresGenerator.h).

#include "runtime/VBError.h"
#include "runtime/Variant.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace store::jet {

enum class StatementKind {
    Select,     ///< a plain SELECT (rows to read)
    SelectInto, ///< SELECT ... INTO T [IN "file"]: creates T from the select
    Insert,
    Update,
    Delete,
    CreateTable,
    AlterTable,
    DropTable,
    Other,
};

/// One SQLite statement to run, with its bound values.
struct SqliteStatement
{
    QString sql;
    std::vector<vb::Variant> params; ///< bound to ?1, ?2, ... in order (dates as REAL day numbers)
};

/// An order a select's rows are put in after reading them, a total one (a grouping's
/// sort that SQLite would make over every counted row): term by term, as SQLite orders
/// (Null first, numbers before texts, texts under the JET collation).
struct RowOrder
{
    struct Term
    {
        enum class Kind {
            Value,   ///< the column's value
            Val,     ///< Val of the column's value (Null raises 94, as the SQL's Val)
            CountOf, ///< the column's count, 0 where the column `of` is Null
        } kind = Kind::Value;
        int column = 0;
        bool descending = false;
        int of = -1;
    };
    std::vector<Term> terms;
    /// How many leading terms the rows come in order by already: only the runs of rows
    /// equal on those are sorted (all of them when the rows come otherwise).
    size_t arriving = 0;
};

/// The order `order` gives rows 0..count-1, whose values row(i) gives: row indexes in
/// order. Raises as the SQL's Val does.
std::vector<size_t> orderRows(const RowOrder& order, size_t count,
                              const std::function<const vb::Variant*(size_t)>& row);

/// What the generator made of one Jet statement.
struct Translation
{
    StatementKind kind = StatementKind::Other;
    /// Statements to run in order (SELECT INTO gives CREATE TABLE + INSERT ... SELECT).
    std::vector<SqliteStatement> statements;
    /// For Select: the single base table when the select reads one table with its
    /// rowid (so that a recordset can write edited rows back); "" otherwise. When set,
    /// the last result column is that table's rowid, named "jet_rowid", which the
    /// recordset keeps to itself.
    QString baseTable;
    /// For SelectInto: the target table, and the other store's file for "IN" ("" if none).
    /// With a file, the statements name the target as IntoDatabase.T: attach the file
    /// under that name first (and check there for error 3010 before running).
    /// For CreateTable/AlterTable/DropTable/Insert/Update/Delete: the table acted on.
    QString intoTable;
    QString intoFile;
    /// For Select: one entry per result column (the "*" of a known table expanded),
    /// true where the values are Jet dates (read back as dates). Empty when a "*" could
    /// not be expanded (no schema): then go by the column's declared type.
    std::vector<bool> dateColumns;
    /// Result column names as Jet gives them (alias, column name, "Expr1000", ...),
    /// matching dateColumns; the rowid column is not listed.
    QStringList columnNames;
    /// Positions in params of the statement's own "?" markers, in order: the caller's
    /// values for a parameter command go there.
    std::vector<int> userParams;
    /// For Select: the order its rows take once read, when the statement leaves it to the
    /// reader (orderRows); empty when SQLite gives them in order.
    RowOrder order;
};

/// A column's kind as far as the dialect cares.
enum class ColumnKind { Unknown, Number, Text, Date, Boolean };

struct ColumnInfo
{
    QString name;
    QString declType; ///< as declared in SQLite ("DATE", "VARCHAR(255)", ...)
    ColumnKind kind = ColumnKind::Unknown;
    bool rowidKey = false; ///< the table's INTEGER PRIMARY KEY (a counter): one row per value
};

struct TableInfo
{
    QString name;
    bool isView = false;
    std::vector<ColumnInfo> columns;
    const ColumnInfo* column(const QString& name) const; ///< case-insensitive, nullptr if none
};

/// The kind a declared SQLite type stands for ("DATE" -> Date, "VARCHAR(50)" -> Text, ...).
ColumnKind kindOfDecl(const QString& declType);

/// What the generator asks of the store's tables. Translations are cached per schema
/// object and version, so a changed table never serves an old translation.
class SchemaInfo
{
public:
    SchemaInfo();
    virtual ~SchemaInfo() = default;
    /// A table or view by name (case-insensitive); nullptr when there is none.
    virtual const TableInfo* table(const QString& name) const = 0;
    /// Changes whenever the tables change.
    virtual quint64 version() const = 0;
    /// Unique for the life of the program (cache key).
    quint64 identity() const { return m_identity; }

private:
    quint64 m_identity;
};

/// SchemaInfo over one SQLite connection (main database), read lazily with PRAGMA
/// table_info and dropped whenever SQLite's schema_version moves.
class SqliteSchema : public SchemaInfo
{
public:
    explicit SqliteSchema(sqlite3* db);
    ~SqliteSchema() override;
    const TableInfo* table(const QString& name) const override;
    quint64 version() const override;
    /// From here the version is read once, in a read transaction that stays open until
    /// release(): a SELECT stepped meanwhile reads its rows in that same transaction, under
    /// the very schema its translation was made for, without beginning one of its own.
    /// Nothing that writes may run before release().
    void hold();
    void release();

private:
    void refresh() const;
    sqlite3* m_db;
    mutable sqlite3_stmt* m_versionStmt = nullptr;
    mutable quint64 m_version = ~quint64(0);
    bool m_hold = false;
    mutable bool m_reading = false; ///< the version's statement keeps its transaction open
    mutable std::unordered_map<std::string, std::unique_ptr<TableInfo>> m_tables;
};

/// The SQL a translation is written in: the embedded store's, or the server's.
enum class Dialect { Sqlite, Postgres };

/// Translates one Jet statement. Raises vb::VBError with the provider's syntax error
/// (number err::SyntaxError, Jet's Italian text) for what Jet refuses; an unknown
/// function is refused here too. Unknown tables and columns are left to SQLite's
/// prepare. Not thread-safe (one thread runs everything). On the server the parameters
/// are $1, $2, ... bound in the same order, and "IN file" targets the report schema.
Translation translate(const QString& jetSql, const SchemaInfo* schema = nullptr, Dialect dialect = Dialect::Sqlite);

/// Empties the translation cache (tests and benchmarks).
void clearCache();

/// Registers on a connection what the generated SQL calls: the VBA functions
/// (Val, Format, Left, Right, Mid, Len, Year, Month, Day, Hour, Minute, Second,
/// Date, Now, Nz, CStr, CInt, CDbl, jet_concat for "&", ...), the aggregates over text
/// numbers, the JET collation (case-insensitive, accent-respecting) and LIKE with
/// ANSI-92 wildcards (also as SQLite's own like()).
void registerFunctions(sqlite3* db);

/// The VB error one of our SQL functions raised, from SQLite's error message; nullopt
/// when the message is SQLite's own.
std::optional<vb::VBError> errorFromMessage(const QString& sqliteMessage);

/// Name of the collation every text column and text comparison uses.
inline constexpr const char* Collation = "JET";
/// Schema name under which the store attaches the file of "SELECT ... INTO T IN 'file'".
inline constexpr const char* IntoDatabase = "jet_in";

/// Jet's (provider) error numbers besides err::SyntaxError.
namespace jeterr {
constexpr int TypeMismatchInCriteria = -2147217913; ///< "Tipo di dati non corrispondenti nell'espressione criterio."
constexpr int TooFewParameters = -2147217904;       ///< "Parametri insufficienti. Previsto 1."
} // namespace jeterr

} // namespace store::jet
