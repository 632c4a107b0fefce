#include "BinderSamples.h"
#include "RandomTree.h"
#include "TVLBinderWriter.h"
#include "TestBinderProject.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Keywords = QList<TVLBinderKeyword>;

/** Reads a binder whose section `Keywords` has the given content. */
bool readKeywords(const QByteArray &content, Keywords *keywords, QString *error = nullptr)
{
    TestBinderProject project;
    const bool ok = project.read(binderXml({}, "<Keywords>" + content + "</Keywords>"), error);
    *keywords = project.mKeywords;
    return ok;
}

QByteArray writtenKeywords(const Keywords &keywords)
{
    return written([&](TVLBinderWriter *writer) { writer->writeKeywords(keywords); });
}

/** A random tree in the order in which it is written. */
Keywords randomKeywords(int count, int deepest, quint32 seed)
{
    QRandomGenerator random(seed);
    Keywords keywords;
    QList<int> open;
    for (int i = 0; i < count; ++i) {
        const qsizetype depth = random.bounded(int(qMin(open.size(), qsizetype(deepest) - 1)) + 1);
        open.resize(depth);
        TVLBinderKeyword keyword;
        keyword.mId = 7 * i + random.bounded(7);
        keyword.mParentId = open.isEmpty() ? -1 : open.constLast();
        keyword.mTitle = randomText(&random, 20);
        if (random.bounded(5) != 0)
            keyword.mColor = QColor(random.generate() | 0xff000000);
        keywords.append(keyword);
        open.append(keyword.mId);
    }
    return keywords;
}

} // namespace

class TstKeywordSection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keywordsAreWritten();
    void noKeywordsAreWrittenAsAnEmptyElement();
    void keywordsComeBehindCollections();
    void aMobileBinderHasNoKeywords();
    void keywordsBehindNoParentOfTheirsAreWrittenAtTheTop();

    void keywordsAreRead();
    void aKeywordStartsWithoutTitleAndColor();
    void anAbsentSectionBringsNone();
    void otherElementsAreSkipped();
    void theLastTitleAndColorCount();
    void childrenMayComeFirstAndMoreThanOnce();
    void aColorThatMakesNoSenseIsNone_data();
    void aColorThatMakesNoSenseIsNone();
    void aMissingOrBadIdentityFails_data();
    void aMissingOrBadIdentityFails();
    void anIdentityUsedTwiceIsRead();
    void keywordsAreOnlyHandedOverWhenAllWereRead_data();
    void keywordsAreOnlyHandedOverWhenAllWereRead();
    void keywordsOfItemsAreSomethingElse();

    void randomTreesSurvive_data();
    void randomTreesSurvive();
    void aDeepTreeSurvivesInLittleTime();
    void damageNeverCrashesTheReader();
};

void TstKeywordSection::keywordsAreWritten()
{
    const Keywords keywords = {{3, -1, u"A & B"_s, QColor(255, 0, 0)},
                               {1, 3, u"in it"_s, {}},
                               {7, 1, {}, QColor(0, 0, 0)},
                               {2, 3, u"<also>"_s, {}},
                               {9, -1, u"last"_s, QColor(0, 0, 255, 90)}};
    QCOMPARE(
        writtenKeywords(keywords),
        QByteArray("<Keywords>"
                   "<Keyword ID=\"3\"><Title>A &amp; B</Title><Color>1.000 0.000 0.000</Color>"
                   "<Children>"
                   "<Keyword ID=\"1\"><Title>in it</Title><Children>"
                   "<Keyword ID=\"7\"><Title></Title><Color>0.000 0.000 0.000</Color></Keyword>"
                   "</Children></Keyword>"
                   "<Keyword ID=\"2\"><Title>&lt;also&gt;</Title></Keyword>"
                   "</Children></Keyword>"
                   "<Keyword ID=\"9\"><Title>last</Title><Color>0.000 0.000 1.000</Color>"
                   "</Keyword></Keywords>"));
}

void TstKeywordSection::noKeywordsAreWrittenAsAnEmptyElement()
{
    QCOMPARE(writtenKeywords({}), QByteArray("<Keywords/>"));
}

void TstKeywordSection::keywordsComeBehindCollections()
{
    TestBinderProject project;
    project.mKeywords = {{1, -1, u"a"_s, {}}};
    project.mUserProjectData = richUserProjectData();
    const QByteArray binder = project.write();
    const qsizetype keywords = binder.indexOf("<Keywords>");
    QVERIFY(keywords > binder.indexOf("<Collections"));
    QVERIFY(keywords < binder.indexOf("<UserProjectData>"));
}

void TstKeywordSection::aMobileBinderHasNoKeywords()
{
    TestBinderProject project;
    project.mKeywords = {{1, -1, u"a"_s, {}}};
    project.mIsMobile = true;
    QVERIFY(!project.write().contains("Keyword"));
}

void TstKeywordSection::keywordsBehindNoParentOfTheirsAreWrittenAtTheTop()
{
    const Keywords keywords = {{1, 5, u"a"_s, {}}, {2, 1, u"b"_s, {}}, {3, 9, u"c"_s, {}}};
    Keywords reread;
    QVERIFY(readKeywords(
        writtenKeywords(keywords).replace("<Keywords>", "").replace("</Keywords>", ""), &reread));
    const Keywords expected = {{1, -1, u"a"_s, {}}, {2, 1, u"b"_s, {}}, {3, -1, u"c"_s, {}}};
    QCOMPARE(reread, expected);
}

void TstKeywordSection::keywordsAreRead()
{
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='3'><Title>A &amp; B</Title><Color>1.0 0 0</Color><Children>"
                         "<Keyword ID='1'><Title>in it</Title></Keyword></Children></Keyword>"
                         "<Keyword ID='0'><Title>  as it stands </Title></Keyword>",
                         &keywords));
    const Keywords expected = {{3, -1, u"A & B"_s, QColor(255, 0, 0)},
                               {1, 3, u"in it"_s, {}},
                               {0, -1, u"  as it stands "_s, {}}};
    QCOMPARE(keywords, expected);
}

void TstKeywordSection::aKeywordStartsWithoutTitleAndColor()
{
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='3'/><Keyword ID='4'><Title/><Color/><Children/></Keyword>",
                         &keywords));
    QCOMPARE(keywords, Keywords({{3, -1, {}, {}}, {4, -1, {}, {}}}));
}

void TstKeywordSection::anAbsentSectionBringsNone()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml({})));
    QVERIFY(project.mKeywords.isEmpty());
    Keywords keywords;
    QVERIFY(readKeywords({}, &keywords));
    QVERIFY(keywords.isEmpty());
}

void TstKeywordSection::otherElementsAreSkipped()
{
    const DebugLog log;
    Keywords keywords;
    QVERIFY(readKeywords("<Foo><Keyword ID='9'/></Foo>text<KeywordID>8</KeywordID>"
                         "<Keyword ID='1' Foo='x'><Foo><Title>no</Title></Foo><Title>a</Title>"
                         "<Keyword ID='7'/><Children><Foo/><Title>no</Title>"
                         "<Keyword ID='2'/></Children></Keyword>",
                         &keywords));
    QCOMPARE(keywords, Keywords({{1, -1, u"a"_s, {}}, {2, 1, {}, {}}}));
}

void TstKeywordSection::theLastTitleAndColorCount()
{
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='1'><Title>a</Title><Color>1 0 0</Color><Title>b</Title>"
                         "<Color>0 0 1</Color></Keyword>",
                         &keywords));
    QCOMPARE(keywords, Keywords({{1, -1, u"b"_s, QColor(0, 0, 255)}}));
}

void TstKeywordSection::childrenMayComeFirstAndMoreThanOnce()
{
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='1'><Children><Keyword ID='2'/></Children><Title>a</Title>"
                         "<Children><Keyword ID='3'><Title>c</Title></Keyword></Children>"
                         "<Color>1 0 0</Color></Keyword>",
                         &keywords));
    QCOMPARE(keywords,
             Keywords({{1, -1, u"a"_s, QColor(255, 0, 0)}, {2, 1, {}, {}}, {3, 1, u"c"_s, {}}}));
}

void TstKeywordSection::aColorThatMakesNoSenseIsNone_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::newRow("word") << QByteArray("red");
    QTest::newRow("two numbers") << QByteArray("1 1");
    QTest::newRow("out of range") << QByteArray("2 0 0");
}

void TstKeywordSection::aColorThatMakesNoSenseIsNone()
{
    QFETCH(const QByteArray, color);
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='1'><Color>" + color + "</Color></Keyword>", &keywords));
    QCOMPARE(keywords, Keywords({{1, -1, {}, {}}}));
}

void TstKeywordSection::aMissingOrBadIdentityFails_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QByteArray() << QString();
    QTest::newRow("empty") << QByteArray("ID=''") << QString();
    QTest::newRow("word") << QByteArray("ID='one'") << u"one"_s;
    QTest::newRow("fraction") << QByteArray("ID='1.5'") << u"1.5"_s;
    QTest::newRow("too large") << QByteArray("ID='99999999999'") << u"99999999999"_s;
    QTest::newRow("negative") << QByteArray("ID='-1'") << u"-1"_s;
    QTest::newRow("other case") << QByteArray("Id='1'") << QString();
}

void TstKeywordSection::aMissingOrBadIdentityFails()
{
    QFETCH(const QByteArray, attribute);
    QFETCH(const QString, text);
    const DebugLog log;
    const QByteArray keyword = "<Keyword " + attribute + "><Title>a</Title></Keyword>";
    for (const QByteArray &content :
         {keyword, "<Keyword ID='1'><Children>" + keyword + "</Children></Keyword>"}) {
        Keywords keywords;
        QString error;
        QVERIFY(!readKeywords(content, &keywords, &error));
        QCOMPARE(error, u"Invalid keyword identity read: %1"_s.arg(text));
        QVERIFY(keywords.isEmpty());
    }
}

void TstKeywordSection::anIdentityUsedTwiceIsRead()
{
    Keywords keywords;
    QVERIFY(readKeywords("<Keyword ID='1'><Children><Keyword ID='1'/><Keyword ID='2'/></Children>"
                         "</Keyword><Keyword ID='2'/>",
                         &keywords));
    const Keywords expected = {{1, -1, {}, {}}, {1, 1, {}, {}}, {2, 1, {}, {}}, {2, -1, {}, {}}};
    QCOMPARE(keywords, expected);
    // What is written of it can be read.
    Keywords reread;
    QVERIFY(readKeywords(
        writtenKeywords(keywords).replace("<Keywords>", "").replace("</Keywords>", ""), &reread));
    QCOMPARE(reread.size(), 4);
}

void TstKeywordSection::keywordsAreOnlyHandedOverWhenAllWereRead_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("cut off in the list") << QByteArray("<Keyword ID='1'/>");
    QTest::newRow("cut off in a keyword") << QByteArray("<Keyword ID='1'>");
    QTest::newRow("cut off in a title") << QByteArray("<Keyword ID='1'><Title>a");
    QTest::newRow("cut off in children") << QByteArray("<Keyword ID='1'><Children>");
    QTest::newRow("cut off below") << QByteArray("<Keyword ID='1'><Children><Keyword ID='2'/>");
    QTest::newRow("wrong end") << QByteArray("<Keyword ID='1'></Children>");
}

void TstKeywordSection::keywordsAreOnlyHandedOverWhenAllWereRead()
{
    QFETCH(const QByteArray, xml);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(!project.read("<TavelinorProject Version='1.5'><Keywords>" + xml));
    QVERIFY(project.mKeywords.isEmpty());
}

void TstKeywordSection::keywordsOfItemsAreSomethingElse()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml(sampleItem("<Keywords><KeywordID>4</KeywordID><Keyword ID='9'/></Keywords>"),
                  "<Keywords><Keyword ID='1'/><KeywordID>5</KeywordID></Keywords>")));
    QCOMPARE(project.mRoot->mChildren.constFirst()->mKeywords, QList<int>{4});
    QCOMPARE(project.mKeywords, Keywords({{1, -1, {}, {}}}));
}

void TstKeywordSection::randomTreesSurvive_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("deepest");
    for (const int count : {1, 2, 30, 3000}) {
        for (const int deepest : {1, 2, 10, 400})
            QTest::addRow("%d keywords, %d levels", count, deepest) << count << deepest;
    }
}

void TstKeywordSection::randomTreesSurvive()
{
    QFETCH(const int, count);
    QFETCH(const int, deepest);
    for (quint32 seed = 1; seed <= 5; ++seed) {
        TestBinderProject project;
        project.mInfo.mModified = sampleModified();
        project.mKeywords = randomKeywords(count, deepest, seed);
        const QByteArray binder = project.write();
        TestBinderProject reread;
        QVERIFY(reread.read(binder));
        QCOMPARE(reread.mKeywords, project.mKeywords);
        QVERIFY(reread.write() == binder);
    }
}

void TstKeywordSection::aDeepTreeSurvivesInLittleTime()
{
    constexpr int Depth = 50000;
    TestBinderProject project;
    project.mInfo.mModified = sampleModified();
    for (int id = 0; id < Depth; ++id)
        project.mKeywords.append({id, id - 1, u"t"_s, {}});
    project.mKeywords.append({Depth, 120, u"back up"_s, {}});
    project.mKeywords.append({Depth + 1, -1, u"top"_s, {}});
    const QByteArray binder = project.write();
    QVERIFY(binder.size() < 200 * Depth);
    QVERIFY(binder.endsWith("</TavelinorProject>\n"));
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    QCOMPARE(reread.mKeywords, project.mKeywords);
    QVERIFY(reread.write() == binder);
}

void TstKeywordSection::damageNeverCrashesTheReader()
{
    const DebugLog log;
    const QByteArray section = writtenKeywords(randomKeywords(12, 4, 2));
    QRandomGenerator random(6);
    const QByteArray head = "<TavelinorProject Version='1.5'>";
    for (qsizetype length = 0; length < section.size(); ++length) {
        TestBinderProject project;
        QVERIFY(!project.read(head + section.first(length)));
        QVERIFY(project.mKeywords.isEmpty());
    }
    for (int i = 0; i < 3000; ++i) {
        QByteArray damaged = section;
        for (int change = random.bounded(3); change >= 0; --change)
            damaged[random.bounded(int(damaged.size()))] ^= char(1 << random.bounded(8));
        TestBinderProject project;
        QString error;
        const bool ok = project.read(head + damaged + "</TavelinorProject>", &error);
        QCOMPARE(ok, error.isEmpty());
        if (ok) {
            TestBinderProject reread;
            QVERIFY(reread.read(project.write()));
            QCOMPARE(reread.mKeywords, project.mKeywords);
        }
    }
}

TVL_TEST(TstKeywordSection)
#include "tst_keywordsection.moc"
