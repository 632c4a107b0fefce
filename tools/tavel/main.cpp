#include "Command.h"
#include "Console.h"
#include "TerminalProgress.h"

#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace {

QStringList commandLineWords(int count, char **words)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(QString::fromLocal8Bit(words[i]));
    return list;
}

QtMessageHandler qtMessages = nullptr;

/** Statements of the database tell a user nothing; what they were for fails with its own words. */
void passMessageOn(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtCriticalMsg || !text.startsWith(u"sql error"))
        qtMessages(type, context, text);
}

/** What a box says without its advice to a window's user on menus that aren't here. */
QString withoutMenus(const QString &text)
{
    for (const QString &advice :
         {u"\n\nTo avoid losing your latest changes"_s, u" You might also try \"Tools >"_s}) {
        if (const qsizetype place = text.indexOf(advice); place >= 0)
            return text.first(place);
    }
    return text;
}

/** A message box as a line: what it says, then what it says in small print. */
QString lineOf(const TVLUnattendedMessageBoxes::Box &box)
{
    const QString text = box.title + u": "_s + withoutMenus(box.text);
    return box.informativeText.isEmpty() ? text : text + u' ' + withoutMenus(box.informativeText);
}

} // namespace

int main(int argc, char **argv)
{
    // Diagnostics, Qt's own among them, would bury the one line that says why something failed.
    // The environment variable QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(u"*.debug=false\n*.info=false\n*.warning=false"_s);
    qtMessages = qInstallMessageHandler(passMessageOn);
    // Nothing is ever shown, and a display that the environment names may be long gone.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // All words are the tool's own: the application would take some, such as "-reverse", for
    // itself.
    int ownName = 1;
    const QApplication application(ownName, argv);
    QCoreApplication::setApplicationName(u"tavel"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(TAVEL_VERSION));

    Console console;
    const TVLUnattendedMessageBoxes boxes;
    QObject::connect(&boxes, &TVLUnattendedMessageBoxes::answered,
                     [&console](const auto &box) { console.complain(lineOf(box)); });

    TVLProgress::setMaker([&console] { return std::make_unique<TerminalProgress>(&console); });

    ExitStatus status = runCommandLine(commandLineWords(argc, argv), &console);
    if (!console.finish() && status == ExitStatus::Done)
        status = console.fail(u"standard output can't be written"_s);
    return int(status);
}
