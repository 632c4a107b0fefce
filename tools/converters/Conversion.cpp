#include "Conversion.h"

#include "MarkupConverter.h"
#include "OfficeConverter.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace TVLImportExport;

namespace {

/** A file with its format. */
struct FormattedFile
{
    QString path;
    TVLFormat::Format format;
};

FormattedFile fileAt(const QString &path)
{
    return {path, TVLFormat::format(path)};
}

bool canConvert(Engine engine, TVLFormat::Format from, TVLFormat::Format to)
{
    switch (engine) {
    case OfficeEngine:
    case PlainOfficeEngine:
        return OfficeConverter::canRead(from) && OfficeConverter::canWrite(to);
    case MarkupEngine:
        return MarkupConverter::canConvert(from, to);
    default:
        return false;
    }
}

class DocumentConverter
{
public:
    DocumentConverter(const ConversionTask &task, const QString &workFolder, TVLProgress *progress)
        : mTask(task)
        , mWorkFolder(workFolder)
        , mProgress(progress)
    {
    }

    [[nodiscard]] Outcome convert();

private:
    [[nodiscard]] Engine engineFor(TVLFormat::Format from, TVLFormat::Format to) const;
    [[nodiscard]] bool isPassable(const QList<FormattedFile> &way) const;
    [[nodiscard]] Outcome go(const QList<FormattedFile> &way);
    [[nodiscard]] Outcome step(const FormattedFile &source, const FormattedFile &target);

    const ConversionTask &mTask;
    const QString &mWorkFolder;
    TVLProgress *mProgress;
};

Outcome DocumentConverter::convert()
{
    const FormattedFile source = fileAt(mTask.source);
    const FormattedFile target = fileAt(mTask.target);
    const FormattedFile rtf = fileAt(mWorkFolder + u"/between.rtf"_s);
    const FormattedFile docx = fileAt(mWorkFolder + u"/between.docx"_s);
    const QList<FormattedFile> ways[] = {
        {source, target},
        {source, rtf, target},
        {source, docx, target},
        {source, rtf, docx, target},
    };
    for (const QList<FormattedFile> &way : ways) {
        if (isPassable(way))
            return go(way);
    }
    return {TTextTransform::Unsupported};
}

bool DocumentConverter::isPassable(const QList<FormattedFile> &way) const
{
    for (qsizetype i = 1; i < way.size(); ++i) {
        if (engineFor(way.at(i - 1).format, way.at(i).format) == NoEngine)
            return false;
    }
    return true;
}

Outcome DocumentConverter::go(const QList<FormattedFile> &way)
{
    Outcome outcome;
    for (qsizetype i = 1; i < way.size() && outcome.isDone(); ++i)
        outcome = step(way.at(i - 1), way.at(i));
    return outcome;
}

Engine DocumentConverter::engineFor(TVLFormat::Format from, TVLFormat::Format to) const
{
    const Engine engines[] = {mTask.engine, TVLFormat::tableImportEngine(from),
                              TVLFormat::tableExportEngine(to), OfficeEngine, MarkupEngine};
    for (const Engine engine : engines) {
        if (canConvert(engine, from, to))
            return engine;
    }
    return NoEngine;
}

Outcome DocumentConverter::step(const FormattedFile &source, const FormattedFile &target)
{
    if (engineFor(source.format, target.format) == MarkupEngine) {
        return MarkupConverter(mWorkFolder, mProgress)
            .convert(source.path, source.format, target.path, target.format, mTask.title);
    }
    return OfficeConverter(mWorkFolder, mProgress)
        .convert(source.path, source.format, target.path, target.format);
}

} // namespace

Outcome convertDocument(const ConversionTask &task, const QString &workFolder,
                        TVLProgress *progress)
{
    return DocumentConverter(task, workFolder, progress).convert();
}
