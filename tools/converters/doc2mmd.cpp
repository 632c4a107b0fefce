// The MultiMarkdown converter that the library starts, over pandoc.
//
//     tavel-doc2mmd -b -t html|latex|opml|odf [FLAG...] FILE
//
// Writes beside FILE, under its name with the suffix of what it is converted to; -b asks for that.
// The flags are those of MultiMarkdown's own converters.

#include "FlatOdf.h"
#include "MarkupConverter.h"
#include "MmdCommandLine.h"
#include "TerminationWatch.h"

#include "TVLCoreUtil.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>

using namespace Qt::StringLiterals;
using namespace TTextTransform;

namespace {

QStringList pandocArguments(const MmdCommandLine &line, const QString &headerPath,
                            const QString &result)
{
    QStringList arguments = {u"-f"_s,
                             line.reader,
                             u"-t"_s,
                             line.writer,
                             u"--standalone"_s,
                             u"--wrap=none"_s,
                             u"--metadata=pagetitle:"_s
                                 + QFileInfo(line.target).completeBaseName()};
    if (!headerPath.isEmpty())
        arguments += {u"-H"_s, headerPath};
    return arguments += {u"-o"_s, result, line.source};
}

/** Makes of a result that lies in a file of its own what is wanted. */
Outcome finish(const MmdCommandLine &line, const QString &result)
{
    if (!line.isFlatOdf)
        return copyFile(result, line.target);
    const QByteArray flat = flatOdf(TVLCoreUtil::ReadBinaryFile(result));
    QString error;
    if (flat.isEmpty())
        return {ConverterFailed};
    if (TVLCoreUtil::WriteBinaryFile(flat, line.target, &error))
        return {};
    return {WritingFailed, error};
}

Outcome convertMultiMarkdown(const QStringList &words, TVLProgress *progress)
{
    QString error;
    const std::optional<MmdCommandLine> line = MmdCommandLine::parse(words, &error);
    if (!line)
        return {Unsupported, error};
    if (!QFileInfo(line->source).isFile())
        return {InputUnreadable};
    const QTemporaryDir folder(TVLCoreUtil::GetTavelinorTempPath() + u"/doc2mmd-XXXXXX"_s);
    if (!folder.isValid())
        return {WritingFailed, folder.errorString()};
    QString headerPath;
    if (!line->htmlHeader.isEmpty()) {
        headerPath = folder.filePath(u"header.html"_s);
        if (!TVLCoreUtil::WriteUnicodeTextFile(line->htmlHeader, headerPath, &error))
            return {WritingFailed, error};
    }
    const QString result = folder.filePath(u"result.xml"_s);
    const Outcome ran = MarkupConverter(folder.path(), progress)
                            .run(pandocArguments(*line, headerPath, result), result);
    return ran.isDone() ? finish(*line, result) : ran;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    TerminationWatch watch;
    return exitStatusOf(convertMultiMarkdown(QCoreApplication::arguments().mid(1), &watch));
}
