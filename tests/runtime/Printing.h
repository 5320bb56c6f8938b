#pragma once
// Readable QStrings in the runtime tests' failure messages.
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
