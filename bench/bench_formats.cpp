#include "BenchMain.h"
#include "BenchTexts.h"
#include "RatioMeter.h"

#include "TVLSelectTextCodecDialog.h"
#include "TVLTextTransform.h"
#include "TVLTextXhtmlExporter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr double PageTarget = 1.5;
constexpr double GrowthTarget = 13;
constexpr double ConverterTarget = 0.05;
constexpr int Large = 10'000'000;

TimedWork timedExport(const QTextDocument *document, const QString &path, int times, bool *ok)
{
    return [=] {
        const double time = processorSeconds([&] {
            for (int i = 0; i < times; ++i) {
                TVLTextXhtmlExporter exporter(document);
                *ok = exporter.toHtml(path) && *ok;
            }
        });
        return time / times;
    };
}

void pageAgainstToHtml(benchmark::State &state, int bytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"page.html"_s);
    const std::unique_ptr<QTextDocument> document = makeBenchText(bytes);
    const int times = std::max(1, 2'000'000 / bytes);
    bool ok = true;
    measureAgainst(state, {"QTextDocument::toHtml of the same document", double(bytes), PageTarget},
                   timedExport(document.get(), path, times, &ok), [&] {
                       return processorSeconds([&] {
                                  for (int i = 0; i < times; ++i)
                                      benchmark::DoNotOptimize(document->toHtml().data());
                              })
                           / times;
                   });
    if (!ok)
        state.SkipWithError("the page was not written");
}

void pageGrowth(benchmark::State &state, int bytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"page.html"_s);
    const std::unique_ptr<QTextDocument> large = makeBenchText(bytes);
    const std::unique_ptr<QTextDocument> small = makeBenchText(bytes / 10);
    bool ok = true;
    measureAgainst(state, {"a tenth of the text", 0, GrowthTarget, "growth"},
                   timedExport(large.get(), path, 1, &ok), timedExport(small.get(), path, 10, &ok));
    if (!ok)
        state.SkipWithError("the page was not written");
}

/** By the clock: the converter is a process of its own, whose processor time isn't ours. */
double clockSeconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

void transformAgainstConverter(benchmark::State &state)
{
    const QString converter = QStandardPaths::findExecutable(u"pandoc"_s);
    if (converter.isEmpty()) {
        state.SkipWithError("pandoc is not installed");
        return;
    }
    const QTemporaryDir folder;
    const QString source = folder.filePath(u"text.txt"_s);
    const QString target = folder.filePath(u"text.html"_s);
    QFile file(source);
    bool ok = file.open(QIODevice::WriteOnly);
    file.write(makeBenchText(Large / 10)->toPlainText().toUtf8());
    file.close();
    const TVLUnattendedTextCodec codec("UTF-8");
    measureAgainst(
        state,
        {"pandoc -f markdown -t html on the same file", double(file.size()), ConverterTarget},
        [&] {
            return clockSeconds([&] {
                ok = TVLTextTransform::transformFile(source, TVLFormat::PlainText, target,
                                                     TVLFormat::Html, {})
                        == 0
                    && ok;
            });
        },
        [&] {
            return clockSeconds([&] {
                ok = QProcess::execute(
                         converter,
                         {u"-f"_s, u"markdown"_s, u"-t"_s, u"html"_s, u"-o"_s, target, source})
                        == 0
                    && ok;
            });
        });
    if (!ok)
        state.SkipWithError("the file could not be converted");
}

} // namespace

void registerBenchmarks()
{
    constexpr int Rounds = 7;
    for (const int bytes : {Large / 100, Large / 10, Large}) {
        const std::string size = std::to_string(bytes / 1000) + "_KB";
        registerRatio("html_export/" + size, Rounds,
                      [=](benchmark::State &state) { pageAgainstToHtml(state, bytes); });
    }
    for (const int bytes : {Large / 10, Large}) {
        registerRatio("html_export_growth/" + std::to_string(bytes / 1000) + "_KB", Rounds,
                      [=](benchmark::State &state) { pageGrowth(state, bytes); });
    }
    registerRatio("txt_to_html_against_converter", 3, transformAgainstConverter);
}
