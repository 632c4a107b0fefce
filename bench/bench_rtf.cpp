#include "BenchMain.h"
#include "BenchTexts.h"
#include "RatioMeter.h"

#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr double ReadTarget = 1.5;
constexpr double ConverterTarget = 0.1;
constexpr int ConverterPatienceMs = 5000;
constexpr int Large = 10'000'000;
// Ten times the text may cost ten times the time and what the caches no longer hold: putting the
// same runs into a document grows fourteenfold by itself.
constexpr double GrowthTarget = 15;

QByteArray rtfOf(const QTextDocument &document)
{
    return TVLTextRtfWriter(nullptr).toRtf(&document, true);
}

TimedWork timedReading(const QByteArray *rtf, int times, bool *ok)
{
    return [=] {
        const double time = processorSeconds([&] {
            for (int i = 0; i < times; ++i) {
                QTextDocument document;
                TVLTextRtfReader reader(&document);
                *ok = reader.read(*rtf) && *ok;
            }
        });
        return time / times;
    };
}

void readAgainstInsertion(benchmark::State &state, int bytes)
{
    const std::unique_ptr<QTextDocument> document = makeBenchText(bytes);
    const QByteArray rtf = rtfOf(*document);
    const std::vector<BenchParagraph> paragraphs = paragraphsOf(*document);
    const int times = std::max(1, 2'000'000 / bytes);
    bool ok = true;
    measureAgainst(state,
                   {"the same runs put into a QTextDocument in one edit block", double(rtf.size()),
                    ReadTarget},
                   timedReading(&rtf, times, &ok), [&] {
                       return processorSeconds([&] {
                                  for (int i = 0; i < times; ++i) {
                                      QTextDocument target;
                                      insertParagraphs(paragraphs, &target);
                                  }
                              })
                           / times;
                   });
    if (!ok)
        state.SkipWithError("the text could not be read");
}

void readGrowth(benchmark::State &state, int bytes)
{
    const QByteArray large = rtfOf(*makeBenchText(bytes));
    const QByteArray small = rtfOf(*makeBenchText(bytes / 10));
    bool ok = true;
    measureAgainst(state, {"a tenth of the text", 0, GrowthTarget, "growth"},
                   timedReading(&large, std::max(1, 1'000'000 / bytes), &ok),
                   timedReading(&small, std::max(1, 10'000'000 / bytes), &ok));
    if (!ok)
        state.SkipWithError("the text could not be read");
}

void writeAgainstWalk(benchmark::State &state, int bytes)
{
    const std::unique_ptr<QTextDocument> document = makeBenchText(bytes);
    const qsizetype size = rtfOf(*document).size();
    const int times = std::max(1, 2'000'000 / bytes);
    bool ok = true;
    measureAgainst(
        state, {"a walk over the runs that takes their texts as UTF-8", double(size)},
        [&] {
            return processorSeconds([&] {
                       for (int i = 0; i < times; ++i)
                           ok = rtfOf(*document).size() == size && ok;
                   })
                / times;
        },
        [&] {
            return processorSeconds([&] {
                       for (int i = 0; i < times; ++i) {
                           QByteArray text;
                           for (QTextBlock block = document->begin(); block.isValid();
                                block = block.next()) {
                               for (auto it = block.begin(); !it.atEnd(); ++it)
                                   text += it.fragment().text().toUtf8();
                           }
                           benchmark::DoNotOptimize(text.data());
                       }
                   })
                / times;
        });
    if (!ok)
        state.SkipWithError("the text was not written the same each time");
}

/** By the clock: the converter is a process of its own, whose processor time isn't ours. */
double clockSeconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

void readAgainstConverter(benchmark::State &state)
{
    const QString converter = QStandardPaths::findExecutable(u"unrtf"_s);
    if (converter.isEmpty()) {
        state.SkipWithError("unrtf is not installed");
        return;
    }
    const QTemporaryDir directory;
    const QString filePath = directory.filePath(u"large.rtf"_s);
    QFile file(filePath);
    bool ok = file.open(QIODevice::WriteOnly);
    file.write(rtfOf(*makeBenchText(Large)));
    file.close();
    measureAgainst(
        state,
        {"unrtf --text on the same file, which builds no document, stopped after 5 s",
         double(file.size()), ConverterTarget},
        [&] {
            return clockSeconds([&] {
                QFile input(filePath);
                QTextDocument document;
                TVLTextRtfReader reader(&document);
                ok = input.open(QIODevice::ReadOnly) && reader.read(&input) && ok;
            });
        },
        [&] {
            return clockSeconds([&] {
                QProcess process;
                process.setStandardOutputFile(QProcess::nullDevice());
                process.setStandardErrorFile(QProcess::nullDevice());
                process.start(converter, {u"--text"_s, filePath});
                ok = process.waitForStarted() && ok;
                // It may take minutes; having waited long enough settles the ratio.
                if (!process.waitForFinished(ConverterPatienceMs))
                    process.kill();
                process.waitForFinished();
            });
        });
    if (!ok)
        state.SkipWithError("the file could not be read");
}

} // namespace

void registerBenchmarks()
{
    constexpr int Rounds = 7;
    for (const int bytes : {Large / 100, Large / 10, Large}) {
        const std::string size = std::to_string(bytes / 1000) + "_KB";
        registerRatio("rtf_read/" + size, Rounds,
                      [=](benchmark::State &state) { readAgainstInsertion(state, bytes); });
        registerRatio("rtf_write/" + size, Rounds,
                      [=](benchmark::State &state) { writeAgainstWalk(state, bytes); });
    }
    for (const int bytes : {Large / 10, Large}) {
        registerRatio("rtf_read_growth/" + std::to_string(bytes / 1000) + "_KB", Rounds,
                      [=](benchmark::State &state) { readGrowth(state, bytes); });
    }
    registerRatio("rtf_read_against_converter", 3, readAgainstConverter);
}
