#include "DocumentFixtures.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString TextPath = docsPath(TVL::MainText);
const QString CommentsPath = docsPath(TVL::CommentsFile);
const QString LinksPath = docsPath(TVL::LinksFile);

const QByteArray WholeComments = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<Comments Version=\"1.0\">\n"
                                 "    <Comment ID=\"a\" Collapsed=\"No\">"
                                 "<![CDATA[{\\rtf1 one}]]></Comment>\n"
                                 "    <Comment ID=\"b\" Footnote=\"Yes\" Collapsed=\"Yes\" "
                                 "Color=\"1.000 0.502 0.000\">"
                                 "<![CDATA[{\\rtf1 two}]]></Comment>\n"
                                 "</Comments>\n";
const QByteArray WholeLinks =
    "<?xml version=\"1.0\"?>\n"
    "<Links><TavelinorLinks><TextLinks><LinkID Range=\"0,2\">12</LinkID></TextLinks>"
    "</TavelinorLinks><CommentsAndFootnotes><Comment ID=\"a\" IsFootnote=\"No\">"
    "<RTF>{\\rtf1 one}</RTF></Comment></CommentsAndFootnotes></Links>";

QByteArray run(const QByteArray &identity, const QByteArray &text)
{
    return "{\\field{\\*\\fldinst HYPERLINK \"tavelcmt://" + identity + "\"}{\\fldrslt " + text
        + "}}";
}

/** A text with runs that two comments hang on. */
QByteArray textWithComments()
{
    return rtfOf(run("a", "first") + " and " + run("b", "second"));
}

/** One session with an item: what a load and a save of it said. */
class Session
{
public:
    explicit Session(const TestProject &project)
        : mFormat(project.path(), TVL::FormatVersion18)
        , mIsRead(mFormat.readDocuments(mItem.node(), nullptr, nullptr))
    {
    }

    [[nodiscard]] bool isRead() const { return mIsRead; }
    [[nodiscard]] LoadedItem &item() { return mItem; }
    [[nodiscard]] QStringList comments()
    {
        return TVLTextDoc::inspectorNotesToPlainText(mItem.text());
    }

    void type(const QString &text)
    {
        QTextCursor(mItem.text()).insertText(text, QTextCharFormat());
        mItem.text()->setSaved(false);
    }
    void comment(int location, int length, int number)
    {
        QVERIFY(TVLTextDoc::setComment(mItem.text(), {location, length}, numberedComment(number)));
        mItem.text()->setSaved(false);
    }
    /** Saves; what failed. */
    [[nodiscard]] QStringList save()
    {
        QStringList errors;
        if (mFormat.writeDocuments(mItem.node(), &errors) != errors.isEmpty())
            qFatal("a save fails without telling why");
        return errors;
    }

private:
    Format mFormat;
    LoadedItem mItem;
    bool mIsRead;
};

void addCutRows(const QByteArray &whole)
{
    QTest::addColumn<QByteArray>("content");
    for (qsizetype length = 0; length <= whole.size(); ++length)
        QTest::addRow("%d bytes", int(length)) << whole.first(length);
}

} // namespace

/** What a file of comments says stays there as long as its text hasn't let go of it. */
class TstCommentsKept : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCutOffCommentsFileIsLeftAlone_data();
    void aCutOffCommentsFileIsLeftAlone();
    void aCutOffLinksFileIsLeftAlone_data();
    void aCutOffLinksFileIsLeftAlone();
    void whatIsAddedToACutOffFileIsTold_data();
    void whatIsAddedToACutOffFileIsTold();
    void aFileWhoseTextIsGoneIsLeftAlone_data();
    void aFileWhoseTextIsGoneIsLeftAlone();
    void commentsWhoseTextIsGoneStayBesideNewOnes();
    void commentsThatAreRemovedAreNotKept();
};

void TstCommentsKept::aCutOffCommentsFileIsLeftAlone_data()
{
    addCutRows(WholeComments);
}

void TstCommentsKept::aCutOffCommentsFileIsLeftAlone()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    project.writeFile(TextPath, textWithComments());
    project.writeFile(CommentsPath, content);
    // All but the last line end is needed.
    const bool isWhole = content.size() >= WholeComments.size() - 1;
    Session session(project);
    QCOMPARE(session.isRead(), isWhole);
    for (int i = 0; i < 2; ++i) {
        session.type(u"More "_s);
        QCOMPARE(session.save(), QStringList());
        QCOMPARE(project.readFile(CommentsPath), isWhole ? WholeComments : content);
    }
    QVERIFY(project.readFile(TextPath).contains("More More"));
}

void TstCommentsKept::aCutOffLinksFileIsLeftAlone_data()
{
    addCutRows(WholeLinks);
}

void TstCommentsKept::aCutOffLinksFileIsLeftAlone()
{
    QFETCH(const QByteArray, content);
    const TestProject project;
    project.writeFile(TextPath, textWithComments());
    project.writeFile(LinksPath, content);
    Session session(project);
    session.type(u"More "_s);
    QCOMPARE(session.save(), QStringList());
    QCOMPARE(project.readFile(LinksPath), content);
    // A file of comments would be the one that counts from then on.
    QCOMPARE(QFileInfo::exists(project.path(CommentsPath)), session.isRead());
}

void TstCommentsKept::whatIsAddedToACutOffFileIsTold_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::newRow("comments, behind the first")
        << CommentsPath << WholeComments.first(WholeComments.indexOf("</Comment>") + 10)
        << u"Could not load comments file: '%1'"_s;
    QTest::newRow("comments, in the first")
        << CommentsPath << WholeComments.first(WholeComments.indexOf("one"))
        << u"Could not load comments file: '%1'"_s;
    QTest::newRow("links") << LinksPath << WholeLinks.first(WholeLinks.indexOf("</Comment>") + 10)
                           << u"Could not load links and notes file: '%1'"_s;
}

void TstCommentsKept::whatIsAddedToACutOffFileIsTold()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, content);
    QFETCH(const QString, message);
    const TestProject project;
    project.writeFile(TextPath, textWithComments());
    project.writeFile(file, content);
    const QStringList errors{u"Failed saving inspector notes for id: 12 \nError: '%1'"_s.arg(
        message.arg(project.path(file)))};
    for (const int location : {6, 0}) {
        Session session(project);
        session.comment(location, 3, 1);
        QCOMPARE(session.save(), errors);
        QCOMPARE(session.save(), errors);
        QCOMPARE(project.readFile(file), content);
    }
    // So it is with one that was read and changed.
    Session session(project);
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(session.item().text(), -1, -1);
    TVLTextCommentLink changed = comments.constFirst();
    changed.mRtf = "{\\rtf1 changed}";
    QVERIFY(TVLTextDoc::setComment(session.item().text(), {0, 2}, changed));
    session.item().text()->setSaved(false);
    QCOMPARE(session.save(), errors);
    QCOMPARE(project.readFile(file), content);
}

void TstCommentsKept::aFileWhoseTextIsGoneIsLeftAlone_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("comments") << CommentsPath << WholeComments;
    QTest::newRow("comments that are cut off")
        << CommentsPath << WholeComments.first(WholeComments.size() - 5);
    QTest::newRow("no comments") << CommentsPath << QByteArray("<Comments/>");
    QTest::newRow("links") << LinksPath << WholeLinks;
    QTest::newRow("styles") << docsPath(TVL::TextStyles) << QByteArray("x");
    QTest::newRow("styles of the notes") << docsPath(TVL::NotesStyles) << QByteArray("x");
}

void TstCommentsKept::aFileWhoseTextIsGoneIsLeftAlone()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, content);
    const bool isOfNothing = content == "<Comments/>";
    const TestProject project;
    project.writeFile(file, content);
    // Also when the text has a file again, whose words the comments don't hang on.
    for (int i = 0; i < 3; ++i) {
        Session session(project);
        session.type(u"New words "_s);
        QCOMPARE(session.save(), QStringList());
        session.type(u"and more "_s);
        QCOMPARE(session.save(), QStringList());
        if (!isOfNothing)
            QCOMPARE(project.readFile(file), content);
    }
    QVERIFY(project.readFile(TextPath).contains("New words"));

    // The text is found again.
    project.writeFile(TextPath, textWithComments());
    Session session(project);
    QCOMPARE(session.comments().value(0),
             file == CommentsPath && !isOfNothing ? u"one"_s : QString());
}

void TstCommentsKept::commentsWhoseTextIsGoneStayBesideNewOnes()
{
    const TestProject project;
    project.writeFile(CommentsPath, WholeComments);
    {
        Session session(project);
        session.type(u"New words"_s);
        session.comment(0, 3, 7);
        QCOMPARE(session.save(), QStringList());
    }
    {
        Session session(project);
        QCOMPARE(session.comments().size(), 1);
        TVLProjectLinksAndComments extras;
        QVERIFY(
            Format::parseLinksAndComments(project.path(), session.item().node(), &extras, nullptr));
        QCOMPARE(extras.mComments.size(), 3);
        QCOMPARE(extras.mComments.at(0), numberedComment(7));
        // Emptying the text lets go of what hangs on it, and of nothing else.
        session.item().text()->clear();
        session.item().text()->setSaved(false);
        QCOMPARE(session.save(), QStringList());
        QVERIFY(!QFileInfo::exists(project.path(TextPath)));
    }
    QCOMPARE(project.readFile(CommentsPath), WholeComments);
}

void TstCommentsKept::commentsThatAreRemovedAreNotKept()
{
    const TestProject project;
    project.writeFile(TextPath, textWithComments());
    project.writeFile(CommentsPath, WholeComments);
    Session session(project);
    QTextCursor cursor(session.item().text());
    cursor.setPosition(5, QTextCursor::KeepAnchor);
    TVLTextDoc::removeComment(cursor);
    session.item().text()->setSaved(false);
    QCOMPARE(session.save(), QStringList());
    const QByteArray left = project.readFile(CommentsPath);
    QVERIFY(!left.contains("one"));
    QVERIFY(left.contains("two"));
    cursor.select(QTextCursor::Document);
    TVLTextDoc::removeComment(cursor);
    session.item().text()->setSaved(false);
    QCOMPARE(session.save(), QStringList());
    QVERIFY(!QFileInfo::exists(project.path(CommentsPath)));
}

TVL_TEST(TstCommentsKept)
#include "tst_commentskept.moc"
