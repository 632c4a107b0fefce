#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/** What becomes of a file or a folder on disk. */
enum class ImportKind {
    Folder, ///< A folder item.
    Text, ///< A text item, read as its row in TVLFileKinds says.
    Outline, ///< A tree of items.
};

/** A file or a folder that is to be imported. */
struct ImportEntry
{
    ImportKind kind;
    QString path;
    QString title; ///< Complete base name; may be empty.
    int depth; ///< 0 for what was asked for, 1 more for each folder around it.
};

/**
 * All that is to be imported for a list of files and folders. What lies in a folder follows it, in
 * natural order of the names; hidden files and folders there are left out. Nothing, and a line in
 * @p error, if one of them can't be imported: it isn't there, is neither text, outline nor folder,
 * lies in the project itself, or is a link to a folder, which might lead round in circles.
 */
[[nodiscard]] std::optional<QList<ImportEntry>>
planImport(const QStringList &paths, const QString &projectPath, QString *error);
