#pragma once

#include "TvlExport.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QModelIndex;
class QWidget;

/** Checks of places on disk that tell the user what is wrong, and of moves in a view. */
class TVL_EXPORT TVLGuiUtil
{
    Q_DECLARE_TR_FUNCTIONS(TVLGuiUtil)

public:
    /**
     * Whether a file or folder can be written, judged by what the file system says now; nothing is
     * written to find out. A folder that doesn't exist is judged by the nearest folder above it
     * that does, a file that doesn't exist by its folder.
     *
     * @param isFolder   whether the path stands for a folder or for a file
     * @param notifyUser whether a modal message box on @p parent says so when it can't be; needs a
     *                   QApplication
     * @return false also for an empty path
     */
    [[nodiscard]] static bool CanWriteLocation(const QString &path, bool isFolder, bool notifyUser,
                                               QWidget *parent);

    /**
     * Whether a file or folder exists and can be read. @p notifyUser and @p parent as in
     * CanWriteLocation().
     */
    [[nodiscard]] static bool CanReadLocation(const QString &path, bool notifyUser,
                                              QWidget *parent);

    /** The extensions, in lower case and without a dot, of the images that can be read here. */
    [[nodiscard]] static QStringList readImageFormats();

    /** Of these extensions, those of images that can be written here as well. */
    [[nodiscard]] static QStringList readWriteImageFormats();

    /**
     * Whether an index may be dropped before a row of a parent, behind the last for a negative row:
     * a move must not end up where the index is, on it or below it. Other actions leave the index
     * where it is, so they may.
     */
    [[nodiscard]] static bool allowMove(const QModelIndex &source, const QModelIndex &sourceParent,
                                        const QModelIndex &targetParent, int row,
                                        Qt::DropAction action);
};
