#pragma once
// The boxes of one action read in a line: the last of those a search as you type shows
// key by key, the titles of a run of boxes, and the plain box of an error the store raised.

#include "runtime/MsgBox.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <vector>

namespace kit {

/// The last box shown since the last call; a failure when there was none.
inline vb::ShownBox lastBox()
{
    const auto shown = vb::MsgBoxService::takeShown();
    if (shown.empty()) {
        ADD_FAILURE() << "no box shown";
        return {};
    }
    return shown.back();
}

/// The titles of the boxes shown since the last call, in order.
inline QStringList titles()
{
    QStringList out;
    for (const auto& b : vb::MsgBoxService::takeShown())
        out << b.title;
    return out;
}

/// The plain box of an untrapped error: no icon, the error's number before its text.
inline ::testing::AssertionResult errorBox(const vb::ShownBox& box, long number)
{
    if (box.buttons == 0 && box.prompt.startsWith(QString::number(number) + QLatin1Char(' ')))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "[" << box.title.toStdString() << "] [" << box.prompt.toStdString() << "] "
                                         << box.buttons << " is not the box of error " << number;
}

} // namespace kit
