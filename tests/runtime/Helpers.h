#pragma once
// Small helpers of the runtime tests.
#include "runtime/VBError.h"

#include <QString>
#include <functional>
#include <ostream>

/// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

/// The number of the VBError that @p f raises; 0 when it raises none.
inline int errorOf(const std::function<void()>& f)
{
    try {
        f();
    } catch (const vb::VBError& e) {
        return e.number();
    }
    return 0;
}
