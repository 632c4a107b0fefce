#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Collection = TVLCollectionMetaData;

QByteArray writtenCollection(const Collection &collection)
{
    QByteArray xml =
        written([&](TVLBinderWriter *writer) { writer->writeCollections({collection}); });
    xml.replace("<Collections>", "");
    xml.replace("</Collections>", "");
    return xml;
}

/** Reads `Collections` with the given content. */
bool readCollections(const QByteArray &content, QList<Collection> *collections)
{
    TVLBinderReader reader;
    reader.addData("<Collections>" + content + "</Collections>");
    reader.readNextStartElement();
    return reader.readCollections(collections);
}

Collection readCollection(const QByteArray &xml)
{
    QList<Collection> collections;
    return readCollections(xml, &collections) ? collections.value(0) : Collection();
}

/** The words of one attribute of a collection or of its search, and their numbers. */
struct WordTable
{
    const char *attribute;
    bool inSearch;
    QList<QPair<QByteArray, int>> words;
    QByteArray fallbackWord; ///< Written for a number without a word.
    std::function<int(const Collection &)> get;
    std::function<void(Collection *, int)> set;
};

QList<WordTable> wordTables()
{
    return {
        {"Type",
         false,
         {{"Binder", 0}, {"RecentSearch", 1}, {"SavedSearch", 2}, {"Arbitrary", 3}},
         "Arbitrary",
         [](const Collection &c) { return int(c.mType); },
         [](Collection *c, int value) { c->mType = TVL::CollectionType(value); }},
        {"Operator",
         true,
         {{"Exact", 0}, {"All", 1}, {"Any", 2}, {"WholeWord", 3}, {"RegExp", 4}},
         "Exact",
         [](const Collection &c) { return int(c.mSearchOperator); },
         [](Collection *c, int value) { c->mSearchOperator = TVL::SearchOperator(value); }},
        {"Type",
         true,
         {{"All", 0},
          {"Title", 1},
          {"Text", 2},
          {"Notes", 3},
          {"Synopsis", 4},
          {"Keywords", 5},
          {"Label", 6},
          {"Status", 7},
          {"CustomMetaData", 8}},
         "All",
         [](const Collection &c) { return int(c.mSearchProperty); },
         [](Collection *c, int value) { c->mSearchProperty = TVL::DocumentProperty(value); }},
        {"Scope",
         true,
         {{"All", 0}, {"Selection", 1}, {"Draft", 2}, {"ExcludeTrash", 4}},
         "All",
         [](const Collection &c) { return int(c.mSearchScope); },
         [](Collection *c, int value) { c->mSearchScope = value; }},
        {"CompileSetting",
         true,
         {{"All", 0}, {"Include", 1}, {"Exclude", 2}},
         "All",
         [](const Collection &c) { return int(c.mSearchCompile); },
         [](Collection *c, int value) { c->mSearchCompile = TVL::SearchCompile(value); }},
        {"CaseSensitive",
         true,
         {{"No", 0}, {"Yes", 1}},
         "No",
         [](const Collection &c) { return int(c.mCaseSensitivity); },
         [](Collection *c, int value) { c->mCaseSensitivity = Qt::CaseSensitivity(value); }},
    };
}

void addTableRows(const std::function<void(int table, const QByteArray &name)> &add)
{
    const QList<WordTable> tables = wordTables();
    for (int table = 0; table < tables.size(); ++table) {
        const QByteArray owner = tables.at(table).inSearch ? "search " : "collection ";
        add(table, owner + tables.at(table).attribute);
    }
}

/** A collection whose XML has the given attribute where its table says. */
QByteArray collectionXml(const WordTable &table, const QByteArray &word)
{
    const QByteArray attribute = QByteArray(table.attribute) + "='" + word + '\'';
    if (!table.inSearch)
        return "<Collection " + attribute + "/>";
    return "<Collection Type='SavedSearch'><SearchSettings " + attribute + "/></Collection>";
}

TVLLabel labelOf(int id, const QString &title, const QColor &color = {})
{
    return TVLLabel{id, title, color};
}

} // namespace

class TstBinderSections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Labels and status items
    void labelsAreWritten();
    void noLabelsAreWrittenAsAnEmptyList();
    void labelsAreRead();
    void aLabelWithoutUsableColorGetsARandomOne_data();
    void aLabelWithoutUsableColorGetsARandomOne();
    void theLabelMinusOneGetsNoColor();
    void everyEightBitColorChannelSurvives();
    void otherElementsInLabelSettingsAreSkipped();
    void anotherElementAmongLabelsFails();
    void aFailedReadOfLabelsLeavesTheProjectAlone();
    void statusItemsAreWritten();
    void statusItemsAreRead();
    void otherElementsInStatusSettingsAreSkipped();
    void anotherElementAmongStatusItemsFails();

    // Template folder
    void theTemplateFolderIsWrittenOnlyWhenThereIsOne();
    void theTemplateFolderIsReadByUuid();
    void theTemplateFolderIsReadByIdToo();
    void aTemplateFolderThatIsNoItemIsIgnored_data();
    void aTemplateFolderThatIsNoItemIsIgnored();

    // Collections
    void everyWordOfACollectionIsReadAndWritten_data();
    void everyWordOfACollectionIsReadAndWritten();
    void anUnknownWordOfACollectionMeansItsDefault_data();
    void anUnknownWordOfACollectionMeansItsDefault();
    void aNumberWithoutAWordIsWrittenAsTheDefault_data();
    void aNumberWithoutAWordIsWrittenAsTheDefault();
    void aCollectionIsWrittenByItsType_data();
    void aCollectionIsWrittenByItsType();
    void searchResultsAreWrittenWithTheClassWideColor();
    void aHandmadeCollectionWithoutMembersHasNoList();
    void aCollectionStartsFromItsDefaults();
    void aCollectionWithoutIdentityGetsAFreshOne();
    void anEmptyIdentityIsKept();
    void aCollectionWithoutUsableColorGetsARandomOne_data();
    void aCollectionWithoutUsableColorGetsARandomOne();
    void membersOfACollectionAreReadInOrder();
    void otherElementsInCollectionsAreSkipped();
    void collectionsAreAppendedInFileOrder();
    void collectionsElsewhereFail();
    void collectionsOfABinderReplaceThoseOfTheProject();
    void collectionsSurvive();

    // User data
    void userDataIsWrittenByteForByte();
    void noUserDataIsWrittenAsNothing();
    void rawTextIsWrittenAsItStands_data();
    void rawTextIsWrittenAsItStands();
    void aPrefixThatNobodyDeclaredPassesInUserDataAlone();
    void rawTextThatCannotStandAloneIsLeftOut_data();
    void rawTextThatCannotStandAloneIsLeftOut();
    void userDataIsSkippedOnReading();
};

void TstBinderSections::labelsAreWritten()
{
    const QByteArray xml = written([](TVLBinderWriter *writer) {
        writer->writeLabels(
            u"A & B"_s, 2,
            {labelOf(-1, u"None"_s), labelOf(2, u"Red"_s, Qt::red), labelOf(0, {}, Qt::black)});
    });
    QCOMPARE(
        xml,
        QByteArray(
            "<LabelSettings><Title>A &amp; B</Title><DefaultLabelID>2</DefaultLabelID><Labels>"
            "<Label ID=\"-1\">None</Label><Label ID=\"2\" Color=\"1.000 0.000 0.000\">Red</Label>"
            "<Label ID=\"0\" Color=\"0.000 0.000 0.000\"></Label></Labels></LabelSettings>"));
}

void TstBinderSections::noLabelsAreWrittenAsAnEmptyList()
{
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeLabels({}, -1, {}); }),
             QByteArray("<LabelSettings><Title></Title><DefaultLabelID>-1</DefaultLabelID><Labels/>"
                        "</LabelSettings>"));
}

void TstBinderSections::labelsAreRead()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<LabelSettings><Labels><Label ID='-1'>None</Label>"
                  "<Label ID='2' Color='1.000 0.000 0.000'>Red &amp; more</Label>"
                  "<Label ID='7' Color='0 0 0'/></Labels>"
                  "<DefaultLabelID>2</DefaultLabelID><Title>Kind</Title></LabelSettings>")));
    QCOMPARE(project.mLabelTitle, u"Kind"_s);
    QCOMPARE(project.mDefaultLabelId, 2);
    QCOMPARE(
        project.mLabels,
        QList<TVLLabel>({labelOf(-1, u"None"_s), labelOf(2, u"Red & more"_s, QColor(255, 0, 0)),
                         labelOf(7, {}, QColor(0, 0, 0))}));
}

void TstBinderSections::aLabelWithoutUsableColorGetsARandomOne_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("empty") << QByteArray("Color=''");
    QTest::newRow("word") << QByteArray("Color='red'");
    QTest::newRow("two numbers") << QByteArray("Color='1.0 1.0'");
    QTest::newRow("out of range") << QByteArray("Color='2.0 0 0'");
}

void TstBinderSections::aLabelWithoutUsableColorGetsARandomOne()
{
    QFETCH(QByteArray, attribute);
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<LabelSettings><Labels>"
                      + QByteArray("<Label ID='3' " + attribute + ">x</Label>").repeated(20)
                      + "</Labels></LabelSettings>")));
    QCOMPARE(project.mLabels.size(), 20);
    QSet<QRgb> colors;
    for (const TVLLabel &label : std::as_const(project.mLabels)) {
        QCOMPARE(label.mId, 3);
        QCOMPARE(label.mTitle, u"x"_s);
        QVERIFY(label.mColor.isValid());
        colors.insert(label.mColor.rgb());
    }
    QVERIFY(colors.size() > 1);
}

void TstBinderSections::theLabelMinusOneGetsNoColor()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({}, "<LabelSettings><Labels><Label ID='-1'>x</Label></Labels></LabelSettings>")));
    QCOMPARE(project.mLabels, QList<TVLLabel>{labelOf(-1, u"x"_s)});
}

void TstBinderSections::everyEightBitColorChannelSurvives()
{
    QList<TVLLabel> labels;
    for (int channel = 0; channel < 256; ++channel)
        labels.append(labelOf(channel, {}, QColor(channel, 255 - channel, (channel * 7) % 256)));
    TestBinderProject project;
    project.mLabels = labels;
    TestBinderProject reread;
    const DebugLog log;
    QVERIFY(reread.read(project.write()));
    QCOMPARE(reread.mLabels, labels);
}

void TstBinderSections::otherElementsInLabelSettingsAreSkipped()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<LabelSettings><Foo><Title>No</Title></Foo><Title>Yes</Title>"
                  "<Label ID='1'/><DefaultLabelID>x</DefaultLabelID></LabelSettings>")));
    QCOMPARE(project.mLabelTitle, u"Yes"_s);
    QCOMPARE(project.mDefaultLabelId, -1);
    QVERIFY(project.mLabels.isEmpty());
}

void TstBinderSections::anotherElementAmongLabelsFails()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(
        binderXml({}, "<LabelSettings><Labels><Label ID='1'/><Foo/></Labels></LabelSettings>"),
        &error));
    QCOMPARE(error, u"Unexpected tag Foo on line 2.  Expected tag Label"_s);
}

void TstBinderSections::aFailedReadOfLabelsLeavesTheProjectAlone()
{
    const DebugLog log;
    TestBinderProject project;
    project.mLabelTitle = u"Old"_s;
    QVERIFY(
        !project.read("<TavelinorProject Version='1.5'><LabelSettings><Title>New</Title><Labels>"));
    QCOMPARE(project.mLabelTitle, u"Old"_s);
}

void TstBinderSections::statusItemsAreWritten()
{
    const QByteArray xml = written([](TVLBinderWriter *writer) {
        writer->writeStatusItems(u"Stage"_s, 1, {{-1, u"None"_s}, {1, u"A < B"_s}});
    });
    QCOMPARE(
        xml,
        QByteArray(
            "<StatusSettings><Title>Stage</Title><DefaultStatusID>1</DefaultStatusID><StatusItems>"
            "<Status ID=\"-1\">None</Status><Status ID=\"1\">A &lt; B</Status></StatusItems>"
            "</StatusSettings>"));
}

void TstBinderSections::statusItemsAreRead()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        {},
        "<StatusSettings><StatusItems><Status ID='-1'>None</Status><Status ID='1' Color='1 0 "
        "0'>Done</Status>"
        "<Status ID='x'/></StatusItems><DefaultStatusID>1</DefaultStatusID><Title>Stage</Title>"
        "</StatusSettings>")));
    QCOMPARE(project.mStatusTitle, u"Stage"_s);
    QCOMPARE(project.mDefaultStatusId, 1);
    QCOMPARE(project.mStatusItems,
             QList<TVLStatusItem>({{-1, u"None"_s}, {1, u"Done"_s}, {-1, {}}}));
}

void TstBinderSections::otherElementsInStatusSettingsAreSkipped()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml({},
                                   "<StatusSettings><Foo><Title>No</Title></Foo><Title>Yes</Title>"
                                   "<DefaultLabelID>4</DefaultLabelID></StatusSettings>")));
    QCOMPARE(project.mStatusTitle, u"Yes"_s);
    QCOMPARE(project.mDefaultStatusId, -1);
}

void TstBinderSections::anotherElementAmongStatusItemsFails()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(
        binderXml({},
                  "<StatusSettings><StatusItems><Label ID='1'/></StatusItems></StatusSettings>"),
        &error));
    QCOMPARE(error, u"Unexpected tag Label on line 2.  Expected tag Status"_s);
}

void TstBinderSections::theTemplateFolderIsWrittenOnlyWhenThereIsOne()
{
    TestBinderProject project;
    QVERIFY(!project.write().contains("TemplateFolder"));
    project.mTemplateFolderUuid = sampleUuid();
    QVERIFY(project.write().contains(
        "<TemplateFolderUUID>0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9</TemplateFolderUUID>"));
}

void TstBinderSections::theTemplateFolderIsReadByUuid()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        sampleItem({}),
        "<TemplateFolderUUID>0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9</TemplateFolderUUID>")));
    QVERIFY(project.mRoot->mChildren.at(0)->mIsTemplateFolder);
    QCOMPARE(project.mTemplateFolderUuid, sampleUuid());
}

void TstBinderSections::theTemplateFolderIsReadByIdToo()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}), "<TemplateFolderID>1</TemplateFolderID>")));
    QVERIFY(project.mRoot->mChildren.at(0)->mIsTemplateFolder);
    QCOMPARE(project.mTemplateFolderUuid, sampleUuid());
    QVERIFY(project.write().contains("<TemplateFolderUUID>"));
    QVERIFY(!project.write().contains("<TemplateFolderID>"));
}

void TstBinderSections::aTemplateFolderThatIsNoItemIsIgnored_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("other uuid") << QByteArray(
        "<TemplateFolderUUID>00000000-0000-4000-8000-000000000001</TemplateFolderUUID>");
    QTest::newRow("no uuid") << QByteArray("<TemplateFolderUUID>here</TemplateFolderUUID>");
    QTest::newRow("empty uuid") << QByteArray("<TemplateFolderUUID/>");
    QTest::newRow("other id") << QByteArray("<TemplateFolderID>2</TemplateFolderID>");
    QTest::newRow("negative id") << QByteArray("<TemplateFolderID>-1</TemplateFolderID>");
    QTest::newRow("no id") << QByteArray("<TemplateFolderID>x</TemplateFolderID>");
}

void TstBinderSections::aTemplateFolderThatIsNoItemIsIgnored()
{
    QFETCH(QByteArray, xml);
    TestBinderProject project;
    QVERIFY(project.read(binderXml(sampleItem({}), xml)));
    QVERIFY(!project.mRoot->mChildren.at(0)->mIsTemplateFolder);
    QVERIFY(project.mTemplateFolderUuid.isNull());
}

void TstBinderSections::everyWordOfACollectionIsReadAndWritten_data()
{
    QTest::addColumn<int>("table");
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("number");
    addTableRows([](int table, const QByteArray &name) {
        const WordTable words = wordTables().at(table);
        for (const auto &[word, number] : words.words)
            QTest::newRow((name + ' ' + word).constData()) << table << word << number;
    });
}

void TstBinderSections::everyWordOfACollectionIsReadAndWritten()
{
    QFETCH(int, table);
    QFETCH(QByteArray, word);
    QFETCH(int, number);
    const WordTable words = wordTables().at(table);
    QCOMPARE(words.get(readCollection(collectionXml(words, word))), number);

    Collection collection;
    collection.mType = TVL::SavedSearchCollection;
    words.set(&collection, number);
    const QByteArray element = words.inSearch ? "<SearchSettings " : "<Collection ";
    const QByteArray xml = writtenCollection(collection);
    const QByteArray tag = xml.mid(xml.indexOf(element), xml.indexOf('>', xml.indexOf(element)));
    QVERIFY2(tag.contains(' ' + QByteArray(words.attribute) + "=\"" + word + '"'), xml.constData());
}

void TstBinderSections::anUnknownWordOfACollectionMeansItsDefault_data()
{
    QTest::addColumn<int>("table");
    QTest::addColumn<QByteArray>("word");
    addTableRows([](int table, const QByteArray &name) {
        const QByteArray lowerCase = wordTables().at(table).words.constLast().first.toLower();
        for (const QByteArray &word :
             {QByteArray("Unknown"), QByteArray(), QByteArray("1"), lowerCase})
            QTest::newRow((name + " '" + word + '\'').constData()) << table << word;
    });
}

void TstBinderSections::anUnknownWordOfACollectionMeansItsDefault()
{
    QFETCH(int, table);
    QFETCH(QByteArray, word);
    const WordTable words = wordTables().at(table);
    QCOMPARE(words.get(readCollection(collectionXml(words, word))), 0);
}

void TstBinderSections::aNumberWithoutAWordIsWrittenAsTheDefault_data()
{
    QTest::addColumn<int>("table");
    addTableRows([](int table, const QByteArray &name) {
        // Qt's enumeration can't hold a third value.
        if (name != "search CaseSensitive")
            QTest::newRow(name.constData()) << table;
    });
}

void TstBinderSections::aNumberWithoutAWordIsWrittenAsTheDefault()
{
    QFETCH(int, table);
    const WordTable words = wordTables().at(table);
    Collection collection;
    collection.mType = TVL::SavedSearchCollection;
    words.set(&collection, 9);
    const QByteArray xml = writtenCollection(collection);
    const QByteArray element = words.inSearch ? "<SearchSettings " : "<Collection ";
    const QByteArray tag = xml.mid(xml.indexOf(element), xml.indexOf('>', xml.indexOf(element)));
    QVERIFY2(tag.contains(' ' + QByteArray(words.attribute) + "=\"" + words.fallbackWord + '"'),
             xml.constData());
}

void TstBinderSections::aCollectionIsWrittenByItsType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("xml");
    const QByteArray title = "<Title>T &amp; U</Title>";
    const QByteArray search =
        "<SearchSettings Operator=\"Any\" Type=\"Notes\" Scope=\"Draft\" "
        "CompileSetting=\"Include\" CaseSensitive=\"Yes\">a &lt; b</SearchSettings>";
    QTest::newRow("binder") << int(TVL::BinderCollection)
                            << "<Collection Type=\"Binder\" ID=\"i\" Color=\"0.902 0.918 0.933\">"
            + title + "</Collection>";
    QTest::newRow("search results")
        << int(TVL::RecentSearchCollection)
        << "<Collection Type=\"RecentSearch\" ID=\"i\" Color=\"0.902 0.902 0.980\">" + title
            + search + "</Collection>";
    QTest::newRow("saved search")
        << int(TVL::SavedSearchCollection)
        << "<Collection Type=\"SavedSearch\" ID=\"i\" Color=\"1.000 0.000 0.000\">" + title + search
            + "</Collection>";
    QTest::newRow("list") << int(TVL::ArbitraryCollection)
                          << "<Collection Type=\"Arbitrary\" ID=\"i\" Color=\"1.000 0.000 0.000\">"
            + title
            + "<BinderIDs><BinderID>5</BinderID><BinderID>3</BinderID></BinderIDs>"
              "</Collection>";
    QTest::newRow("outside the table")
        << 8
        << "<Collection Type=\"Arbitrary\" ID=\"i\" Color=\"1.000 0.000 0.000\">" + title
            + "</Collection>";
}

void TstBinderSections::aCollectionIsWrittenByItsType()
{
    QFETCH(int, type);
    Collection collection;
    collection.mType = TVL::CollectionType(type);
    collection.mId = u"i"_s;
    collection.mTitle = u"T & U"_s;
    collection.mColor = Qt::red;
    collection.mSearchText = u"a < b"_s;
    collection.mSearchOperator = TVL::AnyOperator;
    collection.mSearchProperty = TVL::NotesProperty;
    collection.mSearchScope = TVL::DraftScope;
    collection.mSearchCompile = TVL::IncludedInCompile;
    collection.mCaseSensitivity = Qt::CaseSensitive;
    collection.mIds = {5, 3};
    QTEST(writtenCollection(collection), "xml");
}

void TstBinderSections::searchResultsAreWrittenWithTheClassWideColor()
{
    const QColor before = Collection::mRecentSearchCollColor;
    Collection collection;
    collection.mType = TVL::RecentSearchCollection;
    for (const QColor &color : {QColor(Qt::red), QColor(Qt::green), QColor()}) {
        collection.mColor = color;
        QVERIFY(writtenCollection(collection).contains("Color=\"0.902 0.902 0.980\""));
    }
    Collection::setRecentSearchCollectionColor(Qt::blue);
    const QByteArray xml = writtenCollection(collection);
    Collection::setRecentSearchCollectionColor(before);
    QVERIFY(xml.contains("Color=\"0.000 0.000 1.000\""));
}

void TstBinderSections::aHandmadeCollectionWithoutMembersHasNoList()
{
    Collection collection;
    collection.mType = TVL::ArbitraryCollection;
    QVERIFY(!writtenCollection(collection).contains("BinderIDs"));
    collection.mIds = {0};
    QVERIFY(
        writtenCollection(collection).contains("<BinderIDs><BinderID>0</BinderID></BinderIDs>"));
}

void TstBinderSections::aCollectionStartsFromItsDefaults()
{
    Collection expected;
    expected.mId = u"i"_s;
    expected.mColor = QColor(0, 0, 0);
    QCOMPARE(readCollection("<Collection ID='i' Color='0 0 0'/>"), expected);
    expected.mType = TVL::SavedSearchCollection;
    QCOMPARE(
        readCollection(
            "<Collection Type='SavedSearch' ID='i' Color='0 0 0'><SearchSettings/></Collection>"),
        expected);
}

void TstBinderSections::aCollectionWithoutIdentityGetsAFreshOne()
{
    QSet<QString> identities = {QString()};
    for (int i = 0; i < 3; ++i)
        identities.insert(readCollection("<Collection Type='Arbitrary'/>").mId);
    QCOMPARE(identities.size(), 4);
}

void TstBinderSections::anEmptyIdentityIsKept()
{
    QCOMPARE(readCollection("<Collection ID=''/>").mId, QString());
}

void TstBinderSections::aCollectionWithoutUsableColorGetsARandomOne_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("empty") << QByteArray("Color=''");
    QTest::newRow("word") << QByteArray("Color='red'");
}

void TstBinderSections::aCollectionWithoutUsableColorGetsARandomOne()
{
    QFETCH(QByteArray, attribute);
    QList<Collection> collections;
    QVERIFY(
        readCollections(QByteArray("<Collection " + attribute + "/>").repeated(20), &collections));
    QSet<QRgb> colors;
    for (const Collection &collection : std::as_const(collections)) {
        QVERIFY(collection.mColor.isValid());
        QCOMPARE(collection.mColor.alpha(), 255);
        colors.insert(collection.mColor.rgb());
    }
    QVERIFY(colors.size() > 1);
}

void TstBinderSections::membersOfACollectionAreReadInOrder()
{
    QCOMPARE(
        readCollection("<Collection Type='Arbitrary'><BinderIDs><BinderID>5</BinderID><Foo>9</Foo>"
                       "<BinderID>3</BinderID><BinderID>5</BinderID></BinderIDs></Collection>")
            .mIds,
        QList<int>({5, 3, 5}));
}

void TstBinderSections::otherElementsInCollectionsAreSkipped()
{
    QList<Collection> collections;
    QVERIFY(readCollections(
        "<Foo><Collection/></Foo><Collection><Foo><Title>No</Title></Foo><Title>Yes</Title>"
        "</Collection>",
        &collections));
    QCOMPARE(collections.size(), 1);
    QCOMPARE(collections.at(0).mTitle, u"Yes"_s);
}

void TstBinderSections::collectionsAreAppendedInFileOrder()
{
    Collection first;
    first.mId = u"first"_s;
    QList<Collection> collections = {first};
    QVERIFY(readCollections("<Collection ID='b'/><Collection ID='a'/>", &collections));
    QCOMPARE(collections.size(), 3);
    QCOMPARE(collections.at(0), first);
    QCOMPARE(collections.at(1).mId, u"b"_s);
    QCOMPARE(collections.at(2).mId, u"a"_s);
}

void TstBinderSections::collectionsElsewhereFail()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<Foo><Collection/></Foo>");
    QVERIFY(reader.readNextStartElement());
    QList<Collection> collections;
    QVERIFY(!reader.readCollections(&collections));
    QVERIFY(collections.isEmpty());
    QCOMPARE(reader.errorString(), u"Unexpected tag Foo on line 1.  Expected tag Collections"_s);
}

void TstBinderSections::collectionsOfABinderReplaceThoseOfTheProject()
{
    TestBinderProject project;
    project.mCollections = {Collection(), Collection()};
    QVERIFY(project.read(binderXml({}, "<Collections><Collection ID='a'/></Collections>")));
    QCOMPARE(project.mCollections.size(), 1);
    QCOMPARE(project.mCollections.at(0).mId, u"a"_s);
}

void TstBinderSections::collectionsSurvive()
{
    QList<Collection> collections;
    for (int i = 0; i < 60; ++i) {
        Collection collection;
        collection.mType = i % 2 ? TVL::SavedSearchCollection : TVL::ArbitraryCollection;
        collection.mId = u"id %1"_s.arg(i);
        collection.mTitle = u"<Title> & %1"_s.arg(i);
        collection.mColor = QColor(i, 2 * i, 3 * i);
        if (i % 2) {
            collection.mSearchText = u" words\t%1 "_s.arg(i);
            collection.mSearchOperator = TVL::SearchOperator(i % 5);
            collection.mSearchProperty = TVL::DocumentProperty(i % 9);
            collection.mSearchScope = i % 3;
            collection.mSearchCompile = TVL::SearchCompile(i % 3);
            collection.mCaseSensitivity = Qt::CaseSensitivity(i % 4 / 2);
        } else {
            for (int id = 0; id < i; ++id)
                collection.mIds.append(i - id);
        }
        collections.append(collection);
    }
    TestBinderProject project;
    project.mInfo.mModified = sampleModified();
    project.mCollections = collections;
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    QCOMPARE(reread.mCollections, collections);
}

void TstBinderSections::userDataIsWrittenByteForByte()
{
    TestBinderProject project;
    project.mInfo.mModified = sampleModified();
    project.mUserProjectData =
        u"<UserProjectData>\n<!-- \u00fc -->  <Odd  a = 'b' />\t&#65;</UserProjectData>"_s;
    const QByteArray binder = project.write();
    QVERIFY(
        binder.contains("\n    " + project.mUserProjectData.toUtf8() + "\n</TavelinorProject>\n"));
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    reread.mUserProjectData = project.mUserProjectData;
    QCOMPARE(reread.write(), binder);
}

void TstBinderSections::noUserDataIsWrittenAsNothing()
{
    const QByteArray xml =
        written([](TVLBinderWriter *writer) { writer->writeUserProjectData(QString()); });
    QCOMPARE(xml, QByteArray());
}

void TstBinderSections::userDataIsSkippedOnReading()
{
    DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<UserProjectData>text<LabelSettings><Title>No</Title></LabelSettings>"
                  "</UserProjectData>")));
    QVERIFY(project.mLabelTitle.isEmpty());
    QVERIFY(project.mUserProjectData.isEmpty());
    QCOMPARE(log.lines(), QStringList());
}

void TstBinderSections::rawTextIsWrittenAsItStands_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("undeclared entity") << u"<UserProjectData>&who;</UserProjectData>"_s;
    QTest::newRow("undeclared entity in an attribute")
        << u"<UserProjectData><a b='&who;'/></UserProjectData>"_s;
    QTest::newRow("undeclared prefix") << u"<UserProjectData><a:b c:d=''/></UserProjectData>"_s;
    QTest::newRow("odd declaration") << u"<UserProjectData><b xmlns:c=''/></UserProjectData>"_s;
    QTest::newRow("text behind it") << u"<UserProjectData/>more"_s;
    QTest::newRow("no element") << u" words &amp; <!-- more --> "_s;
    QTest::newRow("two elements") << u"<UserProjectData/><Other/>"_s;
    QTest::newRow("attributes") << u"<UserProjectData a='b'>x</UserProjectData >"_s;
}

void TstBinderSections::rawTextIsWrittenAsItStands()
{
    QFETCH(const QString, text);
    const DebugLog log;
    TestBinderProject project;
    project.mUserProjectData = text;
    const QByteArray binder = project.write();
    QVERIFY(binder.contains("\n    " + text.toUtf8() + "\n</TavelinorProject>"));
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
}

void TstBinderSections::aPrefixThatNobodyDeclaredPassesInUserDataAlone()
{
    const DebugLog log;
    const QByteArray userData = "<UserProjectData><a:b>&who;</a:b></UserProjectData>";
    const auto reads = [](const QByteArray &sections) {
        TestBinderProject project;
        return project.read(binderXml({}, sections));
    };
    QVERIFY(reads(userData));
    QVERIFY(!reads(userData + "<a:b/>"));
    QVERIFY(!reads(userData + "<Other>&who;</Other>"));
    QVERIFY(!reads("<Other>" + userData + "</Other>"));
}

void TstBinderSections::rawTextThatCannotStandAloneIsLeftOut_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nested tags, cut at the first end")
        << u"<UserProjectData>a<UserProjectData>b</UserProjectData>"_s;
    QTest::newRow("the root's end") << u"<UserProjectData/></TavelinorProject>"_s;
    QTest::newRow("two roots") << u"</TavelinorProject><TavelinorProject Version=\"1.5\">"_s;
    QTest::newRow("a comment without an end") << u"<UserProjectData/><!--"_s;
    QTest::newRow("a character that XML can't hold")
        << u"<UserProjectData>\u0001</UserProjectData>"_s;
    QTest::newRow("undeclared entity outside") << u"<UserProjectData/>&who;"_s;
    QTest::newRow("undeclared prefix outside") << u"<UserProjectData/><a:b/>"_s;
    QTest::newRow("a keyword without an id") << u"<Keywords><Keyword/></Keywords>"_s;
    QTest::newRow("a favorite that is no item")
        << u"<Favorites><BinderID>99</BinderID></Favorites>"_s;
}

void TstBinderSections::rawTextThatCannotStandAloneIsLeftOut()
{
    QFETCH(const QString, text);
    const DebugLog log;
    TestBinderProject project;
    const QByteArray without = project.write();
    project.mUserProjectData = text;
    const QByteArray binder = project.write();
    QCOMPARE(binder, without);
    QCOMPARE(log.lines().constLast(),
             u"Left out in writing: the user's data, with which the binder couldn't be read "
             "again"_s);
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
}

TVL_TEST(TstBinderSections)
#include "tst_bindersections.moc"
