#pragma once
/// @file StoreErrors.h
/// The store's failures as the provider reported them: numbers and Italian texts of
/// the Jet provider, made from what SQLite says.

#include "runtime/VBError.h"
#include "store/jet/Jet.h"

struct sqlite3;

namespace store::errors {

constexpr int NotFound = -2147217865;               ///< table or query not found (0x80040E37)
constexpr int TooFewParameters = -2147217904;       ///< an unknown name taken as a parameter (0x80040E10)
constexpr int TypeMismatchInCriteria = -2147217913; ///< 0x80040E07
constexpr int Unspecified = -2147467259;            ///< 0x80004005

/// The error of the connection's last failed call.
vb::VBError fromSqlite(sqlite3* db);

/// The same faults met on the server store: its SQLSTATE, primary message and detail
/// (PostgreSQL's words) to the number and text the embedded store gives for them.
vb::VBError fromPostgres(const QString& sqlState, const QString& message, const QString& detail);

/// 3010 for a SELECT INTO onto a table that exists.
vb::VBError tableExists(const QString& table);

/// The same failure worded for the kind of statement that met it (a DROP of a missing
/// table, a column added twice).
vb::VBError forStatement(const vb::VBError& e, jet::StatementKind kind);

} // namespace store::errors
