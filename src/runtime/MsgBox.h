#pragma once
/// @file MsgBox.h
/// Every message box of the program goes through MsgBox, so that the driver and the
/// tests can script the answers and read what was shown.

#include <QString>

#include <functional>
#include <vector>

namespace vb {

// VB's flags and return values.
namespace mb {
constexpr int OKOnly = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5;
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
constexpr int DefaultButton2 = 256;
} // namespace mb
namespace answer {
constexpr int OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7;
} // namespace answer

struct ShownBox
{
    QString title;
    QString prompt;
    int buttons = 0;
    int answer = 0;
    bool scripted = false;
};

/// Shows a box. An empty title is VB's default (the program's title).
int MsgBox(const QString& prompt, int buttons = 0, const QString& title = {});

/// The box "{number} {description}": plain from the traps, critical from the run time
/// when an error no trap caught ends the program.
void ShowErrorBox(int number, const QString& description, int buttons = mb::OKOnly);

/// Where boxes go. The program installs a widget presenter; the driver a scripted one.
class MsgBoxService
{
public:
    using Presenter = std::function<int(const ShownBox&)>;
    static void setPresenter(Presenter p);
    /// Scripted mode: answers come from the queue; a question with none is answered No
    /// (recorded unscripted); a box with only OK is answered OK.
    static void setScripted(bool on);
    static bool scripted();
    static void queueAnswers(const std::vector<int>& answers);
    /// The boxes shown since the last call.
    static std::vector<ShownBox> takeShown();
    static const std::vector<ShownBox>& shown();
    static void clear();
};

} // namespace vb
