#include "TTextTransform.h"

#include "TVLConverters.h"
#include "TVLCoreUtil.h"
#include "TVLDialogProgress.h"
#include "TVLErrorText_p.h"
#include "TVLProcess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr int FiveMinutes = 5 * 60 * 1000;
constexpr int StepsPerSecond = 10;
/** A program may have said much before it said why it ends. */
constexpr qsizetype LongestWords = 2000;

int &timeLimitMilliseconds()
{
    static int limit = FiveMinutes;
    return limit;
}

QString words(const char *text)
{
    return QCoreApplication::translate("TTextTransform", text);
}

constexpr const char *ErrorWords[] = {
    "",
    QT_TRANSLATE_NOOP("TTextTransform", "Format Converter not found."),
    QT_TRANSLATE_NOOP("TTextTransform", "May require MS Word to be installed."),
    QT_TRANSLATE_NOOP("TTextTransform", "Document type is unsupported."),
    QT_TRANSLATE_NOOP("TTextTransform", "The format converter has failed."),
    QT_TRANSLATE_NOOP("TTextTransform", "The file could not be read."),
    QT_TRANSLATE_NOOP("TTextTransform", "The file could not be written."),
    QT_TRANSLATE_NOOP("TTextTransform", "The file could not be opened for writing."),
    QT_TRANSLATE_NOOP("TTextTransform", "The file is not what its format demands."),
    QT_TRANSLATE_NOOP("TTextTransform", "There is no document."),
    QT_TRANSLATE_NOOP("TTextTransform", "An intermediate file is missing."),
    QT_TRANSLATE_NOOP("TTextTransform", "The format converter did not end in time."),
    QT_TRANSLATE_NOOP("TTextTransform", "The conversion was cancelled."),
};
static_assert(std::size(ErrorWords) == TTextTransform::Canceled + 1, "every error has its words");

TTextTransform::Error fail(TTextTransform::Error code, QString *error, const QString &reason)
{
    tvlSetError(error, reason);
    return code;
}

/** What an error says itself. */
TTextTransform::Error fail(TTextTransform::Error code, QString *error)
{
    return fail(code, error, TTextTransform::errorDescription(code));
}

TTextTransform::Error errorOf(const TVLProcess::Result &result)
{
    using namespace TTextTransform;
    if (result.isDone())
        return NoError;
    if (result.isCanceled)
        return Canceled;
    if (result.error == QProcess::FailedToStart)
        return ConverterNotFound;
    if (result.error == QProcess::Timedout)
        return TimedOut;
    const int own = result.exitCode - FirstExitStatus;
    return own > 0 && own <= int(Canceled) ? Error(own) : ConverterFailed;
}

/** What a program said last, or what became of it. */
QString reasonOf(const TVLProcess::Result &result, TTextTransform::Error code)
{
    const QString said = QString::fromUtf8(result.output).trimmed().right(LongestWords);
    const bool hasEnded = result.exitStatus == QProcess::NormalExit;
    if (hasEnded && !said.isEmpty())
        return said;
    if (code != TTextTransform::ConverterFailed)
        return TTextTransform::errorDescription(code);
    return hasEnded ? words("The program has ended with exit code %1.").arg(result.exitCode)
                    : TVLProcess::toString(result.error);
}

/** Brings a converter's result to where it belongs. */
TTextTransform::Error take(const QString &result, const QString &target, QString *error)
{
    if (!QFileInfo(result).isFile())
        return fail(TTextTransform::WritingFailed, error,
                    words("The format converter has written nothing."));
    bool isRead = false;
    const QByteArray bytes = TVLCoreUtil::ReadBinaryFile(result, &isRead);
    if (!isRead)
        return fail(TTextTransform::IntermediateMissing, error);
    bool couldOpen = false;
    if (TVLCoreUtil::WriteBinaryFile(bytes, target, error, &couldOpen))
        return TTextTransform::NoError;
    return couldOpen ? TTextTransform::WritingFailed : TTextTransform::OutputNotOpened;
}

} // namespace

QString TTextTransform::errorDescription(unsigned int error)
{
    if (error == NoError)
        return {};
    return error < std::size(ErrorWords) ? words(ErrorWords[error]) : words("Unknown error");
}

QString TTextTransform::tvlDoc2MmdPath()
{
    return TVLConverters::ownProgram(u"tavel-doc2mmd"_s, "TAVEL_DOC2MMD");
}

QString TTextTransform::doc2AnyPath()
{
    return TVLConverters::ownProgram(u"tavel-doc2any"_s, "TAVEL_DOC2ANY");
}

int TTextTransform::timeLimit()
{
    return timeLimitMilliseconds();
}

void TTextTransform::setTimeLimit(int milliseconds)
{
    timeLimitMilliseconds() = milliseconds;
}

TTextTransform::Error TTextTransform::transformProcess(const QString &program,
                                                       const QStringList &arguments,
                                                       const QString &workingDirectory,
                                                       QString *error, bool showProgress)
{
    const TVLDialogProgress::Look look = {.title = words("Document Converter"),
                                          .cancelText = words("Cancel")};
    const auto progress = TVLDialogProgress::make(showProgress, look, nullptr);
    progress->begin(words("Converting..."), timeLimit() / 1000 * StepsPerSecond);
    const TVLProcess::Result result =
        TVLProcess::execute(program, arguments, timeLimit(), workingDirectory, progress.get());
    progress->finish();
    const Error code = errorOf(result);
    return code == NoError ? NoError : fail(code, error, reasonOf(result, code));
}

TTextTransform::Error TTextTransform::transformFileViaTools(const QString &source,
                                                            const QString &target,
                                                            TVLFormat::Format targetFormat,
                                                            TVLImportExport::Engine engine,
                                                            QString *error, bool showProgress)
{
    if (TVLFormat::extension(targetFormat).isEmpty())
        return fail(Unsupported, error);
    if (!QFileInfo(source).isFile())
        return fail(InputUnreadable, error);
    // What is made on the way lies where nobody else reads it, and goes with this object.
    const QTemporaryDir workPlace(TVLCoreUtil::GetTavelinorTempPath() + u"/convert-XXXXXX"_s);
    if (!workPlace.isValid())
        return fail(WritingFailed, error, workPlace.errorString());
    const QString folder = QDir::toNativeSeparators(workPlace.path());
    const QString result = QDir::toNativeSeparators(
        workPlace.filePath(u"result."_s + TVLFormat::extension(targetFormat)));
    const QString input = QDir::toNativeSeparators(QFileInfo(source).absoluteFilePath());
    const QStringList arguments = {u"-engine"_s, QString::number(engine),
                                   u"-title"_s,  QFileInfo(target).completeBaseName(),
                                   u"-work"_s,   folder,
                                   input,        result};
    const Error code = transformProcess(doc2AnyPath(), arguments, folder, error, showProgress);
    return code == NoError ? take(result, target, error) : code;
}

TTextTransform::Error TTextTransform::transformDoc2Any(const QString &source, const QString &target,
                                                       TVLFormat::Format format,
                                                       TVLImportExport::Engine engine,
                                                       QString *error, bool showProgress)
{
    return transformFileViaTools(source, target, format, engine, error, showProgress);
}
