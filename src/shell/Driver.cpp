#include "shell/Driver.h"

#include "controls/CommonDialog.h"
#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "reports/ReportViewer.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/VBError.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace shell {

using vb::Variant;
using vb::VBError;

// ---- JSON out -----------------------------------------------------------------------
// The answers are Qt JSON values, written by write() rather than QJsonDocument: the
// protocol keeps an object's fields in their order (a row's in column order, a column
// named twice twice) where QJsonObject sorts its keys, writes a decimal shortest (1e+05)
// where QJsonValue keeps a whole decimal as an integer, and escapes control characters
// as \u00XX. So a field's key goes in behind its position, and a decimal as an object of
// its own under a key no field has; write() reads both back.

namespace json {

constexpr int KeyTag = 4; // the position in front of a field's key
const QString Decimal = QStringLiteral("decimal");

void add(QJsonObject& object, const QString& key, const QJsonValue& value)
{
    object.insert(QStringLiteral("%1").arg(object.size(), KeyTag, 10, QLatin1Char('0')) + key, value);
}

/// An object with its fields in the order given.
QJsonObject fields(std::initializer_list<std::pair<QString, QJsonValue>> list)
{
    QJsonObject object;
    for (const auto& [key, value] : list)
        add(object, key, value);
    return object;
}

/// A decimal, written shortest even when whole; NaN and infinities as null.
QJsonValue decimal(double d)
{
    return std::isfinite(d) ? QJsonObject{{Decimal, d}} : QJsonValue();
}

QString quoted(const QString& s)
{
    QString out = QStringLiteral("\"");
    for (const QChar c : s) {
        switch (c.unicode()) {
        case '"': out += QLatin1String("\\\""); break;
        case '\\': out += QLatin1String("\\\\"); break;
        case '\n': out += QLatin1String("\\n"); break;
        case '\r': out += QLatin1String("\\r"); break;
        case '\t': out += QLatin1String("\\t"); break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + u'"';
}

QString number(const QVariant& n)
{
    return n.typeId() == QMetaType::LongLong ? QString::number(n.toLongLong())
                                             : QString::number(n.toDouble(), 'g', QLocale::FloatingPointShortest);
}

QString text(const QJsonValue& value)
{
    QStringList items;
    switch (value.type()) {
    case QJsonValue::Bool: return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double: return number(value.toVariant());
    case QJsonValue::String: return quoted(value.toString());
    case QJsonValue::Array:
        for (const QJsonValue& item : value.toArray())
            items << text(item);
        return u'[' + items.join(u',') + u']';
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        if (object.contains(Decimal))
            return number(object.value(Decimal).toDouble());
        for (auto it = object.begin(); it != object.end(); ++it)
            items << quoted(it.key().mid(KeyTag)) + u':' + text(it.value());
        return u'{' + items.join(u',') + u'}';
    }
    default: return QStringLiteral("null");
    }
}

} // namespace json

namespace {

constexpr int InvalidArgument = 5; // VB's "invalid procedure call or argument"
constexpr int ObjectRequired = 424;
constexpr int ControlNotFound = 730;

VBError badCommand(const QString& what)
{
    return VBError(InvalidArgument, what);
}

QJsonValue valueJson(const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: return QJsonValue();
    case Variant::Type::Boolean: return v.rawBool();
    case Variant::Type::Integer:
    case Variant::Type::Long: return qint64(v.rawLong());
    case Variant::Type::Double: return json::decimal(v.rawDouble());
    case Variant::Type::Date: {
        const QDateTime dt = vb::fromSerial(v.rawDate().serial);
        return dt.time() == QTime(0, 0) ? dt.date().toString(Qt::ISODate)
                                        : dt.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    }
    case Variant::Type::String: return v.rawString();
    }
    return QJsonValue();
}

bool isColourProperty(const QString& lname)
{
    return lname == QLatin1String("backcolor") || lname == QLatin1String("forecolor") ||
           lname == QLatin1String("fillcolor") || lname == QLatin1String("bordercolor");
}

/// A colour as [r, g, b]; a system colour (negative) as VB's integer.
QJsonValue colourJson(const Variant& v)
{
    if (!v.isNumeric())
        return valueJson(v);
    const std::int64_t c = v.rawLong();
    if (c < 0 || v.type() == Variant::Type::Double)
        return valueJson(v);
    return QJsonArray{qint64(c & 0xFF), qint64((c >> 8) & 0xFF), qint64((c >> 16) & 0xFF)};
}

/// Properties whose value is taken as text whatever it looks like.
bool isTextProperty(const QString& lname)
{
    static const QStringList text{QStringLiteral("text"),
                                  QStringLiteral("caption"),
                                  QStringLiteral("tooltiptext"),
                                  QStringLiteral("tag"),
                                  QStringLiteral("seltext"),
                                  QStringLiteral("recordsource"),
                                  QStringLiteral("connectionstring"),
                                  QStringLiteral("boundtext"),
                                  QStringLiteral("listfield"),
                                  QStringLiteral("boundcolumn"),
                                  QStringLiteral("customformat"),
                                  QStringLiteral("mask"),
                                  QStringLiteral("picture")};
    return text.contains(lname);
}

std::optional<QDateTime> parseIsoDate(const QString& text)
{
    static const QRegularExpression iso(QStringLiteral(R"(^\d{4}-\d{2}-\d{2}(T\d{2}:\d{2}(:\d{2})?)?$)"));
    if (!iso.match(text).hasMatch())
        return std::nullopt;
    const QDateTime dt = text.size() == 10 ? QDateTime(QDate::fromString(text, Qt::ISODate), QTime(0, 0))
                                           : QDateTime::fromString(text, Qt::ISODate);
    return dt.isValid() ? std::optional(dt) : std::nullopt;
}

/// A JSON string literal unquoted ("\"  a b \"" gives "  a b "); other text as it is.
QString unquote(const QString& text)
{
    if (text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"')) {
        const QJsonDocument doc = QJsonDocument::fromJson(u'[' + text.toUtf8() + u']');
        if (doc.isArray() && doc.array().size() == 1 && doc.array().at(0).isString())
            return doc.array().at(0).toString();
    }
    return text;
}

/// The words of an argument as written: a word in JSON double quotes may hold blanks
/// (`"/home/a b/foto.jpg" cancel`); `unquote` reads it.
QStringList words(const QString& text)
{
    QStringList out;
    QString word;
    bool inQuotes = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == u' ' && !inQuotes) {
            if (!word.isEmpty())
                out << std::exchange(word, QString());
            continue;
        }
        word += c;
        if (inQuotes && c == u'\\' && i + 1 < text.size())
            word += text.at(++i);
        else if (c == u'"')
            inQuotes = !inQuotes;
    }
    if (!word.isEmpty())
        out << word;
    return out;
}

/// The value of `set`: text for text properties; otherwise JSON literals, ISO dates and
/// [r, g, b] colours are read as such, anything else is text for VB to convert.
Variant parseValue(const QString& lname, const QString& raw)
{
    const QString text = raw.trimmed();
    if (isTextProperty(lname))
        return unquote(raw);
    if (text == QLatin1String("null"))
        return Variant::null();
    if (text == QLatin1String("true"))
        return Variant(true);
    if (text == QLatin1String("false"))
        return Variant(false);
    if (const auto dt = parseIsoDate(text))
        return Variant::fromDateTime(*dt);
    if (text.startsWith(u'[')) {
        const QJsonDocument doc = QJsonDocument::fromJson(text.toUtf8());
        const QJsonArray a = doc.array();
        if (doc.isArray() && a.size() == 3)
            return Variant(vb::RGB(a.at(0).toInt(), a.at(1).toInt(), a.at(2).toInt()));
        throw badCommand(QStringLiteral("Colore non valido: %1").arg(text));
    }
    static const QRegularExpression integer(QStringLiteral(R"(^-?\d{1,15}$)"));
    if (integer.match(text).hasMatch())
        return Variant(static_cast<std::int64_t>(text.toLongLong()));
    static const QRegularExpression decimal(QStringLiteral(R"(^-?\d+\.\d+$)"));
    if (decimal.match(text).hasMatch())
        return Variant(text.toDouble());
    return unquote(raw);
}

/// The words of `answer` and `boxes`, by VB's answer codes.
const std::map<int, QString>& answerWords()
{
    static const std::map<int, QString> words{
        {vb::answer::OK, QStringLiteral("ok")},         {vb::answer::Cancel, QStringLiteral("cancel")},
        {vb::answer::Abort, QStringLiteral("abort")},   {vb::answer::Retry, QStringLiteral("retry")},
        {vb::answer::Ignore, QStringLiteral("ignore")}, {vb::answer::Yes, QStringLiteral("yes")},
        {vb::answer::No, QStringLiteral("no")}};
    return words;
}

QString answerWord(int answer)
{
    const auto it = answerWords().find(answer);
    return it == answerWords().end() ? QString::number(answer) : it->second;
}

int answerCode(const QString& word)
{
    for (const auto& [code, w] : answerWords())
        if (w == word.toLower())
            return code;
    throw badCommand(QStringLiteral("Risposta sconosciuta: %1").arg(word));
}

/// "clock +3d", "+90s", "-2h", "+5m".
qint64 clockShift(const QString& text)
{
    static const QRegularExpression shift(QStringLiteral(R"(^([+-]\d+)([dhms])$)"));
    const auto m = shift.match(text);
    if (!m.hasMatch())
        throw badCommand(QStringLiteral("Spostamento dell'orologio non valido: %1").arg(text));
    const qint64 n = m.captured(1).toLongLong();
    switch (m.captured(2).at(0).unicode()) {
    case 'd': return n * 86400;
    case 'h': return n * 3600;
    case 'm': return n * 60;
    default: return n;
    }
}

/// "F.C" or "F.C.Prop" split into its parts.
QStringList path(const QString& target, int minParts, int maxParts)
{
    const QStringList parts = target.split(u'.');
    if (parts.size() < minParts || parts.size() > maxParts || parts.contains(QString()))
        throw badCommand(QStringLiteral("Nome non valido: %1").arg(target));
    return parts;
}

/// A name the program gives a screen or a report; the driver never loads one by naming it.
const QString& knownScreen(const QString& name)
{
    if (!ScreenRegistry::known(name))
        throw VBError(ObjectRequired, QStringLiteral("Schermata sconosciuta: %1").arg(name));
    return name;
}

/// A loaded screen.
vb::Form* screenOf(const QString& name)
{
    vb::Form* f = screens().loaded(knownScreen(name));
    if (!f)
        throw VBError(ObjectRequired, QStringLiteral("Schermata non caricata: %1").arg(name));
    return f;
}

vb::Control* controlOf(const QString& screen, const QString& name)
{
    screenOf(screen); // 424 for a screen unknown or not loaded
    vb::Control* c = screens().controlIfAny(screen, name);
    if (!c)
        throw VBError(ControlNotFound, QStringLiteral("Controllo non trovato: %1.%2").arg(screen, name));
    return c;
}

QJsonArray gridRows(vb::DataGrid* grid)
{
    QJsonArray rows;
    for (int r = 0; r < grid->RecordCount(); ++r) {
        QStringList cells;
        for (int i = 0; i < grid->ColumnCount(); ++i)
            cells << grid->cellText(r, i);
        rows << QJsonArray::fromStringList(cells);
    }
    return rows;
}

QJsonValue gridJson(vb::DataGrid* grid)
{
    QJsonArray columns;
    for (int i = 0; i < grid->ColumnCount(); ++i) {
        vb::GridColumn& c = grid->Columns(i);
        columns << json::fields({{QStringLiteral("caption"), c.Caption()},
                                 {QStringLiteral("width"), c.Width()},
                                 {QStringLiteral("locked"), c.Locked()},
                                 {QStringLiteral("visible"), c.Visible()}});
    }
    return json::fields({{QStringLiteral("columns"), columns}, {QStringLiteral("rows"), gridRows(grid)}});
}

QJsonValue propertyJson(vb::Control* c, const QString& prop)
{
    const QString lname = prop.toLower();
    if (lname == QLatin1String("items")) {
        if (auto* combo = dynamic_cast<vb::ComboBox*>(c))
            return QJsonArray::fromStringList(combo->items());
        if (auto* list = dynamic_cast<vb::ListBox*>(c))
            return QJsonArray::fromStringList(list->items());
        if (auto* grid = dynamic_cast<vb::DataGrid*>(c))
            return gridRows(grid);
        throw VBError(438, QStringLiteral("L'oggetto non supporta questa proprietà o questo metodo"));
    }
    const Variant v = c->vbProperty(prop);
    return isColourProperty(lname) ? colourJson(v) : valueJson(v);
}

QJsonValue rowsJson(const QString& statement)
{
    store::Recordset rs;
    rs.Open(statement);
    QJsonArray rows;
    if (!rs.isOpen())
        return rows;
    const auto& columns = rs.Columns();
    while (!rs.Eof()) {
        QJsonObject row;
        for (int i = 0; i < int(columns.size()); ++i)
            json::add(row, columns[i].name, valueJson(rs.Fields(i).Value()));
        rows << row;
        rs.MoveNext();
    }
    return rows;
}

/// A file dialog's answer: the path chosen, or a cancel.
QString fileAnswer(const QString& word)
{
    if (word == QLatin1String("cancel"))
        return {}; // the service's cancel
    const QString path = unquote(word);
    if (path.isEmpty())
        throw badCommand(QStringLiteral("Percorso vuoto"));
    return path;
}

QJsonValue dialogsJson()
{
    QJsonArray out;
    for (const vb::FileDialogRequest& d : vb::FileDialogService::takeShown())
        out << json::fields({{QStringLiteral("title"), d.title},
                             {QStringLiteral("filter"), d.filter},
                             {QStringLiteral("initial"), d.initial()},
                             {QStringLiteral("answer"), d.answer ? QJsonValue(*d.answer) : QJsonValue()}});
    return out;
}

QJsonValue boxesJson()
{
    QJsonArray out;
    for (const vb::ShownBox& b : vb::MsgBoxService::takeShown())
        out << json::fields({{QStringLiteral("title"), b.title},
                             {QStringLiteral("prompt"), b.prompt},
                             {QStringLiteral("buttons"), b.buttons},
                             {QStringLiteral("answer"), answerWord(b.answer)},
                             {QStringLiteral("scripted"), b.scripted}});
    return out;
}

/// The laid-out pages of a loaded report: {"visible", "pages": [[{x, y, text}, ...], ...]}.
QJsonValue reportJson(const QString& name)
{
    const auto laidOut = reports::LaidOutPages(name);
    if (!laidOut)
        throw VBError(9, QStringLiteral("Report non caricato: %1").arg(name));
    QJsonArray pages;
    for (const auto& page : laidOut->pages) {
        QJsonArray items;
        for (const reports::PlacedText& t : page)
            items << json::fields(
                {{QStringLiteral("x"), t.x}, {QStringLiteral("y"), t.y}, {QStringLiteral("text"), t.text}});
        pages << items;
    }
    return json::fields({{QStringLiteral("visible"), laidOut->visible}, {QStringLiteral("pages"), pages}});
}

bool isReport(const QString& name)
{
    return name.startsWith(QLatin1String("DataReport"), Qt::CaseInsensitive);
}

/// Set by the end of the program (close, lblExit) while a command runs.
bool g_ended = false;

// ---- the commands -------------------------------------------------------------------

/// A command's line after its name: the whole argument, its first word (target) and the
/// rest (tail), and for a command on a control that control; the command's value, null
/// unless it sets one; whether it ends the driver.
struct Call
{
    QString arg, target, tail;
    vb::Control* control = nullptr;
    QJsonValue value;
    bool quit = false;
};

/// What a command needs after its name.
enum class Takes {
    Anything,   ///< nothing, or words it reads itself
    Argument,   ///< an argument ("Manca l'argomento di ...")
    Control,    ///< the argument names a control: F.C
    ControlAnd, ///< the first word names a control, the rest is for the command
};

struct Command
{
    Takes takes;
    void (*run)(Call&);
};

int number(const QString& text)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    if (!ok)
        throw badCommand(QStringLiteral("Numero non valido: %1").arg(text));
    return n;
}

const std::map<QString, Command>& commands()
{
    static const std::map<QString, Command> table{
        {QStringLiteral("clock"),
         {Takes::Argument,
          [](Call& c) {
              if (c.arg.startsWith(u'+') || c.arg.startsWith(u'-'))
                  return vb::Clock::advance(clockShift(c.arg));
              const auto at = parseIsoDate(c.arg);
              if (!at)
                  throw badCommand(QStringLiteral("Data non valida: %1").arg(c.arg));
              vb::Clock::freeze(*at);
          }}},
        {QStringLiteral("answer"),
         {Takes::Anything,
          [](Call& c) {
              std::vector<int> answers;
              for (const QString& w : c.arg.split(u' ', Qt::SkipEmptyParts))
                  answers.push_back(answerCode(w));
              vb::MsgBoxService::queueAnswers(answers);
          }}},
        {QStringLiteral("boxes"), {Takes::Anything, [](Call& c) { c.value = boxesJson(); }}},
        {QStringLiteral("file"),
         {Takes::Argument,
          [](Call& c) {
              std::vector<QString> paths;
              for (const QString& w : words(c.arg))
                  paths.push_back(fileAnswer(w));
              vb::FileDialogService::queueAnswers(paths);
          }}},
        {QStringLiteral("dialogs"), {Takes::Anything, [](Call& c) { c.value = dialogsJson(); }}},
        {QStringLiteral("opened"),
         {Takes::Anything,
          [](Call& c) {
              const std::vector<QString> paths = vb::OpenFileService::takeOpened();
              c.value = QJsonArray::fromStringList({paths.begin(), paths.end()});
          }}},
        {QStringLiteral("start"), {Takes::Anything, [](Call&) { startProgram(); }}},
        {QStringLiteral("close"), {Takes::Anything, [](Call&) { screens().unload(QStringLiteral("frmMain")); }}},
        {QStringLiteral("exit"),
         {Takes::Anything, [](Call&) { controlOf(QStringLiteral("frmMain"), QStringLiteral("lblExit"))->click(); }}},
        // Reports are shown by `showreport`; `unload` and `loaded` close and look at them.
        {QStringLiteral("show"),
         {Takes::Argument,
          [](Call& c) {
              if (isReport(knownScreen(c.arg)))
                  throw badCommand(QStringLiteral("Un report si mostra con showreport: %1").arg(c.arg));
              screens().show(c.arg);
          }}},
        {QStringLiteral("unload"),
         {Takes::Argument,
          [](Call& c) { isReport(knownScreen(c.arg)) ? reports::UnloadReport(c.arg) : screens().unload(c.arg); }}},
        {QStringLiteral("loaded"),
         {Takes::Argument,
          [](Call& c) {
              c.value = isReport(knownScreen(c.arg)) ? reports::IsReportLoaded(c.arg) : screens().isLoaded(c.arg);
          }}},
        {QStringLiteral("click"), {Takes::Control, [](Call& c) { c.control->click(); }}},
        {QStringLiteral("dblclick"), {Takes::Control, [](Call& c) { c.control->dblClick(); }}},
        {QStringLiteral("focus"), {Takes::Control, [](Call& c) { c.control->focusIn(); }}},
        {QStringLiteral("leave"), {Takes::Control, [](Call& c) { c.control->focusOut(); }}},
        {QStringLiteral("tick"), {Takes::Control, [](Call& c) { c.control->tick(); }}},
        {QStringLiteral("type"), {Takes::ControlAnd, [](Call& c) { c.control->typeText(unquote(c.tail)); }}},
        {QStringLiteral("choose"), {Takes::ControlAnd, [](Call& c) { c.control->choose(unquote(c.tail)); }}},
        {QStringLiteral("key"), {Takes::ControlAnd, [](Call& c) { c.control->keyPress(number(c.tail)); }}},
        {QStringLiteral("select"), {Takes::ControlAnd, [](Call& c) { c.control->select(number(c.tail)); }}},
        {QStringLiteral("set"),
         {Takes::Argument,
          [](Call& c) {
              const QStringList p = path(c.target, 2, 3);
              vb::Control* object = p.size() == 3 ? controlOf(p[0], p[1]) : screenOf(p[0]);
              object->setVbProperty(p.back(), parseValue(p.back().toLower(), c.tail));
          }}},
        {QStringLiteral("get"),
         {Takes::Argument,
          [](Call& c) {
              const QStringList p = path(c.arg, 2, 3);
              const bool visible = p.size() == 2 && p[1].compare(QLatin1String("Visible"), Qt::CaseInsensitive) == 0;
              if (visible && isReport(p[0]))
                  c.value = reports::IsReportVisible(p[0]);
              else if (visible && ScreenRegistry::known(p[0]) && !screens().isLoaded(p[0]))
                  c.value = false; // a screen that is not loaded is not visible
              else
                  c.value = propertyJson(p.size() == 3 ? controlOf(p[0], p[1]) : screenOf(p[0]), p.back());
          }}},
        {QStringLiteral("grid"),
         {Takes::Control,
          [](Call& c) {
              auto* grid = dynamic_cast<vb::DataGrid*>(c.control);
              if (!grid)
                  throw VBError(ObjectRequired, QStringLiteral("Non è una griglia: %1").arg(c.arg));
              c.value = gridJson(grid);
          }}},
        {QStringLiteral("sql"), {Takes::Argument, [](Call& c) { c.value = rowsJson(c.arg); }}},
        {QStringLiteral("exec"), {Takes::Argument, [](Call& c) { store::DataStore::instance().Execute(c.arg); }}},
        {QStringLiteral("showreport"),
         {Takes::Argument,
          [](Call& c) {
              if (c.tail.trimmed().isEmpty())
                  throw badCommand(QStringLiteral("Manca l'istruzione del report %1").arg(c.target));
              reports::ShowReport(c.target, c.tail.trimmed());
          }}},
        {QStringLiteral("report"), {Takes::Argument, [](Call& c) { c.value = reportJson(c.arg); }}},
        {QStringLiteral("pdf"),
         {Takes::Argument,
          [](Call& c) {
              if (c.tail.trimmed().isEmpty())
                  throw badCommand(QStringLiteral("Manca il percorso del PDF"));
              reports::WritePdf(c.target, unquote(c.tail.trimmed()));
          }}},
        {QStringLiteral("quit"), {Takes::Anything, [](Call& c) { c.quit = true; }}},
    };
    return table;
}

QString errorAnswer(int number, const QString& description)
{
    return json::text(json::fields(
        {{QStringLiteral("ok"), false},
         {QStringLiteral("error"),
          json::fields({{QStringLiteral("number"), number}, {QStringLiteral("description"), description}})}}));
}

QString valueAnswer(const QJsonValue& value)
{
    return json::text(json::fields({{QStringLiteral("ok"), true}, {QStringLiteral("value"), value}}));
}

} // namespace

QString Driver::execute(const QString& input)
{
    const QString line = input.trimmed();
    const int space = line.indexOf(u' ');
    const QString name = (space < 0 ? line : line.left(space)).toLower();
    Call call;
    call.arg = space < 0 ? QString() : line.mid(space + 1).trimmed();
    const int argSpace = call.arg.indexOf(u' ');
    call.target = argSpace < 0 ? call.arg : call.arg.left(argSpace);
    call.tail = argSpace < 0 ? QString() : call.arg.mid(argSpace + 1);
    QString answer;
    try {
        const auto it = commands().find(name);
        if (it == commands().end())
            throw badCommand(QStringLiteral("Comando sconosciuto: %1").arg(name));
        const Command& command = it->second;
        if (command.takes != Takes::Anything && call.arg.isEmpty())
            throw badCommand(QStringLiteral("Manca l'argomento di %1").arg(name));
        if (command.takes == Takes::Control || command.takes == Takes::ControlAnd) {
            const QStringList p = path(command.takes == Takes::Control ? call.arg : call.target, 2, 2);
            call.control = controlOf(p[0], p[1]);
        }
        command.run(call);
        m_quit = m_quit || call.quit;
        answer = valueAnswer(call.value);
    } catch (const VBError& e) {
        answer = errorAnswer(e.number(), e.description());
    } catch (const std::exception& e) {
        answer = errorAnswer(51, QStringLiteral("Errore interno: ") + QString::fromUtf8(e.what()));
    }
    afterCommand();
    return answer;
}

void Driver::afterCommand()
{
    if (!g_ended)
        return;
    g_ended = false;
    screens().discardAll();
    vb::resumeEvents(); // the next `start` is a new run
}

// ---- the loop -----------------------------------------------------------------------

Driver::Driver(const QString& source) : m_source(source)
{
    setUpServices();
}

Driver::~Driver()
{
    if (m_out && m_ownOutput)
        std::fclose(m_out);
}

void Driver::setUpServices()
{
    vb::MsgBoxService::setScripted(true);
    vb::OpenFileService::setRecording(true);
    vb::Timer::setManual(true);
    QApplication::setQuitOnLastWindowClosed(false);
    g_ended = false;
    setEndHandler([] { g_ended = true; });
    endOnUncaughtErrors();
    vb::resumeEvents();
}

int Driver::run()
{
    // The answers get their own copy of standard output; anything else printed there
    // (by Qt or a library) goes to standard error.
    if (!m_out) {
        std::fflush(stdout);
        const int fd = ::dup(STDOUT_FILENO);
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        m_out = ::fdopen(fd, "w");
    }

    QSocketNotifier* notifier = nullptr;
    QByteArray pending;
    if (m_source == QLatin1String("-")) {
        notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
        QObject::connect(notifier, &QSocketNotifier::activated, this, [this, notifier, &pending] {
            char buf[4096];
            const ssize_t n = ::read(STDIN_FILENO, buf, sizeof buf);
            if (n <= 0) {
                notifier->setEnabled(false);
                if (!pending.isEmpty())
                    enqueue(QString::fromUtf8(pending));
                pending.clear();
                endOfInput();
                return;
            }
            pending.append(buf, n);
            qsizetype nl;
            while ((nl = pending.indexOf('\n')) >= 0) {
                enqueue(QString::fromUtf8(pending.left(nl)));
                pending.remove(0, nl + 1);
            }
        });
    } else {
        QFile f(m_source);
        if (!f.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "velmora: cannot read %s\n", qPrintable(m_source));
            return 2;
        }
        const QList<QByteArray> lines = f.readAll().split('\n');
        QTimer::singleShot(0, this, [this, lines] {
            for (const QByteArray& l : lines)
                enqueue(QString::fromUtf8(l));
            endOfInput();
        });
    }
    const int rc = QApplication::exec();
    if (notifier)
        notifier->setEnabled(false);
    // The end of the driver is not the close of frmMain: the screens go without it.
    screens().discardAll();
    std::fflush(m_out);
    return rc;
}

void Driver::enqueue(const QString& raw)
{
    QString line = raw;
    if (line.endsWith(u'\r'))
        line.chop(1);
    const QString t = line.trimmed();
    if (t.isEmpty() || t.startsWith(u'#'))
        return;
    m_queue.push_back(line);
    schedulePump();
}

void Driver::endOfInput()
{
    m_eof = true;
    schedulePump();
}

void Driver::schedulePump()
{
    // Commands run from the event loop, one per pass, so timers and posted events between
    // commands behave as between a user's actions.
    if (m_pumpScheduled)
        return;
    m_pumpScheduled = true;
    QTimer::singleShot(0, this, [this] {
        m_pumpScheduled = false;
        pump();
    });
}

void Driver::pump()
{
    if (m_finished)
        return;
    // A command is running and has not handed over to a modal screen's loop: wait for it.
    if (!m_frames.empty() && !m_frames.back().answered)
        return;
    if (m_queue.empty()) {
        if (m_eof)
            finish();
        return;
    }
    const QString line = m_queue.front();
    m_queue.pop_front();
    const quint64 id = m_nextId++;
    m_frames.push_back(Frame{id, QThread::currentThread()->loopLevel()});
    watch(id);
    const QString response = execute(line);
    const auto frame = std::find_if(m_frames.begin(), m_frames.end(), [id](const Frame& f) { return f.id == id; });
    const bool answered = frame->answered; // pushed above, and only this call takes it off
    m_frames.erase(frame);
    if (!answered)
        answer(response);
    else if (response.startsWith(QLatin1String("{\"ok\":false")))
        std::fprintf(stderr, "velmora: after the modal screen closed: %s\n", qPrintable(response));
    if (m_quit) {
        finish();
        return;
    }
    schedulePump();
}

void Driver::watch(quint64 id)
{
    // A command that opens a modal screen waits in that screen's event loop: it is
    // answered there, and the next commands run inside that loop until the screen closes.
    QTimer::singleShot(0, this, [this, id] {
        for (Frame& f : m_frames) {
            if (f.id != id)
                continue;
            if (f.answered)
                return;
            if (QThread::currentThread()->loopLevel() > f.loopLevel) {
                f.answered = true;
                answer(valueAnswer(QJsonValue()));
                schedulePump();
            } else {
                watch(id);
            }
            return;
        }
    });
}

void Driver::answer(const QString& json)
{
    FILE* out = m_out ? m_out : stdout;
    const QByteArray bytes = json.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
    std::fputc('\n', out);
    std::fflush(out);
}

void Driver::finish()
{
    if (m_finished)
        return;
    m_finished = true;
    QCoreApplication::exit(0);
}

} // namespace shell
