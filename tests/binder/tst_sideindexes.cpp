#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include "TestMain.h"

#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

using Snapshots = QList<TVLSnapshotInfo>;
using Notes = QList<QPair<int, TVLTextInternalLinkMap>>;

const QByteArray Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

QByteArray writtenSnapshots(const Snapshots &snapshots)
{
    return written([&](TVLBinderWriter *writer) { writer->writeSnapshots(snapshots); });
}

QByteArray writtenNotes(const QList<QPair<int, QTextDocument *>> &notes)
{
    return written([&](TVLBinderWriter *writer) { writer->writeProjectNotes(notes); });
}

bool readSnapshots(const QByteArray &file, Snapshots *snapshots)
{
    TVLBinderReader reader;
    reader.addData(file);
    return reader.readSnapshots(snapshots);
}

bool readNotes(const QByteArray &file, Notes *notes)
{
    TVLBinderReader reader;
    reader.addData(file);
    return reader.readProjectNotes(notes);
}

TVLSnapshotInfo makeSnapshot(const QString &title)
{
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = title;
    snapshot.mDate = sampleCreated().toLocalTime();
    return snapshot;
}

void setTitle(QTextDocument *document, const QString &title)
{
    document->setMetaInformation(QTextDocument::DocumentTitle, title);
}

/** Links of an item's text, notes and comments, in the form of older projects. */
const QByteArray OldLinks =
    "<Links><TavelinorLinks><TextLinks><LinkID Range='3,4'>5</LinkID></TextLinks>"
    "<NotesLinks><LinkID Range='6,7'>8</LinkID></NotesLinks></TavelinorLinks>"
    "<CommentsAndFootnotes><Comment ID='old'><RTF>rtf</RTF></Comment></CommentsAndFootnotes>"
    "</Links>";

} // namespace

class TstSideIndexes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Snapshots
    void anIndexOfNoSnapshots();
    void theFormOfTheSnapshotIndex();
    void snapshotsSurvive();
    void linksOfASnapshotAreNotWritten();
    void snapshotsAreAppended();
    void anOldSnapshotHasItsLinksBesideIt();
    void commentsOfBothKindsAreTaken();
    void unknownElementsOfSnapshotsAreSkipped();
    void aSnapshotWithoutAnything();
    void aDateThatMakesNoSenseIsInvalid();
    void theVersionOfTheSnapshotIndexIsTaken();
    void anotherElementThanSnapshotsIsAnError();
    void aSnapshotIndexThatIsCutOffFails();

    // Project notes
    void anIndexOfNoNotes();
    void theFormOfTheNotesIndex();
    void noteIdsSurvive();
    void aNoteWithoutADocumentHasNoTitle();
    void notesAreAppended();
    void anOldNoteHasItsLinksBesideIt();
    void unknownElementsOfNotesAreSkipped();
    void aNoteWithoutAnIdIsLeftOut();
    void theVersionOfTheNotesIndexIsTaken();
    void anotherElementThanProjectNotesIsAnError();
    void aNotesIndexThatIsCutOffFails();
};

void TstSideIndexes::anIndexOfNoSnapshots()
{
    const QByteArray file = writtenSnapshots({});
    QCOMPARE(file.simplified(), Declaration + "<Snapshots Version=\"1.0\"/>");
    Snapshots snapshots;
    QVERIFY(readSnapshots(file, &snapshots));
    QVERIFY(snapshots.isEmpty());
}

void TstSideIndexes::theFormOfTheSnapshotIndex()
{
    TVLSnapshotInfo first = makeSnapshot(u"First & <last>"_s);
    first.mComments = {TVLTextCommentLink(u"id"_s, "rtf")};
    QCOMPARE(writtenSnapshots({first, makeSnapshot({})}).simplified(),
             Declaration
                 + "<Snapshots Version=\"1.0\">"
                   "<Snapshot><Title>First &amp; &lt;last&gt;</Title>"
                   "<Date>2021-02-03 04:05:06 +0000</Date>"
                   "<Comments><Comment ID=\"id\" Collapsed=\"No\"><![CDATA[rtf]]></Comment>"
                   "</Comments></Snapshot>"
                   "<Snapshot><Title></Title><Date>2021-02-03 04:05:06 +0000</Date></Snapshot>"
                   "</Snapshots>");
}

void TstSideIndexes::snapshotsSurvive()
{
    TVLSnapshotInfo first = makeSnapshot(u" \u00e4 \u6f22\U0001d11e\n "_s);
    first.mComments = {TVLTextCommentLink(u"a"_s, "]]>"), TVLTextCommentLink(u"b"_s, "\xe4")};
    first.mComments[1].mColor = QColor(Qt::red);
    TVLSnapshotInfo second = makeSnapshot({});
    second.mDate = sampleModified().toLocalTime();
    const Snapshots snapshots = {first, second, first};
    Snapshots readBack;
    QVERIFY(readSnapshots(writtenSnapshots(snapshots), &readBack));
    QCOMPARE(readBack, snapshots);
}

void TstSideIndexes::linksOfASnapshotAreNotWritten()
{
    TVLSnapshotInfo snapshot = makeSnapshot(u"First"_s);
    snapshot.mLinks.mTargets.insert({3, 4}, 5);
    QCOMPARE(writtenSnapshots({snapshot}), writtenSnapshots({makeSnapshot(u"First"_s)}));
}

void TstSideIndexes::snapshotsAreAppended()
{
    Snapshots snapshots = {makeSnapshot(u"First"_s)};
    QVERIFY(readSnapshots(writtenSnapshots({makeSnapshot(u"Second"_s)}), &snapshots));
    QCOMPARE(snapshots, (Snapshots{makeSnapshot(u"First"_s), makeSnapshot(u"Second"_s)}));
}

void TstSideIndexes::anOldSnapshotHasItsLinksBesideIt()
{
    Snapshots snapshots;
    QVERIFY(readSnapshots("<Snapshots Version='1.0'><Snapshot><Title>Old</Title>"
                          "<Date>2021-02-03 04:05:06 +0000</Date>"
                              + OldLinks + "</Snapshot></Snapshots>",
                          &snapshots));
    TVLSnapshotInfo expected = makeSnapshot(u"Old"_s);
    expected.mLinks.mTargets.insert({3, 4}, 5);
    expected.mComments = {TVLTextCommentLink(u"old"_s, "rtf")};
    QCOMPARE(snapshots, Snapshots{expected});
}

void TstSideIndexes::commentsOfBothKindsAreTaken()
{
    Snapshots snapshots;
    QVERIFY(readSnapshots("<Snapshots><Snapshot><Comments><Comment ID='new'/></Comments>" + OldLinks
                              + "</Snapshot></Snapshots>",
                          &snapshots));
    QCOMPARE(snapshots.size(), 1);
    QCOMPARE(snapshots.constFirst().mComments.size(), 2);
    QCOMPARE(snapshots.constFirst().mComments.at(0).mIdentity, u"new"_s);
    QCOMPARE(snapshots.constFirst().mComments.at(1).mIdentity, u"old"_s);
}

void TstSideIndexes::unknownElementsOfSnapshotsAreSkipped()
{
    const QByteArray unknown = "<Unknown><Snapshot><Title>no</Title></Snapshot></Unknown>";
    Snapshots snapshots;
    QVERIFY(readSnapshots("<Snapshots>" + unknown + "<Snapshot>" + unknown + "<Title>ye" + unknown
                              + "s</Title>" + unknown + "</Snapshot>" + unknown + "</Snapshots>",
                          &snapshots));
    QCOMPARE(snapshots.size(), 1);
    QCOMPARE(snapshots.constFirst().mTitle, u"yes"_s);
}

void TstSideIndexes::aSnapshotWithoutAnything()
{
    Snapshots snapshots;
    QVERIFY(readSnapshots("<Snapshots><Snapshot/></Snapshots>", &snapshots));
    QCOMPARE(snapshots, Snapshots{TVLSnapshotInfo()});
}

void TstSideIndexes::aDateThatMakesNoSenseIsInvalid()
{
    const DebugLog log;
    Snapshots snapshots;
    QVERIFY(readSnapshots("<Snapshots><Snapshot><Title>x</Title><Date>yesterday</Date>"
                          "</Snapshot></Snapshots>",
                          &snapshots));
    QCOMPARE(snapshots.size(), 1);
    QVERIFY(!snapshots.constFirst().mDate.isValid());
    QCOMPARE(snapshots.constFirst().mTitle, u"x"_s);
}

void TstSideIndexes::theVersionOfTheSnapshotIndexIsTaken()
{
    TVLBinderReader reader;
    reader.addData("<Snapshots Version='1.0'/>");
    Snapshots snapshots;
    QVERIFY(reader.readSnapshots(&snapshots));
    QCOMPARE(reader.versionText(), u"1.0"_s);
}

void TstSideIndexes::anotherElementThanSnapshotsIsAnError()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<Snapshot/>");
    Snapshots snapshots;
    QVERIFY(!reader.readSnapshots(&snapshots));
    QCOMPARE(reader.errorString(), u"Unexpected tag Snapshot on line 1.  Expected tag Snapshots"_s);
}

void TstSideIndexes::aSnapshotIndexThatIsCutOffFails()
{
    TVLSnapshotInfo snapshot = makeSnapshot(u"First"_s);
    snapshot.mComments = {TVLTextCommentLink(u"id"_s, "rtf")};
    const QByteArray whole = writtenSnapshots({snapshot}).trimmed();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const DebugLog log;
        Snapshots snapshots;
        QVERIFY(!readSnapshots(whole.first(length), &snapshots));
        QVERIFY(snapshots.isEmpty() || snapshots == Snapshots{snapshot});
    }
}

void TstSideIndexes::anIndexOfNoNotes()
{
    const QByteArray file = writtenNotes({});
    QCOMPARE(file.simplified(), Declaration + "<ProjectNotes Version=\"1.0\"/>");
    Notes notes;
    QVERIFY(readNotes(file, &notes));
    QVERIFY(notes.isEmpty());
}

void TstSideIndexes::theFormOfTheNotesIndex()
{
    QTextDocument first(u"text"_s);
    QTextDocument second;
    setTitle(&first, u"To < do"_s);
    QCOMPARE(writtenNotes({{7, &first}, {0, &second}}).simplified(),
             Declaration
                 + "<ProjectNotes Version=\"1.0\">"
                   "<Note ID=\"7\"><Title>To &lt; do</Title></Note>"
                   "<Note ID=\"0\"><Title></Title></Note></ProjectNotes>");
}

void TstSideIndexes::noteIdsSurvive()
{
    QTextDocument document;
    Notes notes;
    QVERIFY(
        readNotes(writtenNotes({{3, &document}, {0, &document}, {2147483647, &document}}), &notes));
    QCOMPARE(notes, (Notes{{3, {}}, {0, {}}, {2147483647, {}}}));
}

void TstSideIndexes::aNoteWithoutADocumentHasNoTitle()
{
    QCOMPARE(writtenNotes({{7, nullptr}}).simplified(),
             Declaration
                 + "<ProjectNotes Version=\"1.0\"><Note ID=\"7\"><Title></Title></Note>"
                   "</ProjectNotes>");
}

void TstSideIndexes::notesAreAppended()
{
    Notes notes = {{1, {}}};
    QVERIFY(readNotes("<ProjectNotes><Note ID='2'/></ProjectNotes>", &notes));
    QCOMPARE(notes, (Notes{{1, {}}, {2, {}}}));
}

void TstSideIndexes::anOldNoteHasItsLinksBesideIt()
{
    Notes notes;
    QVERIFY(readNotes("<ProjectNotes Version='1.0'><Note ID='2'><Title>Old</Title>" + OldLinks
                          + "</Note><Note ID='3'/></ProjectNotes>",
                      &notes));
    TVLTextInternalLinkMap links;
    links.mTargets.insert({3, 4}, 5);
    QCOMPARE(notes, (Notes{{2, links}, {3, {}}}));
}

void TstSideIndexes::unknownElementsOfNotesAreSkipped()
{
    const QByteArray unknown = "<Unknown><Note ID='9'/><Links/></Unknown>";
    Notes notes;
    QVERIFY(readNotes("<ProjectNotes>" + unknown + "<Note ID='2'>" + unknown + "</Note>" + unknown
                          + "</ProjectNotes>",
                      &notes));
    QCOMPARE(notes, (Notes{{2, {}}}));
}

void TstSideIndexes::aNoteWithoutAnIdIsLeftOut()
{
    Notes notes;
    QVERIFY(readNotes("<ProjectNotes><Note/><Note ID=''/><Note ID='x'/><Note ID='-1'/>"
                      "<Note ID='2'/></ProjectNotes>",
                      &notes));
    QCOMPARE(notes, (Notes{{2, {}}}));
}

void TstSideIndexes::theVersionOfTheNotesIndexIsTaken()
{
    TVLBinderReader reader;
    reader.addData("<ProjectNotes Version='1.0'/>");
    Notes notes;
    QVERIFY(reader.readProjectNotes(&notes));
    QCOMPARE(reader.versionText(), u"1.0"_s);
}

void TstSideIndexes::anotherElementThanProjectNotesIsAnError()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<Snapshots/>");
    Notes notes;
    QVERIFY(!reader.readProjectNotes(&notes));
    QCOMPARE(reader.errorString(),
             u"Unexpected tag Snapshots on line 1.  Expected tag ProjectNotes"_s);
}

void TstSideIndexes::aNotesIndexThatIsCutOffFails()
{
    QTextDocument document;
    setTitle(&document, u"Title"_s);
    const QByteArray whole = writtenNotes({{7, &document}}).trimmed();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const DebugLog log;
        Notes notes;
        QVERIFY(!readNotes(whole.first(length), &notes));
    }
}

TVL_TEST(TstSideIndexes)
#include "tst_sideindexes.moc"
