#include "ModelChecks.h"
#include "TVLTextDocument.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QUrl>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const TVLProjectModel *model, const QModelIndex &index, TVL::DocumentType type)
{
    TVLTextDocument *document = model->referenceItem(index, type);
    const QString text = document ? document->toPlainText() : QString();
    model->dereferenceItem(document);
    return text;
}

} // namespace

class TstItemCreation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewItemHasItsDocumentsInMemory();
    void aTextItemComesWithItsTexts();
    void emptyTextsLeaveTheDocumentsClean();
    void anImageItemWritesItsPicture();
    void aNullPictureWritesNothing();
    void severalItemsComeInOneGo_data();
    void severalItemsComeInOneGo();
    void severalTextsAreUntitled();
    void aWebItemIsNamedAfterItsHost();
    void anItemIsMadeOutOfARecord();
    void flagsOfARecordAgreeWithTheProject();
    void aStaleIndexAnnouncesTheRowOfItsItem();
    void aTakenIdentityInARecordIsReplaced();
    void aNewItemComesWhereAsked_data();
    void aNewItemComesWhereAsked();
    void newItemsAreRefusedInTheTrash();
    void aNewFolderIsAFolder();
    void aNewTextTakesTheModeOfItsSibling();
    void aSiblingOfAnotherModelIsPassedOver();
    void aRowIsClonedFromASource();
    void cloneFlagsSayWhatComesAlong_data();
    void cloneFlagsSayWhatComesAlong();
    void severalClonesAllStandAtTheRow();
    void anItemForAMergeTakesUuidAndSource();
    void conflictingItemsGoToTheirSubfolder();
};

void TstItemCreation::aNewItemHasItsDocumentsInMemory()
{
    const auto model = blankModel();
    TVLProjectNode *node =
        model->insertNode(0, model->draftFolder(), TVL::Text, u"rtf"_s, QString());
    QCOMPARE(node->mTitle, u"Untitled"_s);
    QVERIFY(node->mTextDocument && node->mNotesDocument && node->mSynopsisDocument);
    QVERIFY(model->loadedNodes().contains(node));
    QVERIFY(model->isSaved());
}

void TstItemCreation::aTextItemComesWithItsTexts()
{
    const TestProject project;
    auto model = project.create();
    const QModelIndex index = model->insertTextNode(0, model->draftFolder(), u"One"_s,
                                                    u"Text\nof two lines"_s, u"Card"_s, u"Note"_s);
    QCOMPARE(int(model->type(index)), int(TVL::Text));
    QCOMPARE(model->projectNode(index)->mFileExtension, u"rtf"_s);
    QCOMPARE(index.row(), 0);
    QVERIFY(model->isModified());
    const int id = model->nodeIdentity(index);
    model->prepareToDestroy();

    model = project.open();
    const QModelIndex again = model->index(id);
    QCOMPARE(textOf(model.get(), again, TVL::MainText), u"Text\nof two lines"_s);
    QCOMPARE(textOf(model.get(), again, TVL::SynopsisText), u"Card"_s);
    QCOMPARE(textOf(model.get(), again, TVL::NotesText), u"Note"_s);
    QCOMPARE(model->title(again), u"One"_s);
}

void TstItemCreation::emptyTextsLeaveTheDocumentsClean()
{
    const auto model = blankModel();
    const QModelIndex index = model->insertTextNode(-1, QModelIndex(), u"One"_s, {}, {}, {});
    QVERIFY(!model->projectNode(index)->mTextDocument->isDirty());
    QVERIFY(model->isSaved());
}

void TstItemCreation::anImageItemWritesItsPicture()
{
    const TestProject project;
    const auto model = project.create();
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QModelIndex index =
        model->insertImageNode(-1, model->researchFolder(), u"Sail"_s, image, u"Card"_s, u"Note"_s);
    const TVLProjectNode *node = model->projectNode(index);
    QCOMPARE(int(node->mNodeType), int(TVL::Image));
    QCOMPARE(node->mFileExtension, u"png"_s);
    QVERIFY(node->mShowSynopsisImage);
    const QImage written(project.path(u"Files/Docs/%1.png"_s.arg(node->mId)), "PNG");
    QCOMPARE(written.size(), image.size());
    QCOMPARE(written.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(textOf(model.get(), index, TVL::SynopsisText), u"Card"_s);
    QCOMPARE(textOf(model.get(), index, TVL::NotesText), u"Note"_s);
}

void TstItemCreation::aNullPictureWritesNothing()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index =
        model->insertImageNode(-1, model->researchFolder(), u"Sail"_s, QImage(), {}, {});
    QVERIFY(!model->projectNode(index)->mShowSynopsisImage);
    QVERIFY(!QFile::exists(project.path(u"Files/Docs/%1.png"_s.arg(model->nodeIdentity(index)))));
}

void TstItemCreation::severalItemsComeInOneGo_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << 0 << 2 << u"new new a b"_s;
    QTest::newRow("in between") << 1 << 3 << u"a new new new b"_s;
    QTest::newRow("end") << -1 << 1 << u"a b new"_s;
    QTest::newRow("out of range") << 7 << 2 << u"a b new new"_s;
    QTest::newRow("none is one") << 1 << 0 << u"a new b"_s;
    QTest::newRow("fewer than none is one") << 1 << -4 << u"a new b"_s;
}

void TstItemCreation::severalItemsComeInOneGo()
{
    QFETCH(const int, row);
    QFETCH(const int, count);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    const QSignalSpy inserted(model.get(), &QAbstractItemModel::rowsInserted);
    const QList<TVLProjectNode *> nodes = model->insertMultipleNodes(
        row, model->researchFolder(), TVL::PDF, u"pdf"_s, u"new"_s, count);
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(nodes.size(), std::max(count, 1));
    for (qsizetype i = 1; i < nodes.size(); ++i)
        QCOMPARE(nodes.at(i)->row(), nodes.at(i - 1)->row() + 1);
    QCOMPARE(int(nodes.constLast()->mNodeType), int(TVL::PDF));
    QVERIFY(nodes.constLast()->mNotesDocument);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCreation::severalTextsAreUntitled()
{
    const auto model = blankModel();
    const QList<QModelIndex> texts = model->insertMultipleTextNodes(0, model->researchFolder(), 3);
    QCOMPARE(texts.size(), 3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(texts.at(row), model->index(row, 0, model->researchFolder()));
        QCOMPARE(model->title(texts.at(row)), u"Untitled"_s);
        QCOMPARE(model->projectNode(texts.at(row))->mFileExtension, u"rtf"_s);
    }
}

void TstItemCreation::aWebItemIsNamedAfterItsHost()
{
    const auto model = blankModel();
    const TVLProjectNode *node =
        model->createUrlNode(QUrl(u"https://www.example.org/a?b=c"_s), 0, model->researchFolder());
    QCOMPARE(int(node->mNodeType), int(TVL::WebArchive));
    QCOMPARE(node->mTitle, u"www.example.org"_s);
    QCOMPARE(node->mOriginalUrl, u"https://www.example.org/a?b=c"_s);
    QVERIFY(node->mHasText);
    QVERIFY(node->mFileExtension.isEmpty());
    QVERIFY(model->isSaved());
}

void TstItemCreation::anItemIsMadeOutOfARecord()
{
    const auto model = blankModel();
    TVLProjectNodeProperties record;
    record.mId = 70;
    record.mUuid = QUuid::createUuid();
    record.mTitle = u"From elsewhere"_s;
    record.mNodeType = TVL::Folder;
    record.mLabelId = 1;
    record.mTarget = 300;
    record.mModified = QDateTime(QDate(2020, 1, 2), QTime(3, 4));
    const QModelIndex index = model->insertRowWithProperties(0, model->researchFolder(), record);
    QVERIFY(static_cast<const TVLProjectNodeProperties &>(*model->projectNode(index)) == record);
    QCOMPARE(model->index(70), index);
    QCOMPARE(model->indexByUuid(record.mUuid), index);
}

void TstItemCreation::flagsOfARecordAgreeWithTheProject()
{
    const auto model = blankModel();
    const QModelIndex research = model->researchFolder();
    const QPersistentModelIndex folder = model->insertUserFolder(-1, research, u"Templates"_s);
    model->setTemplateFolder(folder);
    const QPersistentModelIndex text = model->insertTextNode(-1, research, u"a"_s, {}, {}, {});
    QVERIFY(model->setFavorite(text, true, true));
    TVLProjectNodeProperties record = model->nodeProperties(folder);
    record.mIsFavorite = true;
    const QModelIndex copy = model->insertRowWithProperties(-1, research, record);
    QVERIFY(!model->projectNode(copy)->mIsTemplateFolder);
    QCOMPARE(model->templateFolder(), QModelIndex(folder));
    QCOMPARE(model->favorites(), QModelIndexList({text, copy}));
}

void TstItemCreation::aStaleIndexAnnouncesTheRowOfItsItem()
{
    const auto model = blankModel();
    const QModelIndex research = model->researchFolder();
    const QModelIndex stale = model->insertTextNode(-1, research, u"a"_s, {}, {}, {});
    const QPersistentModelIndex present = stale;
    model->insertTextNode(0, research, u"b"_s, {}, {}, {});
    QVERIFY(present.row() != stale.row());
    QSignalSpy changes(model.get(), &TVLProjectModel::dataChanged);
    QVERIFY(model->setTitle(stale, u"c"_s));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.constFirst().at(0).toModelIndex(), QModelIndex(present));
    QCOMPARE(changes.constFirst().at(1).toModelIndex(), QModelIndex(present));
}

void TstItemCreation::aTakenIdentityInARecordIsReplaced()
{
    const auto model = blankModel();
    TVLProjectNodeProperties record = *model->projectNode(firstText(model.get()));
    record.mTitle = u"Twin"_s;
    const TVLProjectNode *node = model->insertNodeWithProperties(-1, QModelIndex(), record);
    QVERIFY(node->mId != record.mId);
    QVERIFY(node->mUuid != record.mUuid);
    QCOMPARE(node->mTitle, u"Twin"_s);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCreation::aNewItemComesWhereAsked_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << 0 << u"new a b"_s;
    QTest::newRow("second") << 1 << u"a new b"_s;
    QTest::newRow("last") << -1 << u"a b new"_s;
}

void TstItemCreation::aNewItemComesWhereAsked()
{
    QFETCH(const int, row);
    QFETCH(const QString, expected);
    const auto model = blankModel();
    const QModelIndex research = model->researchFolder();
    for (const auto &create : {
             std::function([&] { return model->createNewItem(row, research); }),
             std::function([&] { return model->createNewFolder(row, research); }),
             std::function([&] { return model->createNewText(row, research, QModelIndex()); }),
         }) {
        model->removeChildrenForIndex(research);
        addTree(model.get(), research, u"a b"_s);
        model->setTitle(create(), u"new"_s);
        QCOMPARE(treeText(model.get(), research), expected);
    }
    QVERIFY(!model->createNewItem(9, research).isValid());
}

void TstItemCreation::newItemsAreRefusedInTheTrash()
{
    const auto model = blankModel();
    const QModelIndex trash = model->trashFolder();
    addTree(model.get(), trash, u"a"_s);
    for (const QModelIndex &parent : {trash, itemTitled(model.get(), u"a"_s)}) {
        QVERIFY(!model->insertRows(0, 1, parent));
        QVERIFY(!model->createNewItem(0, parent).isValid());
        QVERIFY(!model->createNewFolder(0, parent).isValid());
        QVERIFY(!model->createNewText(0, parent, QModelIndex()).isValid());
        QVERIFY(!model->insertRowAndClone(0, parent, {}, {}).isValid());
        QVERIFY(!model->insertRowsAndClone(0, 1, parent, firstText(model.get()),
                                           TVLProjectModel::SkipCloneRules));
    }
    QCOMPARE(treeText(model.get(), trash), u"a"_s);
    QVERIFY(model->isSaved());
}

void TstItemCreation::aNewFolderIsAFolder()
{
    const auto model = blankModel();
    const QModelIndex folder = model->createNewFolder(-1, model->draftFolder());
    QCOMPARE(int(model->type(folder)), int(TVL::Folder));
    QVERIFY(model->title(folder).isEmpty());
    QCOMPARE(model->data(folder).toString(), u"Untitled"_s);
    QVERIFY(model->isModified());
}

void TstItemCreation::aNewTextTakesTheModeOfItsSibling()
{
    const auto model = blankModel();
    const QModelIndex draft = model->draftFolder();
    const QPersistentModelIndex plain = firstText(model.get());
    const QPersistentModelIndex script = addItem(model.get(), draft, TVL::Text);
    model->setTextMode(script, TVLProjectModel::ScriptFormatMode);

    QVERIFY(!model->isScriptMode(model->createNewText(-1, draft, plain)));
    QVERIFY(!model->isScriptMode(model->createNewText(-1, draft, QModelIndex())));
    const QModelIndex text = model->createNewText(-1, draft, script);
    QVERIFY(model->isScriptMode(text));
    QCOMPARE(int(model->type(text)), int(TVL::Text));
    QVERIFY(model->documentPlainText(text, false).isEmpty());
    const TVLTextDocument *document = model->projectNode(text)->mTextDocument;
    QCOMPARE(document->referenceCount(), 0);
    const TVLScriptElement first = model->scriptMode().mElements.constFirst();
    QVERIFY(document->firstBlock().blockFormat() == first.blockFormat());
    QCOMPARE(document->firstBlock().charFormat().fontFamilies(), first.charFormat().fontFamilies());
}

void TstItemCreation::aSiblingOfAnotherModelIsPassedOver()
{
    const auto model = blankModel();
    const auto other = blankModel();
    other->setTextMode(firstText(other.get()), TVLProjectModel::ScriptFormatMode);
    const QModelIndex text = model->createNewText(-1, model->draftFolder(), firstText(other.get()));
    QVERIFY(text.isValid());
    QVERIFY(!model->isScriptMode(text));
}

void TstItemCreation::aRowIsClonedFromASource()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source =
        model->insertTextNode(-1, model->draftFolder(), u"One"_s, u"words"_s, u"card"_s, u"note"_s);
    const QUuid uuid = QUuid::createUuid();
    const QModelIndex copy = model->insertRowAndClone(0, model->draftFolder(), source, {}, uuid);
    QCOMPARE(copy, model->index(0, 0, model->draftFolder()));
    QCOMPARE(model->nodeUuid(copy), uuid);
    QCOMPARE(model->title(copy), u"One"_s);
    QCOMPARE(textOf(model.get(), copy, TVL::MainText), u"words"_s);
    QCOMPARE(textOf(model.get(), copy, TVL::SynopsisText), u"card"_s);
    QCOMPARE(textOf(model.get(), copy, TVL::NotesText), u"note"_s);
    QVERIFY(!model->insertRowAndClone(9, model->draftFolder(), source, {}).isValid());
    QVERIFY(!model->insertRowsAndClone(0, 0, model->draftFolder(), source, {}));
    QVERIFY(!model->insertRowsAndClone(-2, 1, model->draftFolder(), source, {}));
}

void TstItemCreation::cloneFlagsSayWhatComesAlong_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing but the item") << 0 << u"a(b(c)) a"_s;
    QTest::newRow("children") << 2 << u"a(b(c)) a(b(c))"_s;
    QTest::newRow("without files") << 8 << u"a(b(c)) "_s;
    QTest::newRow("children without the item's files") << 10 << u"a(b(c)) (b(c))"_s;
}

void TstItemCreation::cloneFlagsSayWhatComesAlong()
{
    QFETCH(const int, flags);
    QFETCH(const QString, expected);
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b(c))"_s);
    QVERIFY(model->insertRowsAndClone(-1, 1, model->researchFolder(),
                                      itemTitled(model.get(), u"a"_s),
                                      TVLProjectModel::CloneFlags(flags)));
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCreation::severalClonesAllStandAtTheRow()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    QVERIFY(model->insertRowsAndClone(1, 2, model->researchFolder(),
                                      itemTitled(model.get(), u"b"_s), {}));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a b b b"_s);
    // Each is inserted in front of the one before.
    const QModelIndex research = model->researchFolder();
    QVERIFY(model->nodeIdentity(model->index(1, 0, research))
            > model->nodeIdentity(model->index(2, 0, research)));
}

void TstItemCreation::anItemForAMergeTakesUuidAndSource()
{
    const TestProject project;
    const TestProject otherProject(u"Other"_s);
    const auto model = project.create();
    const auto other = otherProject.create();
    const QModelIndex source =
        other->insertTextNode(-1, QModelIndex(), u"Theirs"_s, u"words"_s, {}, {});
    const QUuid uuid = QUuid::createUuid();
    const QModelIndex plain =
        model->createNewProjectIndex(0, model->researchFolder(), u"Plain"_s, &uuid, nullptr);
    QCOMPARE(model->nodeUuid(plain), uuid);
    QCOMPARE(model->title(plain), u"Plain"_s);
    const QModelIndex copy =
        model->createNewProjectIndex(0, model->researchFolder(), u"Ours"_s, nullptr, &source);
    QCOMPARE(model->title(copy), u"Theirs"_s);
    QCOMPARE(model->documentPlainText(copy, false), u"words"_s);
}

void TstItemCreation::conflictingItemsGoToTheirSubfolder()
{
    const auto model = blankModel();
    const QModelIndex first =
        model->createNewItemInConflictsFolder(nullptr, u"One"_s, u"Phone"_s, nullptr);
    const QModelIndex second =
        model->createNewItemInConflictsFolder(nullptr, u"Two"_s, u"Phone"_s, nullptr);
    QCOMPARE(treeText(model.get(), model->findSyncConflictsFolder()), u"Phone(One Two)"_s);
    QCOMPARE(first.parent(), model->findSyncConflictsSubFolder(u"Phone"_s));
    QCOMPARE(second.row(), 1);
}

TVL_TEST(TstItemCreation)
#include "tst_itemcreation.moc"
