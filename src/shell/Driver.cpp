#include "shell/Driver.h"

#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/VBError.h"
#include "controls/CommonDialog.h"
#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "reports/ReportViewer.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QRegularExpression>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <cmath>
#include <unistd.h>

namespace shell {

using vb::Variant;
using vb::VBError;

// ---- JSON out -----------------------------------------------------------------------

namespace json {

QString string(const QString& s)
{
    QString out;
    out.reserve(s.size() + 2);
    out += u'"';
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
    out += u'"';
    return out;
}

QString number(double d)
{
    if (!std::isfinite(d))
        return QStringLiteral("null");
    return QString::number(d, 'g', QLocale::FloatingPointShortest);
}

QString list(const QStringList& items)
{
    return u'[' + items.join(u',') + u']';
}

/// An object from ordered (key, JSON text) pairs.
QString object(const std::vector<std::pair<QString, QString>>& fields)
{
    QStringList parts;
    for (const auto& [k, v] : fields)
        parts << string(k) + u':' + v;
    return u'{' + parts.join(u',') + u'}';
}

QString strings(const QStringList& items)
{
    QStringList out;
    for (const QString& s : items)
        out << string(s);
    return list(out);
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

QString dateJson(double serial)
{
    const QDateTime dt = vb::fromSerial(serial);
    if (dt.time() == QTime(0, 0))
        return json::string(dt.date().toString(Qt::ISODate));
    return json::string(dt.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
}

QString valueJson(const Variant& v)
{
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null:
        return QStringLiteral("null");
    case Variant::Type::Boolean:
        return v.rawBool() ? QStringLiteral("true") : QStringLiteral("false");
    case Variant::Type::Integer:
    case Variant::Type::Long:
        return QString::number(v.rawLong());
    case Variant::Type::Double:
        return json::number(v.rawDouble());
    case Variant::Type::Date:
        return dateJson(v.rawDate().serial);
    case Variant::Type::String:
        return json::string(v.rawString());
    }
    return QStringLiteral("null");
}

bool isColourProperty(const QString& lname)
{
    return lname == QLatin1String("backcolor") || lname == QLatin1String("forecolor") ||
           lname == QLatin1String("fillcolor") || lname == QLatin1String("bordercolor");
}

/// A colour as [r, g, b]; a system colour (negative) as VB's integer.
QString colourJson(const Variant& v)
{
    if (!v.isNumeric())
        return valueJson(v);
    const std::int64_t c = v.rawLong();
    if (c < 0 || v.type() == Variant::Type::Double)
        return valueJson(v);
    return QStringLiteral("[%1,%2,%3]").arg(c & 0xFF).arg((c >> 8) & 0xFF).arg((c >> 16) & 0xFF);
}

/// Properties whose value is taken as text whatever it looks like.
bool isTextProperty(const QString& lname)
{
    static const QStringList text{QStringLiteral("text"),        QStringLiteral("caption"),
                                  QStringLiteral("tooltiptext"), QStringLiteral("tag"),
                                  QStringLiteral("seltext"),     QStringLiteral("recordsource"),
                                  QStringLiteral("connectionstring"), QStringLiteral("boundtext"),
                                  QStringLiteral("listfield"),   QStringLiteral("boundcolumn"),
                                  QStringLiteral("customformat"), QStringLiteral("mask"),
                                  QStringLiteral("picture")};
    return text.contains(lname);
}

std::optional<QDateTime> parseIsoDate(const QString& text)
{
    static const QRegularExpression iso(QStringLiteral(R"(^\d{4}-\d{2}-\d{2}(T\d{2}:\d{2}(:\d{2})?)?$)"));
    if (!iso.match(text).hasMatch())
        return std::nullopt;
    QDateTime dt;
    if (text.size() == 10)
        dt = QDateTime(QDate::fromString(text, Qt::ISODate), QTime(0, 0));
    else
        dt = QDateTime::fromString(text, Qt::ISODate);
    if (!dt.isValid())
        return std::nullopt;
    return dt;
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

QString answerWord(int answer)
{
    switch (answer) {
    case vb::answer::OK: return QStringLiteral("ok");
    case vb::answer::Cancel: return QStringLiteral("cancel");
    case vb::answer::Abort: return QStringLiteral("abort");
    case vb::answer::Retry: return QStringLiteral("retry");
    case vb::answer::Ignore: return QStringLiteral("ignore");
    case vb::answer::Yes: return QStringLiteral("yes");
    case vb::answer::No: return QStringLiteral("no");
    default: return QString::number(answer);
    }
}

int answerCode(const QString& word)
{
    static const std::map<QString, int> codes{
        {QStringLiteral("ok"), vb::answer::OK},         {QStringLiteral("cancel"), vb::answer::Cancel},
        {QStringLiteral("abort"), vb::answer::Abort},   {QStringLiteral("retry"), vb::answer::Retry},
        {QStringLiteral("ignore"), vb::answer::Ignore}, {QStringLiteral("yes"), vb::answer::Yes},
        {QStringLiteral("no"), vb::answer::No}};
    const auto it = codes.find(word.toLower());
    if (it == codes.end())
        throw badCommand(QStringLiteral("Risposta sconosciuta: %1").arg(word));
    return it->second;
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

/// A loaded screen. The driver never loads a screen by looking at it.
vb::Form* screenOf(const QString& name)
{
    if (!ScreenRegistry::known(name))
        throw VBError(ObjectRequired, QStringLiteral("Schermata sconosciuta: %1").arg(name));
    vb::Form* f = screens().loaded(name);
    if (!f)
        throw VBError(ObjectRequired, QStringLiteral("Schermata non caricata: %1").arg(name));
    return f;
}

vb::Control* controlOf(const QString& screen, const QString& name)
{
    vb::Form* f = screenOf(screen);
    vb::Control* c = f->control(name);
    if (!c)
        throw VBError(ControlNotFound, QStringLiteral("Controllo non trovato: %1.%2").arg(screen, name));
    return c;
}

QString gridJson(vb::DataGrid* grid)
{
    QStringList columns;
    for (int i = 0; i < grid->ColumnCount(); ++i) {
        vb::GridColumn& c = grid->Columns(i);
        columns << json::object({{QStringLiteral("caption"), json::string(c.Caption())},
                                 {QStringLiteral("width"), QString::number(c.Width())},
                                 {QStringLiteral("locked"), c.Locked() ? QStringLiteral("true") : QStringLiteral("false")},
                                 {QStringLiteral("visible"), c.Visible() ? QStringLiteral("true") : QStringLiteral("false")}});
    }
    QStringList rows;
    for (int r = 0; r < grid->RecordCount(); ++r) {
        QStringList cells;
        for (int i = 0; i < grid->ColumnCount(); ++i)
            cells << json::string(grid->cellText(r, i));
        rows << json::list(cells);
    }
    return json::object({{QStringLiteral("columns"), json::list(columns)}, {QStringLiteral("rows"), json::list(rows)}});
}

QString itemsJson(vb::Control* c)
{
    if (auto* combo = dynamic_cast<vb::ComboBox*>(c))
        return json::strings(combo->items());
    if (auto* list = dynamic_cast<vb::ListBox*>(c))
        return json::strings(list->items());
    if (auto* grid = dynamic_cast<vb::DataGrid*>(c)) {
        QStringList rows;
        for (int r = 0; r < grid->RecordCount(); ++r) {
            QStringList cells;
            for (int i = 0; i < grid->ColumnCount(); ++i)
                cells << grid->cellText(r, i);
            rows << json::strings(cells);
        }
        return json::list(rows);
    }
    throw VBError(438, QStringLiteral("L'oggetto non supporta questa proprietà o questo metodo"));
}

QString propertyJson(vb::Control* c, const QString& prop)
{
    const QString lname = prop.toLower();
    if (lname == QLatin1String("items"))
        return itemsJson(c);
    const Variant v = c->vbProperty(prop);
    return isColourProperty(lname) ? colourJson(v) : valueJson(v);
}

QString rowsJson(store::Recordset& rs)
{
    QStringList rows;
    if (!rs.isOpen())
        return json::list(rows);
    const auto& columns = rs.Columns();
    while (!rs.Eof()) {
        std::vector<std::pair<QString, QString>> fields;
        for (int i = 0; i < int(columns.size()); ++i)
            fields.emplace_back(columns[i].name, valueJson(rs.Fields(i).Value()));
        rows << json::object(fields);
        rs.MoveNext();
    }
    return json::list(rows);
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

QString dialogsJson()
{
    QStringList out;
    for (const vb::FileDialogRequest& d : vb::FileDialogService::takeShown()) {
        out << json::object({{QStringLiteral("title"), json::string(d.title)},
                             {QStringLiteral("filter"), json::string(d.filter)},
                             {QStringLiteral("initial"), json::string(d.initial())},
                             {QStringLiteral("answer"), d.answer ? json::string(*d.answer) : QStringLiteral("null")}});
    }
    return json::list(out);
}

QString boxesJson()
{
    QStringList out;
    for (const vb::ShownBox& b : vb::MsgBoxService::takeShown()) {
        out << json::object({{QStringLiteral("title"), json::string(b.title)},
                             {QStringLiteral("prompt"), json::string(b.prompt)},
                             {QStringLiteral("buttons"), QString::number(b.buttons)},
                             {QStringLiteral("answer"), json::string(answerWord(b.answer))},
                             {QStringLiteral("scripted"), b.scripted ? QStringLiteral("true") : QStringLiteral("false")}});
    }
    return json::list(out);
}

/// The laid-out pages of a loaded report: {"visible", "pages": [[{x, y, text}, ...], ...]}.
QString reportJson(const QString& name)
{
    const auto laidOut = reports::LaidOutPages(name);
    if (!laidOut)
        throw VBError(9, QStringLiteral("Report non caricato: %1").arg(name));
    QStringList pages;
    for (const auto& page : laidOut->pages) {
        QStringList items;
        for (const reports::PlacedText& t : page)
            items << json::object({{QStringLiteral("x"), QString::number(t.x)},
                                   {QStringLiteral("y"), QString::number(t.y)},
                                   {QStringLiteral("text"), json::string(t.text)}});
        pages << json::list(items);
    }
    return json::object({{QStringLiteral("visible"), laidOut->visible ? QStringLiteral("true") : QStringLiteral("false")},
                         {QStringLiteral("pages"), json::list(pages)}});
}

bool isReport(const QString& name)
{
    return name.startsWith(QLatin1String("DataReport"), Qt::CaseInsensitive);
}

/// Set by the end of the program (close, lblExit) while a command runs.
bool g_ended = false;

} // namespace

// ---- the commands -------------------------------------------------------------------

QString Driver::execute(const QString& input)
{
    const QString line = input.trimmed();
    const int space = line.indexOf(u' ');
    const QString command = (space < 0 ? line : line.left(space)).toLower();
    const QString rest = space < 0 ? QString() : line.mid(space + 1);
    const QString arg = rest.trimmed();
    QString value = QStringLiteral("null");
    try {
        auto needArg = [&] {
            if (arg.isEmpty())
                throw badCommand(QStringLiteral("Manca l'argomento di %1").arg(command));
        };
        // The first word of the argument and what follows it ("F.C TEXT").
        const int argSpace = arg.indexOf(u' ');
        const QString target = argSpace < 0 ? arg : arg.left(argSpace);
        const QString tail = argSpace < 0 ? QString() : rest.trimmed().mid(argSpace + 1);

        if (command == QLatin1String("clock")) {
            needArg();
            if (arg.startsWith(u'+') || arg.startsWith(u'-')) {
                vb::Clock::advance(clockShift(arg));
            } else {
                const auto at = parseIsoDate(arg);
                if (!at)
                    throw badCommand(QStringLiteral("Data non valida: %1").arg(arg));
                vb::Clock::freeze(*at);
            }
        } else if (command == QLatin1String("answer")) {
            std::vector<int> answers;
            for (const QString& w : arg.split(u' ', Qt::SkipEmptyParts))
                answers.push_back(answerCode(w));
            vb::MsgBoxService::queueAnswers(answers);
        } else if (command == QLatin1String("boxes")) {
            value = boxesJson();
        } else if (command == QLatin1String("file")) {
            needArg();
            std::vector<QString> paths;
            for (const QString& w : words(arg))
                paths.push_back(fileAnswer(w));
            vb::FileDialogService::queueAnswers(paths);
        } else if (command == QLatin1String("dialogs")) {
            value = dialogsJson();
        } else if (command == QLatin1String("opened")) {
            QStringList paths;
            for (const QString& p : vb::OpenFileService::takeOpened())
                paths << p;
            value = json::strings(paths);
        } else if (command == QLatin1String("start")) {
            startProgram();
        } else if (command == QLatin1String("close")) {
            screens().unload(QStringLiteral("frmMain"));
        } else if (command == QLatin1String("exit")) {
            controlOf(QStringLiteral("frmMain"), QStringLiteral("lblExit"))->click();
        } else if (command == QLatin1String("show") || command == QLatin1String("unload") ||
                   command == QLatin1String("loaded")) {
            needArg();
            if (!ScreenRegistry::known(arg))
                throw VBError(ObjectRequired, QStringLiteral("Schermata sconosciuta: %1").arg(arg));
            if (isReport(arg)) {
                // Reports are shown by `showreport`; here they are closed and looked at.
                if (command == QLatin1String("unload"))
                    reports::UnloadReport(arg);
                else if (command == QLatin1String("loaded"))
                    value = reports::IsReportLoaded(arg) ? QStringLiteral("true") : QStringLiteral("false");
                else
                    throw badCommand(QStringLiteral("Un report si mostra con showreport: %1").arg(arg));
            } else if (command == QLatin1String("show"))
                screens().show(arg);
            else if (command == QLatin1String("unload"))
                screens().unload(arg);
            else
                value = screens().isLoaded(arg) ? QStringLiteral("true") : QStringLiteral("false");
        } else if (command == QLatin1String("click") || command == QLatin1String("dblclick") ||
                   command == QLatin1String("focus") || command == QLatin1String("leave") ||
                   command == QLatin1String("tick")) {
            needArg();
            const QStringList p = path(arg, 2, 2);
            vb::Control* c = controlOf(p[0], p[1]);
            if (command == QLatin1String("click"))
                c->click();
            else if (command == QLatin1String("dblclick"))
                c->dblClick();
            else if (command == QLatin1String("focus"))
                c->focusIn();
            else if (command == QLatin1String("leave"))
                c->focusOut();
            else
                c->tick();
        } else if (command == QLatin1String("type") || command == QLatin1String("key") ||
                   command == QLatin1String("select") || command == QLatin1String("choose")) {
            needArg();
            const QStringList p = path(target, 2, 2);
            vb::Control* c = controlOf(p[0], p[1]);
            if (command == QLatin1String("type")) {
                c->typeText(unquote(tail));
            } else if (command == QLatin1String("choose")) {
                c->choose(unquote(tail));
            } else {
                bool ok = false;
                const int n = tail.trimmed().toInt(&ok);
                if (!ok)
                    throw badCommand(QStringLiteral("Numero non valido: %1").arg(tail));
                if (command == QLatin1String("key"))
                    c->keyPress(n);
                else
                    c->select(n);
            }
        } else if (command == QLatin1String("set")) {
            needArg();
            const QStringList p = path(target, 2, 3);
            vb::Control* c = p.size() == 3 ? controlOf(p[0], p[1]) : screenOf(p[0]);
            const QString prop = p.back();
            c->setVbProperty(prop, parseValue(prop.toLower(), tail));
        } else if (command == QLatin1String("get")) {
            needArg();
            const QStringList p = path(arg, 2, 3);
            const bool visible = p.size() == 2 && p[1].compare(QLatin1String("Visible"), Qt::CaseInsensitive) == 0;
            if (visible && isReport(p[0])) {
                value = reports::IsReportVisible(p[0]) ? QStringLiteral("true") : QStringLiteral("false");
            } else if (visible && ScreenRegistry::known(p[0]) && !screens().isLoaded(p[0])) {
                value = QStringLiteral("false"); // a screen that is not loaded is not visible
            } else {
                vb::Control* c = p.size() == 3 ? controlOf(p[0], p[1]) : screenOf(p[0]);
                value = propertyJson(c, p.back());
            }
        } else if (command == QLatin1String("grid")) {
            needArg();
            const QStringList p = path(arg, 2, 2);
            auto* grid = dynamic_cast<vb::DataGrid*>(controlOf(p[0], p[1]));
            if (!grid)
                throw VBError(ObjectRequired, QStringLiteral("Non è una griglia: %1").arg(arg));
            value = gridJson(grid);
        } else if (command == QLatin1String("sql")) {
            needArg();
            store::Recordset rs;
            rs.Open(arg);
            value = rowsJson(rs);
        } else if (command == QLatin1String("exec")) {
            needArg();
            store::DataStore::instance().Execute(arg);
        } else if (command == QLatin1String("showreport")) {
            needArg();
            if (tail.trimmed().isEmpty())
                throw badCommand(QStringLiteral("Manca l'istruzione del report %1").arg(target));
            reports::ShowReport(target, tail.trimmed());
        } else if (command == QLatin1String("report")) {
            needArg();
            value = reportJson(arg);
        } else if (command == QLatin1String("pdf")) {
            needArg();
            if (tail.trimmed().isEmpty())
                throw badCommand(QStringLiteral("Manca il percorso del PDF"));
            reports::WritePdf(target, unquote(tail.trimmed()));
        } else if (command == QLatin1String("quit")) {
            m_quit = true;
        } else {
            throw badCommand(QStringLiteral("Comando sconosciuto: %1").arg(command));
        }
    } catch (const VBError& e) {
        afterCommand();
        return json::object({{QStringLiteral("ok"), QStringLiteral("false")},
                             {QStringLiteral("error"), json::object({{QStringLiteral("number"), QString::number(e.number())},
                                                                     {QStringLiteral("description"), json::string(e.description())}})}});
    } catch (const std::exception& e) {
        afterCommand();
        return json::object({{QStringLiteral("ok"), QStringLiteral("false")},
                             {QStringLiteral("error"), json::object({{QStringLiteral("number"), QStringLiteral("51")},
                                                                     {QStringLiteral("description"),
                                                                      json::string(QStringLiteral("Errore interno: ") +
                                                                                   QString::fromUtf8(e.what()))}})}});
    }
    afterCommand();
    return json::object({{QStringLiteral("ok"), QStringLiteral("true")}, {QStringLiteral("value"), value}});
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
    bool answered = false;
    for (auto it = m_frames.begin(); it != m_frames.end(); ++it) {
        if (it->id == id) {
            answered = it->answered;
            m_frames.erase(it);
            break;
        }
    }
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
                answer(QStringLiteral("{\"ok\":true,\"value\":null}"));
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
