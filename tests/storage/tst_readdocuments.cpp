#include "DocumentFixtures.h"
#include "StorageFixtures.h"
#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TestBinderProject.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Addresses = QMap<TVLTextRange, QString>;

/** A row for each type that is read, with its word in messages. */
void addTypeRows()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");

    QTest::newRow("main text") << int(TVL::MainText) << u"document"_s;
    QTest::newRow("notes") << int(TVL::NotesText) << u"notes"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisText) << u"synopsis"_s;
}

/** A project whose items with the ids 1 to 9 are known by their uuids. */
TestBinderProject &knownItems()
{
    static TestBinderProject project;
    for (int id = 1; id < 10; ++id)
        project.mIdMap.insert(id, uuidOf(id));
    return project;
}

bool readAll(const TestProject &project, LoadedItem *item, QStringList *errors = nullptr,
             const TVLBinderProject *model = &knownItems())
{
    const Format format(project.path(), TVL::FormatVersion18);
    return format.readDocuments(item->node(), model, errors);
}

/** Writes documents that were made in memory. */
void writeAll(const TestProject &project, LoadedItem *item)
{
    const Format format(project.path(), TVL::FormatVersion18);
    QStringList errors;
    if (!format.writeDocuments(item->node(), &errors))
        qFatal("could not write: %s", qPrintable(errors.join(u'\n')));
}

QByteArray linksFile(const QByteArray &textLinks, const QByteArray &noteLinks,
                     const QByteArray &comments = {})
{
    return "<Links><TavelinorLinks><TextLinks>" + textLinks + "</TextLinks><NotesLinks>" + noteLinks
        + "</NotesLinks></TavelinorLinks><CommentsAndFootnotes>" + comments
        + "</CommentsAndFootnotes></Links>";
}

/** Writes a text with a comment's mark and without its comments file. */
void writeTextWithComment(const TestProject &project, const TVLTextCommentLink &comment)
{
    LoadedItem item;
    item.edit(TVL::MainText, u"Once upon a time"_s);
    TVLTextDoc::setComment(item.text(), {5, 4}, comment);
    writeAll(project, &item);
    QFile::remove(project.path(docsPath(TVL::CommentsFile)));
}

/** Writes a text with a link by id. */
void writeTextWithIdLink(const TestProject &project, TVL::DocumentType type, int id)
{
    LoadedItem item;
    item.edit(type, u"Once upon a time"_s);
    TVLTextDoc::setInternalLinks(item.document(type),
                                 {{{5, 4}, TVLTextFormat::internalLinkAddress(id)}});
    writeAll(project, &item);
}

QByteArray commentsFileOf(const TVLTextCommentLink &comment)
{
    return "<Comments Version=\"1.0\"><Comment ID=\"" + comment.mIdentity.toUtf8()
        + "\" Collapsed=\"No\"><![CDATA[" + comment.mRtf + "]]></Comment></Comments>";
}

} // namespace

class TstReadDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One document
    void aMissingFileLeavesTheDocumentAsItIs_data();
    void aMissingFileLeavesTheDocumentAsItIs();
    void aMissingProjectIsNoError();
    void aTextIsRead_data();
    void aTextIsRead();
    void aSynopsisIsUtf8_data();
    void aSynopsisIsUtf8();
    void anEmptySynopsisFileIsAnEmptyText();
    void inlineMarkupBecomesFormats();
    void aProjectCanBeNamedByItsBinder();

    // Failures
    void aFolderInTheFilesPlaceIsReported_data();
    void aFolderInTheFilesPlaceIsReported();
    void aFileThatCannotBeOpenedIsReported_data();
    void aFileThatCannotBeOpenedIsReported();
    void aSynopsisThatCannotBeReadToItsEndIsReported();
    void anRtfThatCannotBeReadIsReported_data();
    void anRtfThatCannotBeReadIsReported();
    void aMessageHoldsAnyPath();
    void errorsNeedNotBeAskedFor();
    void theOptionOfALaterRunMakesNoDifference();

    // All documents of an item
    void allDocumentsThatAreLoadedAreRead();
    void documentsThatAreNotLoadedAreLeftOut();
    void aMissingNotesFileIsASuccess();
    void aFailureDoesNotStopTheOthers();
    void errorsAreAppendedInTheirOrder();
    void theSynopsisIsUnmodifiedInAnyCase_data();
    void theSynopsisIsUnmodifiedInAnyCase();

    // Comments
    void commentsComeFromTheCommentsFile_data();
    void commentsComeFromTheCommentsFile();
    void commentsOfALinksFileNeedAModel();
    void commentsOfALinksFileAreNotForCommentsWithUuids();
    void theCommentsFileWinsOverALinksFile();
    void brokenCommentsAreReportedAndTheTextIsReadAllTheSame();
    void aSynopsisAloneNeedsNoComments();

    // Links
    void linksOfALinksFileAreSet_data();
    void linksOfALinksFileAreSet();
    void linksByIdBecomeLinksByUuid_data();
    void linksByIdBecomeLinksByUuid();
    void linksNeedAModel();
    void aLinksFileWithoutLinksLeavesLinksAlone();
    void addressesOfLinks();
};

void TstReadDocuments::aMissingFileLeavesTheDocumentAsItIs_data()
{
    addTypeRows();
}

void TstReadDocuments::aMissingFileLeavesTheDocumentAsItIs()
{
    QFETCH(int, type);

    const TestProject project;
    project.writeFile(docsPath(TVL::MainText, 13), rtfOf("Another item"));
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    document->setPlainText(u"As it is"_s);
    QString error = u"untouched"_s;
    QVERIFY(Format::readDocument(project.path(), item.node(), document, &error));
    QCOMPARE(document->toPlainText(), u"As it is"_s);
    QCOMPARE(error, u"untouched"_s);
    QVERIFY(!document->isReadOnly());
}

void TstReadDocuments::aMissingProjectIsNoError()
{
    const TestProject project;
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QVERIFY(item.text()->isEmpty());
    QVERIFY(project.files().isEmpty());
}

void TstReadDocuments::aTextIsRead_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("main text") << int(TVL::MainText) << rtfOf("Once\\par \\u28450? \\'e4");
    QTest::newRow("notes") << int(TVL::NotesText) << rtfOf("Once\\par \\u28450? \\'e4");
    QTest::newRow("synopsis") << int(TVL::SynopsisText)
                              << QByteArray("Once\n\xe6\xbc\xa2 \xc3\xa4");
}

void TstReadDocuments::aTextIsRead()
{
    QFETCH(int, type);
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(docsPath(TVL::DocumentType(type)), content);
    const auto before = project.files();
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    document->setPlainText(u"Replaced"_s);
    QString error = u"untouched"_s;
    QVERIFY(Format::readDocument(project.path(), item.node(), document, &error));
    QCOMPARE(document->toPlainText(), u"Once\n\u6f22 \u00e4"_s);
    QCOMPARE(error, u"untouched"_s);
    QVERIFY(!document->isReadOnly());
    QCOMPARE(project.files(), before);
}

void TstReadDocuments::aSynopsisIsUtf8_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf\xc3\xa4") << u"\u00e4"_s;
    QTest::newRow("two line ends") << QByteArray("a\r\nb\nc") << u"a\nb\nc"_s;
    QTest::newRow("beyond the first plane") << QByteArray("\xf0\x9d\x84\x9e") << u"\U0001d11e"_s;
    QTest::newRow("bytes that are none") << QByteArray("a\xff") << u"a\ufffd"_s;
    QTest::newRow("RTF") << rtfOf("x") << u"{\\rtf1\\ansi x}"_s;
}

void TstReadDocuments::aSynopsisIsUtf8()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);

    const TestProject project;
    project.writeFile(docsPath(TVL::SynopsisText), content);
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.synopsis(), nullptr));
    QCOMPARE(item.synopsis()->toPlainText(), expected);
}

void TstReadDocuments::anEmptySynopsisFileIsAnEmptyText()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::SynopsisText), {});
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.synopsis(), nullptr));
    QVERIFY(item.synopsis()->isEmpty());
    QVERIFY(!item.synopsis()->isReadOnly());
}

void TstReadDocuments::inlineMarkupBecomesFormats()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("a\\{annotation|b|annotation\\}c"));
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.text(), nullptr));
    QCOMPARE(item.text()->toPlainText(), u"abc"_s);
    QTextCursor cursor(item.text());
    cursor.setPosition(2);
    QVERIFY(cursor.charFormat().boolProperty(TVLTextFormat::InlineAnnotation));
}

void TstReadDocuments::aProjectCanBeNamedByItsBinder()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once"));
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        LoadedItem item;
        QVERIFY(Format::readDocument(path, item.node(), item.text(), nullptr));
        QCOMPARE(item.text()->toPlainText(), u"Once"_s);
    }
}

void TstReadDocuments::aFolderInTheFilesPlaceIsReported_data()
{
    addTypeRows();
}

void TstReadDocuments::aFolderInTheFilesPlaceIsReported()
{
    QFETCH(int, type);

    const TestProject project;
    const QString filePath = docsPath(TVL::DocumentType(type));
    project.writeFile(filePath + u"/file"_s, "in a folder");
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), document, &error));
    QCOMPARE(error,
             u"Error: Trying to read directory as a file: '%1'"_s.arg(project.path(filePath)));
    QVERIFY(document->isReadOnly());
}

void TstReadDocuments::aFileThatCannotBeOpenedIsReported_data()
{
    addTypeRows();
}

void TstReadDocuments::aFileThatCannotBeOpenedIsReported()
{
    checkUnopenableDocument(u"Could not open %1 file for reading: '%2'\nError: %3"_s);
}

void TstReadDocuments::aSynopsisThatCannotBeReadToItsEndIsReported()
{
    const TestProject project;
    linkToUnreadableFile(project, docsPath(TVL::SynopsisText));
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.synopsis(), &error));
    QVERIFY2(error.startsWith(u"Could not open synopsis file for reading: '%1'\nError: "_s.arg(
                 project.path(docsPath(TVL::SynopsisText)))),
             qPrintable(error));
    QVERIFY(item.synopsis()->isReadOnly());
}

void TstReadDocuments::anRtfThatCannotBeReadIsReported_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QByteArray>("content");

    const auto add = [](const char *name, const QByteArray &content) {
        QTest::addRow("%s of the main text", name)
            << int(TVL::MainText) << u"document"_s << content;
        QTest::addRow("%s of the notes", name) << int(TVL::NotesText) << u"notes"_s << content;
    };
    add("cut-off RTF", "{\\rtf1\\ansi {Once upon");
    add("text behind the end", "{\\rtf1\\ansi Once upon} a time");
    add("plain text", "Once upon a time");
    add("XML", "<?xml version=\"1.0\"?><Comments/>");
    add("zeros", QByteArray(4096, '\0'));
    add("nothing", {});
}

void TstReadDocuments::anRtfThatCannotBeReadIsReported()
{
    QFETCH(int, type);
    QFETCH(QString, word);
    QFETCH(QByteArray, content);

    QTextDocument scratch;
    TVLTextRtfReader reader(&scratch);
    QVERIFY(!reader.read(content));
    QVERIFY(!reader.errorString().isEmpty());

    const TestProject project;
    const QString filePath = docsPath(TVL::DocumentType(type));
    project.writeFile(filePath, content);
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), document, &error));
    QCOMPARE(error,
             u"RTF Reader failed loading %1 file: '%2'\nError: %3"_s.arg(
                 word, project.path(filePath), reader.errorString()));
    QVERIFY(document->isReadOnly());
    QCOMPARE(project.readFile(filePath), content);
}

void TstReadDocuments::aMessageHoldsAnyPath()
{
    const TestProject project(u"100%1 %2 %3"_s);
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::MainText));
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QCOMPARE(error,
             u"Could not open document file for reading: '"_s
                 + project.path(docsPath(TVL::MainText)) + u"'\nError: "_s
                 + UnopenableFile::errorText());
}

void TstReadDocuments::errorsNeedNotBeAskedFor()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), "no RTF");
    project.writeFile(docsPath(TVL::NotesText) + u"/file"_s, {});
    project.writeFile(docsPath(TVL::CommentsFile), "no XML");
    LoadedItem item;
    QVERIFY(!readAll(project, &item));
    QVERIFY(item.text()->isReadOnly());
    QVERIFY(item.notes()->isReadOnly());
    QVERIFY(!item.synopsis()->isReadOnly());
}

void TstReadDocuments::theOptionOfALaterRunMakesNoDifference()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once"));
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.text(), nullptr));

    tvlOptions()->setValue(TVLOptions::PreviousExitedNormally, false);
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::MainText));
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QVERIFY2(error.startsWith(u"Could not open document file for reading: "), qPrintable(error));
}

void TstReadDocuments::allDocumentsThatAreLoadedAreRead()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Text"));
    project.writeFile(docsPath(TVL::NotesText), rtfOf("Notes"));
    project.writeFile(docsPath(TVL::SynopsisText), "Synopsis");
    LoadedItem item;
    QStringList errors = {u"before"_s};
    QVERIFY(readAll(project, &item, &errors));
    QCOMPARE(item.text()->toPlainText(), u"Text"_s);
    QCOMPARE(item.notes()->toPlainText(), u"Notes"_s);
    QCOMPARE(item.synopsis()->toPlainText(), u"Synopsis"_s);
    QCOMPARE(errors, QStringList(u"before"_s));
}

void TstReadDocuments::documentsThatAreNotLoadedAreLeftOut()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), "broken");
    project.writeFile(docsPath(TVL::NotesText), rtfOf("Notes"));
    LoadedItem item;
    TVLTextDocument *text = std::exchange(item.node()->mTextDocument, nullptr);
    item.node()->mSynopsisDocument = nullptr;
    QVERIFY(readAll(project, &item));
    QCOMPARE(item.notes()->toPlainText(), u"Notes"_s);
    QVERIFY(!text->isReadOnly());
}

void TstReadDocuments::aMissingNotesFileIsASuccess()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Text"));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QVERIFY(item.notes()->isEmpty());
    QVERIFY(!item.notes()->isReadOnly());
}

void TstReadDocuments::aFailureDoesNotStopTheOthers()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), "broken");
    project.writeFile(docsPath(TVL::NotesText), rtfOf("Notes"));
    project.writeFile(docsPath(TVL::SynopsisText), "Synopsis");
    LoadedItem item;
    QVERIFY(!readAll(project, &item));
    QVERIFY(item.text()->isReadOnly());
    QCOMPARE(item.notes()->toPlainText(), u"Notes"_s);
    QCOMPARE(item.synopsis()->toPlainText(), u"Synopsis"_s);
    QVERIFY(!item.notes()->isReadOnly());
    QVERIFY(!item.synopsis()->isReadOnly());
}

void TstReadDocuments::errorsAreAppendedInTheirOrder()
{
    const TestProject project;
    for (const TVL::DocumentType type :
         {TVL::MainText, TVL::NotesText, TVL::SynopsisText, TVL::CommentsFile})
        project.writeFile(docsPath(type) + u"/file"_s, {});
    LoadedItem item;
    QStringList errors = {u"before"_s};
    QVERIFY(!readAll(project, &item, &errors));
    const QString directory = u"Error: Trying to read directory as a file: '%1'"_s;
    QCOMPARE(errors,
             (QStringList{u"before"_s,
                          u"Could not open comments file for reading: '%1'"_s.arg(
                              project.path(docsPath(TVL::CommentsFile))),
                          directory.arg(project.path(docsPath(TVL::MainText))),
                          directory.arg(project.path(docsPath(TVL::NotesText))),
                          directory.arg(project.path(docsPath(TVL::SynopsisText)))}));
}

void TstReadDocuments::theSynopsisIsUnmodifiedInAnyCase_data()
{
    QTest::addColumn<QString>("fileName");

    QTest::newRow("file") << docsPath(TVL::SynopsisText);
    QTest::newRow("no file") << docsPath(TVL::MainText);
    QTest::newRow("failure") << docsPath(TVL::SynopsisText) + u"/file"_s;
}

void TstReadDocuments::theSynopsisIsUnmodifiedInAnyCase()
{
    QFETCH(QString, fileName);

    const TestProject project;
    project.writeFile(fileName, {});
    LoadedItem item;
    item.synopsis()->setModified(true);
    (void)readAll(project, &item);
    QVERIFY(!item.synopsis()->isModified());
}

void TstReadDocuments::commentsComeFromTheCommentsFile_data()
{
    QTest::addColumn<bool>("withModel");

    QTest::newRow("with a model") << true;
    QTest::newRow("without a model") << false;
}

void TstReadDocuments::commentsComeFromTheCommentsFile()
{
    QFETCH(bool, withModel);

    const TestProject project;
    TVLTextCommentLink comment = numberedComment(1);
    comment.mColor = QColor(255, 0, 0);
    comment.mIsCollapsed = true;
    LoadedItem item;
    item.edit(TVL::MainText, u"Once upon a time"_s);
    TVLTextDoc::setComment(item.text(), {5, 4}, comment);
    writeAll(project, &item);

    LoadedItem again;
    QVERIFY(readAll(project, &again, nullptr, withModel ? &knownItems() : nullptr));
    QCOMPARE(TVLTextDoc::comments(again.text(), -1, -1), QList<TVLTextCommentLink>{comment});
    QCOMPARE(TVLTextDoc::commentsMap(again.text(), -1, -1).firstKey(), 5);
}

void TstReadDocuments::commentsOfALinksFileNeedAModel()
{
    const TestProject project;
    const TVLTextCommentLink comment(u"old"_s, rtfOf("Old"));
    writeTextWithComment(project, comment);
    project.writeFile(
        docsPath(TVL::LinksFile),
        linksFile({}, {}, "<Comment ID='old'><RTF>" + comment.mRtf + "</RTF></Comment>"));
    LoadedItem item;
    QVERIFY(readAll(project, &item, nullptr, nullptr));
    QVERIFY(!TVLTextDoc::comments(item.text(), -1, -1).contains(comment));
    LoadedItem again;
    QVERIFY(readAll(project, &again));
    QCOMPARE(TVLTextDoc::comments(again.text(), -1, -1), QList<TVLTextCommentLink>{comment});
}

void TstReadDocuments::commentsOfALinksFileAreNotForCommentsWithUuids()
{
    const TestProject project;
    const TVLTextCommentLink comment = numberedComment(1);
    writeTextWithComment(project, comment);
    project.writeFile(docsPath(TVL::LinksFile),
                      linksFile({}, {},
                                "<Comment ID='" + comment.mIdentity.toUtf8() + "'><RTF>"
                                    + comment.mRtf + "</RTF></Comment>"));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QVERIFY(!TVLTextDoc::comments(item.text(), -1, -1).contains(comment));
}

void TstReadDocuments::theCommentsFileWinsOverALinksFile()
{
    const TestProject project;
    const TVLTextCommentLink comment(u"id"_s, rtfOf("New"));
    writeTextWithComment(project, comment);
    project.writeFile(docsPath(TVL::CommentsFile), commentsFileOf(comment));
    project.writeFile(docsPath(TVL::LinksFile),
                      linksFile("<LinkID Range='0,4'>5</LinkID>", {},
                                "<Comment ID='id'><RTF>Old</RTF></Comment>"));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QCOMPARE(TVLTextDoc::comments(item.text(), -1, -1), QList<TVLTextCommentLink>{comment});
    QVERIFY(TVLTextDoc::internalLinks(item.text()).isEmpty());
}

void TstReadDocuments::brokenCommentsAreReportedAndTheTextIsReadAllTheSame()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Text"));
    project.writeFile(docsPath(TVL::CommentsFile), "<Comments>");
    LoadedItem item;
    QStringList errors;
    QVERIFY(!readAll(project, &item, &errors));
    QCOMPARE(errors,
             QStringList(u"Could not load comments file: '%1'"_s.arg(
                 project.path(docsPath(TVL::CommentsFile)))));
    QCOMPARE(item.text()->toPlainText(), u"Text"_s);
    QVERIFY(!item.text()->isReadOnly());
}

void TstReadDocuments::aSynopsisAloneNeedsNoComments()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::CommentsFile), "broken");
    project.writeFile(docsPath(TVL::SynopsisText), "Synopsis");
    LoadedItem item;
    item.node()->mTextDocument = nullptr;
    item.node()->mNotesDocument = nullptr;
    QVERIFY(readAll(project, &item));
    QCOMPARE(item.synopsis()->toPlainText(), u"Synopsis"_s);
}

void TstReadDocuments::linksOfALinksFileAreSet_data()
{
    addTypeRows();
}

void TstReadDocuments::linksOfALinksFileAreSet()
{
    QFETCH(int, type);

    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once upon a time"));
    project.writeFile(docsPath(TVL::NotesText), rtfOf("Once upon a time"));
    project.writeFile(docsPath(TVL::SynopsisText), "Once upon a time");
    const QByteArray links = "<LinkID Range='5,4'>3</LinkID><LinkID Range='0,4'>77</LinkID>";
    project.writeFile(
        docsPath(TVL::LinksFile),
        linksFile(type == TVL::MainText ? links : "", type == TVL::NotesText ? links : ""));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    // The other link leads to an item that nobody knows.
    const Addresses expected = {{{5, 4}, TVLTextFormat::internalLinkAddress(uuidOf(3))}};
    for (const TVL::DocumentType each : {TVL::MainText, TVL::NotesText, TVL::SynopsisText}) {
        const bool hasLinks = each == type && type != TVL::SynopsisText;
        QCOMPARE(TVLTextDoc::internalLinks(item.document(each)), hasLinks ? expected : Addresses());
    }
}

void TstReadDocuments::linksByIdBecomeLinksByUuid_data()
{
    QTest::addColumn<int>("type");

    QTest::newRow("main text") << int(TVL::MainText);
    QTest::newRow("notes") << int(TVL::NotesText);
}

void TstReadDocuments::linksByIdBecomeLinksByUuid()
{
    QFETCH(int, type);

    const TestProject project;
    writeTextWithIdLink(project, TVL::DocumentType(type), 3);
    // The text names its links by itself, so those of the file aren't needed.
    const QByteArray links = "<LinkID Range='0,4'>4</LinkID>";
    project.writeFile(docsPath(TVL::LinksFile), linksFile(links, links));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QCOMPARE(TVLTextDoc::internalLinks(item.document(TVL::DocumentType(type))),
             (Addresses{{{5, 4}, TVLTextFormat::internalLinkAddress(uuidOf(3))}}));
}

void TstReadDocuments::linksNeedAModel()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once upon a time"));
    project.writeFile(docsPath(TVL::NotesText), rtfOf("Once upon a time"));
    const QByteArray links = "<LinkID Range='5,4'>3</LinkID>";
    project.writeFile(docsPath(TVL::LinksFile), linksFile(links, links));
    LoadedItem item;
    QVERIFY(readAll(project, &item, nullptr, nullptr));
    QVERIFY(TVLTextDoc::internalLinks(item.text()).isEmpty());
    QVERIFY(TVLTextDoc::internalLinks(item.notes()).isEmpty());
}

void TstReadDocuments::aLinksFileWithoutLinksLeavesLinksAlone()
{
    const TestProject project;
    writeTextWithIdLink(project, TVL::MainText, 3);
    project.writeFile(docsPath(TVL::LinksFile), linksFile({}, "<LinkID Range='0,1'>4</LinkID>"));
    LoadedItem item;
    QVERIFY(readAll(project, &item));
    QCOMPARE(TVLTextDoc::internalLinks(item.text()),
             (Addresses{{{5, 4}, TVLTextFormat::internalLinkAddress(3)}}));
}

void TstReadDocuments::addressesOfLinks()
{
    TVLTextInternalLinkMap links;
    links.mTargets = {{{0, 1}, 1}, {{2, 3}, 2}, {{4, 5}, 77}, {{6, 7}, 1}};
    const QMap<int, QUuid> idToUuid = {{1, uuidOf(1)}, {2, uuidOf(2)}};
    QCOMPARE(Format::toTavelinorLinkMap(links, idToUuid),
             (Addresses{{{0, 1}, TVLTextFormat::internalLinkAddress(uuidOf(1))},
                        {{2, 3}, TVLTextFormat::internalLinkAddress(uuidOf(2))},
                        {{6, 7}, TVLTextFormat::internalLinkAddress(uuidOf(1))}}));
    QVERIFY(Format::toTavelinorLinkMap({}, idToUuid).isEmpty());
    QVERIFY(Format::toTavelinorLinkMap(links, {}).isEmpty());
}

TVL_TEST(TstReadDocuments)
#include "tst_readdocuments.moc"
