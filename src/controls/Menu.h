#pragma once
/// @file Menu.h
/// A menu entry of a screen's menu bar (VB's Menu control): Caption, Enabled, Visible,
/// Checked; Click when chosen. An entry that holds others opens them.

#include "controls/Control.h"

#include <QAction>

class QMenu;
class QMenuBar;

namespace vb {

class Menu : public QAction, public Control
{
public:
    /// A top entry of @p bar, or an entry under @p parentMenu when one is given. The
    /// entry belongs to @p screen, where it is found by its name.
    Menu(QWidget* screen, QMenuBar* bar, const QString& name, const QString& caption, Menu* parentMenu = nullptr);

    QString Caption() const { return text(); }
    void setCaption(const Variant& caption);

    /// The user's choice: nothing while the entry is disabled or hidden.
    void click() override;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    QMenu* submenu();
    QWidget* m_screen;
    QMenu* m_submenu = nullptr;
};

} // namespace vb
