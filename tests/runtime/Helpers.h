#pragma once
// Small helpers of the runtime tests.
#include "support/ErrorOf.h"

#include <QString>

#include <ostream>

/// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
