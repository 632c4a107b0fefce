#include "ModelChecks.h"
#include "TVLModel.h"
#include "TVLTextDocument.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TstItemCloning : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cloneRules_data();
    void cloneRules();
    void anIndexThatIsNoneCanNotBeCloned();
    void aCloneHasTheAttributesOfItsSource();
    void aCloneOfASystemFolderIsAFolder();
    void equalIndexesAreASuccessWithoutEffect();
    void unsavedWordsAreCloned();
    void aClonedFileCanBeEdited();
    void allFilesOfAnItemAreCloned();
    void aCloneTakesTheTargetsDocumentsOutOfMemory();
    void aCloneForgetsWhatItsOldFilesShowed_data();
    void aCloneForgetsWhatItsOldFilesShowed();
    void snapshotsComeAlongWhenAskedFor();
    void withoutFilesNothingIsCloned();
    void descendantsComeBeforeThoseOfTheTarget();
    void aCloneBelowItsSourceEnds();
    void aRefusedDescendantEndsTheClone();
    void aCloneIsAnnouncedWithRowsThatViewsKnow();
    void onlyTheFilesAreCloned();
    void onlyTheAttributesAreCloned();
    void duplicatesStandBelowTheLastSource_data();
    void duplicatesStandBelowTheLastSource();
    void duplicatesHaveUniqueTitles();
    void duplicatesCarryTextsAndChildren();
    void duplicatesWithASystemFolderAreRefused();
    void duplicatesOfNothingAreNone();
    void duplicatesStandWhereAsked();
    void duplicatesAreRefusedInTheTrash();
    void manyDuplicatesOfOneTitleAreCheap();
};

void TstItemCloning::cloneRules_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isAllowed");
    QTest::newRow("itself") << u"text"_s << u"text"_s << false;
    QTest::newRow("text onto text") << u"text"_s << u"other"_s << true;
    QTest::newRow("folder into the Draft") << u"folder"_s << u"first"_s << true;
    QTest::newRow("picture into the Draft") << u"picture"_s << u"first"_s << false;
    QTest::newRow("picture onto the Draft") << u"picture"_s << u"Draft"_s << false;
    QTest::newRow("picture elsewhere") << u"picture"_s << u"other"_s << true;
    QTest::newRow("into the Trash") << u"text"_s << u"trashed"_s << false;
    QTest::newRow("out of the Trash") << u"trashed"_s << u"other"_s << true;
    QTest::newRow("system folder") << u"Research"_s << u"other"_s << false;
    QTest::newRow("onto a system folder") << u"text"_s << u"Research"_s << false;
    QTest::newRow("onto the Trash folder") << u"text"_s << u"Trash"_s << false;
}

void TstItemCloning::cloneRules()
{
    QFETCH(const QString, source);
    QFETCH(const QString, target);
    QFETCH(const bool, isAllowed);
    const TestProject project;
    const auto model = project.create();
    model->setTitle(firstText(model.get()), u"first"_s);
    addTree(model.get(), model->researchFolder(), u"text other folder:3 picture:5"_s);
    addTree(model.get(), model->trashFolder(), u"trashed"_s);
    const QModelIndex from = itemTitled(model.get(), source);
    const QModelIndex to = itemTitled(model.get(), target);
    QCOMPARE(model->canClone(from, to), isAllowed);
    if (from != to)
        QCOMPARE(model->clone(from, to, false, true, false, true), isAllowed);
    QCOMPARE(model->title(itemTitled(model.get(), target)).isEmpty(), isAllowed && from != to);
}

void TstItemCloning::anIndexThatIsNoneCanNotBeCloned()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex text = firstText(model.get());
    QVERIFY(!model->canClone(QModelIndex(), text));
    QVERIFY(!model->canClone(text, QModelIndex()));
    QVERIFY(!model->canClone(model->rootIndex(), text));
    QVERIFY(!model->clone(QModelIndex(), text, true, false, true, true));
    QVERIFY(!model->clone(text, model->rootIndex(), true, false, true, true));
    QVERIFY(!model->clone(text, firstText(other.get()), true, false, true, true));
}

void TstItemCloning::aCloneHasTheAttributesOfItsSource()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addItem(model.get(), model->researchFolder(), TVL::Folder);
    const QPersistentModelIndex target = addItem(model.get(), model->researchFolder(), TVL::Text);
    TVLProjectNode *from = model->projectNode(source);
    from->mTitle = u"Source"_s;
    from->mTargetType = TVL::CharactersTarget;
    from->mTarget = 500;
    from->mFileExtension = u"rtf"_s;
    from->mDefaultChildTemplateId = 0;
    from->mIndexCardImageFileExtension = u"png"_s;
    from->mIconFileName = u"flag.png"_s;
    from->mPreferredExternalApplication = u"viewer"_s;
    from->mCustomMetaData = {{u"place"_s, u"sea"_s}};
    from->mTextMode = TVLProjectModel::ScriptFormatMode;
    from->mTypingAttributes = "{\\rtf1}";
    from->mOriginalUrl = u"https://example.org"_s;
    from->mImageScaleFactor = 2.5;
    from->mImageRotation = 3;
    from->mImageScalesProportionally = false;
    from->mIncludeInCompile = false;
    from->mPageBreakBefore = true;
    from->mCompileAsIs = true;
    from->mShowSynopsisImage = true;
    from->mIgnoresTitlePrefixAndSuffix = true;
    from->mTargetNotify = true;
    from->mTargetAllowOver = true;
    from->mTargetBuffer = 7;
    from->mIsAlias = true;
    from->mHasText = from->mHasSynopsis = from->mHasDocumentNote = true;
    from->mIsFavorite = true;
    from->mIsTemplateFolder = true;
    from->mLabelId = 1;
    from->mStatusId = 2;
    from->mKeywords = {4, 5};
    from->mSessionWordCount = 12;
    from->mSessionCharacterCount = 34;
    makeAllOld(model.get());

    TVLProjectNodeProperties expected = *model->projectNode(target);
    QVERIFY(model->clone(source, target, false, true, false, true));
    const TVLProjectNodeProperties &actual = *model->projectNode(target);
    const TVLProjectNodeProperties own = expected;
    expected = *from;
    expected.mId = own.mId;
    expected.mUuid = own.mUuid;
    expected.mCreated = own.mCreated;
    expected.mModified = actual.mModified;
    expected.mIsFavorite = false;
    expected.mIsTemplateFolder = false;
    expected.mSessionWordCount = 0;
    expected.mSessionCharacterCount = 0;
    expected.mWordCount = actual.mWordCount;
    expected.mCharacterCount = actual.mCharacterCount;
    QVERIFY(actual == expected);
    QVERIFY(isTouched(model.get(), target));
    QVERIFY(!isTouched(model.get(), source));
}

void TstItemCloning::aCloneOfASystemFolderIsAFolder()
{
    const TestProject project;
    const TestProject otherProject(u"Other"_s);
    const auto model = project.create();
    const auto other = otherProject.create();
    const QModelIndex target = addItem(model.get(), model->researchFolder(), TVL::Text);
    QVERIFY(model->clone(other->researchFolder(), target, false, true, false, true));
    QCOMPARE(int(model->type(target)), int(TVL::Folder));
    QCOMPARE(model->title(target), u"Research"_s);
}

void TstItemCloning::equalIndexesAreASuccessWithoutEffect()
{
    const auto model = blankModel();
    const QModelIndex text = firstText(model.get());
    SignalLog log(model.get());
    QVERIFY(model->clone(text, text, true, true, true, true));
    QVERIFY(model->cloneDesktopProperties(text, text, true));
    QVERIFY(model->cloneLabelsAndStatusItems(text, text));
    QCOMPARE(log.lines(), QStringList());
}

void TstItemCloning::unsavedWordsAreCloned()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    typeText(model.get(), source, u"new "_s);
    const QModelIndex copy = model->insertRowAndClone(-1, model->researchFolder(), source, {});
    QCOMPARE(model->documentPlainText(copy, false), u"new a text"_s);
    QVERIFY(model->hasText(copy));
}

void TstItemCloning::aClonedFileCanBeEdited()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    QVERIFY(model->save(true));
    const QString sourceFile =
        project.path(u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(source)));
    QVERIFY(QFile::setPermissions(sourceFile, QFileDevice::ReadOwner));
    const QModelIndex copy = model->insertRowAndClone(-1, model->researchFolder(), source, {});
    const QString copyFile = project.path(u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(copy)));
    QVERIFY(QFile::permissions(copyFile) & QFileDevice::WriteOwner);
    typeText(model.get(), copy, u"changed "_s);
    QVERIFY(model->save(true));
    QCOMPARE(model->documentPlainText(source, false), u"a text"_s);
    QVERIFY(project.readFile(u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(copy)))
                .contains("changed"));
}

void TstItemCloning::allFilesOfAnItemAreCloned()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex source = addItem(model.get(), model->researchFolder(), TVL::PDF);
    const QString id = QString::number(model->nodeIdentity(source));
    for (const QString &tail : {u".pdf"_s, u".comments"_s, u"_icImage.png"_s, u"_notes.rtf"_s})
        project.writeFile(u"Files/Docs/"_s + id + tail, tail.toUtf8());
    const QModelIndex copy = model->insertRowAndClone(-1, model->researchFolder(), source, {});
    const QString copyId = QString::number(model->nodeIdentity(copy));
    for (const QString &tail : {u".pdf"_s, u".comments"_s, u"_icImage.png"_s, u"_notes.rtf"_s})
        QCOMPARE(project.readFile(u"Files/Docs/"_s + copyId + tail), tail.toUtf8());
}

void TstItemCloning::aCloneTakesTheTargetsDocumentsOutOfMemory()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const QPersistentModelIndex target = addTextItem(model.get(), model->researchFolder(), u"b"_s);
    QVERIFY(model->save(true));
    const QPointer<TVLTextDocument> held = model->referenceText(target);
    typeText(model.get(), target, u"unsaved "_s);
    QVERIFY(model->clone(source, target, false, true, false, true));
    QVERIFY(!held->node());
    QCOMPARE(model->documentPlainText(target, false), u"a text"_s);
    QVERIFY(model->save(true));
    QCOMPARE(model->documentPlainText(target, false), u"a text"_s);
}

void TstItemCloning::aCloneForgetsWhatItsOldFilesShowed_data()
{
    QTest::addColumn<bool>("onlyFiles");
    QTest::newRow("all of it") << false;
    QTest::newRow("only the files") << true;
}

void TstItemCloning::aCloneForgetsWhatItsOldFilesShowed()
{
    QFETCH(const bool, onlyFiles);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex research = model->researchFolder();
    const QPersistentModelIndex source = addTextItem(model.get(), research, u"a"_s);
    const QPersistentModelIndex target = addItem(model.get(), research, TVL::Text);
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(model->setIndexCardImage(source, image));
    model->projectNode(target)->mIndexCardImageFileExtension = u"png"_s;
    QVERIFY(model->save(true));
    // As an outline does that shows it.
    QCOMPARE(model->wordCount(target, false, false), 0);
    QCOMPARE(model->characterCount(target), 0);
    QVERIFY(model->indexCardPixmap(target).isNull());

    QVERIFY(onlyFiles ? model->cloneProjectFiles(source, target, false)
                      : model->clone(source, target, false, true, false, true));
    QCOMPARE(model->wordCount(target, false, false), 2);
    QCOMPARE(model->characterCount(target), 6);
    QCOMPARE(model->indexCardPixmap(target).size(), QSize(3, 2));
}

void TstItemCloning::snapshotsComeAlongWhenAskedFor()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    QVERIFY(model->addSnapshot(source, u"first"_s));
    const QModelIndex with = model->insertRowAndClone(-1, model->researchFolder(), source,
                                                      TVLProjectModel::CloneSnapshots);
    QVERIFY(model->hasSnapshots(with));
    QCOMPARE(model->snapshots(with).size(), 1);
    const QModelIndex without = model->insertRowAndClone(-1, model->researchFolder(), source, {});
    QVERIFY(!model->hasSnapshots(without));
}

void TstItemCloning::withoutFilesNothingIsCloned()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const QPersistentModelIndex target = addTextItem(model.get(), model->researchFolder(), u"b"_s);
    QVERIFY(model->clone(source, target, false, true, true, false));
    QCOMPARE(model->title(target), u"b"_s);
    QCOMPARE(model->documentPlainText(target, false), u"b text"_s);
}

void TstItemCloning::descendantsComeBeforeThoseOfTheTarget()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b(c) d) e(f)"_s);
    const QPersistentModelIndex a = itemTitled(model.get(), u"a"_s);
    const QPersistentModelIndex e = itemTitled(model.get(), u"e"_s);
    QVERIFY(model->clone(a, e, true, true, false, true));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(b(c) d) a(b(c) d f)"_s);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCloning::aCloneBelowItsSourceEnds()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b)"_s);
    const QPersistentModelIndex a = itemTitled(model.get(), u"a"_s);
    QVERIFY(model->insertRowsAndClone(0, 1, a, a, TVLProjectModel::CloneChildren));
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(a(b) b)"_s);
}

void TstItemCloning::aRefusedDescendantEndsTheClone()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b c:5 d)"_s);
    const QPersistentModelIndex a = itemTitled(model.get(), u"a"_s);
    const QPersistentModelIndex target = firstText(model.get());
    QVERIFY(!model->clone(a, target, true, true, false, true));
    QCOMPARE(treeText(model.get(), model->draftFolder()), u"a(b )"_s);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCloning::aCloneIsAnnouncedWithRowsThatViewsKnow()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a(b(c))"_s);
    int open = 0;
    int deepest = 0;
    connect(model.get(), &QAbstractItemModel::rowsAboutToBeInserted, this,
            [&] { deepest = std::max(deepest, ++open); });
    connect(model.get(), &QAbstractItemModel::rowsInserted, this, [&] { --open; });
    QVERIFY(model->insertRowsAndClone(-1, 2, model->researchFolder(),
                                      itemTitled(model.get(), u"a"_s),
                                      TVLProjectModel::CloneChildren));
    QCOMPARE(open, 0);
    QCOMPARE(deepest, 1);
}

void TstItemCloning::onlyTheFilesAreCloned()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const QPersistentModelIndex target =
        model->insertTextNode(-1, model->researchFolder(), u"b"_s, {}, {}, {});
    QVERIFY(model->addSnapshot(source, u"first"_s));
    QVERIFY(model->save(true));
    QVERIFY(model->cloneProjectFiles(source, target, true));
    QCOMPARE(model->title(target), u"b"_s);
    QVERIFY(model->hasSnapshots(target));
    QVERIFY(model->projectNode(target)->mHasText);
    QCOMPARE(model->documentPlainText(target, false), u"a text"_s);
    QVERIFY(!model->cloneProjectFiles(source, model->trashFolder(), true));
}

void TstItemCloning::onlyTheAttributesAreCloned()
{
    const TestProject project;
    const auto model = project.create();
    const QPersistentModelIndex source = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    const QPersistentModelIndex target = addTextItem(model.get(), model->researchFolder(), u"b"_s);
    QVERIFY(model->addSnapshot(source, u"first"_s));
    model->setLabelIdentity(source, 1);
    const QSignalSpy changed(model.get(), &QAbstractItemModel::dataChanged);
    QVERIFY(model->cloneDesktopProperties(source, target, false));
    QCOMPARE(model->title(target), u"a"_s);
    QCOMPARE(model->labelIdentity(target), 1);
    QVERIFY(!model->hasSnapshots(target));
    QCOMPARE(model->documentPlainText(target, false), u"b text"_s);
    QVERIFY(!changed.isEmpty());
    QVERIFY(model->cloneDesktopProperties(source, target, true));
    QVERIFY(model->hasSnapshots(target));
    QCOMPARE(model->snapshots(target).size(), 1);
    QVERIFY(!model->cloneDesktopProperties(QModelIndex(), target, true));
    QVERIFY(!model->cloneDesktopProperties(source, QModelIndex(), true));
}

void TstItemCloning::duplicatesStandBelowTheLastSource_data()
{
    QTest::addColumn<QString>("sources");
    QTest::addColumn<bool>("withChildren");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &sources, bool withChildren,
                        const QString &expected) {
        QTest::newRow(name) << sources << withChildren << expected;
    };
    row("one", u"a"_s, false, u"a a-1 b(c d(e)) f"_s);
    row("one with children", u"b"_s, true, u"a b(c d(e)) b-1(c d(e)) f"_s);
    row("one without its children", u"b"_s, false, u"a b(c d(e)) b-1 f"_s);
    row("a run stays together", u"a b"_s, false, u"a b(c d(e)) a-1 b-1 f"_s);
    row("in the order of the binder", u"f a"_s, false, u"a b(c d(e)) f a-1 f-1"_s);
    row("the topmost decides the place", u"a e c"_s, false, u"a a-1 c e b(c d(e)) f"_s);
    row("below another they come along once", u"b d e"_s, true, u"a b(c d(e)) b-1(c d(e)) f"_s);
    row("below another they come on their own", u"b d"_s, false, u"a b(c d(e)) b-1 d f"_s);
    row("siblings below", u"c d"_s, true, u"a b(c d(e) c-1 d-1(e)) f"_s);
}

void TstItemCloning::duplicatesStandBelowTheLastSource()
{
    QFETCH(const QString, sources);
    QFETCH(const bool, withChildren);
    QFETCH(const QString, expected);
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b(c d(e)) f"_s);
    const QModelIndexList copies =
        model->duplicate(itemsTitled(model.get(), sources), withChildren);
    QCOMPARE(treeText(model.get(), model->researchFolder()), expected);
    QVERIFY(!copies.isEmpty());
    for (qsizetype i = 1; i < copies.size(); ++i)
        QCOMPARE(copies.at(i).row(), copies.at(i - 1).row() + 1);
    QVERIFY(model->isModified());
    QCOMPARE(mapsOutOfStep(model.get()), QString());
}

void TstItemCloning::duplicatesHaveUniqueTitles()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a a-1 b-7 a-3"_s);
    const QModelIndexList sources = TVLModel::directChildren(model->researchFolder());
    QVERIFY(!model->duplicate(sources, true).isEmpty());
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a a-1 b-7 a-3 a-2 a-4 b-8 a-5"_s);
}

void TstItemCloning::duplicatesCarryTextsAndChildren()
{
    const TestProject project;
    auto model = project.create();
    const QPersistentModelIndex a = addTextItem(model.get(), model->researchFolder(), u"a"_s);
    addTextItem(model.get(), a, u"b"_s);
    QVERIFY(model->addSnapshot(a, u"first"_s));
    model->duplicate({a}, true);
    model->prepareToDestroy();
    model = project.open();
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(b) a-1(b)"_s);
    const QModelIndex copy = itemTitled(model.get(), u"a-1"_s);
    QCOMPARE(model->documentPlainText(copy, false), u"a text"_s);
    QCOMPARE(model->synopsis(copy), u"a card"_s);
    QCOMPARE(model->documentNoteAsPlainText(copy), u"a note"_s);
    QCOMPARE(model->snapshots(copy).size(), 1);
    QCOMPARE(model->documentPlainText(model->index(0, 0, copy), false), u"b text"_s);
}

void TstItemCloning::duplicatesWithASystemFolderAreRefused()
{
    const auto model = blankModel();
    const auto other = blankModel();
    const QModelIndex text = firstText(model.get());
    QCOMPARE(model->duplicate({text, model->draftFolder()}, true), QModelIndexList());
    QCOMPARE(model->duplicate({text, QModelIndex()}, true), QModelIndexList());
    QCOMPARE(model->duplicate({firstText(other.get())}, true), QModelIndexList());
    QCOMPARE(model->totalNodesCount(), 4);
    QVERIFY(model->isSaved());
}

void TstItemCloning::duplicatesOfNothingAreNone()
{
    const auto model = blankModel();
    QCOMPARE(model->duplicate(QModelIndexList(), true), QModelIndexList());
    QCOMPARE(model->duplicate(QModelIndexList(), 0, model->draftFolder(), true, true),
             QModelIndexList());
    QVERIFY(model->isSaved());
}

void TstItemCloning::duplicatesStandWhereAsked()
{
    const TestProject project;
    const auto model = project.create();
    addTree(model.get(), model->researchFolder(), u"a b"_s);
    const QPersistentModelIndex a = itemTitled(model.get(), u"a"_s);
    const QPersistentModelIndex b = itemTitled(model.get(), u"b"_s);
    QCOMPARE(model->duplicate(QModelIndexList{b, a}, 0, a, true, true).size(), 2);
    QCOMPARE(treeText(model.get(), model->researchFolder()), u"a(b a(b)) b"_s);
    const QModelIndex single = model->duplicate(b, -1, model->researchFolder(), true, true);
    QCOMPARE(model->title(single), u"b-1"_s);
    QCOMPARE(single.row(), 2);
    QVERIFY(!model->duplicate(b, 9, model->researchFolder(), true, true).isValid());
}

void TstItemCloning::duplicatesAreRefusedInTheTrash()
{
    const auto model = blankModel();
    addTree(model.get(), model->trashFolder(), u"a"_s);
    const QModelIndex text = firstText(model.get());
    QVERIFY(!model->duplicate(text, 0, model->trashFolder(), true, true).isValid());
    QVERIFY(!model->duplicate(text, 0, itemTitled(model.get(), u"a"_s), true, true).isValid());
    QCOMPARE(model->duplicate({itemTitled(model.get(), u"a"_s)}, true), QModelIndexList());
    QCOMPARE(treeText(model.get(), model->trashFolder()), u"a"_s);
}

void TstItemCloning::manyDuplicatesOfOneTitleAreCheap()
{
    const TestProject project;
    const auto model = project.create().release();
    const QModelIndex research = model->researchFolder();
    QVERIFY(model->insertRows(0, 3000, research));
    const QModelIndexList copies = model->duplicate(TVLModel::directChildren(research), false);
    QCOMPARE(copies.size(), 3000);
    QCOMPARE(model->title(copies.constFirst()), u"-1"_s);
    QCOMPARE(model->title(copies.constLast()), u"-3000"_s);
}

TVL_TEST(TstItemCloning)
#include "tst_itemcloning.moc"
