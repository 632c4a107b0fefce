#include "ImportPlan.h"

#include "NaturalOrder.h"

#include "TVLCoreUtil.h"
#include "TVLFileKinds.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** What a file is by its name. */
std::optional<ImportKind> kindOf(const QFileInfo &info)
{
    if (info.isDir())
        return ImportKind::Folder;
    if (TVLFileKinds::textReader(info.suffix()))
        return ImportKind::Text;
    if (TVLFileKinds::isOutline(info.suffix()))
        return ImportKind::Outline;
    return std::nullopt;
}

/** Why something can't be imported; empty if it can. */
QString refusalOf(const QFileInfo &info, const QString &projectPath)
{
    const QString path = info.filePath();
    if (!info.exists())
        return u"there is no file '%1'"_s.arg(path);
    if (TVLCoreUtil::IsSameOrInside(path, projectPath))
        return u"'%1' lies in the project itself"_s.arg(path);
    if (info.isDir() && info.isSymbolicLink())
        return u"'%1' is a link to a folder"_s.arg(path);
    if (info.isDir() && !(info.isReadable() && info.isExecutable()))
        return u"the folder '%1' can't be read"_s.arg(path);
    if (!kindOf(info))
        return u"'%1' is neither plain text (.txt) nor rich text (.rtf)"_s.arg(path);
    return {};
}

/** What lies in a folder, the last one first. */
QFileInfoList entriesBackwards(const QString &path)
{
    // Links that lead nowhere count as system files.
    QFileInfoList entries =
        QDir(path).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    std::sort(entries.begin(), entries.end(), [](const QFileInfo &left, const QFileInfo &right) {
        return naturalLessThan(right.fileName(), left.fileName());
    });
    return entries;
}

} // namespace

std::optional<QList<ImportEntry>> planImport(const QStringList &paths, const QString &projectPath,
                                             QString *error)
{
    struct Step
    {
        QFileInfo info;
        int depth;
    };
    // What is still to be looked at, the next one last.
    QList<Step> steps;
    for (auto path = paths.crbegin(); path != paths.crend(); ++path)
        steps.append({QFileInfo(QDir::cleanPath(QFileInfo(*path).absoluteFilePath())), 0});

    QList<ImportEntry> plan;
    while (!steps.isEmpty()) {
        const auto [info, depth] = steps.takeLast();
        *error = refusalOf(info, projectPath);
        if (!error->isEmpty())
            return std::nullopt;
        plan.append({*kindOf(info), info.filePath(), info.completeBaseName(), depth});
        if (!info.isDir())
            continue;
        const QFileInfoList entries = entriesBackwards(info.filePath());
        for (const QFileInfo &entry : entries)
            steps.append({entry, depth + 1});
    }
    return plan;
}
