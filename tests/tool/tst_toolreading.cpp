#include "TestMain.h"
#include "ToolFixtures.h"

#include <QDir>
#include <QFile>
#include <QTest>

/** Commands that only read change nothing. */
class TstToolReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noFolderIsMade_data();
    void noFolderIsMade();
    void nothingIsChanged_data();
    void nothingIsChanged();
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
    const auto before = everythingBelow(project.enclosingPath());
    QVERIFY(!runTool(command + QStringList{project.path()} + arguments).crashed);
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolReading::nothingIsChanged_data()
{
    noFolderIsMade_data();
}

void TstToolReading::nothingIsChanged()
{
    QFETCH(const QStringList, command);
    QFETCH(const QStringList, arguments);
    const TestProject project;
    writeSoundProject(project);
    // A binder that still has the name of old, settings that can't be read, no copy of the binder.
    QVERIFY(QFile::rename(project.path(u"Novel.tavelx"_qs), project.path(u"Old.tavelx"_qs)));
    project.writeFile(u"Settings/ui.ini"_qs, "[General\n\xff\xfe");
    project.writeFile(IndexFile, "<SearchInd");
    project.writeFile(HashesFile, "4.rtf=da39");
    const QString link = project.enclosingPath() + u"/Linked.tavel"_qs;
    QVERIFY(QFile::link(project.path(), link));
    const auto before = everythingBelow(project.path());
    for (const QString &path : {project.path(), link}) {
        const ProgramResult result = runTool(command + QStringList{path} + arguments);
        QVERIFY(!result.crashed);
        QCOMPARE(everythingBelow(project.path()), before);
    }
}

TVL_TEST(TstToolReading)
#include "tst_toolreading.moc"
