#include "shell/ScreenRegistry.h"

#include "controls/Controls.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEvent>
#include <QEventLoop>

namespace shell {

namespace {

std::map<QString, ScreenRegistry::Factory>& factories()
{
    static std::map<QString, ScreenRegistry::Factory> f;
    return f;
}

/// Ends a modal loop when its screen is hidden (or goes).
class ModalWatcher : public QObject
{
public:
    ModalWatcher(QEventLoop& loop) : m_loop(loop) { }
    bool eventFilter(QObject*, QEvent* e) override
    {
        if (e->type() == QEvent::Hide)
            m_loop.quit();
        return false;
    }

private:
    QEventLoop& m_loop;
};

/// A screen leaving: its timers stop, it hides, and it is deleted once the event loop is
/// back (code of the screen itself may still be running).
void retire(vb::Form* f)
{
    // The control classes carry no meta-object of their own: find the timers by their type.
    const auto children = f->findChildren<QObject*>();
    for (QObject* o : children) {
        if (auto* t = dynamic_cast<vb::Timer*>(o))
            t->setEnabled(false);
    }
    f->hide();
    f->deleteLater();
}

/// Whether the program has a screen of that name; an unknown one is a mistake in the code
/// that asked, logged as critical.
bool checkKnown(const QString& name)
{
    if (ScreenRegistry::known(name))
        return true;
    qCritical().noquote() << "No screen is called" << name;
    return false;
}

constexpr int PlacementTop = 2200;
constexpr int PlacementExtra = 300;

} // namespace

ScreenRegistry::ScreenRegistry()
{
    // A screen closed from its title bar goes through the registry's unload.
    vb::Form::setCloseHandler([this](vb::Form* f) { unload(f->objectName()); });
}

ScreenRegistry& ScreenRegistry::instance()
{
    static ScreenRegistry registry;
    return registry;
}

bool ScreenRegistry::addFactory(const QString& name, Factory factory)
{
    factories()[name] = std::move(factory);
    return true;
}

ScreenRegistry::Factory ScreenRegistry::factory(const QString& name)
{
    const auto it = factories().find(name);
    return it == factories().end() ? Factory() : it->second;
}

void ScreenRegistry::removeFactory(const QString& name)
{
    factories().erase(name);
}

QStringList ScreenRegistry::names()
{
    static const QStringList all = [] {
        QStringList n{QStringLiteral("frmMain"), QStringLiteral("frmAbout")};
        for (int i = 1; i <= 20; ++i)
            n << QStringLiteral("Form%1").arg(i);
        for (int i = 1; i <= 21; ++i)
            n << QStringLiteral("DataReport%1").arg(i);
        return n;
    }();
    return all;
}

bool ScreenRegistry::known(const QString& name)
{
    return names().contains(name) || factories().count(name) != 0;
}

bool ScreenRegistry::built(const QString& name)
{
    return factories().count(name) != 0;
}

const QStringList& ScreenRegistry::workingScreens()
{
    static const QStringList order{QStringLiteral("Form2"),  QStringLiteral("Form3"),   QStringLiteral("Form4"),
                                   QStringLiteral("Form5"),  QStringLiteral("Form7"),   QStringLiteral("Form8"),
                                   QStringLiteral("Form9"),  QStringLiteral("Form10"),  QStringLiteral("Form11"),
                                   QStringLiteral("Form13"), QStringLiteral("Form14"),  QStringLiteral("Form15"),
                                   QStringLiteral("Form17"), QStringLiteral("Form18"),  QStringLiteral("Form19"),
                                   QStringLiteral("Form20"), QStringLiteral("frmAbout")};
    return order;
}

bool ScreenRegistry::isLoaded(const QString& name) const
{
    return loaded(name) != nullptr;
}

vb::Form* ScreenRegistry::loaded(const QString& name) const
{
    if (!checkKnown(name))
        return nullptr;
    const auto it = m_loaded.find(name);
    return it == m_loaded.end() ? nullptr : it->second.data();
}

vb::Form* ScreenRegistry::create(const QString& name)
{
    const auto it = factories().find(name);
    if (it == factories().end())
        return nullptr;
    QWidget* owner = name == QLatin1String("frmMain") ? nullptr : loaded(QStringLiteral("frmMain"));
    vb::Form* f = it->second(owner);
    f->setObjectName(name);
    m_loaded[name] = f;
    return f;
}

vb::Form* ScreenRegistry::form(const QString& name)
{
    if (vb::Form* f = loaded(name))
        return f;
    if (!known(name))
        return nullptr; // loaded() has logged it
    vb::Form* f = create(name);
    if (f)
        vb::runEvent([f] { f->Form_Load(); }); // VB's load event; the screen counts as loaded from here on
    return loaded(name);
}

vb::Control* ScreenRegistry::control(const QString& screen, const QString& control)
{
    vb::Form* f = form(screen);
    if (!f)
        return nullptr;
    vb::Control* c = f->control(control);
    if (!c)
        qCritical().noquote() << "Screen" << screen << "has no control called" << control;
    return c;
}

vb::Control* ScreenRegistry::controlIfAny(const QString& screen, const QString& control) const
{
    vb::Form* f = known(screen) ? loaded(screen) : nullptr;
    return f ? f->control(control) : nullptr;
}

void ScreenRegistry::place(vb::Form* f, bool plus300) const
{
    vb::Form* main = loaded(QStringLiteral("frmMain"));
    if (!f || !main || f == main)
        return;
    vb::Control* menu = main->control(QStringLiteral("PicMenu"));
    vb::Control* image2 = main->control(QStringLiteral("Image2"));
    const int left = menu ? menu->Width() : 0;
    const int height = (image2 ? image2->Height() : main->Height()) - PlacementTop + (plus300 ? PlacementExtra : 0);
    f->Move(left, PlacementTop, main->Width() - left, height);
}

void ScreenRegistry::show(const QString& name)
{
    vb::Form* f = form(name);
    if (!f || loaded(name) != f)
        return; // inert, or the screen unloaded itself during its load
    f->show();
    place(f, true);
}

void ScreenRegistry::showAbout(const QString& name)
{
    vb::Form* f = form(name);
    if (!f || loaded(name) != f)
        return;
    f->show();
    place(f, false);
}

void ScreenRegistry::showModal(const QString& name)
{
    vb::Form* f = form(name);
    if (!f || loaded(name) != f)
        return;
    QEventLoop loop;
    ModalWatcher watcher(loop);
    f->installEventFilter(&watcher);
    f->setWindowModality(Qt::ApplicationModal);
    f->show();
    loop.exec();
    if (QPointer<vb::Form> still = loaded(name); still == f) {
        f->removeEventFilter(&watcher);
        f->setWindowModality(Qt::NonModal);
    }
}

void ScreenRegistry::unload(const QString& name)
{
    if (!checkKnown(name))
        return;
    const auto it = m_loaded.find(name);
    if (it == m_loaded.end())
        return;
    QPointer<vb::Form> f = it->second;
    if (!f) {
        m_loaded.erase(it);
        return;
    }
    vb::runEvent([&f] { f->Form_Unload(); });
    if (auto again = m_loaded.find(name); again != m_loaded.end() && again->second == f)
        m_loaded.erase(again);
    if (f)
        retire(f);
}

void ScreenRegistry::unloadAllScreens()
{
    for (const QString& name : workingScreens())
        unload(name);
}

void ScreenRegistry::hideIfVisible(const QString& name)
{
    if (vb::Form* f = loaded(name); f && f->isVisible())
        f->hide();
}

void ScreenRegistry::discardAll()
{
    auto all = std::move(m_loaded);
    m_loaded.clear();
    QPointer<vb::Form> main;
    for (auto& [name, f] : all) {
        if (!f)
            continue;
        if (name == QLatin1String("frmMain")) {
            main = f;
            continue;
        }
        retire(f);
    }
    if (main)
        retire(main); // last: it owns the others' windows
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace shell
