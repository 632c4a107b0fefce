#include "DocumentFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Extras = TVLProjectLinksAndComments;

const QString CommentsFile = docsPath(TVL::CommentsFile);
const QString LinksFile = docsPath(TVL::LinksFile);

bool parse(const TestProject &project, Extras *result, QStringList *errors = nullptr)
{
    LoadedItem item;
    return Format::parseLinksAndComments(project.path(), item.node(), result, errors);
}

bool isEmpty(const Extras &extras)
{
    return extras.mTextLinks.mTargets.isEmpty() && extras.mNotesLinks.mTargets.isEmpty()
        && extras.mLinkFileComments.isEmpty() && extras.mComments.isEmpty();
}

QByteArray entityBomb(const QByteArray &tag)
{
    QByteArray entities = "<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray previous = "&e" + QByteArray::number(i - 1) + ';';
        entities += "<!ENTITY e" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
    }
    return "<!DOCTYPE x [" + entities + "]><" + tag + ">&e29;</" + tag + ">";
}

} // namespace

class TstCommentsFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Reading
    void aResultIsNeeded();
    void noFilesAreNoError();
    void commentsAreReadFromTheirFile();
    void linksAndCommentsAreReadFromALinksFile();
    void theCommentsFileWins();
    void anEmptyCommentsElementWinsAsWell();
    void aProjectCanBeNamedByItsBinder();
    void aCommentsFileThatCannotBeOpenedIsReported();
    void aBrokenCommentsFileIsReported_data();
    void aBrokenCommentsFileIsReported();
    void commentsBeforeAnErrorAreKept();
    void aLinksFileThatCannotBeOpenedFailsWithoutAMessage();
    void aBrokenLinksFileIsReported_data();
    void aBrokenLinksFileIsReported();
    void aLinksFileOfSomethingElseIsNoError_data();
    void aLinksFileOfSomethingElseIsNoError();
    void messagesNeedNotBeAskedFor();

    // Writing
    void theFormOfACommentsFile();
    void aShorterFileLeavesNothingOfALongerOne();
    void aFileThatCannotBeOpenedIsReportedWithItsPath_data();
    void aFileThatCannotBeOpenedIsReportedWithItsPath();
    void aFileThatIsALinkIsNotWritten_data();
    void aFileThatIsALinkIsNotWritten();
    void noDocumentHasNoComments();
    void theCommentsOfADocumentAreWritten();
    void aDocumentWithoutCommentsHasNoFile();
    void aFileThatCannotBeRemovedIsAFailure();
};

void TstCommentsFile::aResultIsNeeded()
{
    const TestProject project;
    QStringList errors;
    QVERIFY(!parse(project, nullptr, &errors));
    QVERIFY(errors.isEmpty());
}

void TstCommentsFile::noFilesAreNoError()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::CommentsFile, 13), "another item's");
    project.writeFile(docsPath(TVL::LinksFile, 112), "another item's");
    Extras extras;
    QStringList errors;
    QVERIFY(parse(project, &extras, &errors));
    QVERIFY(isEmpty(extras));
    QVERIFY(errors.isEmpty());
}

void TstCommentsFile::commentsAreReadFromTheirFile()
{
    const TestProject project;
    project.writeFile(CommentsFile,
                      "<?xml version='1.0'?><Comments Version='1.0'>"
                      "<Comment ID='a' Collapsed='Yes' Color='1.000 0.000 0.000' Footnote='Yes' "
                      "Number='2'><![CDATA[{\\rtf1 a}]]></Comment><Comment ID='b'/></Comments>");
    TVLTextCommentLink comment(u"a"_s, "{\\rtf1 a}");
    comment.mIsCollapsed = comment.mIsFootnote = true;
    comment.mColor = QColor(255, 0, 0);
    comment.mNumber = 2;
    Extras extras;
    QVERIFY(parse(project, &extras));
    QCOMPARE(extras.mComments,
             (QList<TVLTextCommentLink>{comment, TVLTextCommentLink(u"b"_s, {})}));
    QVERIFY(extras.mLinkFileComments.isEmpty());
}

void TstCommentsFile::linksAndCommentsAreReadFromALinksFile()
{
    const TestProject project;
    project.writeFile(LinksFile,
                      "<Links><TavelinorLinks>"
                      "<TextLinks><LinkID Range='1,2'>3</LinkID><LinkID Range='7'>8</LinkID>"
                      "</TextLinks><NotesLinks><LinkID Range='4,5'>6</LinkID></NotesLinks>"
                      "</TavelinorLinks><CommentsAndFootnotes><Comment ID='a'><RTF>rtf</RTF>"
                      "</Comment></CommentsAndFootnotes></Links>");
    Extras extras;
    QStringList errors;
    QVERIFY(parse(project, &extras, &errors));
    QCOMPARE(extras.mTextLinks.mTargets, (QMap<TVLTextRange, int>{{{1, 2}, 3}}));
    QCOMPARE(extras.mNotesLinks.mTargets, (QMap<TVLTextRange, int>{{{4, 5}, 6}}));
    QCOMPARE(extras.mLinkFileComments,
             (QList<TVLTextCommentLink>{TVLTextCommentLink(u"a"_s, "rtf")}));
    QVERIFY(extras.mComments.isEmpty());
    QVERIFY(errors.isEmpty());
}

void TstCommentsFile::theCommentsFileWins()
{
    const TestProject project;
    project.writeFile(CommentsFile, "<Comments><Comment ID='new'/></Comments>");
    project.writeFile(LinksFile,
                      "<Links><TavelinorLinks><TextLinks><LinkID Range='1,2'>3</LinkID></TextLinks>"
                      "</TavelinorLinks><CommentsAndFootnotes><Comment ID='old'/>"
                      "</CommentsAndFootnotes></Links>");
    Extras extras;
    QVERIFY(parse(project, &extras));
    QCOMPARE(extras.mComments.size(), 1);
    QVERIFY(extras.mLinkFileComments.isEmpty());
    QVERIFY(extras.mTextLinks.mTargets.isEmpty());
}

void TstCommentsFile::anEmptyCommentsElementWinsAsWell()
{
    const TestProject project;
    project.writeFile(CommentsFile, "<Comments/>");
    project.writeFile(LinksFile, "broken");
    Extras extras;
    QVERIFY(parse(project, &extras));
    QVERIFY(isEmpty(extras));
}

void TstCommentsFile::aProjectCanBeNamedByItsBinder()
{
    const TestProject project;
    project.writeFile(CommentsFile, "<Comments><Comment ID='a'/></Comments>");
    LoadedItem item;
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        Extras extras;
        QVERIFY(Format::parseLinksAndComments(path, item.node(), &extras, nullptr));
        QCOMPARE(extras.mComments.size(), 1);
    }
}

void TstCommentsFile::aCommentsFileThatCannotBeOpenedIsReported()
{
    const TestProject project;
    const QString message =
        u"Could not open comments file for reading: '%1'"_s.arg(project.path(CommentsFile));
    project.writeFile(LinksFile, "<Links/>");
    project.writeFile(CommentsFile + u"/file"_s, "in a folder");
    Extras extras;
    QStringList errors = {u"before"_s};
    QVERIFY(!parse(project, &extras, &errors));
    QCOMPARE(errors, (QStringList{u"before"_s, message}));

    QVERIFY(QDir(project.path(CommentsFile)).removeRecursively());
    const UnopenableFile unopenable;
    unopenable.linkTo(project, CommentsFile);
    errors.clear();
    QVERIFY(!parse(project, &extras, &errors));
    QCOMPARE(errors, QStringList(message));
    QVERIFY(isEmpty(extras));
}

void TstCommentsFile::aBrokenCommentsFileIsReported_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("declaration alone") << QByteArray("<?xml version='1.0'?>");
    QTest::newRow("cut off") << QByteArray("<Comments><Comment ID='a'><![CDATA[{\\rtf1 ");
    QTest::newRow("another root") << QByteArray("<Links/>");
    QTest::newRow("another root around it") << QByteArray("<x><Comments/></x>");
    QTest::newRow("another case") << QByteArray("<comments/>");
    QTest::newRow("RTF") << rtfOf("x");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("entity bomb") << entityBomb("Comments");
    QTest::newRow("deep and cut off") << "<Comments>" + QByteArray("<x>").repeated(100'000);
    QTest::newRow("control character") << QByteArray("<Comments>\x01</Comments>");
}

void TstCommentsFile::aBrokenCommentsFileIsReported()
{
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(CommentsFile, content);
    project.writeFile(LinksFile, "<Links/>");
    Extras extras;
    QStringList errors;
    QVERIFY(!parse(project, &extras, &errors));
    QCOMPARE(errors,
             QStringList(u"Could not load comments file: '%1'"_s.arg(project.path(CommentsFile))));
    QVERIFY(isEmpty(extras));
    QCOMPARE(project.readFile(CommentsFile), content);
}

void TstCommentsFile::commentsBeforeAnErrorAreKept()
{
    const TestProject project;
    project.writeFile(CommentsFile, "<Comments><Comment ID='a'>whole</Comment><Comment ID='b'>cu");
    Extras extras;
    QVERIFY(!parse(project, &extras));
    QCOMPARE(extras.mComments, (QList<TVLTextCommentLink>{TVLTextCommentLink(u"a"_s, "whole")}));
}

void TstCommentsFile::aLinksFileThatCannotBeOpenedFailsWithoutAMessage()
{
    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, LinksFile);
    Extras extras;
    QStringList errors;
    QVERIFY(!parse(project, &extras, &errors));
    QVERIFY(errors.isEmpty());
}

void TstCommentsFile::aBrokenLinksFileIsReported_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("cut off") << QByteArray("<Links><TavelinorLinks>");
    QTest::newRow("tags crossed") << QByteArray("<Links><TavelinorLinks></Links></TavelinorLinks>");
    QTest::newRow("entity bomb") << entityBomb("Links");
}

void TstCommentsFile::aBrokenLinksFileIsReported()
{
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(LinksFile, content);
    Extras extras;
    QStringList errors;
    QVERIFY(!parse(project, &extras, &errors));
    QCOMPARE(
        errors,
        QStringList(u"Could not load links and notes file: '%1'"_s.arg(project.path(LinksFile))));
}

void TstCommentsFile::aLinksFileOfSomethingElseIsNoError_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("another root") << QByteArray("<Comments><Comment ID='a'/></Comments>");
    QTest::newRow("no XML") << QByteArray("no XML");
}

void TstCommentsFile::aLinksFileOfSomethingElseIsNoError()
{
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(LinksFile, content);
    Extras extras;
    QStringList errors;
    QVERIFY(parse(project, &extras, &errors));
    QVERIFY(isEmpty(extras));
    QVERIFY(errors.isEmpty());
}

void TstCommentsFile::messagesNeedNotBeAskedFor()
{
    const TestProject project;
    Extras extras;
    project.writeFile(LinksFile, "<Links>");
    QVERIFY(!parse(project, &extras));
    project.writeFile(CommentsFile, "broken");
    QVERIFY(!parse(project, &extras));
    QVERIFY(QFile::remove(project.path(CommentsFile)));
    project.writeFile(CommentsFile + u"/file"_s, {});
    QVERIFY(!parse(project, &extras));
    LoadedItem item;
    TVLTextDoc::setComment(item.text(), {0, 0}, numberedComment(1));
    QVERIFY(!Format::writeCommentsFile(project.path(CommentsFile), {numberedComment(1)}, nullptr));
    QVERIFY(!Format::writeComments(project.path(), item.node(), item.text(), nullptr));
}

void TstCommentsFile::theFormOfACommentsFile()
{
    const TestProject project;
    project.writeFile(u"other"_s, {});
    const QString filePath = project.path(u"file"_s);
    const QList<TVLTextCommentLink> comments = {TVLTextCommentLink(u"a"_s, "{\\rtf1 ]]>}"),
                                                TVLTextCommentLink(u"b"_s, "{\\rtf1 \xe4}")};
    QString error = u"untouched"_s;
    QVERIFY(Format::writeCommentsFile(filePath, comments, &error));
    QCOMPARE(error, u"untouched"_s);
    QCOMPARE(project.readFile(u"file"_s),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<Comments Version=\"1.0\">\n"
                        "    <Comment ID=\"a\" Collapsed=\"No\">"
                        "<![CDATA[{\\rtf1 ]]]]><![CDATA[>}]]></Comment>\n"
                        "    <Comment ID=\"b\" Collapsed=\"No\">"
                        "<![CDATA[{\\rtf1 \xc3\xa4}]]></Comment>\n"
                        "</Comments>\n"));
}

void TstCommentsFile::aShorterFileLeavesNothingOfALongerOne()
{
    const TestProject project;
    project.writeFile(u"file"_s, {});
    project.writeFile(u"other"_s, {});
    const QString filePath = project.path(u"file"_s);
    const QList<TVLTextCommentLink> shorter = {numberedComment(1)};
    QVERIFY(Format::writeCommentsFile(project.path(u"other"_s), shorter, nullptr));
    QVERIFY(Format::writeCommentsFile(
        filePath, {TVLTextCommentLink(u"long"_s, QByteArray(100'000, 'x'))}, nullptr));
    QVERIFY(Format::writeCommentsFile(filePath, shorter, nullptr));
    QCOMPARE(project.readFile(u"file"_s), project.readFile(u"other"_s));
}

void TstCommentsFile::aFileThatCannotBeOpenedIsReportedWithItsPath_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("error");

    QTest::newRow("no folder") << u"nowhere/file"_s << ENOENT;
    QTest::newRow("folder in the file's place") << u"folder"_s << EISDIR;
    QTest::newRow("a link") << u"socket"_s << 0;
}

void TstCommentsFile::aFileThatCannotBeOpenedIsReportedWithItsPath()
{
    QFETCH(QString, fileName);
    QFETCH(int, error);

    const TestProject project(u"Novel %1"_s);
    project.writeFile(u"folder/file"_s, "in a folder");
    const UnopenableFile unopenable;
    unopenable.linkTo(project, u"socket"_s);
    QString text;
    QVERIFY(!Format::writeCommentsFile(project.path(fileName), {numberedComment(1)}, &text));
    // A folder is told by words of the framework, all else by those of the system.
    if (error == EISDIR)
        QVERIFY2(text.endsWith(u" - ("_s + project.path(fileName) + u')'), qPrintable(text));
    else if (error == 0)
        QVERIFY2(text.startsWith(unwritableText(project, fileName)), qPrintable(text));
    else
        QCOMPARE(text, qt_error_string(error) + u" - ("_s + project.path(fileName) + u')');
}

void TstCommentsFile::aFileThatIsALinkIsNotWritten_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("small") << 10;
    QTest::newRow("large") << 1'000'000;
}

void TstCommentsFile::aFileThatIsALinkIsNotWritten()
{
    QFETCH(int, size);

    const TestProject project;
    makeUnwritable(project, u"file"_s);
    const QString filePath = project.path(u"file"_s);
    QString error;
    QVERIFY(!Format::writeCommentsFile(
        filePath, {TVLTextCommentLink(u"id"_s, QByteArray(size, 'x'))}, &error));
    QCOMPARE(error, u"%1 - (%2)"_s.arg(unwritableText(project, u"file"_s), filePath));
}

void TstCommentsFile::noDocumentHasNoComments()
{
    const TestProject project;
    LoadedItem item;
    QString error;
    QVERIFY(!Format::writeComments(project.path(), item.node(), nullptr, &error));
    QVERIFY(error.isEmpty());
}

void TstCommentsFile::theCommentsOfADocumentAreWritten()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), {}); // Makes the folder.
    LoadedItem item;
    item.text()->setPlainText(u"Once upon a time"_s);
    const QList<TVLTextCommentLink> comments = {numberedComment(2), numberedComment(1)};
    TVLTextDoc::setComment(item.text(), {0, 4}, comments.at(0));
    TVLTextDoc::setComment(item.text(), {10, 1}, comments.at(1));
    QVERIFY(Format::writeComments(project.path(), item.node(), item.text(), nullptr));
    Extras extras;
    QVERIFY(parse(project, &extras));
    QCOMPARE(extras.mComments, comments);
}

void TstCommentsFile::aDocumentWithoutCommentsHasNoFile()
{
    const TestProject project;
    project.writeFile(CommentsFile, "<Comments/>");
    LoadedItem item;
    item.text()->setPlainText(u"Once upon a time"_s);
    QVERIFY(Format::writeComments(project.path(), item.node(), item.text(), nullptr));
    QVERIFY(!QFileInfo::exists(project.path(CommentsFile)));
    QVERIFY(Format::writeComments(project.path(), item.node(), item.text(), nullptr));
}

void TstCommentsFile::aFileThatCannotBeRemovedIsAFailure()
{
    const TestProject project;
    project.writeFile(CommentsFile + u"/file"_s, "in a folder");
    LoadedItem item;
    QString error;
    QVERIFY(!Format::writeComments(project.path(), item.node(), item.text(), &error));
    QVERIFY(!error.isEmpty());
}

TVL_TEST(TstCommentsFile)
#include "tst_commentsfile.moc"
