#include "BenchMain.h"
#include "BenchTexts.h"
#include "RatioMeter.h"

#include "TVLFinalDraftParser_p.h"
#include "TVLFinalDraftReader.h"
#include "TVLFinalDraftWriter.h"
#include "TVLFountainParser_p.h"
#include "TvlFountain.h"

#include <QFile>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double ReadTarget = 1.5;
constexpr double ReadXmlTarget = 5;
constexpr double ParseTarget = 20;
constexpr double ParseXmlTarget = 2;
constexpr double WriteTarget = 10;
// Ten times the text may cost ten times the time and what the caches no longer hold. That is more
// for a document: putting the same runs into one grows fourteenfold by itself.
constexpr double GrowthTarget = 13;
constexpr double DocumentGrowthTarget = 15;
constexpr int Large = 10'000'000;

QString wordsOfScript(QRandomGenerator *random, int count)
{
    static const QStringList some = {u"rain"_s, u"over"_s,  u"the"_s,   u"city"_s, u"door"_s,
                                     u"he"_s,   u"waits"_s, u"light"_s, u"her"_s,  u"caf\u00e9"_s};
    QString text;
    for (int i = 0; i < count; ++i)
        text += (i > 0 ? u" "_s : QString()) + some.at(random->bounded(int(some.size())));
    return text;
}

/** A screenplay as Fountain, with as much talk as action. */
QString makeFountain(qsizetype bytes)
{
    QRandomGenerator random(1);
    QString text;
    text.reserve(bytes + 1000);
    int scene = 0;
    while (text.size() < bytes) {
        text += u"INT. HOUSE - NIGHT #%1#\n\n"_s.arg(++scene);
        for (int i = 0; i < 8; ++i) {
            text += u"The "_s + wordsOfScript(&random, 25) + u".\n\nSTEEL (V.O.)\n"_s;
            if (i % 3 == 0)
                text += u"(quiet)\n"_s;
            text += u"And *"_s + wordsOfScript(&random, 2) + u"* "_s + wordsOfScript(&random, 10)
                + u".\n\n"_s;
        }
        text += u"CUT TO:\n\n"_s;
    }
    return text;
}

std::unique_ptr<QTextDocument> documentOf(const QString &fountain)
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    if (!TvlFountain::parseText(fountain, document.get(), {}))
        document->clear();
    return document;
}

TimedWork timedTimes(int times, const std::function<void()> &work)
{
    return [=] {
        return processorSeconds([&] {
                   for (int i = 0; i < times; ++i)
                       work();
               })
            / times;
    };
}

int timesFor(qsizetype bytes)
{
    return int(std::max<qsizetype>(1, 2'000'000 / bytes));
}

/** A walk over the runs that takes their texts as UTF-8. */
void walk(const QTextDocument &document)
{
    QByteArray text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it)
            text += it.fragment().text().toUtf8();
    }
    benchmark::DoNotOptimize(text.data());
}

void readFountain(benchmark::State &state, int bytes)
{
    const QString text = makeFountain(bytes);
    const std::vector<BenchParagraph> paragraphs = paragraphsOf(*documentOf(text));
    measureAgainst(state,
                   {"the same runs put into a QTextDocument in one edit block",
                    double(text.toUtf8().size()), ReadTarget},
                   timedTimes(timesFor(bytes), [&] { documentOf(text); }),
                   timedTimes(timesFor(bytes), [&] {
                       QTextDocument document;
                       insertParagraphs(paragraphs, &document);
                   }));
}

/** Without the document, which takes the most time. */
void parseFountain(benchmark::State &state, int bytes)
{
    const QString text = makeFountain(bytes);
    measureAgainst(
        state,
        {"QString::split at line ends of the same text", double(text.toUtf8().size()), ParseTarget},
        timedTimes(timesFor(bytes),
                   [&] {
                       const TVLScreenplay play = TVLFountainParser::parse(text);
                       benchmark::DoNotOptimize(play.mParagraphs.data());
                   }),
        timedTimes(timesFor(bytes), [&] {
            const QStringList lines = text.split(u'\n');
            benchmark::DoNotOptimize(lines.constData());
        }));
}

void writeFountain(benchmark::State &state, int bytes)
{
    const auto document = documentOf(makeFountain(bytes));
    const double size = double(TvlFountain::toText(document.get(), {}).toUtf8().size());
    measureAgainst(
        state, {"a walk over the runs that takes their texts as UTF-8", size, WriteTarget},
        timedTimes(timesFor(bytes),
                   [&] {
                       QByteArray text = TvlFountain::toText(document.get(), {}).toUtf8();
                       benchmark::DoNotOptimize(text.data());
                   }),
        timedTimes(timesFor(bytes), [&] { walk(*document); }));
}

/** A file of Final Draft of about so many bytes. */
QByteArray makeFinalDraft(qsizetype bytes)
{
    constexpr double BytesPerCharacter = 1.9;
    return TVLFinalDraftWriter::toXml(
        documentOf(makeFountain(qsizetype(double(bytes) / BytesPerCharacter))).get(), {});
}

/** Reads a file again and again; loading it counts. */
class FinalDraftFile
{
public:
    explicit FinalDraftFile(qsizetype bytes)
        : mXml(makeFinalDraft(bytes))
        , mPath(mDirectory.filePath(u"script.fdx"_s))
    {
        QFile file(mPath);
        mOk = file.open(QIODevice::WriteOnly) && file.write(mXml) == mXml.size();
    }

    [[nodiscard]] const QByteArray &xml() const { return mXml; }
    [[nodiscard]] bool isOk() const { return mOk; }
    void read()
    {
        TVLFinalDraftReader reader;
        QTextDocument document;
        document.setUndoRedoEnabled(false);
        mOk = reader.load(mPath) && reader.read(&document, {}) && mOk;
    }

private:
    QTemporaryDir mDirectory;
    QByteArray mXml;
    QString mPath;
    bool mOk = false;
};

void readFinalDraft(benchmark::State &state, int bytes)
{
    FinalDraftFile file(bytes);
    measureAgainst(state,
                   {"a bare QXmlStreamReader pass over the same bytes", double(file.xml().size()),
                    ReadXmlTarget},
                   timedTimes(timesFor(bytes), [&] { file.read(); }),
                   timedTimes(timesFor(bytes), [&] {
                       QXmlStreamReader reader(file.xml());
                       while (!reader.atEnd())
                           reader.readNext();
                   }));
    if (!file.isOk())
        state.SkipWithError("the file could not be read");
}

/** Without the document. */
void parseFinalDraft(benchmark::State &state, int bytes)
{
    const QByteArray xml = makeFinalDraft(bytes);
    bool ok = true;
    measureAgainst(
        state,
        {"a bare QXmlStreamReader pass over the same bytes", double(xml.size()), ParseXmlTarget},
        timedTimes(timesFor(bytes), [&] { ok = TVLFinalDraftParser(xml).parse() && ok; }),
        timedTimes(timesFor(bytes), [&] {
            QXmlStreamReader reader(xml);
            while (!reader.atEnd())
                reader.readNext();
        }));
    if (!ok)
        state.SkipWithError("the file could not be read");
}

void writeFinalDraft(benchmark::State &state, int bytes)
{
    const auto document = documentOf(makeFountain(bytes / 2));
    const double size = double(TVLFinalDraftWriter::toXml(document.get(), {}).size());
    measureAgainst(state,
                   {"a walk over the runs that takes their texts as UTF-8", size, 3 * WriteTarget},
                   timedTimes(timesFor(bytes),
                              [&] {
                                  QByteArray xml = TVLFinalDraftWriter::toXml(document.get(), {});
                                  benchmark::DoNotOptimize(xml.data());
                              }),
                   timedTimes(timesFor(bytes), [&] { walk(*document); }));
}

void growthOfParsing(benchmark::State &state, int bytes)
{
    const QString large = makeFountain(bytes);
    const QString small = makeFountain(bytes / 10);
    const auto parse = [](const QString &text) {
        const TVLScreenplay play = TVLFountainParser::parse(text);
        benchmark::DoNotOptimize(play.mParagraphs.data());
    };
    measureAgainst(state, {"a tenth of the text", 0, GrowthTarget, "growth"},
                   timedTimes(timesFor(bytes), [&] { parse(large); }),
                   timedTimes(timesFor(bytes / 10), [&] { parse(small); }));
}

void growthOfFountain(benchmark::State &state, int bytes)
{
    const QString large = makeFountain(bytes);
    const QString small = makeFountain(bytes / 10);
    measureAgainst(state, {"a tenth of the text", 0, DocumentGrowthTarget, "growth"},
                   timedTimes(timesFor(bytes), [&] { documentOf(large); }),
                   timedTimes(timesFor(bytes / 10), [&] { documentOf(small); }));
}

void growthOfFinalDraft(benchmark::State &state, int bytes)
{
    FinalDraftFile large(bytes);
    FinalDraftFile small(bytes / 10);
    measureAgainst(state, {"a tenth of the file", 0, DocumentGrowthTarget, "growth"},
                   timedTimes(timesFor(bytes), [&] { large.read(); }),
                   timedTimes(timesFor(bytes / 10), [&] { small.read(); }));
}

} // namespace

void registerBenchmarks()
{
    constexpr int Rounds = 7;
    const auto add = [](const std::string &name, int bytes, auto measure) {
        registerRatio(name + '/' + std::to_string(bytes / 1000) + "_KB", Rounds,
                      [=](benchmark::State &state) { measure(state, bytes); });
    };
    for (const int bytes : {Large / 100, Large / 10, Large}) {
        add("fountain_read", bytes, readFountain);
        add("fountain_parse", bytes, parseFountain);
        add("fountain_write", bytes, writeFountain);
        add("finaldraft_read", bytes, readFinalDraft);
        add("finaldraft_parse", bytes, parseFinalDraft);
        add("finaldraft_write", bytes, writeFinalDraft);
    }
    for (const int bytes : {Large / 10, Large}) {
        add("fountain_parse_growth", bytes, growthOfParsing);
        add("fountain_read_growth", bytes, growthOfFountain);
        add("finaldraft_read_growth", bytes, growthOfFinalDraft);
    }
}
