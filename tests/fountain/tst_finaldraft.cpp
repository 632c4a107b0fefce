#include "RandomScreenplay.h"
#include "ScreenplayDescription.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLCoreUtil.h"
#include "TVLFinalDraftComposer_p.h"
#include "TVLFinalDraftParser_p.h"
#include "TVLFinalDraftReader.h"
#include "TVLFinalDraftWriter.h"
#include "TVLScreenplayDocument_p.h"
#include "TvlFountain.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr int FinalDraftGroups = 20;

QByteArray scriptWith(const QByteArray &content, const QByteArray &rest = {})
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n"
           "<FinalDraft DocumentType=\"Script\" Template=\"No\" Version=\"1\">\n<Content>\n"
        + content + "\n</Content>\n" + rest + "</FinalDraft>\n";
}

QByteArray paragraphOf(const QByteArray &type, const QByteArray &text)
{
    return "<Paragraph Type=\"" + type + "\"><Text>" + text + "</Text></Paragraph>\n";
}

struct Outcome
{
    bool mIsWhole = false;
    QString mDescription;
    QString mError;
};

Outcome outcomeOf(const QByteArray &xml)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"script.fdx"_s);
    Outcome outcome;
    TVLFinalDraftReader reader;
    QTextDocument document;
    if (TVLCoreUtil::WriteBinaryFile(xml, path, nullptr) && reader.load(path))
        outcome.mIsWhole = reader.read(&document, {});
    outcome.mDescription = describeScreenplay(document);
    outcome.mError = reader.errorString();
    return outcome;
}

} // namespace

/** Files of Final Draft. */
class TstFinalDraft : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileReadsAs_data();
    void aFileReadsAs();
    void aDocumentIsWrittenAs_data();
    void aDocumentIsWrittenAs();
    void randomScreenplaysComeBackEqual_data();
    void randomScreenplaysComeBackEqual();
    void fountainComesBackEqualByWayOfFinalDraft_data();
    void fountainComesBackEqualByWayOfFinalDraft();
    void looksComeBackEqual();
    void aFilmComesBackEqual();
    void aDamagedFileGivesItsWords_data();
    void aDamagedFileGivesItsWords();
    void everyCutOffFileIsRefusedWithItsWords();
    void entitiesAreRefused_data();
    void entitiesAreRefused();
    void aFileThatIsNotThereIsRefused();
    void nothingLoadedIsRefused();
    void withoutADocumentNothingIsDone();
    void aDeviceThatTakesTooLittleIsAFailure();
    void theTimeGrowsWithTheFile_data();
    void theTimeGrowsWithTheFile();
};

void TstFinalDraft::aFileReadsAs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("rest");
    QTest::addColumn<QString>("description");
    for (const char *type : {"Scene Heading", "Action", "Character", "Parenthetical", "Dialogue",
                             "Transition", "Shot", "General"})
        QTest::newRow(type) << paragraphOf(type, "x") << QByteArray()
                            << QString::fromLatin1(type) + u": x\n"_s;
    QTest::newRow("lyrics") << paragraphOf("Lyrics", "x") << QByteArray()
                            << u"Dialogue (Lyrics): x\n"_s;
    QTest::newRow("unknown type") << paragraphOf("Cast List", "x") << QByteArray()
                                  << u"General (Cast List): x\n"_s;
    QTest::newRow("no type") << QByteArray("<Paragraph><Text>x</Text></Paragraph>") << QByteArray()
                             << u"General: x\n"_s;
    QTest::newRow("outline") << paragraphOf("Outline 2", "x") + paragraphOf("Outline Body", "y")
                             << QByteArray()
                             << u"General (Section, level 2): x\nGeneral (Synopsis): y\n"_s;
    QTest::newRow("styles") << QByteArray(
        "<Paragraph Type=\"Action\"><Text>a</Text><Text Style=\"Bold\">b</Text>"
        "<Text Style=\"Bold+Italic+Underline+AllCaps\">c</Text></Paragraph>")
                            << QByteArray() << u"Action: a<b:b><biu:c>\n"_s;
    QTest::newRow("line ends and blanks")
        << paragraphOf("Action", " a \nb ") << QByteArray() << u"Action:  a \\nb \n"_s;
    QTest::newRow("signs of XML") << paragraphOf("Action",
                                                 "a &amp; &lt;b&gt; &#233;<![CDATA[<c>]]>")
                                  << QByteArray() << u"Action: a & \\<b\\> \u00e9\\<c\\>\n"_s;
    QTest::newRow("number and page")
        << QByteArray("<Paragraph Type=\"Scene Heading\" Number=\"1A\" StartsNewPage=\"Yes\">"
                      "<Text>x</Text></Paragraph>")
        << QByteArray() << u"Scene Heading (number 1A, page): x\n"_s;
    QTest::newRow("alignments")
        << QByteArray("<Paragraph Type=\"Action\" Alignment=\"Center\"><Text>a</Text></Paragraph>"
                      "<Paragraph Type=\"Action\" Alignment=\"Full\"><Text>b</Text></Paragraph>"
                      "<Paragraph Type=\"Action\" Alignment=\"Left\"><Text>c</Text></Paragraph>"
                      "<Paragraph Type=\"Action\" Alignment=\"Right\"><Text>d</Text></Paragraph>")
        << QByteArray()
        << u"Action (centered): a\nAction (justified): b\nAction: c\nAction (right): d\n"_s;
    QTest::newRow("dual dialogue")
        << "<Paragraph><DualDialogue>" + paragraphOf("Character", "A")
            + paragraphOf("Dialogue", "a") + paragraphOf("Character", "B")
            + paragraphOf("Dialogue", "b") + "</DualDialogue></Paragraph>"
        << QByteArray() << u"Character: A\nDialogue: a\nCharacter (dual): B\nDialogue: b\n"_s;
    QTest::newRow("title page")
        << paragraphOf("Action", "x")
        << QByteArray("<TitlePage><HeaderAndFooter>no</HeaderAndFooter><Content>"
                      "<Paragraph Alignment=\"Center\"><Text>The Rain</Text></Paragraph>"
                      "</Content></TitlePage>")
        << u"General (Title Page, centered): The Rain\nAction: x\n"_s;
    QTest::newRow("script note on text") << QByteArray(
        "<Paragraph Type=\"Action\"><ScriptNote Range=\"3,7\" Name=\"mine\"><Paragraph><Text>why"
        "</Text></Paragraph><Paragraph><Text>so</Text></Paragraph></ScriptNote>"
        "<Text>He runs on</Text></Paragraph>")
                                         << QByteArray() << u"Action: He runs{why\\nso} on\n"_s;
    QTest::newRow("script note between texts") << QByteArray(
        "<Paragraph Type=\"Action\"><Text>He runs</Text><ScriptNote Range=\"2,2\"><Paragraph>"
        "<Text Style=\"Bold\">why</Text></Paragraph></ScriptNote></Paragraph>")
                                               << QByteArray() << u"Action: He<bn:why> runs\n"_s;
    QTest::newRow("script note of the whole paragraph")
        << QByteArray("<Paragraph Type=\"Action\"><Text>He runs</Text><ScriptNote><Paragraph>"
                      "<Text>why</Text></Paragraph></ScriptNote></Paragraph>")
        << QByteArray() << u"Action: He runs{why}\n"_s;
    QTest::newRow("script note beyond the text") << QByteArray(
        "<Paragraph Type=\"Action\"><Text>He</Text><ScriptNote Range=\"90,99\"><Paragraph>"
        "<Text>why</Text></Paragraph></ScriptNote></Paragraph>")
                                                 << QByteArray() << u"Action: He<n:why>\n"_s;
    QTest::newRow("summary of a scene")
        << QByteArray(
               "<Paragraph Type=\"Scene Heading\"><SceneProperties "
               "Length=\"1/8\"><Summary><Paragraph>"
               "<Text>They meet.</Text></Paragraph></Summary></SceneProperties><Text>INT. A</Text>"
               "</Paragraph>")
        << QByteArray() << u"Scene Heading: INT. A\nGeneral (Synopsis): They meet.\n"_s;
    QTest::newRow("unknown elements")
        << QByteArray("<Strange>one</Strange><Paragraph Type=\"Action\"><Text>two "
                      "<Odd>three</Odd></Text><New> four</New></Paragraph>")
        << QByteArray() << u"General: one\nAction: two three four\n"_s;
    QTest::newRow("the rest of a file")
        << paragraphOf("Action", "x")
        << QByteArray("<HeaderAndFooter><Header><Paragraph><Text>no</Text></Paragraph></Header>"
                      "</HeaderAndFooter><SmartType><Characters><Character>NO</Character>"
                      "</Characters></SmartType>")
        << u"Action: x\n"_s;
    QTest::newRow("empty paragraph")
        << QByteArray("<Paragraph Type=\"Action\"/>") << QByteArray() << u"Action: \n"_s;
    QTest::newRow("font of any script")
        << QByteArray("<Paragraph Type=\"Action\"><Text Font=\"Courier Final Draft\" Size=\"12\" "
                      "Color=\"#000000000000\" Style=\"\">x</Text></Paragraph>")
        << QByteArray() << u"Action: x\n"_s;
}

void TstFinalDraft::aFileReadsAs()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, rest);
    const Outcome outcome = outcomeOf(scriptWith(content, rest));
    QVERIFY2(outcome.mIsWhole, qPrintable(outcome.mError));
    QTEST(outcome.mDescription, "description");
    QCOMPARE(outcome.mError, QString());
}

void TstFinalDraft::aDocumentIsWrittenAs_data()
{
    QTest::addColumn<QString>("fountain");
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("heading") << u"INT. A #1#\n"_s
                             << QByteArray("<Paragraph Type=\"Scene Heading\" Number=\"1\"><Text>"
                                           "INT. A</Text></Paragraph>");
    QTest::newRow("emphasis") << u"a ***b***\n"_s
                              << QByteArray("<Text>a </Text><Text Style=\"Bold+Italic\">b</Text>");
    QTest::newRow("centered") << u"> a <\n"_s
                              << QByteArray("<Paragraph Type=\"Action\" Alignment=\"Center\">");
    QTest::newRow("dual dialogue")
        << u"A\na\n\nB ^\nb\n"_s
        << QByteArray("<Paragraph><DualDialogue>\n<Paragraph Type=\"Character\"><Text>A</Text>");
    QTest::newRow("note") << u"a [[b]] c\n"_s
                          << QByteArray("<Text>a </Text><Text> c</Text><ScriptNote "
                                        "Name=\"Annotation\" Range=\"2,2\"><Paragraph>"
                                        "<Text>b</Text></Paragraph></ScriptNote>");
    QTest::newRow("title page")
        << u"Title: A\n\nOn.\n"_s
        << QByteArray("<TitlePage><Content><Paragraph Type=\"Title Page\" Alignment=\"Center\" "
                      "Key=\"Title: \"><Text>A</Text></Paragraph></Content></TitlePage>");
    QTest::newRow("signs of XML") << u"a & <b>\n"_s << QByteArray("a &amp; &lt;b&gt;");
}

void TstFinalDraft::aDocumentIsWrittenAs()
{
    QFETCH(QString, fountain);
    QFETCH(QByteArray, xml);
    QTextDocument document;
    QVERIFY(TvlFountain::parseText(fountain, &document, {}));
    const QByteArray written = TVLFinalDraftWriter::toXml(&document, {});
    QVERIFY2(written.contains(xml), written.constData());
}

void TstFinalDraft::randomScreenplaysComeBackEqual_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 0; seed < FinalDraftGroups; ++seed)
        QTest::addRow("screenplays %u to %u", seed * 100, seed * 100 + 99) << seed;
}

void TstFinalDraft::randomScreenplaysComeBackEqual()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < testCases(100); ++i) {
        const auto texts = i % 2 == 0 ? RandomTexts::Nasty : RandomTexts::Likely;
        const TVLScreenplay screenplay = makeRandomScreenplay(&random, texts);
        const QByteArray xml = TVLFinalDraftComposer(screenplay).compose();
        TVLFinalDraftParser parser(xml);
        QVERIFY2(parser.parse(), qPrintable(parser.errorString()));

        QTextDocument document;
        tvlSetScreenplay(screenplay, {}, &document);
        QCOMPARE(outcomeOf(TVLFinalDraftWriter::toXml(&document, {})).mDescription,
                 describeScreenplay(document));
        QVERIFY2(parser.screenplay().mParagraphs == screenplay.mParagraphs, xml.constData());
    }
}

void TstFinalDraft::fountainComesBackEqualByWayOfFinalDraft_data()
{
    randomScreenplaysComeBackEqual_data();
}

void TstFinalDraft::fountainComesBackEqualByWayOfFinalDraft()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed + FinalDraftGroups);
    for (int i = 0; i < testCases(100); ++i) {
        QTextDocument first;
        tvlSetScreenplay(makeRandomScreenplay(&random, RandomTexts::Likely), {}, &first);
        const QString fountain = TvlFountain::toText(&first, {});
        QVERIFY(TvlFountain::parseText(fountain, &first, {}));
        TVLFinalDraftParser parser(TVLFinalDraftWriter::toXml(&first, {}));
        QVERIFY(parser.parse());
        QTextDocument second;
        tvlSetScreenplay(parser.screenplay(), {}, &second);
        QCOMPARE(TvlFountain::toText(&second, {}), fountain);
    }
}

void TstFinalDraft::looksComeBackEqual()
{
    TVLScreenplay screenplay;
    TVLScreenplayParagraph paragraph(TVLScreenplayKind::Action);
    paragraph.append(u"plain ");
    paragraph.append(u"odd", TVLScreenplayRun::Bold,
                     screenplay.placeOf({u"Papyrus"_s, 14.5, QColor(1, 2, 3)}));
    screenplay.mParagraphs.push_back(paragraph);
    const QByteArray xml = TVLFinalDraftComposer(screenplay).compose();
    QVERIFY(xml.contains("Font=\"Papyrus\" Size=\"14.5\" Color=\"#010102020303\""));
    TVLFinalDraftParser parser(xml);
    QVERIFY(parser.parse());
    QVERIFY(parser.screenplay().mLooks == screenplay.mLooks);
    QTextDocument document;
    tvlSetScreenplay(parser.screenplay(), {}, &document);
    QCOMPARE(TVLFinalDraftWriter::toXml(&document, {}), xml);
}

void TstFinalDraft::aFilmComesBackEqual()
{
    QRandomGenerator random(1);
    QTextDocument document;
    tvlSetScreenplay(makeFilm(&random, 120), {}, &document);
    const Outcome outcome = outcomeOf(TVLFinalDraftWriter::toXml(&document, {}));
    QVERIFY(outcome.mIsWhole);
    QCOMPARE(outcome.mDescription, describeScreenplay(document));
}

void TstFinalDraft::aDamagedFileGivesItsWords_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << QByteArray() << u"-: \n"_s << u"Premature end of document."_s;
    QTest::newRow("other XML") << QByteArray("<html><p>x</p></html>") << u"-: \n"_s
                               << u"This is not a Final Draft file."_s;
    QTest::newRow("no XML") << QByteArray("hello") << u"-: \n"_s << u"Start tag expected."_s;
    QTest::newRow("wrong end") << QByteArray(
        "<FinalDraft><Content><Paragraph Type=\"Action\"><Text>"
        "one</Text></Paragraph></Wrong>")
                               << u"Action: one\n"_s << u"Opening and ending tag mismatch."_s;
    QTest::newRow("nested") << QByteArray("<FinalDraft><Content>")
            + QByteArray("<Paragraph><Text>a</Text>").repeated(600)
                            << QString() << u"The file is nested too deeply."_s;
}

void TstFinalDraft::aDamagedFileGivesItsWords()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, description);
    const Outcome outcome = outcomeOf(xml);
    QVERIFY(!outcome.mIsWhole);
    if (!description.isEmpty())
        QCOMPARE(outcome.mDescription, description);
    QTEST(outcome.mError, "error");
}

void TstFinalDraft::everyCutOffFileIsRefusedWithItsWords()
{
    const QByteArray whole = scriptWith(paragraphOf("Action", "first &amp; caf\xc3\xa9 words")
                                        + paragraphOf("Dialogue", "second words"));
    const QString all = outcomeOf(whole).mDescription;
    const qsizetype firstEnd = whole.indexOf("</Text>");
    const qsizetype secondStart = whole.indexOf("second");
    const qsizetype end = whole.lastIndexOf('>');
    for (qsizetype size = 0; size < end; ++size) {
        const Outcome outcome = outcomeOf(whole.first(size));
        const QByteArray where = QByteArray::number(size) + outcome.mDescription.toUtf8();
        QVERIFY2(!outcome.mIsWhole, where.constData());
        QVERIFY(!outcome.mError.isEmpty());
        if (size >= firstEnd)
            QVERIFY2(outcome.mDescription.startsWith(u"Action: first & caf\u00e9 words\n"_s),
                     where.constData());
        if (size >= secondStart + 6)
            QVERIFY2(outcome.mDescription.contains(u"Dialogue: second"_s), where.constData());
        if (outcome.mDescription != u"-: \n")
            QVERIFY2(all.startsWith(outcome.mDescription.chopped(1)), where.constData());
    }
    QVERIFY(outcomeOf(whole).mIsWhole);
}

void TstFinalDraft::entitiesAreRefused_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("bomb") << QByteArray(
        "<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;\">]>"
        "<FinalDraft><Content><Paragraph><Text>&b;</Text></Paragraph></Content></FinalDraft>");
    QTest::newRow("file") << QByteArray(
        "<!DOCTYPE f [<!ENTITY x SYSTEM \"file:///etc/hostname\">]><FinalDraft><Content>"
        "<Paragraph><Text>&x;</Text></Paragraph></Content></FinalDraft>");
    QTest::newRow("document type alone")
        << QByteArray("<!DOCTYPE FinalDraft><FinalDraft><Content/></FinalDraft>");
}

void TstFinalDraft::entitiesAreRefused()
{
    QFETCH(QByteArray, xml);
    const Outcome outcome = outcomeOf(xml);
    QVERIFY(!outcome.mIsWhole);
    QCOMPARE(outcome.mDescription, u"-: \n"_s);
    QCOMPARE(outcome.mError, u"The file has a document type of its own."_s);
}

void TstFinalDraft::aFileThatIsNotThereIsRefused()
{
    const QTemporaryDir directory;
    TVLFinalDraftReader reader;
    QVERIFY(!reader.load(directory.filePath(u"missing.fdx"_s)));
    QVERIFY(!reader.errorString().isEmpty());
    QVERIFY(!reader.load(directory.path() + u"/a/b.fdx"_s));
}

void TstFinalDraft::nothingLoadedIsRefused()
{
    TVLFinalDraftReader reader;
    QTextDocument document;
    QVERIFY(!reader.read(&document, {}));
    QVERIFY(!reader.errorString().isEmpty());
}

void TstFinalDraft::withoutADocumentNothingIsDone()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(!TVLFinalDraftWriter::write(&buffer, nullptr, {}));
    QVERIFY(buffer.data().isEmpty());
    const QTextDocument document;
    QVERIFY(!TVLFinalDraftWriter::write(nullptr, &document, {}));
    TVLFinalDraftReader reader;
    QVERIFY(!reader.read(nullptr, {}));
    QCOMPARE(reader.errorString(), u"There is no document."_s);
}

void TstFinalDraft::aDeviceThatTakesTooLittleIsAFailure()
{
    const QTextDocument document;
    QBuffer closed;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): device not open");
    QVERIFY(!TVLFinalDraftWriter::write(&closed, &document, {}));
    QBuffer open;
    QVERIFY(open.open(QIODevice::WriteOnly));
    QVERIFY(TVLFinalDraftWriter::write(&open, &document, {}));
    QCOMPARE(open.data(), TVLFinalDraftWriter::toXml(&document, {}));
}

void TstFinalDraft::theTimeGrowsWithTheFile_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("piece");
    QTest::addColumn<QByteArray>("behind");
    const QByteArray paragraph = "<Paragraph Type=\"Action\">";
    QTest::newRow("paragraphs") << QByteArray() << paragraphOf("Action", "a") << QByteArray();
    QTest::newRow("one text") << paragraph + "<Text>" << QByteArray("word ")
                              << QByteArray("</Text></Paragraph>");
    QTest::newRow("runs") << paragraph << QByteArray("<Text>a</Text><Text Style=\"Bold\">b</Text>")
                          << QByteArray("</Paragraph>");
    QTest::newRow("looks") << paragraph
                           << QByteArray("<Text Font=\"A\">a</Text><Text Size=\"9\">b</Text>")
                           << QByteArray("</Paragraph>");
    QTest::newRow("notes") << paragraph
                           << QByteArray("<Text>a</Text><ScriptNote Range=\"1,1\"><Text>n</Text>"
                                         "</ScriptNote>")
                           << QByteArray("</Paragraph>");
    QTest::newRow("comments") << paragraph
                              << QByteArray("<Text>a</Text><ScriptNote Range=\"0,1\"><Text>n"
                                            "</Text></ScriptNote>")
                              << QByteArray("</Paragraph>");
    QTest::newRow("words outside") << QByteArray() << QByteArray("a<b/>") << QByteArray();
    QTest::newRow("duals") << QByteArray() << QByteArray("<Paragraph><DualDialogue/></Paragraph>")
                           << QByteArray();
    QTest::newRow("attributes") << paragraph + "<Text Style=\"" << QByteArray("Bold+")
                                << QByteArray("\">a</Text></Paragraph>");
}

void TstFinalDraft::theTimeGrowsWithTheFile()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, piece);
    QFETCH(QByteArray, behind);
    // Many times what it takes, also under sanitizers on a busy machine; a square takes far longer.
    constexpr double SecondsPerMillion = 20;
    const QByteArray xml =
        scriptWith(before + piece.repeated(testSize(5'000'000) / piece.size()) + behind);
    const std::clock_t start = std::clock();
    TVLFinalDraftParser parser(xml);
    QVERIFY2(parser.parse(), qPrintable(parser.errorString()));
    QVERIFY(!TVLFinalDraftComposer(parser.screenplay()).compose().isEmpty());
    const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
    QVERIFY2(seconds < SecondsPerMillion * double(xml.size()) / 1e6,
             qPrintable(QString::number(seconds)));
}

TVL_TEST(TstFinalDraft)
#include "tst_finaldraft.moc"
