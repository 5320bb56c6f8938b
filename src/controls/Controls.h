#pragma once
/// @file Controls.h
/// The plain VB controls: Label, TextBox, CommandButton, CheckBox, OptionButton, Frame,
/// Image, Shape, ProgressBar and Timer. Each is its Qt widget and a vb::Control; its Qt
/// objectName is its VB name.

#include "controls/Control.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace vb {

/// Label: Caption, BackStyle (0 transparent, 1 opaque), Alignment (0 left, 1 right,
/// 2 centre). Takes no focus; a mouse click is its Click.
class Label : public QLabel, public Control
{
public:
    Label(QWidget* parent, const QString& name, const QString& caption = {});
    QString Caption() const { return text(); }
    void setCaption(const Variant& caption); ///< Null raises 94
    int BackStyle() const { return m_backStyle; }
    void setBackStyle(int style);
    int Alignment() const { return m_alignment; }
    void setAlignment(int alignment);

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;

private:
    int m_backStyle = 1;
    int m_alignment = 0;
};

/// TextBox: single-line, or multi-line when made so (VB's MultiLine is fixed at design).
/// A change of the text, by the user or by the program, fires Change; focus paints it
/// orange and selects its text, leaving paints it white.
class TextBox : public QWidget, public Control
{
public:
    TextBox(QWidget* parent, const QString& name, bool multiLine = false);
    QString Text() const;
    void setText(const Variant& text); ///< Null raises 94 and leaves the text as it was
    bool Locked() const { return m_locked; }
    void setLocked(bool on);
    int MaxLength() const { return m_maxLength; }
    void setMaxLength(int length); ///< 0: no limit
    int SelStart() const;
    void setSelStart(int start);
    int SelLength() const;
    void setSelLength(int length);
    QString SelText() const;
    void setSelText(const QString& text);
    /// The program's seltxt: selects the whole text.
    void seltxt();
    bool multiLine() const { return m_area != nullptr; }
    /// The editor inside (for layouts and tests).
    QWidget* editor() const;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void applyColours() override;
    void acceptKey(int keyAscii) override;
    void selectAllText() override { seltxt(); }

private:
    void select(int start, int length);
    QLineEdit* m_line = nullptr;
    QPlainTextEdit* m_area = nullptr;
    bool m_locked = false;
    int m_maxLength = 0;
};

/// CommandButton: Caption; Click. A caption wider than the face wraps at its spaces onto
/// more lines, centred, as VB's buttons did.
class CommandButton : public QPushButton, public Control
{
public:
    CommandButton(QWidget* parent, const QString& name, const QString& caption = {});
    QString Caption() const { return text(); }
    void setCaption(const Variant& caption);
    /// The user's click (Qt's own click() of the button is hidden here).
    void click() override { Control::click(); }
    /// Where the caption is drawn, inside the style's margins.
    QRect face() const;

protected:
    void paintEvent(QPaintEvent* e) override;
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
};

/// CheckBox: Value 0 unticked, 1 ticked, 2 grey. A change of Value, by the user or the
/// program, fires Click, as VB's did.
class CheckBox : public QCheckBox, public Control
{
public:
    CheckBox(QWidget* parent, const QString& name, const QString& caption = {});
    int Value() const;
    void setValue(int value); ///< other than 0..2 raises 380
    void click() override;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
};

/// OptionButton: Value True/False; becoming True, by the user or the program, fires Click.
class OptionButton : public QRadioButton, public Control
{
public:
    OptionButton(QWidget* parent, const QString& name, const QString& caption = {});
    bool Value() const { return isChecked(); }
    void setValue(bool on);
    void click() override;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
};

/// Frame: Caption; ForeColor is the colour of the caption.
class Frame : public QGroupBox, public Control
{
public:
    Frame(QWidget* parent, const QString& name, const QString& caption = {});
    QString Caption() const { return title(); }
    void setCaption(const Variant& caption);

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
};

/// Image: Picture is the path of the file shown ("" none); Stretch fits it to the box.
class Image : public QLabel, public Control
{
public:
    Image(QWidget* parent, const QString& name);
    QString Picture() const { return m_path; }
    /// VB's LoadPicture: a missing file raises 53, a file that is no picture 481.
    void setPicture(const QString& path);
    bool Stretch() const { return m_stretch; }
    void setStretch(bool on);
    /// The picture's own size in twips (0 without one), for fitting it into a box.
    int pictureWidth() const;
    int pictureHeight() const;

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void resizeEvent(QResizeEvent* e) override;

private:
    void showPicture();
    QString m_path;
    QPixmap m_pixmap;
    bool m_stretch = false;
};

/// Shape: a rectangle; BackStyle 1 paints BackColor, FillStyle 0 paints FillColor.
class Shape : public QWidget, public Control
{
public:
    Shape(QWidget* parent, const QString& name);
    int FillColor() const { return m_fillColour; }
    void setFillColor(int vbColour);
    int BackStyle() const { return m_backStyle; }
    void setBackStyle(int style);
    int FillStyle() const { return m_fillStyle; }
    void setFillStyle(int style);
    int BorderColor() const { return m_borderColour; }
    void setBorderColor(int vbColour);

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;
    void paintEvent(QPaintEvent* e) override;
    void applyColours() override { update(); }

private:
    int m_fillColour = colour::Black;
    int m_borderColour = colour::WindowText;
    int m_backStyle = 0;
    int m_fillStyle = 1; // transparent
};

/// ProgressBar: Value, Min, Max as VB's Singles; a Value outside Min..Max raises 380.
class ProgressBar : public QProgressBar, public Control
{
public:
    ProgressBar(QWidget* parent, const QString& name);
    double Value() const { return m_value; }
    void setValue(double value);
    double Min() const { return m_min; }
    double Max() const { return m_max; }
    void setMin(double v);
    void setMax(double v);

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    void display();
    double m_value = 0, m_min = 0, m_max = 100;
};

/// Timer: Interval (ms), Enabled; the Tick event is VB's Timer event. While timers are
/// manual (the automation driver, tests) they never fire by themselves: tick() runs one.
class Timer : public QObject, public Control
{
public:
    Timer(QObject* parent, const QString& name, int interval = 0, bool enabled = true);
    int Interval() const { return m_interval; }
    void setInterval(int ms);
    bool Enabled() const { return m_enabled; }
    void setEnabled(bool on);
    /// The driver's tick: runs the Timer event once, if the timer is running (enabled,
    /// with an interval), as the passing of one interval would.
    void tick() override;

    Event<> Tick;

    /// Manual timers: a global switch for drive mode and tests.
    static void setManual(bool on);
    static bool manual();

protected:
    std::optional<Variant> getProp(const QString& n) const override;
    bool setProp(const QString& n, const Variant& v) override;

private:
    void arm();
    QTimer m_timer;
    int m_interval = 0;
    bool m_enabled = true;
};

} // namespace vb
