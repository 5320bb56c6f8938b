#include "runtime/widgets/Form.h"

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
    // Controls are direct or nested children; a control of another screen owned by this
    // one is a window of its own and is not searched.
    const auto children = findChildren<QObject*>(name);
    for (QObject* child : children) {
        if (Control* c = asControl(child)) {
            if (auto* w = qobject_cast<QWidget*>(child); w && w->isWindow())
                continue;
            return c;
        }
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
    Form_Unload();
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
