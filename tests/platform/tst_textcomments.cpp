#include "TestMain.h"
#include "TextChecks.h"

#include "TVLTextDoc.h"
#include "TVLTextFinder.h"
#include "TVLTextFormat.h"
#include "TVLTextRtf.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextBlock>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

QByteArray rtfOf(const QString &text)
{
    QTextDocument document;
    document.setPlainText(text);
    return TVLTextRtf::toRtfCData(&document);
}

TVLTextCommentLink fullFootnote(const QString &identity)
{
    TVLTextCommentLink comment(identity, rtfOf(u"text of "_s + identity));
    comment.mIsFootnote = true;
    comment.mIsCollapsed = true;
    comment.mColor = QColor(1, 2, 3);
    comment.mNumber = 7;
    return comment;
}

QStringList identitiesOf(const QList<TVLTextCommentLink> &comments)
{
    QStringList identities;
    for (const TVLTextCommentLink &comment : comments)
        identities.append(comment.mIdentity);
    return identities;
}

/** The run that a cursor selects, as "start-end"; empty for a null cursor. */
QString runOf(const QTextCursor &cursor)
{
    return cursor.isNull() ? QString()
                           : u"%1-%2"_s.arg(cursor.selectionStart()).arg(cursor.selectionEnd());
}

} // namespace

class TstTextComments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commentsComeInTheOrderOfTheText_data();
    void commentsComeInTheOrderOfTheText();
    void onlyCommentsBetweenThePositionsAreTold_data();
    void onlyCommentsBetweenThePositionsAreTold();
    void theMapTellsWhereEachCommentStarts();
    void identitiesTieCommentsToTheText();
    void commentsThatNoTextNamesAreLeftOut();
    void whatIsSetComesBack();
    void anEmptyListOfCommentsChangesNothing();
    void uuidsAreRecognised_data();
    void uuidsAreRecognised();
    void aCommentIsHungOnARange_data();
    void aCommentIsHungOnARange();
    void aCommentWithoutIdentityGetsOne();
    void aCommentIsOneOnAllItsRuns_data();
    void aCommentIsOneOnAllItsRuns();
    void aDocumentWithoutAPlaceForCommentsTakesNone();
    void joinedTextsKeepTheCommentsOfBoth_data();
    void joinedTextsKeepTheCommentsOfBoth();
    void aCommentThatIsTheSameStaysOne();
    void whatIsReplacedHasNoCommentsAnyMore();
    void aCommentIsRemovedFromItsRun_data();
    void aCommentIsRemovedFromItsRun();
    void removingTakesTheCommentOffParagraphEnds();
    void eachChangeIsOneUndoStep();
    void notesAreTold_data();
    void notesAreTold();
    void notesBecomePlainText();
    void aRunIsFoundByItsStart_data();
    void aRunIsFoundByItsStart();
    void noRunReachesOutOfACell();
    void foundRunsAgreeWithAllComments();
    void missingDocumentsHaveNoComments();
};

void TstTextComments::commentsComeInTheOrderOfTheText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("identities");
    QTest::newRow("none") << u"a<b:b>"_s << QStringList();
    QTest::newRow("empty") << u""_s << QStringList();
    QTest::newRow("in order") << u"<c2:a>b<n1:c>\n<c3:d>"_s
                              << QStringList({u"2"_s, u"1"_s, u"3"_s});
    QTest::newRow("side by side") << u"<c1:a><c2:b>"_s << QStringList({u"1"_s, u"2"_s});
    QTest::newRow("each once over formats") << u"<c1:a><c1,b:b><c1:c>"_s << QStringList(u"1"_s);
    QTest::newRow("each once over paragraphs") << u"<c1:a\n\nb>"_s << QStringList(u"1"_s);
    QTest::newRow("each once over other text")
        << u"<c1:a>b<c1:c><c2:d>"_s << QStringList({u"1"_s, u"2"_s});
}

void TstTextComments::commentsComeInTheOrderOfTheText()
{
    QFETCH(const QString, text);
    QFETCH(const QStringList, identities);
    const auto document = makeText(text);
    QCOMPARE(identitiesOf(TVLTextDoc::comments(document.get(), -1, -1)), identities);
    QCOMPARE(TVLTextDoc::hasInspectorCommentsOrFootnotes(document.get()), !identities.isEmpty());
}

void TstTextComments::onlyCommentsBetweenThePositionsAreTold_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QStringList>("identities");
    const QStringList all = {u"1"_s, u"2"_s};
    QTest::newRow("all") << -1 << -1 << all;
    QTest::newRow("exactly all") << 2 << 8 << all;
    QTest::newRow("only the start given") << 4 << -1 << QStringList(u"2"_s);
    QTest::newRow("only the end given") << -1 << 6 << QStringList(u"1"_s);
    QTest::newRow("reaching in") << 3 << 7 << all;
    QTest::newRow("between") << 4 << 6 << QStringList();
    QTest::newRow("nothing") << 3 << 3 << QStringList();
    QTest::newRow("beyond the end") << 8 << 999 << QStringList();
}

void TstTextComments::onlyCommentsBetweenThePositionsAreTold()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QStringList, identities);
    const auto document = makeText(u"01<c1:23>4\n<c2:67>89"_s);
    QCOMPARE(identitiesOf(TVLTextDoc::comments(document.get(), from, to)), identities);
}

void TstTextComments::theMapTellsWhereEachCommentStarts()
{
    const auto document = makeText(u"01<c1:23>\n<c1:56><n2:7>"_s);
    const QMap<int, TVLTextCommentLink> all = TVLTextDoc::commentsMap(document.get(), -1, -1);
    QCOMPARE(all.keys(), QList<int>({2, 7}));
    QCOMPARE(all.value(2).mIdentity, u"1"_s);
    QVERIFY(!all.value(2).mIsFootnote);
    QCOMPARE(all.value(7).mIdentity, u"2"_s);
    QVERIFY(all.value(7).mIsFootnote);
    // Also from the middle of a run on.
    QCOMPARE(TVLTextDoc::commentsMap(document.get(), 6, 7).keys(), QList<int>({2}));
}

void TstTextComments::identitiesTieCommentsToTheText()
{
    const auto document = makeText(u"a<c1:b><c1,b:c>d<c2:e>\n<c1:f>"_s);
    const TVLTextCommentLink footnote = fullFootnote(u"1"_s);
    TVLTextDoc::setComments(document.get(), {footnote});
    QCOMPARE(describeText(document.get()), u"a<n1:b><b,n1:c>d<c2:e>\n<n1:f>"_s);
    QCOMPARE(TVLTextDoc::comments(document.get(), -1, -1),
             QList<TVLTextCommentLink>({footnote, TVLTextCommentLink(u"2"_s, {})}));
}

void TstTextComments::commentsThatNoTextNamesAreLeftOut()
{
    const auto document = makeText(u"a<c1:b>"_s);
    TVLTextDoc::setComments(document.get(), {fullFootnote(u"2"_s), TVLTextCommentLink()});
    QCOMPARE(describeText(document.get()), u"a<c1:b>"_s);
    QVERIFY(!document->isModified());
}

void TstTextComments::whatIsSetComesBack()
{
    // As many as nobody has, in one paragraph and in many.
    for (const QString &gap : {u" "_s, u"\n"_s}) {
        QTextDocument document;
        QList<TVLTextCommentLink> comments;
        QTextCursor cursor(&document);
        for (int i = 0; i < 2000; ++i) {
            const QString identity = QString::number(i);
            TVLTextCommentLink comment = fullFootnote(identity);
            comment.mIsFootnote = i % 2;
            comment.mNumber = i % 3;
            comments.append(comment);
            cursor.insertText(u"x"_s, markedFormat(u'c' + identity));
            cursor.insertText(gap, QTextCharFormat());
        }
        TVLTextDoc::setComments(&document, comments);
        QCOMPARE(TVLTextDoc::comments(&document, -1, -1), comments);
    }
}

void TstTextComments::anEmptyListOfCommentsChangesNothing()
{
    const auto document = makeText(u"<c1:b>"_s);
    TVLTextDoc::setComments(document.get(), {});
    QCOMPARE(describeText(document.get()), u"<c1:b>"_s);
}

void TstTextComments::uuidsAreRecognised_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasUuids");
    QTest::newRow("none") << u"a"_s << false;
    QTest::newRow("numbers") << u"<c1:a><c2:b>"_s << false;
    QTest::newRow("uuid") << u"<c0f8fad5b-d9cb-469f-a165-70867728950e:a>"_s << true;
    QTest::newRow("footnote by uuid") << u"<n0F8FAD5B-D9CB-469F-A165-70867728950E:a>"_s << true;
    QTest::newRow("with braces") << u"<c{0f8fad5b-d9cb-469f-a165-70867728950e}:a>"_s << true;
    QTest::newRow("one of many") << u"<c1:a>\n<c0f8fad5b-d9cb-469f-a165-70867728950e:a>"_s << true;
}

void TstTextComments::uuidsAreRecognised()
{
    QFETCH(const QString, text);
    QFETCH(const bool, hasUuids);
    const auto document = makeText(text);
    QCOMPARE(TVLTextDoc::hasCommentsWithUuids(document.get()), hasUuids);
    // What the text had once doesn't count.
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.insertText(u"x"_s, QTextCharFormat());
    QVERIFY(!TVLTextDoc::hasCommentsWithUuids(document.get()));
    QVERIFY(!TVLTextDoc::hasInspectorCommentsOrFootnotes(document.get()));
}

void TstTextComments::aCommentIsHungOnARange_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("expected");
    QTest::newRow("in a run") << u"abcd"_s << 1 << 2 << u"a<cnew:bc>d"_s;
    QTest::newRow("all") << u"abcd"_s << 0 << 4 << u"<cnew:abcd>"_s;
    QTest::newRow("over formats") << u"a<b:bc>d"_s << 2 << 2 << u"a<b:b><b,cnew:c><cnew:d>"_s;
    QTest::newRow("over a link") << u"<ltavellnk://1:abc>"_s << 1 << 1
                                 << u"<ltavellnk://1:a><cnew,ltavellnk://1:b><ltavellnk://1:c>"_s;
    QTest::newRow("over paragraphs") << u"ab\n\ncd"_s << 1 << 4 << u"a<cnew:b>\n\n<cnew:c>d"_s;
    QTest::newRow("in place of another")
        << u"a<nold:bcd>e"_s << 2 << 1 << u"a<nold:b><cnew:c><nold:d>e"_s;
    QTest::newRow("beyond the end") << u"abcd"_s << 2 << 2147483647 << u"ab<cnew:cd>"_s;
    QTest::newRow("before the start") << u"abcd"_s << -2 << 3 << u"<cnew:a>bcd"_s;
    QTest::newRow("behind the end") << u"abcd"_s << 99 << 3 << u"abcd"_s;
    QTest::newRow("nothing") << u"abcd"_s << 1 << 0 << u"abcd"_s;
    QTest::newRow("less than nothing") << u"abcd"_s << 3 << -2 << u"abcd"_s;
    QTest::newRow("a picture") << u"a<p:x.png>b"_s << 1 << 1 << u"a<cnew,p:x.png>b"_s;
    QTest::newRow("empty text") << u""_s << 0 << 1 << u""_s;
}

void TstTextComments::aCommentIsHungOnARange()
{
    QFETCH(const QString, text);
    QFETCH(const int, location);
    QFETCH(const int, length);
    QFETCH(const QString, expected);
    const auto document = makeText(text);
    const bool isHung =
        TVLTextDoc::setComment(document.get(), {location, length}, {u"new"_s, rtfOf(u"x"_s)});
    QCOMPARE(isHung, expected != text);
    QCOMPARE(describeText(document.get()), expected);
    QCOMPARE(document->isModified(), isHung);
}

void TstTextComments::aCommentWithoutIdentityGetsOne()
{
    const auto document = makeText(u"abcd"_s);
    TVLTextDoc::setComment(document.get(), {0, 1}, {QString(), rtfOf(u"x"_s)});
    TVLTextDoc::setComment(document.get(), {1, 1}, {QString(), rtfOf(u"y"_s)});
    const QList<TVLTextCommentLink> comments = TVLTextDoc::comments(document.get(), -1, -1);
    QCOMPARE(comments.size(), 2);
    QVERIFY(comments.at(0).mIdentity != comments.at(1).mIdentity);
    QCOMPARE(comments.at(1).mRtf, rtfOf(u"y"_s));
    QVERIFY(TVLTextDoc::hasCommentsWithUuids(document.get()));
}

void TstTextComments::aCommentIsOneOnAllItsRuns_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<QString>("expected");
    const QString all = u"a<nx:b>c<nx:d>\n<b,nx:e><cy:f>"_s;
    QTest::newRow("set at its first run") << 1 << all;
    QTest::newRow("set at its second run") << 3 << all;
    QTest::newRow("set at the last of another") << 6 << u"a<nx:b>c<nx:d>\n<b,nx:e><nx:f>"_s;
}

void TstTextComments::aCommentIsOneOnAllItsRuns()
{
    QFETCH(const int, location);
    QFETCH(const QString, expected);
    const QString text = u"a<cx:b>c<cx:d>\n<b,cx:e><cy:f>"_s;
    const auto document = makeText(text);
    const TVLTextCommentLink comment = fullFootnote(u"x"_s);
    QVERIFY(TVLTextDoc::setComment(document.get(), {location, 1}, comment));
    QCOMPARE(describeText(document.get()), expected);
    QCOMPARE(TVLTextDoc::comments(document.get(), -1, -1).constFirst(), comment);
    // What an editor asks for at each of the runs.
    for (const int position : {1, 3, 5})
        QCOMPARE(TVLTextDoc::comments(document.get(), position, position + 1),
                 QList<TVLTextCommentLink>{comment});
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextComments::aDocumentWithoutAPlaceForCommentsTakesNone()
{
    const auto document = makeText(u"abcd"_s);
    document->setProperty("takesComments", false);
    QVERIFY(!TVLTextDoc::setComment(document.get(), {1, 2}, fullFootnote(u"1"_s)));
    QCOMPARE(describeText(document.get()), u"abcd"_s);
    QVERIFY(!document->isModified());
    document->setProperty("takesComments", true);
    QVERIFY(TVLTextDoc::setComment(document.get(), {1, 2}, fullFootnote(u"1"_s)));
}

void TstTextComments::joinedTextsKeepTheCommentsOfBoth_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("identity");
    QTest::newRow("numbers") << u"a<c1:b>"_s << u"<c1:c>d"_s << u"1"_s;
    const QString uuid = u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s;
    QTest::newRow("uuids") << u"a<c0F8FAD5B-D9CB-469F-A165-70867728950E:b>"_s
                           << u"<c0F8FAD5B-D9CB-469F-A165-70867728950E:c>d"_s << uuid;
    QTest::newRow("a comment and a footnote") << u"<c1:b>"_s << u"<n1:c>"_s << u"1"_s;
    QTest::newRow("several runs and paragraphs")
        << u"<c1:a>b\n<b,c1:c>"_s << u"<c1:d>\n<c1:e>f<b,c1:g>"_s << u"1"_s;
}

void TstTextComments::joinedTextsKeepTheCommentsOfBoth()
{
    QFETCH(const QString, first);
    QFETCH(const QString, second);
    QFETCH(const QString, identity);
    const auto target = makeText(first);
    const auto source = makeText(second);
    const auto say = [&identity](QTextDocument *document, const QString &text) {
        TVLTextCommentLink comment = TVLTextDoc::comments(document, -1, -1).constFirst();
        comment.mRtf = rtfOf(text);
        TVLTextDoc::setComments(document, {comment});
        QCOMPARE(comment.mIdentity, identity);
    };
    say(target.get(), u"of the first"_s);
    say(source.get(), u"of the second"_s);
    const QString before = describeText(target.get());
    target->clearUndoRedoStacks();

    QTextCursor cursor(target.get());
    cursor.movePosition(QTextCursor::End);
    TVLTextDoc::appendDocument(cursor, source.get());
    QCOMPARE(TVLTextDoc::inspectorNotesToPlainText(target.get()),
             QStringList({u"of the first"_s, u"of the second"_s}));
    const QStringList identities = identitiesOf(TVLTextDoc::comments(target.get(), -1, -1));
    QCOMPARE(identities.constFirst(), identity);
    QVERIFY(!QUuid::fromString(identities.constLast()).isNull());
    // Also when both are joined to a third.
    TVLTextDoc::appendDocument(cursor, source.get());
    QCOMPARE(TVLTextDoc::comments(target.get(), -1, -1).size(), 3);
    target->undo();
    target->undo();
    QCOMPARE(describeText(target.get()), before);
    QVERIFY(!target->isUndoAvailable());
}

void TstTextComments::aCommentThatIsTheSameStaysOne()
{
    const auto target = makeText(u"a<c1:b>"_s);
    const auto source = makeText(u"<c1:c><c2:d>"_s);
    const TVLTextCommentLink comment(u"1"_s, rtfOf(u"one"_s));
    TVLTextDoc::setComments(target.get(), {comment});
    TVLTextDoc::setComments(source.get(), {comment});
    QTextCursor cursor(target.get());
    cursor.movePosition(QTextCursor::End);
    TVLTextDoc::appendDocument(cursor, source.get());
    QCOMPARE(describeText(target.get()), u"a<c1:bc><c2:d>"_s);
}

void TstTextComments::whatIsReplacedHasNoCommentsAnyMore()
{
    const auto target = makeText(u"<c1:a>\n<c1:b>"_s);
    const auto source = makeText(u"<c1:c>\n<c1:d>"_s);
    TVLTextDoc::setComments(target.get(), {{u"1"_s, rtfOf(u"old"_s)}});
    TVLTextDoc::setComments(source.get(), {{u"1"_s, rtfOf(u"new"_s)}});
    // As an editor does it that formats what is selected, ends of paragraphs too.
    QTextCursor cursor(target.get());
    cursor.select(QTextCursor::Document);
    cursor.setBlockCharFormat(target->begin().begin().fragment().charFormat());
    TVLTextDoc::appendDocument(cursor, source.get());
    QCOMPARE(describeText(target.get()), u"<c1:c>\n<c1:d>"_s);
    QCOMPARE(TVLTextDoc::inspectorNotesToPlainText(target.get()), QStringList(u"new"_s));
}

void TstTextComments::aCommentIsRemovedFromItsRun_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << u"a<c1:bc>d"_s << 1 << 3 << u"abcd"_s;
    QTest::newRow("part") << u"a<c1:bc>d"_s << 2 << 4 << u"a<c1:b>cd"_s;
    QTest::newRow("backwards") << u"a<c1:bc>d"_s << 3 << 1 << u"abcd"_s;
    QTest::newRow("several") << u"<c1:a><n2:b>\n<c3,b:c>"_s << 0 << 4 << u"ab\n<b:c>"_s;
    QTest::newRow("nothing selected") << u"<c1:abc>"_s << 1 << 1 << u"<c1:abc>"_s;
    QTest::newRow("other marks stay")
        << u"<a,c1:a><c1,ltavellnk://1:b>"_s << 0 << 2 << u"<a:a><ltavellnk://1:b>"_s;
}

void TstTextComments::aCommentIsRemovedFromItsRun()
{
    QFETCH(const QString, text);
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QString, expected);
    const auto document = makeText(text);
    QTextCursor cursor(document.get());
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    TVLTextDoc::removeComment(cursor);
    QCOMPARE(describeText(document.get()), expected);
}

void TstTextComments::removingTakesTheCommentOffParagraphEnds()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"a\nb"_s);
    cursor.select(QTextCursor::Document);
    // As an editor does it that formats what is selected.
    cursor.setCharFormat(markedFormat(u"c1"_s));
    QVERIFY(TVLTextFormat::hasComment(document.begin().next().charFormat()));
    TVLTextDoc::removeComment(TVLTextFinder::findCommentViaStartPos(&document, 0));
    QVERIFY(!TVLTextFormat::hasComment(document.begin().next().charFormat()));
    QCOMPARE(describeText(&document), u"a\nb"_s);
}

void TstTextComments::eachChangeIsOneUndoStep()
{
    const QString text = u"ab<b:c>\n<cold:de>"_s;
    const auto document = makeText(text);
    TVLTextDoc::setComment(document.get(), {1, 4}, {u"new"_s, {}});
    const QString hung = describeText(document.get());
    QCOMPARE(hung, u"a<cnew:b><b,cnew:c>\n<cnew:d><cold:e>"_s);
    TVLTextDoc::setComments(document.get(), {fullFootnote(u"new"_s), fullFootnote(u"old"_s)});
    TVLTextDoc::removeComment(TVLTextFinder::findCommentViaStartPos(document.get(), 1));
    document->undo();
    document->undo();
    QCOMPARE(describeText(document.get()), hung);
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextComments::notesAreTold_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasNotes");
    QTest::newRow("none") << u"a"_s << false;
    QTest::newRow("comment") << u"a<c1:b>"_s << true;
    QTest::newRow("footnote") << u"a\n<n1:b>"_s << true;
    QTest::newRow("inline notes are others") << u"<a:a><f:b>"_s << false;
}

void TstTextComments::notesAreTold()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(TVLTextDoc::hasInspectorCommentsOrFootnotes(document.get()), "hasNotes");
}

void TstTextComments::notesBecomePlainText()
{
    const auto document = makeText(u"<c2:a>b<n1:c><c3:d>"_s);
    TVLTextDoc::setComments(document.get(),
                            {{u"1"_s, rtfOf(u"one\nmore"_s)}, {u"2"_s, rtfOf(u"tw\u00f6"_s)}});
    QCOMPARE(TVLTextDoc::inspectorNotesToPlainText(document.get()),
             QStringList({u"tw\u00f6"_s, u"one\nmore"_s, QString()}));
}

void TstTextComments::aRunIsFoundByItsStart_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("startingThere");
    QTest::addColumn<QString>("around");
    const QString text = u"01<c1:23><c1,b:4>5<n2:6>"_s;
    QTest::newRow("start") << text << 2 << u"2-5"_s << u"2-5"_s;
    QTest::newRow("middle") << text << 3 << QString() << u"2-5"_s;
    QTest::newRow("other format") << text << 4 << QString() << u"2-5"_s;
    QTest::newRow("behind") << text << 5 << QString() << QString();
    QTest::newRow("footnote") << text << 6 << u"6-7"_s << u"6-7"_s;
    QTest::newRow("end of text") << text << 7 << QString() << QString();
    QTest::newRow("beyond the text") << text << 99 << QString() << QString();
    QTest::newRow("before the text") << text << -1 << QString() << QString();
    const QString paragraphs = u"<c1:01\n\n45><c2:6\n8>9\n<c2:b>"_s;
    QTest::newRow("first of paragraphs") << paragraphs << 0 << u"0-6"_s << u"0-6"_s;
    QTest::newRow("between paragraphs") << paragraphs << 3 << QString() << u"0-6"_s;
    QTest::newRow("last of paragraphs") << paragraphs << 4 << QString() << u"0-6"_s;
    QTest::newRow("next comment") << paragraphs << 6 << u"6-9"_s << u"6-9"_s;
    QTest::newRow("behind other text") << paragraphs << 11 << u"11-12"_s << u"11-12"_s;
}

void TstTextComments::aRunIsFoundByItsStart()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    const auto document = makeText(text);
    QTEST(runOf(TVLTextFinder::findCommentViaStartPos(document.get(), position)), "startingThere");
    QTEST(runOf(TVLTextFinder::findCommentAt(document.get(), position)), "around");
}

void TstTextComments::noRunReachesOutOfACell()
{
    QTextDocument document;
    QTextCursor cursor(&document);
    const QTextCharFormat format = markedFormat(u"c1"_s);
    cursor.insertText(u"ab"_s, format);
    const QTextTable *table = cursor.insertTable(1, 2);
    table->cellAt(0, 0).firstCursorPosition().insertText(u"cd"_s, format);
    table->cellAt(0, 1).firstCursorPosition().insertText(u"ef"_s, format);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u"gh"_s, format);
    for (const int position : {0, table->cellAt(0, 0).firstPosition(),
                               table->cellAt(0, 1).firstPosition(), cursor.position() - 2}) {
        QCOMPARE(runOf(TVLTextFinder::findCommentViaStartPos(&document, position)),
                 u"%1-%2"_s.arg(position).arg(position + 2));
    }
    TVLTextDoc::removeComment(
        TVLTextFinder::findCommentViaStartPos(&document, table->cellAt(0, 1).firstPosition()));
    QCOMPARE(describeText(&document), u"<c1:ab>\n[<c1:cd>]\n[ef]\n<c1:gh>"_s);
}

void TstTextComments::foundRunsAgreeWithAllComments()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 300; ++round) {
        QTextDocument document;
        QTextCursor cursor(&document);
        for (int i = random.bounded(10); i > 0; --i) {
            if (random.bounded(3) == 0)
                cursor.insertBlock();
            // Each identity once, so that each run is a comment of its own.
            else
                cursor.insertText(QString(1 + random.bounded(3), u'x'),
                                  random.bounded(2) ? QTextCharFormat()
                                                    : markedFormat(u'c' + QString::number(i)));
        }
        const QMap<int, TVLTextCommentLink> comments = TVLTextDoc::commentsMap(&document, -1, -1);
        for (int position = 0; position < document.characterCount(); ++position) {
            const QTextCursor found = TVLTextFinder::findCommentViaStartPos(&document, position);
            QCOMPARE(!found.isNull(), comments.contains(position));
            if (found.isNull())
                continue;
            QCOMPARE(runOf(TVLTextFinder::findCommentAt(&document, found.selectionEnd() - 1)),
                     runOf(found));
            QCOMPARE(TVLTextDoc::comments(&document, found.selectionStart(), found.selectionEnd()),
                     {comments.value(position)});
        }
        for (const int position : comments.keys())
            TVLTextDoc::removeComment(TVLTextFinder::findCommentViaStartPos(&document, position));
        QVERIFY(!TVLTextDoc::hasInspectorCommentsOrFootnotes(&document));
    }
}

void TstTextComments::missingDocumentsHaveNoComments()
{
    QCOMPARE(TVLTextDoc::comments(nullptr, -1, -1), QList<TVLTextCommentLink>());
    QVERIFY(TVLTextDoc::commentsMap(nullptr, -1, -1).isEmpty());
    QVERIFY(!TVLTextDoc::hasCommentsWithUuids(nullptr));
    QVERIFY(!TVLTextDoc::hasInspectorCommentsOrFootnotes(nullptr));
    QVERIFY(TVLTextDoc::inspectorNotesToPlainText(nullptr).isEmpty());
    QVERIFY(TVLTextFinder::findCommentViaStartPos(nullptr, 0).isNull());
    QVERIFY(TVLTextFinder::findCommentAt(nullptr, 0).isNull());
    TVLTextDoc::setComments(nullptr, {fullFootnote(u"1"_s)});
    TVLTextDoc::setComment(nullptr, {0, 1}, fullFootnote(u"1"_s));
    TVLTextDoc::removeComment(QTextCursor());
}

TVL_TEST(TstTextComments)
#include "tst_textcomments.moc"
