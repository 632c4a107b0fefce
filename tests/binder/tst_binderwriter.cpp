#include "BinderSamples.h"
#include "TVLBinderText.h"
#include "TVLBinderWriter.h"
#include "TestBinderProject.h"

#include "TestMain.h"

#include <QBuffer>
#include <QTest>
#include <QXmlStreamReader>

#include <functional>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Properties = TVLProjectNodeProperties;
using Change = std::function<void(Properties *)>;

/** A node with the identity and the dates of the samples, of no other interest. */
class SampleNode : public TVLProjectNode
{
public:
    explicit SampleNode(TVL::NodeType type = TVL::Text)
        : TVLProjectNode({1, sampleUuid()}, nullptr)
    {
        mNodeType = type;
        mCreated = sampleCreated();
        mModified = sampleModified();
        mIncludeInCompile = false;
    }
};

/** The content that every node of a type has, around what its row is about. */
QByteArray contentOf(TVL::NodeType type, const QByteArray &metaData, const QByteArray &settings,
                     const QByteArray &more = {})
{
    QByteArray content = "<Title></Title>";
    content += metaData.isEmpty() ? "<MetaData/>" : "<MetaData>" + metaData + "</MetaData>";
    if (!settings.isEmpty())
        content += settings;
    else if (type == TVL::Folder || type == TVL::Text)
        content += "<TextSettings><Target Type=\"Words\">0</Target></TextSettings>";
    return content + more;
}

void addWrittenColumns()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QByteArray>("mobile");
    QTest::addColumn<Change>("change");
}

void addWrittenRow(const char *name, TVL::NodeType type, const Change &change,
                   const QByteArray &desktop, const QByteArray &mobile)
{
    QTest::newRow(name) << int(type) << desktop << mobile << change;
}

/** Writes the row's node for a desktop and for a mobile binder. */
void checkWrittenRow()
{
    QFETCH(int, type);
    QFETCH(Change, change);
    SampleNode node{TVL::NodeType(type)};
    change(&node);
    QTEST(writtenContent(&node, false), "desktop");
    QTEST(writtenContent(&node, true), "mobile");
}

/** A row of a text's MetaData: what a field adds to it, in which binders. */
void addMetaDataRow(const char *name, const Change &change, const QByteArray &xml, bool everywhere)
{
    addWrittenRow(name, TVL::Text, change, contentOf(TVL::Text, xml, {}),
                  contentOf(TVL::Text, everywhere ? xml : QByteArray(), {}));
}

/** A row of what an item has beside its MetaData; the same in both binders. */
void addSettingsRow(const char *name, TVL::NodeType type, const Change &change,
                    const QByteArray &settings, const QByteArray &more = {})
{
    const QByteArray content = contentOf(type, {}, settings, more);
    addWrittenRow(name, type, change, content, content);
}

/** The attributes of the root element in their order, as name=value. */
QStringList rootAttributes(const QByteArray &binder)
{
    QXmlStreamReader reader(binder);
    reader.readNextStartElement();
    QStringList attributes;
    for (const QXmlStreamAttribute &attribute : reader.attributes())
        attributes.append(attribute.name().toString() + u'=' + attribute.value().toString());
    return attributes;
}

/** The names of the elements below the root, in their order. */
QStringList sectionsOf(const QByteArray &binder)
{
    QXmlStreamReader reader(binder);
    reader.readNextStartElement();
    QStringList names;
    while (reader.readNextStartElement()) {
        names.append(reader.name().toString());
        reader.skipCurrentElement();
    }
    return names;
}

/** A project in which everything is set that its root element could say. */
void fillInfo(TestBinderProject *project)
{
    project->mInfo.mDevice = u"Desk"_s;
    project->mInfo.mModified = sampleModified();
    project->mInfo.mModId = QUuid(u"11111111-1111-4111-8111-11111111111a"_s);
    project->mInfo.mSyncId = QUuid(u"22222222-2222-4222-8222-22222222222b"_s);
    project->mInfo.mChecksumsId = QUuid(u"33333333-3333-4333-8333-33333333333c"_s);
    project->mInfo.mIsTemplate = true;
    project->mInfo.mIsNewProject = true;
}

/** A folder with children of the ids 1 to 5. */
std::unique_ptr<TVLProjectNode> folderOfFive()
{
    auto folder = std::make_unique<TVLProjectNode>(QPair<int, QUuid>(9, sampleUuid()), nullptr);
    folder->mNodeType = TVL::Folder;
    for (int id = 1; id <= 5; ++id)
        new TVLProjectNode({id, QUuid::createUuid()}, folder.get());
    return folder;
}

/** The element CorkboardAndOutliner of a node, without indentation; empty when it isn't written. */
QByteArray writtenCorkboard(const TVLProjectNode *node)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    writer.setAutoFormatting(false);
    writer.writeCorkboardAndOutliner(node);
    return buffer.data();
}

} // namespace

class TstBinderWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Document
    void theDocumentIsUtf8WithItsDeclaration();
    void theRichBinderIsWrittenAsItStands();
    void theRootOfADesktopProjectHasItsAttributesInOrder();
    void theRootOfAMobileProjectHasItsAttributesInOrder();
    void nullIdentitiesAreNotWritten();
    void theStartTagSaysWhetherItIsATemplate();
    void theGrammarFollowsTheProject_data();
    void theGrammarFollowsTheProject();
    void aDesktopBinderHasItsSectionsInOrder();
    void aMobileBinderEndsBehindTheTemplateFolder();
    void theRootNodeHasNoElement();
    void theWriterMayGetItsDeviceLater();

    // Items
    void anItemHasItsAttributesInOrder();
    void aNegativeIdIsNotWritten_data();
    void aNegativeIdIsNotWritten();
    void aNullUuidIsFreshOnEachWriteAndNotStored();
    void anItemSaysTheWordOfItsType_data();
    void anItemSaysTheWordOfItsType();
    void anInvalidDateIsWrittenAsNothing();
    void everythingOfAnItemComesInOrder();
    void childrenComeLastAndInOrder();
    void childrenOfAMobileBinderAreWrittenTheMobileWay();

    // Content
    void aTitleIsAlwaysWritten();
    void metaDataIsWrittenWhereItBelongs_data();
    void metaDataIsWrittenWhereItBelongs() { checkWrittenRow(); }
    void metaDataComesInOrder();
    void textSettingsAreWritten_data();
    void textSettingsAreWritten() { checkWrittenRow(); }
    void mediaSettingsDependOnTheType_data();
    void mediaSettingsDependOnTheType() { checkWrittenRow(); }
    void typesWithoutSettingsWriteNone_data();
    void typesWithoutSettingsWriteNone() { checkWrittenRow(); }
    void keywordsReferencesAndTemplateAreWritten_data();
    void keywordsReferencesAndTemplateAreWritten() { checkWrittenRow(); }
    void theOlderPageBreakIsWrittenUnderItsNewName();
    void theGeneralTextModeNeverComesBack();

    // Corkboard
    void aPlainItemHasNoCorkboard();
    void onlySelectedChildrenAreWritten();
    void theFreeformModeAloneIsWritten();
    void everyChildGetsACardWhenThereArePositions();
    void positionsOfOthersAreDropped();
    void whatIsLeftOutIsTold_data();
    void whatIsLeftOutIsTold();
    void nothingIsToldOfWhatIsWritten();
    void positionsWithoutChildrenLeaveAnEmptyList();
};

void TstBinderWriter::theDocumentIsUtf8WithItsDeclaration()
{
    TestBinderProject project;
    auto *node = new TVLProjectNode({1, sampleUuid()}, project.mRoot.get());
    node->mTitle = u"\u00fc\u2603\U0001F600"_s;
    const QByteArray binder = project.write();
    QVERIFY(binder.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TavelinorProject "));
    QVERIFY(binder.endsWith("\n</TavelinorProject>\n"));
    QVERIFY(binder.contains("<Title>\xc3\xbc\xe2\x98\x83\xf0\x9f\x98\x80</Title>"));
}

void TstBinderWriter::theRichBinderIsWrittenAsItStands()
{
    TestBinderProject project;
    QString error;
    QVERIFY2(project.read(richBinder(), &error), qPrintable(error));
    project.mUserProjectData = richUserProjectData();
    QCOMPARE(QString::fromUtf8(project.write()).split(u'\n'),
             QString::fromUtf8(richBinder()).split(u'\n'));
}

void TstBinderWriter::theRootOfADesktopProjectHasItsAttributesInOrder()
{
    TestBinderProject project;
    fillInfo(&project);
    QCOMPARE(rootAttributes(project.write()),
             QStringList({u"Template=No"_s, u"Version=1.5"_s, u"Creator=TVLLIN-1.2.3"_s,
                          u"Device=Desk"_s, u"Modified=2022-12-31 23:59:58 +0000"_s,
                          u"ModID=11111111-1111-4111-8111-11111111111A"_s}));
}

void TstBinderWriter::theRootOfAMobileProjectHasItsAttributesInOrder()
{
    TestBinderProject project;
    fillInfo(&project);
    project.mIsMobile = true;
    QCOMPARE(rootAttributes(project.write()),
             QStringList({u"Template=No"_s, u"Version=1.5"_s, u"Creator=TVLLIN-1.2.3"_s,
                          u"Device=Desk"_s, u"Modified=2022-12-31 23:59:58 +0000"_s,
                          u"SyncID=22222222-2222-4222-8222-22222222222B"_s,
                          u"Checksums=33333333-3333-4333-8333-33333333333C"_s}));
}

void TstBinderWriter::nullIdentitiesAreNotWritten()
{
    for (const bool mobile : {false, true}) {
        TestBinderProject project;
        project.mIsMobile = mobile;
        QCOMPARE(rootAttributes(project.write()),
                 QStringList({u"Template=No"_s, u"Version=1.5"_s, u"Creator=TVLLIN-1.2.3"_s,
                              u"Device="_s, u"Modified="_s}));
    }
}

void TstBinderWriter::theStartTagSaysWhetherItIsATemplate()
{
    TestBinderProject project;
    for (const bool isTemplate : {false, true}) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        TVLBinderWriter writer(&buffer);
        writer.writeStartTavelinorProjectTag(&project, isTemplate);
        writer.writeEndTavelinorProjectTag();
        QCOMPARE(rootAttributes(buffer.data()).constFirst(),
                 isTemplate ? u"Template=Yes"_s : u"Template=No"_s);
    }
}

void TstBinderWriter::theGrammarFollowsTheProject_data()
{
    QTest::addColumn<int>("binderVersion");
    QTest::addColumn<int>("formatVersion");
    QTest::addColumn<QString>("attribute");
    QTest::newRow("none is the second") << 0 << 18 << u"Version=1.5"_s;
    QTest::newRow("none without format") << 0 << 0 << u"Version=1.5"_s;
    QTest::newRow("none in the old format") << 0 << 16 << u"Version=1.5"_s;
    QTest::newRow("first") << 1 << 16 << u"Version=1.0"_s;
    QTest::newRow("second") << 2 << 18 << u"Version=1.5"_s;
    QTest::newRow("third") << 3 << 18 << u"Version=2.0"_s;
    QTest::newRow("newest format, none") << 0 << 23 << u"Version=2.0"_s;
    QTest::newRow("newest format, first") << 1 << 23 << u"Version=2.0"_s;
    QTest::newRow("newest format, second") << 2 << 23 << u"Version=2.0"_s;
}

void TstBinderWriter::theGrammarFollowsTheProject()
{
    QFETCH(int, binderVersion);
    QFETCH(int, formatVersion);
    TestBinderProject project;
    project.mInfo.mBinderVersion = TVL::BinderVersion(binderVersion);
    project.mFormatVersion = TVL::FormatVersion(formatVersion);
    QTEST(rootAttributes(project.write()).at(1), "attribute");
}

void TstBinderWriter::aDesktopBinderHasItsSectionsInOrder()
{
    TestBinderProject project;
    project.mTemplateFolderUuid = sampleUuid();
    project.mUserProjectData = u"<UserProjectData/>"_s;
    // The project's sections that stand between these two are of no interest here.
    QStringList sections = sectionsOf(project.write());
    QCOMPARE(sections.first(5),
             QStringList({u"Binder"_s, u"LabelSettings"_s, u"StatusSettings"_s,
                          u"TemplateFolderUUID"_s, u"Collections"_s}));
    QCOMPARE(sections.constLast(), u"UserProjectData"_s);
}

void TstBinderWriter::aMobileBinderEndsBehindTheTemplateFolder()
{
    TestBinderProject project;
    project.mIsMobile = true;
    project.mTemplateFolderUuid = sampleUuid();
    project.mUserProjectData = u"<UserProjectData/>"_s;
    project.mCollections = {TVLCollectionMetaData()};
    QCOMPARE(sectionsOf(project.write()),
             QStringList(
                 {u"Binder"_s, u"LabelSettings"_s, u"StatusSettings"_s, u"TemplateFolderUUID"_s}));
}

void TstBinderWriter::theRootNodeHasNoElement()
{
    TestBinderProject project;
    project.mRoot->mTitle = u"Root"_s;
    new TVLProjectNode({1, sampleUuid()}, project.mRoot.get());
    const QByteArray binder = project.write();
    QVERIFY(!binder.contains("Root"));
    QCOMPARE(binder.count("<BinderItem "), 1);
}

void TstBinderWriter::theWriterMayGetItsDeviceLater()
{
    TestBinderProject project;
    fillInfo(&project);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer;
    writer.setDevice(&buffer);
    writer.writeProject(&project, project.mRoot.get());
    QCOMPARE(buffer.data(), project.write());
}

void TstBinderWriter::anItemHasItsAttributesInOrder()
{
    const SampleNode node;
    QVERIFY(writtenItem(&node).startsWith("<BinderItem " + sampleAttributes() + "><Title>"));
    QVERIFY(writtenItem(&node, true).startsWith("<BinderItem " + sampleAttributes() + "><Title>"));
}

void TstBinderWriter::aNegativeIdIsNotWritten_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("minus one") << -1 << QByteArray("<BinderItem UUID=\"");
    QTest::newRow("least") << std::numeric_limits<int>::min() << QByteArray("<BinderItem UUID=\"");
    QTest::newRow("zero") << 0 << QByteArray("<BinderItem ID=\"0\" UUID=\"");
    QTest::newRow("greatest") << std::numeric_limits<int>::max()
                              << QByteArray("<BinderItem ID=\"2147483647\" UUID=\"");
}

void TstBinderWriter::aNegativeIdIsNotWritten()
{
    QFETCH(int, id);
    QFETCH(QByteArray, start);
    SampleNode node;
    node.mId = id;
    QVERIFY(writtenItem(&node).startsWith(start));
}

void TstBinderWriter::aNullUuidIsFreshOnEachWriteAndNotStored()
{
    SampleNode node;
    node.mUuid = QUuid();
    QSet<QUuid> uuids = {QUuid()};
    for (int i = 0; i < 3; ++i) {
        QXmlStreamReader reader(writtenItem(&node));
        reader.readNextStartElement();
        uuids.insert(QUuid(reader.attributes().value(u"UUID"_s).toString()));
    }
    QCOMPARE(uuids.size(), 4);
    QVERIFY(node.mUuid.isNull());
}

void TstBinderWriter::anItemSaysTheWordOfItsType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("word");
    const char *words[] = {"DraftFolder", "ResearchFolder", "TrashFolder", "Folder",
                           "Text",        "Image",          "PDF",         "Media",
                           "WebArchive",  "Other"};
    for (int type = 0; type < 10; ++type)
        QTest::newRow(words[type]) << type << QByteArray(words[type]);
    QTest::newRow("outside the table") << 12 << QByteArray("Text");
    QTest::newRow("negative") << -1 << QByteArray("Text");
}

void TstBinderWriter::anItemSaysTheWordOfItsType()
{
    QFETCH(int, type);
    QFETCH(QByteArray, word);
    const SampleNode node{TVL::NodeType(type)};
    QVERIFY(writtenItem(&node).startsWith("<BinderItem " + sampleAttributes(word) + '>'));
}

void TstBinderWriter::anInvalidDateIsWrittenAsNothing()
{
    SampleNode node;
    node.mCreated = QDateTime();
    QVERIFY(writtenItem(&node).contains(" Created=\"\" Modified=\"2022-12-31 23:59:58 +0000\" "));
}

void TstBinderWriter::everythingOfAnItemComesInOrder()
{
    SampleNode node{TVL::Folder};
    new TVLProjectNode({2, QUuid::createUuid()}, &node);
    node.mFreeformMode = true;
    node.mKeywords = {1};
    node.mReferences = {TVLReference()};
    node.mDefaultChildTemplateId = 0;
    QXmlStreamReader reader(writtenItem(&node));
    reader.readNextStartElement();
    QStringList names;
    while (reader.readNextStartElement()) {
        names.append(reader.name().toString());
        reader.skipCurrentElement();
    }
    QCOMPARE(
        names,
        QStringList({u"Title"_s, u"MetaData"_s, u"TextSettings"_s, u"CorkboardAndOutliner"_s,
                     u"Keywords"_s, u"References"_s, u"DefaultChildTemplateID"_s, u"Children"_s}));
}

void TstBinderWriter::childrenComeLastAndInOrder()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    QByteArray expected = "<Children>";
    for (const TVLProjectNode *child : std::as_const(folder->mChildren))
        expected += writtenItem(child);
    expected += "</Children></BinderItem>";
    QVERIFY(writtenItem(folder.get()).endsWith(expected));
}

void TstBinderWriter::childrenOfAMobileBinderAreWrittenTheMobileWay()
{
    SampleNode node{TVL::Folder};
    auto *child = new TVLProjectNode({2, QUuid::createUuid()}, &node);
    auto *grandchild = new TVLProjectNode({3, QUuid::createUuid()}, child);
    grandchild->mCompileAsIs = true;
    QVERIFY(writtenItem(&node, false).contains("CompileAsIs"));
    QVERIFY(!writtenItem(&node, true).contains("CompileAsIs"));
}

void TstBinderWriter::aTitleIsAlwaysWritten()
{
    SampleNode node{TVL::Other};
    QCOMPARE(writtenContent(&node), QByteArray("<Title></Title><MetaData/>"));
    node.mTitle = u" <A> & \"B\"\t"_s;
    QCOMPARE(writtenContent(&node),
             QByteArray("<Title> &lt;A&gt; &amp; &quot;B&quot;\t</Title><MetaData/>"));
}

void TstBinderWriter::metaDataIsWrittenWhereItBelongs_data()
{
    addWrittenColumns();
    using P = Properties;
    const bool everywhere = true;
    const bool desktopOnly = false;
    addMetaDataRow(
        "nothing", [](P *) {}, {}, everywhere);
    addMetaDataRow(
        "label", [](P *p) { p->mLabelId = 3; }, "<LabelID>3</LabelID>", everywhere);
    addMetaDataRow(
        "label 0", [](P *p) { p->mLabelId = 0; }, "<LabelID>0</LabelID>", everywhere);
    addMetaDataRow(
        "label -2", [](P *p) { p->mLabelId = -2; }, "<LabelID>-2</LabelID>", everywhere);
    addMetaDataRow(
        "status", [](P *p) { p->mStatusId = 4; }, "<StatusID>4</StatusID>", everywhere);
    addMetaDataRow(
        "compile", [](P *p) { p->mIncludeInCompile = true; },
        "<IncludeInCompile>Yes</IncludeInCompile>", everywhere);
    addMetaDataRow(
        "extension", [](P *p) { p->mFileExtension = u"png"_s; },
        "<FileExtension>png</FileExtension>", everywhere);
    addMetaDataRow(
        "icon", [](P *p) { p->mIconFileName = u"Leaf"_s; }, "<IconFileName>Leaf</IconFileName>",
        everywhere);
    addMetaDataRow(
        "page break", [](P *p) { p->mPageBreakBefore = true; },
        "<PageBreakBefore>Yes</PageBreakBefore>", desktopOnly);
    addMetaDataRow(
        "as is", [](P *p) { p->mCompileAsIs = true; }, "<CompileAsIs>Yes</CompileAsIs>",
        desktopOnly);
    addMetaDataRow(
        "notes selection",
        [](P *p) {
            p->mNotesTextSelection = {3, 4};
        },
        "<NotesTextSelection>3,4</NotesTextSelection>", desktopOnly);
    addMetaDataRow(
        "notes cursor",
        [](P *p) {
            p->mNotesTextSelection = {3, 0};
        },
        "<NotesTextSelection>3,0</NotesTextSelection>", desktopOnly);
    addMetaDataRow(
        "notes selection at the start",
        [](P *p) {
            p->mNotesTextSelection = {0, 4};
        },
        "<NotesTextSelection>0,4</NotesTextSelection>", desktopOnly);
    addMetaDataRow(
        "synopsis image", [](P *p) { p->mShowSynopsisImage = true; },
        "<ShowSynopsisImage>Yes</ShowSynopsisImage>", desktopOnly);
    addMetaDataRow(
        "index card", [](P *p) { p->mIndexCardImageFileExtension = u"jpg"_s; },
        "<IndexCardImageFileExtension>jpg</IndexCardImageFileExtension>", desktopOnly);
    addMetaDataRow(
        "title affixes", [](P *p) { p->mIgnoresTitlePrefixAndSuffix = true; },
        "<IgnoresTitlePrefixAndSuffix>Yes</IgnoresTitlePrefixAndSuffix>", desktopOnly);
    addMetaDataRow(
        "application", [](P *p) { p->mPreferredExternalApplication = u"Viewer"_s; },
        "<PreferredExternalApplication>Viewer</PreferredExternalApplication>", desktopOnly);
    addMetaDataRow(
        "custom",
        [](P *p) {
            p->mCustomMetaData = {{u"b"_s, u"2"_s}, {u"a"_s, {}}};
        },
        "<CustomMetaData>"
        "<MetaDataItem><FieldID>a</FieldID><Value></Value></MetaDataItem>"
        "<MetaDataItem><FieldID>b</FieldID><Value>2</Value></MetaDataItem>"
        "</CustomMetaData>",
        desktopOnly);
    // What isn't kept in a binder at all.
    addMetaDataRow(
        "in memory only",
        [](P *p) {
            p->mRestoredSnapshotDate = sampleCreated();
            p->mIsTemplateFolder = true;
            p->mIsFavorite = true;
            p->mHasText = p->mHasSynopsis = p->mHasDocumentNote = p->mHasSnapshots = true;
            p->mWordCount = p->mCharacterCount = 5;
            p->mSessionWordCount = p->mSessionCharacterCount = 5;
        },
        {}, everywhere);
}

void TstBinderWriter::metaDataComesInOrder()
{
    SampleNode node{TVL::Other};
    node.mLabelId = 1;
    node.mStatusId = 2;
    node.mIncludeInCompile = true;
    node.mFileExtension = u"e"_s;
    node.mIconFileName = u"i"_s;
    node.mPageBreakBefore = true;
    node.mCompileAsIs = true;
    node.mNotesTextSelection = {1, 2};
    node.mShowSynopsisImage = true;
    node.mIndexCardImageFileExtension = u"x"_s;
    node.mIgnoresTitlePrefixAndSuffix = true;
    node.mPreferredExternalApplication = u"p"_s;
    node.mCustomMetaData = {{u"k"_s, u"v"_s}};
    const QByteArray first =
        "<LabelID>1</LabelID><StatusID>2</StatusID>"
        "<IncludeInCompile>Yes</IncludeInCompile><FileExtension>e</FileExtension>"
        "<IconFileName>i</IconFileName>";
    const QByteArray rest =
        "<PageBreakBefore>Yes</PageBreakBefore><CompileAsIs>Yes</CompileAsIs>"
        "<NotesTextSelection>1,2</NotesTextSelection><ShowSynopsisImage>Yes</ShowSynopsisImage>"
        "<IndexCardImageFileExtension>x</IndexCardImageFileExtension>"
        "<IgnoresTitlePrefixAndSuffix>Yes</IgnoresTitlePrefixAndSuffix>"
        "<PreferredExternalApplication>p</PreferredExternalApplication>"
        "<CustomMetaData><MetaDataItem><FieldID>k</FieldID><Value>v</Value></MetaDataItem></"
        "CustomMetaData>";
    QCOMPARE(writtenContent(&node), contentOf(TVL::Other, first + rest, {}));
    QCOMPARE(writtenContent(&node, true), contentOf(TVL::Other, first, {}));
}

void TstBinderWriter::textSettingsAreWritten_data()
{
    addWrittenColumns();
    using P = Properties;
    const QByteArray start = "<TextSettings>";
    const QByteArray noTarget = "<Target Type=\"Words\">0</Target>";
    const QByteArray end = "</TextSettings>";
    for (const TVL::NodeType type : {TVL::Folder, TVL::Text}) {
        const auto add = [&](const char *name, const Change &change, const QByteArray &xml) {
            const QByteArray row = QByteArray(name) + (type == TVL::Folder ? ", folder" : ", text");
            addSettingsRow(row.constData(), type, change, start + xml + end);
        };
        add(
            "target of 0", [](P *) {}, noTarget);
        add(
            "mode", [](P *p) { p->mTextMode = u"Script"_s; },
            "<TextMode>Script</TextMode>" + noTarget);
        add(
            "selection",
            [](P *p) {
                p->mTextSelection = {1, 2};
            },
            "<TextSelection>1,2</TextSelection>" + noTarget);
        add(
            "cursor",
            [](P *p) {
                p->mTextSelection = {1, 0};
            },
            "<TextSelection>1,0</TextSelection>" + noTarget);
        add(
            "typing attributes", [](P *p) { p->mTypingAttributes = QByteArray::fromHex("7b00ff"); },
            "<TypingAttributesRTFData>7b00ff</TypingAttributesRTFData>" + noTarget);
        add(
            "target", [](P *p) { p->mTarget = 1000; }, "<Target Type=\"Words\">1000</Target>");
        add(
            "characters", [](P *p) { p->mTargetType = TVL::CharactersTarget; },
            "<Target Type=\"Characters\">0</Target>");
        add(
            "target of an unknown type", [](P *p) { p->mTargetType = TVL::TargetType(7); },
            noTarget);
        add(
            "notify", [](P *p) { p->mTargetNotify = true; },
            "<Target Type=\"Words\" Notify=\"Yes\">0</Target>");
        add(
            "allow over", [](P *p) { p->mTargetAllowOver = true; },
            "<Target Type=\"Words\" AllowOver=\"Yes\">0</Target>");
        add(
            "buffer", [](P *p) { p->mTargetBuffer = 1; },
            "<Target Type=\"Words\" Buffer=\"1\">0</Target>");
        add(
            "negative buffer", [](P *p) { p->mTargetBuffer = -1; }, noTarget);
        add(
            "everything",
            [](P *p) {
                p->mTextMode = u"Script"_s;
                p->mTextSelection = {1, 2};
                p->mTypingAttributes = "a";
                p->mTarget = 5;
                p->mTargetType = TVL::CharactersTarget;
                p->mTargetNotify = p->mTargetAllowOver = true;
                p->mTargetBuffer = 9;
            },
            "<TextMode>Script</TextMode><TextSelection>1,2</TextSelection>"
            "<TypingAttributesRTFData>61</TypingAttributesRTFData>"
            "<Target Type=\"Characters\" Notify=\"Yes\" AllowOver=\"Yes\" Buffer=\"9\">5</Target>");
    }
}

void TstBinderWriter::mediaSettingsDependOnTheType_data()
{
    addWrittenColumns();
    using P = Properties;
    const auto add = [](const char *name, TVL::NodeType type, const Change &change,
                        const QByteArray &xml) {
        addSettingsRow(name, type, change, "<MediaSettings>" + xml + "</MediaSettings>");
    };
    const QByteArray scales = "<ImageScalesProportionally>Yes</ImageScalesProportionally>";
    const Change allMedia = [](P *p) {
        p->mImageScaleFactor = 1.5;
        p->mImageRotation = 1;
        p->mImageScalesProportionally = false;
        p->mCurrentPdfPage = 7;
        p->mOriginalUrl = u"u"_s;
        p->mIsAlias = true;
    };

    add(
        "image", TVL::Image, [](P *) {}, scales);
    add(
        "image scale 1.5", TVL::Image, [](P *p) { p->mImageScaleFactor = 1.5; },
        "<ImageScaleFactor>1.5</ImageScaleFactor>" + scales);
    add(
        "image scale almost 1", TVL::Image, [](P *p) { p->mImageScaleFactor = 1.0 + 1e-14; },
        scales);
    add(
        "image scale of six digits", TVL::Image, [](P *p) { p->mImageScaleFactor = 1.0 / 3; },
        "<ImageScaleFactor>0.333333</ImageScaleFactor>" + scales);
    add(
        "image rotation 1", TVL::Image, [](P *p) { p->mImageRotation = 1; },
        "<ImageRotation>90CW</ImageRotation>" + scales);
    add(
        "image rotation 2", TVL::Image, [](P *p) { p->mImageRotation = 2; },
        "<ImageRotation>180</ImageRotation>" + scales);
    add(
        "image rotation 3", TVL::Image, [](P *p) { p->mImageRotation = 3; },
        "<ImageRotation>90CCW</ImageRotation>" + scales);
    add(
        "image out of proportion", TVL::Image, [](P *p) { p->mImageScalesProportionally = false; },
        "<ImageScalesProportionally>No</ImageScalesProportionally>");
    add(
        "image address", TVL::Image, [](P *p) { p->mOriginalUrl = u"a&b"_s; },
        scales + "<OriginalURL>a&amp;b</OriginalURL>");
    add(
        "image alias", TVL::Image, [](P *p) { p->mIsAlias = true; },
        scales + "<IsAlias>Yes</IsAlias>");
    add("image, everything", TVL::Image, allMedia,
        "<ImageScaleFactor>1.5</ImageScaleFactor><ImageRotation>90CW</ImageRotation>"
        "<ImageScalesProportionally>No</ImageScalesProportionally><OriginalURL>u</OriginalURL>"
        "<IsAlias>Yes</IsAlias>");
    add(
        "PDF", TVL::PDF, [](P *) {}, "<CurrentPDFPage>1</CurrentPDFPage>");
    add("PDF, everything", TVL::PDF, allMedia,
        "<CurrentPDFPage>7</CurrentPDFPage><OriginalURL>u</OriginalURL><IsAlias>Yes</IsAlias>");
    add(
        "web archive", TVL::WebArchive, [](P *) {}, "<OriginalURL></OriginalURL>");
    add("web archive, everything", TVL::WebArchive, allMedia,
        "<OriginalURL>u</OriginalURL><IsAlias>Yes</IsAlias>");
}

void TstBinderWriter::typesWithoutSettingsWriteNone_data()
{
    addWrittenColumns();
    const Change everything = [](Properties *p) {
        p->mTextMode = u"Script"_s;
        p->mTextSelection = {1, 2};
        p->mTarget = 5;
        p->mImageRotation = 1;
        p->mCurrentPdfPage = 7;
        p->mOriginalUrl = u"u"_s;
        p->mIsAlias = true;
    };
    addSettingsRow("draft", TVL::DraftFolder, everything, {});
    addSettingsRow("research", TVL::ResearchFolder, everything, {});
    addSettingsRow("trash", TVL::TrashFolder, everything, {});
    addSettingsRow("media", TVL::Media, everything, {});
    addSettingsRow("other", TVL::Other, everything, {});
}

void TstBinderWriter::keywordsReferencesAndTemplateAreWritten_data()
{
    addWrittenColumns();
    using P = Properties;
    const auto add = [](const char *name, const Change &change, const QByteArray &xml) {
        addSettingsRow(name, TVL::Other, change, {}, xml);
    };
    const auto internal = [](int id) {
        TVLReference reference;
        reference.mTitle = u"A & B"_s;
        reference.setInternalLink(id);
        return reference;
    };
    const auto external = [](const QString &address) {
        TVLReference reference;
        reference.mTitle = u"Out"_s;
        reference.setUrl(QUrl(address));
        return reference;
    };
    add(
        "keywords in order",
        [](P *p) {
            p->mKeywords = {7, 3, 7};
        },
        "<Keywords><KeywordID>7</KeywordID><KeywordID>3</KeywordID><KeywordID>7</KeywordID></"
        "Keywords>");
    add(
        "internal reference", [=](P *p) { p->mReferences = {internal(0)}; },
        "<References><Reference BinderID=\"0\">A &amp; B</Reference></References>");
    add(
        "external reference",
        [=](P *p) { p->mReferences = {external(u"https://example.org/a b?c=\u00fc&d#e"_s)}; },
        "<References><Reference "
        "Destination=\"https://example.org/a%20b?c=%C3%BC&amp;d#e\">Out</Reference>"
        "</References>");
    add(
        "references in order",
        [=](P *p) {
            p->mReferences = {external(u"file:///a"_s), internal(5)};
        },
        "<References><Reference Destination=\"file:///a\">Out</Reference>"
        "<Reference BinderID=\"5\">A &amp; B</Reference></References>");
    add(
        "template 0", [](P *p) { p->mDefaultChildTemplateId = 0; },
        "<DefaultChildTemplateID>0</DefaultChildTemplateID>");
    add(
        "template", [](P *p) { p->mDefaultChildTemplateId = 8; },
        "<DefaultChildTemplateID>8</DefaultChildTemplateID>");
    add("negative template", [](P *p) { p->mDefaultChildTemplateId = -3; }, {});
}

void TstBinderWriter::theOlderPageBreakIsWrittenUnderItsNewName()
{
    QByteArray binder = richBinder();
    binder.replace("PageBreakBefore", "BreakBeforeParagraph");
    TestBinderProject project;
    QVERIFY(project.read(binder));
    QVERIFY(project.mUuidMap.value(project.mIdMap.value(3))->mPageBreakBefore);
    project.mUserProjectData = richUserProjectData();
    QCOMPARE(project.write(), richBinder());
}

void TstBinderWriter::theGeneralTextModeNeverComesBack()
{
    QByteArray binder = richBinder();
    binder.replace("<TextMode>Script</TextMode>", "<TextMode>General</TextMode>");
    TestBinderProject project;
    QVERIFY(project.read(binder));
    QVERIFY(project.mUuidMap.value(project.mIdMap.value(3))->mTextMode.isEmpty());
    QVERIFY(!project.write().contains("TextMode"));
}

void TstBinderWriter::aPlainItemHasNoCorkboard()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    QCOMPARE(writtenCorkboard(folder.get()), QByteArray());
}

void TstBinderWriter::onlySelectedChildrenAreWritten()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    folder->mSelectedSubdocumentIds = {77, 78};
    QCOMPARE(writtenCorkboard(folder.get()), QByteArray());
    folder->mSelectedSubdocumentIds = {77, 4};
    QCOMPARE(writtenCorkboard(folder.get()),
             QByteArray("<CorkboardAndOutliner><SelectedSubdocumentIDs>4</SelectedSubdocumentIDs>"
                        "<CorkboardSettings/></CorkboardAndOutliner>"));
}

void TstBinderWriter::theFreeformModeAloneIsWritten()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    folder->mFreeformMode = true;
    QCOMPARE(writtenCorkboard(folder.get()),
             QByteArray("<CorkboardAndOutliner><CorkboardSettings><FreeformMode>Yes</FreeformMode>"
                        "</CorkboardSettings></CorkboardAndOutliner>"));
}

void TstBinderWriter::everyChildGetsACardWhenThereArePositions()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    for (const int id : {1, 3, 4})
        folder->mFreeformPositions.insert(id, {id, QPointF(id, 10 * id), u"then"_s});
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    QXmlStreamReader reader(writtenCorkboard(folder.get()));
    QStringList positions;
    QStringList ids;
    QStringList times;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement
            || reader.name() != u"IndexCardBinderID")
            continue;
        positions.append(reader.attributes().value(u"Position"_s).toString());
        times.append(reader.attributes().value(u"TimeStamp"_s).toString());
        ids.append(reader.readElementText());
    }
    QCOMPARE(ids, QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}));
    const QList<QPointF> expected = {QPointF(1, 10), QPointF(1, 1), QPointF(3, 30), QPointF(4, 40),
                                     QPointF(1.2, 1.2)};
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(tvlStringToPointF(positions.at(i)), expected.at(i));
    for (const int stored : {0, 2, 3})
        QCOMPARE(times.at(stored), u"then"_s);
    for (const int fresh : {1, 4}) {
        const QDateTime time = tvlStringToDateTime(times.at(fresh), false);
        QVERIFY(time >= before && time <= QDateTime::currentDateTimeUtc());
    }
}

void TstBinderWriter::positionsOfOthersAreDropped()
{
    const std::unique_ptr<TVLProjectNode> folder = folderOfFive();
    folder->mFreeformPositions.insert(77, {77, QPointF(1, 2), u"then"_s});
    const QByteArray xml = writtenCorkboard(folder.get());
    QCOMPARE(xml.count("<IndexCardBinderID "), 5);
    QVERIFY(!xml.contains(">77<"));
}

void TstBinderWriter::positionsWithoutChildrenLeaveAnEmptyList()
{
    SampleNode node;
    node.mFreeformPositions.insert(77, {77, QPointF(1, 2), u"then"_s});
    QCOMPARE(writtenCorkboard(&node),
             QByteArray("<CorkboardAndOutliner><CorkboardSettings><FreeformCorkboardDocuments/>"
                        "</CorkboardSettings></CorkboardAndOutliner>"));
}

void TstBinderWriter::whatIsLeftOutIsTold_data()
{
    using ProjectChange = std::function<void(TestBinderProject *)>;
    QTest::addColumn<ProjectChange>("change");
    QTest::addColumn<QString>("what");
    const auto add = [](const char *name, const ProjectChange &change, const QString &what) {
        QTest::newRow(name) << change << what;
    };
    const auto addNode = [&add](const char *name, const Change &change, const QString &what) {
        add(
            name,
            [change](TestBinderProject *project) {
                auto *node = new TVLProjectNode({1, sampleUuid()}, project->mRoot.get());
                change(node);
            },
            what);
    };
    addNode(
        "a title", [](Properties *node) { node->mTitle = u"a\u0001b"_s; },
        u"characters of \"ab\" that XML can't hold"_s);
    addNode(
        "a long text", [](Properties *node) { node->mTitle = QString(99, u'x') + u'\uffff'; },
        u"characters of \"%1\" that XML can't hold"_s.arg(QString(60, u'x')));
    addNode(
        "a value without a key",
        [](Properties *node) { node->mCustomMetaData.insert(QString(), u"words"_s); },
        u"\"words\", which belongs to a field without a key"_s);
    addNode(
        "a year",
        [](Properties *node) { node->mCreated = QDateTime(QDate(10000, 1, 1), {}, Qt::UTC); },
        u"the year 10000, which doesn't have four digits"_s);
    add(
        "a label's title", [](TestBinderProject *project) { project->mLabelTitle = u"a\u0002"_s; },
        u"characters of \"a\" that XML can't hold"_s);
    add(
        "favorites",
        [](TestBinderProject *project) {
            project->mFavorites = {8, 9};
        },
        u"2 favorites that no item would be found by"_s);
    add(
        "a backdrop", [](TestBinderProject *project) { project->mFullScreenBackdrop = 1.5; },
        u"a backdrop that is neither an item nor a path"_s);
    add(
        "the user's data", [](TestBinderProject *project) { project->mUserProjectData = u"<"_s; },
        u"the user's data, with which the binder couldn't be read again"_s);
}

void TstBinderWriter::whatIsLeftOutIsTold()
{
    QFETCH(const std::function<void(TestBinderProject *)>, change);
    QFETCH(const QString, what);
    TestBinderProject project;
    change(&project);
    const DebugLog log;
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    QVERIFY2(log.lines().contains(u"Left out in writing: "_s + what),
             qPrintable(log.lines().join(u'\n')));
}

void TstBinderWriter::nothingIsToldOfWhatIsWritten()
{
    TestBinderProject project;
    QVERIFY(project.read(richBinder()));
    project.mUserProjectData = richUserProjectData();
    const DebugLog log;
    QVERIFY(!project.write().isEmpty());
    QCOMPARE(log.lines(), QStringList());
}

TVL_TEST(TstBinderWriter)
#include "tst_binderwriter.moc"
