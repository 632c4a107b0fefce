#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/** `tavel new`. */
class TstToolNew : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBlankProjectLiesOnDiskAndItsPlaceIsTold();
    void theProjectIsNotLockedAfterwards();
    void aPathMayNameTheProjectInOtherWays_data();
    void aPathMayNameTheProjectInOtherWays();
    void anEmptyFolderIsFilled();
    void foldersOnTheWayAreMade();
    void aPlaceThatIsTakenIsRefused_data();
    void aPlaceThatIsTakenIsRefused();
    void aBadNameIsWrongUse_data();
    void aBadNameIsWrongUse();
    void aMessageBoxGoesToStandardErrorAndIsNotWaitedFor();
};

void TstToolNew::aBlankProjectLiesOnDiskAndItsPlaceIsTold()
{
    const TestProject project;
    const ProgramResult result = runTool({u"new"_s, project.path()});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, u"Created %1\n"_s.arg(project.path()).toUtf8());
    QCOMPARE(result.errors, QByteArray());

    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
    QVERIFY(QFileInfo::exists(project.path(u"Files/binder.autosave"_s)));
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(model->rowCount(), 3);
    QCOMPARE(model->title(model->draftFolder()), u"Draft"_s);
    QCOMPARE(model->title(model->researchFolder()), u"Research"_s);
    QCOMPARE(model->title(model->trashFolder()), u"Trash"_s);
    QCOMPARE(model->totalNodesCount(), 4);
    QCOMPARE(runTool({u"check"_s, project.path()}).status, 0);
}

void TstToolNew::theProjectIsNotLockedAfterwards()
{
    const TestProject project;
    QCOMPARE(runTool({u"new"_s, project.path()}).status, 0);
    QVERIFY(!TVLProjectFolderFormat::lockExists(project.path()));
}

void TstToolNew::aPathMayNameTheProjectInOtherWays_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("relative") << u"Novel.tavel"_s;
    QTest::newRow("with a closing slash") << u"Novel.tavel/"_s;
    QTest::newRow("with dots") << u"./Other/../Novel.tavel"_s;
    QTest::newRow("by its binder") << u"Novel.tavel/Novel.tavelx"_s;
}

void TstToolNew::aPathMayNameTheProjectInOtherWays()
{
    QFETCH(const QString, path);
    const TestProject project;
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const ProgramResult result = runTool({u"new"_s, path}, place);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, u"Created %1\n"_s.arg(project.path()).toUtf8());
    QVERIFY(QFileInfo::exists(project.binderPath()));
}

void TstToolNew::anEmptyFolderIsFilled()
{
    const TestProject project;
    QVERIFY(QDir().mkpath(project.path()));
    QCOMPARE(runTool({u"new"_s, project.path()}).status, 0);
    QVERIFY(QFileInfo::exists(project.binderPath()));
}

void TstToolNew::foldersOnTheWayAreMade()
{
    const TestProject project;
    const QString path = project.enclosingPath() + u"/shelf/row/Novel.tavel"_s;
    QCOMPARE(runTool({u"new"_s, path}).status, 0);
    QVERIFY(QFileInfo::exists(path + u"/Novel.tavelx"_s));
}

void TstToolNew::aPlaceThatIsTakenIsRefused_data()
{
    QTest::addColumn<QString>("takenBy");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a project") << u"Novel.tavel/Novel.tavelx"_s << u"the folder '%1' isn't empty"_s;
    QTest::newRow("something else")
        << u"Novel.tavel/notes.txt"_s << u"the folder '%1' isn't empty"_s;
    QTest::newRow("a hidden file") << u"Novel.tavel/.hidden"_s << u"the folder '%1' isn't empty"_s;
    QTest::newRow("a folder") << u"Novel.tavel/Files/x"_s << u"the folder '%1' isn't empty"_s;
    QTest::newRow("a file in its place") << u"Novel.tavel"_s << u"there is a file at '%1'"_s;
}

void TstToolNew::aPlaceThatIsTakenIsRefused()
{
    QFETCH(const QString, takenBy);
    QFETCH(const QString, reason);
    const TestProject project;
    writeFileAt(project.enclosingPath() + u'/' + takenBy, "content");
    const auto before = everythingBelow(project.enclosingPath());

    const ProgramResult result = runTool({u"new"_s, project.path()});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(reason.arg(project.path())).toUtf8());
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

void TstToolNew::aBadNameIsWrongUse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    const QString extension = u"the path of a project must end in .tavel or .tavelx: '%1'"_s;
    QTest::newRow("no extension") << u"Novel"_s << extension;
    QTest::newRow("another extension") << u"Novel.txt"_s << extension;
    QTest::newRow("in capitals") << u"Novel.TAVEL"_s << extension;
    QTest::newRow("extension alone")
        << u".tavel"_s << u"the path has no name in front of its extension: '%1'"_s;
    QTest::newRow("binder of another name")
        << u"Novel.tavel/Other.tavelx"_s << u"the binder must bear the name of its folder: '%1'"_s;
}

void TstToolNew::aBadNameIsWrongUse()
{
    QFETCH(const QString, path);
    QFETCH(const QString, reason);
    const TestProject project;
    ProgramPlace place;
    place.workingDirectory = project.enclosingPath();
    const bool isBinder = path.endsWith(u".tavelx");
    const QString named = isBinder ? project.binderPath() : project.enclosingPath() + u'/' + path;

    const ProgramResult result = runTool({u"new"_s, path}, place);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, u"tavel: %1\n"_s.arg(reason.arg(named)).toUtf8());
    QVERIFY(everythingBelow(project.enclosingPath()).isEmpty());
}

void TstToolNew::aMessageBoxGoesToStandardErrorAndIsNotWaitedFor()
{
    const TestProject project;
    writeFileAt(project.enclosingPath() + u"/shelf"_s, "not a folder");
    const QString path = project.enclosingPath() + u"/shelf/Novel.tavel"_s;
    const auto before = everythingBelow(project.enclosingPath());

    const ProgramResult result = runTool({u"new"_s, path});
    QVERIFY(!result.crashed);
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QByteArray());
    const QByteArray box =
        u"tavel: Write Error: Cannot write to the location: '%1' Check that the disk is connected "
        "and isn't write-protected and that you have permission to write there, or choose another "
        "location."_s.arg(path)
            .toUtf8();
    const QByteArray reason = u"tavel: the project could not be saved: '%1'"_s.arg(path).toUtf8();
    QCOMPARE(result.errorLines(), QList<QByteArray>({box, reason}));
    QCOMPARE(everythingBelow(project.enclosingPath()), before);
}

TVL_TEST(TstToolNew)
#include "tst_toolnew.moc"
