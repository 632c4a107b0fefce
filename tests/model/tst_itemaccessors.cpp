#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"

#include <QCryptographicHash>
#include <QTest>
#include <QUrl>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QUuid SomeUuid(u"{11111111-2222-3333-4444-555555555555}"_s);

/** An accessor, what an item is given for it, and what it says of that and of no item. */
struct Accessor
{
    const char *name;
    std::function<QVariant(const TVLProjectModel &, const QModelIndex &)> read;
    std::function<void(TVLProjectNode *)> fill;
    QVariant value;
    QVariant withoutItem;
};

using Model = TVLProjectModel;

/** The accessor that a member of the model is, its result as a variant. */
template <typename Result>
auto reading(Result (Model::*accessor)(const QModelIndex &) const)
{
    return [accessor](const Model &model, const QModelIndex &index) {
        if constexpr (std::is_enum_v<Result>)
            return QVariant(int((model.*accessor)(index)));
        else
            return QVariant::fromValue((model.*accessor)(index));
    };
}

/** Gives a member of the record a value. */
template <typename Value, typename Given>
auto filling(Value TVLProjectNodeProperties::*member, const Given &value)
{
    return [member, value](TVLProjectNode *node) { node->*member = value; };
}

QVariant titleOf(const Model &model, const QModelIndex &index)
{
    return model.title(index, false);
}

QVariant shownTitleOf(const Model &model, const QModelIndex &index)
{
    return model.title(index, true);
}

const QList<Accessor> &accessors()
{
    using Node = TVLProjectNode;
    using IntPair = QPair<int, int>;
    static const QList<Accessor> rows = {
        {"type", reading(&Model::type), filling(&Node::mNodeType, TVL::PDF), 6, 9},
        {"title", titleOf, filling(&Node::mTitle, u"A"_s), u"A"_s, QString()},
        {"empty title", titleOf, filling(&Node::mTitle, QString()), QString(), QString()},
        {"shown title", shownTitleOf, filling(&Node::mTitle, u"A"_s), u"A"_s, QString()},
        {"shown empty title", shownTitleOf, filling(&Node::mTitle, QString()), u"Untitled"_s,
         QString()},
        {"extension", reading(&Model::extension), filling(&Node::mFileExtension, u"pdf"_s),
         u"pdf"_s, QString()},
        {"selection", reading(&Model::selection), filling(&Node::mTextSelection, IntPair(3, 4)),
         QVariant::fromValue(IntPair(3, 4)), QVariant::fromValue(IntPair(0, 0))},
        {"created", reading(&Model::created), filling(&Node::mCreated, SomeDate), SomeDate,
         QDateTime()},
        {"last modified", reading(&Model::lastModified), filling(&Node::mModified, SomeDate),
         SomeDate, QDateTime()},
        {"current snapshot", reading(&Model::currentSnapshot),
         filling(&Node::mRestoredSnapshotDate, SomeDate), SomeDate, QDateTime()},
        {"id", reading(&Model::nodeIdentity), filling(&Node::mId, 7), 7, -1},
        {"uuid", reading(&Model::nodeUuid), filling(&Node::mUuid, SomeUuid), SomeUuid, QUuid()},
        {"label id", reading(&Model::labelIdentity), filling(&Node::mLabelId, 1), 1, -1},
        {"status id", reading(&Model::statusIdentity), filling(&Node::mStatusId, 5), 5, -1},
        {"template folder", reading(&Model::isTemplateFolder),
         filling(&Node::mIsTemplateFolder, true), true, false},
        {"favorite", reading(&Model::isFavorite), filling(&Node::mIsFavorite, true), true, false},
        {"snapshots", reading(&Model::hasSnapshots), filling(&Node::mHasSnapshots, true), true,
         false},
        {"in compile", reading(&Model::includeInCompile), filling(&Node::mIncludeInCompile, true),
         true, false},
        {"not in compile", reading(&Model::includeInCompile),
         filling(&Node::mIncludeInCompile, false), false, false},
        {"page break", reading(&Model::pageBreakBefore), filling(&Node::mPageBreakBefore, true),
         true, false},
        {"formatting", reading(&Model::preserveFormatting), filling(&Node::mCompileAsIs, true),
         true, false},
        {"card image", reading(&Model::showIndexCardImage),
         filling(&Node::mShowSynopsisImage, true), true, false},
        {"scale", reading(&Model::scaleFactor), filling(&Node::mImageScaleFactor, 2.5), 2.5, 1.0},
        {"scale to fit", reading(&Model::scaleToFit),
         filling(&Node::mImageScalesProportionally, false), false, true},
        {"rotation", reading(&Model::rotation), filling(&Node::mImageRotation, 3), 3, 0},
        {"target", reading(&Model::countTarget), filling(&Node::mTarget, 500), 500, 0},
        {"target type", reading(&Model::targetType),
         filling(&Node::mTargetType, TVL::CharactersTarget), 1, 0},
        {"text mode", reading(&Model::textMode), filling(&Node::mTextMode, u"Poem"_s), u"Poem"_s,
         u"General"_s},
        {"empty text mode", reading(&Model::textMode), filling(&Node::mTextMode, QString()),
         QString(), u"General"_s},
        {"script", reading(&Model::isScriptMode), filling(&Node::mTextMode, u"Script"_s), true,
         false},
        {"no script", reading(&Model::isScriptMode), filling(&Node::mTextMode, u"script"_s), false,
         false},
        {"web address", reading(&Model::webUrl),
         filling(&Node::mOriginalUrl, u"https://example.com/a?b=c"_s),
         QUrl(u"https://example.com/a?b=c"_s), QUrl()},
        {"text", reading(&Model::hasText), filling(&Node::mHasText, true), true, false},
        {"notes", reading(&Model::hasDocumentNote), filling(&Node::mHasDocumentNote, true), true,
         false},
        {"synopsis", reading(&Model::hasSynopsis), filling(&Node::mHasSynopsis, true), true, false},
        {"custom meta-data", reading(&Model::hasCustomMetaData),
         [](TVLProjectNode *node) {
             node->mCustomMetaData = {{u"a"_s, {}}, {u"b"_s, u"x"_s}};
         },
         true, false},
        {"empty custom meta-data", reading(&Model::hasCustomMetaData),
         [](TVLProjectNode *node) {
             node->mCustomMetaData = {{u"a"_s, {}}, {u"b"_s, {}}};
         },
         false, false},
        {"path", reading(&Model::rootPathTitle), filling(&Node::mTitle, u"A"_s), u"Draft/A"_s,
         QString()},
    };
    return rows;
}

struct WebRow
{
    const char *name;
    TVL::NodeType type;
    QString address;
    QString extension;
    QString url; ///< "file" for the item's file.
    bool dynamic;
    bool html;
};

} // namespace

class TstItemAccessors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anItemGivesItsValue_data() { accessorRows(); }
    void anItemGivesItsValue();
    void anIndexOfAnotherModelGivesNothing_data() { accessorRows(); }
    void anIndexOfAnotherModelGivesNothing();
    void anInvalidIndexStandsForTheRoot();
    void labelAndStatusItemComeFromTheirStore();
    void aTextInMemoryCountsForMoreThanTheFlag_data();
    void aTextInMemoryCountsForMoreThanTheFlag();
    void theFlagOfTheSynopsisIsNotRefreshed();
    void askingWhetherThereIsATextLoadsNothing();
    void anItemIsReferencedWhileADocumentIsInMemory();
    void aSystemFolderIsNeverReferenced();
    void onlyADocumentInMemoryIsReadOnly();
    void theHashesAreThoseOfTheFiles();
    void theHashesOfOtherIndexesAreEmpty();
    void thePathOfAnItemHasAllTitles_data();
    void thePathOfAnItemHasAllTitles();
    void theNodesOfTheTreeAreLocal();
    void whatAnItemIsShownFrom_data();
    void whatAnItemIsShownFrom();
    void aTextFileIsSearchedForOnRequest();
    void anotherFileIsNotTakenForAText();
    void noNodeIsShownFromNothing();

private:
    static void accessorRows();
};

void TstItemAccessors::accessorRows()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < accessors().size(); ++row)
        QTest::newRow(accessors().at(row).name) << row;
}

void TstItemAccessors::anItemGivesItsValue()
{
    QFETCH(const int, row);
    const Accessor &accessor = accessors().at(row);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    accessor.fill(model->projectNode(index));
    const TVLProjectNodeProperties before = *model->projectNode(index);
    QCOMPARE(accessor.read(*model, index), accessor.value);
    QVERIFY(!model->isModified());
    QVERIFY(before == *model->projectNode(index));
}

void TstItemAccessors::anIndexOfAnotherModelGivesNothing()
{
    QFETCH(const int, row);
    const Accessor &accessor = accessors().at(row);
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex foreign = firstText(other.get());
    accessor.fill(other->projectNode(foreign));
    QCOMPARE(accessor.read(*model, foreign), accessor.withoutItem);
}

void TstItemAccessors::anInvalidIndexStandsForTheRoot()
{
    const auto model = blankModel();
    model->binderRoot()->mTitle = u"Hidden"_s;
    QCOMPARE(model->title(QModelIndex()), u"Hidden"_s);
    QCOMPARE(model->title(model->rootIndex()), u"Hidden"_s);
    QCOMPARE(model->nodeIdentity(QModelIndex()), -1);
    QCOMPARE(model->rootPathTitle(QModelIndex()), QString());
    QVERIFY(model->includeInCompile(QModelIndex()));
}

void TstItemAccessors::labelAndStatusItemComeFromTheirStore()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->label(index).mTitle, u"No Label"_s);
    QCOMPARE(model->statusItem(index).mTitle, u"No Status"_s);
    model->projectNode(index)->mLabelId = 1;
    model->projectNode(index)->mStatusId = 5;
    QCOMPARE(model->label(index).mTitle, u"Chapter"_s);
    QCOMPARE(model->label(index).mColor, QColor(255, 192, 192));
    QCOMPARE(model->statusItem(index).mTitle, u"Done"_s);
    model->projectNode(index)->mLabelId = 77;
    model->projectNode(index)->mStatusId = 77;
    QCOMPARE(model->label(index).mId, -1);
    QCOMPARE(model->statusItem(index).mId, -1);
}

void TstItemAccessors::aTextInMemoryCountsForMoreThanTheFlag_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("text") << int(TVL::MainText);
    QTest::newRow("notes") << int(TVL::NotesText);
}

void TstItemAccessors::aTextInMemoryCountsForMoreThanTheFlag()
{
    QFETCH(const int, type);
    const bool isText = type == TVL::MainText;
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    TVLProjectNode *node = model->projectNode(index);
    bool &flag = isText ? node->mHasText : node->mHasDocumentNote;
    const auto ask = [&] { return isText ? model->hasText(index) : model->hasDocumentNote(index); };
    typeText(model.get(), index, u"words"_s, TVL::DocumentType(type));
    flag = false;
    QVERIFY(ask());
    QVERIFY(flag);
    (isText ? node->mTextDocument : node->mNotesDocument)->clear();
    QVERIFY(flag);
    QVERIFY(!ask());
    QVERIFY(!flag);
}

void TstItemAccessors::theFlagOfTheSynopsisIsNotRefreshed()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    TVLProjectNode *node = model->projectNode(index);
    typeText(model.get(), index, u"words"_s, TVL::SynopsisText);
    node->mHasSynopsis = false;
    QVERIFY(model->hasSynopsis(index));
    QVERIFY(!node->mHasSynopsis);
    node->mSynopsisDocument->clear();
    node->mHasSynopsis = true;
    QVERIFY(!model->hasSynopsis(index));
    QVERIFY(node->mHasSynopsis);
}

void TstItemAccessors::askingWhetherThereIsATextLoadsNothing()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = addItem(model.get(), model->researchFolder(), TVL::PDF);
    const QModelIndex text = firstText(model.get());
    for (const QModelIndex &item : {index, text, model->draftFolder()}) {
        model->projectNode(item)->mTextDocument = nullptr;
        (void)model->hasText(item);
        (void)model->hasDocumentNote(item);
        (void)model->hasSynopsis(item);
        (void)model->referenced(item);
        (void)model->isReadOnly(item, TVL::MainText);
    }
    QVERIFY(!model->projectNode(text)->mSynopsisDocument);
}

void TstItemAccessors::anItemIsReferencedWhileADocumentIsInMemory()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(!model->referenced(index));
    TVLTextDocument *document = model->referenceNote(index);
    QVERIFY(model->referenced(index));
    model->dereferenceItem(document);
    // It is about memory, not about who holds it.
    QVERIFY(model->referenced(index));
    typeTextForGood(model.get(), index, u"x"_s);
    QVERIFY(model->save(index));
    QVERIFY(!model->referenced(index));

    const auto other = blankModel();
    QVERIFY(!other->referenced(index));
}

void TstItemAccessors::aSystemFolderIsNeverReferenced()
{
    const auto model = blankModel();
    const QModelIndex index = model->draftFolder();
    TVLTextDocument document;
    document.setReadOnly(true);
    model->projectNode(index)->mNotesDocument = &document;
    QVERIFY(!model->referenced(index));
    QVERIFY(!model->isReadOnly(index, TVL::NotesText));
    model->projectNode(index)->mNotesDocument = nullptr;
}

void TstItemAccessors::onlyADocumentInMemoryIsReadOnly()
{
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    for (const auto type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        QVERIFY(!model->isReadOnly(index, type));
    model->loadDocuments(model->projectNode(index));
    for (const auto type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        QVERIFY(!model->isReadOnly(index, type));
    model->projectNode(index)->mNotesDocument->setReadOnly(true);
    QVERIFY(model->isReadOnly(index, TVL::NotesText));
    QVERIFY(!model->isReadOnly(index, TVL::MainText));
    QVERIFY(!model->isReadOnly(index, TVL::SynopsisText));
    QVERIFY(!model->isReadOnly(index, TVL::CommentsFile));
    const auto other = blankModel();
    QVERIFY(!other->isReadOnly(index, TVL::NotesText));
}

void TstItemAccessors::theHashesAreThoseOfTheFiles()
{
    const auto hashOf = [](const QByteArray &bytes) {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    };
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->textMd5(index), QByteArray());
    project.writeFile(u"Files/Docs/3.rtf"_s, "text");
    project.writeFile(u"Files/Docs/3_notes.rtf"_s, "notes");
    project.writeFile(u"Files/Docs/3_synopsis.txt"_s, "synopsis");
    QCOMPARE(model->textMd5(index), hashOf("text"));
    QCOMPARE(model->noteMd5(index), hashOf("notes"));
    QCOMPARE(model->synopsisMd5(index), hashOf("synopsis"));
}

void TstItemAccessors::theHashesOfOtherIndexesAreEmpty()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/Docs/3.rtf"_s, "text");
    const auto other = blankModel();
    const QModelIndex foreign = firstText(other.get());
    QCOMPARE(model->textMd5(foreign), QByteArray());
    QCOMPARE(model->noteMd5(foreign), QByteArray());
    QCOMPARE(model->synopsisMd5(foreign), QByteArray());
    QCOMPARE(model->textMd5(model->rootIndex()), QByteArray());
}

void TstItemAccessors::thePathOfAnItemHasAllTitles_data()
{
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("path");
    QTest::newRow("top level") << QStringList({u"A"_s}) << u"A"_s;
    QTest::newRow("below") << QStringList({u"A"_s, u"B"_s, u"C"_s}) << u"A/B/C"_s;
    QTest::newRow("empty at the top") << QStringList({u""_s, u"B"_s}) << u"B"_s;
    QTest::newRow("empty twice at the top") << QStringList({u""_s, u""_s, u"C"_s}) << u"C"_s;
    QTest::newRow("empty in between") << QStringList({u"A"_s, u""_s, u"C"_s}) << u"A//C"_s;
    QTest::newRow("empty itself") << QStringList({u"A"_s, u""_s}) << u"A/"_s;
    QTest::newRow("slashes in a title") << QStringList({u"A/B"_s, u"C"_s}) << u"A/B/C"_s;
}

void TstItemAccessors::thePathOfAnItemHasAllTitles()
{
    QFETCH(const QStringList, titles);
    const auto model = emptyModel();
    QModelIndex index = model->rootIndex();
    for (const QString &title : titles) {
        index = addItem(model.get(), index, TVL::Folder);
        model->setTitle(index, title);
    }
    QTEST(model->rootPathTitle(index), "path");
}

void TstItemAccessors::theNodesOfTheTreeAreLocal()
{
    const auto model = blankModel();
    const auto other = blankModel();
    QVERIFY(model->isLocalNode(model->binderRoot()));
    QVERIFY(model->isLocalNode(model->projectNode(firstText(model.get()))));
    QVERIFY(!model->isLocalNode(other->projectNode(firstText(other.get()))));
    QVERIFY(!model->isLocalNode(other->binderRoot()));
    QVERIFY(!model->isLocalNode(nullptr));
    const TVLProjectNode loose({3, SomeUuid}, nullptr);
    QVERIFY(!model->isLocalNode(&loose));
}

void TstItemAccessors::whatAnItemIsShownFrom_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("dynamic");
    QTest::addColumn<bool>("html");
    const QString web = u"https://example.com/a"_s;
    const WebRow rows[] = {
        {"text", TVL::Text, {}, {}, {}, false, false},
        {"PDF", TVL::PDF, {}, u"pdf"_s, u"file"_s, false, false},
        {"imported PDF", TVL::PDF, web, u"pdf"_s, u"file"_s, false, false},
        {"dynamic page", TVL::WebArchive, web, {}, web, true, false},
        {"stored page", TVL::WebArchive, web, u"html"_s, web, false, true},
        {"stored archive", TVL::WebArchive, web, u"mht"_s, web, false, false},
        {"page without address", TVL::WebArchive, {}, u"html"_s, u"file"_s, false, false},
        {"text with an address", TVL::Text, web, {}, {}, true, false},
        {"imported HTML", TVL::Other, web, u"html"_s, u"file"_s, false, true},
        {"HTML in capitals", TVL::WebArchive, web, u"HTML"_s, web, false, false},
    };
    for (const WebRow &row : rows)
        QTest::newRow(row.name) << int(row.type) << row.address << row.extension << row.url
                                << row.dynamic << row.html;
}

void TstItemAccessors::whatAnItemIsShownFrom()
{
    QFETCH(const int, type);
    QFETCH(const QString, address);
    QFETCH(const QString, extension);
    QFETCH(const QString, url);
    const auto model = blankModel();
    const QModelIndex index = addItem(model.get(), model->researchFolder(), TVL::NodeType(type));
    TVLProjectNode *node = model->projectNode(index);
    node->mOriginalUrl = address;
    node->mFileExtension = extension;
    const QUrl expected = url == u"file"
        ? TVLProjectFolderFormat::url(unsavedProjectPath(), node->mId, extension)
        : QUrl(url);
    QCOMPARE(model->url(node), expected);
    QCOMPARE(model->nodeUrl(index, false), expected);
    QTEST(TVLProjectModel::isDynamicWebNode(node), "dynamic");
    QTEST(model->isHtmlWebNode(index), "html");
    const auto other = blankModel();
    QVERIFY(!other->isHtmlWebNode(index));
    QCOMPARE(other->nodeUrl(index, true), QUrl());
}

void TstItemAccessors::aTextFileIsSearchedForOnRequest()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QCOMPARE(model->nodeUrl(index, true), QUrl());
    project.writeFile(u"Files/Docs/3.rtf"_s, "{\\rtf1 text}");
    QCOMPARE(model->nodeUrl(index, false), QUrl());
    QCOMPARE(model->extension(index), QString());
    const QUrl url = QUrl::fromLocalFile(project.path(u"Files/Docs/3.rtf"_s));
    QCOMPARE(model->nodeUrl(index, true), url);
    QCOMPARE(model->extension(index), u"rtf"_s);
    QCOMPARE(model->nodeUrl(index, false), url);
    QVERIFY(!model->isModified());
}

void TstItemAccessors::anotherFileIsNotTakenForAText()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    project.writeFile(u"Files/Docs/3.pdf"_s, "pdf");
    QCOMPARE(model->nodeUrl(index, true), QUrl());
    QCOMPARE(model->extension(index), QString());
}

void TstItemAccessors::noNodeIsShownFromNothing()
{
    const auto model = blankModel();
    QCOMPARE(model->url(nullptr), QUrl());
    QVERIFY(!TVLProjectModel::isDynamicWebNode(nullptr));
}

TVL_TEST(TstItemAccessors)
#include "tst_itemaccessors.moc"
