#include "StandIn.h"
#include "TestMain.h"

#include "TTextTransform.h"
#include "TVLCoreUtil.h"

#include <QDir>
#include <QLockFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

/** Long enough for a converter of ours to start a stand-in. */
constexpr int StartLimit = 3'000;

void writeSource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("{\\rtf1 x}") < 0)
        qFatal("could not write %s", qPrintable(path));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Run
{
    int status;
    QString errors;
};

Run runConverter(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(LongLimit))
        qFatal("%s does not end", qPrintable(program));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardError()).trimmed()};
}

} // namespace

/** The programs between the library and LibreOffice and pandoc, for which others stand in. */
class TstConverters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theOfficeIsCalled_data();
    void theOfficeIsCalled();
    void theOfficeHasAProfileOfItsOwn();
    void theOfficeHasItsTemporaryFilesThere();
    void pandocIsCalled_data();
    void pandocIsCalled();
    void pandocMakesRichTextInTwoSteps_data();
    void pandocMakesRichTextInTwoSteps();
    void aWayMayHaveSteps_data();
    void aWayMayHaveSteps();
    void whatHasNoWayIsUnsupported_data();
    void whatHasNoWayIsUnsupported();
    void anOfficeThatGoesWrongIsTold_data();
    void anOfficeThatGoesWrongIsTold();
    void officesWaitForEachOther();
    void whatTerminatesTakesItsOfficeAlong();

    void theMultiMarkdownConverterCallsPandoc_data();
    void theMultiMarkdownConverterCallsPandoc();
    void multiMarkdownGoesWrongInWords_data();
    void multiMarkdownGoesWrongInWords();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    /** Names in the folder, and in that for temporary files below it. */
    [[nodiscard]] QStringList names() const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<EnvironmentValue> mTemporaryPlace;
    std::unique_ptr<EnvironmentValue> mOffice;
    std::unique_ptr<EnvironmentValue> mMarkup;
};

void TstConverters::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mTemporaryPlace = std::make_unique<EnvironmentValue>("TMPDIR", mFolder->path().toUtf8());
    mOffice = std::make_unique<EnvironmentValue>("TAVEL_SOFFICE", standInPath().toUtf8());
    mMarkup = std::make_unique<EnvironmentValue>("TAVEL_PANDOC", standInPath().toUtf8());
    TTextTransform::setTimeLimit(LongLimit);
}

void TstConverters::cleanup()
{
    QCOMPARE(QDir(TVLCoreUtil::GetTavelinorTempPath())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
    mOffice.reset();
    mMarkup.reset();
    mTemporaryPlace.reset();
}

QStringList TstConverters::names() const
{
    return QDir(mFolder->path()).entryList(QDir::Files | QDir::Hidden);
}

void TstConverters::theOfficeIsCalled_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("filter");
    const auto row = [](const char *source, const char *target, const char *filter) {
        QTest::addRow("%s to %s", source, target)
            << QString::fromLatin1(source) << QString::fromLatin1(target)
            << QString::fromLatin1(filter);
    };
    row("rtf", "docx", "docx:MS Word 2007 XML");
    row("rtf", "doc", "doc:MS Word 97");
    row("rtf", "odt", "odt:writer8");
    row("rtf", "pdf", "pdf:writer_pdf_Export");
    row("docx", "rtf", "rtf:Rich Text Format");
    row("doc", "rtf", "rtf:Rich Text Format");
    row("odt", "rtf", "rtf:Rich Text Format");
    row("odt", "docx", "docx:MS Word 2007 XML");
    row("doc", "txt", "txt:Text (encoded):UTF8");
}

void TstConverters::theOfficeIsCalled()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, filter);
    const StandInRecord record("convert");
    writeSource(path(u"My text."_s + source));
    QString error;
    const auto code = TTextTransform::transformFileViaTools(
        path(u"My text."_s + source), path(u"Out."_s + target), TVLFormat::format(target),
        OfficeEngine, &error, false);
    QCOMPARE(error, QString());
    QCOMPARE(code, TTextTransform::NoError);
    QCOMPARE(contentOf(path(u"Out."_s + target)), "converted");
    const QString place = record.lines().value(0);
    QVERIFY(place.startsWith(TVLCoreUtil::GetTavelinorTempPath()));
    QCOMPARE(record.lines(),
             QStringList({place, u"-env:UserInstallation=file://"_s + place + u"/profile"_s,
                          u"--headless"_s, u"--nologo"_s, u"--nodefault"_s, u"--norestore"_s,
                          u"--nolockcheck"_s, u"--convert-to"_s, filter, u"--outdir"_s,
                          place + u"/office"_s, place + u"/source."_s + source}));
}

void TstConverters::theOfficeHasAProfileOfItsOwn()
{
    QStringList places;
    writeSource(path(u"a.rtf"_s));
    for (int i = 0; i < 2; ++i) {
        const StandInRecord record("convert");
        QCOMPARE(TTextTransform::transformDoc2Any(path(u"a.rtf"_s), path(u"a.docx"_s),
                                                  TVLFormat::Docx, OfficeEngine, nullptr, false),
                 TTextTransform::NoError);
        places.append(record.lines().value(1));
    }
    QVERIFY(places.constFirst() != places.constLast());
}

void TstConverters::theOfficeHasItsTemporaryFilesThere()
{
    const StandInRecord record("place");
    writeSource(path(u"a.doc"_s));
    QCOMPARE(TTextTransform::transformFileViaTools(path(u"a.doc"_s), path(u"b.rtf"_s),
                                                   TVLFormat::Rtf, OfficeEngine, nullptr, false),
             TTextTransform::NoError);
    QCOMPARE(record.lines().size(), 1);
    QVERIFY(record.lines().constFirst().startsWith(TVLCoreUtil::GetTavelinorTempPath()
                                                   + u"/convert-"_s));
}

void TstConverters::pandocIsCalled_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("a page to Markdown") << u"html"_s << u"md"_s
                                        << QStringList({u"--sandbox"_s, u"-f"_s, u"html"_s, u"-t"_s,
                                                        u"markdown-smart"_s, u"--wrap=none"_s});
    QTest::newRow("Markdown to a page")
        << u"md"_s << u"html"_s
        << QStringList({u"--sandbox"_s, u"-f"_s, u"markdown-smart"_s, u"-t"_s, u"html5"_s,
                        u"--wrap=none"_s, u"--standalone"_s, u"--metadata=pagetitle:Out"_s});
    QTest::newRow("DOCX to a book") << u"docx"_s << u"epub"_s
                                    << QStringList({u"-f"_s, u"docx"_s, u"-t"_s, u"epub3"_s,
                                                    u"--wrap=none"_s, u"--metadata=title:Out"_s});
}

void TstConverters::pandocIsCalled()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QStringList, arguments);
    const StandInRecord record("convert");
    writeSource(path(u"My text."_s + source));
    QCOMPARE(TTextTransform::transformFileViaTools(
                 path(u"My text."_s + source), path(u"Out."_s + target), TVLFormat::format(target),
                 MarkupEngine, nullptr, false),
             TTextTransform::NoError);
    const QString place = record.lines().value(0);
    arguments.replaceInStrings(u"PLACE"_s, place);
    const QString result = QFileInfo(place).path() + u"/result."_s + target;
    QCOMPARE(record.lines(),
             QStringList(place) + arguments
                 + QStringList({u"-o"_s, result, path(u"My text."_s + source)}));
}

void TstConverters::pandocMakesRichTextInTwoSteps_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QStringList>("switches");
    const QStringList head = {u"--variable=has-frontmatter"_s};
    QTest::newRow("Markdown") << u"md"_s << u"markdown-smart"_s << head;
    QTest::newRow("MultiMarkdown") << u"mmd"_s << u"markdown_mmd-smart"_s << head;
    QTest::newRow("a page") << u"html"_s << u"html"_s << head;
    QTest::newRow("an XML page") << u"xhtml"_s << u"html"_s << head;
    QTest::newRow("a book") << u"epub"_s << u"epub"_s << QStringList();
}

void TstConverters::pandocMakesRichTextInTwoSteps()
{
    QFETCH(QString, source);
    QFETCH(QString, reader);
    QFETCH(QStringList, switches);
    const StandInRecord record("convert");
    const QString sourcePath = path(u"My text."_s + source);
    writeSource(sourcePath);
    QCOMPARE(TTextTransform::transformFileViaTools(sourcePath, path(u"Out.rtf"_s), TVLFormat::Rtf,
                                                   MarkupEngine, nullptr, false),
             TTextTransform::NoError);
    QCOMPARE(contentOf(path(u"Out.rtf"_s)), "converted");
    const QString place = record.lines().value(0);
    const QStringList reading = {place,
                                 u"--sandbox"_s,
                                 u"-f"_s,
                                 reader,
                                 u"-t"_s,
                                 u"json"_s,
                                 u"--extract-media="_s + place + u"/media"_s,
                                 u"-o"_s,
                                 place + u"/read.json"_s,
                                 sourcePath};
    const QStringList writing = {place,   u"-f"_s,  u"json"_s,
                                 u"-t"_s, u"rtf"_s, u"--template="_s + place + u"/template.rtf"_s};
    const QString result = QFileInfo(place).path() + u"/result.rtf"_s;
    QCOMPARE(record.lines(),
             reading + writing + switches + QStringList({u"-o"_s, result, place + u"/own.json"_s}));
}

void TstConverters::aWayMayHaveSteps_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("steps");
    QTest::newRow("rich text to Markdown")
        << u"rtf"_s << u"md"_s << QStringList({u"docx"_s, u"md"_s});
    QTest::newRow("rich text to a book")
        << u"rtf"_s << u"epub"_s << QStringList({u"docx"_s, u"epub"_s});
    QTest::newRow("Markdown to a book")
        << u"md"_s << u"epub"_s << QStringList({u"rtf"_s, u"docx"_s, u"epub"_s});
    QTest::newRow("Markdown to DOCX") << u"md"_s << u"docx"_s << QStringList({u"rtf"_s, u"docx"_s});
    QTest::newRow("DOC to Markdown") << u"doc"_s << u"md"_s << QStringList({u"docx"_s, u"md"_s});
    QTest::newRow("a book to ODT") << u"epub"_s << u"odt"_s << QStringList({u"rtf"_s, u"odt"_s});
}

void TstConverters::aWayMayHaveSteps()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QStringList, steps);
    const StandInRecord record("convert");
    writeSource(path(u"a."_s + source));
    QCOMPARE(TTextTransform::transformFileViaTools(path(u"a."_s + source), path(u"b."_s + target),
                                                   TVLFormat::format(target), NoEngine, nullptr,
                                                   false),
             TTextTransform::NoError);
    QStringList made;
    const QStringList lines = record.lines();
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (lines.at(i - 1) == u"--convert-to")
            made.append(lines.at(i).section(u':', 0, 0));
        else if (lines.at(i - 1) == u"-o" && !lines.at(i).endsWith(u".json"))
            made.append(QFileInfo(lines.at(i)).suffix());
    }
    QCOMPARE(made, steps);
}

void TstConverters::whatHasNoWayIsUnsupported_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::newRow("a picture") << QStringList({u"a.rtf"_s, u"b.png"_s}) << 67;
    QTest::newRow("from a picture") << QStringList({u"b.png"_s, u"a.rtf"_s}) << 67;
    QTest::newRow("unknown suffixes") << QStringList({u"a.rtf"_s, u"b.xyz"_s}) << 67;
    QTest::newRow("an address") << QStringList(
        {u"-webkit"_s, u"http://example.org/a.html"_s, u"b.pdf"_s})
                                << 67;
    QTest::newRow("an address by the office") << QStringList(
        {u"-useoffice"_s, u"1"_s, u"-useprinter"_s, u"https://example.org/"_s, u"b.pdf"_s})
                                              << 67;
    QTest::newRow("no target") << QStringList({u"a.rtf"_s}) << 67;
    QTest::newRow("nothing") << QStringList() << 67;
    QTest::newRow("a switch without its value")
        << QStringList({u"a.rtf"_s, u"b.docx"_s, u"-engine"_s}) << 67;
    QTest::newRow("no source") << QStringList({u"none.rtf"_s, u"b.docx"_s}) << 69;
}

void TstConverters::whatHasNoWayIsUnsupported()
{
    QFETCH(QStringList, arguments);
    const StandInRecord record("convert");
    writeSource(path(u"a.rtf"_s));
    writeSource(path(u"b.png"_s));
    for (QString &argument : arguments) {
        if (QFileInfo(argument).suffix().size() > 2 && !argument.contains(u':'))
            argument = path(argument);
    }
    const Run run = runConverter(TTextTransform::doc2AnyPath(), arguments);
    QTEST(run.status, "status");
    QVERIFY(!run.errors.isEmpty());
    QCOMPARE(record.lines(), QStringList());
    QCOMPARE(names(), QStringList({u"a.rtf"_s, u"b.png"_s}));
}

void TstConverters::anOfficeThatGoesWrongIsTold_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<TTextTransform::Error>("code");
    QTest::addColumn<QString>("reason");
    QTest::newRow("hangs") << QByteArray("hang") << TTextTransform::TimedOut
                           << u"The format converter did not end in time."_s;
    QTest::newRow("prints without end") << QByteArray("endless") << TTextTransform::TimedOut
                                        << u"The format converter did not end in time."_s;
    QTest::newRow("dies") << QByteArray("die") << TTextTransform::ConverterFailed
                          << u"LibreOffice has crashed."_s;
    QTest::newRow("writes nothing") << QByteArray("silent") << TTextTransform::WritingFailed
                                    << u"The file could not be written."_s;
    QTest::newRow("fails") << QByteArray("unknown") << TTextTransform::ConverterFailed
                           << u"LibreOffice has ended with exit code 99."_s;
    QTest::newRow("isn't there") << QByteArray() << TTextTransform::ConverterNotFound
                                 << u"LibreOffice isn't installed."_s;
}

void TstConverters::anOfficeThatGoesWrongIsTold()
{
    QFETCH(QByteArray, mode);
    const StandInRecord record(mode);
    if (mode.isEmpty())
        qputenv("TAVEL_SOFFICE", "/no/such/office");
    writeSource(path(u"a.rtf"_s));
    TTextTransform::setTimeLimit(StartLimit);
    QString error;
    const auto code = TTextTransform::transformDoc2Any(
        path(u"a.rtf"_s), path(u"b.docx"_s), TVLFormat::Docx, OfficeEngine, &error, false);
    QTEST(code, "code");
    QTEST(error, "reason");
    QCOMPARE(names(), QStringList(u"a.rtf"_s));
    QTRY_COMPARE(record.livingProcesses(), QStringList());
    if (mode == "hang")
        QCOMPARE(record.lines().size(), 3);
}

void TstConverters::officesWaitForEachOther()
{
    const StandInRecord record("convert");
    writeSource(path(u"a.rtf"_s));
    QLockFile other(TVLCoreUtil::GetTavelinorTempPath() + u"/office.lock"_s);
    QVERIFY(other.lock());
    QProcess process;
    process.start(TTextTransform::doc2AnyPath(), {path(u"a.rtf"_s), path(u"b.docx"_s)});
    QVERIFY(!process.waitForFinished(1'000));
    QCOMPARE(record.lines(), QStringList());
    other.unlock();
    QVERIFY(process.waitForFinished(LongLimit));
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(contentOf(path(u"b.docx"_s)), "converted");
}

void TstConverters::whatTerminatesTakesItsOfficeAlong()
{
    const StandInRecord record("hang");
    writeSource(path(u"a.rtf"_s));
    QProcess process;
    process.start(TTextTransform::doc2AnyPath(), {path(u"a.rtf"_s), path(u"b.docx"_s)});
    QTRY_COMPARE_WITH_TIMEOUT(record.lines().size(), 3, LongLimit);
    process.terminate();
    QVERIFY(process.waitForFinished(LongLimit));
    QCOMPARE(process.exitCode(), TTextTransform::FirstExitStatus + int(TTextTransform::Canceled));
    QTRY_COMPARE(record.livingProcesses(), QStringList());
    QCOMPARE(names(), QStringList(u"a.rtf"_s));
}

void TstConverters::theMultiMarkdownConverterCallsPandoc_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("writer");
    QTest::addColumn<QString>("target");
    const auto row = [](const char *words, const char *reader, const char *writer,
                        const char *target) {
        QTest::newRow(words) << QString::fromLatin1(words).split(u' ')
                             << u"markdown_mmd+smart"_s + QString::fromLatin1(reader)
                             << QString::fromLatin1(writer) << QString::fromLatin1(target);
    };
    row("-b -t html FILE", "", "html5", "html");
    row("-b -t latex FILE", "", "latex", "tex");
    row("-b -t opml FILE", "", "opml", "opml");
    row("-b -t latex mmd2tex-xslt FILE", "", "latex", "tex");
    row("-b -t html --nosmart FILE", "-smart", "html5", "html");
    row("-b -t html --nolabels FILE", "-auto_identifiers-mmd_header_identifiers", "html5", "html");
    row("-b -t html --nonotes FILE", "-footnotes", "html5", "html");
    row("-b -t html --filter-html FILE", "-raw_html", "html5", "html");
    row("-b -t html --filter-styles FILE", "", "html5", "html");
    row("-b -t html --process-html FILE", "+markdown_in_html_blocks", "html5", "html");
    row("-b -t html --nosmart --nolabels --nonotes --filter-html --filter-styles mmd-xslt FILE",
        "-smart-auto_identifiers-mmd_header_identifiers-footnotes-raw_html", "html5", "html");
    row("-b -t html FILE --nosmart=true --xslt=true", "", "html5", "html");
}

void TstConverters::theMultiMarkdownConverterCallsPandoc()
{
    QFETCH(QStringList, words);
    QFETCH(QString, reader);
    QFETCH(QString, writer);
    QFETCH(QString, target);
    const StandInRecord record("convert");
    const QString source = path(u"My book.mmd"_s);
    writeSource(source);
    words.replaceInStrings(u"FILE"_s, source);
    const Run run = runConverter(TTextTransform::tvlDoc2MmdPath(), words);
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
    const QString place = record.lines().value(0);
    QCOMPARE(record.lines(),
             QStringList({place, u"--sandbox"_s, u"-f"_s, reader, u"-t"_s, writer,
                          u"--standalone"_s, u"--wrap=none"_s, u"--metadata=pagetitle:My book"_s,
                          u"-o"_s, place + u"/result.xml"_s, source}));
    QCOMPARE(contentOf(path(u"My book."_s + target)), "converted");
    QCOMPARE(names().size(), 2);
}

void TstConverters::multiMarkdownGoesWrongInWords_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("code");
    const QStringList sound = {u"-b"_s, u"-t"_s, u"html"_s, u"FILE"_s};
    QTest::newRow("an unknown format")
        << QByteArray("convert") << QStringList({u"-b"_s, u"-t"_s, u"docx"_s, u"FILE"_s}) << 3;
    QTest::newRow("no file") << QByteArray("convert") << QStringList({u"-b"_s}) << 3;
    QTest::newRow("a missing file")
        << QByteArray("convert") << QStringList({u"-t"_s, u"html"_s, u"/no/such/file.mmd"_s}) << 5;
    QTest::newRow("pandoc dies") << QByteArray("die") << sound << 4;
    QTest::newRow("pandoc writes nothing") << QByteArray("silent") << sound << 6;
    QTest::newRow("pandoc isn't there") << QByteArray() << sound << 1;
    QTest::newRow("pandoc writes no XML")
        << QByteArray("convert") << QStringList({u"-t"_s, u"odf"_s, u"FILE"_s}) << 4;
}

void TstConverters::multiMarkdownGoesWrongInWords()
{
    QFETCH(QByteArray, mode);
    QFETCH(QStringList, words);
    QFETCH(int, code);
    const StandInRecord record(mode);
    if (mode.isEmpty())
        qputenv("TAVEL_PANDOC", "/no/such/pandoc");
    writeSource(path(u"a.mmd"_s));
    words.replaceInStrings(u"FILE"_s, path(u"a.mmd"_s));
    const Run run = runConverter(TTextTransform::tvlDoc2MmdPath(), words);
    QCOMPARE(run.status, TTextTransform::FirstExitStatus + code);
    QVERIFY(!run.errors.isEmpty());
    QCOMPARE(names(), QStringList(u"a.mmd"_s));
}

TVL_TEST(TstConverters)
#include "tst_converters.moc"
