#include "TestMain.h"

#include "TVLOptions.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

int tvlRunTest(int argc, char **argv, const std::function<std::unique_ptr<QObject>()> &makeTest)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    for (const char *variable :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toLocal8Bit());
    // Also what is shared between programs, such as the drag and drop folder, stays in there.
    qputenv("TMPDIR", home.path().toLocal8Bit());

    QApplication application(argc, argv);
    application.setApplicationName(u"tvl-test"_qs);
    application.setApplicationVersion(u"1.2.3"_qs);
    tvlOptions()->setFilePath(home.filePath(u"options.ini"_qs));
    const std::unique_ptr<QObject> test = makeTest();
    return QTest::qExec(test.get(), argc, argv);
}
