#pragma once
/// @file Shape.h
/// The hierarchical commands of the reports: "SHAPE {parent} APPEND ({child} RELATE a TO
/// b[, c TO d]) AS Dati", children possibly shaped themselves. The store runs each
/// statement on its own and relates the rows in memory, by the relation as written.

#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace store::shape {

struct Command;

struct Child
{
    std::shared_ptr<Command> command;
    QString name;                                    ///< the member name ("Dati")
    std::vector<std::pair<QString, QString>> relate; ///< parent column, child column
};

struct Command
{
    QString sql; ///< the statement between the braces, as written
    std::vector<Child> children;
};

/// True when the text is a SHAPE command (leading blanks ignored).
bool isShape(const QString& text);

/// Parses a SHAPE command; raises vb::VBError (the provider's syntax error) on a
/// malformed one.
std::shared_ptr<Command> parse(const QString& text);

} // namespace store::shape
