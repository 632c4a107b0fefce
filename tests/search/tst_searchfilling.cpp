#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestScale.h"
#include "TestSearchedProject.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr TVL::DocumentType FileTypes[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText,
                                           TVL::CommentsFile};

/** All that an index and the hashes beside it say after an opening. */
struct Opened
{
    bool isRead = false;
    bool isLoaded = false;
    bool isModified = false;
    bool isMisleadingWithNewItem = false;
    QString error;
    QStringList rows;
    QByteArrayList hashes;

    bool operator==(const Opened &) const = default;
};

Opened stateOf(TVLSearchIndex *index, const TestSearchedProject &project, bool isRead,
               const QString &error)
{
    Opened opened;
    opened.isRead = isRead;
    opened.error = error;
    opened.isLoaded = index->isLoaded();
    opened.isModified = index->isModified();
    opened.rows = rowsOf(*index,
                         u"SELECT identity, type, propertyValue, confirmed "
                         "FROM DocumentSearchProperties ORDER BY identity, type"_s)
        + rowsOf(*index,
                 u"SELECT identity, type, propertyValue FROM DocumentIntProperties "
                 "ORDER BY identity, type, propertyValue"_s);
    for (int id = 0; id < 12; ++id) {
        for (const TVL::DocumentType type : FileTypes)
            opened.hashes.append(project.checksums()->loadedChecksum(id, type));
    }
    index->addDocumentData(7, u"new"_s, -1, -1, {});
    opened.isMisleadingWithNewItem = index->isFileMisleading();
    return opened;
}

Opened filled(TestSearchedProject *project, const QList<const TVLProjectNode *> &nodes)
{
    project->checksums()->setChecksums({});
    TVLSearchIndex index(project);
    QString error;
    const bool isRead = index.fill(nodes, &error);
    return stateOf(&index, *project, isRead, error);
}

/** What fill() is to be as good as. */
Opened filledInSteps(TestSearchedProject *project, const QList<const TVLProjectNode *> &nodes)
{
    project->checksums()->setChecksums({});
    TVLSearchIndex index(project);
    QHash<int, QString> metaData;
    for (const TVLProjectNode *node : nodes) {
        index.addProjectNode(node);
        if (!node->mCustomMetaData.isEmpty())
            metaData.insert(node->mId, TVLSearchIndex::customMetaDataText(node));
    }
    QString error;
    const bool isRead = index.load(&error);
    index.setTexts(TVL::CustomMetaDataProperty, metaData);
    return stateOf(&index, *project, isRead, error);
}

QByteArray indexWith(const QByteArray &documents)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><SearchIndexes Version=\"1.0\"><Documents>"
        + documents + "</Documents></SearchIndexes>";
}

/** Takes what both ways may log. */
void ignore(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*text*/) {
}

} // namespace

/** Rows of a project that is opened, made in one go. */
class TstSearchFilling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreThoseOfEachStepByItself();
    void rowsOfEachItemAreWrittenOnce();
    void aFaultyFileLeavesItemsWithTheirTitles();
    void twoItemsOfOneIdLeaveTheFirst();
    void aFolderThatCannotBeListedIsLookedIntoFileByFile();
    void aFileNameInOtherLettersIsNotTakenForMissing();

private:
    [[nodiscard]] int random(int bound) { return int(mRandom.bounded(quint32(bound))); }
    [[nodiscard]] QByteArray randomWord()
    {
        const QByteArray words[] = {"",   "one", "two", "&amp; three", " ", "\xc3\xa9t\xc3\xa9",
                                    "1 2"};
        return words[random(int(std::size(words)))];
    }
    void addNodes(TestSearchedProject *project);
    void writeDocuments(TestSearchedProject *project);
    void writeIndex(const TestSearchedProject &project);
    [[nodiscard]] static QList<const TVLProjectNode *> nodesOf(const TestSearchedProject &project)
    {
        return {project.nodes().begin(), project.nodes().end()};
    }

    QRandomGenerator mRandom{20};
};

void TstSearchFilling::addNodes(TestSearchedProject *project)
{
    for (int id = -1; id < 10; ++id) {
        if (random(4) == 0)
            continue;
        const TVL::NodeType types[] = {TVL::Text, TVL::Folder, TVL::Text, TVL::DraftFolder};
        TVLProjectNode *node =
            project->addNode(id, QString::fromUtf8(randomWord()), types[random(4)]);
        node->mLabelId = random(3) - 1;
        node->mStatusId = random(3) - 1;
        while (random(2))
            node->mKeywords.append(random(5));
        if (random(2))
            node->mCustomMetaData = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}};
    }
}

void TstSearchFilling::writeDocuments(TestSearchedProject *project)
{
    const auto writeSome = [this, project] {
        for (int id = 0; id < 10; ++id) {
            for (const TVL::DocumentType type : FileTypes) {
                if (random(3) == 0)
                    project->writeDocument(id, type, randomWord());
            }
        }
    };
    writeSome();
    if (random(4) == 0)
        return;
    project->recordHashes();
    if (random(2))
        writeSome();
    const QDir docs(TVLProjectFolderFormat::filesDocsPath(project->searchedPath()));
    for (const QString &name : docs.entryList({u"*.rtf"_s, u"*.txt"_s}, QDir::Files)) {
        if (random(8) == 0)
            QFile::remove(docs.filePath(name));
    }
}

void TstSearchFilling::writeIndex(const TestSearchedProject &project)
{
    if (random(8) == 0)
        return;
    QByteArray documents;
    for (int i = random(14); i > 0; --i) {
        documents += "<Document ID=\"" + QByteArray::number(random(14) - 1) + "\">";
        for (const QByteArray tag :
             {"Title", "Synopsis", "Text", "CustomMetaData", "Notes", "Comments", "Other"}) {
            if (random(3) == 0)
                documents += '<' + tag + '>' + randomWord() + "</" + tag + '>';
        }
        documents += "</Document>";
    }
    QByteArray file = indexWith(documents);
    if (random(6) == 0)
        file.truncate(random(int(file.size())));
    project.writeIndex(file);
}

void TstSearchFilling::rowsAreThoseOfEachStepByItself()
{
    const QtMessageHandler handler = qInstallMessageHandler(ignore);
    for (int i = 0; i < testCases(4000); ++i) {
        TestSearchedProject project;
        addNodes(&project);
        writeDocuments(&project);
        writeIndex(project);
        const Opened expected = filledInSteps(&project, nodesOf(project));
        const Opened opened = filled(&project, nodesOf(project));
        if (opened == expected)
            continue;
        qInstallMessageHandler(handler);
        QCOMPARE(opened.rows, expected.rows);
        QCOMPARE(opened.hashes, expected.hashes);
        QCOMPARE(opened.error, expected.error);
        QCOMPARE(opened.isRead, expected.isRead);
        QCOMPARE(opened.isModified, expected.isModified);
        QCOMPARE(opened.isMisleadingWithNewItem, expected.isMisleadingWithNewItem);
        QFAIL(qPrintable(u"project %1 differs"_s.arg(i)));
    }
    qInstallMessageHandler(handler);
}

void TstSearchFilling::rowsOfEachItemAreWrittenOnce()
{
    TestSearchedProject project;
    for (int id = 0; id < 250; ++id)
        project.addNode(id, u"Item %1"_s.arg(id));
    project.writeIndex(indexWith("<Document ID=\"3\"><Text>text</Text></Document>"));
    TVLSearchIndex index(&project);
    SqlTrace trace(index);
    QVERIFY(index.fill(nodesOf(project)));
    const QStringList statements = trace.take();
    // Six texts and two numbers of each item, a hundred at a time.
    QCOMPARE(statements.filter(u"INTO DocumentSearchProperties"_s).size(), 15);
    QCOMPARE(statements.filter(u"INTO DocumentIntProperties"_s).size(), 5);
    QVERIFY(statements.filter(u"UPDATE"_s).isEmpty());
    QCOMPARE(rowsOf(index, u"SELECT count(*) FROM DocumentSearchProperties"_s),
             QStringList(u"1500"_s));
}

void TstSearchFilling::aFaultyFileLeavesItemsWithTheirTitles()
{
    TestSearchedProject project;
    project.addNode(3, u"Title"_s);
    project.writeIndex(indexWith("<Document ID=\"3\"><Text>text</Text></Document><Document"));
    TVLSearchIndex index(&project);
    QString error;
    QVERIFY(!index.fill(nodesOf(project), &error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(rowsOf(index,
                    u"SELECT propertyValue, confirmed FROM DocumentSearchProperties "
                    "WHERE propertyValue != '' OR confirmed"_s),
             QStringList(u"Title|1"_s));
}

void TstSearchFilling::twoItemsOfOneIdLeaveTheFirst()
{
    TestSearchedProject project;
    const TVLProjectNode *first = project.addNode(3, u"First"_s);
    const TVLProjectNode *second = project.addNode(3, u"Second"_s);
    TVLSearchIndex index(&project);
    expectSqlErrors(u"UNIQUE"_s, 6);
    QVERIFY(index.fill({first, second}));
    QCOMPARE(rowsOf(index, u"SELECT propertyValue FROM DocumentSearchProperties WHERE type = 1"_s),
             QStringList(u"First"_s));
}

void TstSearchFilling::aFolderThatCannotBeListedIsLookedIntoFileByFile()
{
    TestSearchedProject project;
    project.addNode(3, u"Title"_s);
    project.writeDocument(3, TVL::NotesText, "changed since");
    project.writeIndex(indexWith("<Document ID=\"3\"></Document>"));
    QFile docs(TVLProjectFolderFormat::filesDocsPath(project.searchedPath()));
    QVERIFY(docs.setPermissions(QFile::ExeOwner | QFile::WriteOwner));
    const Opened opened = filled(&project, nodesOf(project));
    QVERIFY(docs.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner));
    QVERIFY(opened.isRead);
    QVERIFY(opened.rows.contains(u"3|2||1"_s));
    QVERIFY(opened.rows.contains(u"3|3||0"_s));
}

void TstSearchFilling::aFileNameInOtherLettersIsNotTakenForMissing()
{
    TestSearchedProject project;
    project.addNode(3, u"Title"_s);
    project.writeIndex(indexWith("<Document ID=\"3\"></Document>"));
    QFile file(TVLProjectFolderFormat::filesDocsPath(project.searchedPath()) + u"/3_NOTES.RTF"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    // As the file system has it: where these letters are others, nothing is at the item's path.
    const QString path =
        TVLProjectFolderFormat::docsNodeTypeFilePath(project.searchedPath(), 3, TVL::NotesText);
    QCOMPARE(filled(&project, nodesOf(project)).rows.contains(u"3|3||1"_s), !QFile::exists(path));
}

TVL_TEST(TstSearchFilling)

#include "tst_searchfilling.moc"
