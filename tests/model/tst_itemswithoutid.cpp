#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QByteArray SystemFolders = "<BinderItem %1 Type='DraftFolder'><Title>Draft</Title><Children>"
                                 "<BinderItem %2 Type='Text'><Title>100%%2</Title></BinderItem>"
                                 "<BinderItem %3 Type='Image'/></Children></BinderItem>"
                                 "<BinderItem %4 Type='ResearchFolder'/>"
                                 "<BinderItem %5 Type='TrashFolder'/>";

/** Writes a project in which items have uuids, and ids where these are given. */
void writeProjectOf(const TestProject &project, const QByteArray &version,
                    const QByteArray &formatVersion, const QList<int> &ids)
{
    QByteArray items = SystemFolders;
    for (int i = 0; i < ids.size(); ++i) {
        QByteArray attributes = "UUID='" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces)
            + "' Created='2026-03-01 08:30:00 +0000' Modified='2026-03-01 08:30:00 +0000'";
        if (ids.at(i) >= 0)
            attributes += " ID='" + QByteArray::number(ids.at(i)) + '\'';
        items.replace(items.indexOf(" %" + QByteArray::number(i + 1)) + 1, 2, attributes);
    }
    items.replace("%%", "%");
    project.writeFile(u"Novel.tavelx"_s, binderXml(items, {}, version));
    project.writeFile(u"Files/version.txt"_s, formatVersion);
}

void writeLaterProject(const TestProject &project)
{
    writeProjectOf(project, "2.0", "23", {-1, -1, -1, -1, -1});
}

/** What a project's folder of documents has that no item with an id can have put there. */
QStringList strayFiles(const TestProject &project)
{
    return QDir(project.path(u"Files/Docs"_s)).entryList({u"-1*"_s});
}

QImage someImage()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

/** Items that have a uuid alone have no files here, and no place for their words. */
class TstItemsWithoutId : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openingTellsOfThemOnce_data();
    void openingTellsOfThemOnce();
    void theirTextsAreReadOnlyAndNeverWritten();
    void theirTextsAreNotJoined();
    void anImageWithoutAPlaceIsRefused();
    void thereIsNoSnapshotOfThem();
    void clearingAnIdWritesWhatIsUnsaved();
    void anItemThatCannotBeWrittenKeepsItsId();
    void anIdBringsWordsToAFile();
};

void TstItemsWithoutId::openingTellsOfThemOnce_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("formatVersion");
    QTest::addColumn<QList<int>>("ids");
    QTest::addColumn<int>("count");
    QTest::newRow("format 23") << QByteArray("2.0") << QByteArray("23")
                               << QList<int>{-1, -1, -1, -1, -1} << 2;
    QTest::newRow("one of format 18")
        << QByteArray("1.5") << QByteArray("18") << QList<int>{0, -1, 3, 1, 2} << 1;
    QTest::newRow("a system folder, which has no text")
        << QByteArray("1.5") << QByteArray("18") << QList<int>{0, 4, 3, 1, -1} << 0;
    QTest::newRow("none") << QByteArray("1.5") << QByteArray("18") << QList<int>{0, 4, 3, 1, 2}
                          << 0;
}

void TstItemsWithoutId::openingTellsOfThemOnce()
{
    QFETCH(const QByteArray, version);
    QFETCH(const QByteArray, formatVersion);
    QFETCH(const QList<int>, ids);
    QFETCH(const int, count);
    const TestProject project;
    writeProjectOf(project, version, formatVersion, ids);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    QVERIFY(model);
    QStringList texts;
    for (const auto &box : boxes.takeBoxes())
        texts.append(box.title + u": "_s + box.text);
    QStringList expected;
    if (count > 0)
        expected.append(u"Project Loader: Errors reading project.\nError: Items without an id have "
                        "no place for their texts, which can't be read or edited. There are %1, "
                        "the first of them is '100%2'."_s.arg(count));
    QCOMPARE(texts, expected);
    for (const QModelIndex &index : recursiveWalk(model.get(), QModelIndex()))
        (void)model->synopsis(index);
    QVERIFY(boxes.boxes().isEmpty());
}

void TstItemsWithoutId::theirTextsAreReadOnlyAndNeverWritten()
{
    const TestProject project;
    writeLaterProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const QModelIndex index = firstText(model.get());
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText}) {
        typeText(model.get(), index, u"words"_s, type);
        QVERIFY(model->isReadOnly(index, type));
    }
    TVLProjectNode *node = model->projectNode(index);
    QVERIFY(!node->mTextDocument->isDirty());
    QVERIFY(model->save(true));
    QVERIFY(model->saveDocuments(node, false, nullptr));
    QCOMPARE(strayFiles(project), QStringList());

    QString error;
    QVERIFY(!Format::writeDocument(project.path(), node, node->mTextDocument, &error));
    QCOMPARE(error, u"The item has no id"_s);
    QCOMPARE(strayFiles(project), QStringList());
}

void TstItemsWithoutId::theirTextsAreNotJoined()
{
    const auto model = emptyModel(TVL::FormatVersion23);
    const QModelIndex a = addItem(model.get(), QModelIndex(), TVL::Text);
    const QModelIndex b = addItem(model.get(), QModelIndex(), TVL::Text);
    QVERIFY(!model->mergeIndexes({a, b}).isValid());
    QCOMPARE(model->rowCount(), 2);
}

void TstItemsWithoutId::anImageWithoutAPlaceIsRefused()
{
    const TestProject project;
    writeLaterProject(project);
    const TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    const int before = model->totalNodesCount();
    const QModelIndex research = model->researchFolder();
    QVERIFY(!model->insertImageNode(-1, research, u"Map"_s, someImage(), u"card"_s, {}).isValid());
    QCOMPARE(model->totalNodesCount(), before);
    QVERIFY(model->insertImageNode(-1, research, u"Map"_s, QImage(), {}, {}).isValid());

    project.writeFile(u"other.png"_s, "x");
    QVERIFY(!Format::writeImageFile(project.path(), -1, u"png"_s, someImage()));
    QVERIFY(!Format::setIndexCardImage(project.path(), -1, u"png"_s, someImage()));
    QVERIFY(
        !Format::importProjectFile(project.path(), QFileInfo(project.path(u"other.png"_s)), -1));
    QVERIFY(!Format::copyFile(project.path(), -1, u"png"_s, project.path(u"other.png"_s)));
    QCOMPARE(strayFiles(project), QStringList());
}

void TstItemsWithoutId::thereIsNoSnapshotOfThem()
{
    const TestProject project;
    writeLaterProject(project);
    TVLUnattendedMessageBoxes boxes;
    const auto model = project.open();
    (void)boxes.takeBoxes();
    QVERIFY(!model->addSnapshot(firstText(model.get()), u"First"_s));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, u"Snapshot Writer"_s);
    QCOMPARE(boxes.boxes().at(0).text,
             u"'100%2' has no id, so there is no place for a snapshot of it."_s);
    QVERIFY(!QFileInfo::exists(project.path(u"Snapshots/-1.snapshots"_s)));
}

void TstItemsWithoutId::clearingAnIdWritesWhatIsUnsaved()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    for (const TVL::DocumentType type : {TVL::MainText, TVL::NotesText, TVL::SynopsisText})
        typeText(model.get(), index, u"words"_s, type);
    model->clearIndexId(index);
    QCOMPARE(model->nodeIdentity(index), -1);
    for (const QString &name : {u"3.rtf"_s, u"3_notes.rtf"_s, u"3_synopsis.txt"_s})
        QVERIFY(project.readFile(u"Files/Docs/"_s + name).contains("words"));
    QCOMPARE(model->documentPlainText(index, false), u"words"_s);
    QVERIFY(model->isReadOnly(index, TVL::MainText));
    typeText(model.get(), index, u"more "_s);
    QVERIFY(model->save(true));
    QVERIFY(!project.readFile(u"Files/Docs/3.rtf"_s).contains("more"));
    QCOMPARE(strayFiles(project), QStringList());
}

void TstItemsWithoutId::anItemThatCannotBeWrittenKeepsItsId()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    typeText(model.get(), index, u"words"_s);
    project.writeFile(u"Files/Docs/3.rtf/obstacle"_s, "x");
    model->clearIndexId(index);
    QCOMPARE(model->nodeIdentity(index), 3);
    QCOMPARE(mapsOutOfStep(model.get()), QString());
    QVERIFY(model->projectNode(index)->mTextDocument->isDirty());
    QVERIFY(QDir(project.path(u"Files/Docs/3.rtf"_s)).removeRecursively());
    QVERIFY(model->save(true));
    QVERIFY(project.readFile(u"Files/Docs/3.rtf"_s).contains("words"));
}

void TstItemsWithoutId::anIdBringsWordsToAFile()
{
    const TestProject project;
    const auto model = project.create();
    const QModelIndex index = firstText(model.get());
    QVERIFY(model->referenceNote(index)); // Held, so that a save doesn't let go of it.
    typeText(model.get(), index, u"saved"_s, TVL::NotesText);
    addItem(model.get(), model->draftFolder(), TVL::Text);
    QVERIFY(model->save());
    model->clearIndexId(index);
    typeText(model.get(), index, u"typed"_s);
    model->populateMissingIDs();
    const int id = model->nodeIdentity(index);
    QVERIFY(id > 3);
    QVERIFY(!model->isReadOnly(index, TVL::MainText));
    QVERIFY(model->save(true));
    QVERIFY(project.readFile(u"Files/Docs/%1.rtf"_s.arg(id)).contains("typed"));
    QVERIFY(project.readFile(u"Files/Docs/%1_notes.rtf"_s.arg(id)).contains("saved"));
}

TVL_TEST(TstItemsWithoutId)
#include "tst_itemswithoutid.moc"
