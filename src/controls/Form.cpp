#include "controls/Form.h"

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/ScreenFont.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <vector>

namespace vb {

namespace {
std::function<void(Form*)>& closeHandler()
{
    static std::function<void(Form*)> handler;
    return handler;
}

/// Grids and lists, which show more rows in more room, and the frames that hold one.
bool takesRoom(QWidget* w)
{
    if (dynamic_cast<DataGrid*>(w) || dynamic_cast<ListBox*>(w))
        return true;
    if (!dynamic_cast<Frame*>(w))
        return false;
    const auto inside = w->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    return std::any_of(inside.begin(), inside.end(), takesRoom);
}

/// Where a child of a screen or frame stands for the others: where it is, hidden or not,
/// since what is hidden now may show later. A control the program never placed (a key
/// kept in an unseen field) stands nowhere.
QRect standing(QWidget* w)
{
    const Control* c = asControl(w);
    if (w->isWindow() || (c && c->placedRect().isNull()) || (!c && w->isHidden()))
        return {};
    return w->geometry();
}

/// Gives the grids and lists of a screen or frame @p right and @p down pixels more than
/// the program drew them, each in full where it covers no other child, else none of it;
/// a frame that grows gives its own the same room.
void giveRoom(QWidget* container, int right, int down)
{
    const auto children = container->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    // Each grid or list stands for the others at its drawn size until its turn comes, and
    // is then resized once: one grown by an earlier resize blocks none of the others.
    struct Growing
    {
        QWidget* widget;
        QRect stands;
    };
    std::vector<Growing> growing;
    for (QWidget* w : children) {
        if (Control* c = asControl(w); c && !c->placedRect().isNull() && takesRoom(w)) {
            const QSize drawn = c->placedRect().size().boundedTo(w->maximumSize()).expandedTo(w->minimumSize());
            growing.push_back({w, QRect(w->pos(), drawn)});
        }
    }
    auto standsNow = [&](QWidget* other) {
        for (const Growing& g : growing)
            if (g.widget == other)
                return g.stands;
        return standing(other);
    };
    for (Growing& g : growing) {
        QWidget* w = g.widget;
        Control* c = asControl(w);
        const QRect drawn = c->placedRect();
        auto clear = [&](int r, int d) {
            const QRect wanted = drawn.adjusted(0, 0, r, d);
            return std::none_of(children.begin(), children.end(),
                                [&](QWidget* other) { return other != w && wanted.intersects(standsNow(other)); });
        };
        int r = right > 0 && clear(right, 0) ? right : 0;
        int d = down > 0 && clear(0, down) ? down : 0;
        if (r > 0 && d > 0 && !clear(r, d))
            (r * drawn.height() >= d * drawn.width() ? d : r) = 0; // the larger of the two
        c->growBy(r, d);
        g.stands = w->geometry();
        if (dynamic_cast<Frame*>(w))
            giveRoom(w, r, d);
    }
}
} // namespace

int Screen::Width()
{
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? pixelsToTwips(s->geometry().width()) : 0;
}

int Screen::Height()
{
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? pixelsToTwips(s->geometry().height()) : 0;
}

Form::Form(QWidget* parent, const QString& name, const QString& caption) : QWidget(parent, Qt::Window), Control(this)
{
    setObjectName(name);
    setWindowTitle(caption);
    setFont(screenFont());
    initColours(colour::ButtonFace, colour::ButtonText);
}

Form::~Form() = default;

void Form::setCaption(const Variant& caption)
{
    setWindowTitle(caption.toString());
}

namespace {

/// The first control of the name under @p parent, in the order of findChildren; the
/// windows met on the way (screens of their own) are passed over with all they hold.
Control* firstControl(const QObject* parent, const QString& name)
{
    for (QObject* child : parent->children()) {
        if (child->isWidgetType() && static_cast<QWidget*>(child)->isWindow())
            continue;
        if (child->objectName() == name)
            if (Control* c = asControl(child))
                return c;
        if (Control* c = firstControl(child, name))
            return c;
    }
    return nullptr;
}

} // namespace

Control* Form::control(const QString& name) const
{
    // Controls are direct or nested children; the screens this one owns are windows of
    // their own, and their controls are theirs, not this screen's.
    return firstControl(this, name);
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

void Form::showEvent(QShowEvent* e)
{
    if (!m_drawnSize.isValid())
        m_drawnSize = placedRect().isNull() ? size() : placedRect().size();
    QWidget::showEvent(e);
}

void Form::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    if (m_drawnSize.isValid())
        giveRoom(this, std::max(0, width() - m_drawnSize.width()), std::max(0, height() - m_drawnSize.height()));
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
