#include "support/Boxes.h"

namespace kit {

::testing::AssertionResult boxIs(const char* boxText, const char*, const char*, const char*, const vb::ShownBox& box,
                                 const QString& title, const QString& prompt, int flags)
{
    if (box.title == title && box.prompt == prompt && box.buttons == flags)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << boxText << " shows\n  [" << box.title.toStdString() << "] ["
                                         << box.prompt.toStdString() << "] " << box.buttons << "\nnot\n  ["
                                         << title.toStdString() << "] [" << prompt.toStdString() << "] " << flags;
}

} // namespace kit
