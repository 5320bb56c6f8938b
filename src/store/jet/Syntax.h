#pragma once
/// @file Syntax.h
/// The Jet dialect's tokens and syntax tree: plain data, no behaviour. Literals are not
/// kept in the tree but in the lexer's list (Expr::literal is an index into it), so that
/// the tree of one statement shape serves every value.

#include "runtime/Variant.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace store::jet {

enum class TokenKind { End, Word, Bracketed, String, Number, Date, Param, Symbol };

struct Token
{
    TokenKind kind = TokenKind::End;
    QString text;     ///< word or name as written (no brackets), or the symbol
    int literal = -1; ///< String/Number/Date: index in Lexed::literals; Param: user parameter number
    int begin = 0;    ///< source position
    int end = 0;
};

struct Lexed
{
    std::vector<Token> tokens;         ///< always ends with an End token
    std::vector<vb::Variant> literals; ///< every literal and "?" in source order
    std::vector<int> userParams;       ///< indexes in literals that stand for "?"
    QString shape;                     ///< the token stream without literal values (cache key)
};

/// Splits a Jet statement; raises the provider's syntax error on a broken string,
/// bracket or date literal. Without tokens only the shape and the literals are made
/// (enough for a cache hit).
Lexed lex(const QString& source, bool withTokens = true);

/// A Jet date literal's text (between the #s): month/day/year as in the US, or
/// year-month-day, with an optional time; the day number, or nullopt.
std::optional<double> parseDateLiteral(const QString& text);

struct Select;

struct Expr
{
    enum class Kind {
        Literal,  ///< literal: index in Lexed::literals (also a "?" marker)
        Null,     ///< the keyword Null
        Boolean,  ///< True / False (number)
        Column,   ///< qualifier.name or name
        Star,     ///< * or qualifier.* (select list, Count(*))
        Unary,    ///< op: "-", "+", "NOT"
        Binary,   ///< op: arithmetic, "&", comparisons, "AND", "OR", "XOR", "EQV", "IMP", "LIKE"
        Call,     ///< name(args)
        IsNull,   ///< args[0] Is [Not] Null
        Between,  ///< args[0] [Not] Between args[1] And args[2]
        InList,   ///< args[0] [Not] In (args[1..])
        InSelect, ///< args[0] [Not] In (subquery)
        Exists,   ///< Exists (subquery)
        Subquery, ///< (subquery) as a value
    };
    Kind kind = Kind::Null;
    QString op;        ///< operator (upper case) or function name as written
    QString qualifier; ///< Column/Star: table or alias ("" if none)
    QString name;      ///< Column: column name
    int literal = -1;
    bool negated = false; ///< Not Like / Is Not Null / Not Between / Not In
    bool boolValue = false;
    std::vector<Expr> args;
    std::shared_ptr<Select> select;
    int begin = 0; ///< source span, for messages
    int end = 0;
};

struct TableRef
{
    enum class Kind { Table, Join, Subquery };
    Kind kind = Kind::Table;
    QString name;  ///< Table
    QString alias; ///< Table/Subquery
    enum class JoinType { Inner, Left, Right } join = JoinType::Inner;
    std::vector<TableRef> sides; ///< Join: left, right
    std::optional<Expr> on;
    std::shared_ptr<Select> select; ///< Subquery
};

struct SelectItem
{
    Expr expr;
    QString alias; ///< "" when none
};

struct OrderItem
{
    Expr expr;
    bool descending = false;
};

struct Select
{
    bool distinct = false;
    int topLiteral = -1; ///< TOP n: index of n in the literals
    bool topPercent = false;
    std::vector<SelectItem> items;
    QString into;
    int intoFileLiteral = -1;   ///< IN "file": index of the file name in the literals
    std::vector<TableRef> from; ///< comma-separated tables (cross product)
    std::optional<Expr> where;
    std::vector<Expr> groupBy;
    std::optional<Expr> having;
    std::vector<OrderItem> orderBy;
};

struct ColumnDef
{
    QString name;
    QString type;  ///< upper case type word ("VARCHAR", "INTEGER", "DATE", ...)
    int size = -1; ///< (n), -1 when none
    bool notNull = false;
    bool primaryKey = false;
};

struct Statement
{
    enum class Kind { Select, Insert, Update, Delete, CreateTable, AlterAdd, AlterDrop, DropTable };
    Kind kind = Kind::Select;
    std::shared_ptr<Select> select; ///< Select; Insert ... SELECT
    // Insert / Update / Delete / DDL
    QString table;
    std::vector<QString> columns;                   ///< Insert column list; AlterDrop column
    std::vector<Expr> values;                       ///< Insert VALUES
    std::optional<TableRef> target;                 ///< Update: the table or join being updated; Delete: FROM
    std::vector<std::pair<Expr, Expr>> assignments; ///< Update SET column = value
    std::optional<Expr> where;
    std::vector<ColumnDef> columnDefs; ///< CreateTable; AlterAdd (one)
};

/// Parses a lexed statement; raises the provider's syntax error with Jet's wording.
Statement parse(const QString& source, const Lexed& lexed);

/// The provider's syntax error with a given text.
[[noreturn]] void syntaxError(const QString& text);

} // namespace store::jet
