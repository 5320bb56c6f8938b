#include "runtime/Trap.h"

#include "runtime/MsgBox.h"

namespace vb {

Trap::Trap(std::initializer_list<int> resumed, Otherwise otherwise) : m_resumed(resumed), m_otherwise(otherwise)
{
}

Trap Trap::ignoreAll()
{
    return Trap({}, Resume);
}

Trap& Trap::on(int number, std::function<void()> action)
{
    m_actions[number] = std::move(action);
    return *this;
}

void Trap::clearError()
{
    m_lastNumber = 0;
    m_lastDescription.clear();
}

void Trap::handle(const VBError& e)
{
    m_lastNumber = e.number();
    m_lastDescription = e.description();
    if (m_resumed.count(e.number()))
        return;
    if (const auto it = m_actions.find(e.number()); it != m_actions.end()) {
        // The handler ends whatever the action does; an error inside the action is the
        // action's own (VB's handler code ran without a trap).
        m_ended = true;
        if (it->second)
            it->second();
        return;
    }
    if (m_otherwise == ShowBox) {
        m_ended = true;
        ShowErrorBox(e.number(), e.description());
    }
}

} // namespace vb
