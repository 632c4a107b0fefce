#include "TVLNumberedFiles_p.h"

#include "TVLProjectFolderFormat.h"

#include <QDirIterator>

#include <algorithm>
#include <iterator>

namespace {

// What stands behind the id in the names of files that don't have a dot there.
constexpr QStringView Tails[] = {u"_notes.rtf", u"_notes.styles", u"_synopsis.txt"};
constexpr QStringView IndexCardTail = u"_icImage.";

bool isTail(QStringView tail)
{
    return tail.startsWith(u'.') || tail.startsWith(IndexCardTail)
        || std::find(std::begin(Tails), std::end(Tails), tail) != std::end(Tails);
}

/** The id that a numbered file's name starts with; -1 for a file of no item. */
int idOf(QStringView fileName)
{
    const std::optional<TVLNumberedName> name = tvlNumberedName(fileName);
    return name && isTail(name->tail) ? name->id : -1;
}

} // namespace

std::optional<TVLNumberedName> tvlNumberedName(QStringView fileName)
{
    const auto isDigit = [](QChar ch) { return ch >= u'0' && ch <= u'9'; };
    const auto *end = std::find_if_not(fileName.begin(), fileName.end(), isDigit);
    const QStringView digits = fileName.first(end - fileName.begin());
    // Another number may be written with zeros in front, but no file of an item is.
    const bool isPlain = !digits.isEmpty() && (digits.size() == 1 || digits.front() != u'0');
    bool ok = false;
    const int id = digits.toInt(&ok);
    if (!ok || !isPlain)
        return std::nullopt;
    return TVLNumberedName{id, fileName.sliced(digits.size())};
}

TVLNumberedFiles::TVLNumberedFiles(const QString &projectPath)
    : mProjectPath(TVLProjectFolderFormat::calcEnclosingPath(projectPath))
{
}

QStringList TVLNumberedFiles::fileNames(int id) const
{
    if (!mFileNames)
        mFileNames = list();
    return mFileNames->value(id);
}

QSet<int> TVLNumberedFiles::ids() const
{
    QSet<int> ids;
    QDirIterator entries(TVLProjectFolderFormat::filesDocsPath(mProjectPath),
                         QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        const int id = idOf(entries.fileName());
        if (id >= 0)
            ids.insert(id);
    }
    return ids;
}

QHash<int, QStringList> TVLNumberedFiles::list() const
{
    QHash<int, QStringList> fileNames;
    // With System also links that lead nowhere are listed.
    QDirIterator files(TVLProjectFolderFormat::filesDocsPath(mProjectPath),
                       QDir::Files | QDir::System);
    while (files.hasNext()) {
        files.next();
        const int id = idOf(files.fileName());
        if (id >= 0)
            fileNames[id].append(files.fileName());
    }
    return fileNames;
}
