#include "controls/Form.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

namespace vb {

namespace {
std::function<void(Form*)>& closeHandler()
{
    static std::function<void(Form*)> handler;
    return handler;
}
} // namespace

int Screen::Width()
{
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->geometry().width() * TwipsPerPixel : 0;
}

int Screen::Height()
{
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->geometry().height() * TwipsPerPixel : 0;
}

Form::Form(QWidget* parent, const QString& name, const QString& caption) : QWidget(parent, Qt::Window), Control(this)
{
    setObjectName(name);
    setWindowTitle(caption);
    initColours(colour::ButtonFace, colour::ButtonText);
}

Form::~Form() = default;

void Form::setCaption(const Variant& caption)
{
    setWindowTitle(caption.toString());
}

Control* Form::control(const QString& name) const
{
    // Controls are direct or nested children; the screens this one owns are windows of
    // their own, and their controls are theirs, not this screen's.
    const auto children = findChildren<QObject*>(name);
    for (QObject* child : children) {
        Control* c = asControl(child);
        if (!c)
            continue;
        QObject* holder = child->parent();
        while (holder && holder != this && !(holder->isWidgetType() && static_cast<QWidget*>(holder)->isWindow()))
            holder = holder->parent();
        if (holder == this && !(child->isWidgetType() && static_cast<QWidget*>(child)->isWindow()))
            return c;
    }
    return nullptr;
}

void Form::centre()
{
    Move((Screen::Width() - Width()) / 2, (Screen::Height() - Height()) / 2);
}

void Form::setCloseHandler(std::function<void(Form*)> handler)
{
    closeHandler() = std::move(handler);
}

void Form::closeEvent(QCloseEvent* e)
{
    if (closeHandler()) {
        e->ignore();
        closeHandler()(this);
        return;
    }
    runEvent([this] { Form_Unload(); });
    e->accept();
}

void Form::applyColours()
{
    paintRoles(this, QPalette::Window, QPalette::WindowText, BackColor(), ForeColor(), true);
}

std::optional<Variant> Form::getProp(const QString& n) const
{
    if (n == QLatin1String("caption"))
        return Variant(Caption());
    return Control::getProp(n);
}

bool Form::setProp(const QString& n, const Variant& v)
{
    if (n != QLatin1String("caption"))
        return Control::setProp(n, v);
    setCaption(v);
    return true;
}

} // namespace vb
