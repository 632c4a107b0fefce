#include "StandIn.h"
#include "TestMain.h"

#include "TTextTransform.h"
#include "TVLCoreUtil.h"
#include "TVLProgress.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(path));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList temporaryFiles()
{
    return QDir(TVLCoreUtil::GetTavelinorTempPath())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

class CountingProgress : public TVLProgress
{
public:
    CountingProgress(QStringList *log, bool isCanceled)
        : mLog(log)
        , mIsCanceled(isCanceled)
    {
    }
    void begin(const QString &text, int total) override
    {
        mLog->append(u"%1 %2"_s.arg(text).arg(total));
    }
    [[nodiscard]] bool isCanceled() const override { return mIsCanceled; }
    void finish() override { mLog->append(u"finished"_s); }

private:
    QStringList *mLog;
    bool mIsCanceled;
};

} // namespace

/** Conversions by programs that something else stands in for. */
class TstOutsideTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void errorsHaveNumbersAndWords_data();
    void errorsHaveNumbersAndWords();
    void converterPathsAreThoseOfTheEnvironment();
    void convertersLieBesideTheApplication();
    void theDocumentConverterIsCalled_data();
    void theDocumentConverterIsCalled();
    void temporaryFilesAreTheOwnersAlone();
    void anExistingTargetIsReplaced();
    void aConverterThatGoesWrongLeavesNothing_data();
    void aConverterThatGoesWrongLeavesNothing();
    void aTargetThatCannotBeOpenedIsTold();
    void aSourceThatIsNotThereIsTold();
    void aFormatWithoutFilesIsUnsupported();
    void statusesOfConvertersBecomeErrors_data();
    void statusesOfConvertersBecomeErrors();
    void theReasonMayBeLeftOut();
    void progressIsShownOnRequest();
    void cancellingKillsTheConverter();

private:
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<EnvironmentValue> mTemporaryPlace;
    std::unique_ptr<EnvironmentValue> mConverter;
    QString mSource;
    QString mTarget;
};

void TstOutsideTools::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mTemporaryPlace = std::make_unique<EnvironmentValue>("TMPDIR", mFolder->path().toUtf8());
    mConverter = std::make_unique<EnvironmentValue>("TAVEL_DOC2ANY", standInPath().toUtf8());
    mSource = mFolder->filePath(u"The source.rtf"_s);
    mTarget = mFolder->filePath(u"The target.docx"_s);
    writeFile(mSource, "{\\rtf1 x}");
    TTextTransform::setTimeLimit(LongLimit);
}

void TstOutsideTools::cleanup()
{
    QCOMPARE(temporaryFiles(), QStringList());
    mConverter.reset();
    mTemporaryPlace.reset();
}

void TstOutsideTools::errorsHaveNumbersAndWords_data()
{
    QTest::addColumn<unsigned int>("number");
    QTest::addColumn<TTextTransform::Error>("error");
    QTest::addColumn<QString>("words");
    const auto row = [](unsigned int number, TTextTransform::Error error, const char *words) {
        QTest::addRow("%u", number) << number << error << QString::fromLatin1(words);
    };
    row(0, TTextTransform::NoError, "");
    row(1, TTextTransform::ConverterNotFound, "Format Converter not found.");
    row(2, TTextTransform::WordNeeded, "May require MS Word to be installed.");
    row(3, TTextTransform::Unsupported, "Document type is unsupported.");
    row(4, TTextTransform::ConverterFailed, "The format converter has failed.");
    row(5, TTextTransform::InputUnreadable, "The file could not be read.");
    row(6, TTextTransform::WritingFailed, "The file could not be written.");
    row(7, TTextTransform::OutputNotOpened, "The file could not be opened for writing.");
    row(8, TTextTransform::InputNotParsed, "The file is not what its format demands.");
    row(9, TTextTransform::NoDocument, "There is no document.");
    row(10, TTextTransform::IntermediateMissing, "An intermediate file is missing.");
    row(11, TTextTransform::TimedOut, "The format converter did not end in time.");
    row(12, TTextTransform::Canceled, "The conversion was cancelled.");
    row(13, TTextTransform::Error(13), "Unknown error");
    row(4294967295, TTextTransform::Error(4294967295), "Unknown error");
}

void TstOutsideTools::errorsHaveNumbersAndWords()
{
    QFETCH(unsigned int, number);
    QFETCH(TTextTransform::Error, error);
    QCOMPARE(unsigned(error), number);
    QTEST(TTextTransform::errorDescription(number), "words");
}

void TstOutsideTools::converterPathsAreThoseOfTheEnvironment()
{
    const EnvironmentValue other("TAVEL_DOC2MMD", "/no/such/converter");
    QCOMPARE(TTextTransform::tvlDoc2MmdPath(), u"/no/such/converter"_s);
    QCOMPARE(TTextTransform::doc2AnyPath(), standInPath());
}

void TstOutsideTools::convertersLieBesideTheApplication()
{
    mConverter.reset();
    const EnvironmentValue noPath("PATH", "/no/such/folder");
    const QString folder = QCoreApplication::applicationDirPath();
    QCOMPARE(TTextTransform::doc2AnyPath(), folder + u"/tavel-doc2any"_s);
    QCOMPARE(TTextTransform::tvlDoc2MmdPath(), folder + u"/tavel-doc2mmd"_s);
}

void TstOutsideTools::theDocumentConverterIsCalled_data()
{
    QTest::addColumn<TVLFormat::Format>("format");
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("resultName");
    QTest::newRow("docx") << TVLFormat::Docx << OfficeEngine << u"result.docx"_s;
    QTest::newRow("odt") << TVLFormat::Odt << OfficeEngine << u"result.odt"_s;
    QTest::newRow("rtf") << TVLFormat::Rtf << MarkupEngine << u"result.rtf"_s;
    QTest::newRow("book") << TVLFormat::EPubBook << MarkupEngine << u"result.epub"_s;
    QTest::newRow("an engine that is passed through")
        << TVLFormat::Doc << PlainOfficeEngine << u"result.doc"_s;
}

void TstOutsideTools::theDocumentConverterIsCalled()
{
    QFETCH(TVLFormat::Format, format);
    QFETCH(Engine, engine);
    QFETCH(QString, resultName);
    const auto lineOf = [&](const auto &transform) {
        const StandInRecord record("record");
        QString error;
        const auto code = transform(mSource, mTarget, format, engine, &error, false);
        if (code != TTextTransform::NoError || !error.isEmpty())
            qFatal("%s", qPrintable(error));
        return record.lines();
    };
    for (const auto transform :
         {&TTextTransform::transformFileViaTools, &TTextTransform::transformDoc2Any}) {
        const QStringList lines = lineOf(transform);
        const QString place = lines.value(0);
        QVERIFY(place.startsWith(TVLCoreUtil::GetTavelinorTempPath() + u'/'));
        QCOMPARE(
            lines,
            QStringList({place, u"-engine"_s, QString::number(engine), u"-title"_s, u"The target"_s,
                         u"-work"_s, place, mSource, place + u'/' + resultName}));
        QCOMPARE(readFile(mTarget), "converted");
    }
}

void TstOutsideTools::temporaryFilesAreTheOwnersAlone()
{
    const StandInRecord record("record");
    QCOMPARE(TTextTransform::transformDoc2Any(mSource, mTarget, TVLFormat::Docx, OfficeEngine,
                                              nullptr, false),
             TTextTransform::NoError);
    QVERIFY(!QFileInfo::exists(record.lines().value(0)));
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
        | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(!(QFile::permissions(TVLCoreUtil::GetTavelinorTempPath()) & others));
}

void TstOutsideTools::anExistingTargetIsReplaced()
{
    const StandInRecord record("record");
    writeFile(mTarget, "something longer than what is converted");
    QCOMPARE(TTextTransform::transformDoc2Any(mSource, mTarget, TVLFormat::Docx, OfficeEngine,
                                              nullptr, false),
             TTextTransform::NoError);
    QCOMPARE(readFile(mTarget), "converted");
}

void TstOutsideTools::aConverterThatGoesWrongLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<TTextTransform::Error>("code");
    QTest::addColumn<QString>("reason");
    QTest::newRow("hangs") << QByteArray("hang") << TTextTransform::TimedOut
                           << u"The format converter did not end in time."_s;
    QTest::newRow("prints without end") << QByteArray("endless") << TTextTransform::TimedOut
                                        << u"The format converter did not end in time."_s;
    QTest::newRow("dies") << QByteArray("die") << TTextTransform::ConverterFailed
                          << u"The program has crashed."_s;
    QTest::newRow("writes nothing") << QByteArray("silent") << TTextTransform::WritingFailed
                                    << u"The format converter has written nothing."_s;
    QTest::newRow("isn't there") << QByteArray() << TTextTransform::ConverterNotFound
                                 << u"Format Converter not found."_s;
    QTest::newRow("fails") << QByteArray("unknown") << TTextTransform::ConverterFailed
                           << u"The program has ended with exit code 99."_s;
}

void TstOutsideTools::aConverterThatGoesWrongLeavesNothing()
{
    QFETCH(QByteArray, mode);
    const StandInRecord record(mode);
    const QByteArray before = "what was there before";
    for (const bool isThere : {false, true}) {
        if (isThere)
            writeFile(mTarget, before);
        if (mode.isEmpty())
            qputenv("TAVEL_DOC2ANY", "/no/such/converter");
        TTextTransform::setTimeLimit(ShortLimit);
        QElapsedTimer time;
        time.start();
        QString error;
        const auto code = TTextTransform::transformDoc2Any(mSource, mTarget, TVLFormat::Docx,
                                                           OfficeEngine, &error, false);
        QVERIFY(time.elapsed() < ShortLimit + Patience);
        QTEST(code, "code");
        QTEST(error, "reason");
        QCOMPARE(QFileInfo::exists(mTarget), isThere);
        QCOMPARE(readFile(mTarget), isThere ? before : QByteArray());
        QTRY_COMPARE(record.livingProcesses(), QStringList());
        QCOMPARE(temporaryFiles(), QStringList());
    }
}

void TstOutsideTools::aTargetThatCannotBeOpenedIsTold()
{
    const StandInRecord record("record");
    QString error;
    QCOMPARE(TTextTransform::transformDoc2Any(mSource, mFolder->filePath(u"no/such/place.docx"_s),
                                              TVLFormat::Docx, OfficeEngine, &error, false),
             TTextTransform::OutputNotOpened);
    QVERIFY(!error.isEmpty());
}

void TstOutsideTools::aSourceThatIsNotThereIsTold()
{
    const StandInRecord record("record");
    QString error;
    QCOMPARE(TTextTransform::transformDoc2Any(mFolder->filePath(u"none.rtf"_s), mTarget,
                                              TVLFormat::Docx, OfficeEngine, &error, false),
             TTextTransform::InputUnreadable);
    QCOMPARE(error, u"The file could not be read."_s);
    QCOMPARE(record.lines(), QStringList());
}

void TstOutsideTools::aFormatWithoutFilesIsUnsupported()
{
    const StandInRecord record("record");
    for (const auto format : {TVLFormat::NoFormat, TVLFormat::Print, TVLFormat::Format(99)}) {
        QCOMPARE(TTextTransform::transformFileViaTools(mSource, mTarget, format, OfficeEngine,
                                                       nullptr, false),
                 TTextTransform::Unsupported);
    }
    QCOMPARE(record.lines(), QStringList());
}

void TstOutsideTools::statusesOfConvertersBecomeErrors_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<TTextTransform::Error>("code");
    QTest::newRow("done") << u"0"_s << TTextTransform::NoError;
    QTest::newRow("any other program's") << u"1"_s << TTextTransform::ConverterFailed;
    QTest::newRow("none of ours") << u"64"_s << TTextTransform::ConverterFailed;
    QTest::newRow("behind ours") << u"77"_s << TTextTransform::ConverterFailed;
    for (int code = 1; code <= int(TTextTransform::Canceled); ++code) {
        const int status = TTextTransform::FirstExitStatus + code;
        QTest::addRow("%d", status) << QString::number(status) << TTextTransform::Error(code);
    }
}

void TstOutsideTools::statusesOfConvertersBecomeErrors()
{
    QFETCH(QString, status);
    QFETCH(TTextTransform::Error, code);
    QString error;
    QCOMPARE(TTextTransform::transformProcess(standInPath(), {u"complain"_s, status},
                                              mFolder->path(), &error, false),
             code);
    QCOMPARE(error, code == TTextTransform::NoError ? QString() : u"out of ink"_s);
}

void TstOutsideTools::theReasonMayBeLeftOut()
{
    QCOMPARE(TTextTransform::transformProcess(standInPath(), {u"die"_s}, QString(), nullptr, false),
             TTextTransform::ConverterFailed);
}

void TstOutsideTools::progressIsShownOnRequest()
{
    QStringList log;
    TVLProgress::setMaker([&log] { return std::make_unique<CountingProgress>(&log, false); });
    for (const bool isShown : {false, true}) {
        QCOMPARE(TTextTransform::transformProcess(standInPath(), {u"silent"_s}, QString(), nullptr,
                                                  isShown),
                 TTextTransform::NoError);
        QCOMPARE(log, isShown ? QStringList({u"Converting... 600"_s, u"finished"_s}) : log);
        QCOMPARE(log.isEmpty(), !isShown);
    }
    TVLProgress::setMaker({});
}

void TstOutsideTools::cancellingKillsTheConverter()
{
    const StandInRecord record("hang");
    QStringList log;
    TVLProgress::setMaker([&log] { return std::make_unique<CountingProgress>(&log, true); });
    QString error;
    QCOMPARE(TTextTransform::transformDoc2Any(mSource, mTarget, TVLFormat::Docx, OfficeEngine,
                                              &error, true),
             TTextTransform::Canceled);
    TVLProgress::setMaker({});
    QCOMPARE(error, u"The conversion was cancelled."_s);
    QVERIFY(!QFileInfo::exists(mTarget));
    QTRY_COMPARE(record.livingProcesses(), QStringList());
}

TVL_TEST(TstOutsideTools)
#include "tst_outsidetools.moc"
