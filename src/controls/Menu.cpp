#include "controls/Menu.h"

#include <QMenu>
#include <QMenuBar>

namespace vb {

namespace {

bool is(const QString& n, const char* name)
{
    return n == QLatin1String(name);
}

} // namespace

Menu::Menu(QWidget* screen, QMenuBar* bar, const QString& name, const QString& caption, Menu* parentMenu)
    : QAction(caption, screen), Control(this), m_screen(screen)
{
    setObjectName(name);
    if (parentMenu)
        parentMenu->submenu()->addAction(this);
    else
        bar->addAction(this);
    connect(this, &QAction::triggered, this, [this] { Click(); });
}

QMenu* Menu::submenu()
{
    if (!m_submenu) {
        m_submenu = new QMenu(m_screen);
        setMenu(m_submenu);
    }
    return m_submenu;
}

void Menu::setCaption(const Variant& caption)
{
    setText(caption.toString());
}

void Menu::click()
{
    if (!isEnabled() || !isVisible())
        return;
    if (m_submenu)
        return; // an entry that holds others only opens them
    Click();
}

std::optional<Variant> Menu::getProp(const QString& n) const
{
    if (is(n, "caption"))
        return Variant(text());
    if (is(n, "enabled"))
        return Variant(isEnabled());
    if (is(n, "visible"))
        return Variant(isVisible());
    if (is(n, "checked"))
        return Variant(isChecked());
    return Control::getProp(n);
}

bool Menu::setProp(const QString& n, const Variant& v)
{
    if (is(n, "caption"))
        setCaption(v);
    else if (is(n, "enabled"))
        setEnabled(v.toBool());
    else if (is(n, "visible"))
        setVisible(v.toBool());
    else if (is(n, "checked")) {
        setCheckable(true);
        setChecked(v.toBool());
    } else
        return Control::setProp(n, v);
    return true;
}

} // namespace vb
