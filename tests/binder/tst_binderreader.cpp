#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Properties = TVLProjectNodeProperties;

/** A project that notes what the reader says to it, in order. */
class SpyProject : public TestBinderProject
{
public:
    TVLBinderSections *beginBinderRead() override
    {
        mCalls.append(u"begin"_s);
        return TestBinderProject::beginBinderRead();
    }
    void endBinderRead() override
    {
        mCalls.append(u"end"_s);
        TestBinderProject::endBinderRead();
    }
    void setInfo(const TVLProjectInfo &info) override
    {
        mCalls.append(u"info"_s);
        TestBinderProject::setInfo(info);
    }
    void enterNodes(const QList<TVLProjectNode *> &nodes) override
    {
        for (const TVLProjectNode *node : nodes)
            mCalls.append(u"node %1"_s.arg(node->mId));
        mWasReading = mIsReading;
        TestBinderProject::enterNodes(nodes);
    }

    QStringList mCalls;
    bool mWasReading = false;
};

/** What sampleItem() without content reads as. */
Properties plainProperties()
{
    Properties properties;
    properties.mId = 1;
    properties.mUuid = sampleUuid();
    properties.mCreated = sampleCreated();
    properties.mModified = sampleModified();
    properties.mIncludeInCompile = false;
    return properties;
}

/** A row of an item's content, and what it changes in the record that is read. */
void addContentRow(
    const char *name, const QByteArray &content,
    const std::function<void(Properties *)> &change = [](Properties *) {})
{
    Properties expected = plainProperties();
    change(&expected);
    QTest::newRow(name) << content << expected;
}

void addContentColumns()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Properties>("expected");
}

/** Reads the row's content inside an item. */
void checkContentRow()
{
    QFETCH(QByteArray, content);
    QFETCH(Properties, expected);
    TestBinderProject project;
    QString error;
    QVERIFY2(project.read(binderXml(sampleItem(content)), &error), qPrintable(error));
    QCOMPARE(project.mRoot->mChildren.size(), 1);
    const Properties &read = *project.mRoot->mChildren.constFirst();
    QVERIFY(read == expected);
}

/** A row for a flag's element, for every text that isn't the word for true. */
void addFlagRows(const char *element, const QByteArray &before, const QByteArray &after,
                 bool Properties::*flag)
{
    const auto add = [&](const QByteArray &text, bool value) {
        const QByteArray xml = before + '<' + element + '>' + text + "</" + element + '>' + after;
        const QByteArray name = QByteArray(element) + " '" + text + '\'';
        addContentRow(name.constData(), xml,
                      [=](Properties *expected) { expected->*flag = value; });
    };
    add("Yes", true);
    for (const char *text : {"yes", "YES", "Yes ", " Yes", "true", "1", "No", "Y", ""})
        add(text, false);
}

TVLReference referenceOf(const QString &title, int id, const QUrl &url = {})
{
    TVLReference reference;
    reference.mTitle = title;
    reference.mInternalLink = id;
    reference.mUrl = url;
    return reference;
}

QString unexpectedTag(const QString &found, int line, const QString &expected)
{
    return u"Unexpected tag %1 on line %2.  Expected tag %3"_s.arg(found).arg(line).arg(expected);
}

/** A reader that stands on the first element of a text. */
class ElementReader : public TVLBinderReader
{
public:
    explicit ElementReader(const QByteArray &xml)
    {
        addData(xml);
        readNextStartElement();
    }
};

} // namespace

class TstBinderReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anElementInATextIsSkipped();
    void entitiesOfAFileAreNotExpanded();
    // Document
    void theVersionTextDecidesTheGrammar_data();
    void theVersionTextDecidesTheGrammar();
    void theRootElementSaysWhatTheProjectIs();
    void theCreatorIsIgnored();
    void flagsOfTheRootAreCaseSensitive();
    void aBadModificationDateOfTheRootIsNoError();
    void aBinderWithoutVersionFails_data();
    void aBinderWithoutVersionFails();
    void anotherRootElementFails();
    void anEmptyFileFails_data();
    void anEmptyFileFails();
    void projectInfoOfAFileNeedsItsRootElementOnly();
    void projectInfoOfNoFileIsEmpty();
    void projectInfoIsThatOfTheCurrentElement();
    void theStartIsReadWithoutAProject();
    void theProjectIsToldOfTheReadInOrder();
    void theProjectIsToldOfTheEndOfAFailedRead();
    void aReadEmptiesTheMapsOfTheProject();
    void sectionsMayComeInAnyOrder();
    void aSectionThatIsAbsentLeavesTheProjectAlone();
    void anUnknownSectionIsSkippedWithADebugLine();
    void whatFollowsTheRootElementIsNotRead();
    void aDocumentTypeBeforeTheRootIsPassedOver();

    // Items
    void identityDependsOnTheGrammar_data();
    void identityDependsOnTheGrammar();
    void theFirstGrammarGivesFreshUuids();
    void theThirdGrammarLeavesTheIdMapEmpty();
    void theLaterOfTwoItemsWithOneIdentityIsInTheMaps();
    void idsAtTheLimits_data();
    void idsAtTheLimits();
    void anUuidIsReadInAnyOfItsForms_data();
    void anUuidIsReadInAnyOfItsForms();
    void anItemHasTheTypeOfItsWord_data();
    void anItemHasTheTypeOfItsWord();
    void aBadCreationDateLeavesAnInvalidDate();
    void aMissingDateLeavesAnInvalidDate();
    void itemsKeepTheirOrderAndPlace();
    void whatFollowsTheChildrenStillBelongsToTheItem();
    void severalListsOfChildrenAddUp();
    void anItemThatIsNoneInTheBinderFails();
    void anItemThatIsNoneAmongChildrenFails();
    void aListOfItemsMustBeABinder();
    void anItemMustBeABinderItem();
    void anItemCutOffFailsWithTheTagError();
    void anErrorInsideAnItemKeepsItsOwnText();
    void nodesOfAFailedReadStayInTheTree();
    void anItemIsReadWithoutAProject();

    // Content of items
    void anItemWithoutTheCompileFlagReadsAsExcluded();
    void aTitleIsReadAsItStands_data();
    void aTitleIsReadAsItStands() { checkContentRow(); }
    void metaDataIsRead_data();
    void metaDataIsRead() { checkContentRow(); }
    void flagsAreTrueOnlyForYes_data();
    void flagsAreTrueOnlyForYes() { checkContentRow(); }
    void theOlderNameOfThePageBreakIsReadToo_data();
    void theOlderNameOfThePageBreakIsReadToo() { checkContentRow(); }
    void aSelectionThatIsNoneLeavesTheFieldAlone_data();
    void aSelectionThatIsNoneLeavesTheFieldAlone() { checkContentRow(); }
    void customMetaDataIsRead_data();
    void customMetaDataIsRead() { checkContentRow(); }
    void customMetaDataWithoutFieldFails();
    void customMetaDataElsewhereFails();
    void textSettingsAreRead_data();
    void textSettingsAreRead() { checkContentRow(); }
    void aTargetIsRead_data();
    void aTargetIsRead() { checkContentRow(); }
    void mediaSettingsAreRead_data();
    void mediaSettingsAreRead() { checkContentRow(); }
    void settingsAreTakenOnAnyItem_data();
    void settingsAreTakenOnAnyItem();
    void theCorkboardIsRead_data();
    void theCorkboardIsRead() { checkContentRow(); }
    void aPositionWithoutTimeGetsTheCurrentTime();
    void corkboardSettingsReplaceOldPositions();
    void corkboardSettingsElsewhereFail();
    void keywordsAreRead_data();
    void keywordsAreRead() { checkContentRow(); }
    void aKeywordThatIsNoNumberFails_data();
    void aKeywordThatIsNoNumberFails();
    void keywordsElsewhereFail();
    void referencesAreRead_data();
    void referencesAreRead() { checkContentRow(); }
    void referencesElsewhereFail();
    void theTemplateOfChildrenIsRead_data();
    void theTemplateOfChildrenIsRead() { checkContentRow(); }
    void unknownElementsInAnItemAreSkipped_data();
    void unknownElementsInAnItemAreSkipped() { checkContentRow(); }
    void elementsOfAnItemMayComeInAnyOrder();

    // Errors
    void anErrorIsLoggedWithItsPlaces();
    void theTagErrorNamesFoundAndExpected();
};

void TstBinderReader::theVersionTextDecidesTheGrammar_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<int>("grammar");
    QTest::newRow("first") << QByteArray("1.0") << 1;
    QTest::newRow("second") << QByteArray("1.5") << 2;
    QTest::newRow("third") << QByteArray("2.0") << 3;
    QTest::newRow("unknown") << QByteArray("9.9") << 0;
    QTest::newRow("word") << QByteArray("new") << 0;
}

void TstBinderReader::theVersionTextDecidesTheGrammar()
{
    QFETCH(QByteArray, version);
    QFETCH(int, grammar);
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, {}, version)));
    QCOMPARE(int(project.mInfo.mBinderVersion), grammar);
    QCOMPARE(project.mInfo.mVersion, QString::fromLatin1(version));

    TVLBinderReader reader;
    QCOMPARE(int(reader.binderVersion()), 0);
    reader.addData(binderXml({}, {}, version));
    QVERIFY(reader.readStartDocument(nullptr));
    QCOMPARE(int(reader.binderVersion()), grammar);
    QCOMPARE(reader.versionText(), QString::fromLatin1(version));
}

void TstBinderReader::theRootElementSaysWhatTheProjectIs()
{
    TestBinderProject project;
    QVERIFY(project.read(
        "<TavelinorProject Template='Yes' Version='1.5' Device='Desk' NewProject='Yes' "
        "Modified='2021-02-03 04:05:06 +0000' "
        "ModID='11111111-1111-4111-8111-111111111111' "
        "SyncID='22222222-2222-4222-8222-222222222222' "
        "Checksums='33333333-3333-4333-8333-333333333333'/>"));
    TVLProjectInfo expected;
    expected.mBinderVersion = TVL::BinderVersion2;
    expected.mVersion = u"1.5"_s;
    expected.mDevice = u"Desk"_s;
    expected.mModified = sampleCreated();
    expected.mModId = QUuid(u"11111111-1111-4111-8111-111111111111"_s);
    expected.mSyncId = QUuid(u"22222222-2222-4222-8222-222222222222"_s);
    expected.mChecksumsId = QUuid(u"33333333-3333-4333-8333-333333333333"_s);
    expected.mIsTemplate = true;
    expected.mIsNewProject = true;
    QVERIFY(project.mInfo == expected);
}

void TstBinderReader::theCreatorIsIgnored()
{
    TestBinderProject project;
    QVERIFY(project.read("<TavelinorProject Version='1.5' Creator='TVLLIN-7'/>"));
    TVLProjectInfo expected;
    expected.mBinderVersion = TVL::BinderVersion2;
    expected.mVersion = u"1.5"_s;
    QVERIFY(project.mInfo == expected);
}

void TstBinderReader::flagsOfTheRootAreCaseSensitive()
{
    TestBinderProject project;
    QVERIFY(project.read("<TavelinorProject Version='1.5' Template='yes' NewProject='YES'/>"));
    QVERIFY(!project.mInfo.mIsTemplate);
    QVERIFY(!project.mInfo.mIsNewProject);
}

void TstBinderReader::aBadModificationDateOfTheRootIsNoError()
{
    TestBinderProject project;
    QTest::ignoreMessage(QtDebugMsg, "Failed to parse date time(was file name= false ): \"today\"");
    QVERIFY(project.read("<TavelinorProject Version='1.5' Modified='today'/>"));
    QVERIFY(!project.mInfo.mModified.isValid());
}

void TstBinderReader::aBinderWithoutVersionFails_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("none") << QByteArray("<TavelinorProject><Binder/></TavelinorProject>");
    QTest::newRow("empty") << QByteArray(
        "<TavelinorProject Version=''><Binder/></TavelinorProject>");
    QTest::newRow("other case") << QByteArray("<TavelinorProject version='1.5'/>");
}

void TstBinderReader::aBinderWithoutVersionFails()
{
    QFETCH(QByteArray, xml);
    TestBinderProject project;
    QVERIFY(!project.read(xml));
}

void TstBinderReader::anotherRootElementFails()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read("<Project Version='1.5'><Binder/></Project>", &error));
    QCOMPARE(error, unexpectedTag(u"Project"_s, 1, u"TavelinorProject"_s));
}

void TstBinderReader::anEmptyFileFails_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blanks") << QByteArray(" \n ");
    QTest::newRow("declaration") << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    QTest::newRow("comment") << QByteArray("<!-- nothing -->");
    QTest::newRow("no XML") << QByteArray("PK\003\004");
    QTest::newRow("zeros") << QByteArray(100, '\0');
}

void TstBinderReader::anEmptyFileFails()
{
    QFETCH(QByteArray, xml);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(!project.read(xml));
    QVERIFY(project.mRoot->mChildren.isEmpty());
}

void TstBinderReader::projectInfoOfAFileNeedsItsRootElementOnly()
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"a.tavelx"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<TavelinorProject Version='1.0' Device='Desk'><Binder><Cut");
    file.close();
    const TVLProjectInfo info = TVLBinderReader::readProjectInfo(file.fileName());
    QCOMPARE(int(info.mBinderVersion), 1);
    QCOMPARE(info.mVersion, u"1.0"_s);
    QCOMPARE(info.mDevice, u"Desk"_s);
}

void TstBinderReader::projectInfoOfNoFileIsEmpty()
{
    const QTemporaryDir directory;
    QVERIFY(TVLBinderReader::readProjectInfo(directory.filePath(u"none.tavelx"_s))
            == TVLProjectInfo());
    QVERIFY(TVLBinderReader::readProjectInfo(directory.path()) == TVLProjectInfo());
    QVERIFY(TVLBinderReader::readProjectInfo(QString()) == TVLProjectInfo());
}

void TstBinderReader::projectInfoIsThatOfTheCurrentElement()
{
    ElementReader reader(
        "<TavelinorProject Version='1.5' Device='Desk'><Binder/></TavelinorProject>");
    QCOMPARE(reader.readProjectInfo().mDevice, u"Desk"_s);
    QCOMPARE(reader.readProjectInfo().mDevice, u"Desk"_s);
    QCOMPARE(reader.name(), u"TavelinorProject");
}

void TstBinderReader::theStartIsReadWithoutAProject()
{
    TVLBinderReader reader;
    reader.addData("<TavelinorProject Version=''/>");
    QVERIFY(!reader.readStartDocument(nullptr));
}

void TstBinderReader::theProjectIsToldOfTheReadInOrder()
{
    SpyProject project;
    const QByteArray children =
        "<Children>" + sampleItem({}, "ID='2'") + sampleItem({}, "ID='3'") + "</Children>";
    const DebugLog log;
    QVERIFY(project.read(binderXml(sampleItem(children) + sampleItem({}, "ID='4'"))));
    QCOMPARE(project.mCalls,
             QStringList({u"begin"_s, u"info"_s, u"node 1"_s, u"node 2"_s, u"node 3"_s, u"node 4"_s,
                          u"end"_s}));
    QVERIFY(project.mWasReading);
    QVERIFY(!project.mIsReading);
}

void TstBinderReader::theProjectIsToldOfTheEndOfAFailedRead()
{
    const DebugLog log;
    SpyProject project;
    QVERIFY(!project.read(
        "<TavelinorProject Version='1.5'><Binder><Foo/></Binder></TavelinorProject>"));
    QCOMPARE(project.mCalls, QStringList({u"begin"_s, u"info"_s, u"end"_s}));
    QVERIFY(!project.mIsReading);
}

void TstBinderReader::aReadEmptiesTheMapsOfTheProject()
{
    TestBinderProject project;
    project.mIdMap.insert(99, QUuid::createUuid());
    project.mUuidMap.insert(QUuid::createUuid(), project.mRoot.get());
    QVERIFY(project.read(binderXml(sampleItem({}))));
    QCOMPARE(project.mIdMap, (QMap<int, QUuid>{{1, sampleUuid()}}));
    QCOMPARE(project.mUuidMap,
             (QMap<QUuid, TVLProjectNode *>{{sampleUuid(), project.mRoot->mChildren.at(0)}}));
}

void TstBinderReader::sectionsMayComeInAnyOrder()
{
    TestBinderProject project;
    QVERIFY(project.read("<TavelinorProject Version='1.5'>"
                         "<Collections><Collection ID='c'/></Collections>"
                         "<StatusSettings><Title>S</Title></StatusSettings>"
                         "<LabelSettings><Title>L</Title></LabelSettings><Binder>"
                         + sampleItem({}) + "</Binder></TavelinorProject>"));
    QCOMPARE(project.mRoot->childIDs(), QList<int>{1});
    QCOMPARE(project.mStatusTitle, u"S"_s);
    QCOMPARE(project.mLabelTitle, u"L"_s);
    QCOMPARE(project.mCollections.size(), 1);
}

void TstBinderReader::aSectionThatIsAbsentLeavesTheProjectAlone()
{
    TestBinderProject project;
    project.mLabelTitle = u"L"_s;
    project.mLabels = {TVLLabel{1, u"One"_s, {}}};
    project.mDefaultLabelId = 1;
    project.mStatusTitle = u"S"_s;
    project.mStatusItems = {TVLStatusItem{2, u"Two"_s}};
    project.mDefaultStatusId = 2;
    project.mCollections = {TVLCollectionMetaData()};
    project.mKeywords = {TVLBinderKeyword()};
    QVERIFY(project.read("<TavelinorProject Version='1.5'/>"));
    QVERIFY(project.mRoot->mChildren.isEmpty());
    QCOMPARE(project.mLabelTitle, u"L"_s);
    QCOMPARE(project.mLabels.size(), 1);
    QCOMPARE(project.mDefaultLabelId, 1);
    QCOMPARE(project.mStatusTitle, u"S"_s);
    QCOMPARE(project.mStatusItems.size(), 1);
    QCOMPARE(project.mDefaultStatusId, 2);
    QCOMPARE(project.mCollections.size(), 1);
}

void TstBinderReader::anUnknownSectionIsSkippedWithADebugLine()
{
    TestBinderProject project;
    QTest::ignoreMessage(QtDebugMsg, "Skipped Binder XML tag: \"Foo\"");
    QTest::ignoreMessage(QtDebugMsg, "Skipped Binder XML tag: \"binder\"");
    QVERIFY(project.read(binderXml({},
                                   "<Foo a='b'><Binder><Bar/>text</Binder></Foo><binder/>"
                                   "<LabelSettings><Title>L</Title></LabelSettings>")));
    QCOMPARE(project.mLabelTitle, u"L"_s);
}

void TstBinderReader::whatFollowsTheRootElementIsNotRead()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({})) + "<more"));
    QCOMPARE(project.mRoot->childIDs(), QList<int>{1});
}

void TstBinderReader::aDocumentTypeBeforeTheRootIsPassedOver()
{
    TestBinderProject project;
    QVERIFY(project.read("<?xml version='1.0'?>\n<!-- note --><!DOCTYPE TavelinorProject>\n"
                         "<TavelinorProject Version='1.5'><!-- note --><Binder><?do it?>"
                         + sampleItem("<!-- note --><Title>A<!-- note -->B</Title>")
                         + "</Binder></TavelinorProject>"));
    QCOMPARE(project.mRoot->mChildren.at(0)->mTitle, u"AB"_s);
}

void TstBinderReader::identityDependsOnTheGrammar_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<int>("id");
    QTest::addColumn<QUuid>("uuid");
    const QByteArray both = "ID='7' UUID='0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9'";
    const QByteArray uuidAlone = "UUID='0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9'";
    const QByteArray badId = "ID='x' " + uuidAlone;
    QTest::newRow("second, both") << QByteArray("1.5") << both << 7 << sampleUuid();
    QTest::newRow("second, uuid") << QByteArray("1.5") << uuidAlone << -1 << sampleUuid();
    QTest::newRow("second, bad id") << QByteArray("1.5") << badId << -1 << sampleUuid();
    QTest::newRow("second, id") << QByteArray("1.5") << QByteArray("ID='7'") << 7 << QUuid();
    QTest::newRow("second, bad uuid")
        << QByteArray("1.5") << QByteArray("ID='7' UUID='x'") << 7 << QUuid();
    QTest::newRow("second, none") << QByteArray("1.5") << QByteArray() << -1 << QUuid();
    QTest::newRow("third, both") << QByteArray("2.0") << both << -1 << sampleUuid();
    QTest::newRow("third, uuid") << QByteArray("2.0") << uuidAlone << -1 << sampleUuid();
    QTest::newRow("third, id") << QByteArray("2.0") << QByteArray("ID='7'") << -1 << QUuid();
    QTest::newRow("unknown, both") << QByteArray("9.9") << both << -1 << QUuid();
}

void TstBinderReader::identityDependsOnTheGrammar()
{
    QFETCH(QByteArray, version);
    QFETCH(QByteArray, attributes);
    QFETCH(int, id);
    QFETCH(QUuid, uuid);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, attributes), {}, version)));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mId, id);
    QCOMPARE(node->mUuid, uuid);
    QCOMPARE(project.mIdMap.contains(7), id == 7);
    QCOMPARE(project.mUuidMap.value(uuid), node);
}

void TstBinderReader::theFirstGrammarGivesFreshUuids()
{
    const QByteArray xml =
        binderXml(sampleItem({}) + sampleItem({}, sampleAttributes() + " x='y'"), {}, "1.0");
    TestBinderProject first;
    TestBinderProject second;
    QVERIFY(first.read(xml));
    QVERIFY(second.read(xml));
    QSet<QUuid> uuids = {sampleUuid(), QUuid()};
    for (const TestBinderProject *project : {&first, &second}) {
        for (const TVLProjectNode *node : std::as_const(project->mRoot->mChildren)) {
            QCOMPARE(node->mId, 1);
            QVERIFY(!uuids.contains(node->mUuid));
            uuids.insert(node->mUuid);
        }
    }
    QCOMPARE(uuids.size(), 6);
}

void TstBinderReader::theThirdGrammarLeavesTheIdMapEmpty()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem("<Children>" + sampleItem({}, sampleAttributes()) + "</Children>"), {}, "2.0")));
    QVERIFY(project.mIdMap.isEmpty());
    tvlForEachNode(project.mRoot.get(),
                   [](const TVLProjectNode *node) { QCOMPARE(node->mId, -1); });
    QCOMPARE(project.mUuidMap.size(), 1);
}

void TstBinderReader::theLaterOfTwoItemsWithOneIdentityIsInTheMaps()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml(sampleItem({}) + sampleItem({})
                  + sampleItem({}, "ID='1' UUID='00000000-0000-4000-8000-000000000001'"))));
    QCOMPARE(project.mRoot->childIDs(), QList<int>({1, 1, 1}));
    QCOMPARE(project.mUuidMap.size(), 2);
    QCOMPARE(project.mUuidMap.value(sampleUuid()), project.mRoot->mChildren.at(1));
    QCOMPARE(project.mIdMap.size(), 1);
    QCOMPARE(project.mIdMap.value(1), project.mRoot->mChildren.at(2)->mUuid);
}

void TstBinderReader::idsAtTheLimits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("inMap");
    QTest::newRow("zero") << QByteArray("0") << 0 << true;
    QTest::newRow("greatest") << QByteArray("2147483647") << 2147483647 << true;
    QTest::newRow("too great") << QByteArray("2147483648") << -1 << false;
    QTest::newRow("far too great") << QByteArray(400, '9') << -1 << false;
    QTest::newRow("minus one") << QByteArray("-1") << -1 << false;
    QTest::newRow("too small") << QByteArray("-2147483649") << -1 << false;
    QTest::newRow("empty") << QByteArray() << -1 << false;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << -1 << false;
    QTest::newRow("fraction") << QByteArray("1.0") << -1 << false;
    QTest::newRow("leading zeros") << QByteArray("0007") << 7 << true;
}

void TstBinderReader::idsAtTheLimits()
{
    QFETCH(QByteArray, text);
    QFETCH(int, id);
    QFETCH(bool, inMap);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, "ID='" + text + "'"))));
    QCOMPARE(project.mRoot->childIDs(), QList<int>{id});
    QCOMPARE(project.mIdMap.contains(id), inMap);
    QCOMPARE(project.mIdMap.size(), inMap ? 1 : 0);
}

void TstBinderReader::anUuidIsReadInAnyOfItsForms_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("upper case") << QByteArray("0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9");
    QTest::newRow("lower case") << QByteArray("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9");
    QTest::newRow("braces") << QByteArray("{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}");
}

void TstBinderReader::anUuidIsReadInAnyOfItsForms()
{
    QFETCH(QByteArray, text);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, "UUID='" + text + "'"))));
    QCOMPARE(project.mRoot->mChildren.at(0)->mUuid, sampleUuid());
}

void TstBinderReader::anItemHasTheTypeOfItsWord_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<int>("type");
    const char *words[] = {"DraftFolder", "ResearchFolder", "TrashFolder", "Folder",
                           "Text",        "Image",          "PDF",         "Media",
                           "WebArchive",  "Other"};
    for (int type = 0; type < 10; ++type)
        QTest::newRow(words[type]) << QByteArray("Type='") + words[type] + '\'' << type;
    QTest::newRow("unknown") << QByteArray("Type='Unknown'") << 4;
    QTest::newRow("lower case") << QByteArray("Type='folder'") << 4;
    QTest::newRow("empty") << QByteArray("Type=''") << 4;
    QTest::newRow("missing") << QByteArray() << 4;
}

void TstBinderReader::anItemHasTheTypeOfItsWord()
{
    QFETCH(QByteArray, attribute);
    QFETCH(int, type);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, attribute))));
    QCOMPARE(int(project.mRoot->mChildren.at(0)->mNodeType), type);
}

void TstBinderReader::aBadCreationDateLeavesAnInvalidDate()
{
    TestBinderProject project;
    QTest::ignoreMessage(QtDebugMsg,
                         "Failed to parse date time(was file name= false ): \"long ago\"");
    QVERIFY(project.read(
        binderXml(sampleItem({}, "Created='long ago' Modified='2022-12-31 23:59:58 +0000'"))));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QVERIFY(!node->mCreated.isValid());
    QCOMPARE(node->mModified, sampleModified());
}

void TstBinderReader::aMissingDateLeavesAnInvalidDate()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}, "Created='2021-02-03 04:05:06 +0000'"))));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mCreated, sampleCreated());
    QVERIFY(!node->mModified.isValid());
}

void TstBinderReader::itemsKeepTheirOrderAndPlace()
{
    const DebugLog log;
    const auto item = [](const QByteArray &id, const QByteArray &children = {}) {
        return sampleItem(children.isEmpty() ? children : "<Children>" + children + "</Children>",
                          "ID='" + id + '\'');
    };
    TestBinderProject project;
    QVERIFY(project.read(binderXml(item("5", item("3", item("9")) + item("4")) + item("1"))));
    QCOMPARE(project.mRoot->childIDs(), QList<int>({5, 1}));
    QCOMPARE(project.mRoot->mChildren.at(0)->childIDs(), QList<int>({3, 4}));
    const TVLProjectNode *deepest = project.mRoot->findNodeViaRowPositions({0, 0, 0});
    QVERIFY(deepest);
    QCOMPARE(deepest->mId, 9);
    QCOMPARE(deepest->mParent->mId, 3);
}

void TstBinderReader::whatFollowsTheChildrenStillBelongsToTheItem()
{
    const QByteArray child = sampleItem("<Title>Child</Title>", "ID='2'");
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem("<Children>" + child
                                              + "</Children><Title>Parent</Title>"
                                                "<Keywords><KeywordID>3</KeywordID></Keywords>"))));
    const TVLProjectNode *parent = project.mRoot->mChildren.at(0);
    QCOMPARE(parent->mTitle, u"Parent"_s);
    QCOMPARE(parent->mKeywords, QList<int>{3});
    QCOMPARE(parent->childIDs(), QList<int>{2});
    QCOMPARE(parent->mChildren.at(0)->mTitle, u"Child"_s);
}

void TstBinderReader::severalListsOfChildrenAddUp()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem("<Children>" + sampleItem({}, "ID='2'")
                                              + "</Children><Children/><Children>"
                                              + sampleItem({}, "ID='3'") + "</Children>"))));
    QCOMPARE(project.mRoot->childIDs(), QList<int>{1});
    QCOMPARE(project.mRoot->mChildren.at(0)->childIDs(), QList<int>({2, 3}));
}

void TstBinderReader::anItemThatIsNoneInTheBinderFails()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(binderXml("\n" + sampleItem({}) + "\n<Foo/>"), &error));
    QCOMPARE(error, unexpectedTag(u"Foo"_s, 4, u"BinderItem"_s));
}

void TstBinderReader::anItemThatIsNoneAmongChildrenFails()
{
    const DebugLog log;
    for (const QByteArray &position : {QByteArray(), sampleItem({})}) {
        TestBinderProject project;
        QString error;
        QVERIFY(!project.read(binderXml(sampleItem("<Children>" + position + "<Foo/></Children>")),
                              &error));
        QCOMPARE(error, unexpectedTag(u"Foo"_s, 2, u"BinderItem"_s));
    }
}

void TstBinderReader::aListOfItemsMustBeABinder()
{
    const DebugLog log;
    TestBinderProject project;
    ElementReader reader("<Foo/>");
    QVERIFY(!reader.readNodeList(project.mRoot.get()));
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"TavelinorProject"_s));
}

void TstBinderReader::anItemMustBeABinderItem()
{
    const DebugLog log;
    TestBinderProject project;
    ElementReader reader("<Foo/>");
    QVERIFY(!reader.readNode(project.mRoot.get()));
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"BinderItem"_s));
    QVERIFY(project.mRoot->mChildren.isEmpty());
}

void TstBinderReader::anItemCutOffFailsWithTheTagError()
{
    const QByteArray start =
        "<TavelinorProject Version='1.5'><Binder><BinderItem " + sampleAttributes() + ">";
    const QRegularExpression tagError(
        u"^Unexpected tag \\w* on line 1\\.  Expected tag BinderItem$"_s);
    const DebugLog log;
    for (const char *content : {"",
                                "<Title>",
                                "<Title>Half",
                                "<Title/>",
                                "<MetaData><LabelID>3",
                                "<MetaData>",
                                "<Children>",
                                "<Children><BinderItem>",
                                "<Children><BinderItem/>",
                                "<Children></Children>",
                                "<Keywords>",
                                "<Keywords><KeywordID>3",
                                "<Keywords><KeywordID>3</",
                                "<References><Reference BinderID='1'>",
                                "<References>Words",
                                "<CorkboardAndOutliner>",
                                "<CorkboardAndOutliner><CorkboardSettings>",
                                "<CorkboardAndOutliner><CorkboardSettings>"
                                "<FreeformCorkboardDocuments><IndexCardBinderID>1",
                                "<MetaData><CustomMetaData>",
                                "<MetaData><CustomMetaData><MetaDataItem><FieldID>a",
                                "<Children><BinderItem><Keywords><KeywordID>"}) {
        TestBinderProject project;
        QString error;
        QVERIFY(!project.read(start + content, &error));
        QVERIFY2(tagError.match(error).hasMatch(), qPrintable(error));
    }
}

void TstBinderReader::anErrorInsideAnItemKeepsItsOwnText()
{
    const DebugLog log;
    for (const auto &[content, expected] :
         {std::pair("<Keywords><KeywordID>x</KeywordID>", u"Expected integer text value"_s),
          std::pair("<MetaData><CustomMetaData><MetaDataItem/>",
                    u"Meta data item key not found"_s)}) {
        TestBinderProject project;
        QString error;
        QVERIFY(!project.read(
            "<TavelinorProject Version='1.5'><Binder><BinderItem>" + QByteArray(content), &error));
        QCOMPARE(error, expected);
    }
}

void TstBinderReader::nodesOfAFailedReadStayInTheTree()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(!project.read(binderXml(sampleItem("<Title>One</Title>") + "<Foo/>")));
    QCOMPARE(project.mRoot->mChildren.size(), 1);
    QCOMPARE(project.mRoot->mChildren.at(0)->mTitle, u"One"_s);
}

void TstBinderReader::anItemIsReadWithoutAProject()
{
    const DebugLog log;
    TestBinderProject project;
    ElementReader reader(sampleItem("<Title>One</Title>"));
    QVERIFY(reader.readNode(project.mRoot.get()));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mTitle, u"One"_s);
    // No root element said how items are identified.
    QCOMPARE(node->mId, -1);
    QVERIFY(node->mUuid.isNull());
}

void TstBinderReader::anItemWithoutTheCompileFlagReadsAsExcluded()
{
    QVERIFY(TVLProjectNode({1, QUuid()}, nullptr).mIncludeInCompile);
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem("<MetaData/>"))));
    QVERIFY(!project.mRoot->mChildren.at(0)->mIncludeInCompile);
}

void TstBinderReader::aTitleIsReadAsItStands_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &xml, const QString &title) {
        addContentRow(name, xml, [=](Properties *expected) { expected->mTitle = title; });
    };
    add("none", {}, {});
    add("empty", "<Title/>", {});
    add("plain", "<Title>One</Title>", u"One"_s);
    add("blanks", "<Title>  a  b </Title>", u"  a  b "_s);
    add("blanks alone", "<Title>   </Title>", u"   "_s);
    add("lines", "<Title>a\nb\tc</Title>", u"a\nb\tc"_s);
    add("escapes", "<Title>&lt;&amp;&gt;&quot;&apos;&#9731;</Title>", u"<&>\"'\u2603"_s);
    add("character data", "<Title>a<![CDATA[<b>&amp;]]>c</Title>", u"a<b>&amp;c"_s);
    add("other planes", "<Title>&#x1F600;</Title>", u"\U0001F600"_s);
    add("twice", "<Title>One</Title><Title>Two</Title>", u"Two"_s);
}

void TstBinderReader::metaDataIsRead_data()
{
    addContentColumns();
    using P = Properties;
    const auto add = [](const char *name, const QByteArray &xml,
                        const std::function<void(P *)> &change) {
        addContentRow(name, "<MetaData>" + xml + "</MetaData>", change);
    };
    add("nothing", {}, [](P *) {});
    add("label", "<LabelID>3</LabelID>", [](P *p) { p->mLabelId = 3; });
    add("label that is no number", "<LabelID>x</LabelID>", [](P *) {});
    add("status", "<StatusID>0</StatusID>", [](P *p) { p->mStatusId = 0; });
    add("status that is no number", "<StatusID/>", [](P *) {});
    add("file extension", "<FileExtension>png</FileExtension>",
        [](P *p) { p->mFileExtension = u"png"_s; });
    add("icon", "<IconFileName>Leaf</IconFileName>", [](P *p) { p->mIconFileName = u"Leaf"_s; });
    add("notes selection", "<NotesTextSelection>3,4</NotesTextSelection>", [](P *p) {
        p->mNotesTextSelection = {3, 4};
    });
    add("index card extension", "<IndexCardImageFileExtension>jpg</IndexCardImageFileExtension>",
        [](P *p) { p->mIndexCardImageFileExtension = u"jpg"_s; });
    add("application", "<PreferredExternalApplication>Viewer</PreferredExternalApplication>",
        [](P *p) { p->mPreferredExternalApplication = u"Viewer"_s; });
    add("custom meta-data",
        "<CustomMetaData><MetaDataItem><FieldID>a</FieldID><Value>b</Value></MetaDataItem></"
        "CustomMetaData>",
        [](P *p) {
            p->mCustomMetaData = {{u"a"_s, u"b"_s}};
        });
    add("any order", "<IconFileName>Leaf</IconFileName><StatusID>4</StatusID><LabelID>5</LabelID>",
        [](P *p) {
            p->mIconFileName = u"Leaf"_s;
            p->mStatusId = 4;
            p->mLabelId = 5;
        });
}

void TstBinderReader::flagsAreTrueOnlyForYes_data()
{
    addContentColumns();
    using P = Properties;
    const QByteArray meta = "<MetaData>";
    const QByteArray metaEnd = "</MetaData>";
    addFlagRows("IncludeInCompile", meta, metaEnd, &P::mIncludeInCompile);
    addFlagRows("PageBreakBefore", meta, metaEnd, &P::mPageBreakBefore);
    addFlagRows("CompileAsIs", meta, metaEnd, &P::mCompileAsIs);
    addFlagRows("ShowSynopsisImage", meta, metaEnd, &P::mShowSynopsisImage);
    addFlagRows("IgnoresTitlePrefixAndSuffix", meta, metaEnd, &P::mIgnoresTitlePrefixAndSuffix);
    addFlagRows("ImageScalesProportionally", "<MediaSettings>", "</MediaSettings>",
                &P::mImageScalesProportionally);
    addFlagRows("IsAlias", "<MediaSettings>", "</MediaSettings>", &P::mIsAlias);
    addFlagRows("FreeformMode", "<CorkboardAndOutliner><CorkboardSettings>",
                "</CorkboardSettings></CorkboardAndOutliner>", &P::mFreeformMode);
}

void TstBinderReader::theOlderNameOfThePageBreakIsReadToo_data()
{
    addContentColumns();
    addFlagRows("BreakBeforeParagraph", "<MetaData>", "</MetaData>", &Properties::mPageBreakBefore);
}

void TstBinderReader::aSelectionThatIsNoneLeavesTheFieldAlone_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &text,
                        const QPair<int, int> &selection) {
        const QByteArray notes = "<MetaData><NotesTextSelection>8,9</NotesTextSelection>"
                                 "<NotesTextSelection>"
            + text + "</NotesTextSelection></MetaData>";
        const QByteArray main = "<TextSettings><TextSelection>8,9</TextSelection><TextSelection>"
            + text + "</TextSelection></TextSettings>";
        addContentRow(name, notes + main, [=](Properties *expected) {
            expected->mNotesTextSelection = selection;
            expected->mTextSelection = selection;
        });
    };
    add("good", "1,2", {1, 2});
    add("zero", "0,0", {0, 0});
    add("negative", "-1,-2", {-1, -2});
    add("no comma", "12", {8, 9});
    add("empty", {}, {8, 9});
    add("bad location", "x,2", {8, 9});
    add("bad length", "1,x", {8, 9});
    add("missing location", ",2", {8, 9});
    add("missing length", "1,", {8, 9});
    add("three numbers", "1,2,3", {8, 9});
    add("too large", "1,99999999999", {8, 9});
}

void TstBinderReader::customMetaDataIsRead_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &xml,
                        const QMap<QString, QString> &values) {
        addContentRow(name, "<MetaData><CustomMetaData>" + xml + "</CustomMetaData></MetaData>",
                      [=](Properties *expected) { expected->mCustomMetaData = values; });
    };
    const auto item = [](const QByteArray &field, const QByteArray &value) {
        return "<MetaDataItem><FieldID>" + field + "</FieldID><Value>" + value
            + "</Value></MetaDataItem>";
    };
    add("nothing", {}, {});
    add("one", item("a", "1"), {{u"a"_s, u"1"_s}});
    add("two", item("b", "2") + item("a", "1"), {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}});
    add("the later of two wins", item("a", "1") + item("a", "2"), {{u"a"_s, u"2"_s}});
    add("no value", "<MetaDataItem><FieldID>a</FieldID></MetaDataItem>", {{u"a"_s, {}}});
    add("value first", "<MetaDataItem><Value>1</Value><FieldID>a</FieldID></MetaDataItem>",
        {{u"a"_s, u"1"_s}});
    add("text as it stands", item(" a &amp; b ", " 1\n2 "), {{u" a & b "_s, u" 1\n2 "_s}});
    add("unknown elements",
        "<Foo><FieldID>x</FieldID></Foo>"
        "<MetaDataItem><Foo/><FieldID>a</FieldID><Foo/></MetaDataItem>",
        {{u"a"_s, {}}});
}

void TstBinderReader::customMetaDataWithoutFieldFails()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(
        binderXml(sampleItem("<MetaData><CustomMetaData><MetaDataItem><Value>1</Value>"
                             "</MetaDataItem></CustomMetaData></MetaData>")),
        &error));
    QVERIFY2(error.startsWith(u"Meta data item key not found"_s), qPrintable(error));
}

void TstBinderReader::customMetaDataElsewhereFails()
{
    const DebugLog log;
    ElementReader reader("<Foo><MetaDataItem><FieldID>a</FieldID></MetaDataItem></Foo>");
    QVERIFY(reader.readCustomMetaData().isEmpty());
    QVERIFY(reader.hasError());
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"CustomMetaData"_s));
}

void TstBinderReader::textSettingsAreRead_data()
{
    addContentColumns();
    using P = Properties;
    const auto add = [](const char *name, const QByteArray &xml,
                        const std::function<void(P *)> &change) {
        addContentRow(name, "<TextSettings>" + xml + "</TextSettings>", change);
    };
    add("nothing", {}, [](P *) {});
    add("mode", "<TextMode>Script</TextMode>", [](P *p) { p->mTextMode = u"Script"_s; });
    add("any mode", "<TextMode>Some thing</TextMode>",
        [](P *p) { p->mTextMode = u"Some thing"_s; });
    add("general mode", "<TextMode>General</TextMode>", [](P *) {});
    add("general in lower case", "<TextMode>general</TextMode>",
        [](P *p) { p->mTextMode = u"general"_s; });
    add("selection", "<TextSelection>10,20</TextSelection>", [](P *p) {
        p->mTextSelection = {10, 20};
    });
    add("typing attributes", "<TypingAttributesRTFData>7b00FFff7D</TypingAttributesRTFData>",
        [](P *p) { p->mTypingAttributes = QByteArray::fromHex("7b00ffff7d"); });
    add("no typing attributes", "<TypingAttributesRTFData/>", [](P *) {});
}

void TstBinderReader::aTargetIsRead_data()
{
    addContentColumns();
    using P = Properties;
    const auto add = [](const char *name, const QByteArray &xml,
                        const std::function<void(P *)> &change) {
        addContentRow(name, "<TextSettings>" + xml + "</TextSettings>", change);
    };
    add("plain", "<Target>100</Target>", [](P *p) { p->mTarget = 100; });
    add("no number", "<Target>many</Target>", [](P *) {});
    add("words", "<Target Type='Words'>1</Target>", [](P *p) { p->mTarget = 1; });
    add("characters", "<Target Type='Characters'>1</Target>", [](P *p) {
        p->mTarget = 1;
        p->mTargetType = TVL::CharactersTarget;
    });
    add("unknown type", "<Target Type='Pages'>1</Target>", [](P *p) { p->mTarget = 1; });
    add("type in lower case", "<Target Type='characters'>1</Target>", [](P *p) { p->mTarget = 1; });
    add("notify", "<Target Notify='Yes'>0</Target>", [](P *p) { p->mTargetNotify = true; });
    add("notify in lower case", "<Target Notify='yes'>0</Target>", [](P *) {});
    add("notify not", "<Target Notify='No'>0</Target>", [](P *) {});
    add("allow over", "<Target AllowOver='Yes'>0</Target>",
        [](P *p) { p->mTargetAllowOver = true; });
    add("allow over in upper case", "<Target AllowOver='YES'>0</Target>", [](P *) {});
    add("buffer", "<Target Buffer='50'>0</Target>", [](P *p) { p->mTargetBuffer = 50; });
    add("later target without the optional ones",
        "<Target Type='Characters' Notify='Yes' AllowOver='Yes' "
        "Buffer='50'>3</Target><Target>4</Target>",
        [](P *p) {
            // What only a present attribute sets stays as the first left it.
            p->mTarget = 4;
            p->mTargetAllowOver = true;
            p->mTargetBuffer = 50;
        });
}

void TstBinderReader::mediaSettingsAreRead_data()
{
    addContentColumns();
    using P = Properties;
    const auto add = [](const char *name, const QByteArray &xml,
                        const std::function<void(P *)> &change) {
        addContentRow(name, "<MediaSettings>" + xml + "</MediaSettings>", change);
    };
    const auto addScale = [&](const char *name, const QByteArray &text, double factor) {
        add(name, "<ImageScaleFactor>" + text + "</ImageScaleFactor>",
            [=](P *p) { p->mImageScaleFactor = factor; });
    };
    const auto addRotation = [&](const char *name, const QByteArray &text, int rotation) {
        add(name, "<ImageRotation>90CW</ImageRotation><ImageRotation>" + text + "</ImageRotation>",
            [=](P *p) { p->mImageRotation = rotation; });
    };
    add("nothing", {}, [](P *) {});
    addScale("scale", "1.5", 1.5);
    addScale("scale with exponent", "2.5e-1", 0.25);
    addScale("scale that is no number", "big", 1.0);
    addScale("scale empty", {}, 1.0);
    addScale("scale with comma", "1,5", 1.0);
    addRotation("clockwise", "90CW", 1);
    addRotation("half turn", "180", 2);
    addRotation("counter-clockwise", "90CCW", 3);
    addRotation("unknown rotation", "45", 0);
    addRotation("rotation in lower case", "90ccw", 0);
    addRotation("no rotation", {}, 0);
    add("page", "<CurrentPDFPage>12</CurrentPDFPage>", [](P *p) { p->mCurrentPdfPage = 12; });
    add("address", "<OriginalURL>https://example.org/?a&amp;b</OriginalURL>",
        [](P *p) { p->mOriginalUrl = u"https://example.org/?a&b"_s; });
}

void TstBinderReader::settingsAreTakenOnAnyItem_data()
{
    QTest::addColumn<QByteArray>("type");
    for (const char *type : {"DraftFolder", "ResearchFolder", "TrashFolder", "Folder", "Text",
                             "Image", "PDF", "Media", "WebArchive", "Other"})
        QTest::newRow(type) << QByteArray(type);
}

void TstBinderReader::settingsAreTakenOnAnyItem()
{
    QFETCH(QByteArray, type);
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem(
        "<MediaSettings><CurrentPDFPage>3</CurrentPDFPage><ImageRotation>180</ImageRotation>"
        "<ImageScaleFactor>2</ImageScaleFactor><OriginalURL>u</OriginalURL><IsAlias>Yes</IsAlias>"
        "<ImageScalesProportionally>No</ImageScalesProportionally></MediaSettings>"
        "<TextSettings><TextMode>Script</TextMode><Target>9</Target></TextSettings>",
        sampleAttributes(type)))));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mCurrentPdfPage, 3);
    QCOMPARE(node->mImageRotation, 2);
    QCOMPARE(node->mImageScaleFactor, 2.0);
    QCOMPARE(node->mOriginalUrl, u"u"_s);
    QVERIFY(node->mIsAlias);
    QVERIFY(!node->mImageScalesProportionally);
    QCOMPARE(node->mTextMode, u"Script"_s);
    QCOMPARE(node->mTarget, 9);
}

void TstBinderReader::theCorkboardIsRead_data()
{
    addContentColumns();
    using P = Properties;
    const auto add = [](const char *name, const QByteArray &xml,
                        const std::function<void(P *)> &change) {
        addContentRow(name, "<CorkboardAndOutliner>" + xml + "</CorkboardAndOutliner>", change);
    };
    const auto addCards = [&](const char *name, const QByteArray &xml,
                              const QList<TVLFreeformPositionInfo> &cards) {
        add(name,
            "<CorkboardSettings><FreeformCorkboardDocuments>" + xml
                + "</FreeformCorkboardDocuments></CorkboardSettings>",
            [=](P *p) {
                for (const TVLFreeformPositionInfo &card : cards)
                    p->mFreeformPositions.insert(card.mId, card);
            });
    };
    add("nothing", {}, [](P *) {});
    add("selection", "<SelectedSubdocumentIDs>4,2</SelectedSubdocumentIDs>", [](P *p) {
        p->mSelectedSubdocumentIds = {2, 4};
    });
    add("empty selection", "<SelectedSubdocumentIDs/>", [](P *) {});
    add("selection with other words", "<SelectedSubdocumentIDs>4,x,,2</SelectedSubdocumentIDs>",
        [](P *p) {
            p->mSelectedSubdocumentIds = {2, 4};
        });
    add("settings without anything", "<CorkboardSettings/>", [](P *) {});
    addCards("no cards", {}, {});
    addCards("one card",
             "<IndexCardBinderID Position='1.5,2' TimeStamp='then'>4</IndexCardBinderID>",
             {{4, QPointF(1.5, 2), u"then"_s}});
    addCards("two cards",
             "<IndexCardBinderID Position='1,2' TimeStamp='a'>4</IndexCardBinderID>"
             "<IndexCardBinderID Position='3,4' TimeStamp='b'>5</IndexCardBinderID>",
             {{4, QPointF(1, 2), u"a"_s}, {5, QPointF(3, 4), u"b"_s}});
    addCards("the later of two cards of one child",
             "<IndexCardBinderID Position='1,2' TimeStamp='a'>4</IndexCardBinderID>"
             "<IndexCardBinderID Position='3,4' TimeStamp='b'>4</IndexCardBinderID>",
             {{4, QPointF(3, 4), u"b"_s}});
    addCards("no position", "<IndexCardBinderID TimeStamp='a'>4</IndexCardBinderID>",
             {{4, QPointF(), u"a"_s}});
    addCards("bad position", "<IndexCardBinderID Position='x' TimeStamp='a'>4</IndexCardBinderID>",
             {{4, QPointF(), u"a"_s}});
    addCards("empty time", "<IndexCardBinderID Position='1,2' TimeStamp=''>4</IndexCardBinderID>",
             {{4, QPointF(1, 2), QString()}});
}

void TstBinderReader::aPositionWithoutTimeGetsTheCurrentTime()
{
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem("<CorkboardAndOutliner><CorkboardSettings><FreeformCorkboardDocuments>"
                   "<IndexCardBinderID Position='1,2'>4</IndexCardBinderID>"
                   "</FreeformCorkboardDocuments></CorkboardSettings></CorkboardAndOutliner>"))));
    const TVLFreeformPositionInfo info =
        project.mRoot->mChildren.at(0)->mFreeformPositions.value(4);
    QCOMPARE(info.mPosition, QPointF(1, 2));
    QCOMPARE(info.mTimeStamp.size(), 25);
    QVERIFY(info.mTimeStamp.endsWith(u" +0000"_s));
    QDateTime time = QDateTime::fromString(info.mTimeStamp.first(19), u"yyyy-MM-dd hh:mm:ss"_s);
    time.setTimeSpec(Qt::UTC);
    QVERIFY(time >= before && time <= QDateTime::currentDateTimeUtc());
}

void TstBinderReader::corkboardSettingsReplaceOldPositions()
{
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    node.mFreeformPositions.insert(9, {9, QPointF(1, 1), u"old"_s});
    ElementReader reader("<CorkboardSettings><FreeformCorkboardDocuments>"
                         "<IndexCardBinderID Position='1,2' TimeStamp='new'>4</IndexCardBinderID>"
                         "</FreeformCorkboardDocuments></CorkboardSettings>");
    QVERIFY(reader.readCorkboardSettings(&node));
    QCOMPARE(node.mFreeformPositions.keys(), QList<int>{4});
}

void TstBinderReader::corkboardSettingsElsewhereFail()
{
    const DebugLog log;
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    ElementReader reader("<Foo/>");
    QVERIFY(!reader.readCorkboardSettings(&node));
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"CorkboardSettings"_s));
}

void TstBinderReader::keywordsAreRead_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &xml, const QList<int> &keywords) {
        addContentRow(name, "<Keywords>" + xml + "</Keywords>",
                      [=](Properties *expected) { expected->mKeywords = keywords; });
    };
    add("none", {}, {});
    add("in order", "<KeywordID>7</KeywordID><KeywordID>3</KeywordID>", {7, 3});
    add("twice", "<KeywordID>7</KeywordID><KeywordID>7</KeywordID>", {7, 7});
    add("negative", "<KeywordID>-1</KeywordID>", {-1});
    add("other elements",
        "<Keyword>1</Keyword><KeywordID>7</KeywordID><Foo><KeywordID>x</KeywordID></Foo>", {7});
}

void TstBinderReader::aKeywordThatIsNoNumberFails_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("word") << QByteArray("hero");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("fraction") << QByteArray("1.5");
    QTest::newRow("too large") << QByteArray("2147483648");
}

void TstBinderReader::aKeywordThatIsNoNumberFails()
{
    QFETCH(QByteArray, text);
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(
        binderXml(sampleItem("<Keywords><KeywordID>" + text + "</KeywordID></Keywords>")), &error));
    QCOMPARE(error, u"Expected integer text value"_s);
}

void TstBinderReader::keywordsElsewhereFail()
{
    const DebugLog log;
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    ElementReader reader("<Foo/>");
    QVERIFY(!reader.readKeywords(&node));
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"Keywords"_s));
}

void TstBinderReader::referencesAreRead_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &xml,
                        const QList<TVLReference> &references) {
        addContentRow(name, "<References>" + xml + "</References>",
                      [=](Properties *expected) { expected->mReferences = references; });
    };
    add("none", {}, {});
    add("internal", "<Reference BinderID='5'>In</Reference>", {referenceOf(u"In"_s, 5)});
    add("external",
        "<Reference Destination='https://example.org/a%20b?c=%C3%BC&amp;d#e'>Out</Reference>",
        {referenceOf(u"Out"_s, -1, QUrl(u"https://example.org/a%20b?c=%C3%BC&d#e"_s))});
    add("both kinds in order",
        "<Reference Destination='file:///a'>A</Reference><Reference BinderID='0'>B</Reference>",
        {referenceOf(u"A"_s, -1, QUrl(u"file:///a"_s)), referenceOf(u"B"_s, 0)});
    add("no title", "<Reference BinderID='5'/>", {referenceOf({}, 5)});
    add("other elements", "<Foo><Reference BinderID='5'/></Foo><Reference BinderID='6'/>",
        {referenceOf({}, 6)});
}

void TstBinderReader::referencesElsewhereFail()
{
    const DebugLog log;
    TVLProjectNode node({1, QUuid::createUuid()}, nullptr);
    ElementReader reader("<Foo/>");
    QVERIFY(!reader.readReferences(&node));
    QCOMPARE(reader.errorString(), unexpectedTag(u"Foo"_s, 1, u"References"_s));
}

void TstBinderReader::theTemplateOfChildrenIsRead_data()
{
    addContentColumns();
    const auto add = [](const char *name, const QByteArray &text, int id) {
        addContentRow(name, "<DefaultChildTemplateID>" + text + "</DefaultChildTemplateID>",
                      [=](Properties *expected) { expected->mDefaultChildTemplateId = id; });
    };
    add("zero", "0", 0);
    add("id", "12", 12);
    add("negative", "-5", -1);
    add("word", "x", -1);
    add("empty", {}, -1);
}

void TstBinderReader::unknownElementsInAnItemAreSkipped_data()
{
    addContentColumns();
    const QByteArray foo = "<Foo a='b'>text<Title>No</Title><Children><Bar/></Children></Foo>";
    const auto add = [&](const char *name, const QByteArray &before, const QByteArray &content,
                         const QByteArray &after, const std::function<void(Properties *)> &change) {
        addContentRow(name, before + foo + content + foo + after, change);
    };
    add("item", {}, "<Title>Yes</Title>", {}, [](Properties *p) { p->mTitle = u"Yes"_s; });
    add("meta-data", "<MetaData>", "<LabelID>3</LabelID>", "</MetaData>",
        [](Properties *p) { p->mLabelId = 3; });
    add("text settings", "<TextSettings>", "<TextMode>M</TextMode>", "</TextSettings>",
        [](Properties *p) { p->mTextMode = u"M"_s; });
    add("media settings", "<MediaSettings>", "<CurrentPDFPage>3</CurrentPDFPage>",
        "</MediaSettings>", [](Properties *p) { p->mCurrentPdfPage = 3; });
    add("corkboard", "<CorkboardAndOutliner>", "<SelectedSubdocumentIDs>3</SelectedSubdocumentIDs>",
        "</CorkboardAndOutliner>", [](Properties *p) { p->mSelectedSubdocumentIds = {3}; });
    add("corkboard settings", "<CorkboardAndOutliner><CorkboardSettings>",
        "<FreeformMode>Yes</FreeformMode>", "</CorkboardSettings></CorkboardAndOutliner>",
        [](Properties *p) { p->mFreeformMode = true; });
    add("freeform documents",
        "<CorkboardAndOutliner><CorkboardSettings><FreeformCorkboardDocuments>",
        "<IndexCardBinderID Position='1,2' TimeStamp='a'>4</IndexCardBinderID>",
        "</FreeformCorkboardDocuments></CorkboardSettings></CorkboardAndOutliner>",
        [](Properties *p) {
            p->mFreeformPositions.insert(4, {4, QPointF(1, 2), u"a"_s});
        });
}

void TstBinderReader::elementsOfAnItemMayComeInAnyOrder()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem("<DefaultChildTemplateID>1</DefaultChildTemplateID><References><Reference "
                   "BinderID='5'/></References>"
                   "<Keywords><KeywordID>7</KeywordID></Keywords><MediaSettings><IsAlias>Yes</"
                   "IsAlias></MediaSettings>"
                   "<TextSettings><TextMode>M</TextMode></TextSettings><MetaData><LabelID>3</"
                   "LabelID></MetaData>"
                   "<Title>Last</Title>"))));
    const TVLProjectNode *node = project.mRoot->mChildren.at(0);
    QCOMPARE(node->mDefaultChildTemplateId, 1);
    QCOMPARE(node->mReferences.size(), 1);
    QCOMPARE(node->mKeywords, QList<int>{7});
    QVERIFY(node->mIsAlias);
    QCOMPARE(node->mTextMode, u"M"_s);
    QCOMPARE(node->mLabelId, 3);
    QCOMPARE(node->mTitle, u"Last"_s);
}

void TstBinderReader::anErrorIsLoggedWithItsPlaces()
{
    ElementReader reader("<A>\n  <B/></A>");
    QVERIFY(reader.readNextStartElement());
    const QRegularExpression line(
        u"^\\[123\\] \"Oh dear\" @ %1:%2$"_s.arg(reader.lineNumber()).arg(reader.columnNumber()));
    QTest::ignoreMessage(QtDebugMsg, line);
    reader.raiseError(u"Oh dear"_s, 123);
    QCOMPARE(reader.errorString(), u"Oh dear"_s);
    QCOMPARE(reader.error(), QXmlStreamReader::CustomError);
    QVERIFY(!reader.readNextStartElement());
}

void TstBinderReader::theTagErrorNamesFoundAndExpected()
{
    ElementReader reader("<A/>");
    QTest::ignoreMessage(
        QtDebugMsg,
        QRegularExpression(
            u"^\\[5\\] \"Unexpected tag Left on line 1\\.  Expected tag Right\" @ 1:\\d+$"_s));
    reader.raiseIncorrectTagError(u"Right"_s, u"Left"_s, 5);
    QCOMPARE(reader.errorString(), u"Unexpected tag Left on line 1.  Expected tag Right"_s);
}

void TstBinderReader::anElementInATextIsSkipped()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml("<BinderItem ID=\"1\" UUID=\"" + sampleUuid().toByteArray()
                                   + "\"><Title>One<Odd>no</Odd> morning</Title></BinderItem>")));
    QCOMPARE(project.mRoot->mChildren.constFirst()->mTitle, u"One morning"_s);
}

void TstBinderReader::entitiesOfAFileAreNotExpanded()
{
    TestBinderProject project;
    const QByteArray binder = "<!DOCTYPE x [<!ENTITY a \"" + QByteArray(10'000, 'a')
        + "\">]><TavelinorProject Version=\"1.5\"><Binder><BinderItem><Title>"
        + QByteArray("&a;").repeated(100) + "</Title></BinderItem></Binder></TavelinorProject>";
    QVERIFY(!project.read(binder));
    QVERIFY(project.read(binderXml("<BinderItem><Title>&lt;&amp;&#13;</Title></BinderItem>")));
    QCOMPARE(project.mRoot->mChildren.constLast()->mTitle, u"<&\r"_s);
}

TVL_TEST(TstBinderReader)
#include "tst_binderreader.moc"
