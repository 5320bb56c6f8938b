#pragma once
/// @file PostgresGenerator.h
/// The Jet dialect on the server store (PostgreSQL): the same syntax tree and static
/// types as the SQLite generator, written in the server's SQL, plus what the server
/// needs created with the schema (the collation, the column domains and the jet_*
/// functions the generated SQL calls).
///
/// On the server:
///  - names keep their case, always quoted ("Tbl_Macchina"); the generator spells them
///    as the schema does, so Jet's case-insensitive names still find them;
///  - parameters are $1..$n, bound in the same order as SQLite's ?1..?n;
///  - texts compare under the "jet" ICU collation (case ignored, accents kept);
///  - every table carries a hidden "jet_rowid bigserial" (the recordset's key for
///    writing rows back); "*" is spelled out so it never shows;
///  - an autonumber column is a serial, kept ahead of explicit values by a trigger;
///  - "SELECT ... INTO T IN file" writes the report store's schema rpt.

#include "store/jet/Jet.h"
#include "store/jet/SqliteGenerator.h"

namespace store::jet {

Generated generatePostgres(const Statement& st, const Lexed& lexed, const SchemaInfo* schema);

/// The report store's schema on the server.
inline constexpr const char* ReportSchema = "rpt";
/// The hidden key column every server table carries.
inline constexpr const char* RowidColumn = "jet_rowid bigserial";

/// A name quoted for the server.
QString postgresIdent(const QString& name);

/// The server's type for a column declared the SQLite way ("LONG", "DATE",
/// "VARCHAR(50) COLLATE JET NOT NULL", "INTEGER PRIMARY KEY AUTOINCREMENT", ...).
QString postgresType(const QString& sqliteDecl);

/// The trigger that keeps an autonumber column's sequence ahead of values written into it.
QString postgresCounterTrigger(const QString& table, const QString& column);

/// The Jet name of a server column's declared type, as SqliteSchema reports it
/// ("DATE", "LONG", "VARCHAR(50)", "COUNTER"...): domain or type name, its length,
/// and whether it draws from a sequence.
QString jetDeclOfPostgres(const QString& udtOrType, int length, bool serial);

/// The collation, domains and functions the generated SQL needs, in order; each
/// statement can run again on a database that has them (CREATE OR REPLACE).
QStringList postgresFunctionStatements();

} // namespace store::jet
