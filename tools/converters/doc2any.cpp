// The document converter that the library starts: takes a document from one format to another.
//
//     tavel-doc2any [-engine NUMBER] [-title TEXT] [-work FOLDER] SOURCE TARGET
//
// The suffixes say what the formats are. The engine is a number of TVLImportExport::Engine. What is
// made on the way lies in a folder in FOLDER, or in one for temporary files, and goes at the end.
// The switches -webkit, -useoffice NUMBER and -useprinter are for web addresses, which aren't
// converted yet.

#include "Conversion.h"
#include "TerminationWatch.h"

#include "TVLCoreUtil.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct CommandLine
{
    ConversionTask task;
    QString workFolder = TVLCoreUtil::GetTavelinorTempPath();
};

/** Nothing if it isn't one. */
std::optional<CommandLine> parse(QStringList words)
{
    CommandLine line;
    QStringList files;
    while (!words.isEmpty()) {
        const QString word = words.takeFirst();
        const bool takesValue =
            word == u"-engine" || word == u"-title" || word == u"-work" || word == u"-useoffice";
        if (takesValue && words.isEmpty())
            return std::nullopt;
        const QString value = takesValue ? words.takeFirst() : QString();
        if (word == u"-engine")
            line.task.engine = TVLImportExport::Engine(value.toInt());
        else if (word == u"-title")
            line.task.title = value;
        else if (word == u"-work")
            line.workFolder = value;
        else if (!takesValue && word != u"-webkit" && word != u"-useprinter")
            files.append(word);
    }
    if (files.size() != 2)
        return std::nullopt;
    line.task.source = files.constFirst();
    line.task.target = files.constLast();
    if (line.task.title.isEmpty())
        line.task.title = QFileInfo(line.task.target).completeBaseName();
    return line;
}

bool isAddress(const QString &source)
{
    const QString scheme = QUrl(source).scheme();
    return scheme == u"http" || scheme == u"https";
}

Outcome convertAsAsked(const std::optional<CommandLine> &line, TVLProgress *progress)
{
    if (!line) {
        return {
            TTextTransform::Unsupported,
            u"usage: tavel-doc2any [-engine NUMBER] [-title TEXT] [-work FOLDER] SOURCE TARGET"_s};
    }
    if (isAddress(line->task.source))
        return {TTextTransform::Unsupported, u"Web addresses can't be converted."_s};
    if (!QFileInfo(line->task.source).isFile())
        return {TTextTransform::InputUnreadable};
    const QTemporaryDir folder(line->workFolder + u"/doc2any-XXXXXX"_s);
    if (!folder.isValid())
        return {TTextTransform::WritingFailed, folder.errorString()};
    return convertDocument(line->task, folder.path(), progress);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    TerminationWatch watch;
    return exitStatusOf(convertAsAsked(parse(QCoreApplication::arguments().mid(1)), &watch));
}
