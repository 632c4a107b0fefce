#include "ModelChecks.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>

class TstItemMerging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void textsAreJoinedWithAnEmptyParagraphBetween();
    void emptyTextsLeaveNoGap();
    void notesAreJoinedLikeTexts();
    void synopsesAreJoined_data();
    void synopsesAreJoined();
    void formatsComeAlong();
    void commentsOfOneIdentityAreAllKept();
    void commentsWhoseTextIsGoneComeAlong();
    void theOrderIsThatOfTheList();
    void keywordsAndReferencesComeOnce();
    void sessionCountsAreCarriedOver();
    void theOthersAreRemovedWithTheirFiles();
    void childrenMoveUpToTheirPlace();
    void anAncestorIsMergedIntoItsDescendant();
    void snapshotsGoToTheSurvivor();
    void snapshotsOfOneSecondAreAllKept();
    void aSnapshotThatCantComeAlongRefusesTheMerge();
    void theJoinedTextIsOnDiskAtOnce();
    void whatCannotBeWrittenKeepsTheFilesOfAll();
    void anUnreadableTextIsNotMerged();
    void oneItemIsReturnedUnchanged();
    void nothingElseThanTextsIsMerged();
    void anItemListedTwiceIsMergedOnce();
    void aMergeCannotBeUndone();
    void collectionsAndTemplatesForgetTheOthers();
    void theSurvivorIsAnnounced();

private:
    QModelIndex addText(const QString &title, const QString &text, const QString &synopsis = {},
                        const QString &notes = {})
    {
        return mModel->insertTextNode(-1, mModel->researchFolder(), title, text, synopsis, notes);
    }
    [[nodiscard]] QModelIndex merge(const QString &titles)
    {
        return mModel->mergeIndexes(itemsTitled(mModel.get(), titles));
    }
    [[nodiscard]] QString research() const
    {
        return treeText(mModel.get(), mModel->researchFolder());
    }
    [[nodiscard]] QStringList docFiles() const { return documentFiles(mProject->path()); }

    std::unique_ptr<TestProject> mProject;
    TestModel mModel;
};

void TstItemMerging::init()
{
    mProject = std::make_unique<TestProject>();
    mModel = mProject->create();
}

void TstItemMerging::cleanup()
{
    mModel.reset();
    mProject.reset();
}

void TstItemMerging::textsAreJoinedWithAnEmptyParagraphBetween()
{
    addText(u"a"_qs, u"one\ntwo"_qs);
    addText(u"b"_qs, u"three"_qs);
    addText(u"c"_qs, u"four"_qs);
    const QModelIndex survivor = merge(u"a b c"_qs);
    QCOMPARE(mModel->title(survivor), u"a"_qs);
    QCOMPARE(mModel->documentPlainText(survivor, false), u"one\ntwo\n\nthree\n\nfour"_qs);
    QCOMPARE(research(), u"a"_qs);
}

void TstItemMerging::emptyTextsLeaveNoGap()
{
    addText(u"a"_qs, {});
    addText(u"b"_qs, u"one"_qs);
    addText(u"c"_qs, {});
    addText(u"d"_qs, u"two"_qs);
    QCOMPARE(mModel->documentPlainText(merge(u"a b c d"_qs), false), u"one\n\ntwo"_qs);
}

void TstItemMerging::notesAreJoinedLikeTexts()
{
    addText(u"a"_qs, u"x"_qs, {}, u"one"_qs);
    addText(u"b"_qs, u"x"_qs, {}, {});
    addText(u"c"_qs, u"x"_qs, {}, u"two"_qs);
    QCOMPARE(mModel->documentNoteAsPlainText(merge(u"a b c"_qs)), u"one\n\ntwo"_qs);
}

void TstItemMerging::synopsesAreJoined_data()
{
    QTest::addColumn<QStringList>("synopses");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two") << QStringList({u"a"_qs, u"b"_qs}) << u"a\n\nb"_qs;
    QTest::newRow("line end") << QStringList({u"a\n"_qs, u"b"_qs}) << u"a\n\nb"_qs;
    QTest::newRow("two line ends") << QStringList({u"a\n\n"_qs, u"b"_qs}) << u"a\n\nb"_qs;
    QTest::newRow("first empty") << QStringList({QString(), u"b"_qs}) << u"b"_qs;
    QTest::newRow("last empty") << QStringList({u"a"_qs, QString()}) << u"a\n\n"_qs;
    QTest::newRow("none") << QStringList({QString(), QString()}) << QString();
}

void TstItemMerging::synopsesAreJoined()
{
    QFETCH(const QStringList, synopses);
    QFETCH(const QString, expected);
    addText(u"a"_qs, u"x"_qs, synopses.at(0));
    addText(u"b"_qs, u"x"_qs, synopses.at(1));
    QCOMPARE(mModel->synopsis(merge(u"a b"_qs)), expected);
}

void TstItemMerging::formatsComeAlong()
{
    addText(u"a"_qs, u"plain"_qs);
    const QPersistentModelIndex b = addText(u"b"_qs, u"bold"_qs);
    TVLTextDocument *document = mModel->referenceText(b);
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.mergeCharFormat(bold);
    QTextBlockFormat centred;
    centred.setAlignment(Qt::AlignHCenter);
    cursor.mergeBlockFormat(centred);
    mModel->dereferenceItem(document);

    const QModelIndex survivor = merge(u"a b"_qs);
    const TVLTextDocument *merged = mModel->referenceText(survivor);
    const QTextBlock last = merged->lastBlock();
    QCOMPARE(last.text(), u"bold"_qs);
    QCOMPARE(last.begin().fragment().charFormat().fontWeight(), int(QFont::Bold));
    QCOMPARE(last.blockFormat().alignment(), Qt::Alignment(Qt::AlignHCenter));
    QVERIFY(merged->firstBlock().begin().fragment().charFormat().fontWeight() != QFont::Bold);
}

void TstItemMerging::commentsOfOneIdentityAreAllKept()
{
    const QString identity = u"0F8FAD5B-D9CB-469F-A165-70867728950E"_qs;
    for (const QString &title : {u"a"_qs, u"b"_qs, u"c"_qs}) {
        const QModelIndex index = addText(title, u"text of "_qs + title);
        const QByteArray rtf = "{\\rtf1 on " + title.toUtf8() + "}";
        QVERIFY(mModel->setInspectorNote(index, {0, 4}, TVLTextCommentLink(identity, rtf)));
    }
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b c"_qs).isValid());
    mModel->prepareToDestroy();
    mModel = mProject->open();
    const QModelIndex survivor = itemTitled(mModel.get(), u"a"_qs);
    QCOMPARE(mModel->inspectorNotesToPlainText(survivor),
             QStringList({u"on a"_qs, u"on b"_qs, u"on c"_qs}));
}

void TstItemMerging::commentsWhoseTextIsGoneComeAlong()
{
    const int a = mModel->nodeIdentity(addText(u"a"_qs, u"one"_qs));
    const int b = mModel->nodeIdentity(addText(u"b"_qs, {}, u"card"_qs));
    const int c = mModel->nodeIdentity(addText(u"c"_qs, {}, u"card"_qs));
    mModel->prepareToDestroy();
    for (const int id : {a, b, c})
        mProject->writeFile(u"Files/Docs/%1.comments"_qs.arg(id),
                            "<Comments><Comment ID=\"x\">{\\rtf1 remark " + QByteArray::number(id)
                                + "}</Comment></Comments>");
    mModel = mProject->open();
    QVERIFY(merge(u"a b c"_qs).isValid());
    const QByteArray kept = mProject->readFile(u"Files/Docs/%1.comments"_qs.arg(a));
    for (const int id : {a, b, c})
        QVERIFY(kept.contains("remark " + QByteArray::number(id)));
    QCOMPARE(kept.count("ID=\"x\""), 1);
    QVERIFY(!QFileInfo::exists(mProject->path(u"Files/Docs/%1.comments"_qs.arg(b))));
}

void TstItemMerging::theOrderIsThatOfTheList()
{
    addText(u"a"_qs, u"one"_qs);
    addText(u"b"_qs, u"two"_qs);
    addText(u"c"_qs, u"three"_qs);
    const QModelIndex survivor = merge(u"b c a"_qs);
    QCOMPARE(mModel->title(survivor), u"b"_qs);
    QCOMPARE(mModel->documentPlainText(survivor, false), u"two\n\nthree\n\none"_qs);
}

void TstItemMerging::keywordsAndReferencesComeOnce()
{
    const QPersistentModelIndex a = addText(u"a"_qs, u"x"_qs);
    const QPersistentModelIndex b = addText(u"b"_qs, u"x"_qs);
    TVLReference one;
    one.mTitle = u"one"_qs;
    TVLReference two;
    two.mTitle = u"two"_qs;
    mModel->setKeywordIds(a, {3, 1});
    mModel->setKeywordIds(b, {2, 3});
    mModel->setReferences(a, {one});
    mModel->setReferences(b, {one, two});
    const QModelIndex survivor = merge(u"a b"_qs);
    QCOMPARE(mModel->keywordIds(survivor), QList<int>({3, 1, 2}));
    QCOMPARE(mModel->references(survivor), QList<TVLReference>({one, two}));
}

void TstItemMerging::sessionCountsAreCarriedOver()
{
    const QPersistentModelIndex a = addText(u"a"_qs, u"x"_qs);
    const QPersistentModelIndex b = addText(u"b"_qs, u"x"_qs);
    TVLProjectNode *survivor = mModel->projectNode(a);
    survivor->mSessionWordCount = 10;
    survivor->mSessionCharacterCount = 60;
    mModel->projectNode(b)->mSessionWordCount = 3;
    mModel->projectNode(b)->mSessionCharacterCount = 20;
    QVERIFY(merge(u"a b"_qs).isValid());
    QCOMPARE(survivor->mSessionWordCount, 13);
    QCOMPARE(survivor->mSessionCharacterCount, 80);
}

void TstItemMerging::theOthersAreRemovedWithTheirFiles()
{
    const int a = mModel->nodeIdentity(addText(u"a"_qs, u"one"_qs, u"card"_qs, u"note"_qs));
    const int b = mModel->nodeIdentity(addText(u"b"_qs, u"two"_qs, u"card"_qs, u"note"_qs));
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b"_qs).isValid());
    QVERIFY(!mModel->hasNodeId(b));
    QCOMPARE(mapsOutOfStep(mModel.get()), QString());
    QVERIFY(mModel->isModified());
    const QString id = QString::number(a);
    QCOMPARE(docFiles(),
             QStringList({id + u".rtf"_qs, id + u"_notes.rtf"_qs, id + u"_synopsis.txt"_qs}));
}

void TstItemMerging::childrenMoveUpToTheirPlace()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a(b) c(d e(f)) g"_qs);
    QVERIFY(merge(u"a c g"_qs).isValid());
    QCOMPARE(research(), u"a(b) d e(f)"_qs);
}

void TstItemMerging::anAncestorIsMergedIntoItsDescendant()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a(b(c d)) e"_qs);
    const QModelIndex survivor = merge(u"c a b"_qs);
    QCOMPARE(mModel->title(survivor), u"c"_qs);
    QCOMPARE(research(), u"c d e"_qs);
}

void TstItemMerging::snapshotsGoToTheSurvivor()
{
    const QPersistentModelIndex a = addText(u"a"_qs, u"one"_qs);
    const QPersistentModelIndex b = addText(u"b"_qs, u"two"_qs);
    const auto snapshot = [](const QString &title, int second) {
        TVLSnapshotInfo info;
        info.mTitle = title;
        info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, second), Qt::UTC);
        return info;
    };
    QVERIFY(mModel->addSnapshot(b, snapshot(u"of b"_qs, 5)));
    QVERIFY(!mModel->hasSnapshots(a));
    const QModelIndex survivor = merge(u"a b"_qs);
    QVERIFY(mModel->hasSnapshots(survivor));
    QCOMPARE(mModel->snapshots(survivor).size(), 1);
    QTextDocument document;
    QVERIFY(mModel->loadSnapshot(survivor, mModel->snapshots(survivor).constFirst(), &document));
    QCOMPARE(document.toPlainText(), u"two"_qs);
}

void TstItemMerging::snapshotsOfOneSecondAreAllKept()
{
    TVLSnapshotInfo info;
    info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    for (const QString &title : {u"a"_qs, u"b"_qs, u"c"_qs}) {
        info.mTitle = u"of "_qs + title;
        QVERIFY(mModel->addSnapshot(addText(title, u"text of "_qs + title), info));
    }
    info.mTitle = u"later"_qs;
    info.mDate = info.mDate.addSecs(1);
    QVERIFY(mModel->addSnapshot(itemTitled(mModel.get(), u"c"_qs), info));

    const QModelIndex survivor = merge(u"a b c"_qs);
    QStringList found;
    const QList<TVLSnapshotInfo> snapshots = mModel->snapshots(survivor);
    for (const TVLSnapshotInfo &snapshot : snapshots) {
        QTextDocument document;
        QVERIFY(mModel->loadSnapshot(survivor, snapshot, &document));
        found.append(snapshot.mTitle + u": "_qs + document.toPlainText());
    }
    found.sort();
    QCOMPARE(found,
             QStringList({u"later: text of c"_qs, u"of a: text of a"_qs, u"of b: text of b"_qs,
                          u"of c: text of c"_qs}));
}

void TstItemMerging::aSnapshotThatCantComeAlongRefusesTheMerge()
{
    const QPersistentModelIndex a = addText(u"a"_qs, u"one"_qs);
    const QPersistentModelIndex b = addText(u"b"_qs, u"two"_qs);
    TVLSnapshotInfo info;
    info.mTitle = u"of b"_qs;
    info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    QVERIFY(mModel->addSnapshot(b, info));
    mProject->writeFile(u"Snapshots/%1.snapshots"_qs.arg(mModel->nodeIdentity(a)), "in the way");

    QVERIFY(!merge(u"a b"_qs).isValid());
    QCOMPARE(research(), u"a b"_qs);
    QCOMPARE(mModel->documentPlainText(a, false), u"one"_qs);
    QCOMPARE(mModel->documentPlainText(b, false), u"two"_qs);
    QCOMPARE(mModel->snapshots(b).size(), 1);
}

void TstItemMerging::theJoinedTextIsOnDiskAtOnce()
{
    const int a = mModel->nodeIdentity(addText(u"a"_qs, u"first words"_qs));
    addText(u"b"_qs, u"second words"_qs);
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b"_qs).isValid());
    const QByteArray rtf = mProject->readFile(u"Files/Docs/%1.rtf"_qs.arg(a));
    QVERIFY(rtf.contains("first words"));
    QVERIFY(rtf.contains("second words"));
}

void TstItemMerging::whatCannotBeWrittenKeepsTheFilesOfAll()
{
    const int a = mModel->nodeIdentity(addText(u"a"_qs, u"first words"_qs));
    const int b = mModel->nodeIdentity(addText(u"b"_qs, u"second words"_qs));
    QVERIFY(mModel->save(true));
    // A folder can't be written as a file, whoever asks.
    const QString file = mProject->path(u"Files/Docs/%1.rtf"_qs.arg(a));
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkpath(file + u"/x"_qs));
    const QModelIndex survivor = merge(u"a b"_qs);
    QVERIFY(survivor.isValid());
    QCOMPARE(research(), u"a"_qs);
    QVERIFY(mModel->projectNode(survivor)->mTextDocument->isDirty());
    QVERIFY(mProject->readFile(u"Files/Docs/%1.rtf"_qs.arg(b)).contains("second words"));
}

void TstItemMerging::anUnreadableTextIsNotMerged()
{
    addText(u"a"_qs, u"first words"_qs);
    const int b = mModel->nodeIdentity(addText(u"b"_qs, u"second words"_qs));
    mModel->prepareToDestroy();
    mProject->writeFile(u"Files/Docs/%1.rtf"_qs.arg(b), "no rich text");
    mModel = mProject->open();
    QVERIFY(mModel->save(true));
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!merge(u"a b"_qs).isValid());
    QVERIFY(!merge(u"b a"_qs).isValid());
    QCOMPARE(research(), u"a b"_qs);
    QCOMPARE(mProject->readFile(u"Files/Docs/%1.rtf"_qs.arg(b)), QByteArray("no rich text"));
    QVERIFY(mModel->isSaved());
}

void TstItemMerging::oneItemIsReturnedUnchanged()
{
    const QModelIndex a = addText(u"a"_qs, u"one"_qs);
    QVERIFY(mModel->save(true));
    SignalLog log(mModel.get());
    QCOMPARE(mModel->mergeIndexes({a}), a);
    QVERIFY(!mModel->mergeIndexes({}).isValid());
    QCOMPARE(log.lines(), QStringList());
}

void TstItemMerging::nothingElseThanTextsIsMerged()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a b:5 c:3 d:8"_qs);
    QVERIFY(mModel->save(true));
    const auto other = blankModel();
    for (const QString &titles : {u"a b"_qs, u"b a"_qs, u"a d c"_qs, u"a Draft"_qs}) {
        QVERIFY(!merge(titles).isValid());
        QCOMPARE(research(), u"a b c d"_qs);
    }
    const QModelIndex a = itemTitled(mModel.get(), u"a"_qs);
    QVERIFY(!mModel->mergeIndexes({a, firstText(other.get())}).isValid());
    QVERIFY(!mModel->mergeIndexes({a, QModelIndex()}).isValid());
    QVERIFY(mModel->isSaved());
    QVERIFY(merge(u"c a"_qs).isValid());
}

void TstItemMerging::anItemListedTwiceIsMergedOnce()
{
    addText(u"a"_qs, u"one"_qs);
    addText(u"b"_qs, u"two"_qs);
    QCOMPARE(mModel->documentPlainText(merge(u"a b a b"_qs), false), u"one\n\ntwo"_qs);
    QCOMPARE(research(), u"a"_qs);
}

void TstItemMerging::aMergeCannotBeUndone()
{
    const QModelIndex a = addText(u"a"_qs, u"one"_qs);
    addText(u"b"_qs, u"two"_qs);
    TVLTextDocument *document = mModel->referenceText(a);
    QVERIFY(merge(u"a b"_qs).isValid());
    QVERIFY(!document->isUndoAvailable());
    QVERIFY(document->isUndoRedoEnabled());
    QCOMPARE(document->toPlainText(), u"one\n\ntwo"_qs);
    mModel->dereferenceItem(document);
}

void TstItemMerging::collectionsAndTemplatesForgetTheOthers()
{
    const int a = mModel->nodeIdentity(addText(u"a"_qs, u"x"_qs));
    const int b = mModel->nodeIdentity(addText(u"b"_qs, u"x"_qs));
    TVLCollectionMetaData list;
    list.mType = TVL::ArbitraryCollection;
    list.mIds = {b, a};
    mModel->setCollections({list});
    mModel->projectNode(mModel->index(a))->mDefaultChildTemplateId = b;
    QVERIFY(merge(u"a b"_qs).isValid());
    QCOMPARE(mModel->collections().constFirst().mIds, QList<int>({a}));
    QCOMPARE(mModel->projectNode(mModel->index(a))->mDefaultChildTemplateId, -1);
}

void TstItemMerging::theSurvivorIsAnnounced()
{
    const QPersistentModelIndex a = addText(u"a"_qs, u"x"_qs);
    addText(u"b"_qs, u"y"_qs);
    QSignalSpy snapshots(mModel.get(), &TVLProjectModel::snapshotsChanged);
    QSignalSpy data(mModel.get(), &QAbstractItemModel::dataChanged);
    QCOMPARE(merge(u"a b"_qs), QModelIndex(a));
    QCOMPARE(snapshots.size(), 1);
    QCOMPARE(snapshots.constFirst().constFirst().toModelIndex(), QModelIndex(a));
    QCOMPARE(data.constLast().constFirst().toModelIndex(), QModelIndex(a));
}

TVL_TEST(TstItemMerging)
#include "tst_itemmerging.moc"
