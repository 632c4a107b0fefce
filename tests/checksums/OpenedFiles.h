#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/** Tells which files of some folders were opened since the object was made, and which of the
 * folders were listed. */
class OpenedFiles
{
public:
    /** Watches each of the folders, without those below them. */
    explicit OpenedFiles(const QStringList &folders);
    ~OpenedFiles();
    Q_DISABLE_COPY_MOVE(OpenedFiles)

    /** What was opened, as paths and in that order. */
    struct Paths
    {
        QStringList files;
        QStringList folders;
    };
    [[nodiscard]] Paths take();

private:
    int mNotifier;
    QHash<int, QString> mFolders;
};
