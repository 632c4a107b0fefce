#include "BinderSamples.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"
#include "TestScale.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const int DeepestItem = testSize(200'000);

/** Fills a project with items that nest one in another, or that stand side by side. */
void fillProject(TestBinderProject *project, int items, bool nested)
{
    project->mInfo.mModified = sampleModified();
    TVLProjectNode *parent = project->mRoot.get();
    for (int id = 0; id < items; ++id) {
        auto *node =
            new TVLProjectNode({id, QUuid(uint(id) + 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)}, parent);
        if (nested)
            parent = node;
    }
}

/** How long writing such a project takes, at best, in milliseconds. */
qint64 writingTime(int items, bool nested)
{
    TestBinderProject project;
    fillProject(&project, items, nested);
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 3; ++i) {
        QElapsedTimer timer;
        timer.start();
        if (project.write().isEmpty())
            qFatal("nothing was written");
        best = std::min(best, timer.elapsed());
    }
    return best;
}

qsizetype writtenSize(int items, bool nested)
{
    TestBinderProject project;
    fillProject(&project, items, nested);
    return project.write().size();
}

/** A binder with one item of that title, written and read. */
QString titleRead(const QString &title)
{
    TestBinderProject project;
    fillProject(&project, 1, false);
    project.mRoot->mChildren.at(0)->mTitle = title;
    TestBinderProject reread;
    QString error;
    if (!reread.read(project.write(), &error) || reread.mRoot->mChildren.size() != 1)
        return u"unreadable: "_s + error;
    return reread.mRoot->mChildren.at(0)->mTitle;
}

/** A code point as it may stand in a string, a half surrogate included. */
QString textOf(char32_t codePoint)
{
    return codePoint < 0x10000 ? QString(QChar(char16_t(codePoint)))
                               : QString::fromUcs4(&codePoint, 1);
}

/** What is left of a code point in a title. */
QString expectedOf(char32_t codePoint)
{
    if (codePoint < U' ' && codePoint != U'\t' && codePoint != U'\n' && codePoint != U'\r')
        return {};
    if ((codePoint >= 0xd800 && codePoint <= 0xdfff) || codePoint == 0xfffe || codePoint == 0xffff)
        return QString(QChar::ReplacementCharacter);
    return textOf(codePoint);
}

/** A text with one of everything that XML can't hold. */
QString nastyText()
{
    QString text = u"a"_s;
    for (char16_t unit = 0; unit < u' '; ++unit)
        text.append(QChar(unit));
    for (const char16_t unit : {0xdc00, 0xd800, 0xfffe, 0xffff, 0xd800})
        text.append(QChar(unit));
    return text;
}

} // namespace

class TstBinderHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Depth and size
    void itemsNested200000DeepAreReadAndDestroyed();
    void deepNestingCutOffFailsWithoutCrash();
    void writingNestedItemsCostsAboutAsMuchAsWritingFlatOnes();
    void itemsNested200000DeepAreWrittenAndReadAgain();
    void theSizeOfABinderGrowsWithItsItemsAndNotWithTheirDepth();
    void indentationComesBackBehindADeepItem();
    void unknownElementsNestedDeeplyAreSkipped();
    void aHundredThousandSiblingsSurvive();
    void aVeryLongAttributeIsNoError_data();
    void aVeryLongAttributeIsNoError();
    void aVeryLongTitleSurvives();
    void manyAttributesAreNoError();

    // Not what it seems
    void anEntityBombFailsWithoutExploding_data();
    void anEntityBombFailsWithoutExploding();
    void anOutsideEntityIsNotReadIn();
    void anUndeclaredEntityFails();
    void malformedXmlFails_data();
    void malformedXmlFails();
    void otherEncodingsAreReadByTheirDeclaration();
    void noiseNeverCrashesTheReader();
    void numbersAtTheLimitsSurvive_data();
    void numbersAtTheLimitsSurvive();
    void numbersBeyondTheLimitsAreNoError();

    // Texts that XML can't hold
    void whatSurvivesOfATitle_data();
    void whatSurvivesOfATitle();
    void everyCodePointInATitleLeavesTheBinderReadable();
    void everyUtf16UnitNextToEveryOtherKindLeavesTheBinderReadable();
    void nastyTextsAnywhereLeaveTheBinderReadable_data();
    void nastyTextsAnywhereLeaveTheBinderReadable();
    void lineBreaksInAttributesSurvive();
    void aCustomFieldWithoutNameLeavesTheBinderReadable_data();
    void aCustomFieldWithoutNameLeavesTheBinderReadable();
};

void TstBinderHostile::itemsNested200000DeepAreReadAndDestroyed()
{
    const DebugLog log;
    const QByteArray start = "<BinderItem ID='1'><Children>";
    const QByteArray end = "</Children><Title>x</Title></BinderItem>";
    TestBinderProject project;
    QString error;
    QVERIFY2(
        project.read(binderXml(start.repeated(DeepestItem) + end.repeated(DeepestItem)), &error),
        qPrintable(error));
    const TVLProjectNode *deepest = project.mRoot->lastInPreOrder();
    QCOMPARE(TVLProjectNode::childLevel(deepest), DeepestItem);
    QCOMPARE(deepest->mTitle, u"x"_s);
    project.mRoot.reset();
}

void TstBinderHostile::deepNestingCutOffFailsWithoutCrash()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(!project.read("<TavelinorProject Version='1.5'><Binder>"
                          + QByteArray("<BinderItem><Children>").repeated(DeepestItem)));
    QCOMPARE(TVLProjectNode::childLevel(project.mRoot->lastInPreOrder()), DeepestItem);
}

void TstBinderHostile::writingNestedItemsCostsAboutAsMuchAsWritingFlatOnes()
{
    const qint64 flat = writingTime(5000, false);
    const qint64 nested = writingTime(5000, true);
    // The nested ones have a list of children each, which is a third more to write.
    QVERIFY2(nested <= 5 * flat + 50,
             qPrintable(u"%1 ms nested, %2 ms flat"_s.arg(nested).arg(flat)));
}

void TstBinderHostile::itemsNested200000DeepAreWrittenAndReadAgain()
{
    // Quadratic time would make this test last for hours, so it is ruled out first.
    writingNestedItemsCostsAboutAsMuchAsWritingFlatOnes();
    if (QTest::currentTestFailed())
        return;

    TestBinderProject project;
    fillProject(&project, DeepestItem, true);
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    QCOMPARE(TVLProjectNode::childLevel(reread.mRoot->lastInPreOrder()), DeepestItem);
    QVERIFY(reread.write() == binder);
}

void TstBinderHostile::theSizeOfABinderGrowsWithItsItemsAndNotWithTheirDepth()
{
    // Behind the depth to which items are indented, every further item takes the same room.
    const qsizetype first = writtenSize(1200, true) - writtenSize(200, true);
    const qsizetype second = writtenSize(2200, true) - writtenSize(1200, true);
    // Ids with a digit more are what may differ.
    QVERIFY2(second - first <= 1000, qPrintable(u"%1, then %2"_s.arg(first).arg(second)));
}

void TstBinderHostile::indentationComesBackBehindADeepItem()
{
    TestBinderProject project;
    fillProject(&project, 150, true);
    new TVLProjectNode({999, QUuid::createUuid()}, project.mRoot.get());
    const QByteArray binder = project.write();
    QVERIFY(binder.contains("\n        <BinderItem ID=\"999\" "));
    QVERIFY(binder.contains("\n    <LabelSettings>\n        <Title>"));
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    QVERIFY(reread.write() == binder);
}

void TstBinderHostile::unknownElementsNestedDeeplyAreSkipped()
{
    const DebugLog log;
    const QByteArray deep =
        QByteArray("<a>").repeated(DeepestItem) + QByteArray("</a>").repeated(DeepestItem);
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem(deep + "<Title>x</Title>"), deep)));
    QCOMPARE(project.mRoot->mChildren.at(0)->mTitle, u"x"_s);
}

void TstBinderHostile::aHundredThousandSiblingsSurvive()
{
    const int siblings = testSize(100'000);
    TestBinderProject project;
    fillProject(&project, siblings, false);
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    QCOMPARE(reread.mRoot->mChildren.size(), siblings);
    QCOMPARE(reread.mRoot->childIDs(), project.mRoot->childIDs());
    QVERIFY(reread.write() == binder);
}

void TstBinderHostile::aVeryLongAttributeIsNoError_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"ID", "UUID", "Created", "Modified", "Type", "Unknown"})
        QTest::newRow(name) << QByteArray(name);
}

void TstBinderHostile::aVeryLongAttributeIsNoError()
{
    QFETCH(QByteArray, name);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem("<Title>x</Title>", name + "='" + QByteArray(5'000'000, '7') + '\''))));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mId, -1);
    QVERIFY(node->mUuid.isNull());
    QCOMPARE(int(node->mNodeType), int(TVL::Text));
    QCOMPARE(node->mTitle, u"x"_s);
}

void TstBinderHostile::aVeryLongTitleSurvives()
{
    const QString title = QString(5'000'000, u'\u2603');
    QVERIFY(titleRead(title) == title);
}

void TstBinderHostile::manyAttributesAreNoError()
{
    const DebugLog log;
    QByteArray attributes = "ID='7'";
    for (int i = 0; i < 1000; ++i)
        attributes += " a" + QByteArray::number(i) + "='" + QByteArray::number(i) + '\'';
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, attributes))));
    QCOMPARE(project.mRoot->childIDs(), QList<int>{7});
}

void TstBinderHostile::anEntityBombFailsWithoutExploding_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QByteArray>("content");
    QByteArray laughs = "<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray previous = "&e" + QByteArray::number(i - 1) + ';';
        laughs += "<!ENTITY e" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
    }
    const QByteArray blowUp = "<!ENTITY e29 \"" + QByteArray(100'000, 'x') + "\">";
    const QByteArray circle = "<!ENTITY e29 \"&b;\"><!ENTITY b \"&e29;\">";
    QTest::newRow("exponential") << laughs << QByteArray("&e29;");
    QTest::newRow("quadratic") << blowUp << QByteArray("&e29;").repeated(100'000);
    QTest::newRow("endless") << circle << QByteArray("&e29;");
}

void TstBinderHostile::anEntityBombFailsWithoutExploding()
{
    QFETCH(QByteArray, entities);
    QFETCH(QByteArray, content);
    const DebugLog log;
    const QByteArray start = "<?xml version='1.0'?><!DOCTYPE TavelinorProject [" + entities + "]>";
    const QByteArray items = sampleItem("<Title>" + content + "</Title>");
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(start + "<TavelinorProject Version='1.5'><Binder>" + items
                              + "</Binder></TavelinorProject>",
                          &error));
    QVERIFY(!error.isEmpty());
    // The content is refused in an attribute too.
    TestBinderProject other;
    QVERIFY(!other.read(start + "<TavelinorProject Version='1.5' Device='" + content + "'/>"));
}

void TstBinderHostile::anOutsideEntityIsNotReadIn()
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"secret.txt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("secret");
    file.close();
    const DebugLog log;
    TestBinderProject project;
    const bool ok =
        project.read("<!DOCTYPE TavelinorProject [<!ENTITY x SYSTEM \"file://"
                     + file.fileName().toUtf8() + "\">]><TavelinorProject Version='1.5'><Binder>"
                     + sampleItem("<Title>&x;</Title>") + "</Binder></TavelinorProject>");
    tvlForEachNode(project.mRoot.get(),
                   [](const TVLProjectNode *node) { QVERIFY(!node->mTitle.contains(u"secret")); });
    QVERIFY(!ok || project.mRoot->mChildren.at(0)->mTitle.isEmpty());
}

void TstBinderHostile::anUndeclaredEntityFails()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(!project.read(binderXml(sampleItem("<Title>a&nbsp;b</Title>"))));
}

void TstBinderHostile::malformedXmlFails_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::newRow("attribute twice") << QByteArray("<BinderItem ID='1' ID='2'/>");
    QTest::newRow("attribute without quotes") << QByteArray("<BinderItem ID=1/>");
    QTest::newRow("attribute without value") << QByteArray("<BinderItem ID/>");
    QTest::newRow("wrong end tag") << QByteArray("<BinderItem><Title></BinderItem></Title>");
    QTest::newRow("no end tag") << QByteArray("<BinderItem><Title>");
    QTest::newRow("bare ampersand") << QByteArray("<BinderItem><Title>a & b</Title></BinderItem>");
    QTest::newRow("bare less-than") << QByteArray("<BinderItem><Title>a < b</Title></BinderItem>");
    QTest::newRow("control character")
        << QByteArray("<BinderItem><Title>a\x01z</Title></BinderItem>");
    QTest::newRow("zero") << QByteArray("<BinderItem><Title>a") + '\0' + "</Title></BinderItem>";
    QTest::newRow("reference to a control character")
        << QByteArray("<BinderItem><Title>&#1;</Title></BinderItem>");
    QTest::newRow("reference to half a pair")
        << QByteArray("<BinderItem><Title>&#xD800;</Title></BinderItem>");
    QTest::newRow("no UTF-8") << QByteArray("<BinderItem><Title>a\xff\xfez</Title></BinderItem>");
    QTest::newRow("undeclared prefix") << QByteArray("<x:BinderItem/>");
}

void TstBinderHostile::malformedXmlFails()
{
    QFETCH(QByteArray, item);
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(binderXml(item), &error));
    QVERIFY(!error.isEmpty());
}

void TstBinderHostile::otherEncodingsAreReadByTheirDeclaration()
{
    const QString item = QString::fromUtf8(sampleItem("<Title>\xc3\xbc</Title>"));
    const QString binder =
        u"<TavelinorProject Version='1.5'><Binder>"_s + item + u"</Binder></TavelinorProject>"_s;
    const auto title = [](const QByteArray &xml) {
        TestBinderProject project;
        return project.read(xml) ? project.mRoot->mChildren.at(0)->mTitle : QString();
    };
    QCOMPARE(title("<?xml version='1.0' encoding='ISO-8859-1'?>" + binder.toLatin1()), u"\u00fc"_s);
    QCOMPARE(title("\xef\xbb\xbf" + binder.toUtf8()), u"\u00fc"_s);
    QByteArray utf16 = "\xff\xfe";
    for (const QChar unit : binder) {
        utf16.append(char(unit.cell()));
        utf16.append(char(unit.row()));
    }
    QCOMPARE(title(utf16), u"\u00fc"_s);
}

void TstBinderHostile::noiseNeverCrashesTheReader()
{
    const DebugLog log;
    QRandomGenerator random(3);
    const QByteArrayList pieces = {"<TavelinorProject Version='1.5'>",
                                   "<Binder>",
                                   "<BinderItem>",
                                   "<Children>",
                                   "<Title>",
                                   "<MetaData>",
                                   "<CustomMetaData>",
                                   "<MetaDataItem>",
                                   "<FieldID>",
                                   "<TextSettings>",
                                   "<Target>",
                                   "<Keywords>",
                                   "<KeywordID>",
                                   "<References>",
                                   "<Reference>",
                                   "<CorkboardAndOutliner>",
                                   "<CorkboardSettings>",
                                   "<LabelSettings>",
                                   "<Labels>",
                                   "<Label>",
                                   "<Collections>",
                                   "<Collection>",
                                   "<SearchSettings>",
                                   "</",
                                   "</BinderItem>",
                                   "</Children>",
                                   "</Binder>",
                                   "</Title>",
                                   "1",
                                   "x",
                                   "<![CDATA[",
                                   "]]>",
                                   "<!--",
                                   "-->",
                                   "&amp;"};
    for (int i = 0; i < 3000; ++i) {
        QByteArray xml = pieces.at(0) + pieces.at(1) + pieces.at(2);
        for (int piece = random.bounded(30); piece > 0; --piece)
            xml += pieces.at(random.bounded(int(pieces.size())));
        TestBinderProject project;
        // None of them ends its root element.
        QVERIFY(!project.read(xml));
    }
}

void TstBinderHostile::numbersAtTheLimitsSurvive_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("greatest") << std::numeric_limits<int>::max();
    QTest::newRow("least") << std::numeric_limits<int>::min();
    QTest::newRow("zero") << 0;
}

void TstBinderHostile::numbersAtTheLimitsSurvive()
{
    QFETCH(int, number);
    TestBinderProject project;
    fillProject(&project, 2, true);
    TVLProjectNode *node = project.mRoot->mChildren.at(0);
    TVLProjectNode *child = node->mChildren.at(0);
    node->mCreated = sampleCreated();
    node->mModified = sampleModified();
    child->mId = std::max(number, 0);
    node->mLabelId = node->mStatusId = number;
    node->mNotesTextSelection = node->mTextSelection = {number, number};
    node->mTarget = number;
    node->mTargetBuffer = std::max(number, 0);
    node->mKeywords = {number, number};
    node->mDefaultChildTemplateId = std::max(number, -1);
    node->mSelectedSubdocumentIds = {child->mId};
    node->mFreeformPositions.insert(child->mId, {child->mId, QPointF(1, 2), u"then"_s});
    TVLReference reference;
    reference.setInternalLink(number);
    node->mReferences = {reference};
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    const TVLProjectNodeProperties &read = *reread.mRoot->mChildren.at(0);
    QVERIFY(read == *node);
}

void TstBinderHostile::numbersBeyondTheLimitsAreNoError()
{
    const DebugLog log;
    const QByteArray huge = "99999999999999999999";
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem("<MetaData><LabelID>" + huge + "</LabelID><StatusID>-" + huge
                   + "</StatusID></MetaData>"
                     "<TextSettings><Target Buffer='"
                   + huge + "'>" + huge
                   + "</Target></TextSettings>"
                     "<MediaSettings><CurrentPDFPage>"
                   + huge
                   + "</CurrentPDFPage><ImageScaleFactor>1e999"
                     "</ImageScaleFactor></MediaSettings><References><Reference BinderID='"
                   + huge + "'/></References><DefaultChildTemplateID>" + huge
                   + "</DefaultChildTemplateID>"
                     "<CorkboardAndOutliner><SelectedSubdocumentIDs>"
                   + huge + ",3</SelectedSubdocumentIDs></CorkboardAndOutliner>"),
        "<LabelSettings><DefaultLabelID>" + huge
            + "</DefaultLabelID></LabelSettings><TemplateFolderID>" + huge
            + "</TemplateFolderID>")));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mLabelId, -1);
    QCOMPARE(node->mStatusId, -1);
    QCOMPARE(node->mCurrentPdfPage, 1);
    QCOMPARE(node->mImageScaleFactor, 1.0);
    QCOMPARE(node->mReferences.value(0).mInternalLink, -1);
    QCOMPARE(node->mDefaultChildTemplateId, -1);
    QCOMPARE(node->mSelectedSubdocumentIds, QSet<int>{3});
    QCOMPARE(project.mDefaultLabelId, -1);
}

void TstBinderHostile::whatSurvivesOfATitle_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("survives");
    const auto add = [](const char *name, const QString &title, const QString &survives) {
        QTest::newRow(name) << title << survives;
    };
    const QString high = QChar(0xd83d);
    const QString low = QChar(0xde00);
    const QString unknown(QChar::ReplacementCharacter);
    const auto keep = [&](const char *name, const QString &title) { add(name, title, title); };
    keep("plain", u"Title"_s);
    keep("blanks at both ends", u"  a  "_s);
    keep("tabs", u"\ta\tb\t"_s);
    keep("line breaks", u"\na\n\nb\n"_s);
    keep("markup", u"<a href='x'>&amp;\"]]>"_s);
    keep("delete and later controls", u"\u007f\u0080\u0085\u009f"_s);
    keep("line and paragraph separators", u"\u2028\u2029"_s);
    keep("byte order mark", u"\ufeffa\ufeff"_s);
    keep("zero width and direction", u"\u200b\u200d\u202e\u2066"_s);
    keep("private use", u"\ue000\uf8ff"_s);
    keep("noncharacters that XML takes", u"\ufdd0\ufdef"_s);
    keep("other planes", u"\U00010000\U0001F600\U0010FFFD"_s);
    keep("replacement character", unknown);
    keep("combining", u"e\u0301"_s);
    keep("carriage returns", u"a\rb\r\nc\r"_s);
    add("controls go", u"a\u0001\u0002\u0008\u000b\u000c\u000e\u001fb"_s, u"ab"_s);
    add("zero goes", u"a"_s + QChar(0) + u"b"_s, u"ab"_s);
    add("nothing but controls", u"\u0001\u0002"_s, {});
    add("high half alone", u"a"_s + high + u"b"_s, u"a"_s + unknown + u"b"_s);
    add("low half alone", u"a"_s + low + u"b"_s, u"a"_s + unknown + u"b"_s);
    add("halves the wrong way round", low + high, unknown + unknown);
    add("high half at the end", u"a"_s + high, u"a"_s + unknown);
    add("low half at the start", low + u"a"_s, unknown + u"a"_s);
    add("two high halves and a low one", high + high + low, unknown + u"\U0001F600"_s);
    add("a pair and a low half", high + low + low, u"\U0001F600"_s + unknown);
    add("noncharacters that XML refuses", u"a"_s + QChar(0xfffe) + QChar(0xffff) + u"b"_s,
        u"a"_s + unknown + unknown + u"b"_s);
    add("everything at once", nastyText(),
        u"a\t\n\r"_s + unknown + unknown + unknown + unknown + unknown);
}

void TstBinderHostile::whatSurvivesOfATitle()
{
    QFETCH(QString, title);
    QTEST(titleRead(title), "survives");
}

void TstBinderHostile::everyCodePointInATitleLeavesTheBinderReadable()
{
    constexpr char32_t PerTitle = 0x1000;
    TestBinderProject project;
    fillProject(&project, 0x110000 / PerTitle, false);
    QStringList expected;
    for (int item = 0; item < project.mRoot->mChildren.size(); ++item) {
        QString title;
        QString survivor;
        for (char32_t i = 0; i < PerTitle; ++i) {
            // Something between them, so that no two halves meet.
            title += textOf(char32_t(item) * PerTitle + i) + u'-';
            survivor += expectedOf(char32_t(item) * PerTitle + i) + u'-';
        }
        project.mRoot->mChildren.at(item)->mTitle = title;
        expected.append(survivor);
    }
    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(project.write(), &error), qPrintable(error));
    for (int item = 0; item < expected.size(); ++item)
        QVERIFY2(reread.mRoot->mChildren.at(item)->mTitle == expected.at(item),
                 qPrintable(u"around U+%1"_s.arg(item * int(PerTitle), 0, 16)));
}

void TstBinderHostile::everyUtf16UnitNextToEveryOtherKindLeavesTheBinderReadable()
{
    const char16_t kinds[] = {u'a',   u'\0',  u'\x1f', u'\t',  u'\n',  u'\r',  0x7f,   0x85,
                              0xd800, 0xdbff, 0xdc00,  0xdfff, 0xfdd0, 0xfeff, 0xfffd, 0xfffe,
                              0xffff, u'<',   u'&',    u']',   u'>',   u' '};
    TestBinderProject project;
    fillProject(&project, int(std::size(kinds) * std::size(kinds)), false);
    int item = 0;
    for (const char16_t first : kinds) {
        for (const char16_t second : kinds) {
            QString title;
            for (const char16_t third : kinds)
                title += QString(QChar(first)) + QChar(second) + QChar(third);
            project.mRoot->mChildren.at(item++)->mTitle = title;
        }
    }
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    // What was read can be written as it is.
    TestBinderProject again;
    QVERIFY(again.read(reread.write()));
    for (int i = 0; i < item; ++i)
        QCOMPARE(again.mRoot->mChildren.at(i)->mTitle, reread.mRoot->mChildren.at(i)->mTitle);
}

void TstBinderHostile::nastyTextsAnywhereLeaveTheBinderReadable_data()
{
    QTest::addColumn<int>("type");
    for (int type = 0; type < 10; ++type)
        QTest::addRow("%d", type) << type;
}

void TstBinderHostile::nastyTextsAnywhereLeaveTheBinderReadable()
{
    QFETCH(int, type);
    const QString nasty = nastyText();
    TestBinderProject project;
    fillProject(&project, 2, true);
    TVLProjectNode *node = project.mRoot->mChildren.at(0);
    node->mNodeType = TVL::NodeType(type);
    node->mTitle = node->mFileExtension = node->mIconFileName = nasty;
    node->mIndexCardImageFileExtension = node->mPreferredExternalApplication = nasty;
    node->mTextMode = node->mOriginalUrl = nasty;
    node->mTypingAttributes = nasty.toUtf8();
    node->mCustomMetaData = {{nasty, nasty}, {u"k"_s + nasty, nasty}};
    TVLReference internal;
    internal.mTitle = nasty;
    internal.setInternalLink(1);
    TVLReference external;
    external.mTitle = nasty;
    external.setUrl(QUrl(u"x:"_s + nasty));
    node->mReferences = {internal, external};
    node->mFreeformPositions.insert(1, {1, QPointF(1, 2), nasty});
    project.mInfo.mDevice = project.mLabelTitle = project.mStatusTitle = nasty;
    project.mLabels = {TVLLabel{1, nasty, Qt::red}};
    project.mStatusItems = {TVLStatusItem{1, nasty}};
    TVLCollectionMetaData search;
    search.mType = TVL::SavedSearchCollection;
    search.mId = search.mTitle = search.mSearchText = nasty;
    search.mColor = Qt::red;
    project.mCollections = {search};

    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(project.write(), &error), qPrintable(error));
    QCOMPARE(reread.mRoot->mChildren.size(), 1);
    QCOMPARE(reread.mRoot->mChildren.at(0)->mReferences.size(), 2);
    QCOMPARE(reread.mCollections.size(), 1);
    // By now there is nothing left that would be lost.
    const QByteArray settled = reread.write();
    TestBinderProject again;
    QVERIFY(again.read(settled));
    QCOMPARE(again.write(), settled);
}

void TstBinderHostile::lineBreaksInAttributesSurvive()
{
    TestBinderProject project;
    fillProject(&project, 0, false);
    project.mInfo.mDevice = u"\ta\nb\rc\r\nd \" ' < > & "_s;
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    QCOMPARE(reread.mInfo.mDevice, project.mInfo.mDevice);
}

void TstBinderHostile::aCustomFieldWithoutNameLeavesTheBinderReadable_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("empty") << QString();
    QTest::newRow("nothing but controls") << u"\u0001\u0002"_s;
}

void TstBinderHostile::aCustomFieldWithoutNameLeavesTheBinderReadable()
{
    QFETCH(QString, key);
    TestBinderProject project;
    fillProject(&project, 1, false);
    project.mRoot->mChildren.at(0)->mCustomMetaData = {{key, u"lost"_s}, {u"place"_s, u"Rome"_s}};
    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(project.write(), &error), qPrintable(error));
    QCOMPARE(reread.mRoot->mChildren.at(0)->mCustomMetaData.value(u"place"_s), u"Rome"_s);
}

TVL_TEST(TstBinderHostile)
#include "tst_binderhostile.moc"
