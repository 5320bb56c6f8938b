#pragma once
// The number of the run-time error a piece of code raises, for the tests that check it.
#include "runtime/VBError.h"

#include <functional>

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

/// The text of the VBError that @p f raises; "" when it raises none.
inline QString errorTextOf(const std::function<void()>& f)
{
    try {
        f();
    } catch (const vb::VBError& e) {
        return e.description();
    }
    return {};
}
