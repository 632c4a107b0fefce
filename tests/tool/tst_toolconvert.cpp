#include "TestMain.h"
#include "ToolFixtures.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QByteArray Scene = "INT. HOUSE - DAY\n\nRain falls.\n\nANNA\nHello.\n";

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/** `tavel convert`. */
class TstToolConvert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aFileBecomesAnother_data();
    void aFileBecomesAnother();
    void pathsMayBeRelative_data();
    void pathsMayBeRelative();
    void suffixesMayBeGiven();
    void encodingsMayBeGiven();
    void aFolderIsConvertedFileByFile();
    void filesOfOneNameDoNotMeet();
    void jsonTellsWhatWasWritten();
    void whatCannotBeReadIsTold_data();
    void whatCannotBeReadIsTold();
    void wrongUseIsRefused_data();
    void wrongUseIsRefused();
    void officesAreAskedForTheirFormats();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> mFolder;
};

void TstToolConvert::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    writeFileAt(path(u"a.txt"_s), "One \xc3\xa9\nTwo");
    writeFileAt(path(u"a.rtf"_s), "{\\rtf1 One {\\b two}\\par three}");
    writeFileAt(path(u"a.fountain"_s), Scene);
}

void TstToolConvert::aFileBecomesAnother_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("part");

    const auto row = [](const QString &source, const QString &target, const QByteArray &part) {
        QTest::newRow(qPrintable(source + u" to "_s + target)) << source << target << part;
    };
    row(u"a.txt"_s, u"b.rtf"_s, "One \\u233?");
    row(u"a.txt"_s, u"b.html"_s, "<p>One \xc3\xa9</p>");
    row(u"a.rtf"_s, u"b.txt"_s, "One two\nthree");
    row(u"a.rtf"_s, u"b.html"_s, "<p>One <b>two</b></p>");
    row(u"a.rtf"_s, u"b.xhtml"_s, "<title>a</title>");
    row(u"a.rtf"_s, u"b.pdf"_s, "%PDF");
    row(u"a.fountain"_s, u"b.fdx"_s, "<Paragraph Type=\"Scene Heading\"");
    row(u"a.fountain"_s, u"b.fountain"_s, Scene.trimmed());
}

void TstToolConvert::aFileBecomesAnother()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QByteArray, part);
    const ProgramResult result = runTool({u"convert"_s, path(source), path(target)});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QByteArray());
    const QByteArray content = contentOf(path(target));
    QVERIFY2(content.contains(part), content);
}

void TstToolConvert::pathsMayBeRelative_data()
{
    QTest::addColumn<QString>("target");

    for (const QString &target : {u"b.txt"_s, u"b.html"_s, u"b.pdf"_s, u"b.mmd"_s})
        QTest::newRow(qPrintable(target)) << target;
    if (!QStandardPaths::findExecutable(u"pdftops"_s).isEmpty())
        QTest::newRow("b.ps") << u"b.ps"_s;
    if (!QStandardPaths::findExecutable(u"pandoc"_s).isEmpty())
        QTest::newRow("b.tex") << u"b.tex"_s;
}

void TstToolConvert::pathsMayBeRelative()
{
    QFETCH(QString, target);
    ProgramPlace place;
    place.workingDirectory = mFolder->path();
    const ProgramResult result = runTool({u"convert"_s, u"a.rtf"_s, target}, place);
    QCOMPARE(result.errors, QByteArray());
    QVERIFY(!contentOf(path(target)).isEmpty());
}

void TstToolConvert::suffixesMayBeGiven()
{
    QFile::rename(path(u"a.rtf"_s), path(u"a"_s));
    QCOMPARE(runTool({u"convert"_s, path(u"a"_s), path(u"b"_s), u"--from"_s, u"rtf"_s, u"--to"_s,
                      u"txt"_s})
                 .status,
             0);
    QCOMPARE(contentOf(path(u"b"_s)), "One two\nthree");
}

void TstToolConvert::encodingsMayBeGiven()
{
    writeFileAt(path(u"latin.txt"_s), "\xe9");
    QCOMPARE(runTool({u"convert"_s, path(u"latin.txt"_s), path(u"b.html"_s), u"--encoding"_s,
                      u"ISO-8859-1"_s})
                 .status,
             0);
    QVERIFY(contentOf(path(u"b.html"_s)).contains("<p>\xc3\xa9</p>"));
    QCOMPARE(
        runTool({u"convert"_s, path(u"a.txt"_s), path(u"b.txt"_s), u"--encoding"_s, u"no such"_s})
            .status,
        2);
}

void TstToolConvert::aFolderIsConvertedFileByFile()
{
    writeFileAt(path(u"in/2.txt"_s), "two");
    writeFileAt(path(u"in/10.rtf"_s), "{\\rtf1 ten}");
    writeFileAt(path(u"in/picture.png"_s), "x");
    const ProgramResult result = runTool({u"convert"_s, path(u"in"_s), u"--to"_s, u"html"_s,
                                          u"--out"_s, path(u"new/out"_s), u"--json"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(QDir(path(u"new/out"_s)).entryList(QDir::Files),
             QStringList({u"10.html"_s, u"2.html"_s}));
    QCOMPARE(result.json().array().at(0).toObject().value(u"target"_s).toString(),
             path(u"new/out/2.html"_s));
}

void TstToolConvert::filesOfOneNameDoNotMeet()
{
    QCOMPARE(runTool({u"convert"_s, path(u"a.txt"_s), path(u"a.rtf"_s), u"--to"_s, u"html"_s,
                      u"--out"_s, path(u"out"_s)})
                 .status,
             0);
    QVERIFY(contentOf(path(u"out/a.html"_s)).contains("Two"));
    QVERIFY(contentOf(path(u"out/a 1.html"_s)).contains("three"));
}

void TstToolConvert::jsonTellsWhatWasWritten()
{
    const ProgramResult result =
        runTool({u"convert"_s, path(u"a.txt"_s), path(u"missing.txt"_s), u"--to"_s, u"html"_s,
                 u"--out"_s, path(u"out"_s), u"--json"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.json().array().size(), 1);
    QCOMPARE(result.json().array().at(0).toObject().value(u"source"_s).toString(),
             path(u"a.txt"_s));
    QCOMPARE(result.errorLines().size(), 1);
}

void TstToolConvert::whatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("text that isn't UTF-8") << u"bad.txt"_s
                                           << QByteArray("a\xff"
                                                         "b");
    QTest::newRow("cut-off rich text") << u"bad.rtf"_s << QByteArray("{\\rtf1 cut");
    QTest::newRow("no Final Draft") << u"bad.fdx"_s << QByteArray("<a>");
}

void TstToolConvert::whatCannotBeReadIsTold()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    writeFileAt(path(name), content);
    const ProgramResult result = runTool({u"convert"_s, path(name), path(u"b.html"_s)});
    QCOMPARE(result.status, 1);
    const QList<QByteArray> lines = result.errorLines();
    QVERIFY2(lines.constLast().contains("is not converted: "), result.errors);
    QVERIFY(!QFile::exists(path(u"b.html"_s)));
}

void TstToolConvert::wrongUseIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no target") << QStringList{u"a.txt"_s};
    QTest::newRow("a kind that isn't read") << QStringList{u"a.png"_s, u"b.txt"_s};
    QTest::newRow("a kind that isn't written") << QStringList{u"a.txt"_s, u"b.png"_s};
    QTest::newRow("--out without --to") << QStringList{u"a.txt"_s, u"--out"_s, u"d"_s};
    QTest::newRow("its own target") << QStringList{u"a.txt"_s, u"./a.txt"_s};
    QTest::newRow("an empty folder")
        << QStringList{u"empty"_s, u"--to"_s, u"txt"_s, u"--out"_s, u"d"_s};
}

void TstToolConvert::wrongUseIsRefused()
{
    QFETCH(QStringList, arguments);
    QVERIFY(QDir(mFolder->path()).mkdir(u"empty"_s));
    const auto before = everythingBelow(mFolder->path());
    ProgramPlace place;
    place.workingDirectory = mFolder->path();
    const ProgramResult result = runTool(QStringList(u"convert"_s) + arguments, place);
    QCOMPARE(result.status, 2);
    QCOMPARE(result.errorLines().size(), 1);
    QCOMPARE(everythingBelow(mFolder->path()), before);
}

void TstToolConvert::officesAreAskedForTheirFormats()
{
    if (QStandardPaths::findExecutable(u"soffice"_s).isEmpty())
        QSKIP("LibreOffice (soffice) isn't installed.");
    const ProgramResult there = runTool({u"convert"_s, path(u"a.rtf"_s), path(u"b.docx"_s)});
    QCOMPARE(there.errors, QByteArray());
    QVERIFY(contentOf(path(u"b.docx"_s)).startsWith("PK"));
    const ProgramResult back = runTool({u"convert"_s, path(u"b.docx"_s), path(u"b.html"_s)});
    QCOMPARE(back.errors, QByteArray());
    const QByteArray page = contentOf(path(u"b.html"_s));
    QVERIFY2(page.contains("<b>two</b>") && page.contains("three"), page);
}

TVL_TEST(TstToolConvert)
#include "tst_toolconvert.moc"
