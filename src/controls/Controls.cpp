#include "controls/Controls.h"

#include "runtime/VBError.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QVBoxLayout>

namespace vb {

namespace {

bool is(const QString& n, const char* name)
{
    return n == QLatin1String(name);
}

int alignmentFlags(int vbAlignment)
{
    switch (vbAlignment) {
    case 1: return Qt::AlignRight | Qt::AlignTop;
    case 2: return Qt::AlignHCenter | Qt::AlignTop;
    default: return Qt::AlignLeft | Qt::AlignTop;
    }
}

} // namespace

// Label ----------------------------------------------------------------------------------

Label::Label(QWidget* parent, const QString& name, const QString& caption) : QLabel(parent), Control(this)
{
    setObjectName(name);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    QLabel::setAlignment(Qt::Alignment(alignmentFlags(0)));
    setClickOnMouseRelease(true);
    setText(caption);
    initColours(colour::ButtonFace, colour::ButtonText);
}

void Label::setCaption(const Variant& caption)
{
    setText(caption.toString());
}

void Label::setBackStyle(int style)
{
    m_backStyle = style == 0 ? 0 : 1;
    applyColours();
}

void Label::setAlignment(int alignment)
{
    if (alignment < 0 || alignment > 2)
        throw VBError(err::InvalidPropertyValue);
    m_alignment = alignment;
    QLabel::setAlignment(Qt::Alignment(alignmentFlags(alignment)));
}

void Label::applyColours()
{
    paintRoles(this, QPalette::Window, QPalette::WindowText, BackColor(), ForeColor(), m_backStyle == 1);
}

std::optional<Variant> Label::getProp(const QString& n) const
{
    if (is(n, "caption"))
        return Variant(Caption());
    if (is(n, "backstyle"))
        return Variant(m_backStyle);
    if (is(n, "alignment"))
        return Variant(m_alignment);
    if (is(n, "wordwrap"))
        return Variant(wordWrap());
    return Control::getProp(n);
}

bool Label::setProp(const QString& n, const Variant& v)
{
    if (is(n, "caption"))
        setCaption(v);
    else if (is(n, "backstyle"))
        setBackStyle(v.toLong());
    else if (is(n, "alignment"))
        setAlignment(v.toLong());
    else if (is(n, "wordwrap"))
        setWordWrap(v.toBool());
    else
        return Control::setProp(n, v);
    return true;
}

// TextBox --------------------------------------------------------------------------------

TextBox::TextBox(QWidget* parent, const QString& name, bool multiLine) : QWidget(parent), Control(this)
{
    setObjectName(name);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (multiLine) {
        m_area = new QPlainTextEdit(this);
        connect(m_area, &QPlainTextEdit::textChanged, this, [this] { Change(); });
        layout->addWidget(m_area);
    } else {
        m_line = new QLineEdit(this);
        connect(m_line, &QLineEdit::textChanged, this, [this] { Change(); });
        layout->addWidget(m_line);
    }
    editor()->setObjectName(name + QStringLiteral("_editor"));
    setFocusProxy(editor());
    setFocusPolicy(Qt::StrongFocus);
    watch(editor());
    setFocusHighlight(true);
    initColours(colour::WindowBackground, colour::WindowText);
}

QWidget* TextBox::editor() const
{
    return m_line ? static_cast<QWidget*>(m_line) : static_cast<QWidget*>(m_area);
}

// A multi-line box hands out its lines as the program wrote them to files: CR LF.
QString TextBox::Text() const
{
    if (m_line)
        return m_line->text();
    QString t = m_area->toPlainText();
    t.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return t;
}

void TextBox::setText(const Variant& text)
{
    QString t = text.toString(); // Null raises 94 before anything changes
    if (t == Text())
        return; // VB fires no Change when the text stays the same
    if (m_line) {
        m_line->setText(t);
        m_line->setCursorPosition(0);
    } else {
        t.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        m_area->setPlainText(t);
    }
}

void TextBox::setLocked(bool on)
{
    m_locked = on;
    if (m_line)
        m_line->setReadOnly(on);
    else
        m_area->setReadOnly(on);
}

void TextBox::setMaxLength(int length)
{
    if (length < 0)
        throw VBError(err::InvalidPropertyValue);
    m_maxLength = length;
    if (m_line)
        m_line->setMaxLength(length == 0 ? 32767 : length);
}

int TextBox::SelStart() const
{
    if (m_line)
        return m_line->hasSelectedText() ? m_line->selectionStart() : m_line->cursorPosition();
    return m_area->textCursor().selectionStart();
}

int TextBox::SelLength() const
{
    if (m_line)
        return m_line->selectedText().size();
    const QTextCursor c = m_area->textCursor();
    return c.selectionEnd() - c.selectionStart();
}

QString TextBox::SelText() const
{
    if (m_line)
        return m_line->selectedText();
    return m_area->textCursor().selectedText();
}

void TextBox::select(int start, int length)
{
    const int size = m_line ? m_line->text().size() : m_area->toPlainText().size();
    start = std::clamp(start, 0, int(size));
    length = std::clamp(length, 0, int(size) - start);
    if (m_line) {
        if (length == 0)
            m_line->setCursorPosition(start);
        else
            m_line->setSelection(start, length);
    } else {
        QTextCursor c = m_area->textCursor();
        c.setPosition(start);
        c.setPosition(start + length, QTextCursor::KeepAnchor);
        m_area->setTextCursor(c);
    }
}

void TextBox::setSelStart(int start)
{
    if (start < 0)
        throw VBError(err::InvalidPropertyValue);
    select(start, 0);
}

void TextBox::setSelLength(int length)
{
    if (length < 0)
        throw VBError(err::InvalidPropertyValue);
    select(SelStart(), length);
}

void TextBox::setSelText(const QString& text)
{
    if (m_line)
        m_line->insert(text);
    else
        m_area->textCursor().insertText(text);
}

void TextBox::seltxt()
{
    select(0, m_line ? m_line->text().size() : m_area->toPlainText().size());
}

void TextBox::acceptKey(int keyAscii)
{
    if (m_locked)
        return;
    if (keyAscii == 8) {
        if (m_line)
            m_line->backspace();
        else
            m_area->textCursor().deletePreviousChar();
        return;
    }
    QString typed;
    if (keyAscii == 13) {
        if (!m_area)
            return; // a single-line box ignores Enter
        typed = QStringLiteral("\n");
    } else if (keyAscii < 32) {
        return;
    } else {
        typed = QString(QChar(keyAscii));
    }
    if (m_maxLength > 0 && Text().size() - SelLength() + 1 > m_maxLength)
        return;
    setSelText(typed);
}

void TextBox::applyColours()
{
    paintRoles(editor(), QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
}

std::optional<Variant> TextBox::getProp(const QString& n) const
{
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "locked"))
        return Variant(m_locked);
    if (is(n, "maxlength"))
        return Variant(m_maxLength);
    if (is(n, "selstart"))
        return Variant(SelStart());
    if (is(n, "sellength"))
        return Variant(SelLength());
    if (is(n, "seltext"))
        return Variant(SelText());
    return Control::getProp(n);
}

bool TextBox::setProp(const QString& n, const Variant& v)
{
    if (is(n, "text"))
        setText(v);
    else if (is(n, "locked"))
        setLocked(v.toBool());
    else if (is(n, "maxlength"))
        setMaxLength(v.toLong());
    else if (is(n, "selstart"))
        setSelStart(v.toLong());
    else if (is(n, "sellength"))
        setSelLength(v.toLong());
    else if (is(n, "seltext"))
        setSelText(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

// CommandButton --------------------------------------------------------------------------

CommandButton::CommandButton(QWidget* parent, const QString& name, const QString& caption)
    : QPushButton(caption, parent), Control(this)
{
    setObjectName(name);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] { Click(); });
    initColours(colour::ButtonFace, colour::ButtonText);
}

QRect CommandButton::face() const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect contents = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    // The style's own margins around a caption, without its least width for a button.
    const int margins = style()->sizeFromContents(QStyle::CT_PushButton, &option, QSize(1000, 0), this).width() - 1000;
    return contents & rect().adjusted(margins / 2, 0, -(margins - margins / 2), 0);
}

void CommandButton::paintEvent(QPaintEvent* e)
{
    const QRect f = face();
    if (fontMetrics().horizontalAdvance(text()) <= f.width()) {
        QPushButton::paintEvent(e);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    painter.drawItemText(f, Qt::AlignCenter | Qt::TextWordWrap, palette(), isEnabled(), text(), QPalette::ButtonText);
}

void CommandButton::setCaption(const Variant& caption)
{
    setText(caption.toString());
}

std::optional<Variant> CommandButton::getProp(const QString& n) const
{
    if (is(n, "caption"))
        return Variant(Caption());
    return Control::getProp(n);
}

bool CommandButton::setProp(const QString& n, const Variant& v)
{
    if (!is(n, "caption"))
        return Control::setProp(n, v);
    setCaption(v);
    return true;
}

// CheckBox -------------------------------------------------------------------------------

CheckBox::CheckBox(QWidget* parent, const QString& name, const QString& caption)
    : QCheckBox(caption, parent), Control(this)
{
    setObjectName(name);
    setTristate(false);
    connect(this, &QCheckBox::clicked, this, [this] { Click(); });
    initColours(colour::ButtonFace, colour::ButtonText);
}

int CheckBox::Value() const
{
    switch (checkState()) {
    case Qt::Checked: return 1;
    case Qt::PartiallyChecked: return 2;
    default: return 0;
    }
}

void CheckBox::setValue(int value)
{
    if (value < 0 || value > 2)
        throw VBError(err::InvalidPropertyValue);
    if (value == Value())
        return;
    setCheckState(value == 1 ? Qt::Checked : value == 2 ? Qt::PartiallyChecked : Qt::Unchecked);
    Click();
}

void CheckBox::click()
{
    if (!reachable())
        return;
    handleFocusIn();
    setValue(Value() == 1 ? 0 : 1);
}

std::optional<Variant> CheckBox::getProp(const QString& n) const
{
    if (is(n, "value"))
        return Variant(Value());
    if (is(n, "caption"))
        return Variant(text());
    return Control::getProp(n);
}

bool CheckBox::setProp(const QString& n, const Variant& v)
{
    if (is(n, "value"))
        setValue(v.toLong());
    else if (is(n, "caption"))
        setText(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

// OptionButton ---------------------------------------------------------------------------

OptionButton::OptionButton(QWidget* parent, const QString& name, const QString& caption)
    : QRadioButton(caption, parent), Control(this)
{
    setObjectName(name);
    connect(this, &QRadioButton::clicked, this, [this](bool checked) {
        if (checked)
            Click();
    });
    initColours(colour::ButtonFace, colour::ButtonText);
}

void OptionButton::setValue(bool on)
{
    if (on == isChecked())
        return;
    setChecked(on);
    if (on)
        Click();
}

void OptionButton::click()
{
    if (!reachable())
        return;
    handleFocusIn();
    setValue(true);
}

std::optional<Variant> OptionButton::getProp(const QString& n) const
{
    if (is(n, "value"))
        return Variant(Value());
    if (is(n, "caption"))
        return Variant(text());
    return Control::getProp(n);
}

bool OptionButton::setProp(const QString& n, const Variant& v)
{
    if (is(n, "value"))
        setValue(v.toBool());
    else if (is(n, "caption"))
        setText(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

// Frame ----------------------------------------------------------------------------------

Frame::Frame(QWidget* parent, const QString& name, const QString& caption) : QGroupBox(caption, parent), Control(this)
{
    setObjectName(name);
    setClickOnMouseRelease(true);
    initColours(colour::ButtonFace, colour::ButtonText);
}

void Frame::setCaption(const Variant& caption)
{
    setTitle(caption.toString());
}

std::optional<Variant> Frame::getProp(const QString& n) const
{
    if (is(n, "caption"))
        return Variant(Caption());
    return Control::getProp(n);
}

bool Frame::setProp(const QString& n, const Variant& v)
{
    if (!is(n, "caption"))
        return Control::setProp(n, v);
    setCaption(v);
    return true;
}

// Image ----------------------------------------------------------------------------------

Image::Image(QWidget* parent, const QString& name) : QLabel(parent), Control(this)
{
    setObjectName(name);
    setClickOnMouseRelease(true);
    setScaledContents(false);
}

void Image::setPicture(const QString& path)
{
    if (path.isEmpty()) {
        m_path.clear();
        m_pixmap = QPixmap();
        clear();
        return;
    }
    if (!QFileInfo(path).isFile())
        throw VBError(53);
    QPixmap pixmap(path);
    if (pixmap.isNull())
        throw VBError(481, QStringLiteral("Immagine non valida"));
    m_path = path;
    m_pixmap = pixmap;
    if (!m_stretch) // without stretching the control takes the picture's own size
        Move(Left(), Top(), pictureWidth(), pictureHeight());
    showPicture();
}

void Image::setStretch(bool on)
{
    m_stretch = on;
    if (!on && !m_pixmap.isNull())
        Move(Left(), Top(), pictureWidth(), pictureHeight());
    showPicture();
}

int Image::pictureWidth() const
{
    return pixelsToTwips(m_pixmap.width(), this);
}

int Image::pictureHeight() const
{
    return pixelsToTwips(m_pixmap.height(), this);
}

void Image::showPicture()
{
    if (m_pixmap.isNull())
        return;
    setPixmap(m_stretch ? m_pixmap.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : m_pixmap);
}

void Image::resizeEvent(QResizeEvent* e)
{
    QLabel::resizeEvent(e);
    if (m_stretch)
        showPicture();
}

std::optional<Variant> Image::getProp(const QString& n) const
{
    if (is(n, "picture"))
        return Variant(m_path);
    if (is(n, "stretch"))
        return Variant(m_stretch);
    return Control::getProp(n);
}

bool Image::setProp(const QString& n, const Variant& v)
{
    if (is(n, "picture"))
        setPicture(v.toString());
    else if (is(n, "stretch"))
        setStretch(v.toBool());
    else
        return Control::setProp(n, v);
    return true;
}

// Shape ----------------------------------------------------------------------------------

Shape::Shape(QWidget* parent, const QString& name) : QWidget(parent), Control(this)
{
    setObjectName(name);
    initColours(colour::WindowBackground, colour::WindowText);
}

void Shape::setFillColor(int vbColour)
{
    m_fillColour = vbColour;
    update();
}

void Shape::setBackStyle(int style)
{
    m_backStyle = style == 0 ? 0 : 1;
    update();
}

void Shape::setFillStyle(int style)
{
    if (style < 0 || style > 7)
        throw VBError(err::InvalidPropertyValue);
    m_fillStyle = style;
    update();
}

void Shape::setBorderColor(int vbColour)
{
    m_borderColour = vbColour;
    update();
}

void Shape::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    auto qcolour = [](int vb) {
        const Rgb c = colourToRgb(vb);
        return QColor(c.r, c.g, c.b);
    };
    const QRect r = rect().adjusted(0, 0, -1, -1);
    if (m_backStyle == 1)
        p.fillRect(r, qcolour(BackColor()));
    if (m_fillStyle == 0)
        p.fillRect(r, qcolour(m_fillColour));
    p.setPen(qcolour(m_borderColour));
    p.drawRect(r);
}

std::optional<Variant> Shape::getProp(const QString& n) const
{
    if (is(n, "fillcolor"))
        return Variant(m_fillColour);
    if (is(n, "backstyle"))
        return Variant(m_backStyle);
    if (is(n, "fillstyle"))
        return Variant(m_fillStyle);
    if (is(n, "bordercolor"))
        return Variant(m_borderColour);
    return Control::getProp(n);
}

bool Shape::setProp(const QString& n, const Variant& v)
{
    if (is(n, "fillcolor"))
        setFillColor(v.toLong());
    else if (is(n, "backstyle"))
        setBackStyle(v.toLong());
    else if (is(n, "fillstyle"))
        setFillStyle(v.toLong());
    else if (is(n, "bordercolor"))
        setBorderColor(v.toLong());
    else
        return Control::setProp(n, v);
    return true;
}

// ProgressBar ----------------------------------------------------------------------------

ProgressBar::ProgressBar(QWidget* parent, const QString& name) : QProgressBar(parent), Control(this)
{
    setObjectName(name);
    setTextVisible(false);
    QProgressBar::setRange(0, 1000);
    display();
}

void ProgressBar::display()
{
    const double span = m_max - m_min;
    QProgressBar::setValue(span > 0 ? int((m_value - m_min) / span * 1000 + 0.5) : 0);
}

void ProgressBar::setValue(double value)
{
    if (value < m_min || value > m_max)
        throw VBError(err::InvalidPropertyValue);
    m_value = value;
    display();
}

void ProgressBar::setMin(double v)
{
    if (v >= m_max)
        throw VBError(err::InvalidPropertyValue);
    m_min = v;
    m_value = std::max(m_value, v);
    display();
}

void ProgressBar::setMax(double v)
{
    if (v <= m_min)
        throw VBError(err::InvalidPropertyValue);
    m_max = v;
    m_value = std::min(m_value, v);
    display();
}

std::optional<Variant> ProgressBar::getProp(const QString& n) const
{
    if (is(n, "value"))
        return Variant(m_value);
    if (is(n, "min"))
        return Variant(m_min);
    if (is(n, "max"))
        return Variant(m_max);
    return Control::getProp(n);
}

bool ProgressBar::setProp(const QString& n, const Variant& v)
{
    if (is(n, "value"))
        setValue(v.toDouble());
    else if (is(n, "min"))
        setMin(v.toDouble());
    else if (is(n, "max"))
        setMax(v.toDouble());
    else
        return Control::setProp(n, v);
    return true;
}

// Timer ----------------------------------------------------------------------------------

namespace {
bool g_manualTimers = false;
} // namespace

Timer::Timer(QObject* parent, const QString& name, int interval, bool enabled)
    : QObject(parent), Control(this), m_interval(interval), m_enabled(enabled)
{
    setObjectName(name);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (!g_manualTimers) // switched to manual after it started
            Tick();
    });
    arm();
}

void Timer::setManual(bool on)
{
    g_manualTimers = on;
}

bool Timer::manual()
{
    return g_manualTimers;
}

void Timer::arm()
{
    if (m_enabled && m_interval > 0 && !g_manualTimers)
        m_timer.start(m_interval);
    else
        m_timer.stop();
}

void Timer::setInterval(int ms)
{
    if (ms < 0 || ms > 65535)
        throw VBError(err::InvalidPropertyValue);
    m_interval = ms;
    arm();
}

void Timer::setEnabled(bool on)
{
    m_enabled = on;
    arm();
}

void Timer::tick()
{
    if (m_enabled && m_interval > 0)
        Tick();
}

std::optional<Variant> Timer::getProp(const QString& n) const
{
    if (is(n, "interval"))
        return Variant(m_interval);
    if (is(n, "enabled"))
        return Variant(m_enabled);
    return Control::getProp(n);
}

bool Timer::setProp(const QString& n, const Variant& v)
{
    if (is(n, "interval"))
        setInterval(v.toLong());
    else if (is(n, "enabled"))
        setEnabled(v.toBool());
    else
        return Control::setProp(n, v);
    return true;
}

} // namespace vb
