#pragma once
// Several driver commands in a row, as a user's steps: each runs as its own call, and an
// error answer fails the test.

#include "support/InProcessDrive.h"

#include <initializer_list>

namespace kit {

inline void run(InProcessDrive& drive, std::initializer_list<QString> lines)
{
    for (const QString& line : lines)
        drive(line);
}

} // namespace kit
