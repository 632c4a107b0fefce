#include "BenchMain.h"
#include "RatioMeter.h"

#include "TVLDomDoc.h"
#include "TVLOpmlReader.h"
#include "TVLProjectModel.h"

#include <QBuffer>
#include <QDomDocument>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <memory>
#include <string>

using namespace Qt::StringLiterals;

namespace {

// Ten times the items may cost ten times the time and what the caches no longer hold.
constexpr double GrowthTarget = 13;
constexpr double DocumentTarget = 1.5;
constexpr double ReadTarget = 4;

/** An outline of parts of ten chapters of ten scenes, each of about a hundred bytes. */
QByteArray makeOutline(int items)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\">\n<head>"
                     "<title>The Book</title></head>\n<body>\n";
    for (int i = 0; i < items; ++i) {
        const int place = i % 111;
        const int level = place == 0 ? 0 : (place - 1) % 11 == 0 ? 1 : 2;
        const bool isLast = i + 1 == items;
        xml += QByteArray(2 * level, ' ') + "<outline text=\"In which it rains, for the time "
            + QByteArray::number(i)
            + "\" _note=\"Nobody is seen in the street.&#10;A light goes out.\""
            + (level == 2 ? "/>\n" : ">\n");
        const int nextPlace = (i + 1) % 111;
        const int nextLevel = isLast || nextPlace == 0 ? 0 : (nextPlace - 1) % 11 == 0 ? 1 : 2;
        for (int open = level == 2 ? 1 : level; open >= nextLevel; --open)
            xml += "</outline>\n";
    }
    return xml + "</body>\n</opml>\n";
}

/** A file that is read into a new project each time. */
class OutlineFile
{
public:
    explicit OutlineFile(int items)
        : mItems(items)
        , mXml(makeOutline(items))
        , mPath(mDirectory.filePath(u"outline.opml"_s))
    {
        QFile file(mPath);
        mOk = file.open(QIODevice::WriteOnly) && file.write(mXml) == mXml.size();
    }

    [[nodiscard]] const QByteArray &xml() const { return mXml; }
    [[nodiscard]] bool isOk() const { return mOk; }

    /** The seconds that reading takes, without those for a project. */
    double read()
    {
        const std::unique_ptr<TVLProjectModel> model(
            TVLProjectModel::createBlankProjectInMemory(mDirectory.filePath(u"Novel.tavel"_s)));
        const int before = model->totalNodesCount();
        const double time = processorSeconds([&] {
            TVLOpmlReader reader(model.get());
            mOk = reader.read(mPath, TVL::OpmlNoteAsNotes, true, model->draftFolder(), -1) && mOk;
        });
        // The folder of the outline's title comes to them.
        mOk = model->totalNodesCount() == before + mItems + 1 && mOk;
        return time;
    }

private:
    QTemporaryDir mDirectory;
    int mItems;
    QByteArray mXml;
    QString mPath;
    bool mOk = false;
};

double secondsOfTokens(const QByteArray &xml)
{
    return processorSeconds([&] {
        QXmlStreamReader reader(xml);
        while (!reader.atEnd())
            reader.readNext();
    });
}

double secondsOfDocument(const QByteArray &xml)
{
    return processorSeconds([&] {
        QDomDocument document;
        if (!document.setContent(xml))
            qFatal("the outline isn't well-formed");
    });
}

double secondsOfCursor(QByteArray xml)
{
    return processorSeconds([&] {
        QBuffer buffer(&xml);
        TVLDomDoc doc;
        if (!buffer.open(QIODevice::ReadOnly) || !doc.setContent(&buffer))
            qFatal("the outline isn't well-formed");
    });
}

enum class Against { Tokens, Document };

void load(benchmark::State &state, int items, Against against)
{
    const QByteArray xml = makeOutline(items);
    const bool isByDocument = against == Against::Document;
    measureAgainst(
        state,
        {isByDocument ? "a bare QDomDocument load of the same bytes"
                      : "a bare QXmlStreamReader pass over the same bytes",
         double(xml.size()), isByDocument ? std::optional(DocumentTarget) : std::nullopt},
        [&] { return secondsOfCursor(xml); },
        [&] { return isByDocument ? secondsOfDocument(xml) : secondsOfTokens(xml); });
}

void read(benchmark::State &state, int items, Against against)
{
    OutlineFile file(items);
    const bool isByDocument = against == Against::Document;
    measureAgainst(
        state,
        {isByDocument ? "a bare QDomDocument load of the same bytes"
                      : "a bare QXmlStreamReader pass over the same bytes",
         double(file.xml().size()),
         isByDocument && items == 100'000 ? std::optional(ReadTarget) : std::nullopt},
        [&] { return file.read(); },
        [&] { return isByDocument ? secondsOfDocument(file.xml()) : secondsOfTokens(file.xml()); });
    if (!file.isOk())
        state.SkipWithError("not every outline became an item");
}

void growth(benchmark::State &state, int items)
{
    OutlineFile large(items);
    OutlineFile small(items / 10);
    measureAgainst(
        state, {"a tenth of the items", 0, GrowthTarget, "growth"}, [&] { return large.read(); },
        [&] { return small.read(); });
    if (!large.isOk() || !small.isOk())
        state.SkipWithError("not every outline became an item");
}

} // namespace

void registerBenchmarks()
{
    const auto add = [](const std::string &name, int items, auto measure) {
        // The texts of so many items take gigabytes, and a round half a minute.
        const int rounds = items == 100'000 ? 1 : 3;
        registerRatio(name + '/' + std::to_string(items), rounds,
                      [=](benchmark::State &state) { measure(state, items); });
    };
    for (const int items : {1'000, 10'000, 100'000}) {
        add("outline_load", items,
            [](auto &state, int count) { load(state, count, Against::Tokens); });
        add("outline_load_against_document", items,
            [](auto &state, int count) { load(state, count, Against::Document); });
        add("outline_read", items,
            [](auto &state, int count) { read(state, count, Against::Tokens); });
        add("outline_read_against_document", items,
            [](auto &state, int count) { read(state, count, Against::Document); });
        if (items > 1'000)
            add("outline_read_growth", items, growth);
    }
}
