#include "BenchItems.h"
#include "BenchMain.h"
#include "RatioMeter.h"
#include "XmlTokens.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TestBinderProject.h"

#include <QBuffer>

namespace {

constexpr double ReadTarget = 1.8;
constexpr double WriteTarget = 1.8;
// The targets are stated for projects of this size; smaller ones are reported beside it.
constexpr int TargetItems = 100'000;

std::optional<double> targetFor(int items, double target)
{
    return items == TargetItems ? std::optional(target) : std::nullopt;
}

template <typename Reader, typename Read>
double timeRead(QByteArray document, Read &&read)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return processorSeconds([&] {
        Reader reader(&buffer);
        read(&reader);
    });
}

template <typename Writer, typename Write>
double timeWrite(QByteArray *document, Write &&write)
{
    document->clear();
    QBuffer buffer(document);
    buffer.open(QIODevice::WriteOnly);
    return processorSeconds([&] {
        Writer writer(&buffer);
        write(&writer);
    });
}

void readBinder(benchmark::State &state, int items, BenchShape shape)
{
    const QByteArray binder = makeBenchProject(items, shape)->write();
    bool ok = true;
    measureAgainst(
        state, {"bare QXmlStreamReader pass", double(binder.size()), targetFor(items, ReadTarget)},
        [&] {
            TestBinderProject project;
            const double time = timeRead<TVLBinderReader>(binder, [&](TVLBinderReader *reader) {
                ok = reader->readProject(&project, project.binderRoot()) && ok;
            });
            ok = ok && project.mUuidMap.size() == items;
            return time;
        },
        [&] {
            return timeRead<QXmlStreamReader>(binder, [&](QXmlStreamReader *reader) {
                while (!reader->atEnd())
                    reader->readNext();
                ok = !reader->hasError() && ok;
            });
        });
    if (!ok)
        state.SkipWithError("the binder could not be read");
}

void writeBinder(benchmark::State &state, int items, BenchShape shape)
{
    const std::unique_ptr<TestBinderProject> project = makeBenchProject(items, shape);
    const QByteArray expected = project->write();
    const XmlTokens tokens(expected);
    QByteArray document;
    bool same = true;
    measureAgainst(
        state,
        {"bare QXmlStreamWriter pass, same bytes", double(expected.size()),
         targetFor(items, WriteTarget)},
        [&] {
            const double time = timeWrite<TVLBinderWriter>(&document, [&](TVLBinderWriter *writer) {
                writer->writeProject(project.get(), project->binderRoot());
            });
            same = same && document == expected;
            return time;
        },
        [&] {
            const double time =
                timeWrite<QXmlStreamWriter>(&document, [&](QXmlStreamWriter *writer) {
                    writer->setAutoFormatting(true);
                    tokens.write(writer);
                });
            same = same && document == expected;
            return time;
        });
    if (!same)
        state.SkipWithError("subject and limit wrote different bytes");
}

} // namespace

void registerBenchmarks()
{
    using Benchmark = void (*)(benchmark::State &, int, BenchShape);
    const std::pair<const char *, Benchmark> benchmarks[] = {{"read_binder", readBinder},
                                                             {"write_binder", writeBinder}};
    const std::pair<int, int> sizesAndRounds[] = {{1'000, 51}, {10'000, 15}, {TargetItems, 5}};
    for (const auto &[name, benchmark] : benchmarks) {
        for (const BenchShape shape : {BenchShape::Nested, BenchShape::Flat}) {
            for (const auto &[items, rounds] : sizesAndRounds)
                registerRatio(benchName(name, shape, items), rounds,
                              [benchmark = benchmark, items = items,
                               shape](benchmark::State &state) { benchmark(state, items, shape); });
        }
    }
}
