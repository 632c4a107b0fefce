#pragma once

#include "TVLFormat.h"
#include "TVLImportExport.h"
#include "TvlExport.h"

#include <QObject>
#include <QString>
#include <QStringList>

/**
 * Conversions by programs that are started for them.
 *
 * Both programs of ours are looked for as TVLConverters says: the document converter, which drives
 * LibreOffice and pandoc, and the MultiMarkdown converter. They end with exit status
 * FirstExitStatus plus an Error, and say on standard error what went wrong.
 */
namespace TTextTransform {

Q_NAMESPACE_EXPORT(TVL_EXPORT)

/** How a conversion ended. The numbers never change. */
enum Error : unsigned int {
    NoError = 0,
    ConverterNotFound = 1, ///< Or what it is to convert, for a sound.
    WordNeeded = 2, ///< The converter asks for Microsoft Word.
    Unsupported = 3, ///< No way leads from this format to that one.
    ConverterFailed = 4, ///< It crashed, or ended with a word of its own.
    InputUnreadable = 5,
    WritingFailed = 6,
    OutputNotOpened = 7,
    InputNotParsed = 8, ///< Or it isn't safe.
    NoDocument = 9,
    IntermediateMissing = 10,
    TimedOut = 11, ///< The converter was killed at the time limit.
    Canceled = 12, ///< The user had the converter killed.
};
Q_ENUM_NS(Error)

/** Exit statuses from here on are those of a converter of ours. */
constexpr int FirstExitStatus = 64;

/** What an error is to the user; empty for NoError, "Unknown error" for a number that is none. */
[[nodiscard]] TVL_EXPORT QString errorDescription(unsigned int error);

/** The MultiMarkdown converter, whether or not it exists; `TAVEL_DOC2MMD` may say where it lies. */
[[nodiscard]] TVL_EXPORT QString tvlDoc2MmdPath();
/** The document converter, whether or not it exists; `TAVEL_DOC2ANY` may say where it lies. */
[[nodiscard]] TVL_EXPORT QString doc2AnyPath();

/** How long a program may take, in milliseconds: five minutes, until a test says otherwise. */
[[nodiscard]] TVL_EXPORT int timeLimit();
TVL_EXPORT void setTimeLimit(int milliseconds);

/**
 * Runs a program and tells how it ended; see TVLProcess. @p error may be null and gets, on failure,
 * the end of what the program said or what became of it.
 *
 * @param showProgress whether a dialog shows that it works, and lets the user have it killed
 */
[[nodiscard]] TVL_EXPORT Error transformProcess(const QString &program,
                                                const QStringList &arguments,
                                                const QString &workingDirectory, QString *error,
                                                bool showProgress);

/**
 * Converts a file, whose suffix says what it is, by the document converter. The target is written
 * when the whole conversion is there: until then it stays as it was, and so it does on failure.
 *
 * @param engine what reads or writes the one of the two that isn't rich text
 */
[[nodiscard]] TVL_EXPORT Error transformFileViaTools(const QString &source, const QString &target,
                                                     TVLFormat::Format targetFormat,
                                                     TVLImportExport::Engine engine, QString *error,
                                                     bool showProgress);

/** The same for a source that is rich text. */
[[nodiscard]] TVL_EXPORT Error transformDoc2Any(const QString &source, const QString &target,
                                                TVLFormat::Format format,
                                                TVLImportExport::Engine engine, QString *error,
                                                bool showProgress);

} // namespace TTextTransform
