#include "controls/Control.h"

#include "runtime/MsgBox.h"
#include "runtime/VBError.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPalette>
#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QThread>
#include <QWidget>

#include <cmath>

namespace vb {

namespace {

QPointer<QObject> g_focused; // the object of the control that has the focus

constexpr int InternalError = 51;

struct EventState
{
    std::vector<int> running; // the event loop level of each event being handled, innermost last
    bool ended = false;       // an error reached the top: the program has ended
    std::function<void(const VBError&)> uncaught;
};

EventState& events()
{
    static EventState s;
    return s;
}

void reachTop(const VBError& e)
{
    EventState& s = events();
    s.ended = true;
    if (s.uncaught)
        s.uncaught(e);
    else
        ShowErrorBox(e.number(), e.description(), mb::Critical);
}

QPalette::ColorRole systemRole(int index)
{
    switch (index) {
    case 0: return QPalette::Button;          // scroll bars
    case 1: return QPalette::Window;          // desktop
    case 2: return QPalette::Highlight;       // active caption
    case 4: return QPalette::Window;          // menu
    case 5: return QPalette::Base;            // window
    case 6: return QPalette::Dark;            // window frame
    case 7: return QPalette::WindowText;      // menu text
    case 8: return QPalette::Text;            // window text
    case 9: return QPalette::HighlightedText; // caption text
    case 13: return QPalette::Highlight;
    case 14: return QPalette::HighlightedText;
    case 15: return QPalette::Button;          // button face
    case 16: return QPalette::Dark;            // button shadow
    case 17: return QPalette::PlaceholderText; // grey text
    case 18: return QPalette::ButtonText;
    case 20: return QPalette::Light; // 3-D highlight
    case 23: return QPalette::ToolTipText;
    case 24: return QPalette::ToolTipBase;
    default: return QPalette::Window;
    }
}

QColor toQColor(int vbColour)
{
    const Rgb c = colourToRgb(vbColour);
    return QColor(c.r, c.g, c.b);
}

VBError notSupportedError()
{
    return VBError(438, QStringLiteral("L'oggetto non supporta questa propriet\u00e0 o questo metodo"));
}

} // namespace

void runEvent(const std::function<void()>& handlers)
{
    EventState& s = events();
    const int level = QThread::currentThread()->loopLevel();
    const bool top = s.running.empty() || s.running.back() < level;
    struct Running
    {
        explicit Running(int level) { events().running.push_back(level); }
        ~Running() { events().running.pop_back(); }
    };
    if (!top) {
        Running running(level);
        handlers(); // part of the handler that fired it: its errors go on up
        return;
    }
    if (s.ended)
        return;
    std::optional<VBError> uncaught;
    {
        Running running(level);
        try {
            handlers();
        } catch (const VBError& e) {
            uncaught = e;
        } catch (const std::exception& e) {
            uncaught = VBError(InternalError, QStringLiteral("Errore interno: ") + QString::fromUtf8(e.what()));
        }
    }
    if (uncaught)
        reachTop(*uncaught);
}

void setUncaughtErrorHandler(std::function<void(const VBError&)> handler)
{
    events().uncaught = std::move(handler);
}

void resumeEvents()
{
    events().ended = false;
}

/// Routes the widget's focus, keys and mouse to the control's VB events.
class ControlEventFilter : public QObject
{
public:
    ControlEventFilter(Control* control, QObject* parent) : QObject(parent), m_control(control) { }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::FocusIn: m_control->handleFocusIn(); break;
        case QEvent::FocusOut:
            if (static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
                m_control->handleFocusOut();
            break;
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            int ascii = 0;
            if (key->key() == Qt::Key_Backspace)
                ascii = 8;
            else if (!key->text().isEmpty() && key->text().at(0).unicode() >= 32)
                ascii = key->text().at(0).unicode();
            if (ascii != 0)
                return m_control->handleKeyEvent(ascii);
            break;
        }
        case QEvent::KeyRelease:
            if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
                m_control->KeyUp();
            break;
        case QEvent::MouseMove: m_control->MouseMove(); break;
        case QEvent::MouseButtonRelease:
            if (m_control->m_clickOnRelease)
                m_control->Click();
            break;
        case QEvent::MouseButtonDblClick: m_control->DblClick(); break;
        default: break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    Control* m_control;
};

double twipsPerPixel(const QWidget* on)
{
    const QScreen* screen = on ? on->screen() : QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInch() : 0;
    return dpi > 0 ? 1440.0 / dpi : 15.0;
}

int twipsToPixels(int twips, const QWidget* on)
{
    return static_cast<int>(std::lround(twips / twipsPerPixel(on)));
}

int pixelsToTwips(int pixels, const QWidget* on)
{
    return static_cast<int>(std::lround(pixels * twipsPerPixel(on)));
}

Rgb colourToRgb(int vbColour)
{
    if (vbColour < 0) {
        const QColor c = QApplication::palette().color(systemRole(vbColour & 0xFF));
        return {c.red(), c.green(), c.blue()};
    }
    return {vbColour & 0xFF, (vbColour >> 8) & 0xFF, (vbColour >> 16) & 0xFF};
}

Control::Control(QObject* self) : m_self(self)
{
    if (QWidget* w = widget())
        watch(w);
}

void Control::watch(QWidget* w)
{
    w->installEventFilter(new ControlEventFilter(this, w));
    w->setMouseTracking(true);
}

Control::~Control()
{
    if (g_focused == m_self)
        g_focused = nullptr;
}

QWidget* Control::widget() const
{
    return qobject_cast<QWidget*>(m_self);
}

QString Control::Name() const
{
    return m_self->objectName();
}

Control* asControl(QObject* object)
{
    return dynamic_cast<Control*>(object);
}

Control* Control::focused()
{
    return g_focused ? asControl(g_focused.data()) : nullptr;
}

// Geometry ------------------------------------------------------------------------------

void Control::applyGeometry(int left, int top, int width, int height)
{
    m_twips.left = left;
    m_twips.top = top;
    m_twips.width = width;
    m_twips.height = height;
    m_twipsSet = true;
    m_grownRight = m_grownDown = 0;
    if (QWidget* w = widget()) {
        const double perPixel = twipsPerPixel(w);
        const auto pixels = [perPixel](int twips) { return static_cast<int>(std::lround(twips / perPixel)); };
        m_twips.px = pixels(left);
        m_twips.py = pixels(top);
        m_twips.pw = std::max(0, pixels(width));
        m_twips.ph = std::max(0, pixels(height));
        if (w->isWindow()) {
            w->move(m_twips.px, m_twips.py);
            w->resize(m_twips.pw, m_twips.ph);
        } else {
            w->setGeometry(m_twips.px, m_twips.py, m_twips.pw, m_twips.ph);
        }
    }
}

// A value reads back as written while the widget stays where it was put; once the user
// or a layout moved it, the pixels speak.
int Control::Left() const
{
    const QWidget* w = widget();
    if (!w || (m_twipsSet && w->x() == m_twips.px))
        return m_twips.left;
    return pixelsToTwips(w->x(), w);
}

int Control::Top() const
{
    const QWidget* w = widget();
    if (!w || (m_twipsSet && w->y() == m_twips.py))
        return m_twips.top;
    return pixelsToTwips(w->y(), w);
}

int Control::Width() const
{
    const QWidget* w = widget();
    if (!w || (m_twipsSet && w->width() == m_twips.pw + m_grownRight))
        return m_twips.width;
    return pixelsToTwips(w->width(), w);
}

int Control::Height() const
{
    const QWidget* w = widget();
    if (!w || (m_twipsSet && w->height() == m_twips.ph + m_grownDown))
        return m_twips.height;
    return pixelsToTwips(w->height(), w);
}

QRect Control::placedRect() const
{
    return m_twipsSet ? QRect(m_twips.px, m_twips.py, m_twips.pw, m_twips.ph) : QRect();
}

void Control::growBy(int pixelsRight, int pixelsDown)
{
    QWidget* w = widget();
    if (!w || !m_twipsSet)
        return;
    m_grownRight = pixelsRight;
    m_grownDown = pixelsDown;
    w->resize(m_twips.pw + pixelsRight, m_twips.ph + pixelsDown);
}

void Control::setLeft(int twips)
{
    applyGeometry(twips, Top(), Width(), Height());
}

void Control::setTop(int twips)
{
    applyGeometry(Left(), twips, Width(), Height());
}

void Control::setWidth(int twips)
{
    if (twips < 0)
        throw VBError(err::InvalidPropertyValue);
    applyGeometry(Left(), Top(), twips, Height());
}

void Control::setHeight(int twips)
{
    if (twips < 0)
        throw VBError(err::InvalidPropertyValue);
    applyGeometry(Left(), Top(), Width(), twips);
}

void Control::Move(int left, int top, int width, int height)
{
    applyGeometry(left, top, width < 0 ? Width() : width, height < 0 ? Height() : height);
}

// Colours and font ----------------------------------------------------------------------

void Control::initColours(int back, int fore)
{
    m_backColour = back;
    m_foreColour = fore;
    applyColours();
}

void Control::setBackColor(int vbColour)
{
    m_backColour = vbColour;
    applyColours();
}

void Control::setForeColor(int vbColour)
{
    m_foreColour = vbColour;
    applyColours();
}

void Control::paintRoles(QWidget* w, int backRole, int foreRole, int back, int fore, bool fillBackground)
{
    QPalette p = w->palette();
    for (auto group : {QPalette::Active, QPalette::Inactive}) {
        p.setColor(group, QPalette::ColorRole(backRole), toQColor(back));
        p.setColor(group, QPalette::ColorRole(foreRole), toQColor(fore));
    }
    w->setPalette(p);
    w->setAutoFillBackground(fillBackground);
}

void Control::applyColours()
{
    if (QWidget* w = widget())
        paintRoles(w, QPalette::Window, QPalette::WindowText, m_backColour, m_foreColour, false);
}

bool Control::FontBold() const
{
    const QWidget* w = widget();
    return w && w->font().bold();
}

void Control::setFontBold(bool on)
{
    if (QWidget* w = widget()) {
        QFont f = w->font();
        f.setBold(on);
        w->setFont(f);
    }
}

bool Control::FontUnderline() const
{
    const QWidget* w = widget();
    return w && w->font().underline();
}

void Control::setFontUnderline(bool on)
{
    if (QWidget* w = widget()) {
        QFont f = w->font();
        f.setUnderline(on);
        w->setFont(f);
    }
}

QString Control::ToolTipText() const
{
    const QWidget* w = widget();
    return w ? w->toolTip() : QString();
}

void Control::setToolTipText(const QString& text)
{
    if (QWidget* w = widget())
        w->setToolTip(text);
}

// Generic properties --------------------------------------------------------------------

Variant Control::vbProperty(const QString& name) const
{
    if (auto v = getProp(name.toLower()))
        return *v;
    throw notSupportedError();
}

void Control::setVbProperty(const QString& name, const Variant& value)
{
    if (!setProp(name.toLower(), value))
        throw notSupportedError();
}

std::optional<Variant> Control::getProp(const QString& n) const
{
    const QWidget* w = widget();
    if (n == QLatin1String("name"))
        return Variant(Name());
    if (n == QLatin1String("tag"))
        return Variant(m_tag);
    if (n == QLatin1String("left"))
        return Variant(Left());
    if (n == QLatin1String("top"))
        return Variant(Top());
    if (n == QLatin1String("width"))
        return Variant(Width());
    if (n == QLatin1String("height"))
        return Variant(Height());
    if (!w)
        return std::nullopt;
    if (n == QLatin1String("enabled"))
        return Variant(!w->testAttribute(Qt::WA_ForceDisabled));
    if (n == QLatin1String("visible"))
        return Variant(!w->isHidden());
    if (n == QLatin1String("tooltiptext"))
        return Variant(w->toolTip());
    if (n == QLatin1String("backcolor"))
        return Variant(m_backColour);
    if (n == QLatin1String("forecolor"))
        return Variant(m_foreColour);
    if (n == QLatin1String("fontbold"))
        return Variant(w->font().bold());
    if (n == QLatin1String("fontunderline"))
        return Variant(w->font().underline());
    if (n == QLatin1String("fontitalic"))
        return Variant(w->font().italic());
    if (n == QLatin1String("fontsize"))
        return Variant(w->font().pointSizeF());
    return std::nullopt;
}

bool Control::setProp(const QString& n, const Variant& v)
{
    QWidget* w = widget();
    if (n == QLatin1String("tag"))
        setTag(v.toString());
    else if (n == QLatin1String("left"))
        setLeft(v.toLong());
    else if (n == QLatin1String("top"))
        setTop(v.toLong());
    else if (n == QLatin1String("width"))
        setWidth(v.toLong());
    else if (n == QLatin1String("height"))
        setHeight(v.toLong());
    else if (!w)
        return false;
    else if (n == QLatin1String("enabled"))
        w->setEnabled(v.toBool());
    else if (n == QLatin1String("visible"))
        w->setVisible(v.toBool());
    else if (n == QLatin1String("tooltiptext"))
        w->setToolTip(v.toString());
    else if (n == QLatin1String("backcolor"))
        setBackColor(v.toLong());
    else if (n == QLatin1String("forecolor"))
        setForeColor(v.toLong());
    else if (n == QLatin1String("fontbold"))
        setFontBold(v.toBool());
    else if (n == QLatin1String("fontunderline"))
        setFontUnderline(v.toBool());
    else if (n == QLatin1String("fontitalic")) {
        QFont f = w->font();
        f.setItalic(v.toBool());
        w->setFont(f);
    } else if (n == QLatin1String("fontsize")) {
        QFont f = w->font();
        f.setPointSizeF(v.toDouble());
        w->setFont(f);
    } else
        return false;
    return true;
}

// Focus and keys ------------------------------------------------------------------------

void Control::handleFocusIn()
{
    if (m_hasFocus)
        return;
    if (Control* previous = focused(); previous && previous != this)
        previous->handleFocusOut();
    m_hasFocus = true;
    g_focused = m_self;
    if (m_focusHighlight) {
        setBackColor(colour::Orange);
        selectAllText();
    }
    GotFocus();
}

void Control::handleFocusOut()
{
    if (!m_hasFocus)
        return;
    m_hasFocus = false;
    if (g_focused == m_self)
        g_focused = nullptr;
    if (m_focusHighlight)
        setBackColor(colour::White);
    LostFocus();
}

bool Control::handleKeyEvent(int keyAscii)
{
    const int original = keyAscii;
    KeyPress(keyAscii);
    if (keyAscii == 0)
        return true;
    if (keyAscii != original) {
        acceptKey(keyAscii);
        return true;
    }
    return false; // the widget types it as it is
}

bool Control::reachable() const
{
    const QWidget* w = widget();
    return !w || (!w->testAttribute(Qt::WA_ForceDisabled) && !w->isHidden());
}

void Control::focusIn()
{
    if (!reachable())
        throw VBError(5); // VB refuses the focus to a disabled or hidden control
    handleFocusIn();
}

void Control::focusOut()
{
    handleFocusOut();
}

void Control::keyPress(int keyAscii)
{
    if (!handleKeyEvent(keyAscii))
        acceptKey(keyAscii);
    KeyUp();
}

void Control::typeText(const QString& text)
{
    focusIn();
    for (const QChar c : text)
        keyPress(c.unicode());
}

void Control::acceptKey(int)
{
}

void Control::notSupported() const
{
    throw notSupportedError();
}

void Control::click()
{
    if (!reachable())
        return;
    // A click on a control that takes the focus moves it there first, so the field left
    // behind runs its LostFocus before the Click, as with the mouse.
    if (QWidget* w = widget(); w && (w->focusPolicy() & Qt::ClickFocus))
        handleFocusIn();
    Click();
}

void Control::dblClick()
{
    if (reachable())
        DblClick();
}

void Control::select(int)
{
    notSupported();
}

void Control::choose(const QString&)
{
    notSupported();
}

void Control::tick()
{
    notSupported();
}

} // namespace vb
