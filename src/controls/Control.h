#pragma once
/// @file Control.h
/// What every VB control of the program has in common: its name, its properties read
/// and written by VB name (so the automation driver needs no per-screen code), its
/// events, the colours as VB integers, and positions in twips.
///
/// Generic properties (names are case-insensitive, values are vb::Variant):
///   every control  Name (read only), Enabled, Visible, Left, Top, Width, Height (twips),
///                  ToolTipText, Tag, BackColor, ForeColor, FontBold, FontUnderline,
///                  FontItalic, FontSize
///   Label          Caption, BackStyle (0 transparent, 1 opaque), Alignment, WordWrap
///   TextBox        Text, Locked, MaxLength, SelStart, SelLength, SelText
///   CommandButton  Caption
///   CheckBox       Caption, Value (0, 1, 2)
///   OptionButton   Caption, Value (True/False)
///   Frame          Caption
///   ComboBox       Text, ListIndex, ListCount, Locked
///   ListBox        Text, ListIndex, ListCount
///   DataCombo      Text, BoundText, ListField, BoundColumn, ListCount, Locked
///   DTPicker       Value (a date), Text, CustomFormat
///   MaskEdBox      Text, Mask, PromptChar
///   ProgressBar    Value, Min, Max
///   Image          Picture (the path), Stretch
///   Shape          BackStyle, FillColor, BorderColor
///   Timer          Interval, Enabled
///   DataGrid       Row, Col, RecordCount, Text (current cell), ColumnCount, Caption
///   Adodc          RecordSource, ConnectionString, RecordCount
///   Form           Caption, Visible, Left, Top, Width, Height
/// Lists are read through items() (ComboBox, ListBox, DataCombo); a grid through
/// ColumnCount(), Columns(i) (Caption, Width, Locked, Visible), RecordCount() and cellText().
/// Colours read back exactly as written: an RGB value (r + 256 g + 65536 b) or a system
/// colour (negative, 0x80000000 | index, e.g. -2147483643 for the window colour).
///
/// Driver entry points act as the user would: click(), dblClick(), typeText(), keyPress(),
/// focusIn(), focusOut(), select(n), choose(text), tick(). A control that has no such
/// action raises error 438.

#include "runtime/Variant.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

class QObject;
class QRect;
class QWidget;

namespace vb {

class VBError;

/// Where the program's code is entered: every event, a screen's load and unload. An event
/// fired while a handler runs (the handler sets a Text, whose Change runs) is part of that
/// handler: its error goes on up to the handler, whose trap may take it, as in VB. The
/// outermost one is the top of the program: an error no trap caught ends there, as VB's
/// run time ended the program with its box (setUncaughtErrorHandler), and after it no
/// event reaches a handler until resumeEvents(). What the event loop delivers while a
/// modal screen or a box waits in its own loop is outermost again.
void runEvent(const std::function<void()>& handlers);

/// What an error reaching the top does; anything thrown that is no VBError arrives as
/// error 51 "Errore interno: ...". The default shows the run time's box
/// "{number} {description}" (critical, titled with the program's title); the shell's then
/// ends the program.
void setUncaughtErrorHandler(std::function<void(const VBError&)> handler);
/// A new run of the program: events reach their handlers again after an uncaught error.
void resumeEvents();

/// A VB event: one or more handlers, fired in the order they were attached.
/// `Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };` attaches the screen's handler,
/// replacing any before it; `connect` adds one. Calling the event fires it, as a screen
/// that calls its own handler did (`Call Cmd_Vis_All_Click`); it runs through runEvent.
template <typename... Args> class Event
{
public:
    using Handler = std::function<void(Args...)>;

    Event& operator=(Handler h)
    {
        m_handlers.clear();
        if (h)
            m_handlers.push_back(std::move(h));
        return *this;
    }
    void connect(Handler h)
    {
        if (h)
            m_handlers.push_back(std::move(h));
    }
    void clear() { m_handlers.clear(); }
    explicit operator bool() const { return !m_handlers.empty(); }

    void operator()(Args... args) const
    {
        if (m_handlers.empty())
            return;
        // A handler may unload the screen or re-attach handlers: work on a copy.
        const auto handlers = m_handlers;
        runEvent([&] {
            for (const auto& h : handlers)
                h(args...);
        });
    }

private:
    std::vector<Handler> m_handlers;
};

/// VB's RGB(): red in the low byte.
constexpr int RGB(int r, int g, int b)
{
    return (r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16);
}

/// Colours the program gives a meaning to.
namespace colour {
constexpr int Orange = RGB(255, 153, 0); ///< focus highlight, last piece in stock
constexpr int Red = RGB(231, 29, 33);    ///< overdue, stock at the minimum
constexpr int White = RGB(255, 255, 255);
constexpr int Black = RGB(0, 0, 0);
// System colours (0x80000000 | index).
constexpr int WindowBackground = -2147483643; ///< &H80000005
constexpr int WindowText = -2147483640;       ///< &H80000008
constexpr int ButtonFace = -2147483633;       ///< &H8000000F
constexpr int ButtonText = -2147483630;       ///< &H80000012
} // namespace colour

/// Twips in one pixel of the screen @p on stands on (the primary screen when none):
/// 1440 over its logical dpi, 15 at 96 dpi. The old screens' twips keep their size in
/// inches, as the type does, whatever the desktop's scale.
double twipsPerPixel(const QWidget* on = nullptr);
int twipsToPixels(int twips, const QWidget* on = nullptr);
int pixelsToTwips(int pixels, const QWidget* on = nullptr);

/// The colour a VB colour value stands for (system colours from the application palette).
struct Rgb
{
    int r = 0, g = 0, b = 0;
};
Rgb colourToRgb(int vbColour);

class Control
{
public:
    explicit Control(QObject* self);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    QObject* object() const { return m_self; }
    /// The widget, or nullptr for the controls that have none (Timer, Adodc).
    QWidget* widget() const;
    QString Name() const;

    /// VB's property by name; an unknown name raises 438.
    Variant vbProperty(const QString& name) const;
    /// Sets a property by name, firing the events a change by the program fires.
    void setVbProperty(const QString& name, const Variant& value);

    // Common properties (Enabled and Visible are the widget's own setEnabled/setVisible).
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void setWidth(int twips);
    void setHeight(int twips);
    /// VB's Move: the four in twips; a negative width or height keeps the current one.
    void Move(int left, int top, int width = -1, int height = -1);

    /// Where the program put the control, in pixels, before any room given on a larger
    /// screen; empty when the program never placed it.
    QRect placedRect() const;
    /// Widens and lengthens the control by so many pixels beyond where the program put
    /// it (a grid or a list given the room of a larger screen). The program still reads
    /// the width and height it gave.
    void growBy(int pixelsRight, int pixelsDown);
    int BackColor() const { return m_backColour; }
    int ForeColor() const { return m_foreColour; }
    void setBackColor(int vbColour);
    void setForeColor(int vbColour);
    bool FontBold() const;
    void setFontBold(bool on);
    bool FontUnderline() const;
    void setFontUnderline(bool on);
    QString ToolTipText() const;
    void setToolTipText(const QString& text);
    QString Tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }

    /// Focus paints the background orange and selects the text (the program's seltxt);
    /// leaving paints it white. On for entry fields, off elsewhere; a screen may change it.
    bool focusHighlight() const { return m_focusHighlight; }
    void setFocusHighlight(bool on) { m_focusHighlight = on; }
    bool hasFocus() const { return m_hasFocus; }

    // What the user does, as the driver does it.
    virtual void click();
    virtual void dblClick();
    virtual void typeText(const QString& text);
    virtual void keyPress(int keyAscii);
    void focusIn();
    void focusOut();
    virtual void select(int index);
    virtual void choose(const QString& text);
    virtual void tick();

    /// The control that has the focus (nullptr when none).
    static Control* focused();

    Event<> Click;
    Event<> DblClick;
    Event<> Change;
    Event<int&> KeyPress; ///< KeyAscii; set it to 0 to discard the key
    Event<> KeyUp;
    Event<> GotFocus;
    Event<> LostFocus;
    Event<> RowColChange;
    Event<> MouseMove;

protected:
    /// Subclasses answer their own properties (name in lower case) and defer to the base.
    virtual std::optional<Variant> getProp(const QString& lname) const;
    virtual bool setProp(const QString& lname, const Variant& value);

    /// Applies BackColor/ForeColor to the widget; the default paints Window/WindowText.
    virtual void applyColours();
    /// Colours that the Qt palette roles get for a VB colour value.
    static void paintRoles(QWidget* w, int backRole, int foreRole, int back, int fore, bool fillBackground);

    /// One key of typeText/keyPress after KeyPress let it through (0 never arrives).
    virtual void acceptKey(int keyAscii);
    /// Selects the whole text (seltxt); a no-op for controls without text.
    virtual void selectAllText() { }

    void initColours(int back, int fore);
    /// Routes another widget's focus, keys and mouse to this control (an inner editor).
    void watch(QWidget* w);
    void notSupported() const;
    /// The stored twips rectangle, kept so that a value reads back exactly as written.
    struct Twips
    {
        int left = 0, top = 0, width = 0, height = 0;
        int px = 0, py = 0, pw = 0, ph = 0; // the pixels they were applied as
    };

    friend class ControlEventFilter;
    void handleFocusIn();
    void handleFocusOut();
    /// A real key from the keyboard: runs KeyPress; true when it was discarded or handled.
    bool handleKeyEvent(int keyAscii);
    /// Labels, images and frames have no click of their own: the mouse release is theirs.
    void setClickOnMouseRelease(bool on) { m_clickOnRelease = on; }
    /// The driver acts only on what a user could reach: an enabled, visible control.
    bool reachable() const;

private:
    void applyGeometry(int left, int top, int width, int height);
    QObject* m_self;
    int m_backColour = colour::ButtonFace;
    int m_foreColour = colour::ButtonText;
    bool m_focusHighlight = false;
    bool m_hasFocus = false;
    QString m_tag;
    Twips m_twips;
    bool m_twipsSet = false;
    int m_grownRight = 0, m_grownDown = 0;
    bool m_clickOnRelease = false;
};

/// The control behind an object (a widget of a screen, a timer, a data control).
Control* asControl(QObject* object);

} // namespace vb
