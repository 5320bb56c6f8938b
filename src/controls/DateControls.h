#pragma once
/// @file DateControls.h
/// The date fields: DTPicker (a date picker with the custom format "dd/MM/yyyy") and
/// MaskEdBox (masked text such as "##/##/####", "__/__/____" when empty).

#include "controls/Control.h"

#include <QDateEdit>
#include <QLineEdit>

namespace vb {

/// DTPicker: Value is a date (its time of day kept as written). A change of Value, by the
/// user or the program, fires Change. A value it cannot hold (Null, before 1601, after
/// 9999) raises 380 and leaves the value as it was.
class DTPicker : public QDateEdit, public Control
{
public:
    DTPicker(QWidget* parent, const QString& name);
    Variant Value() const { return Variant(m_value); }
    void setValue(const Variant& value);
    QDate date() const;
    /// The shown text under CustomFormat.
    QString Text() const;
    QString CustomFormat() const { return m_format; }
    void setCustomFormat(const QString& format);
    void setVisible(bool visible) override;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    void showValue();
    JetDate m_value;
    QString m_format = QStringLiteral("dd/MM/yyyy");
    bool m_silent = false;
    /// A hidden picker set again and again (a scratch date in a loop) shows its value
    /// only when it is shown: the edit field's own work is done once.
    bool m_unshown = false;
};

/// MaskEdBox: Text holds the literals and the prompt character where nothing was typed
/// ("__/__/____"). A text that does not fit the mask raises 380. Change fires on every
/// change of the text.
class MaskEdBox : public QLineEdit, public Control
{
public:
    MaskEdBox(QWidget* parent, const QString& name, const QString& mask = {});
    QString Text() const;
    void setText(const Variant& text);
    QString Mask() const { return m_mask; }
    void setMask(const QString& mask);
    QChar PromptChar() const { return m_prompt; }
    /// The empty text of the mask ("__/__/____").
    QString emptyText() const;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;
    void acceptKey(int keyAscii) override;
    void selectAllText() override { selectAll(); }

private:
    bool fits(const QString& text) const;
    QString m_mask;
    QChar m_prompt = QLatin1Char('_');
    QString m_lastText;
};

} // namespace vb
