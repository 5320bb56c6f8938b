#include "runtime/OpenFile.h"

namespace vb {

namespace {
struct State
{
    OpenFileService::Opener opener;
    bool recording = true;
    std::vector<QString> opened;
};

State& state()
{
    static State s;
    return s;
}
} // namespace

void OpenFile(const QString& path)
{
    state().opened.push_back(path);
    if (!state().recording && state().opener)
        state().opener(path);
}

void OpenFileService::setOpener(Opener o)
{
    state().opener = std::move(o);
}

void OpenFileService::setRecording(bool on)
{
    state().recording = on;
}

std::vector<QString> OpenFileService::takeOpened()
{
    std::vector<QString> out;
    out.swap(state().opened);
    return out;
}

} // namespace vb
