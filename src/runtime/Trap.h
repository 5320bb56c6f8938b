#pragma once
/// @file Trap.h
/// The error trap of an event handler. A handler states its trap once, then runs each
/// statement that may fail as a step:
///
/// @code
///     Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
///     trap.on(err::InvalidPropertyValue, [] { WriteDateErrorGuide(); });
///     trap.step([&] { Txt_Nome.setText(rs.Fields("Nome").Value().toString()); });
///     trap.step([&] { DTPicker1.setValue(rs.Fields("Data").Value()); });
/// @endcode
///
/// A failed step is "resume next": the handler goes on with the following step. Once
/// the trap has ended the handler (a box shown, an action run), later steps do nothing.
/// Only VBError is trapped; anything else is a fault of the program and goes on up.

#include "runtime/VBError.h"

#include <QString>

#include <functional>
#include <initializer_list>
#include <map>
#include <set>

namespace vb {

class Trap
{
public:
    /// What happens to a number that is neither resumed nor given an action.
    enum Otherwise {
        Resume,  ///< carry on with the next statement, silently
        ShowBox, ///< the plain box "{number} {description}", then the handler ends
    };

    /// @param resumed numbers that carry on with the next statement
    /// @param otherwise what every other number does
    Trap(std::initializer_list<int> resumed, Otherwise otherwise);

    /// The trap that carries on after any error ("resume next" for everything).
    static Trap ignoreAll();

    /// Error @p number runs @p action and ends the handler (e.g. the date format guide).
    Trap& on(int number, std::function<void()> action);

    /// Runs one statement under the trap; nothing once the handler has ended.
    /// Returns true when the statement ran to its end.
    template <class Statement> bool step(Statement&& statement)
    {
        if (m_ended)
            return false;
        try {
            statement();
            return true;
        } catch (const VBError& e) {
            handle(e);
            return false;
        }
    }

    /// The handler has ended: a box was shown, an action ran, or exit() was called.
    bool ended() const { return m_ended; }
    /// Ends the handler from inside a step, as "Exit Sub" does.
    void exit() { m_ended = true; }

    /// The last error the trap took (VB's Err.Number; 0 when none), and its text.
    int lastError() const { return m_lastNumber; }
    const QString& lastDescription() const { return m_lastDescription; }
    /// Clears the last error, as Err.Clear does.
    void clearError();

private:
    void handle(const VBError& e);

    std::set<int> m_resumed;
    Otherwise m_otherwise;
    std::map<int, std::function<void()>> m_actions;
    bool m_ended = false;
    int m_lastNumber = 0;
    QString m_lastDescription;
};

} // namespace vb
