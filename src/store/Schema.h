#pragma once
/// @file Schema.h
/// The tables, stored queries and seed rows of a new Velmora store, and what the store
/// knows of a column's type (Date, text or number), which decides how values go in and
/// come out of recordsets.

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

struct sqlite3;

namespace store {

/// A column's type as Jet declared it; the store keeps the declared name in SQLite.
enum class ColumnType {
    Unknown, ///< an expression or a column of no declared type
    Counter, ///< autonumber key (Long)
    Long,
    Integer, ///< VB's 16-bit Integer
    Double,
    Currency,
    Boolean,
    Date, ///< Jet day number, the time as the fraction
    Text, ///< Text(n)
    Memo,
};

/// The type a declared SQLite column type stands for ("DATE", "VARCHAR(255)", "Integer"...).
ColumnType columnTypeOfDecl(const QString& declType);
bool isTextType(ColumnType t);
bool isNumberType(ColumnType t);

/// Creates every table, view and seed row of a new store on an open connection (the
/// store's functions and collation are registered on it first). Raises vb::VBError.
/// The columns and table the start-up upgrade adds are left out on purpose.
void createSchema(sqlite3* db);

/// Creates the indexes of the intervention statistics and of the register's stop shift
/// on an open connection, unless they are there already: a new store gets them with its
/// tables, an older one at start-up.
/// Raises vb::VBError.
void createIndexes(sqlite3* db);

/// Creates the report store's empty file (it holds the copy of the plan only).
void createReportSchema(sqlite3* db);

/// The same tables, seed rows and report schema (rpt) for the server store (PostgreSQL),
/// after jet::postgresFunctionStatements(): one statement an entry.
QStringList postgresSchemaStatements();

/// The stored queries of the notes reports on the server: the server checks a view's
/// columns when it is made, so these run once the start-up upgrade has added them.
QStringList postgresViewStatements();

/// A table on the server with columns declared the SQLite way ("VARCHAR(50) COLLATE JET",
/// "INTEGER PRIMARY KEY AUTOINCREMENT"...): the table, its hidden key and the autonumber's
/// trigger.
QStringList postgresTable(const QString& name, const std::vector<std::pair<QString, QString>>& columns);

/// The type of table.column on a connection (names compared without regard to case);
/// Unknown when the table or column does not exist.
ColumnType columnType(sqlite3* db, const QString& table, const QString& column);

/// The five parameter commands: their Jet text by name ("" if no such command).
QString parameterCommand(const QString& name);
QStringList parameterCommandNames();

/// File names in the program's folder.
inline constexpr const char* StoreFileName = "Velmora.sqlite";
inline constexpr const char* ReportStoreFileName = "RPT_Velmora.sqlite";

} // namespace store
