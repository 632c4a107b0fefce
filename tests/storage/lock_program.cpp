// A program of its own in the tests of locks. Its arguments: what it is called, what it does, and a
// project.
//
// `hold` opens the project, locks it and prints "locked"; it closes the project, which removes the
// lock, when its standard input ends. `guard` does the same with the project's guard, without
// opening it; where another process has that it prints what it was told. `compare` prints what it
// sees of the project's lock: the result of the comparison, the host, the user and the program,
// each on a line.
#include "TVLProjectFolderFormat.h"
#include "TVLProjectGuard.h"
#include "TVLProjectModel.h"

#include <QApplication>

#include <cstdio>
#include <memory>

namespace {

constexpr int Done = 0;
constexpr int NotOpened = 1;
constexpr int NotLocked = 2;

/** Says that the project is held, and holds it until the input ends. */
void waitForTheEnd()
{
    std::puts("locked");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
}

int hold(const QString &path)
{
    const std::unique_ptr<TVLProjectModel> model(TVLProjectFolderFormat::openProject(path));
    if (!model)
        return NotOpened;
    if (!TVLProjectFolderFormat::addLock(path))
        return NotLocked;
    waitForTheEnd();
    model->prepareToDestroy();
    return Done;
}

int guard(const QString &path)
{
    QString error;
    const std::unique_ptr<TVLProjectGuard> guard = TVLProjectGuard::take(path, &error);
    if (guard)
        waitForTheEnd();
    else
        std::puts(qPrintable(error));
    return guard ? Done : NotLocked;
}

int compare(const QString &path)
{
    QString host;
    QString user;
    QString program;
    const int result = TVLProjectFolderFormat::compareLockFile(path, &host, &user, &program);
    const QStringList lines{QString::number(result), host, user, program};
    std::puts(lines.join(u'\n').toUtf8().constData());
    return Done;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QCoreApplication::setApplicationName(arguments.at(1));
    const QString path = arguments.at(3);
    if (arguments.at(2) == u"guard")
        return guard(path);
    return arguments.at(2) == u"hold" ? hold(path) : compare(path);
}
