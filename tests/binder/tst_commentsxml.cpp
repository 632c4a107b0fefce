#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include "TestMain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Comments = QList<TVLTextCommentLink>;

QByteArray writtenComments(const Comments &comments, bool standalone = false)
{
    return written([&](TVLBinderWriter *writer) { writer->writeComments(comments, standalone); });
}

/** Reads `Comments` with the given content. */
bool readComments(const QByteArray &content, Comments *comments)
{
    TVLBinderReader reader;
    reader.addData("<Comments>" + content + "</Comments>");
    return reader.readComments(comments);
}

/** The only comment of the given content; one that none could be for anything else. */
TVLTextCommentLink readComment(const QByteArray &content)
{
    Comments comments;
    return readComments(content, &comments) && comments.size() == 1
        ? comments.constFirst()
        : TVLTextCommentLink(u"none read"_s, {});
}

/** A comment with everything, written and read. */
TVLTextCommentLink reread(const TVLTextCommentLink &comment)
{
    TVLBinderReader reader;
    reader.addData(writtenComments({comment}));
    Comments comments;
    if (!reader.readComments(&comments) || comments.size() != 1)
        return TVLTextCommentLink(u"unreadable: "_s + reader.errorString(), {});
    return comments.constFirst();
}

TVLTextCommentLink makeComment(const QByteArray &rtf = "{\\rtf1 Text}")
{
    return TVLTextCommentLink(u"id"_s, rtf);
}

} // namespace

class TstCommentsXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyListWritesNothing_data();
    void anEmptyListWritesNothing();
    void onlyAStandaloneElementHasAVersion();
    void theAttributesOfAComment_data();
    void theAttributesOfAComment();
    void allCommentsAreWrittenInTheirOrder();
    void anIndentedCommentHasTheVerySameText();

    void aCommentSurvives_data();
    void aCommentSurvives();
    void aCommentWithoutColourReadsBackInvalid();
    void theRtfSurvives_data();
    void theRtfSurvives();
    void everyByteButControlCharactersSurvives();
    void controlCharactersInRtfAreDropped();
    void lineBreaksInRtfBecomeLineFeeds();

    void commentsAreAppended();
    void unknownElementsAreSkipped();
    void missingAttributesHaveDefaults();
    void flagsAreReadCaseSensitively_data();
    void flagsAreReadCaseSensitively();
    void aNumberThatMakesNoSenseIsNone_data();
    void aNumberThatMakesNoSenseIsNone();
    void textThatIsNoCdataIsReadAsWell();
    void charactersThatAreNoBytesBecomeRtf();
    void readingBeginsAtTheFilesFirstElement();
    void anotherElementIsAnError();
};

void TstCommentsXml::anEmptyListWritesNothing_data()
{
    QTest::addColumn<bool>("standalone");

    QTest::newRow("standalone") << true;
    QTest::newRow("part of an index") << false;
}

void TstCommentsXml::anEmptyListWritesNothing()
{
    QFETCH(bool, standalone);

    QCOMPARE(writtenComments({}, standalone), QByteArray());
}

void TstCommentsXml::onlyAStandaloneElementHasAVersion()
{
    const QByteArray comment = "<Comment ID=\"id\" Collapsed=\"No\"><![CDATA[{\\rtf1 Text}]]>"
                               "</Comment>";
    QCOMPARE(writtenComments({makeComment()}, true),
             "<Comments Version=\"1.0\">" + comment + "</Comments>");
    QCOMPARE(writtenComments({makeComment()}, false), "<Comments>" + comment + "</Comments>");
}

void TstCommentsXml::theAttributesOfAComment_data()
{
    QTest::addColumn<TVLTextCommentLink>("comment");
    QTest::addColumn<QByteArray>("attributes");

    QTest::newRow("plain") << makeComment() << QByteArray("ID=\"id\" Collapsed=\"No\"");
    TVLTextCommentLink comment = makeComment();
    comment.mIsFootnote = true;
    QTest::newRow("footnote") << comment
                              << QByteArray("ID=\"id\" Footnote=\"Yes\" Collapsed=\"No\"");
    comment = makeComment();
    comment.mIsCollapsed = true;
    QTest::newRow("collapsed") << comment << QByteArray("ID=\"id\" Collapsed=\"Yes\"");
    comment = makeComment();
    comment.mColor = QColor(255, 0, 128);
    QTest::newRow("colour") << comment
                            << QByteArray("ID=\"id\" Collapsed=\"No\" Color=\"1.000 0.000 0.502\"");
    comment = makeComment();
    comment.mNumber = 1;
    QTest::newRow("number") << comment << QByteArray("ID=\"id\" Collapsed=\"No\" Number=\"1\"");
    comment.mNumber = 0;
    QTest::newRow("number 0") << comment << QByteArray("ID=\"id\" Collapsed=\"No\"");
    comment.mNumber = -3;
    QTest::newRow("number below 0") << comment << QByteArray("ID=\"id\" Collapsed=\"No\"");
    comment = makeComment();
    comment.mIdentity.clear();
    QTest::newRow("no identity") << comment << QByteArray("ID=\"\" Collapsed=\"No\"");
    comment = makeComment();
    comment.mIsFootnote = comment.mIsCollapsed = true;
    comment.mColor = QColor(Qt::black);
    comment.mNumber = 12;
    QTest::newRow("everything")
        << comment
        << QByteArray("ID=\"id\" Footnote=\"Yes\" Collapsed=\"Yes\" Color=\"0.000 0.000 0.000\" "
                      "Number=\"12\"");
}

void TstCommentsXml::theAttributesOfAComment()
{
    QFETCH(TVLTextCommentLink, comment);
    QFETCH(QByteArray, attributes);

    QCOMPARE(writtenComments({comment}),
             "<Comments><Comment " + attributes
                 + "><![CDATA[{\\rtf1 Text}]]></Comment></Comments>");
}

void TstCommentsXml::allCommentsAreWrittenInTheirOrder()
{
    Comments comments;
    for (const QString &id : {u"b"_s, u"a"_s, u"c"_s, u"a"_s})
        comments.append(TVLTextCommentLink(id, id.toLatin1()));
    TVLBinderReader reader;
    reader.addData(writtenComments(comments));
    Comments readBack;
    QVERIFY(reader.readComments(&readBack));
    QCOMPARE(readBack, comments);
}

void TstCommentsXml::anIndentedCommentHasTheVerySameText()
{
    const TVLTextCommentLink comment = makeComment("\n  {\\rtf1\n  Text}  \n");
    TVLBinderReader reader;
    reader.addData(written([&](TVLBinderWriter *writer) {
        writer->setAutoFormatting(true);
        writer->writeStartDocument();
        writer->writeComments({comment}, true);
        writer->writeEndDocument();
    }));
    Comments comments;
    QVERIFY(reader.readComments(&comments));
    QCOMPARE(comments, Comments{comment});
}

void TstCommentsXml::aCommentSurvives_data()
{
    QTest::addColumn<TVLTextCommentLink>("comment");

    QTest::newRow("plain") << makeComment();
    TVLTextCommentLink comment = makeComment();
    comment.mIsFootnote = true;
    comment.mNumber = 2147483647;
    QTest::newRow("footnote with the highest number") << comment;
    comment = makeComment();
    comment.mIsCollapsed = true;
    QTest::newRow("collapsed") << comment;
    comment = makeComment();
    comment.mColor = QColor(1, 2, 3);
    QTest::newRow("colour") << comment;
    comment = makeComment();
    comment.mIdentity = u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s;
    QTest::newRow("uuid") << comment;
    comment.mIdentity = u"<&\"'> \u00e4\u6f22\U0001d11e\n\t"_s;
    QTest::newRow("identity of any characters") << comment;
}

void TstCommentsXml::aCommentSurvives()
{
    QFETCH(TVLTextCommentLink, comment);

    QCOMPARE(reread(comment), comment);
}

void TstCommentsXml::aCommentWithoutColourReadsBackInvalid()
{
    QVERIFY(!writtenComments({makeComment()}).contains("Color"));
    QVERIFY(!reread(makeComment()).mColor.isValid());
}

void TstCommentsXml::theRtfSurvives_data()
{
    QTest::addColumn<QByteArray>("rtf");

    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("blanks alone") << QByteArray("  \n\t ");
    QTest::newRow("markup") << QByteArray("<b>&amp;</b> \"'&#13;");
    QTest::newRow("end of CDATA") << QByteArray("{\\rtf1 a]]>b}");
    QTest::newRow("end of CDATA alone") << QByteArray("]]>");
    QTest::newRow("ends of CDATA in a row") << QByteArray("]]>]]>]]]>]]>>");
    QTest::newRow("half an end of CDATA") << QByteArray("]]");
    QTest::newRow("start of CDATA") << QByteArray("<![CDATA[x]]>");
    QTest::newRow("comment and instruction") << QByteArray("<!-- x --><?x ?>");
    QTest::newRow("bytes of a code page") << QByteArray("{\\rtf1\\ansi \xe4\x93\x80\xff\xa0}");
    QTest::newRow("bytes of UTF-8") << QByteArray("{\\rtf1 \xe6\xbc\xa2}");
    QTest::newRow("escapes") << QByteArray("{\\rtf1 \\'e4\\u28450?}");
    QTest::newRow("long") << QByteArray(3'000'000, 'x');
}

void TstCommentsXml::theRtfSurvives()
{
    QFETCH(QByteArray, rtf);

    QVERIFY(reread(makeComment(rtf)) == makeComment(rtf));
}

void TstCommentsXml::everyByteButControlCharactersSurvives()
{
    QByteArray bytes;
    for (int byte = ' '; byte < 256; ++byte)
        bytes.append(char(byte));
    QCOMPARE(reread(makeComment(bytes)).mRtf, bytes);
}

void TstCommentsXml::controlCharactersInRtfAreDropped()
{
    QByteArray bytes;
    for (char byte = 0; byte < ' '; ++byte)
        bytes += QByteArray(1, byte) + 'x';
    bytes.replace('\r', "");
    const TVLTextCommentLink comment = reread(makeComment(bytes));
    QCOMPARE(comment.mRtf, QByteArray(9, 'x') + "\tx\n" + QByteArray(22, 'x'));
    QCOMPARE(reread(comment), comment);
}

void TstCommentsXml::lineBreaksInRtfBecomeLineFeeds()
{
    // To RTF one is as good as the other.
    QCOMPARE(reread(makeComment("a\r\nb\rc\nd")).mRtf, QByteArray("a\nb\nc\nd"));
}

void TstCommentsXml::commentsAreAppended()
{
    Comments comments = {makeComment("first")};
    QVERIFY(
        readComments("<Comment ID='2'>second</Comment><Comment ID='3'>third</Comment>", &comments));
    QCOMPARE(comments.size(), 3);
    QCOMPARE(comments.at(0).mRtf, QByteArray("first"));
    QCOMPARE(comments.at(1).mIdentity, u"2"_s);
    QCOMPARE(comments.at(2).mRtf, QByteArray("third"));
}

void TstCommentsXml::unknownElementsAreSkipped()
{
    Comments comments;
    QVERIFY(readComments("<Unknown><Comment ID='no'/></Unknown>"
                         "<Comment ID='yes'>a<Unknown>b<Comment/></Unknown>c</Comment>"
                         "<comment ID='no'/>",
                         &comments));
    QCOMPARE(comments, (Comments{TVLTextCommentLink(u"yes"_s, "ac")}));
}

void TstCommentsXml::missingAttributesHaveDefaults()
{
    QCOMPARE(readComment("<Comment/>"), TVLTextCommentLink(QString(), {}));
}

void TstCommentsXml::flagsAreReadCaseSensitively_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<bool>("expected");

    QTest::newRow("Yes") << QByteArray("Yes") << true;
    for (const char *word : {"No", "yes", "YES", "1", "", " Yes"})
        QTest::newRow(*word ? word : "empty") << QByteArray(word) << false;
}

void TstCommentsXml::flagsAreReadCaseSensitively()
{
    QFETCH(QByteArray, word);
    QFETCH(bool, expected);

    const TVLTextCommentLink comment =
        readComment("<Comment ID='id' Footnote='" + word + "' Collapsed='" + word + "'/>");
    QCOMPARE(comment.mIdentity, u"id"_s);
    QCOMPARE(comment.mIsFootnote, expected);
    QCOMPARE(comment.mIsCollapsed, expected);
}

void TstCommentsXml::aNumberThatMakesNoSenseIsNone_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<int>("expected");

    QTest::newRow("number") << QByteArray("7") << 7;
    QTest::newRow("0") << QByteArray("0") << 0;
    QTest::newRow("below 0") << QByteArray("-7") << 0;
    QTest::newRow("too high") << QByteArray("2147483648") << 0;
    QTest::newRow("word") << QByteArray("seven") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
}

void TstCommentsXml::aNumberThatMakesNoSenseIsNone()
{
    QFETCH(QByteArray, number);
    QFETCH(int, expected);

    const TVLTextCommentLink comment = readComment("<Comment ID='id' Number='" + number + "'/>");
    QCOMPARE(comment.mIdentity, u"id"_s);
    QCOMPARE(comment.mNumber, expected);
}

void TstCommentsXml::textThatIsNoCdataIsReadAsWell()
{
    QCOMPARE(readComment("<Comment ID='id'>{a &lt; <![CDATA[b]]>}</Comment>"),
             makeComment("{a < b}"));
}

void TstCommentsXml::charactersThatAreNoBytesBecomeRtf()
{
    QCOMPARE(readComment(
                 u"<Comment ID='id'>{\u00e4 \u2019 \u6f22 \ufffd \U0001d11e}</Comment>"_s.toUtf8()),
             makeComment("{\xe4 \\u8217? \\u28450? \\u-3? \\u-10188?\\u-8930?}"));
}

void TstCommentsXml::readingBeginsAtTheFilesFirstElement()
{
    TVLBinderReader reader;
    reader.addData("<?xml version='1.0'?><!-- x --><Comments Version='9.9'><Comment/></Comments>");
    Comments comments;
    QVERIFY(reader.readComments(&comments));
    QCOMPARE(comments.size(), 1);
}

void TstCommentsXml::anotherElementIsAnError()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<Other><Comment/></Other>");
    Comments comments;
    QVERIFY(!reader.readComments(&comments));
    QVERIFY(comments.isEmpty());
    QCOMPARE(reader.errorString(), u"Unexpected tag Other on line 1.  Expected tag Comments"_s);
}

TVL_TEST(TstCommentsXml)
#include "tst_commentsxml.moc"
