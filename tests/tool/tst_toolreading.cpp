#include "TestMain.h"
#include "ToolFixtures.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

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
    row(u"info"_s);
    row(u"outline"_s);
    row(u"cat"_s, {u"4"_s});
    row(u"search"_s, {u"gulls"_s});
    row(u"check"_s);
    row(u"snapshot list"_s, {u"5"_s});
    row(u"snapshot show"_s, {u"5"_s, u"First"_s});
}

void TstToolReading::noFolderIsMade()
{
    QFETCH(const QStringList, command);
    QFETCH(const QStringList, arguments);
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(IndexFile, "<SearchIndexes><Documents/></SearchIndexes>");
    QVERIFY(QDir(project.path(u"Files/Docs"_s)).removeRecursively());
    QVERIFY(QDir(project.path(u"Snapshots"_s)).removeRecursively());
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
    QVERIFY(QFile::rename(project.path(u"Novel.tavelx"_s), project.path(u"Old.tavelx"_s)));
    project.writeFile(u"Settings/ui.ini"_s, "[General\n\xff\xfe");
    project.writeFile(IndexFile, "<SearchInd");
    project.writeFile(HashesFile, "4.rtf=da39");
    const QString link = project.enclosingPath() + u"/Linked.tavel"_s;
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
