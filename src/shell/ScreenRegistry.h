#pragma once
/// @file ScreenRegistry.h
/// Every screen of the program by name, loaded and unloaded as VB did: a screen comes
/// into being on first use (its load runs then), a working screen is shown modeless,
/// owned by frmMain and placed right of the menu, and reading a control of a screen that
/// is not loaded loads it hidden. Screens register themselves from their own source file
/// (VELMORA_SCREEN), so a new screen plugs in without touching this file; a name with no
/// screen behind it yet is inert: showing it does nothing and it has no controls.
/// A screen or control name the program does not have is a mistake in the code that
/// asks: it is logged as critical (a test fails) and the answer is nullptr or nothing, so
/// a release run carries on. Names that come from outside (the driver) are checked with
/// known() and controlIfAny(), which log nothing.

#include "controls/Form.h"

#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>

class QWidget;

namespace shell {

class ScreenRegistry
{
public:
    /// Makes a screen; owner is frmMain when it is loaded (nullptr for frmMain itself).
    using Factory = std::function<vb::Form*(QWidget* owner)>;

    static ScreenRegistry& instance();

    /// Registers the factory of a screen (from a static registrar, before main()).
    static bool addFactory(const QString& name, Factory factory);
    /// The factory of a screen (empty for an inert entry); tests put stand-ins in place
    /// with addFactory and restore the original with this and removeFactory.
    static Factory factory(const QString& name);
    static void removeFactory(const QString& name);

    /// Every name the program gives a screen: frmMain, frmAbout, Form1..Form20,
    /// DataReport1..DataReport21.
    static QStringList names();
    static bool known(const QString& name);
    /// Whether a screen exists behind the name (false: an inert entry).
    static bool built(const QString& name);

    bool isLoaded(const QString& name) const;
    /// The screen when it is loaded, without loading it.
    vb::Form* loaded(const QString& name) const;
    /// VB's reference to a screen: loads it hidden (running its load) when needed.
    /// nullptr for an inert entry. The load is an event (vb::runEvent): its failure reaches
    /// the handler that asked for the screen, or from outside any handler the top of the
    /// program; the screen stays loaded, as in VB.
    vb::Form* form(const QString& name);
    template <typename T> T* formAs(const QString& name) { return dynamic_cast<T*>(form(name)); }
    /// A control of a screen, loading the screen hidden when needed (the timers of
    /// frmMain read Form7, Form13, Form14 this way). nullptr for an inert screen; an
    /// unknown screen or control name is logged as critical and gives nullptr.
    vb::Control* control(const QString& screen, const QString& control);
    /// A control of a loaded screen, or nullptr, logging nothing: for a name that may
    /// rightly be missing (a name typed into the driver). Never loads the screen.
    vb::Control* controlIfAny(const QString& screen, const QString& control) const;

    /// Loads if needed, shows modeless and places by the working-screen rule.
    void show(const QString& name);
    /// The same with the placement of frmAbout (no 300 twips added to the height).
    void showAbout(const QString& name);
    /// Shows modally (as VB's Show vbModal): returns when the screen is hidden or unloaded.
    void showModal(const QString& name);
    /// The placement rule: Left = frmMain.PicMenu.Width, Top = 2200,
    /// Width = frmMain.Width - Left, Height = frmMain.Image2.Height - Top (+ 300).
    void place(vb::Form* form, bool plus300 = true) const;

    /// VB's Unload: runs the screen's unload, hides it and lets it go. Nothing when not
    /// loaded. The object survives until the event loop is back, so a handler of the
    /// screen may go on after unloading its own screen.
    void unload(const QString& name);
    /// Unload_All_Screens: every working screen, in the program's order, loaded or not.
    void unloadAllScreens();
    /// Hides the screen when it is loaded and visible (Hide_Open_Reports).
    void hideIfVisible(const QString& name);

    /// The end of the process: every screen goes without its unload running.
    void discardAll();

    /// The order of Unload_All_Screens.
    static const QStringList& workingScreens();

private:
    ScreenRegistry();
    vb::Form* create(const QString& name);
    std::map<QString, QPointer<vb::Form>> m_loaded;
};

/// Shorthands for screens' code: shell::screens().show("Form7").
inline ScreenRegistry& screens()
{
    return ScreenRegistry::instance();
}

template <typename T> struct ScreenRegistrar
{
    explicit ScreenRegistrar(const char* name)
    {
        ScreenRegistry::addFactory(QString::fromLatin1(name), [](QWidget* owner) -> vb::Form* { return new T(owner); });
    }
};

} // namespace shell

/// Registers a screen class under its own name; put it in the screen's source file.
/// The class has a constructor taking its owner (QWidget*).
#define VELMORA_SCREEN(Class) static const ::shell::ScreenRegistrar<Class> velmoraScreen_##Class(#Class)
