#pragma once
/// @file SqliteGenerator.h
/// Turns a parsed Jet statement into SQLite statements that give Jet's results: static
/// types (number, text, date) decide date arithmetic, text comparison under the JET
/// collation, conversions on assignment, and what SELECT INTO creates.

#include "store/jet/Jet.h"
#include "store/jet/Syntax.h"

namespace store::jet {

struct Generated
{
    Translation translation;      ///< params left empty
    std::vector<int> paramCounts; ///< per statement: how many literals it binds
    int intoFileLiteral = -1;
    bool cacheable = true; ///< false when a literal's value went into the SQL
};

/// The generator both dialects share: one syntax tree, one set of static types.
Generated generate(const Statement& st, const Lexed& lexed, const SchemaInfo* schema, Dialect dialect);

Generated generateSqlite(const Statement& st, const Lexed& lexed, const SchemaInfo* schema);

} // namespace store::jet
