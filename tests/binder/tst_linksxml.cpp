#include "BinderSamples.h"
#include "TVLBinderReader.h"

#include "TestMain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** What a links file says. */
struct LinksFile
{
    TVLTextInternalLinkMap text;
    TVLTextInternalLinkMap notes;
    QList<TVLTextCommentLink> comments;

    bool isEmpty() const
    {
        return text.mTargets.isEmpty() && notes.mTargets.isEmpty() && comments.isEmpty();
    }
};

bool readLinks(const QByteArray &content, LinksFile *file)
{
    TVLBinderReader reader;
    reader.addData("<?xml version='1.0'?><Links>" + content + "</Links>");
    return reader.readLinks(&file->text, &file->notes, &file->comments);
}

QMap<TVLTextRange, int> readTextLinks(const QByteArray &content)
{
    LinksFile file;
    if (!readLinks("<TavelinorLinks><TextLinks>" + content + "</TextLinks></TavelinorLinks>",
                   &file))
        return {{{-1, -1}, -1}};
    return file.text.mTargets;
}

} // namespace

class TstLinksXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksOfTextAndNotesAreKeptApart();
    void aRangeIsTwoDecimals_data();
    void aRangeIsTwoDecimals();
    void aTargetIsAnId_data();
    void aTargetIsAnId();
    void ofTwoLinksOnOneRangeTheLastCounts();
    void linksAreAddedToTheMaps();

    void aCommentWithEverything();
    void aCommentWithNothing();
    void aCommentsFormOfTheCommentsFileIsNotItsFormHere();
    void commentsAreAppended();

    void unknownElementsAreSkippedAtEveryLevel();
    void anEmptyFileOfLinksHasNone();
    void aFileThatIsCutOffFailsAndKeepsWhatCameBefore();
    void anotherElementIsAnError();
};

void TstLinksXml::linksOfTextAndNotesAreKeptApart()
{
    LinksFile file;
    QVERIFY(readLinks("<TavelinorLinks>"
                      "<TextLinks><LinkID Range='0,5'>12</LinkID><LinkID Range='7,1'>3</LinkID>"
                      "</TextLinks>"
                      "<NotesLinks><LinkID Range='2,2'>4</LinkID></NotesLinks>"
                      "</TavelinorLinks>",
                      &file));
    QCOMPARE(file.text.mTargets, (QMap<TVLTextRange, int>{{{0, 5}, 12}, {{7, 1}, 3}}));
    QCOMPARE(file.notes.mTargets, (QMap<TVLTextRange, int>{{{2, 2}, 4}}));
    QVERIFY(file.comments.isEmpty());
}

void TstLinksXml::aRangeIsTwoDecimals_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<bool>("isRange");

    QTest::newRow("range") << QByteArray("Range='3,4'") << true;
    QTest::newRow("no comma") << QByteArray("Range='3'") << false;
    QTest::newRow("another separator") << QByteArray("Range='3;4'") << false;
    QTest::newRow("no location") << QByteArray("Range=',4'") << false;
    QTest::newRow("no length") << QByteArray("Range='3,'") << false;
    QTest::newRow("comma alone") << QByteArray("Range=','") << false;
    QTest::newRow("words") << QByteArray("Range='three,four'") << false;
    QTest::newRow("hexadecimal") << QByteArray("Range='0x3,0x4'") << false;
    QTest::newRow("three numbers") << QByteArray("Range='3,4,5'") << false;
    QTest::newRow("location below 0") << QByteArray("Range='-3,4'") << false;
    QTest::newRow("length below 0") << QByteArray("Range='3,-4'") << false;
    QTest::newRow("too high") << QByteArray("Range='3,2147483648'") << false;
    QTest::newRow("empty") << QByteArray("Range=''") << false;
    QTest::newRow("missing") << QByteArray("") << false;
}

void TstLinksXml::aRangeIsTwoDecimals()
{
    QFETCH(QByteArray, attribute);
    QFETCH(bool, isRange);

    // A link that makes no sense is left out, and the one behind it isn't.
    QMap<TVLTextRange, int> expected = {{{9, 9}, 9}};
    if (isRange)
        expected.insert({3, 4}, 5);
    QCOMPARE(readTextLinks("<LinkID " + attribute + ">5</LinkID><LinkID Range='9,9'>9</LinkID>"),
             expected);
}

void TstLinksXml::aTargetIsAnId_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("target");

    QTest::newRow("id") << QByteArray("5") << 5;
    QTest::newRow("0") << QByteArray("0") << 0;
    QTest::newRow("CDATA") << QByteArray("<![CDATA[5]]>") << 5;
    QTest::newRow("below 0") << QByteArray("-1") << -1;
    QTest::newRow("word") << QByteArray("five") << -1;
    QTest::newRow("too high") << QByteArray("2147483648") << -1;
    QTest::newRow("empty") << QByteArray("") << -1;
}

void TstLinksXml::aTargetIsAnId()
{
    QFETCH(QByteArray, text);
    QFETCH(int, target);

    QMap<TVLTextRange, int> expected;
    if (target >= 0)
        expected.insert({3, 4}, target);
    QCOMPARE(readTextLinks("<LinkID Range='3,4'>" + text + "</LinkID>"), expected);
}

void TstLinksXml::ofTwoLinksOnOneRangeTheLastCounts()
{
    QCOMPARE(readTextLinks("<LinkID Range='3,4'>5</LinkID><LinkID Range='3,4'>6</LinkID>"),
             (QMap<TVLTextRange, int>{{{3, 4}, 6}}));
}

void TstLinksXml::linksAreAddedToTheMaps()
{
    LinksFile file;
    file.text.mTargets = {{{0, 1}, 1}};
    QVERIFY(readLinks("<TavelinorLinks><TextLinks><LinkID Range='3,4'>5</LinkID></TextLinks>"
                      "</TavelinorLinks>",
                      &file));
    QCOMPARE(file.text.mTargets, (QMap<TVLTextRange, int>{{{0, 1}, 1}, {{3, 4}, 5}}));
}

void TstLinksXml::aCommentWithEverything()
{
    LinksFile file;
    QVERIFY(readLinks("<CommentsAndFootnotes>"
                      "<Comment ID='id' IsFootnote='Yes' FootnoteNumber='3' Collapsed='Yes'>"
                      "<Range>3,4</Range><Color>1.000 0.000 0.502</Color>"
                      "<RTF><![CDATA[{\\rtf1 \xc3\xa4]]]]><![CDATA[>}]]></RTF></Comment>"
                      "</CommentsAndFootnotes>",
                      &file));
    TVLTextCommentLink comment(u"id"_s, "{\\rtf1 \xe4]]>}");
    comment.mIsFootnote = comment.mIsCollapsed = true;
    comment.mNumber = 3;
    comment.mColor = QColor(255, 0, 128);
    QCOMPARE(file.comments, QList<TVLTextCommentLink>{comment});
    QVERIFY(file.text.mTargets.isEmpty());
    QVERIFY(file.notes.mTargets.isEmpty());
}

void TstLinksXml::aCommentWithNothing()
{
    LinksFile file;
    QVERIFY(readLinks("<CommentsAndFootnotes><Comment/></CommentsAndFootnotes>", &file));
    QCOMPARE(file.comments, QList<TVLTextCommentLink>{TVLTextCommentLink(QString(), {})});
}

void TstLinksXml::aCommentsFormOfTheCommentsFileIsNotItsFormHere()
{
    LinksFile file;
    QVERIFY(readLinks("<CommentsAndFootnotes>"
                      "<Comment ID='id' Footnote='Yes' Number='3' Color='1.0 1.0 1.0'>rtf"
                      "</Comment></CommentsAndFootnotes>",
                      &file));
    QCOMPARE(file.comments, QList<TVLTextCommentLink>{TVLTextCommentLink(u"id"_s, {})});
}

void TstLinksXml::commentsAreAppended()
{
    LinksFile file;
    file.comments = {TVLTextCommentLink(u"first"_s, {})};
    QVERIFY(readLinks("<CommentsAndFootnotes><Comment ID='second'/><Comment ID='third'/>"
                      "</CommentsAndFootnotes>",
                      &file));
    QCOMPARE(file.comments.size(), 3);
    QCOMPARE(file.comments.at(0).mIdentity, u"first"_s);
    QCOMPARE(file.comments.at(2).mIdentity, u"third"_s);
}

void TstLinksXml::unknownElementsAreSkippedAtEveryLevel()
{
    const QByteArray unknown =
        "<Unknown><LinkID Range='1,1'>1</LinkID><Comment ID='no'/></Unknown>";
    LinksFile file;
    QVERIFY(readLinks(unknown + "<TavelinorLinks>" + unknown + "<TextLinks>" + unknown
                          + "<LinkID Range='3,4'>5" + unknown + "</LinkID></TextLinks>" + unknown
                          + "</TavelinorLinks>" + unknown + "<CommentsAndFootnotes>" + unknown
                          + "<Comment ID='yes'>" + unknown + "<RTF>a" + unknown + "b</RTF>"
                          + unknown + "</Comment></CommentsAndFootnotes>" + unknown,
                      &file));
    QCOMPARE(file.text.mTargets, (QMap<TVLTextRange, int>{{{3, 4}, 5}}));
    QCOMPARE(file.comments, (QList<TVLTextCommentLink>{TVLTextCommentLink(u"yes"_s, "ab")}));
}

void TstLinksXml::anEmptyFileOfLinksHasNone()
{
    LinksFile file;
    QVERIFY(readLinks({}, &file));
    QVERIFY(file.isEmpty());
    QVERIFY(readLinks("<TavelinorLinks/><CommentsAndFootnotes/>", &file));
    QVERIFY(file.isEmpty());
}

void TstLinksXml::aFileThatIsCutOffFailsAndKeepsWhatCameBefore()
{
    const QByteArray whole =
        "<Links><TavelinorLinks><TextLinks><LinkID Range='3,4'>5</LinkID></TextLinks>"
        "<NotesLinks><LinkID Range='6,7'>8</LinkID></NotesLinks></TavelinorLinks>"
        "<CommentsAndFootnotes><Comment ID='id'><RTF>rtf</RTF></Comment></CommentsAndFootnotes>"
        "</Links>";
    LinksFile expected;
    TVLBinderReader wholeReader;
    wholeReader.addData(whole);
    QVERIFY(wholeReader.readLinks(&expected.text, &expected.notes, &expected.comments));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const DebugLog log;
        LinksFile file;
        TVLBinderReader reader;
        reader.addData(whole.first(length));
        QVERIFY(!reader.readLinks(&file.text, &file.notes, &file.comments));
        // A comment that is cut off counts as none, lest half of it take the place of a whole one.
        QVERIFY(file.comments.isEmpty() || file.comments == expected.comments);
    }
}

void TstLinksXml::anotherElementIsAnError()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<Comments><TavelinorLinks/></Comments>");
    LinksFile file;
    QVERIFY(!reader.readLinks(&file.text, &file.notes, &file.comments));
    QCOMPARE(reader.errorString(), u"Unexpected tag Comments on line 1.  Expected tag Links"_s);
}

TVL_TEST(TstLinksXml)
#include "tst_linksxml.moc"
