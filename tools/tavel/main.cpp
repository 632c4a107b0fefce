#include "Command.h"
#include "Console.h"

#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QLoggingCategory>

namespace {

/** Where there is no display, none must be looked for. */
void choosePlatform()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

/** A message box as a line: what it says, then what it says in small print. */
QString lineOf(const TVLUnattendedMessageBoxes::Box &box)
{
    const QString text = box.title + u": "_qs + box.text;
    return box.informativeText.isEmpty() ? text : text + u' ' + box.informativeText;
}

} // namespace

int main(int argc, char **argv)
{
    // Diagnostics, Qt's own among them, would bury the one line that says why something failed.
    // The environment variable QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(u"*.debug=false\n*.info=false\n*.warning=false"_qs);
    choosePlatform();
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"tavel"_qs);
    QCoreApplication::setApplicationVersion(QStringLiteral(TAVEL_VERSION));

    Console console;
    const TVLUnattendedMessageBoxes boxes;
    QObject::connect(&boxes, &TVLUnattendedMessageBoxes::answered,
                     [&console](const auto &box) { console.complain(lineOf(box)); });

    ExitStatus status = runCommandLine(QCoreApplication::arguments(), &console);
    if (!console.finish() && status == ExitStatus::Done)
        status = console.fail(u"standard output can't be written"_qs);
    return int(status);
}
