#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString CouldNotOpen = u"Could not find or open the search.indexes file"_s;

/** A file with the given items. */
QByteArray fileOf(const QByteArray &documents)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SearchIndexes Version=\"1.0\">\n"
           "    <Documents>\n"
        + documents + "    </Documents>\n</SearchIndexes>\n";
}

/** Property, text and whether it is confirmed, of each text of an item. */
QStringList rowsOfItem(const TVLSearchIndex &index, int id = 7)
{
    return rowsOf(index,
                  u"SELECT type, propertyValue, confirmed FROM DocumentSearchProperties "
                  "WHERE identity = %1 ORDER BY type"_s.arg(id));
}

const QStringList UntouchedRows = {u"1|Title|1"_s, u"2||0"_s, u"3||0"_s,
                                   u"4||0"_s,      u"8||0"_s, u"9||0"_s};

} // namespace

class TstSearchFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anEmptyStoreIsWritten();
    void theFileLiesInTheProject();
    void itemsAreWrittenWithWhatTheyHave();
    void theFileIsWrittenWithTheseStatements();
    void aTextOfARemovedItemIsWritten();
    void whatXmlCannotHoldIsCleaned_data();
    void whatXmlCannotHoldIsCleaned();
    void savingClearsTheModifiedFlag();
    void aFileThatCannotBeOpenedIsLogged();
    void whatALinkLeadsToIsNotWritten();
    void aDatabaseThatFailsLeavesTheFileAsItWas();
    void aStoreWithoutProjectHasNoFile();
    void hashesOfOtherTextsAreTakenBackFirst();
    void textsStayAsTheyAreWhenHashesCannotBeTakenBack();
    void textsStayAsTheyAreWhileTheFolderOfTheHashesIsAway();

    void anAbsentFileIsNoError();
    void anUnreadableFileIsAnError();
    void aFileThatFailsWhileItIsReadIsAnError();
    void anErrorNeedNotBeAskedFor();
    void textsAreTakenFromTheFile();
    void theFileIsReadWithTheseStatements();
    void theTitleOfTheFileIsNotUsed();
    void textsAreConfirmedByTheirFiles_data();
    void textsAreConfirmedByTheirFiles();
    void besideHashesATextWithoutOneIsNotConfirmed();
    void commentsNeedTheTextToo();
    void metaDataNeedsAllFiles();
    void aFileChangedOutsideIsNotConfirmed();
    void aFileThatIsGoneIsNotConfirmed();
    void itemsWithoutUsableIdAreSkipped_data();
    void itemsWithoutUsableIdAreSkipped();
    void anItemThatIsNoMoreChangesNothing();
    void anItemThatTheFileLacksStaysUnconfirmed();
    void missingTextsAreEmpty();
    void unknownElementsAreIgnored();
    void ofSeveralElementsTheFirstCounts();
    void ofSeveralItemsTheLastCounts();
    void loadingIsNoModification();
    void loadingTwiceReplacesTexts();
    void loadingInsideAnOpenTransactionIsPartOfIt();
    void aMissingFolderIsAnError();

    void filesReadBack_data();
    void filesReadBack();
    void aSavedFileIsTheSameAgain();
    void nothingIsUnconfirmedAfterAnUnchangedSession();

private:
    TVLProjectNode *addItem(int id = 7);
    void setText(int id, TVL::DocumentProperty property, const QString &text);
    void setAllTexts(int id, const QString &text);

    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstSearchFile::init()
{
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
}

void TstSearchFile::cleanup()
{
    mIndex.reset();
    mProject.reset();
}

TVLProjectNode *TstSearchFile::addItem(int id)
{
    TVLProjectNode *node = mProject->addNode(id, u"Title"_s);
    if (!mIndex->addProjectNode(node))
        qFatal("The item could not be added");
    return node;
}

void TstSearchFile::setText(int id, TVL::DocumentProperty property, const QString &text)
{
    mIndex->updatePropertyNode(
        static_cast<TVLProjectNode *>(mProject->searchedIndex(id).internalPointer()), property,
        text, false);
}

void TstSearchFile::setAllTexts(int id, const QString &text)
{
    for (const int property : TVLSearchIndex::stringDocumentProperties())
        setText(id, TVL::DocumentProperty(property), text);
}

// --- Writing

void TstSearchFile::anEmptyStoreIsWritten()
{
    mIndex->save();
    QCOMPARE(mProject->readIndex(),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<SearchIndexes Version=\"1.0\">\n    <Documents/>\n</SearchIndexes>\n"));
}

void TstSearchFile::theFileLiesInTheProject()
{
    QCOMPARE(mIndex->searchIndexesFilePath(),
             mProject->searchedPath() + u"/Files/search.indexes"_s);
}

void TstSearchFile::itemsAreWrittenWithWhatTheyHave()
{
    addItem(12);
    addItem(7);
    mProject->addNode(3, u"x"_s);
    QVERIFY(mIndex->addDocumentData(3, QString(), 1, 1, {}));
    setText(7, TVL::TextProperty, u"a <b> & \"c\""_s);
    setText(7, TVL::NotesProperty, u"notes"_s);
    setText(7, TVL::SynopsisProperty, u"synopsis"_s);
    setText(7, TVL::CustomMetaDataProperty, u"meta data"_s);
    setText(7, TVL::CommentsProperty, u"one\ntwo"_s);
    setText(12, TVL::NotesProperty, u"  "_s);
    mIndex->save();
    QCOMPARE(mProject->readIndex(),
             fileOf("        <Document ID=\"3\"/>\n"
                    "        <Document ID=\"7\">\n"
                    "            <Title>Title</Title>\n"
                    "            <Synopsis>synopsis</Synopsis>\n"
                    "            <Text>a &lt;b&gt; &amp; &quot;c&quot;</Text>\n"
                    "            <CustomMetaData>meta data</CustomMetaData>\n"
                    "            <Notes>notes</Notes>\n"
                    "            <Comments>one\ntwo</Comments>\n"
                    "        </Document>\n"
                    "        <Document ID=\"12\">\n"
                    "            <Title>Title</Title>\n"
                    "            <Notes>  </Notes>\n"
                    "        </Document>\n"));
}

void TstSearchFile::theFileIsWrittenWithTheseStatements()
{
    addItem(7);
    addItem(8);
    SqlTrace trace(*mIndex);
    mIndex->save();
    const QString selectText =
        u"SELECT propertyValue FROM DocumentSearchProperties WHERE type=:t AND identity = :i"_s;
    QCOMPARE(trace.take(),
             QStringList(u"SELECT DISTINCT identity FROM DocumentSearchProperties"_s)
                 + QStringList(12, selectText));
}

void TstSearchFile::aTextOfARemovedItemIsWritten()
{
    addItem(7);
    setText(7, TVL::TextProperty, u"still here"_s);
    QVERIFY(mIndex->removeDocument(7));
    mIndex->save();
    QVERIFY(mProject->readIndex().contains("<Document ID=\"7\">"));
    QVERIFY(mProject->readIndex().contains("<Text>still here</Text>"));
}

void TstSearchFile::whatXmlCannotHoldIsCleaned_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("read");
    QTest::newRow("control characters")
        << u"a\u0001b\u001fc"_s + QChar(0) + u"d\u007f"_s << u"abcd\u007f"_s;
    QTest::newRow("tabs and line ends") << u"\ta\nb\r\nc\rd"_s << u"\ta\nb\r\nc\rd"_s;
    QTest::newRow("half a pair") << u"a"_s + QChar(0xd800) + u"b"_s << u"a\ufffdb"_s;
    QTest::newRow("no characters")
        << u"a"_s + QChar(0xfffe) + QChar(0xffff) + u"b"_s << u"a\ufffd\ufffdb"_s;
    QTest::newRow("nothing left") << u"\u0001"_s << u""_s;
    QTest::newRow("an end of CDATA") << u"a]]>b"_s << u"a]]>b"_s;
}

void TstSearchFile::whatXmlCannotHoldIsCleaned()
{
    QFETCH(QString, text);
    QFETCH(QString, read);
    addItem();
    setAllTexts(7, text);
    mIndex->save();

    TVLSearchIndex again(mProject.get());
    QVERIFY(again.addDocumentData(7, u"Title"_s, 1, 1, {}));
    QString error;
    QVERIFY2(again.load(&error), qPrintable(error));
    QCOMPARE(rowsOfItem(again),
             QStringList({u"1|Title|1"_s, u"2|"_s + read + u"|1"_s, u"3|"_s + read + u"|1"_s,
                          u"4|"_s + read + u"|1"_s, u"8|"_s + read + u"|1"_s,
                          u"9|"_s + read + u"|1"_s}));
}

void TstSearchFile::savingClearsTheModifiedFlag()
{
    addItem();
    QVERIFY(mIndex->isModified());
    mIndex->save();
    QVERIFY(!mIndex->isModified());
}

void TstSearchFile::aFileThatCannotBeOpenedIsLogged()
{
    addItem();
    QVERIFY(QDir().mkpath(mProject->indexPath()));
    QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
    mIndex->save();
    QVERIFY(mIndex->isModified());

    QVERIFY(QDir().rmdir(mProject->indexPath()));
    mIndex->save();
    QVERIFY(!mIndex->isModified());
}

void TstSearchFile::whatALinkLeadsToIsNotWritten()
{
    QTemporaryFile elsewhere;
    QVERIFY(elsewhere.open());
    elsewhere.write("of somebody else");
    elsewhere.close();
    addItem();
    mIndex->save();
    QVERIFY(QFile::remove(mProject->indexPath()));
    QVERIFY(QFile::link(elsewhere.fileName(), mProject->indexPath()));
    setText(7, TVL::NotesProperty, u"notes"_s);
    QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
    mIndex->save();
    QCOMPARE(mProject->readIndex(), "of somebody else");
    QVERIFY(mIndex->isModified());
}

void TstSearchFile::aDatabaseThatFailsLeavesTheFileAsItWas()
{
    addItem();
    mIndex->save();
    const QByteArray before = mProject->readIndex();
    setText(7, TVL::TextProperty, u"new"_s);
    execute(*mIndex, u"ALTER TABLE DocumentSearchProperties RENAME TO Away"_s);
    expectSqlErrors(u"SELECT DISTINCT identity.*no such table"_s);
    mIndex->save();
    QVERIFY(mIndex->isModified());
    QCOMPARE(mProject->readIndex(), before);

    execute(*mIndex, u"CREATE VIEW DocumentSearchProperties AS SELECT identity FROM Away"_s);
    expectSqlErrors(u"SELECT propertyValue.*no such column"_s);
    mIndex->save();
    QVERIFY(mIndex->isModified());
    QCOMPARE(mProject->readIndex(), before);

    execute(*mIndex, u"DROP VIEW DocumentSearchProperties"_s);
    execute(*mIndex, u"ALTER TABLE Away RENAME TO DocumentSearchProperties"_s);
    mIndex->save();
    QVERIFY(!mIndex->isModified());
    QVERIFY(mProject->readIndex().contains("<Text>new</Text>"));
}

void TstSearchFile::aStoreWithoutProjectHasNoFile()
{
    TVLSearchIndex index;
    QVERIFY(index.addDocumentData(7, u"Title"_s, 1, 1, {}));
    QCOMPARE(index.searchIndexesFilePath(), QString());
    index.save();
    QVERIFY(index.isModified());
    QVERIFY(index.load());
    QVERIFY(index.isLoaded());
    QVERIFY(!index.isModified());
}

void TstSearchFile::hashesOfOtherTextsAreTakenBackFirst()
{
    const TVLProjectNode *node = addItem();
    mProject->writeDocument(7, TVL::MainText, "content");
    mProject->writeDocument(7, TVL::NotesText, "notes");
    mIndex->updatePropertyNode(node, TVL::TextProperty, u"content"_s, true);
    mIndex->updatePropertyNode(node, TVL::NotesProperty, u"notes"_s, true);
    mIndex->save();
    QVERIFY(mProject->checksums()->saveChecksums());
    const ChecksumMap before = mProject->checksums()->checksums();
    QCOMPARE(before.size(), 2);

    setText(7, TVL::TextProperty, u"typed"_s);
    mIndex->save();
    QVERIFY(mProject->readIndex().contains("typed"));
    QVERIFY(mProject->checksums()->loadChecksums());
    QCOMPARE(mProject->checksums()->checksums(),
             (ChecksumMap{{{QUuid(), u"7_notes.rtf"_s}, before.last()}}));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|typed|0"_s));
    QVERIFY(rowsOfItem(*mIndex).contains(u"3|notes|1"_s));
}

void TstSearchFile::textsStayAsTheyAreWhenHashesCannotBeTakenBack()
{
    addItem();
    mIndex->save();
    const QByteArray before = mProject->readIndex();
    const QString hashes =
        TVLProjectFolderFormat::projectChecksumFilePathId(mProject->searchedPath());
    QVERIFY(QDir().mkpath(hashes));
    setText(7, TVL::TextProperty, u"new"_s);
    QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
    mIndex->save();
    QCOMPARE(mProject->readIndex(), before);
    QVERIFY(mIndex->isModified());
    QVERIFY(QDir().rmdir(hashes));
    mIndex->save();
    QVERIFY(mProject->readIndex().contains("<Text>new</Text>"));
}

void TstSearchFile::textsStayAsTheyAreWhileTheFolderOfTheHashesIsAway()
{
    addItem();
    mIndex->save();
    const QByteArray before = mProject->readIndex();
    const QString docs = TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath());
    QVERIFY(QFile::rename(docs, docs + u".away"_s));
    setText(7, TVL::TextProperty, u"new"_s);
    QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
    mIndex->save();
    QCOMPARE(mProject->readIndex(), before);
    QVERIFY(mIndex->isModified());
    QVERIFY(QFile::rename(docs + u".away"_s, docs));
    mIndex->save();
    QVERIFY(!mIndex->isModified());
}

// --- Reading

void TstSearchFile::anAbsentFileIsNoError()
{
    addItem();
    mProject->writeDocument(7, TVL::MainText, "content");
    mProject->recordHashes();
    mProject->checksums()->setChecksums({});
    QString error = u"as before"_s;
    QVERIFY(!mIndex->isLoaded());
    QVERIFY(mIndex->load(&error));
    QVERIFY(mIndex->isLoaded());
    QVERIFY(!mIndex->isModified());
    QCOMPARE(error, u"as before"_s);
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
    // Without texts nothing may be confirmed by a hash.
    QVERIFY(mProject->checksums()->checksums().isEmpty());
}

void TstSearchFile::anUnreadableFileIsAnError()
{
    addItem();
    QVERIFY(QDir().mkpath(mProject->indexPath()));
    QString error;
    QVERIFY(!mIndex->load(&error));
    QCOMPARE(error, CouldNotOpen);
    QVERIFY(mIndex->isLoaded());
    QVERIFY(!mIndex->isModified());
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

void TstSearchFile::aFileThatFailsWhileItIsReadIsAnError()
{
    addItem();
    // It can be opened and has no end, and reading where nothing is mapped fails.
    QVERIFY(QFile::link(u"/proc/self/mem"_s, mProject->indexPath()));
    QString error;
    QVERIFY(!mIndex->load(&error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

void TstSearchFile::anErrorNeedNotBeAskedFor()
{
    QVERIFY(QDir().mkpath(mProject->indexPath()));
    QVERIFY(!mIndex->load());
    QVERIFY(QDir().rmdir(mProject->indexPath()));
    mProject->writeIndex("no XML");
    QVERIFY(!mIndex->load(nullptr));
    mProject->writeIndex(fileOf({}));
    QVERIFY(mIndex->load());
}

void TstSearchFile::textsAreTakenFromTheFile()
{
    addItem();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Comments>a\nb</Comments><Notes>notes</Notes>"
                                "<Text>a &lt;b&gt; &amp;&#13;</Text><Synopsis> s </Synopsis>"
                                "<CustomMetaData><![CDATA[1 2]]></CustomMetaData></Document>"));
    QString error = u"before"_s;
    QVERIFY(mIndex->load(&error));
    QCOMPARE(error, QString());
    QCOMPARE(rowsOfItem(*mIndex),
             QStringList({u"1|Title|1"_s, u"2|a <b> &\r|1"_s, u"3|notes|1"_s, u"4| s |1"_s,
                          u"8|1 2|1"_s, u"9|a\nb|1"_s}));
}

void TstSearchFile::theFileIsReadWithTheseStatements()
{
    addItem();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>text</Text></Document>"));
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->load());
    QCOMPARE(trace.take(),
             QStringList(u"BEGIN"_s)
                 + QStringList(5,
                               u"UPDATE DocumentSearchProperties SET propertyValue = :v, "
                               "confirmed = :c WHERE identity = :id AND type = :t"_s)
                 + QStringList(u"COMMIT"_s));
}

void TstSearchFile::theTitleOfTheFileIsNotUsed()
{
    addItem();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Title>Old</Title></Document>"));
    QVERIFY(mIndex->load());
    QCOMPARE(rowsOfItem(*mIndex).constFirst(), u"1|Title|1"_s);
}

void TstSearchFile::textsAreConfirmedByTheirFiles_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("unconfirmed");
    QTest::newRow("none") << -1 << QString();
    QTest::newRow("text") << int(TVL::MainText) << u"2 8"_s;
    QTest::newRow("notes") << int(TVL::NotesText) << u"3 8"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisText) << u"4 8"_s;
    QTest::newRow("links") << int(TVL::LinksFile) << QString();
    QTest::newRow("comments") << int(TVL::CommentsFile) << u"8 9"_s;
}

void TstSearchFile::textsAreConfirmedByTheirFiles()
{
    QFETCH(int, type);
    QFETCH(QString, unconfirmed);
    addItem();
    for (const int file : {0, 1, 2, 3, 4})
        mProject->writeDocument(7, TVL::DocumentType(file), "content");
    mProject->recordHashes();
    mProject->writeIndex(fileOf("<Document ID=\"7\"/>"));
    if (type >= 0)
        mProject->writeDocument(7, TVL::DocumentType(type), "changed");
    QVERIFY(mIndex->load());
    QCOMPARE(
        rowsOf(*mIndex,
               u"SELECT type FROM DocumentSearchProperties WHERE confirmed = 0 ORDER BY type"_s)
            .join(u' '),
        unconfirmed);
}

void TstSearchFile::besideHashesATextWithoutOneIsNotConfirmed()
{
    addItem();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>unsaved</Text></Document>"));
    mProject->recordHashes();
    QVERIFY(mIndex->load());
    // Nor is there a file that it could be the text of. Of an empty text there is none either way.
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|unsaved|0"_s));
    QVERIFY(rowsOfItem(*mIndex).contains(u"3||1"_s));
}

void TstSearchFile::commentsNeedTheTextToo()
{
    addItem();
    mProject->writeDocument(7, TVL::MainText, "content");
    mProject->writeDocument(7, TVL::CommentsFile, "comments");
    mProject->recordHashes();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Comments>comments</Comments></Document>"));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"9|comments|1"_s));
    mProject->writeDocument(7, TVL::MainText, "changed");
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"9|comments|0"_s));
}

void TstSearchFile::metaDataNeedsAllFiles()
{
    addItem();
    mProject->writeIndex(
        fileOf("<Document ID=\"7\"><CustomMetaData>m</CustomMetaData></Document>"));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"8|m|1"_s));
    mProject->writeDocument(7, TVL::CommentsFile, "unrecorded");
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"8|m|0"_s));
}

void TstSearchFile::aFileChangedOutsideIsNotConfirmed()
{
    addItem();
    mProject->writeDocument(7, TVL::MainText, "as written");
    mProject->recordHashes();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>stale</Text></Document>"));
    mProject->writeDocument(7, TVL::MainText, "as changed");
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|stale|0"_s));
}

void TstSearchFile::aFileThatIsGoneIsNotConfirmed()
{
    addItem();
    mProject->writeDocument(7, TVL::MainText, "as written");
    mProject->recordHashes();
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>stale</Text></Document>"));
    QVERIFY(QFile::remove(
        TVLProjectFolderFormat::docsNodeTypeFilePath(mProject->searchedPath(), 7, TVL::MainText)));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|stale|0"_s));
}

void TstSearchFile::itemsWithoutUsableIdAreSkipped_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("empty") << QByteArray("ID=\"\"");
    QTest::newRow("negative") << QByteArray("ID=\"-7\"");
    QTest::newRow("a word") << QByteArray("ID=\"seven\"");
    QTest::newRow("a number and more") << QByteArray("ID=\"7x\"");
    QTest::newRow("too large") << QByteArray("ID=\"4294967303\"");
    QTest::newRow("hexadecimal") << QByteArray("ID=\"0x7\"");
    QTest::newRow("another case") << QByteArray("id=\"7\"");
}

void TstSearchFile::itemsWithoutUsableIdAreSkipped()
{
    QFETCH(QByteArray, attribute);
    addItem(7);
    addItem(8);
    mProject->writeIndex(fileOf("<Document " + attribute
                                + "><Text>x</Text></Document>"
                                  "<Document ID=\"8\"><Text>y</Text></Document>"));
    QString error;
    QVERIFY2(mIndex->load(&error), qPrintable(error));
    QCOMPARE(rowsOfItem(*mIndex, 7), UntouchedRows);
    QVERIFY(rowsOfItem(*mIndex, 8).contains(u"2|y|1"_s));
}

void TstSearchFile::anItemThatIsNoMoreChangesNothing()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"99\"><Text>x</Text></Document>"));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(mIndex->load());
    QCOMPARE(rowsOf(*mIndex, u"SELECT DISTINCT identity FROM DocumentSearchProperties"_s),
             QStringList{u"7"_s});
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

void TstSearchFile::anItemThatTheFileLacksStaysUnconfirmed()
{
    addItem(7);
    mProject->writeIndex(fileOf({}));
    QVERIFY(mIndex->load());
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

void TstSearchFile::missingTextsAreEmpty()
{
    addItem(7);
    setAllTexts(7, u"before"_s);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Notes/></Document>"));
    QVERIFY(mIndex->load());
    QCOMPARE(rowsOfItem(*mIndex),
             QStringList({u"1|before|0"_s, u"2||1"_s, u"3||1"_s, u"4||1"_s, u"8||1"_s, u"9||1"_s}));
}

void TstSearchFile::unknownElementsAreIgnored()
{
    addItem(7);
    mProject->writeIndex("<SearchIndexes><Other><Document ID=\"7\"><Text>no</Text></Document>"
                         "</Other><Documents><Other ID=\"7\"><Text>no</Text></Other>"
                         "<Document ID=\"7\"><p:Text>no</p:Text><text>no</text>"
                         "<More><Text>no</Text></More>words<Text>y<b>e</b>s</Text></Document>"
                         "</Documents><Documents><Document ID=\"7\"><Text>no</Text></Document>"
                         "</Documents></SearchIndexes>");
    QString error;
    QVERIFY2(mIndex->load(&error), qPrintable(error));
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|yes|1"_s));
}

void TstSearchFile::ofSeveralElementsTheFirstCounts()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text><Text>two</Text></Document>"));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|one|1"_s));
}

void TstSearchFile::ofSeveralItemsTheLastCounts()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text></Document>"
                                "<Document ID=\"7\"><Notes>two</Notes></Document>"));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2||1"_s));
    QVERIFY(rowsOfItem(*mIndex).contains(u"3|two|1"_s));
}

void TstSearchFile::loadingIsNoModification()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text></Document>"));
    QVERIFY(mIndex->isModified());
    QVERIFY(mIndex->load());
    QVERIFY(!mIndex->isModified());
    QVERIFY(!mProject->checksums()->isModified());
}

void TstSearchFile::loadingTwiceReplacesTexts()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text></Document>"));
    QVERIFY(mIndex->load());
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Notes>two</Notes></Document>"));
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2||1"_s));
    QVERIFY(rowsOfItem(*mIndex).contains(u"3|two|1"_s));
}

void TstSearchFile::loadingInsideAnOpenTransactionIsPartOfIt()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text></Document>"));
    QVERIFY(mIndex->transaction());
    QVERIFY(mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|one|1"_s));
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>two</Text></Document>") + "<");
    QVERIFY(!mIndex->load());
    QVERIFY(rowsOfItem(*mIndex).contains(u"2|one|1"_s));
    QVERIFY(mIndex->rollback());
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

void TstSearchFile::aMissingFolderIsAnError()
{
    addItem(7);
    mProject->writeIndex(fileOf("<Document ID=\"7\"><Text>one</Text></Document>"));
    const QString docs = TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath());
    QVERIFY(QDir(docs).removeRecursively());
    QFile inTheWay(docs);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QVERIFY(!mIndex->load());
    QCOMPARE(rowsOfItem(*mIndex), UntouchedRows);
}

// --- Both

void TstSearchFile::filesReadBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("plain") << u"It was a dark and stormy night."_s;
    QTest::newRow("markup") << u"<b>&amp;</b> \"'"_s;
    QTest::newRow("blanks") << u"  a  \t b \n"_s;
    QTest::newRow("only blanks") << u" \n\t "_s;
    QTest::newRow("only a carriage return") << u"\r"_s;
    QTest::newRow("Unicode") << u"\u6f22\u5b57 \U0001d11e \u00e9 \u2028 \u0085 \ufeff"_s;
    QTest::newRow("long") << u"word "_s.repeated(200'000);
}

void TstSearchFile::filesReadBack()
{
    QFETCH(QString, text);
    addItem();
    setAllTexts(7, text);
    mIndex->save();

    TVLSearchIndex again(mProject.get());
    QVERIFY(again.addDocumentData(7, u"Title"_s, 1, 1, {}));
    QVERIFY(again.load());
    const QString rest = u'|' + text + u"|1"_s;
    QCOMPARE(rowsOfItem(again),
             QStringList({u"1|Title|1"_s, u'2' + rest, u'3' + rest, u'4' + rest, u'8' + rest,
                          u'9' + rest}));
}

void TstSearchFile::aSavedFileIsTheSameAgain()
{
    for (int id = 0; id < 50; ++id) {
        addItem(id);
        setAllTexts(id, u"Text %1\r\n & more"_s.arg(id));
    }
    execute(*mIndex,
            u"UPDATE DocumentSearchProperties SET propertyValue = 'Title' WHERE type = 1"_s);
    mIndex->save();
    const QByteArray first = mProject->readIndex();
    TVLSearchIndex again(mProject.get());
    for (int id = 0; id < 50; ++id)
        QVERIFY(again.addDocumentData(id, u"Title"_s, 1, 1, {}));
    QVERIFY(again.load());
    again.save();
    QCOMPARE(mProject->readIndex(), first);
}

void TstSearchFile::nothingIsUnconfirmedAfterAnUnchangedSession()
{
    const TVLProjectNode *node = addItem(7);
    for (const int type : {0, 1, 2, 4}) {
        mProject->writeDocument(7, TVL::DocumentType(type), "content");
        mIndex->updatePropertyNode(node, TVL::toDocumentProperty(TVL::DocumentType(type)),
                                   u"content"_s, true);
    }
    mIndex->save();
    QVERIFY(mProject->checksums()->saveChecksums());

    TVLSearchIndex again(mProject.get());
    QVERIFY(again.addProjectNode(node));
    QVERIFY(again.load());
    QVERIFY(again.notConfirmedIndexes().isEmpty());
}

TVL_TEST(TstSearchFile)
#include "tst_searchfile.moc"
