#include "TestMain.h"
#include "ToolFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"
#include "TVLTextDocument.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

/** `tavel check`: whether the document files are what the project has recorded of them. */
class TstToolCheckHashes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheLibrarySavesAgrees();
    void whatTheToolSavesAgrees();
    void whatWasRemovedIsNotMissed();
    void aChangeOutsideIsToldUntilTheTextIsSaved();
    void whatASessionSavesIsNoChangeFromOutside_data();
    void whatASessionSavesIsNoChangeFromOutside();
    void whatASessionRemovesIsNotMissed();
    void whatASessionReplacesIsNoChangeFromOutside();
    void aFileThatWasBeingWrittenIsNoChangeFromOutside();
    void aChangeOutsideIsToldThoughASearchHasTakenItIn();
    void aFileThatIsNotRecordedIsNoProblem();
    void whatIsNotThereIsNoProblem();
    void theLastHashOfAFileCounts();
    void hashesMayBeWrittenInOtherWays_data();
    void hashesMayBeWrittenInOtherWays();
    void filesInFoldersOfTheirOwnAreCompared();
    void aDamagedLineIsToldByItsNumber();
    void whereASearchIndexIsDamagedIsTold();
    void manyFilesAreCompared();
};

namespace {

/** The problems of a project, each as its kind, a blank and its place. */
QStringList hashProblemsOf(const TestProject &project)
{
    const ProgramResult result = runTool({u"check"_s, project.path(), u"--json"_s});
    QStringList problems;
    const QJsonArray array = result.json().object()[u"problems"].toArray();
    for (const QJsonValue &problem : array)
        problems.append(problem[u"kind"].toString() + u' ' + problem[u"where"].toString());
    if (result.crashed || (result.status == 0) != problems.isEmpty())
        qCritical("%d: %s", result.status, result.errors.constData());
    return problems;
}

/** Opens a project, has something done to it and closes it as the application does. */
template <typename Change>
void changeWithTheLibrary(const TestProject &project, Change change)
{
    const TestModel model = project.open();
    change(model.get());
    model->prepareToDestroy();
}

void typeText(TVLProjectModel *model, int id, TVL::DocumentType type, const QString &text)
{
    TVLTextDocument *document = model->referenceItem(model->index(id), type);
    QTextCursor(document).insertText(text);
    model->dereferenceItem(document);
}

} // namespace

void TstToolCheckHashes::whatTheLibrarySavesAgrees()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        for (const int id : {3, 4, 5}) {
            for (const auto type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
                typeText(model, id, type, u"Fog. "_s);
        }
    });
    QVERIFY(project.readFile(HashesFile).contains("5_notes.rtf="));
    QCOMPARE(hashProblemsOf(project), QStringList());
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        typeText(model, 4, TVL::MainText, u"And rain. "_s);
        TVLTextDocument *synopsis = model->referenceItem(model->index(4), TVL::SynopsisText);
        synopsis->clear();
        model->dereferenceItem(synopsis);
    });
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::whatTheToolSavesAgrees()
{
    const TestProject project;
    QCOMPARE(runTool({u"new"_s, project.path()}).status, 0);
    const QString text = project.enclosingPath() + u"/Watch.txt"_s;
    writeFileAt(text, "All is well.\n");
    QCOMPARE(runTool({u"import"_s, project.path(), text}).status, 0);
    QVERIFY(!project.readFile(HashesFile).isEmpty());
    QCOMPARE(hashProblemsOf(project), QStringList());

    const QString item = u"Draft/Watch"_s;
    QCOMPARE(runTool({u"snapshot"_s, u"add"_s, project.path(), item, u"First"_s}).status, 0);
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        typeText(model, model->findNextNodeId() - 1, TVL::MainText, u"Fog. "_s);
    });
    const QByteArray hashes = project.readFile(HashesFile);
    QCOMPARE(runTool({u"snapshot"_s, u"restore"_s, project.path(), item, u"First"_s}).status, 0);
    QVERIFY(project.readFile(HashesFile) != hashes);
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::whatWasRemovedIsNotMissed()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        typeText(model, 5, TVL::MainText, u"Fog. "_s);
        QVERIFY(model->save());
        QVERIFY(model->removeIndex(model->index(5)));
    });
    QVERIFY(!QFile::exists(project.path(u"Files/Docs/5.rtf"_s)));
    QCOMPARE(hashProblemsOf(project), QStringList());
    // Nor when another item has got the id.
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        QVERIFY(model->insertRows(0, 1, model->draftFolder()));
        QVERIFY(model->index(5).isValid());
    });
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::aChangeOutsideIsToldUntilTheTextIsSaved()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(project, [](TVLProjectModel *) {});
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}");
    const QStringList changed{u"changedDocument Files/Docs/4.rtf"_s};
    QCOMPARE(hashProblemsOf(project), changed);
    QCOMPARE(runTool({u"check"_s, project.path()}).output,
             QByteArray("changedDocument: Files/Docs/4.rtf: the file differs from its recorded "
                        "hash: it was changed behind the project's back\n"));
    // Somebody looks for something, which changes nothing.
    QCOMPARE(runTool({u"search"_s, project.path(), u"terns"_s}).output,
             QByteArray("4  The Harbour  (1 hit; Text: Terns.)\n"));
    QCOMPARE(hashProblemsOf(project), changed);
    changeWithTheLibrary(
        project, [](TVLProjectModel *model) { typeText(model, 4, TVL::MainText, u"Fog. "_s); });
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::whatASessionSavesIsNoChangeFromOutside_data()
{
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("the project is open elsewhere") << false;
    QTest::newRow("the session was killed") << true;
}

void TstToolCheckHashes::whatASessionSavesIsNoChangeFromOutside()
{
    QFETCH(const bool, isKilled);
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(project, [](TVLProjectModel *model) {
        typeText(model, 3, TVL::MainText, u"Fog. "_s);
        typeText(model, 4, TVL::NotesText, u"Rain. "_s);
        // The texts of the items are known from here on.
        model->searchIndex()->validateIndexes(nullptr);
    });
    TestModel model = project.open();
    typeText(model.get(), 4, TVL::MainText, u"And rain. "_s);
    typeText(model.get(), 5, TVL::SynopsisText, u"A boat. "_s);
    TVLTextDocument *notes = model->referenceItem(model->index(4), TVL::NotesText);
    notes->clear();
    model->dereferenceItem(notes);
    QVERIFY(model->save());
    if (isKilled)
        model.reset();
    QCOMPARE(hashProblemsOf(project), QStringList());

    // Others change what the session has saved, and what it hasn't.
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 Terns.}");
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}");
    QVERIFY(QFile::remove(project.path(u"Files/Docs/5_synopsis.txt"_s)));
    const QStringList changed({u"changedDocument Files/Docs/3.rtf"_s,
                               u"changedDocument Files/Docs/4.rtf"_s,
                               u"missingDocument Files/Docs/5_synopsis.txt"_s});
    QCOMPARE(hashProblemsOf(project), changed);
    // The next session saves its hashes without having looked at these.
    model.reset();
    changeWithTheLibrary(
        project, [](TVLProjectModel *next) { typeText(next, 5, TVL::MainText, u"Fog. "_s); });
    QCOMPARE(hashProblemsOf(project), changed);
}

void TstToolCheckHashes::whatASessionRemovesIsNotMissed()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(
        project, [](TVLProjectModel *model) { typeText(model, 5, TVL::MainText, u"Fog. "_s); });
    const TestModel model = project.open();
    // The binder on disk still has the item.
    QVERIFY(model->removeFilesForNode(model->projectNode(model->index(5))));
    QVERIFY(!QFile::exists(project.path(u"Files/Docs/5.rtf"_s)));
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::whatASessionReplacesIsNoChangeFromOutside()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(
        project, [](TVLProjectModel *model) { typeText(model, 5, TVL::MainText, u"Fog. "_s); });
    const TestModel model = project.open();
    QVERIFY(model->cloneProjectFiles(model->index(4), model->index(5), false));
    QCOMPARE(hashProblemsOf(project), QStringList());
    model->saveAll(true);
    QCOMPARE(hashProblemsOf(project), QStringList());
    // From the next look at it on it is known what it is like.
    model->searchIndex()->validateIndexes(nullptr);
    model->saveAll(false);
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(u"Files/Docs/5.rtf"_s, "{\\rtf1 Terns.}");
    QCOMPARE(hashProblemsOf(project), QStringList(u"changedDocument Files/Docs/5.rtf"_s));
}

void TstToolCheckHashes::aFileThatWasBeingWrittenIsNoChangeFromOutside()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(project, [](TVLProjectModel *) {});
    const QByteArray hashes = project.readFile(HashesFile);
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Ter");
    QVERIFY(hashProblemsOf(project).contains(u"changedDocument Files/Docs/4.rtf"_s));
    project.writeFile(HashesFile, hashes + "\n4.rtf.saved=\n");
    QVERIFY(!hashProblemsOf(project).contains(u"changedDocument Files/Docs/4.rtf"_s));
    project.writeFile(HashesFile, hashes + "\n4.rtf.saved=12\n");
    QVERIFY(hashProblemsOf(project).contains(u"unreadableHashes "_s + HashesFile));
}

void TstToolCheckHashes::aChangeOutsideIsToldThoughASearchHasTakenItIn()
{
    const TestProject project;
    writeSoundProject(project);
    changeWithTheLibrary(
        project, [](TVLProjectModel *model) { model->searchIndex()->validateIndexes(nullptr); });
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}");
    const QStringList changed{u"changedDocument Files/Docs/4.rtf"_s};
    for (int session = 0; session < 2; ++session) {
        changeWithTheLibrary(project, [](TVLProjectModel *model) {
            model->searchIndex()->validateIndexes(nullptr);
        });
        QVERIFY(project.readFile(IndexFile).contains("Terns."));
        QCOMPARE(hashProblemsOf(project), changed);
    }
    changeWithTheLibrary(
        project, [](TVLProjectModel *model) { model->rebuildSearchIndexes(false, nullptr); });
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::aFileThatIsNotRecordedIsNoProblem()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 Fog.}");
    project.writeFile(u"Files/Docs/5_notes.rtf"_s, "{\\rtf1 Fog.}");
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::whatIsNotThereIsNoProblem()
{
    const TestProject project;
    writeSoundProject(project);
    QVERIFY(QFile::remove(project.path(HashesFile)));
    QVERIFY(!QFile::exists(project.path(IndexFile)));
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(HashesFile, {});
    project.writeFile(IndexFile, "<SearchIndexes><Documents/></SearchIndexes>");
    QCOMPARE(hashProblemsOf(project), QStringList());
}

void TstToolCheckHashes::theLastHashOfAFileCounts()
{
    const TestProject project;
    writeSoundProject(project);
    const QByteArray right = project.readFile(HashesFile);
    const QByteArray wrong = "4.rtf=" + QByteArray(40, '0') + '\n';
    project.writeFile(HashesFile, wrong + right);
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(HashesFile, right + wrong);
    QCOMPARE(hashProblemsOf(project), QStringList(u"changedDocument Files/Docs/4.rtf"_s));
}

void TstToolCheckHashes::hashesMayBeWrittenInOtherWays_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<bool>("isInCapitals");
    QTest::addColumn<QByteArray>("behind");
    QTest::newRow("other line ends") << QByteArray() << false << QByteArray("\r\n");
    QTest::newRow("empty lines") << QByteArray("\n\n") << false << QByteArray("\n\n");
    QTest::newRow("no line end") << QByteArray() << false << QByteArray();
    QTest::newRow("in capitals") << QByteArray() << true << QByteArray("\n");
}

void TstToolCheckHashes::hashesMayBeWrittenInOtherWays()
{
    QFETCH(const QByteArray, before);
    QFETCH(const bool, isInCapitals);
    QFETCH(const QByteArray, behind);
    const TestProject project;
    writeSoundProject(project);
    const QByteArray hash =
        TVLProjectFolderFormat::calcChecksum(project.path(u"Files/Docs/4.rtf"_s)).toHex();
    project.writeFile(HashesFile,
                      before + "4.rtf=" + (isInCapitals ? hash.toUpper() : hash) + behind);
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(u"Files/Docs/4.rtf"_s, "{\\rtf1 Terns.}");
    QCOMPARE(hashProblemsOf(project), QStringList(u"changedDocument Files/Docs/4.rtf"_s));
}

void TstToolCheckHashes::filesInFoldersOfTheirOwnAreCompared()
{
    const TestProject project;
    writeProject(
        project,
        binderXml(systemFolders(item(3, "Text", "One") + item(4, "Text", "Two")), {}, "2.0"), "23");
    const QByteArray emptyHash = "da39a3ee5e6b4b0d3255bfef95601890afd80709";
    const QByteArray name = uuidOf(3) + "/synopsis.txt";
    const QString path = u"Files/Data/"_s + QString::fromLatin1(name);
    project.writeFile(path, {});
    project.writeFile(
        HashesFile, name + '=' + emptyHash + '\n' + uuidOf(9) + "/content.rtf=" + emptyHash + '\n');
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(path, "A boat");
    QCOMPARE(hashProblemsOf(project), QStringList(u"changedDocument "_s + path));
    QVERIFY(QFile::remove(project.path(path)));
    QCOMPARE(hashProblemsOf(project), QStringList(u"missingDocument "_s + path));
}

void TstToolCheckHashes::aDamagedLineIsToldByItsNumber()
{
    const TestProject project;
    writeSoundProject(project);
    project.writeFile(HashesFile, project.readFile(HashesFile) + "\ngulls\n");
    QCOMPARE(runTool({u"check"_s, project.path()}).output,
             QByteArray("unreadableHashes: Files/Docs/docs.checksum: line 4 isn't a file with its "
                        "hash\n"));
}

void TstToolCheckHashes::whereASearchIndexIsDamagedIsTold()
{
    const TestProject project;
    writeSoundProject(project);
    const auto textOf = [&project](const QByteArray &index) {
        project.writeFile(IndexFile, index);
        const QByteArray output = runTool({u"check"_s, project.path()}).output;
        const QByteArray head = "unreadableSearchIndex: Files/search.indexes: ";
        return output.startsWith(head) ? output.sliced(head.size()).trimmed() : QByteArray();
    };
    QVERIFY(textOf("<SearchIndexes>\n<Documents></SearchIndexes>").startsWith("line 2, column "));
    const QByteArray noDocuments = "The search.indexes file has no documents";
    QCOMPARE(textOf("<Documents/>"), noDocuments);
    QCOMPARE(textOf("<SearchIndexes/>"), noDocuments);
    QVERIFY(textOf("<!DOCTYPE a><SearchIndexes><Documents/></SearchIndexes>")
                .endsWith("The search.indexes file has a document type"));
}

void TstToolCheckHashes::manyFilesAreCompared()
{
    constexpr int Count = 3000;
    const TestProject project;
    QByteArray items;
    for (int id = 3; id < Count + 3; ++id) {
        items += item(id, "Text", "Page");
        project.writeFile(u"Files/Docs/%1_synopsis.txt"_s.arg(id), QByteArray::number(id));
    }
    writeProject(project, binderXml(systemFolders(items)));
    recordHashes(project);
    QCOMPARE(hashProblemsOf(project), QStringList());
    project.writeFile(u"Files/Docs/1000_synopsis.txt"_s, "another");
    QVERIFY(QFile::remove(project.path(u"Files/Docs/2000_synopsis.txt"_s)));
    QCOMPARE(hashProblemsOf(project),
             QStringList({u"changedDocument Files/Docs/1000_synopsis.txt"_s,
                          u"missingDocument Files/Docs/2000_synopsis.txt"_s}));
}

TVL_TEST(TstToolCheckHashes)
#include "tst_toolcheckhashes.moc"
