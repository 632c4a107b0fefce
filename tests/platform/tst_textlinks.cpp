#include "TestMain.h"
#include "TextChecks.h"

#include "TTextDoc.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QUuid First(0x0f8fad5b, 0xd9cb, 0x469f, 0xa1, 0x65, 0x70, 0x86, 0x77, 0x28, 0x95, 0x0e);

const QString FirstAddress = u"tavellnk://0F8FAD5B-D9CB-469F-A165-70867728950E"_s;

using Links = QMap<TVLTextRange, QString>;

} // namespace

class TstTextLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsOfLinksAreTold_data();
    void kindsOfLinksAreTold();
    void linksThatAreGoneDontCount();
    void idsBecomeUuids();
    void convertingIsOneUndoStep();
    void aTextWithoutLinksByIdIsLeftAlone();
    void linksAreListedWithTheirRuns_data();
    void linksAreListedWithTheirRuns();
    void linksAreSetOnRuns_data();
    void linksAreSetOnRuns();
    void listedLinksCanBeSetAgain();
    void linksOfTheProjectAreCleared();
    void missingDocumentsHaveNoLinks();
};

void TstTextLinks::kindsOfLinksAreTold_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("byId");
    QTest::addColumn<bool>("byUuid");
    QTest::newRow("none") << u"a"_s << false << false;
    QTest::newRow("elsewhere") << u"<lhttps://example.org:a>"_s << false << false;
    QTest::newRow("id") << u"a<ltavellnk://1:b>"_s << true << false;
    QTest::newRow("uuid") << u"a\n<l%1:b>"_s.arg(FirstAddress) << false << true;
    QTest::newRow("both") << u"<ltavellnk://1:a><l%1:b>"_s.arg(FirstAddress) << true << true;
    QTest::newRow("address as text") << u"tavellnk://1"_s << false << false;
}

void TstTextLinks::kindsOfLinksAreTold()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(TVLTextDoc::hasTavelinorLinksWithNodeIDs(document.get()), "byId");
    QTEST(TVLTextDoc::hasTavelinorLinksWithNodeUuids(document.get()), "byUuid");
}

void TstTextLinks::linksThatAreGoneDontCount()
{
    const auto document = makeText(u"<ltavellnk://1:a><l%1:b>"_s.arg(FirstAddress));
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    cursor.setCharFormat(QTextCharFormat());
    QVERIFY(!TVLTextDoc::hasTavelinorLinksWithNodeIDs(document.get()));
    QVERIFY(!TVLTextDoc::hasTavelinorLinksWithNodeUuids(document.get()));
}

void TstTextLinks::idsBecomeUuids()
{
    const auto document = makeText(u"<ltavellnk://1:a><b,ltavellnk://1:b>\n<ltavellnk://2:c>"
                                   u"<lhttps://example.org:d><c1,ltavellnk://1:e>"_s);
    TVLTextDoc::convertTavelinorLinkIDsToUuids(document.get(),
                                               {{1, First}, {3, QUuid::createUuid()}});
    QCOMPARE(describeText(document.get()),
             u"<l%1:a><b,l%1:b>\n<ltavellnk://2:c><lhttps://example.org:d><c1,l%1:e>"_s.arg(
                 FirstAddress));
}

void TstTextLinks::convertingIsOneUndoStep()
{
    const QString text = u"<ltavellnk://1:a>b\n<ltavellnk://1:c>"_s;
    const auto document = makeText(text);
    TVLTextDoc::convertTavelinorLinkIDsToUuids(document.get(), {{1, First}});
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextLinks::aTextWithoutLinksByIdIsLeftAlone()
{
    const auto document = makeText(u"a<ltavellnk://2:b><l%1:c>"_s.arg(FirstAddress));
    const QSignalSpy changes(document.get(), &QTextDocument::contentsChange);
    TVLTextDoc::convertTavelinorLinkIDsToUuids(document.get(), {{1, First}});
    QCOMPARE(changes.count(), 0);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextLinks::linksAreListedWithTheirRuns_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Links>("links");
    const QString one = u"tavellnk://1"_s;
    const QString two = u"tavellnk://2"_s;
    QTest::newRow("none") << u"ab"_s << Links();
    QTest::newRow("elsewhere") << u"<lhttps://example.org:a>"_s << Links();
    QTest::newRow("one") << u"a<ltavellnk://1:bc>d"_s << Links({{{1, 2}, one}});
    QTest::newRow("over formats") << u"<ltavellnk://1:a><b,ltavellnk://1:b><c1,ltavellnk://1:c>"_s
                                  << Links({{{0, 3}, one}});
    QTest::newRow("side by side") << u"<ltavellnk://1:a><ltavellnk://2:b>"_s
                                  << Links({{{0, 1}, one}, {{1, 1}, two}});
    QTest::newRow("apart") << u"<ltavellnk://1:a>b<ltavellnk://1:c>"_s
                           << Links({{{0, 1}, one}, {{2, 1}, one}});
    QTest::newRow("in each paragraph")
        << u"<ltavellnk://1:ab\ncd>"_s << Links({{{0, 2}, one}, {{3, 2}, one}});
    QTest::newRow("picture") << u"<ltavellnk://1,p:x.png>"_s << Links({{{0, 1}, one}});
}

void TstTextLinks::linksAreListedWithTheirRuns()
{
    QFETCH(const QString, text);
    const auto document = makeText(text);
    QTEST(TVLTextDoc::internalLinks(document.get()), "links");
}

void TstTextLinks::linksAreSetOnRuns_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Links>("links");
    QTest::addColumn<QString>("expected");
    const QString one = u"tavellnk://1"_s;
    const QString two = u"tavellnk://2"_s;
    QTest::newRow("none") << u"abc"_s << Links() << u"abc"_s;
    QTest::newRow("in a run") << u"abc"_s << Links({{{1, 1}, one}}) << u"a<ltavellnk://1:b>c"_s;
    QTest::newRow("over formats") << u"a<b:b>c"_s << Links({{{0, 3}, one}})
                                  << u"<ltavellnk://1:a><b,ltavellnk://1:b><ltavellnk://1:c>"_s;
    QTest::newRow("several") << u"abcdef"_s << Links({{{0, 1}, one}, {{2, 2}, two}})
                             << u"<ltavellnk://1:a>b<ltavellnk://2:cd>ef"_s;
    QTest::newRow("the later of two") << u"abcdef"_s << Links({{{0, 3}, one}, {{2, 2}, two}})
                                      << u"<ltavellnk://1:ab><ltavellnk://2:cd>ef"_s;
    QTest::newRow("over paragraphs")
        << u"ab\n\ncd"_s << Links({{{1, 4}, one}}) << u"a<ltavellnk://1:b>\n\n<ltavellnk://1:c>d"_s;
    QTest::newRow("beyond the text")
        << u"abc"_s << Links({{{2, 2147483647}, one}}) << u"ab<ltavellnk://1:c>"_s;
    QTest::newRow("before the text")
        << u"abc"_s << Links({{{-5, 6}, one}}) << u"<ltavellnk://1:a>bc"_s;
    QTest::newRow("outside") << u"abc"_s << Links({{{-5, 2}, one}, {{3, 1}, one}, {{9, 1}, one}})
                             << u"abc"_s;
    QTest::newRow("nothing long") << u"abc"_s << Links({{{1, 0}, one}, {{2, -2}, one}}) << u"abc"_s;
    QTest::newRow("in place of another")
        << u"<lhttps://example.org:abc>"_s << Links({{{0, 3}, one}}) << u"<ltavellnk://1:abc>"_s;
    QTest::newRow("picture") << u"<p:x.png>"_s << Links({{{0, 1}, one}})
                             << u"<ltavellnk://1,p:x.png>"_s;
}

void TstTextLinks::linksAreSetOnRuns()
{
    QFETCH(const QString, text);
    QFETCH(const Links, links);
    QFETCH(const QString, expected);
    const auto document = makeText(text);
    TVLTextDoc::setInternalLinks(document.get(), links);
    QCOMPARE(describeText(document.get()), expected);
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextLinks::listedLinksCanBeSetAgain()
{
    const QString text = u"a<ltavellnk://1:b><b,ltavellnk://2:c>\n<ltavellnk://2:d>e"_s;
    const auto document = makeText(text);
    const Links links = TVLTextDoc::internalLinks(document.get());
    TTextDoc::clearTavelinorLinks(document.get());
    QCOMPARE(describeText(document.get()), u"ab<b:c>\nde"_s);
    TVLTextDoc::setInternalLinks(document.get(), links);
    QCOMPARE(describeText(document.get()), text);
}

void TstTextLinks::linksOfTheProjectAreCleared()
{
    const QString text =
        u"a<b,ltavellnk://1:b><lhttps://example.org:c>\n<c1,l%1:d>"_s.arg(FirstAddress);
    const auto document = makeText(text);
    TTextDoc::clearTavelinorLinks(document.get());
    QCOMPARE(describeText(document.get()), u"a<b:b><lhttps://example.org:c>\n<c1:d>"_s);
    document->undo();
    QCOMPARE(describeText(document.get()), text);
    QVERIFY(!document->isUndoAvailable());
}

void TstTextLinks::missingDocumentsHaveNoLinks()
{
    QVERIFY(!TVLTextDoc::hasTavelinorLinksWithNodeIDs(nullptr));
    QVERIFY(!TVLTextDoc::hasTavelinorLinksWithNodeUuids(nullptr));
    QVERIFY(TVLTextDoc::internalLinks(nullptr).isEmpty());
    TVLTextDoc::convertTavelinorLinkIDsToUuids(nullptr, {{1, First}});
    TVLTextDoc::setInternalLinks(nullptr, {{{0, 1}, FirstAddress}});
    TTextDoc::clearTavelinorLinks(nullptr);
}

TVL_TEST(TstTextLinks)
#include "tst_textlinks.moc"
