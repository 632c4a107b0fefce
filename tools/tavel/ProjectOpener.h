#pragma once

#include "TVLProjectFolderFormat.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class TVLProjectModel;

/** What there is in a project's folder that an opening could read the binder from. */
struct BinderFiles
{
    QString projectPath; ///< The project's folder, absolute.
    QString binder; ///< The binder that an opening takes, absolute; empty for none.
    QStringList allBinders; ///< Names of all binder files in the folder.
    QString autosave; ///< Zipped copy of the last save, absolute; empty for none.
    QString backup; ///< Zipped copy of the last opening, absolute; empty for none.

    [[nodiscard]] bool isEmpty() const;
};

/** A path as given on the command line, made absolute and free of `.`, `..` and closing slashes. */
[[nodiscard]] QString normalizedPath(const QString &path);

/**
 * Looks for the binder files of a project, which @p path names by its folder or by its binder.
 * Nothing, and a text in @p error, when there is no folder.
 */
[[nodiscard]] std::optional<BinderFiles> findBinderFiles(const QString &path, QString *error);

/** Whether the items of a project are known by their uuids alone, as in format version 23. */
[[nodiscard]] bool isOfLaterFormat(const QString &path);

/** findBinderFiles() for a project that is to be opened: nothing when there is no binder either. */
[[nodiscard]] std::optional<BinderFiles> requireBinderFiles(const QString &path, QString *error);

/**
 * Opens a project to read from, and changes nothing on disk. Null, and a text in @p error, when
 * there is none; a folder without a binder is not taken for a blank project.
 */
[[nodiscard]] std::unique_ptr<TVLProjectModel>
openToRead(const QString &path, QString *error,
           TVLProjectFolderFormat::ReadingScope scope = TVLProjectFolderFormat::ItemsAlone);

/** What is said of a project whose binders can't be read. */
[[nodiscard]] QString unreadableProject(const QString &path);
