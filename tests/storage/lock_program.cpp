// A program of its own in the tests of locks. Its arguments: what it is called, what it does, and a
// project.
//
// `hold` opens the project, locks it and prints "locked"; it closes the project, which removes the
// lock, when its standard input ends. `compare` prints what it sees of the project's lock: the
// result of the comparison, the host, the user and the program, each on a line.
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"

#include <QApplication>

#include <cstdio>
#include <memory>

namespace {

constexpr int Done = 0;
constexpr int NotOpened = 1;
constexpr int NotLocked = 2;

int hold(const QString &path)
{
    const std::unique_ptr<TVLProjectModel> model(TVLProjectFolderFormat::openProject(path));
    if (!model)
        return NotOpened;
    if (!TVLProjectFolderFormat::addLock(path))
        return NotLocked;
    std::puts("locked");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    model->prepareToDestroy();
    return Done;
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
    return arguments.at(2) == u"hold" ? hold(path) : compare(path);
}
