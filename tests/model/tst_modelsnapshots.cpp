#include "DocumentComparison.h"
#include "ModelChecks.h"
#include "RandomDocument.h"
#include "TVLProjectFolderFormat.h"
#include "TVLSnapshotInfo.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"
#include "TVLTextFormat.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

/** A project on disk whose first text says something, with its signals written down. */
class Fixture
{
public:
    Fixture()
        : mModel(mProject.create())
        , mIndex(firstText(mModel.get()))
    {
        typeText(mModel.get(), mIndex, u"first words"_s);
        QObject::connect(mModel.get(), &TVLProjectModel::snapshotsChanged, &mContext,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             log(u"snapshots"_s, first, last);
                         });
        QObject::connect(mModel.get(), &TVLProjectModel::dataChanged, &mContext,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             log(u"data"_s, first, last);
                         });
    }

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    [[nodiscard]] const TestProject &project() const { return mProject; }
    [[nodiscard]] QModelIndex index() const { return mIndex; }
    [[nodiscard]] TVLProjectNode *node() const { return mModel->projectNode(mIndex); }
    [[nodiscard]] QString text() const { return mModel->documentPlainText(mIndex, false); }
    [[nodiscard]] QString folder() const { return u"Snapshots/%1.snapshots"_s.arg(node()->mId); }
    [[nodiscard]] QString fileOf(const TVLSnapshotInfo &info) const
    {
        return folder() + u'/' + Format::dateTimeToString(info.mDate, true) + u".rtf"_s;
    }
    [[nodiscard]] int references() const { return node()->mTextDocument->referenceCount(); }

    /** The signals since the last call. */
    [[nodiscard]] QStringList takeSignals() { return std::exchange(mSignals, {}); }

    /** Replaces the main text as an editor would. */
    void retype(const QString &text) const
    {
        TVLTextDocument *document = mModel->referenceText(mIndex);
        QTextCursor cursor(document);
        cursor.select(QTextCursor::Document);
        cursor.insertText(text);
        mModel->dereferenceItem(document);
    }

private:
    void log(const QString &what, const QModelIndex &first, const QModelIndex &last)
    {
        mSignals.append(u"%1 %2-%3"_s.arg(what)
                            .arg(mModel->nodeIdentity(first))
                            .arg(mModel->nodeIdentity(last)));
    }

    TestProject mProject;
    TestModel mModel;
    QModelIndex mIndex;
    QStringList mSignals;
    QObject mContext;
};

TVLSnapshotInfo snapshotOf(const QString &title, int second)
{
    TVLSnapshotInfo info;
    info.mTitle = title;
    info.mDate = QDateTime(QDate(2026, 3, 1), QTime(8, 30), Qt::UTC).addSecs(second).toLocalTime();
    return info;
}

QStringList takenTitles(const Fixture &fixture)
{
    QStringList titles;
    const QList<TVLSnapshotInfo> snapshots = fixture.model()->snapshots(fixture.index());
    for (const TVLSnapshotInfo &info : snapshots)
        titles.append(info.mTitle);
    return titles;
}

QStringList changeSignals(const Fixture &fixture)
{
    const QString ids = u"%1-%1"_s.arg(fixture.node()->mId);
    return {u"snapshots "_s + ids, u"data "_s + ids};
}

QStringList dataSignal(const Fixture &fixture)
{
    return changeSignals(fixture).mid(1);
}

} // namespace

class TstModelSnapshots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Making
    void aSnapshotOfTheTextIsMade();
    void aSnapshotNeedNotBeSavedFirst();
    void aTitleGetsThePresentTime();
    void aFolderHasSnapshotsToo();
    void aFailureIsShownAndKeepsTheReference();
    void aDamagedIndexIsShownAndNotTouched();
    void aGivenDocumentIsTaken_data();
    void aGivenDocumentIsTaken();
    void aGivenDocumentIsTakenForAnyItem();
    void aGivenDocumentFailsWithoutABox();
    void thereIsNoSnapshotOfWhatCouldNotBeRead_data();
    void thereIsNoSnapshotOfWhatCouldNotBeRead();

    // What has none
    void otherItemsAreRefused_data();
    void otherItemsAreRefused();
    void indexesOfAnotherModelAreRefused();
    void anItemWithoutSnapshotsHasAnEmptyList();

    // Reading
    void aSnapshotIsReadIntoADocumentOfTheCaller();
    void linksOfAnOldSnapshotLeadToUuids();
    void aSnapshotIsPutInPlaceOfTheText();
    void aRestoredTextIsSaved();
    void restoringCanBeUndoneInOneStep();
    void aRestoredTextIsAsItWas_data();
    void aRestoredTextIsAsItWas();
    void anEmptySnapshotEmptiesTheText();
    void theNextEditForgetsWhatWasRestored();
    void aSnapshotThatCannotBeReadLeavesTheTextAlone_data();
    void aSnapshotThatCannotBeReadLeavesTheTextAlone();
    void aTextThatCannotBeSavedIsNotReplaced();

    // Changing
    void aTitleIsSet();
    void aTitleOfNoSnapshotIsAFailure();
    void aSnapshotIsRemoved();
    void removingTheLastOneShows();
    void removingWhatIsNotThereIsAFailure();

    // Others
    void anItemThatTakesAnIdHasNoSnapshots();
    void snapshotsSurviveReopening();
};

void TstModelSnapshots::aSnapshotOfTheTextIsMade()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(!fixture.node()->mHasSnapshots);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    QVERIFY(fixture.node()->mHasSnapshots);
    QCOMPARE(fixture.takeSignals(), changeSignals(fixture));
    QCOMPARE(fixture.references(), 0);
    QCOMPARE(fixture.model()->snapshots(fixture.index()), QList<TVLSnapshotInfo>{info});
    QVERIFY(fixture.project().readFile(fixture.fileOf(info)).contains("first words"));
}

void TstModelSnapshots::aSnapshotNeedNotBeSavedFirst()
{
    Fixture fixture;
    fixture.model()->save();
    fixture.retype(u"unsaved words"_s);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"First"_s, 0)));
    // Making a snapshot changes nothing about the text.
    QVERIFY(!fixture.node()->mTextDocument->isSaved());
    fixture.retype(u"later words"_s);
    QTextDocument document;
    QVERIFY(fixture.model()->loadSnapshot(fixture.index(), snapshotOf(u"First"_s, 0), &document));
    QCOMPARE(document.toPlainText(), u"unsaved words"_s);
}

void TstModelSnapshots::aTitleGetsThePresentTime()
{
    Fixture fixture;
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), u"Now <&>"_s));
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    const QList<TVLSnapshotInfo> infos = fixture.model()->snapshots(fixture.index());
    QCOMPARE(infos.size(), 1);
    QCOMPARE(infos.constFirst().mTitle, u"Now <&>"_s);
    QCOMPARE(infos.constFirst().mDate.timeSpec(), Qt::LocalTime);
    QVERIFY(infos.constFirst().mDate.toSecsSinceEpoch() >= before);
    QVERIFY(infos.constFirst().mDate.toSecsSinceEpoch() <= after);
}

void TstModelSnapshots::aFolderHasSnapshotsToo()
{
    Fixture fixture;
    const QModelIndex folder =
        addItem(fixture.model(), fixture.model()->draftFolder(), TVL::Folder);
    typeText(fixture.model(), folder, u"about the part"_s);
    QVERIFY(fixture.model()->addSnapshot(folder, snapshotOf(u"First"_s, 0)));
    QCOMPARE(fixture.model()->snapshots(folder).size(), 1);
    QVERIFY(fixture.model()->snapshots(fixture.index()).isEmpty());
}

void TstModelSnapshots::aFailureIsShownAndKeepsTheReference()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    (void)fixture.takeSignals();
    const QMap<QString, QByteArray> before = fixture.project().files();
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(!fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"Second"_s, 0)));
    QCOMPARE(boxes.boxes().size(), 1);
    const TVLUnattendedMessageBoxes::Box box = boxes.boxes().constFirst();
    QCOMPARE(box.title, u"Snapshot Writer"_s);
    QCOMPARE(box.text,
             u"Snapshot file already exists. Will not overwrite snapshot file: '%1'"_s.arg(
                 fixture.project().path(fixture.fileOf(info))));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.standardButtons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(fixture.takeSignals(), QStringList());
    QCOMPARE(fixture.project().files(), before);
    // Kept as it stands: nothing gives the reference back.
    QCOMPARE(fixture.references(), 1);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"Third"_s, 1)));
    QCOMPARE(fixture.references(), 1);
}

void TstModelSnapshots::aDamagedIndexIsShownAndNotTouched()
{
    Fixture fixture;
    const QString index = fixture.folder() + u"/index.xml"_s;
    fixture.project().writeFile(index, "<Snapshots>");
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(!fixture.model()->addSnapshot(fixture.index(), u"First"_s));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(
        boxes.boxes().constFirst().text,
        u"Could not read the index of the snapshots: '%1'"_s.arg(fixture.project().path(index)));
    QCOMPARE(fixture.project().readFile(index), "<Snapshots>");
    QVERIFY(fixture.model()->snapshots(fixture.index()).isEmpty());
    QVERIFY(!fixture.node()->mHasSnapshots);
}

void TstModelSnapshots::aGivenDocumentIsTaken_data()
{
    QTest::addColumn<bool>("isExternal");
    QTest::newRow("document") << false;
    QTest::newRow("external document") << true;
}

void TstModelSnapshots::aGivenDocumentIsTaken()
{
    QFETCH(const bool, isExternal);
    Fixture fixture;
    QTextDocument document;
    document.setPlainText(u"words from elsewhere"_s);
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QString error;
    QVERIFY(isExternal ? fixture.model()->addSnapshotWithExternalDocument(fixture.index(), info,
                                                                          &document, &error)
                       : fixture.model()->addSnapshotWithDocument(fixture.index(), info, &document,
                                                                  &error));
    QCOMPARE(error, QString());
    QCOMPARE(fixture.takeSignals(), changeSignals(fixture));
    QVERIFY(fixture.node()->mHasSnapshots);
    QVERIFY(fixture.project().readFile(fixture.fileOf(info)).contains("words from elsewhere"));
    QCOMPARE(fixture.text(), u"first words"_s);
    QCOMPARE(fixture.references(), 0);
}

void TstModelSnapshots::aGivenDocumentIsTakenForAnyItem()
{
    Fixture fixture;
    const QModelIndex image =
        addItem(fixture.model(), fixture.model()->researchFolder(), TVL::Image);
    const QTextDocument document;
    QVERIFY(fixture.model()->addSnapshotWithDocument(image, snapshotOf(u"First"_s, 0), &document,
                                                     nullptr));
    QVERIFY(fixture.model()->projectNode(image)->mHasSnapshots);
    QVERIFY(!fixture.model()->addSnapshotWithDocument(QModelIndex(), snapshotOf(u"First"_s, 0),
                                                      &document, nullptr));
    QVERIFY(!fixture.model()->addSnapshotWithDocument(
        fixture.model()->rootIndex(), snapshotOf(u"First"_s, 0), &document, nullptr));
}

void TstModelSnapshots::aGivenDocumentFailsWithoutABox()
{
    Fixture fixture;
    TVLUnattendedMessageBoxes boxes;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QString error;
    QVERIFY(!fixture.model()->addSnapshotWithDocument(fixture.index(), info, nullptr, &error));
    QVERIFY(!fixture.node()->mHasSnapshots);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    (void)fixture.takeSignals();
    QTextDocument document;
    QVERIFY(!fixture.model()->addSnapshotWithExternalDocument(fixture.index(), info, &document,
                                                              &error));
    QVERIFY(error.startsWith(u"Snapshot file already exists."_s));
    QVERIFY(boxes.boxes().isEmpty());
    QCOMPARE(fixture.takeSignals(), QStringList());
}

void TstModelSnapshots::thereIsNoSnapshotOfWhatCouldNotBeRead_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("damagedFile");
    QTest::addColumn<QString>("error");
    QTest::newRow("a text") << u"Chapter %1"_s << u"3.rtf"_s
                            << u"The text of 'Chapter %1' could not be read, so there is no "
                               "snapshot of it."_s;
    QTest::newRow("a text without title")
        << QString() << u"3.rtf"_s
        << u"The text of 'Untitled' could not be read, so there is no snapshot of it."_s;
    QTest::newRow("comments") << u"Chapter"_s << u"3.comments"_s
                              << u"The comments of 'Chapter' could not be read, so there is no "
                                 "snapshot of it."_s;
}

void TstModelSnapshots::thereIsNoSnapshotOfWhatCouldNotBeRead()
{
    QFETCH(const QString, title);
    QFETCH(const QString, damagedFile);
    QFETCH(const QString, error);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->setTitle(index, title));
    project.writeFile(u"Files/Docs/"_s + damagedFile, "damaged");
    TVLUnattendedMessageBoxes boxes;
    TVLTextDocument *text = model->referenceText(index);
    QCOMPARE(boxes.takeBoxes().size(), 1);
    const SignalLog log(model.get());
    QVERIFY(!model->addSnapshot(index, u"First"_s));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, u"Snapshot Writer"_s);
    QCOMPARE(boxes.boxes().at(0).text, error);
    QString told;
    QVERIFY(!model->addSnapshotWithDocument(index, snapshotOf({}, 0), text, &told));
    QCOMPARE(told, error);
    QVERIFY(!model->addSnapshotWithExternalDocument(index, snapshotOf({}, 0), text, nullptr));
    QCOMPARE(model->snapshots(index), QList<TVLSnapshotInfo>());
    QVERIFY(!model->hasSnapshots(index));
    QVERIFY(!QFileInfo::exists(project.path(u"Snapshots/3.snapshots"_s)));
    QCOMPARE(log.lines(), QStringList());

    // A text that the caller has made is one that was read.
    const QTextDocument own(u"words"_s);
    QVERIFY(model->addSnapshotWithExternalDocument(index, snapshotOf({}, 0), &own, nullptr));
}

void TstModelSnapshots::otherItemsAreRefused_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("no item") << -1;
    QTest::newRow("Draft") << int(TVL::DraftFolder);
    QTest::newRow("Trash") << int(TVL::TrashFolder);
    QTest::newRow("image") << int(TVL::Image);
    QTest::newRow("PDF") << int(TVL::PDF);
    QTest::newRow("web page") << int(TVL::WebArchive);
}

void TstModelSnapshots::otherItemsAreRefused()
{
    QFETCH(const int, type);
    Fixture fixture;
    TVLProjectModel *model = fixture.model();
    const QModelIndex index = type < 0 ? QModelIndex()
        : type <= TVL::TrashFolder     ? model->findSystemFolder(TVL::NodeType(type))
                                   : addItem(model, model->researchFolder(), TVL::NodeType(type));
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    if (index.isValid()) {
        const QTextDocument document;
        QVERIFY(model->addSnapshotWithDocument(index, info, &document, nullptr));
    }
    model->save();
    (void)fixture.takeSignals();
    const QMap<QString, QByteArray> before = fixture.project().files();
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(model->snapshots(index).isEmpty());
    QVERIFY(!model->addSnapshot(index, snapshotOf(u"Second"_s, 1)));
    QVERIFY(!model->addSnapshot(index, u"Second"_s));
    QTextDocument document;
    QVERIFY(!model->loadSnapshot(index, info, &document));
    QVERIFY(!model->loadSnapshotIntoMainText(index, info));
    QVERIFY(!model->setSnapshotTitle(index, info.mDate, u"Other"_s));
    QVERIFY(!model->removeSnapshot(index, info));
    QVERIFY(boxes.boxes().isEmpty());
    QCOMPARE(fixture.takeSignals(), QStringList());
    QCOMPARE(fixture.project().files(), before);
}

void TstModelSnapshots::indexesOfAnotherModelAreRefused()
{
    Fixture fixture;
    const auto other = blankModel();
    const QModelIndex index = firstText(other.get());
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QTextDocument document;
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(fixture.model()->snapshots(index).isEmpty());
    QVERIFY(!fixture.model()->addSnapshot(index, info));
    QVERIFY(!fixture.model()->addSnapshotWithDocument(index, info, &document, nullptr));
    QVERIFY(!fixture.model()->loadSnapshot(index, info, &document));
    QVERIFY(!fixture.model()->loadSnapshotIntoMainText(index, info));
    QVERIFY(!fixture.model()->setSnapshotTitle(index, info.mDate, u"Other"_s));
    QVERIFY(!fixture.model()->removeSnapshot(index, info));
    QVERIFY(boxes.boxes().isEmpty());
}

void TstModelSnapshots::anItemWithoutSnapshotsHasAnEmptyList()
{
    Fixture fixture;
    QCOMPARE(takenTitles(fixture), QStringList());
    QVERIFY(!QFileInfo::exists(fixture.project().path(fixture.folder())));
}

void TstModelSnapshots::aSnapshotIsReadIntoADocumentOfTheCaller()
{
    Fixture fixture;
    fixture.retype(u"first\nsecond"_s);
    TVLTextCommentLink comment(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(),
                               "{\\rtf1 remark}");
    QVERIFY(fixture.model()->setInspectorNote(fixture.index(), {0, 5}, comment));
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"First"_s, 0)));
    fixture.retype(u"later"_s);
    (void)fixture.takeSignals();
    const TVLSnapshotInfo info = fixture.model()->snapshots(fixture.index()).constFirst();
    QTextDocument document;
    document.setPlainText(u"what was there"_s);
    QVERIFY(fixture.model()->loadSnapshot(fixture.index(), info, &document));
    QCOMPARE(document.toPlainText(), u"first\nsecond"_s);
    QCOMPARE(TVLTextDoc::inspectorNotesToPlainText(&document), QStringList{u"remark"_s});
    QCOMPARE(fixture.text(), u"later"_s);
    QCOMPARE(fixture.takeSignals(), QStringList());
    QVERIFY(!fixture.model()->loadSnapshot(fixture.index(), info, nullptr));
    QVERIFY(!fixture.model()->loadSnapshot(fixture.index(), snapshotOf(u"First"_s, 1), &document));
}

void TstModelSnapshots::linksOfAnOldSnapshotLeadToUuids()
{
    Fixture fixture;
    const int id = fixture.node()->mId;
    const QByteArray link = "<LinkID Range=\"0,5\">" + QByteArray::number(id) + "</LinkID>";
    fixture.project().writeFile(
        fixture.folder() + u"/index.xml"_s,
        "<Snapshots Version=\"1.0\"><Snapshot><Title>Old</Title>"
        "<Date>2026-03-01 08:30:00 +0000</Date><Links><TavelinorLinks><TextLinks>"
            + link + "</TextLinks></TavelinorLinks></Links></Snapshot></Snapshots>");
    const TVLSnapshotInfo info = fixture.model()->snapshots(fixture.index()).constFirst();
    fixture.project().writeFile(fixture.fileOf(info), "{\\rtf1 first second}");
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(fixture.text(), u"first second"_s);
    QCOMPARE(TVLTextDoc::internalLinks(fixture.node()->mTextDocument),
             (QMap<TVLTextRange, QString>{
                 {{0, 5}, TVLTextFormat::internalLinkAddress(fixture.node()->mUuid)}}));
}

void TstModelSnapshots::aSnapshotIsPutInPlaceOfTheText()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"words that came later\nand more of them"_s);
    QSignalSpy edits(fixture.model(), &TVLProjectModel::documentContentsChanged);
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(fixture.text(), u"first words"_s);
    QCOMPARE(fixture.node()->mRestoredSnapshotDate, info.mDate);
    QCOMPARE(edits.size(), 1);
    QCOMPARE(fixture.references(), 0);
    QVERIFY(fixture.model()->isModified());
    QVERIFY(!fixture.node()->mTextDocument->isSaved());
    QCOMPARE(fixture.model()->snapshots(fixture.index()), QList<TVLSnapshotInfo>{info});
}

void TstModelSnapshots::aRestoredTextIsSaved()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"later"_s);
    QVERIFY(fixture.model()->save());
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QVERIFY(fixture.model()->save());
    const auto reopened = fixture.project().open();
    QCOMPARE(reopened->documentPlainText(firstText(reopened.get()), false), u"first words"_s);
}

void TstModelSnapshots::restoringCanBeUndoneInOneStep()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"words that came later\nand more of them"_s);
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    fixture.node()->mTextDocument->undo();
    QCOMPARE(fixture.text(), u"words that came later\nand more of them"_s);
    fixture.node()->mTextDocument->redo();
    QCOMPARE(fixture.text(), u"first words"_s);
}

void TstModelSnapshots::aRestoredTextIsAsItWas_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < 30; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TstModelSnapshots::aRestoredTextIsAsItWas()
{
    QFETCH(const int, seed);
    Fixture fixture;
    QRandomGenerator random(quint32(seed) + 1);
    const auto document = makeRandomDocument(&random);
    const auto other = makeRandomDocument(&random);
    QVERIFY(fixture.model()->addSnapshotWithDocument(fixture.index(), snapshotOf(u"First"_s, 0),
                                                     document.get(), nullptr));
    QVERIFY(fixture.model()->overwriteText(fixture.index(), other.get()));
    const TVLSnapshotInfo info = fixture.model()->snapshots(fixture.index()).constFirst();
    QTextDocument read;
    QVERIFY(fixture.model()->loadSnapshot(fixture.index(), info, &read));
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(differenceOfDocuments(*fixture.node()->mTextDocument, read), QString());
}

void TstModelSnapshots::anEmptySnapshotEmptiesTheText()
{
    Fixture fixture;
    fixture.retype(QString());
    const TVLSnapshotInfo info = snapshotOf(u"Empty"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"later"_s);
    QTextCursor cursor(fixture.node()->mTextDocument);
    cursor.createList(QTextListFormat::ListDisc);
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QVERIFY(fixture.node()->mTextDocument->isEmpty());
    QVERIFY(!fixture.node()->mTextDocument->firstBlock().textList());
    QCOMPARE(fixture.node()->mRestoredSnapshotDate, info.mDate);
}

void TstModelSnapshots::theNextEditForgetsWhatWasRestored()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    QVERIFY(fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(fixture.node()->mRestoredSnapshotDate, info.mDate);
    typeText(fixture.model(), fixture.index(), u"more "_s);
    QVERIFY(!fixture.node()->mRestoredSnapshotDate.isValid());
}

void TstModelSnapshots::aSnapshotThatCannotBeReadLeavesTheTextAlone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no RTF") << QByteArray("text");
    QTest::newRow("cut off") << QByteArray("{\\rtf1 first wo");
    QTest::newRow("text behind the end") << QByteArray("{\\rtf1 first} words");
}

void TstModelSnapshots::aSnapshotThatCannotBeReadLeavesTheTextAlone()
{
    QFETCH(const QByteArray, content);
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"later"_s);
    QVERIFY(fixture.model()->save());
    if (content.isEmpty())
        QVERIFY(QFile::remove(fixture.project().path(fixture.fileOf(info))));
    else
        fixture.project().writeFile(fixture.fileOf(info), content);
    (void)fixture.takeSignals();
    QVERIFY(!fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(fixture.text(), u"later"_s);
    QVERIFY(!fixture.node()->mRestoredSnapshotDate.isValid());
    QVERIFY(fixture.model()->isSaved());
    QCOMPARE(fixture.references(), 0);
    QCOMPARE(fixture.takeSignals(), QStringList());
}

void TstModelSnapshots::aTextThatCannotBeSavedIsNotReplaced()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.retype(u"later"_s);
    fixture.node()->mTextDocument->setReadOnly(true);
    QVERIFY(!fixture.model()->loadSnapshotIntoMainText(fixture.index(), info));
    QCOMPARE(fixture.text(), u"later"_s);
}

void TstModelSnapshots::aTitleIsSet()
{
    Fixture fixture;
    for (const int second : {0, 1})
        QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"Same"_s, second)));
    (void)fixture.takeSignals();
    QVERIFY(fixture.model()->setSnapshotTitle(fixture.index(),
                                              snapshotOf({}, 1).mDate.addMSecs(500), u"Other"_s));
    QCOMPARE(takenTitles(fixture), (QStringList{u"Same"_s, u"Other"_s}));
    QCOMPARE(fixture.takeSignals(), changeSignals(fixture));
}

void TstModelSnapshots::aTitleOfNoSnapshotIsAFailure()
{
    Fixture fixture;
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"First"_s, 0)));
    (void)fixture.takeSignals();
    QVERIFY(
        !fixture.model()->setSnapshotTitle(fixture.index(), snapshotOf({}, 1).mDate, u"Other"_s));
    QCOMPARE(takenTitles(fixture), QStringList{u"First"_s});
    QCOMPARE(fixture.takeSignals(), QStringList());
}

void TstModelSnapshots::aSnapshotIsRemoved()
{
    Fixture fixture;
    for (const int second : {0, 1})
        QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"Same"_s, second)));
    (void)fixture.takeSignals();
    QVERIFY(fixture.model()->removeSnapshot(fixture.index(), snapshotOf(u"Same"_s, 0)));
    QCOMPARE(fixture.model()->snapshots(fixture.index()),
             QList<TVLSnapshotInfo>{snapshotOf(u"Same"_s, 1)});
    QVERIFY(fixture.node()->mHasSnapshots);
    // Kept as it stands: not told as a change of the snapshots.
    QCOMPARE(fixture.takeSignals(), dataSignal(fixture));
}

void TstModelSnapshots::removingTheLastOneShows()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    (void)fixture.takeSignals();
    QVERIFY(fixture.model()->removeSnapshot(fixture.index(), info));
    QVERIFY(!fixture.node()->mHasSnapshots);
    QVERIFY(!Format::hasSnapshots(fixture.project().path(), fixture.node()->mId));
    QVERIFY(!QFileInfo::exists(fixture.project().path(fixture.folder())));
    QCOMPARE(fixture.takeSignals(), dataSignal(fixture));
}

void TstModelSnapshots::removingWhatIsNotThereIsAFailure()
{
    Fixture fixture;
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), snapshotOf(u"First"_s, 0)));
    (void)fixture.takeSignals();
    QVERIFY(!fixture.model()->removeSnapshot(fixture.index(), snapshotOf(u"Other"_s, 0)));
    QVERIFY(!fixture.model()->removeSnapshot(fixture.index(), snapshotOf(u"First"_s, 1)));
    QVERIFY(fixture.node()->mHasSnapshots);
    QCOMPARE(fixture.takeSignals(), QStringList());
}

void TstModelSnapshots::anItemThatTakesAnIdHasNoSnapshots()
{
    Fixture fixture;
    TVLProjectModel *model = fixture.model();
    const QModelIndex doomed = addItem(model, model->draftFolder(), TVL::Text);
    const int id = model->nodeIdentity(doomed);
    QVERIFY(model->addSnapshot(doomed, snapshotOf(u"Of the old item"_s, 0)));
    QCOMPARE(model->snapshots(doomed).size(), 1);
    QVERIFY(model->removeIndex(doomed));
    const QModelIndex heir = addItem(model, model->draftFolder(), TVL::Text);
    QCOMPARE(model->nodeIdentity(heir), id);
    QVERIFY(model->snapshots(heir).isEmpty());
    QVERIFY(!Format::hasSnapshots(fixture.project().path(), id));
    QVERIFY(model->addSnapshot(heir, snapshotOf(u"Of the new item"_s, 0)));
    QCOMPARE(model->snapshots(heir).size(), 1);
}

void TstModelSnapshots::snapshotsSurviveReopening()
{
    Fixture fixture;
    const TVLSnapshotInfo info = snapshotOf(u"First"_s, 0);
    QVERIFY(fixture.model()->addSnapshot(fixture.index(), info));
    fixture.model()->saveAll(true);
    Format::clearSnapshotsCache(fixture.project().path());
    const auto reopened = fixture.project().open();
    const QModelIndex index = firstText(reopened.get());
    QVERIFY(reopened->projectNode(index)->mHasSnapshots);
    QCOMPARE(reopened->snapshots(index), QList<TVLSnapshotInfo>{info});
    QTextDocument document;
    QVERIFY(reopened->loadSnapshot(index, info, &document));
    QCOMPARE(document.toPlainText(), u"first words"_s);
}

TVL_TEST(TstModelSnapshots)
#include "tst_modelsnapshots.moc"
