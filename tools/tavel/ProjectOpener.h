#pragma once

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
 * Nothing on disk is changed, in contrast to the look-up of an opening, which renames a binder to
 * the name that it should have. Nothing, and a text in @p error, when there is no folder.
 */
[[nodiscard]] std::optional<BinderFiles> findBinderFiles(const QString &path, QString *error);

/** Whether the items of a project are known by their uuids alone, as in format version 23. */
[[nodiscard]] bool isOfLaterFormat(const QString &path);

/**
 * Opens a project to read from. Null, and a text in @p error, when there is none; a folder without
 * a binder is not taken for a blank project.
 *
 * The model is to be deleted without TVLProjectModel::prepareToDestroy(): that would save, and
 * remove a lock that belongs to whoever has the project open.
 */
[[nodiscard]] std::unique_ptr<TVLProjectModel> openProject(const QString &path, QString *error);
