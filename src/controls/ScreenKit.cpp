#include "controls/ScreenKit.h"

#include "controls/Form.h"

namespace vb {

namespace {

QString nameOf(const char* name)
{
    return QString::fromLatin1(name);
}

int orDefault(int value, int fallback)
{
    return value < 0 ? fallback : value;
}

} // namespace

ScreenKit::ScreenKit(Form* form, KitHeights heights) : m_form(form), m_heights(heights)
{
}

Label* ScreenKit::label(QWidget* parent, const char* name, const QString& caption, int left, int top, int width,
                        int height) const
{
    auto* l = new Label(parent, nameOf(name), caption);
    l->setBackStyle(0);
    l->Move(left, top, width, orDefault(height, m_heights.label));
    return l;
}

CommandButton* ScreenKit::button(QWidget* parent, const char* name, const QString& caption, int left, int top,
                                 int width, int height) const
{
    auto* b = new CommandButton(parent, nameOf(name), caption);
    b->Move(left, top, width, orDefault(height, m_heights.button));
    return b;
}

TextBox* ScreenKit::field(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* t = new TextBox(parent, nameOf(name));
    t->Move(left, top, width, orDefault(height, m_heights.field));
    return t;
}

TextBox* ScreenKit::textArea(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* t = new TextBox(parent, nameOf(name), true);
    t->Move(left, top, width, height);
    return t;
}

TextBox* ScreenKit::hidden(const char* name, const QString& text) const
{
    auto* t = new TextBox(m_form, nameOf(name));
    t->setVisible(false);
    if (!text.isEmpty())
        t->setText(text);
    return t;
}

Frame* ScreenKit::frame(QWidget* parent, const char* name, const QString& caption, int left, int top, int width,
                        int height) const
{
    auto* f = new Frame(parent, nameOf(name), caption);
    f->Move(left, top, width, height);
    return f;
}

DataGrid* ScreenKit::grid(QWidget* parent, const char* name, Adodc*& source, const char* sourceName, int left, int top,
                          int width, int height) const
{
    source = new Adodc(m_form, nameOf(sourceName));
    auto* g = new DataGrid(parent, nameOf(name));
    g->Move(left, top, width, height);
    g->setDataSource(source);
    return g;
}

DataCombo* ScreenKit::dataCombo(QWidget* parent, const char* name, Adodc*& source, const char* sourceName, int left,
                                int top, int width, int height) const
{
    source = new Adodc(m_form, nameOf(sourceName));
    auto* c = new DataCombo(parent, nameOf(name));
    c->Move(left, top, width, orDefault(height, m_heights.field));
    return c;
}

DataCombo* ScreenKit::dataCombo(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* c = new DataCombo(parent, nameOf(name));
    c->Move(left, top, width, orDefault(height, m_heights.field));
    return c;
}

ListBox* ScreenKit::list(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* l = new ListBox(parent, nameOf(name));
    l->Move(left, top, width, height);
    return l;
}

DTPicker* ScreenKit::datePicker(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* d = new DTPicker(parent, nameOf(name));
    d->Move(left, top, width, orDefault(height, m_heights.field));
    return d;
}

Image* ScreenKit::image(QWidget* parent, const char* name, int left, int top, int width, int height) const
{
    auto* i = new Image(parent, nameOf(name));
    i->Move(left, top, width, height);
    return i;
}

TextBox* ScreenKit::searchFrame(QWidget* parent, const char* frameName, const QString& caption, const char* fieldName,
                                int left, int top, int width, int height, Frame** frame) const
{
    Frame* f = this->frame(parent, frameName, caption, left, top, width, height);
    if (frame)
        *frame = f;
    return field(f, fieldName, 120, 270, width - 240);
}

void setColumns(Trap& trap, DataGrid* grid, std::initializer_list<ColumnSpec> columns)
{
    int i = 0;
    for (const ColumnSpec& c : columns) {
        trap.step([&] {
            GridColumn& column = grid->Columns(i);
            column.setCaption(c.caption);
            if (c.width >= 0)
                column.setWidth(c.width);
            if (c.locked)
                column.setLocked(true);
        });
        ++i;
    }
}

DataGrid* ScreenKit::boundGrid(QWidget* parent, const char* name, Adodc* source, int left, int top, int width,
                               int height) const
{
    auto* g = new DataGrid(parent, nameOf(name));
    g->Move(left, top, width, height);
    g->setDataSource(source);
    return g;
}

TextBox* ScreenKit::framedField(QWidget* parent, const char* frameName, const QString& caption, const char* fieldName,
                                int left, int top, int width, int height, int fieldTop, Frame** frame) const
{
    Frame* f = this->frame(parent, frameName, caption, left, top, width, height);
    if (frame)
        *frame = f;
    return field(f, fieldName, 120, fieldTop, width - 240);
}

} // namespace vb
