#include "TVLRtfCheck_p.h"

#include "TVLMessageBox.h"
#include "TVLOptions.h"
#include "TVLProcess.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr int MillisecondsPerFile = 15'000;

enum class Verdict { Sound, HasErrors, Failed };

int silentChecks = 0; ///< How many TVLSilentRtfCheck live.

QString tr(const char *text)
{
    return QCoreApplication::translate("TVLTextTransform", text);
}

/** The program that looks through files; beside the application, unless the environment says
 * otherwise. */
QFileInfo inspector()
{
    const QString path = qEnvironmentVariable("TAVEL_RTFI");
    return QFileInfo(path.isEmpty() ? QCoreApplication::applicationDirPath() + u"/rtfi"_s : path);
}

Verdict inspect(const QFileInfo &tool, const QString &path)
{
    // The program runs in its own folder.
    QString command = TVLProcess::quoted(tool.absoluteFilePath()) + u' '
        + TVLProcess::quoted(QFileInfo(path).absoluteFilePath());
    if (tvlOptions()->value(TVLOptions::RemoveInvalidRtfCharacters))
        command += u" --removeinvalidchar"_s;
    const TVLProcess::Result result =
        TVLProcess::executeProcess(command, MillisecondsPerFile, tool.absolutePath());
    if (result.exitStatus == QProcess::CrashExit || result.error == QProcess::Crashed)
        return Verdict::Failed;
    return result.exitCode == 0 ? Verdict::Sound : Verdict::HasErrors;
}

void tellOfFailure(const QString &path)
{
    TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), tr("RTF Reader Error"),
        tr("Tavelinor was not able to parse the rtf in the following file:\n\nFile: '%1'")
            .arg(path),
        {}, QMessageBox::Warning);
}

bool isWantedAllTheSame(const QString &path)
{
    const QMessageBox::StandardButton answer = TVLMessageBox::showMessageBox(
        QApplication::activeWindow(), tr("RTF Reader Error"),
        tr("There were rtf errors in the following file: '%1'\n\nIf loaded, this file might cause "
           "problems and potentially crash Tavelinor. If possible, it would be safer to open the "
           "file in its native application and copy and paste the text into a plain text editor - "
           "such as 'Notepad' to remove poorly formed rtf. The text in Notepad can then be pasted "
           "into Tavelinor; all formatting will be lost, but the text will be clean and safe.\n If "
           "you continue to load the file, Tavelinor will load as much rtf as possible, but note "
           "that it may not include the entire text of the file. \n\nDo you still want to try and "
           "load the RTF file?")
            .arg(path),
        {}, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    return answer == QMessageBox::Yes;
}

/** What the program finds or, where it finds errors, the user wants. */
bool isSafe(Verdict verdict, const QString &path)
{
    if (verdict == Verdict::HasErrors)
        return isWantedAllTheSame(path);
    if (verdict == Verdict::Failed)
        tellOfFailure(path);
    return verdict == Verdict::Sound;
}

} // namespace

bool tvlIsRtfSafeToLoad(const QString &path, bool remember)
{
    static QHash<QString, bool> verdicts;
    if (!path.endsWith(u".rtf"_s))
        return true;
    if (const auto known = verdicts.constFind(path); known != verdicts.cend())
        return *known;
    if (!QFileInfo::exists(path))
        return false;
    const QFileInfo tool = inspector();
    const Verdict found = tool.isFile() ? inspect(tool, path) : Verdict::Sound;
    if (silentChecks > 0 && found != Verdict::Sound)
        return false;
    const bool verdict = isSafe(found, path);
    if (remember)
        verdicts.insert(path, verdict);
    return verdict;
}

TVLSilentRtfCheck::TVLSilentRtfCheck()
{
    ++silentChecks;
}

TVLSilentRtfCheck::~TVLSilentRtfCheck()
{
    --silentChecks;
}
