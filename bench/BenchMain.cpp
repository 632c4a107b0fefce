#include "BenchMain.h"

#include "TVLOptions.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/** Shows the results as a table, for the console or in Markdown, and notes which targets are
 * missed. */
class Reporter : public benchmark::ConsoleReporter
{
public:
    explicit Reporter(bool markdown)
        : mMarkdown(markdown)
    {
    }

    [[nodiscard]] bool allTargetsMet() const { return mAllTargetsMet; }

    bool ReportContext(const Context &context) override
    {
        if (!mMarkdown)
            return ConsoleReporter::ReportContext(context);
        std::puts("| Measured | Against | Time (ms) | MB/s | Ratio | Target |");
        std::puts("| --- | --- | ---: | ---: | ---: | ---: |");
        return true;
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            mAllTargetsMet = mAllTargetsMet && isGood(run);
            if (mMarkdown)
                printRow(run);
        }
        if (!mMarkdown)
            ConsoleReporter::ReportRuns(runs);
    }

private:
    static const benchmark::Counter *counter(const Run &run, const char *name)
    {
        const auto found = run.counters.find(name);
        return found == run.counters.end() ? nullptr : &found->second;
    }

    static const benchmark::Counter *ratio(const Run &run)
    {
        const benchmark::Counter *ratio = counter(run, "ratio");
        return ratio ? ratio : counter(run, "growth");
    }

    static bool isGood(const Run &run)
    {
        if (run.error_occurred)
            return false;
        const benchmark::Counter *target = counter(run, "target");
        return !target || ratio(run)->value <= target->value;
    }

    static void printCell(const benchmark::Counter *counter, int decimals)
    {
        if (counter)
            std::printf(" %.*f |", decimals, counter->value);
        else
            std::printf(" |");
    }

    static void printRow(const Run &run)
    {
        std::printf("| %s | ", run.run_name.function_name.c_str());
        if (run.error_occurred) {
            std::printf("%s | | | failed | |\n", run.error_message.c_str());
            return;
        }
        std::printf("%s |", run.report_label.c_str());
        printCell(counter(run, "median_ms"), 2);
        printCell(counter(run, "MB/s"), 1);
        printCell(ratio(run), 2);
        if (isGood(run))
            printCell(counter(run, "target"), 1);
        else
            std::printf(" %.1f, **missed** |", counter(run, "target")->value);
        std::puts("");
        std::fflush(stdout);
    }

    const bool mMarkdown;
    bool mAllTargetsMet = true;
};

/** Takes a flag of our own out of the arguments, before the benchmark library sees them. */
bool takeFlag(int *argc, char **argv, const char *flag)
{
    char **end = std::remove_if(argv + 1, argv + *argc, [flag](const char *argument) {
        return std::strcmp(argument, flag) == 0;
    });
    const bool found = end != argv + *argc;
    *argc = int(end - argv);
    return found;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const bool check = takeFlag(&argc, argv, "--check");
    const bool markdown = takeFlag(&argc, argv, "--markdown");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;

    const QApplication application(argc, argv);
    const QTemporaryDir home;
    tvlOptions()->setFilePath(home.filePath(u"options.ini"_s));

    registerBenchmarks();
    Reporter reporter(markdown);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return check && !reporter.allTargetsMet() ? 1 : 0;
}
