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

using namespace Qt::StringLiterals;

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
    addText(u"a"_s, u"one\ntwo"_s);
    addText(u"b"_s, u"three"_s);
    addText(u"c"_s, u"four"_s);
    const QModelIndex survivor = merge(u"a b c"_s);
    QCOMPARE(mModel->title(survivor), u"a"_s);
    QCOMPARE(mModel->documentPlainText(survivor, false), u"one\ntwo\n\nthree\n\nfour"_s);
    QCOMPARE(research(), u"a"_s);
}

void TstItemMerging::emptyTextsLeaveNoGap()
{
    addText(u"a"_s, {});
    addText(u"b"_s, u"one"_s);
    addText(u"c"_s, {});
    addText(u"d"_s, u"two"_s);
    QCOMPARE(mModel->documentPlainText(merge(u"a b c d"_s), false), u"one\n\ntwo"_s);
}

void TstItemMerging::notesAreJoinedLikeTexts()
{
    addText(u"a"_s, u"x"_s, {}, u"one"_s);
    addText(u"b"_s, u"x"_s, {}, {});
    addText(u"c"_s, u"x"_s, {}, u"two"_s);
    QCOMPARE(mModel->documentNoteAsPlainText(merge(u"a b c"_s)), u"one\n\ntwo"_s);
}

void TstItemMerging::synopsesAreJoined_data()
{
    QTest::addColumn<QStringList>("synopses");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two") << QStringList({u"a"_s, u"b"_s}) << u"a\n\nb"_s;
    QTest::newRow("line end") << QStringList({u"a\n"_s, u"b"_s}) << u"a\n\nb"_s;
    QTest::newRow("two line ends") << QStringList({u"a\n\n"_s, u"b"_s}) << u"a\n\nb"_s;
    QTest::newRow("first empty") << QStringList({QString(), u"b"_s}) << u"b"_s;
    QTest::newRow("last empty") << QStringList({u"a"_s, QString()}) << u"a\n\n"_s;
    QTest::newRow("none") << QStringList({QString(), QString()}) << QString();
}

void TstItemMerging::synopsesAreJoined()
{
    QFETCH(const QStringList, synopses);
    QFETCH(const QString, expected);
    addText(u"a"_s, u"x"_s, synopses.at(0));
    addText(u"b"_s, u"x"_s, synopses.at(1));
    QCOMPARE(mModel->synopsis(merge(u"a b"_s)), expected);
}

void TstItemMerging::formatsComeAlong()
{
    addText(u"a"_s, u"plain"_s);
    const QPersistentModelIndex b = addText(u"b"_s, u"bold"_s);
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

    const QModelIndex survivor = merge(u"a b"_s);
    const TVLTextDocument *merged = mModel->referenceText(survivor);
    const QTextBlock last = merged->lastBlock();
    QCOMPARE(last.text(), u"bold"_s);
    QCOMPARE(last.begin().fragment().charFormat().fontWeight(), int(QFont::Bold));
    QCOMPARE(last.blockFormat().alignment(), Qt::Alignment(Qt::AlignHCenter));
    QVERIFY(merged->firstBlock().begin().fragment().charFormat().fontWeight() != QFont::Bold);
}

void TstItemMerging::commentsOfOneIdentityAreAllKept()
{
    const QString identity = u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s;
    for (const QString &title : {u"a"_s, u"b"_s, u"c"_s}) {
        const QModelIndex index = addText(title, u"text of "_s + title);
        const QByteArray rtf = "{\\rtf1 on " + title.toUtf8() + "}";
        QVERIFY(mModel->setInspectorNote(index, {0, 4}, TVLTextCommentLink(identity, rtf)));
    }
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b c"_s).isValid());
    mModel->prepareToDestroy();
    mModel = mProject->open();
    const QModelIndex survivor = itemTitled(mModel.get(), u"a"_s);
    QCOMPARE(mModel->inspectorNotesToPlainText(survivor),
             QStringList({u"on a"_s, u"on b"_s, u"on c"_s}));
}

void TstItemMerging::commentsWhoseTextIsGoneComeAlong()
{
    const int a = mModel->nodeIdentity(addText(u"a"_s, u"one"_s));
    const int b = mModel->nodeIdentity(addText(u"b"_s, {}, u"card"_s));
    const int c = mModel->nodeIdentity(addText(u"c"_s, {}, u"card"_s));
    mModel->prepareToDestroy();
    for (const int id : {a, b, c})
        mProject->writeFile(u"Files/Docs/%1.comments"_s.arg(id),
                            "<Comments><Comment ID=\"x\">{\\rtf1 remark " + QByteArray::number(id)
                                + "}</Comment></Comments>");
    mModel = mProject->open();
    QVERIFY(merge(u"a b c"_s).isValid());
    const QByteArray kept = mProject->readFile(u"Files/Docs/%1.comments"_s.arg(a));
    for (const int id : {a, b, c})
        QVERIFY(kept.contains("remark " + QByteArray::number(id)));
    QCOMPARE(kept.count("ID=\"x\""), 1);
    QVERIFY(!QFileInfo::exists(mProject->path(u"Files/Docs/%1.comments"_s.arg(b))));
}

void TstItemMerging::theOrderIsThatOfTheList()
{
    addText(u"a"_s, u"one"_s);
    addText(u"b"_s, u"two"_s);
    addText(u"c"_s, u"three"_s);
    const QModelIndex survivor = merge(u"b c a"_s);
    QCOMPARE(mModel->title(survivor), u"b"_s);
    QCOMPARE(mModel->documentPlainText(survivor, false), u"two\n\nthree\n\none"_s);
}

void TstItemMerging::keywordsAndReferencesComeOnce()
{
    const QPersistentModelIndex a = addText(u"a"_s, u"x"_s);
    const QPersistentModelIndex b = addText(u"b"_s, u"x"_s);
    TVLReference one;
    one.mTitle = u"one"_s;
    TVLReference two;
    two.mTitle = u"two"_s;
    mModel->setKeywordIds(a, {3, 1});
    mModel->setKeywordIds(b, {2, 3});
    mModel->setReferences(a, {one});
    mModel->setReferences(b, {one, two});
    const QModelIndex survivor = merge(u"a b"_s);
    QCOMPARE(mModel->keywordIds(survivor), QList<int>({3, 1, 2}));
    QCOMPARE(mModel->references(survivor), QList<TVLReference>({one, two}));
}

void TstItemMerging::sessionCountsAreCarriedOver()
{
    const QPersistentModelIndex a = addText(u"a"_s, u"x"_s);
    const QPersistentModelIndex b = addText(u"b"_s, u"x"_s);
    TVLProjectNode *survivor = mModel->projectNode(a);
    survivor->mSessionWordCount = 10;
    survivor->mSessionCharacterCount = 60;
    mModel->projectNode(b)->mSessionWordCount = 3;
    mModel->projectNode(b)->mSessionCharacterCount = 20;
    QVERIFY(merge(u"a b"_s).isValid());
    QCOMPARE(survivor->mSessionWordCount, 13);
    QCOMPARE(survivor->mSessionCharacterCount, 80);
}

void TstItemMerging::theOthersAreRemovedWithTheirFiles()
{
    const int a = mModel->nodeIdentity(addText(u"a"_s, u"one"_s, u"card"_s, u"note"_s));
    const int b = mModel->nodeIdentity(addText(u"b"_s, u"two"_s, u"card"_s, u"note"_s));
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b"_s).isValid());
    QVERIFY(!mModel->hasNodeId(b));
    QCOMPARE(mapsOutOfStep(mModel.get()), QString());
    QVERIFY(mModel->isModified());
    const QString id = QString::number(a);
    QCOMPARE(docFiles(),
             QStringList({id + u".rtf"_s, id + u"_notes.rtf"_s, id + u"_synopsis.txt"_s}));
}

void TstItemMerging::childrenMoveUpToTheirPlace()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a(b) c(d e(f)) g"_s);
    QVERIFY(merge(u"a c g"_s).isValid());
    QCOMPARE(research(), u"a(b) d e(f)"_s);
}

void TstItemMerging::anAncestorIsMergedIntoItsDescendant()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a(b(c d)) e"_s);
    const QModelIndex survivor = merge(u"c a b"_s);
    QCOMPARE(mModel->title(survivor), u"c"_s);
    QCOMPARE(research(), u"c d e"_s);
}

void TstItemMerging::snapshotsGoToTheSurvivor()
{
    const QPersistentModelIndex a = addText(u"a"_s, u"one"_s);
    const QPersistentModelIndex b = addText(u"b"_s, u"two"_s);
    const auto snapshot = [](const QString &title, int second) {
        TVLSnapshotInfo info;
        info.mTitle = title;
        info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, second), Qt::UTC);
        return info;
    };
    QVERIFY(mModel->addSnapshot(b, snapshot(u"of b"_s, 5)));
    QVERIFY(!mModel->hasSnapshots(a));
    const QModelIndex survivor = merge(u"a b"_s);
    QVERIFY(mModel->hasSnapshots(survivor));
    QCOMPARE(mModel->snapshots(survivor).size(), 1);
    QTextDocument document;
    QVERIFY(mModel->loadSnapshot(survivor, mModel->snapshots(survivor).constFirst(), &document));
    QCOMPARE(document.toPlainText(), u"two"_s);
}

void TstItemMerging::snapshotsOfOneSecondAreAllKept()
{
    TVLSnapshotInfo info;
    info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    for (const QString &title : {u"a"_s, u"b"_s, u"c"_s}) {
        info.mTitle = u"of "_s + title;
        QVERIFY(mModel->addSnapshot(addText(title, u"text of "_s + title), info));
    }
    info.mTitle = u"later"_s;
    info.mDate = info.mDate.addSecs(1);
    QVERIFY(mModel->addSnapshot(itemTitled(mModel.get(), u"c"_s), info));

    const QModelIndex survivor = merge(u"a b c"_s);
    QStringList found;
    const QList<TVLSnapshotInfo> snapshots = mModel->snapshots(survivor);
    for (const TVLSnapshotInfo &snapshot : snapshots) {
        QTextDocument document;
        QVERIFY(mModel->loadSnapshot(survivor, snapshot, &document));
        found.append(snapshot.mTitle + u": "_s + document.toPlainText());
    }
    found.sort();
    QCOMPARE(found,
             QStringList({u"later: text of c"_s, u"of a: text of a"_s, u"of b: text of b"_s,
                          u"of c: text of c"_s}));
}

void TstItemMerging::aSnapshotThatCantComeAlongRefusesTheMerge()
{
    const QPersistentModelIndex a = addText(u"a"_s, u"one"_s);
    const QPersistentModelIndex b = addText(u"b"_s, u"two"_s);
    TVLSnapshotInfo info;
    info.mTitle = u"of b"_s;
    info.mDate = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    QVERIFY(mModel->addSnapshot(b, info));
    mProject->writeFile(u"Snapshots/%1.snapshots"_s.arg(mModel->nodeIdentity(a)), "in the way");

    QVERIFY(!merge(u"a b"_s).isValid());
    QCOMPARE(research(), u"a b"_s);
    QCOMPARE(mModel->documentPlainText(a, false), u"one"_s);
    QCOMPARE(mModel->documentPlainText(b, false), u"two"_s);
    QCOMPARE(mModel->snapshots(b).size(), 1);
}

void TstItemMerging::theJoinedTextIsOnDiskAtOnce()
{
    const int a = mModel->nodeIdentity(addText(u"a"_s, u"first words"_s));
    addText(u"b"_s, u"second words"_s);
    QVERIFY(mModel->save(true));
    QVERIFY(merge(u"a b"_s).isValid());
    const QByteArray rtf = mProject->readFile(u"Files/Docs/%1.rtf"_s.arg(a));
    QVERIFY(rtf.contains("first words"));
    QVERIFY(rtf.contains("second words"));
}

void TstItemMerging::whatCannotBeWrittenKeepsTheFilesOfAll()
{
    const int a = mModel->nodeIdentity(addText(u"a"_s, u"first words"_s));
    const int b = mModel->nodeIdentity(addText(u"b"_s, u"second words"_s));
    QVERIFY(mModel->save(true));
    // A folder can't be written as a file, whoever asks.
    const QString file = mProject->path(u"Files/Docs/%1.rtf"_s.arg(a));
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkpath(file + u"/x"_s));
    const QModelIndex survivor = merge(u"a b"_s);
    QVERIFY(survivor.isValid());
    QCOMPARE(research(), u"a"_s);
    QVERIFY(mModel->projectNode(survivor)->mTextDocument->isDirty());
    QVERIFY(mProject->readFile(u"Files/Docs/%1.rtf"_s.arg(b)).contains("second words"));
}

void TstItemMerging::anUnreadableTextIsNotMerged()
{
    addText(u"a"_s, u"first words"_s);
    const int b = mModel->nodeIdentity(addText(u"b"_s, u"second words"_s));
    mModel->prepareToDestroy();
    mProject->writeFile(u"Files/Docs/%1.rtf"_s.arg(b), "no rich text");
    mModel = mProject->open();
    QVERIFY(mModel->save(true));
    const TVLUnattendedMessageBoxes boxes;
    QVERIFY(!merge(u"a b"_s).isValid());
    QVERIFY(!merge(u"b a"_s).isValid());
    QCOMPARE(research(), u"a b"_s);
    QCOMPARE(mProject->readFile(u"Files/Docs/%1.rtf"_s.arg(b)), QByteArray("no rich text"));
    QVERIFY(mModel->isSaved());
}

void TstItemMerging::oneItemIsReturnedUnchanged()
{
    const QModelIndex a = addText(u"a"_s, u"one"_s);
    QVERIFY(mModel->save(true));
    SignalLog log(mModel.get());
    QCOMPARE(mModel->mergeIndexes({a}), a);
    QVERIFY(!mModel->mergeIndexes({}).isValid());
    QCOMPARE(log.lines(), QStringList());
}

void TstItemMerging::nothingElseThanTextsIsMerged()
{
    addTree(mModel.get(), mModel->researchFolder(), u"a b:5 c:3 d:8"_s);
    QVERIFY(mModel->save(true));
    const auto other = blankModel();
    for (const QString &titles : {u"a b"_s, u"b a"_s, u"a d c"_s, u"a Draft"_s}) {
        QVERIFY(!merge(titles).isValid());
        QCOMPARE(research(), u"a b c d"_s);
    }
    const QModelIndex a = itemTitled(mModel.get(), u"a"_s);
    QVERIFY(!mModel->mergeIndexes({a, firstText(other.get())}).isValid());
    QVERIFY(!mModel->mergeIndexes({a, QModelIndex()}).isValid());
    QVERIFY(mModel->isSaved());
    QVERIFY(merge(u"c a"_s).isValid());
}

void TstItemMerging::anItemListedTwiceIsMergedOnce()
{
    addText(u"a"_s, u"one"_s);
    addText(u"b"_s, u"two"_s);
    QCOMPARE(mModel->documentPlainText(merge(u"a b a b"_s), false), u"one\n\ntwo"_s);
    QCOMPARE(research(), u"a"_s);
}

void TstItemMerging::aMergeCannotBeUndone()
{
    const QModelIndex a = addText(u"a"_s, u"one"_s);
    addText(u"b"_s, u"two"_s);
    TVLTextDocument *document = mModel->referenceText(a);
    QVERIFY(merge(u"a b"_s).isValid());
    QVERIFY(!document->isUndoAvailable());
    QVERIFY(document->isUndoRedoEnabled());
    QCOMPARE(document->toPlainText(), u"one\n\ntwo"_s);
    mModel->dereferenceItem(document);
}

void TstItemMerging::collectionsAndTemplatesForgetTheOthers()
{
    const int a = mModel->nodeIdentity(addText(u"a"_s, u"x"_s));
    const int b = mModel->nodeIdentity(addText(u"b"_s, u"x"_s));
    TVLCollectionMetaData list;
    list.mType = TVL::ArbitraryCollection;
    list.mIds = {b, a};
    mModel->setCollections({list});
    mModel->projectNode(mModel->index(a))->mDefaultChildTemplateId = b;
    QVERIFY(merge(u"a b"_s).isValid());
    QCOMPARE(mModel->collections().constFirst().mIds, QList<int>({a}));
    QCOMPARE(mModel->projectNode(mModel->index(a))->mDefaultChildTemplateId, -1);
}

void TstItemMerging::theSurvivorIsAnnounced()
{
    const QPersistentModelIndex a = addText(u"a"_s, u"x"_s);
    addText(u"b"_s, u"y"_s);
    QSignalSpy snapshots(mModel.get(), &TVLProjectModel::snapshotsChanged);
    QSignalSpy data(mModel.get(), &QAbstractItemModel::dataChanged);
    QCOMPARE(merge(u"a b"_s), QModelIndex(a));
    QCOMPARE(snapshots.size(), 1);
    QCOMPARE(snapshots.constFirst().constFirst().toModelIndex(), QModelIndex(a));
    QCOMPARE(data.constLast().constFirst().toModelIndex(), QModelIndex(a));
}

TVL_TEST(TstItemMerging)
#include "tst_itemmerging.moc"
