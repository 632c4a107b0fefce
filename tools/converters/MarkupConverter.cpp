#include "MarkupConverter.h"

#include "OwnPictures.h"

#include "TVLConverters.h"
#include "TVLCoreUtil.h"
#include "TVLProcess.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;
using namespace TTextTransform;

namespace {

const QString MarkupName = u"pandoc"_s;
constexpr int LimitMilliseconds = 4 * 60 * 1000;

struct MarkupRow
{
    TVLFormat::Format format;
    QStringView reader; ///< Empty for a format that is only written.
    QStringView writer; ///< Empty for a format that is only read.
};

// Quotes and dashes are meant as they stand.
constexpr MarkupRow MarkupRows[] = {
    {TVLFormat::PlainText, u"", u"plain"},
    {TVLFormat::Rtf, u"", u"rtf"},
    {TVLFormat::Html, u"html", u"html5"},
    {TVLFormat::Xhtml, u"html", u"html4"},
    {TVLFormat::Docx, u"docx", u""},
    {TVLFormat::Mmd, u"markdown_mmd-smart", u"markdown_mmd-smart"},
    {TVLFormat::Opml, u"opml", u""},
    {TVLFormat::Markdown, u"markdown-smart", u"markdown-smart"},
    {TVLFormat::EPubBook, u"epub", u"epub3"},
};

const MarkupRow *markupRow(TVLFormat::Format format)
{
    for (const MarkupRow &row : MarkupRows) {
        if (row.format == format)
            return &row;
    }
    return nullptr;
}

/** Whether pandoc's exit code says that it could not make out what it has read. */
bool meansUnreadableInput(int exitCode)
{
    constexpr int Parsing = 64;
    constexpr int DecodingUtf8 = 92;
    constexpr int UnpackingBook = 63;
    return exitCode == Parsing || exitCode == DecodingUtf8 || exitCode == UnpackingBook;
}

/**
 * What pandoc puts around rich text. Its own template begins with title, author and date: a book
 * has these in its text already, or gets them from the converter that made it. What a writer puts
 * at the head of a Markdown file is his own, and stands there.
 */
constexpr char RtfTemplate[] =
    R"({\rtf1\ansi\deff0{\fonttbl{\f0 \fswiss Helvetica;}{\f1 \fmodern Courier;}}
{\colortbl;\red255\green0\blue0;\red0\green0\blue255;}
\widowctrl\hyphauto
$if(has-frontmatter)$$if(title)${\pard\qc\b\fs36 $title$\par}
$endif$$for(author)${\pard\qc $author$\par}
$endfor$$if(date)${\pard\qc $date$\par}
$endif$$endif$$body$
}
)";

} // namespace

MarkupConverter::MarkupConverter(QString workFolder, TVLProgress *progress)
    : mWorkFolder(std::move(workFolder))
    , mProgress(progress)
{
}

bool MarkupConverter::canConvert(TVLFormat::Format from, TVLFormat::Format to)
{
    const MarkupRow *source = markupRow(from);
    const MarkupRow *target = markupRow(to);
    if (!source || !target || source->reader.isEmpty() || target->writer.isEmpty())
        return false;
    return to != TVLFormat::EPubBook || from == TVLFormat::Docx;
}

Outcome MarkupConverter::convert(const QString &source, TVLFormat::Format from,
                                 const QString &target, TVLFormat::Format to, const QString &title)
{
    if (to == TVLFormat::Rtf)
        return toRichText(source, from, target);
    QStringList arguments = {u"-f"_s, markupRow(from)->reader.toString(), u"-t"_s,
                             markupRow(to)->writer.toString(), u"--wrap=none"_s};
    if (to == TVLFormat::Html || to == TVLFormat::Xhtml)
        arguments += {u"--standalone"_s, u"--metadata=pagetitle:"_s + title};
    else if (to == TVLFormat::EPubBook)
        arguments += u"--metadata=title:"_s + title;
    arguments += {u"-o"_s, target, source};
    return to == TVLFormat::EPubBook ? runFreely(arguments, target) : run(arguments, target);
}

/** Reads confined, and writes freely what then holds nothing to be opened but files of ours. */
Outcome MarkupConverter::toRichText(const QString &source, TVLFormat::Format from,
                                    const QString &target)
{
    const QString readPath = mWorkFolder + u"/read.json"_s;
    const Outcome read =
        run({u"-f"_s, markupRow(from)->reader.toString(), u"-t"_s, u"json"_s,
             u"--extract-media="_s + mWorkFolder + u"/media"_s, u"-o"_s, readPath, source},
            readPath);
    if (!read.isDone())
        return read;
    const QByteArray document = withOwnPictures(TVLCoreUtil::ReadBinaryFile(readPath),
                                                QFileInfo(source).absolutePath(), mWorkFolder);
    const QString ownPath = mWorkFolder + u"/own.json"_s;
    const QString templatePath = mWorkFolder + u"/template.rtf"_s;
    if (document.isEmpty())
        return {InputNotParsed};
    QString error;
    if (!TVLCoreUtil::WriteBinaryFile(document, ownPath, &error)
        || !TVLCoreUtil::WriteBinaryFile(RtfTemplate, templatePath, &error))
        return {WritingFailed, error};
    QStringList arguments = {u"-f"_s, u"json"_s, u"-t"_s, u"rtf"_s,
                             u"--template="_s + templatePath};
    if (from != TVLFormat::EPubBook)
        arguments += u"--variable=has-frontmatter"_s;
    return runFreely(arguments += {u"-o"_s, target, ownPath}, target);
}

Outcome MarkupConverter::run(const QStringList &arguments, const QString &result)
{
    return runFreely(QStringList(u"--sandbox"_s) + arguments, result);
}

Outcome MarkupConverter::runFreely(const QStringList &arguments, const QString &result)
{
    // Where nobody listens, so that no picture is fetched from anywhere.
    qputenv("http_proxy", "http://127.0.0.1:9");
    qputenv("https_proxy", "http://127.0.0.1:9");
    const QString program = TVLConverters::markupPath();
    if (program.isEmpty())
        return {ConverterNotFound, u"%1 isn't installed."_s.arg(MarkupName)};
    const TVLProcess::Result ended =
        TVLProcess::execute(program, arguments, LimitMilliseconds, mWorkFolder, mProgress);
    Outcome outcome = outcomeOf(ended, MarkupName);
    if (outcome.code == ConverterFailed && meansUnreadableInput(ended.exitCode))
        outcome.code = InputNotParsed;
    return outcome.isDone() ? outcomeOfFile(result, ended.output) : outcome;
}
