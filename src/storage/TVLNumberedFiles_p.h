#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/** The two parts of a file name that begins with the id of an item. */
struct TVLNumberedName
{
    int id;
    QStringView tail; ///< Of the name, which has to last as long.
};

/** The parts of such a name; nothing for a name that begins otherwise. */
[[nodiscard]] std::optional<TVLNumberedName> tvlNumberedName(QStringView fileName);

/**
 * Which of a project's numbered files belong to which item, by one listing of their folder. It is
 * made with the first question, and doesn't know what comes and goes later.
 */
class TVLNumberedFiles
{
public:
    /** The path names the project by its folder or its binder. */
    explicit TVLNumberedFiles(const QString &projectPath);

    /** The names of all files of an item, in no order. */
    [[nodiscard]] QStringList fileNames(int id) const;
    /** The ids that the files' names, or those of folders in place of files, begin with. */
    [[nodiscard]] QSet<int> ids() const;

private:
    [[nodiscard]] QHash<int, QStringList> list() const;

    QString mProjectPath;
    mutable std::optional<QHash<int, QStringList>> mFileNames;
};
