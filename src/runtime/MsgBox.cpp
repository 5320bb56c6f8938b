#include "runtime/MsgBox.h"

#include "runtime/AppPath.h"

#include <deque>

namespace vb {

namespace {
struct State
{
    MsgBoxService::Presenter presenter;
    bool scripted = true; // until the program installs its presenter, nothing may block
    std::deque<int> queue;
    std::vector<ShownBox> shown;
};

State& state()
{
    static State s;
    return s;
}

int scriptedAnswer(ShownBox& box)
{
    const int kind = box.buttons & 7;
    auto& q = state().queue;
    if (!q.empty()) {
        box.scripted = true;
        const int a = q.front();
        q.pop_front();
        return a;
    }
    box.scripted = false;
    switch (kind) {
    case mb::YesNo:
    case mb::YesNoCancel: return answer::No;
    case mb::OKCancel:
    case mb::RetryCancel: return answer::Cancel;
    case mb::AbortRetryIgnore: return answer::Abort;
    default: return answer::OK;
    }
}
} // namespace

int MsgBox(const QString& prompt, int buttons, const QString& title)
{
    ShownBox box;
    box.prompt = prompt;
    box.buttons = buttons;
    box.title = title.isEmpty() ? QString::fromLatin1(AppTitle) : title;
    if (state().scripted || !state().presenter) {
        box.answer = scriptedAnswer(box);
    } else {
        box.answer = state().presenter(box);
        box.scripted = false;
    }
    state().shown.push_back(box);
    return box.answer;
}

void ShowErrorBox(int number, const QString& description, int buttons)
{
    MsgBox(QStringLiteral("%1 %2").arg(number).arg(description), buttons);
}

void MsgBoxService::setPresenter(Presenter p)
{
    state().presenter = std::move(p);
}

void MsgBoxService::setScripted(bool on)
{
    state().scripted = on;
}

bool MsgBoxService::scripted()
{
    return state().scripted;
}

void MsgBoxService::queueAnswers(const std::vector<int>& answers)
{
    for (int a : answers)
        state().queue.push_back(a);
}

std::vector<ShownBox> MsgBoxService::takeShown()
{
    std::vector<ShownBox> out;
    out.swap(state().shown);
    return out;
}

const std::vector<ShownBox>& MsgBoxService::shown()
{
    return state().shown;
}

void MsgBoxService::clear()
{
    state().queue.clear();
    state().shown.clear();
}

} // namespace vb
