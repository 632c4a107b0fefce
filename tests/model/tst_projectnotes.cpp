#include "ModelChecks.h"
#include "ModelTester.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"

#include <QPointer>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

class TstProjectNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutNotesTheFirstIsMadeOnDemand();
    void anUnknownNoteIsTheFirst();
    void aNoteIsAdded();
    void aNewNoteTakesTheLowestFreeId();
    void aNoteMayHaveNoTitle();
    void aNoteIsRenamed();
    void anEqualTitleChangesNothing();
    void anUnknownNoteIsNotRenamed();
    void aNoteIsMoved_data();
    void aNoteIsMoved();
    void aMoveOutOfRangeIsRefused_data();
    void aMoveOutOfRangeIsRefused();
    void aNoteIsRemoved();
    void removingAnUnknownNoteIsFine();
    void theLastNoteMayBeRemoved();
    void anEditedNoteMarksTheProject();
    void aSaveLeavesNoNoteModified();
};

void TstProjectNotes::withoutNotesTheFirstIsMadeOnDemand()
{
    const auto model = emptyModel();
    const SignalLog log(model.get());
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QVERIFY(model->projectNotes().isEmpty());
    QVERIFY(!model->hasProjectNoteId(10));
    QTextDocument *note = model->projectNote(10);
    QVERIFY(note);
    QCOMPARE(note->parent(), model.get());
    QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    QVERIFY(model->hasProjectNoteId(10));
    QCOMPARE(model->projectNoteTitle(10), u"General"_qs);
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QVERIFY(model->isSaved());
    QVERIFY(!model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList());
    QTextCursor(note).insertText(u"words"_qs);
    QVERIFY(model->isModified());
}

void TstProjectNotes::anUnknownNoteIsTheFirst()
{
    const auto model = blankModel();
    const int second = model->addProjectNote(u"Second"_qs);
    QCOMPARE(second, 11);
    QCOMPARE(model->projectNote(999), model->projectNote(10));
    QCOMPARE(model->projectNoteTitle(999), u"General"_qs);
    QVERIFY(model->projectNote(11) != model->projectNote(10));
    QVERIFY(!model->hasProjectNoteId(999));
    const auto empty = emptyModel();
    QVERIFY(empty->projectNote(999));
    QCOMPARE(empty->projectNoteIdentities(), QList<int>({10}));
}

void TstProjectNotes::aNoteIsAdded()
{
    const auto model = blankModel();
    const ModelTester tester(model.get());
    SignalLog log(model.get());
    connect(model.get(), &TVLProjectModel::projectNoteAboutToBeAdded, this,
            [&](int id) { QVERIFY(!model->hasProjectNoteId(id)); });
    connect(model.get(), &TVLProjectModel::projectNoteAdded, this,
            [&](int id) { QVERIFY(model->hasProjectNoteId(id)); });
    QCOMPARE(model->addProjectNote(u"Places"_qs), 11);
    QCOMPARE(log.lines(), QStringList({u"note 11 to come"_qs, u"modified"_qs, u"note 11 came"_qs}));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10, 11}));
    QCOMPARE(model->projectNoteTitle(11), u"Places"_qs);
    const QTextDocument *note = model->projectNote(11);
    QCOMPARE(note->parent(), model.get());
    QCOMPARE(note->defaultFont(), tvlOptions()->value(TVLOptions::DefaultFont));
    QVERIFY(note->isModified());
    QVERIFY(note->isEmpty());
    QVERIFY(model->projectNotes().isModified());
}

void TstProjectNotes::aNewNoteTakesTheLowestFreeId()
{
    const auto model = blankModel();
    QCOMPARE(model->addProjectNote(u"a"_qs), 11);
    QCOMPARE(model->addProjectNote(u"b"_qs), 12);
    QCOMPARE(model->addProjectNote(u"c"_qs), 13);
    QVERIFY(model->removeProjectNote(11, nullptr));
    QVERIFY(model->removeProjectNote(10, nullptr));
    QCOMPARE(model->addProjectNote(u"d"_qs), 10);
    QCOMPARE(model->addProjectNote(u"e"_qs), 11);
    QCOMPARE(model->addProjectNote(u"f"_qs), 14);
    QCOMPARE(model->projectNoteIdentities(), QList<int>({12, 13, 10, 11, 14}));
}

void TstProjectNotes::aNoteMayHaveNoTitle()
{
    const auto model = blankModel();
    QCOMPARE(model->addProjectNote(QString()), 11);
    QCOMPARE(model->projectNoteTitle(11), QString());
}

void TstProjectNotes::aNoteIsRenamed()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->renameProjectNote(10, u"Places"_qs));
    QCOMPARE(model->projectNoteTitle(10), u"Places"_qs);
    QVERIFY(model->projectNote(10)->isModified());
    QVERIFY(model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList({u"modified"_qs, u"note 10 renamed"_qs}));
}

void TstProjectNotes::anEqualTitleChangesNothing()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->renameProjectNote(10, u"General"_qs));
    QVERIFY(!model->projectNotes().isModified());
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::anUnknownNoteIsNotRenamed()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(!model->renameProjectNote(999, u"Places"_qs));
    QCOMPARE(model->projectNoteTitle(10), u"General"_qs);
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::aNoteIsMoved_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("to the end") << 0 << 2 << QList<int>({11, 12, 10});
    QTest::newRow("to the front") << 2 << 0 << QList<int>({12, 10, 11});
    QTest::newRow("one up") << 1 << 0 << QList<int>({11, 10, 12});
    QTest::newRow("one down") << 1 << 2 << QList<int>({10, 12, 11});
}

void TstProjectNotes::aNoteIsMoved()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const QList<int>, expected);
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_qs);
    model->addProjectNote(u"b"_qs);
    QVERIFY(model->save());
    QVERIFY(!model->projectNotes().isModified());
    const SignalLog log(model.get());
    QVERIFY(model->moveProjectNote(from, to));
    QCOMPARE(model->projectNoteIdentities(), expected);
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(!model->projectNotes().notesModified());
    QCOMPARE(log.lines(),
             QStringList({u"note at %1 to move to %2"_qs.arg(from).arg(to), u"modified"_qs,
                          u"note at %1 moved to %2"_qs.arg(from).arg(to)}));
}

void TstProjectNotes::aMoveOutOfRangeIsRefused_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("to itself") << 1 << 1;
    QTest::newRow("from before") << -1 << 0;
    QTest::newRow("from behind") << 2 << 0;
    QTest::newRow("to before") << 0 << -1;
    QTest::newRow("to behind") << 0 << 2;
}

void TstProjectNotes::aMoveOutOfRangeIsRefused()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    const auto model = blankModel();
    model->addProjectNote(u"a"_qs);
    const SignalLog log(model.get());
    QVERIFY(!model->moveProjectNote(from, to));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10, 11}));
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectNotes::aNoteIsRemoved()
{
    const TestProject project;
    const auto model = project.create();
    const ModelTester tester(model.get());
    model->addProjectNote(u"a"_qs);
    QVERIFY(model->save());
    const QPointer<QTextDocument> note(model->projectNote(10));
    SignalLog log(model.get());
    connect(model.get(), &TVLProjectModel::projectNoteAboutToBeRemoved, this,
            [&](int id) { QVERIFY(model->hasProjectNoteId(id)); });
    connect(model.get(), &TVLProjectModel::projectNoteRemoved, this,
            [&](int id) { QVERIFY(!model->hasProjectNoteId(id)); });
    QStringList errors;
    QVERIFY(model->removeProjectNote(10, &errors));
    QCOMPARE(errors, QStringList());
    QCOMPARE(log.lines(), QStringList({u"note 10 to go"_qs, u"modified"_qs, u"note 10 gone"_qs}));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({11}));
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(note);
    log.clear();
    note->setModified(true);
    QCOMPARE(log.lines(), QStringList());
    deleteReleasedObjects();
    QVERIFY(!note);
}

void TstProjectNotes::removingAnUnknownNoteIsFine()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    QVERIFY(model->removeProjectNote(999, nullptr));
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!model->projectNotes().isModified());
}

void TstProjectNotes::theLastNoteMayBeRemoved()
{
    const auto model = blankModel();
    QVERIFY(model->removeProjectNote(10, nullptr));
    QVERIFY(model->projectNotes().isEmpty());
    QCOMPARE(model->projectNoteIdentities(), QList<int>({10}));
    QCOMPARE(model->projectNoteTitle(10), u"General"_qs);
}

void TstProjectNotes::anEditedNoteMarksTheProject()
{
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_qs);
    QVERIFY(model->save());
    for (const int id : {10, 11}) {
        QTextCursor(model->projectNote(id)).insertText(u"words"_qs);
        QVERIFY(model->isModified());
        QVERIFY(model->projectNotes().notesModified());
        QVERIFY(model->save());
    }
}

void TstProjectNotes::aSaveLeavesNoNoteModified()
{
    const TestProject project;
    const auto model = project.create();
    model->addProjectNote(u"a"_qs);
    QVERIFY(model->moveProjectNote(0, 1));
    QTextCursor(model->projectNote(10)).insertText(u"words"_qs);
    QVERIFY(model->projectNotes().isModified());
    QVERIFY(model->save());
    QVERIFY(!model->projectNotes().isModified());
    QVERIFY(!model->projectNote(10)->isModified());
    QVERIFY(!model->projectNote(11)->isModified());
    QVERIFY(model->isSaved());
}

TVL_TEST_MAIN(TstProjectNotes)
#include "tst_projectnotes.moc"
