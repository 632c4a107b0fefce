#include "TestMain.h"

#include "TVLOptions.h"

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <map>

using namespace Qt::StringLiterals;

namespace {

struct Test
{
    RegisteredTest::Make make;
    RegisteredTest::Prepare prepare;
};

std::map<QByteArray, Test> &registeredTests()
{
    static std::map<QByteArray, Test> tests;
    return tests;
}

/**
 * Where the tests' files lie: in memory if there is enough of it, because most of what a save costs
 * on a disk is waiting for the disk; where the environment says if it does.
 */
QString temporaryTemplate()
{
    constexpr qint64 EnoughBytes = qint64(2) << 30;
    const QStorageInfo memory(u"/dev/shm"_s);
    const bool isUsable = qEnvironmentVariableIsEmpty("TMPDIR") && memory.rootPath() == u"/dev/shm"
        && memory.bytesAvailable() > EnoughBytes && QFileInfo(memory.rootPath()).isWritable();
    return (isUsable ? memory.rootPath() : QDir::tempPath()) + u"/tvl-test-XXXXXX"_s;
}

/**
 * Runs a test object in a QApplication that touches nothing of the user's: options and standard
 * locations lie in a temporary folder, and there need be no display.
 */
int runTest(int argc, char **argv, const Test &test)
{
    if (test.prepare)
        test.prepare();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // How long a test may take is for CTest to say: with all of its cases one can take longer than
    // Qt Test gives a function.
    if (qEnvironmentVariableIsEmpty("QTEST_FUNCTION_TIMEOUT"))
        qputenv("QTEST_FUNCTION_TIMEOUT", "3600000");
    const QTemporaryDir home(temporaryTemplate());
    qputenv("HOME", home.path().toLocal8Bit());
    for (const char *variable :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toLocal8Bit());
    // Also what is shared between programs, such as the drag and drop folder, stays in there.
    qputenv("TMPDIR", home.path().toLocal8Bit());

    QApplication application(argc, argv);
    application.setApplicationName(u"tvl-test"_s);
    application.setApplicationVersion(u"1.2.3"_s);
    tvlOptions()->setFilePath(home.filePath(u"options.ini"_s));
    const std::unique_ptr<QObject> object = test.make();
    return QTest::qExec(object.get(), argc, argv);
}

int listTests()
{
    std::puts("Which test? The name of one is the first argument:");
    for (const auto &[name, test] : registeredTests())
        std::puts(name.constData());
    return 2;
}

} // namespace

RegisteredTest::RegisteredTest(const char *className, Make make, Prepare prepare)
{
    // TstItemMoves is tst_itemmoves.
    const QByteArray name = QByteArray(className).toLower();
    registeredTests().emplace(name.left(3) + '_' + name.mid(3), Test{make, prepare});
}

int main(int argc, char **argv)
{
    const auto &tests = registeredTests();
    const auto calledAs =
        tests.find(QFileInfo(QString::fromLocal8Bit(argv[0])).fileName().toLatin1());
    if (calledAs != tests.end())
        return runTest(argc, argv, calledAs->second);
    const auto named = argc > 1 ? tests.find(argv[1]) : tests.end();
    return named == tests.end() ? listTests() : runTest(argc - 1, argv + 1, named->second);
}
