#pragma once
// A screen's fields read in one line: what each shows, and which are enabled.

#include "controls/Controls.h"
#include "runtime/VBError.h"

#include <QStringList>

#include <initializer_list>

namespace kit {

/// What each control shows: its text, or its caption when it has no text (a label, a
/// frame, a button).
inline QStringList texts(std::initializer_list<const vb::Control*> controls)
{
    QStringList out;
    for (const vb::Control* c : controls) {
        try {
            out << c->vbProperty(QStringLiteral("Text")).toString();
        } catch (const vb::VBError&) {
            out << c->vbProperty(QStringLiteral("Caption")).toString();
        }
    }
    return out;
}

/// The names of those of the controls that are enabled.
inline QStringList enabledOf(std::initializer_list<vb::Control*> controls)
{
    QStringList out;
    for (vb::Control* c : controls)
        if (c->vbProperty(QStringLiteral("Enabled")).toBool())
            out << c->Name();
    return out;
}

} // namespace kit
