#include "controls/DateControls.h"

#include "runtime/Clock.h"
#include "runtime/VBError.h"

#include <cmath>

namespace vb {

namespace {

bool is(const QString& n, const char* name)
{
    return n == QLatin1String(name);
}

// The range a picker holds (computed on use: the date helpers have statics of their own).
bool inPickerRange(double serial)
{
    static const double first = toSerial(QDate(1601, 1, 1));
    static const double end = toSerial(QDate(9999, 12, 31)) + 1;
    return serial >= first && serial < end;
}

double timeOfDay(double serial)
{
    return std::fabs(serial - std::trunc(serial));
}

// VB's mask characters that stand for something typed; the rest are literals.
bool isPlaceholder(QChar c)
{
    return QStringLiteral("#9?Aa&C").contains(c);
}

} // namespace

// DTPicker -------------------------------------------------------------------------------

DTPicker::DTPicker(QWidget* parent, const QString& name) : QDateEdit(parent), Control(this)
{
    setObjectName(name);
    setDisplayFormat(m_format);
    setCalendarPopup(true);
    setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    m_value = JetDate{toSerial(Clock::today())};
    setDate(Clock::today());
    connect(this, &QDateEdit::dateChanged, this, [this](QDate d) {
        if (m_silent || !d.isValid())
            return;
        m_unshown = false;
        m_value = JetDate{toSerial(d) + timeOfDay(m_value.serial)};
        Change();
    });
    initColours(colour::WindowBackground, colour::WindowText);
}

QDate DTPicker::date() const
{
    return dateFromSerial(m_value.serial);
}

void DTPicker::setValue(const Variant& value)
{
    if (value.isNull())
        throw VBError(err::InvalidPropertyValue);
    const JetDate d = value.toDate(); // text that is no date raises 13
    if (!inPickerRange(d.serial))
        throw VBError(err::InvalidPropertyValue);
    if (d == m_value)
        return;
    m_value = d;
    if (isHidden())
        m_unshown = true;
    else
        showValue();
    Change();
}

void DTPicker::showValue()
{
    m_unshown = false;
    m_silent = true;
    setDate(dateFromSerial(m_value.serial));
    m_silent = false;
}

void DTPicker::setVisible(bool visible)
{
    if (visible && m_unshown)
        showValue();
    QDateEdit::setVisible(visible);
}

QString DTPicker::Text() const
{
    return date().toString(m_format);
}

void DTPicker::setCustomFormat(const QString& format)
{
    m_format = format;
    setDisplayFormat(format);
}

std::optional<Variant> DTPicker::getProp(const QString& n) const
{
    if (is(n, "value"))
        return Value();
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "customformat"))
        return Variant(m_format);
    if (is(n, "year"))
        return Variant(date().year());
    if (is(n, "month"))
        return Variant(date().month());
    if (is(n, "day"))
        return Variant(date().day());
    return Control::getProp(n);
}

bool DTPicker::setProp(const QString& n, const Variant& v)
{
    if (is(n, "value"))
        setValue(v);
    else if (is(n, "customformat"))
        setCustomFormat(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

// MaskEdBox ------------------------------------------------------------------------------

MaskEdBox::MaskEdBox(QWidget* parent, const QString& name, const QString& mask) : QLineEdit(parent), Control(this)
{
    setObjectName(name);
    setMask(mask);
    connect(this, &QLineEdit::textChanged, this, [this] {
        const QString now = Text();
        if (now == m_lastText)
            return;
        m_lastText = now;
        Change();
    });
    setFocusHighlight(true);
    initColours(colour::WindowBackground, colour::WindowText);
}

void MaskEdBox::setMask(const QString& mask)
{
    m_mask = mask;
    QString qt;
    for (int i = 0; i < mask.size(); ++i) {
        const QChar c = mask.at(i);
        switch (c.unicode()) {
        case '#':
        case '9': qt += QLatin1Char('0'); break;
        case '?': qt += QLatin1Char('a'); break;
        case 'A':
        case 'a': qt += QLatin1Char('n'); break;
        case '&':
        case 'C': qt += QLatin1Char('x'); break;
        default:
            if (QStringLiteral("AaNnXx90Dd#HhBb><![]{}\\;").contains(c))
                qt += QLatin1Char('\\');
            qt += c;
        }
    }
    setInputMask(mask.isEmpty() ? QString() : qt + QLatin1Char(';') + m_prompt);
    m_lastText = Text();
}

QString MaskEdBox::emptyText() const
{
    QString t = m_mask;
    for (QChar& c : t)
        if (isPlaceholder(c))
            c = m_prompt;
    return t;
}

QString MaskEdBox::Text() const
{
    return m_mask.isEmpty() ? QLineEdit::text() : displayText();
}

bool MaskEdBox::fits(const QString& text) const
{
    if (text.size() != m_mask.size())
        return false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar m = m_mask.at(i);
        const QChar c = text.at(i);
        if (!isPlaceholder(m)) {
            if (c != m)
                return false;
        } else if (c != m_prompt) {
            if ((m == QLatin1Char('#') || m == QLatin1Char('9')) && !c.isDigit())
                return false;
            if (m == QLatin1Char('?') && !c.isLetter())
                return false;
        }
    }
    return true;
}

void MaskEdBox::setText(const Variant& value)
{
    const QString text = value.toString();
    if (!m_mask.isEmpty() && !fits(text))
        throw VBError(err::InvalidPropertyValue);
    QString typed = text;
    if (!m_mask.isEmpty())
        typed.replace(m_prompt, QLatin1Char(' ')); // the mask's blanks
    QLineEdit::setText(typed);
}

void MaskEdBox::acceptKey(int keyAscii)
{
    if (isReadOnly())
        return;
    if (keyAscii == 8)
        backspace();
    else if (keyAscii >= 32)
        insert(QString(QChar(keyAscii)));
}

void MaskEdBox::applyColours()
{
    paintRoles(this, QPalette::Base, QPalette::Text, BackColor(), ForeColor(), false);
}

std::optional<Variant> MaskEdBox::getProp(const QString& n) const
{
    if (is(n, "text"))
        return Variant(Text());
    if (is(n, "mask"))
        return Variant(m_mask);
    if (is(n, "promptchar"))
        return Variant(QString(m_prompt));
    return Control::getProp(n);
}

bool MaskEdBox::setProp(const QString& n, const Variant& v)
{
    if (is(n, "text"))
        setText(v);
    else if (is(n, "mask"))
        setMask(v.toString());
    else
        return Control::setProp(n, v);
    return true;
}

} // namespace vb
