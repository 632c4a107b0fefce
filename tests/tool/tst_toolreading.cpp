#include "TestMain.h"
#include "ToolFixtures.h"

#include <QDir>
#include <QTest>

/** Commands that only read, in a project that lacks folders. */
class TstToolReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noFolderIsMade_data();
    void noFolderIsMade();
};

void TstToolReading::noFolderIsMade_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const QString &command, const QStringList &arguments = {}) {
        QTest::newRow(qPrintable(command)) << command.split(u' ') << arguments;
    };
    row(u"info"_qs);
    row(u"outline"_qs);
    row(u"cat"_qs, {u"4"_qs});
    row(u"search"_qs, {u"gulls"_qs});
    row(u"check"_qs);
    row(u"snapshot list"_qs, {u"5"_qs});
    row(u"snapshot show"_qs, {u"5"_qs, u"First"_qs});
}

void TstToolReading::noFolderIsMade()
{
    QFETCH(const QStringList, command);
    QFETCH(const QStringList, arguments);
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(IndexFile, "<SearchIndexes><Documents/></SearchIndexes>");
    QVERIFY(QDir(project.path(u"Files/Docs"_qs)).removeRecursively());
    QVERIFY(QDir(project.path(u"Snapshots"_qs)).removeRecursively());
    auto before = everythingBelow(project.enclosingPath());
    QVERIFY(!runTool(command + QStringList{project.path()} + arguments).crashed);
    auto after = everythingBelow(project.enclosingPath());
    // What an opening makes for those that keep the project open.
    for (auto *files : {&before, &after}) {
        files->remove(u"Novel.tavel/Files/binder.backup"_qs);
        files->remove(u"Novel.tavel/Settings"_qs);
    }
    QCOMPARE(after.keys(), before.keys());
}

TVL_TEST(TstToolReading)
#include "tst_toolreading.moc"
