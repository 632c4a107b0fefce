#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include "TestMain.h"

#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QTest>
#include <QTextDocument>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int Deep = 200'000;

/** One of the files beside the binder: its element, and what reads it. */
struct SideFile
{
    QByteArray tag;
    std::function<bool(TVLBinderReader *)> read;
};

QList<SideFile> sideFiles()
{
    return {
        {"Comments",
         [](TVLBinderReader *reader) {
             QList<TVLTextCommentLink> comments;
             return reader->readComments(&comments);
         }},
        {"Links",
         [](TVLBinderReader *reader) {
             TVLTextInternalLinkMap text;
             TVLTextInternalLinkMap notes;
             QList<TVLTextCommentLink> comments;
             return reader->readLinks(&text, &notes, &comments);
         }},
        {"Snapshots",
         [](TVLBinderReader *reader) {
             QList<TVLSnapshotInfo> snapshots;
             return reader->readSnapshots(&snapshots);
         }},
        {"ProjectNotes",
         [](TVLBinderReader *reader) {
             QList<QPair<int, TVLTextInternalLinkMap>> notes;
             return reader->readProjectNotes(&notes);
         }},
    };
}

void addSideFileRows()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < sideFiles().size(); ++index)
        QTest::newRow(sideFiles().at(index).tag.constData()) << index;
}

bool readFile(const SideFile &file, const QByteArray &content, QString *error = nullptr)
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData(content);
    const bool ok = file.read(&reader);
    if (error)
        *error = reader.errorString();
    return ok;
}

/** Comments that are written and read must come back, whatever they were made of. */
QList<TVLTextCommentLink> rereadSide(const QList<TVLTextCommentLink> &comments, bool *ok)
{
    TVLBinderReader reader;
    reader.addData(
        written([&](TVLBinderWriter *writer) { writer->writeComments(comments, true); }));
    QList<TVLTextCommentLink> readBack;
    *ok = reader.readComments(&readBack);
    return readBack;
}

} // namespace

class TstSideHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileOfSomethingElseFails_data();
    void aFileOfSomethingElseFails();
    void deepNestingIsSkipped_data();
    void deepNestingIsSkipped();
    void deepNestingInARtfTextIsSkipped();
    void elementsNestedInThemselvesAreSkipped();
    void anEntityBombFailsWithoutExploding_data();
    void anEntityBombFailsWithoutExploding();
    void anOutsideEntityIsNotReadIn();
    void bytesThatAreNoUtf8Fail_data();
    void bytesThatAreNoUtf8Fail();
    void charactersThatXmlDoesNotHaveFail();
    void aCommentThatIsCutOffIsNotTaken();
    void manyCommentsSurvive();
    void noiseNeverCrashesTheReader_data();
    void noiseNeverCrashesTheReader();

    void identitiesThatXmlCannotHoldLeaveTheFileReadable_data();
    void identitiesThatXmlCannotHoldLeaveTheFileReadable();
    void randomRtfLeavesTheFileReadable();
    void titlesThatXmlCannotHoldLeaveTheFileReadable();
};

void TstSideHostile::aFileOfSomethingElseFails_data()
{
    addSideFileRows();
}

void TstSideHostile::aFileOfSomethingElseFails()
{
    QFETCH(int, index);

    const SideFile file = sideFiles().at(index);
    const QByteArrayList contents = {"",
                                     " ",
                                     "<?xml version='1.0'?>",
                                     "no XML",
                                     "{\\rtf1 text}",
                                     "<x/>",
                                     "<x:" + file.tag + "/>",
                                     "<" + file.tag.toLower() + "/>",
                                     "<x><" + file.tag + "/></x>",
                                     QByteArray(1000, '\0'),
                                     "<TavelinorProject Version='1.5'/>"};
    for (const QByteArray &content : contents) {
        QString error;
        QVERIFY2(!readFile(file, content, &error), content.constData());
        QVERIFY2(!error.isEmpty(), content.constData());
    }
    QVERIFY(readFile(file, "<" + file.tag + "/>"));
}

void TstSideHostile::deepNestingIsSkipped_data()
{
    addSideFileRows();
}

void TstSideHostile::deepNestingIsSkipped()
{
    QFETCH(int, index);

    const SideFile file = sideFiles().at(index);
    const QByteArray start = "<" + file.tag + ">" + QByteArray("<x>").repeated(Deep);
    QVERIFY(readFile(file, start + QByteArray("</x>").repeated(Deep) + "</" + file.tag + ">"));
    QVERIFY(!readFile(file, start));
}

void TstSideHostile::deepNestingInARtfTextIsSkipped()
{
    TVLBinderReader reader;
    reader.addData("<Comments><Comment ID='id'>a" + QByteArray("<x>").repeated(Deep)
                   + QByteArray("</x>").repeated(Deep) + "b</Comment></Comments>");
    QList<TVLTextCommentLink> comments;
    QVERIFY(reader.readComments(&comments));
    QCOMPARE(comments, (QList<TVLTextCommentLink>{TVLTextCommentLink(u"id"_s, "ab")}));
}

void TstSideHostile::elementsNestedInThemselvesAreSkipped()
{
    QList<TVLSnapshotInfo> snapshots;
    TVLBinderReader reader;
    reader.addData("<Snapshots>" + QByteArray("<Snapshot><Links><Links>").repeated(Deep)
                   + QByteArray("</Links></Links></Snapshot>").repeated(Deep) + "</Snapshots>");
    QVERIFY(reader.readSnapshots(&snapshots));
    QCOMPARE(snapshots, QList<TVLSnapshotInfo>{TVLSnapshotInfo()});
}

void TstSideHostile::anEntityBombFailsWithoutExploding_data()
{
    addSideFileRows();
}

void TstSideHostile::anEntityBombFailsWithoutExploding()
{
    QFETCH(int, index);

    const SideFile file = sideFiles().at(index);
    QByteArray entities = "<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const QByteArray previous = "&e" + QByteArray::number(i - 1) + ';';
        entities += "<!ENTITY e" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
    }
    const QByteArray start = "<!DOCTYPE x [" + entities + "]>";
    QVERIFY(!readFile(file, start + "<" + file.tag + ">&e29;</" + file.tag + ">"));
    QVERIFY(!readFile(file, start + "<" + file.tag + " Version='&e29;'/>"));
    QVERIFY(!readFile(file, start + "<" + file.tag + "><x y='&e29;'/></" + file.tag + ">"));
}

void TstSideHostile::anOutsideEntityIsNotReadIn()
{
    QTemporaryFile secret;
    QVERIFY(secret.open());
    secret.write("secret");
    secret.close();
    TVLBinderReader reader;
    reader.addData("<!DOCTYPE x [<!ENTITY e SYSTEM \"file://" + secret.fileName().toUtf8()
                   + "\">]><Comments><Comment ID='id'>&e;</Comment></Comments>");
    QList<TVLTextCommentLink> comments;
    (void)reader.readComments(&comments);
    QVERIFY(comments.isEmpty() || comments.constFirst().mRtf.isEmpty());
}

void TstSideHostile::bytesThatAreNoUtf8Fail_data()
{
    addSideFileRows();
}

void TstSideHostile::bytesThatAreNoUtf8Fail()
{
    QFETCH(int, index);

    const SideFile file = sideFiles().at(index);
    QVERIFY(!readFile(file, "<" + file.tag + "><x>\xff\xfe\xe4</x></" + file.tag + ">"));
}

void TstSideHostile::charactersThatXmlDoesNotHaveFail()
{
    const DebugLog log;
    for (const QByteArray &character :
         {QByteArray("\x01"), QByteArray("&#1;"), QByteArray("&#0;"), QByteArray("\xef\xbf\xbf")}) {
        TVLBinderReader reader;
        reader.addData("<Comments><Comment ID='good'>rtf</Comment><Comment ID='bad'>" + character
                       + "</Comment></Comments>");
        QList<TVLTextCommentLink> comments;
        QVERIFY2(!reader.readComments(&comments), character.constData());
        QCOMPARE(comments, (QList<TVLTextCommentLink>{TVLTextCommentLink(u"good"_s, "rtf")}));
    }
}

void TstSideHostile::aCommentThatIsCutOffIsNotTaken()
{
    const QList<TVLTextCommentLink> comments = {TVLTextCommentLink(u"a"_s, "{\\rtf1 ]]>}"),
                                                TVLTextCommentLink(u"b"_s, "{\\rtf1 other}")};
    const QByteArray whole =
        written([&](TVLBinderWriter *writer) { writer->writeComments(comments, true); });
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const DebugLog log;
        TVLBinderReader reader;
        reader.addData(whole.first(length));
        QList<TVLTextCommentLink> readBack;
        QVERIFY(!reader.readComments(&readBack));
        QCOMPARE(readBack, comments.first(readBack.size()));
    }
}

void TstSideHostile::manyCommentsSurvive()
{
    QList<TVLTextCommentLink> comments;
    for (int i = 0; i < 50'000; ++i)
        comments.append(TVLTextCommentLink(QString::number(i), QByteArray::number(-i)));
    bool ok = false;
    QVERIFY(rereadSide(comments, &ok) == comments);
    QVERIFY(ok);
}

void TstSideHostile::noiseNeverCrashesTheReader_data()
{
    addSideFileRows();
}

void TstSideHostile::noiseNeverCrashesTheReader()
{
    QFETCH(int, index);

    const QByteArrayList pieces = {"<Comments>",
                                   "</Comments>",
                                   "<Comment ID='x'>",
                                   "</Comment>",
                                   "<Links>",
                                   "</Links>",
                                   "<TavelinorLinks>",
                                   "<TextLinks>",
                                   "<LinkID Range='1,2'>",
                                   "</LinkID>",
                                   "12",
                                   "<![CDATA[",
                                   "]]>",
                                   "<Snapshot>",
                                   "</Snapshot>",
                                   "<Snapshots>",
                                   "<Date>",
                                   "</Date>",
                                   "<Title/>",
                                   "<Note ID='1'>",
                                   "</Note>",
                                   "&amp;",
                                   "&x;",
                                   "<!--",
                                   "\xc3\xa4",
                                   "\xff",
                                   "<RTF>",
                                   "</RTF>",
                                   "<CommentsAndFootnotes>"};
    const SideFile file = sideFiles().at(index);
    QRandomGenerator random(1);
    for (int i = 0; i < 3000; ++i) {
        QByteArray content = "<" + file.tag + ">";
        for (int piece = random.bounded(20); piece > 0; --piece)
            content += pieces.at(random.bounded(int(pieces.size())));
        (void)readFile(file, content);
    }
}

void TstSideHostile::identitiesThatXmlCannotHoldLeaveTheFileReadable_data()
{
    QTest::addColumn<QString>("identity");
    QTest::addColumn<QString>("expected");

    QTest::newRow("control characters")
        << u"a"_s + QChar(1) + u"b"_s + QChar(0) + u"c"_s << u"abc"_s;
    QTest::newRow("half surrogate pair")
        << QString(QChar(0xd800)) + u'x' << QString(QChar(0xfffd)) + u'x';
    QTest::newRow("noncharacter") << QString(QChar(0xffff)) << QString(QChar(0xfffd));
    QTest::newRow("line ends") << u"a\r\nb\rc"_s << u"a\r\nb\rc"_s;
}

void TstSideHostile::identitiesThatXmlCannotHoldLeaveTheFileReadable()
{
    QFETCH(QString, identity);
    QFETCH(QString, expected);

    bool ok = false;
    QCOMPARE(rereadSide({TVLTextCommentLink(identity, "rtf")}, &ok),
             (QList<TVLTextCommentLink>{TVLTextCommentLink(expected, "rtf")}));
    QVERIFY(ok);
}

void TstSideHostile::randomRtfLeavesTheFileReadable()
{
    QRandomGenerator random(1);
    for (int i = 0; i < 500; ++i) {
        QByteArray rtf;
        for (int byte = random.bounded(300); byte > 0; --byte)
            rtf.append(char(random.bounded(8) ? random.bounded(256) : int("]]>[<&"[byte % 6])));
        bool ok = false;
        const QList<TVLTextCommentLink> once = rereadSide({TVLTextCommentLink(u"id"_s, rtf)}, &ok);
        QVERIFY2(ok, rtf.toHex().constData());
        // What was changed to fit into XML the first time isn't changed again.
        QCOMPARE(rereadSide(once, &ok), once);
        QVERIFY(ok);
    }
}

void TstSideHostile::titlesThatXmlCannotHoldLeaveTheFileReadable()
{
    TVLSnapshotInfo snapshot;
    snapshot.mTitle = u"a"_s + QChar(1) + u"\r\n"_s + QChar(0xdc00) + u"]]>"_s;
    TVLBinderReader reader;
    reader.addData(written([&](TVLBinderWriter *writer) { writer->writeSnapshots({snapshot}); }));
    QList<TVLSnapshotInfo> snapshots;
    const DebugLog log; // It has no date.
    QVERIFY(reader.readSnapshots(&snapshots));
    QCOMPARE(snapshots.constFirst().mTitle, u"a\r\n\ufffd]]>"_s);

    QTextDocument document;
    document.setMetaInformation(QTextDocument::DocumentTitle, snapshot.mTitle);
    TVLBinderReader noteReader;
    noteReader.addData(written([&](TVLBinderWriter *writer) {
        writer->writeProjectNotes({{1, &document}});
    }));
    QList<QPair<int, TVLTextInternalLinkMap>> notes;
    QVERIFY(noteReader.readProjectNotes(&notes));
    QCOMPARE(notes.size(), 1);
}

TVL_TEST(TstSideHostile)
#include "tst_sidehostile.moc"
