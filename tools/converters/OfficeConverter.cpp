#include "OfficeConverter.h"

#include "TVLConverters.h"
#include "TVLCoreUtil.h"
#include "TVLProcess.h"
#include "TVLProgress.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QUrl>
#include <QXmlStreamWriter>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace TTextTransform;

namespace {

const QString OfficeName = u"LibreOffice"_s;
/** For a run, and for waiting until another one is over. Whoever starts this program has a limit
 * that is longer than one of them. */
constexpr int LimitMilliseconds = 4 * 60 * 1000;
constexpr int LockSliceMilliseconds = 200;

struct FilterRow
{
    TVLFormat::Format format;
    QStringView filter; ///< What writes it; empty for a format that is only read.
};

constexpr FilterRow FilterRows[] = {
    {TVLFormat::PlainText, u"txt:Text (encoded):UTF8"},
    {TVLFormat::Rtf, u"rtf:Rich Text Format"},
    {TVLFormat::Html, u"html:HTML (StarWriter)"},
    {TVLFormat::Xhtml, u""},
    {TVLFormat::Odt, u"odt:writer8"},
    {TVLFormat::Doc, u"doc:MS Word 97"},
    {TVLFormat::Docx, u"docx:MS Word 2007 XML"},
    {TVLFormat::Pdf, u"pdf:writer_pdf_Export"},
};

QString filterOf(TVLFormat::Format format)
{
    for (const FilterRow &row : FilterRows) {
        if (row.format == format)
            return row.filter.toString();
    }
    return {};
}

struct ProfileRow
{
    QStringView path;
    QStringView name;
    QStringView value;
};

constexpr ProfileRow ProfileRows[] = {
    {u"/org.openoffice.Office.Common/Security/Scripting", u"DisableMacrosExecution", u"true"},
    {u"/org.openoffice.Office.Common/Security/Scripting", u"BlockUntrustedRefererLinks", u"true"},
    {u"/org.openoffice.Office.Writer/Content/Update", u"Link", u"0"},
    {u"/org.openoffice.Office.Common/Misc", u"FirstRun", u"false"},
};

/** Has temporary files made elsewhere for as long as it lives. */
class TemporaryPlace
{
public:
    explicit TemporaryPlace(const QString &folder)
        : mBefore(qgetenv("TMPDIR"))
    {
        qputenv("TMPDIR", QFile::encodeName(folder));
    }
    ~TemporaryPlace()
    {
        if (mBefore.isEmpty())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", mBefore);
    }
    Q_DISABLE_COPY_MOVE(TemporaryPlace)

private:
    QByteArray mBefore;
};

/** Waits until no other run has the lock. */
std::optional<Outcome> waitFor(QLockFile *lock, const TVLProgress &progress)
{
    const QDeadlineTimer deadline(LimitMilliseconds);
    while (!lock->tryLock(LockSliceMilliseconds)) {
        if (progress.isCanceled())
            return Outcome{Canceled};
        if (deadline.hasExpired())
            return Outcome{TimedOut, u"%1 is busy with other documents."_s.arg(OfficeName)};
    }
    return std::nullopt;
}

} // namespace

OfficeConverter::OfficeConverter(QString workFolder, TVLProgress *progress)
    : mWorkFolder(std::move(workFolder))
    , mProgress(progress)
{
}

bool OfficeConverter::canRead(TVLFormat::Format format)
{
    return std::any_of(std::begin(FilterRows), std::end(FilterRows), [format](const auto &row) {
        return row.format == format && format != TVLFormat::Pdf && format != TVLFormat::PlainText;
    });
}

bool OfficeConverter::canWrite(TVLFormat::Format format)
{
    return !filterOf(format).isEmpty();
}

Outcome OfficeConverter::convert(const QString &source, TVLFormat::Format from,
                                 const QString &target, TVLFormat::Format to)
{
    if (TVLConverters::officePath().isEmpty())
        return {ConverterNotFound, u"%1 isn't installed."_s.arg(OfficeName)};
    // Beside the file itself the office would leave a lock, and find what the file links to.
    const QString input = mWorkFolder + u"/source."_s + TVLFormat::extension(from);
    if (const Outcome copied = copyFile(source, input); !copied.isDone())
        return copied;
    QLockFile lock(TVLCoreUtil::GetTavelinorTempPath() + u"/office.lock"_s);
    lock.setStaleLockTime(0);
    if (const std::optional<Outcome> busy = waitFor(&lock, *mProgress))
        return *busy;
    const QString resultFolder = mWorkFolder + u"/office"_s;
    const QString result = resultFolder + u"/source."_s + TVLFormat::extension(to);
    if (!writeProfile() || !QDir().mkpath(resultFolder))
        return {WritingFailed};
    if (const Outcome ran = run(input, filterOf(to), result); !ran.isDone())
        return ran;
    return copyFile(result, target);
}

Outcome OfficeConverter::run(const QString &source, const QString &filter, const QString &result)
{
    const QUrl profile = QUrl::fromLocalFile(mWorkFolder + u"/profile"_s);
    const QStringList arguments = {u"-env:UserInstallation="_s
                                       + QString::fromLatin1(profile.toEncoded()),
                                   u"--headless"_s,
                                   u"--nologo"_s,
                                   u"--nodefault"_s,
                                   u"--norestore"_s,
                                   u"--nolockcheck"_s,
                                   u"--convert-to"_s,
                                   filter,
                                   u"--outdir"_s,
                                   QFileInfo(result).path(),
                                   source};
    // An office that is killed leaves its own temporary files where it made them.
    const TemporaryPlace place(mWorkFolder);
    const TVLProcess::Result ended = TVLProcess::execute(TVLConverters::officePath(), arguments,
                                                         LimitMilliseconds, mWorkFolder, mProgress);
    if (const Outcome outcome = outcomeOf(ended, OfficeName); !outcome.isDone())
        return outcome;
    // It ends well even if it could not read the file, and only says so.
    Outcome written = outcomeOfFile(result, ended.output);
    if (!written.isDone() && ended.output.contains("could not be loaded"))
        written.code = InputNotParsed;
    return written;
}

bool OfficeConverter::writeProfile() const
{
    const QString folder = mWorkFolder + u"/profile/user"_s;
    QFile file(folder + u"/registrymodifications.xcu"_s);
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly))
        return false;
    const QString space = u"http://openoffice.org/2001/registry"_s;
    QXmlStreamWriter xml(&file);
    xml.writeStartDocument();
    xml.writeNamespace(space, u"oor"_s);
    xml.writeStartElement(space, u"items"_s);
    for (const ProfileRow &row : ProfileRows) {
        xml.writeStartElement(u"item"_s);
        xml.writeAttribute(space, u"path"_s, row.path.toString());
        xml.writeStartElement(u"prop"_s);
        xml.writeAttribute(space, u"name"_s, row.name.toString());
        xml.writeAttribute(space, u"op"_s, u"fuse"_s);
        xml.writeTextElement(u"value"_s, row.value.toString());
        xml.writeEndElement();
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return !xml.hasError() && file.flush();
}
