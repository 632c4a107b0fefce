#include "TVLDoors.h"
#include "TVLReplay.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLKeywordModel.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Files = QMap<QString, QByteArray>;

/** What a history makes that takes times, identities and chance. */
Files filesOfHistory(quint32 seed)
{
    TVLReplay replay(seed);
    replay.setStep(1000);
    const TestProject project;
    const auto model = project.create();
    const QModelIndex draft = model->draftFolder();
    model->insertRows(0, 5, draft);
    for (int i = 0; i < 3; ++i) {
        const QModelIndex index =
            model->index(int(tvlRandom(quint32(model->rowCount(draft)))), 0, draft);
        model->setTitle(index, QString::number(i));
        model->insertCollection(0, {index}, QString::number(i), QColor());
        model->keywordModel()->insertItem(0, QModelIndex(), QString::number(i));
        model->addSnapshot(index, u"snapshot"_s);
    }
    QModelIndexList items;
    for (int row = 0; row < model->rowCount(draft); ++row)
        items.append(model->index(row, 0, draft));
    model->insertCollection(0, model->shuffle(items), u"shuffled"_s, QColor());
    if (!model->save(true))
        return {};
    Files files = project.files();
    // The zipped copies tell when their files were written.
    files.removeIf([](const Files::iterator &file) { return file.key().endsWith(u".zip"); });
    return files;
}

} // namespace

/** Histories of a project that are repeated. */
class TstReplays : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRepeatedHistoryWritesTheSameFiles();
    void anotherSeedWritesOtherFiles();
    void aNewItemIsOfTheReplayedTime();
};

void TstReplays::aRepeatedHistoryWritesTheSameFiles()
{
    const Files files = filesOfHistory(7);
    QVERIFY(!files.isEmpty());
    const Files again = filesOfHistory(7);
    QCOMPARE(again.keys(), files.keys());
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        QVERIFY2(again.value(file.key()) == file.value(), qPrintable(file.key()));
}

void TstReplays::anotherSeedWritesOtherFiles()
{
    QVERIFY(filesOfHistory(7) != filesOfHistory(8));
}

void TstReplays::aNewItemIsOfTheReplayedTime()
{
    const QDateTime time(QDate(2001, 2, 3), QTime(4, 5, 6));
    const TVLReplay replay(1, time);
    const TestProject project;
    const auto model = project.create();
    model->insertRows(0, 1, model->draftFolder());
    const QModelIndex index = model->index(0, 0, model->draftFolder());
    QCOMPARE(model->created(index), time);
    QCOMPARE(model->lastModified(index), time);
}

TVL_TEST(TstReplays)
#include "tst_replays.moc"
