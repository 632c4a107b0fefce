#pragma once

#include <QSet>
#include <QString>

class TVLProjectNodeProperties;

/**
 * The ids of which files or snapshots lie in a project's folder, be there an item of theirs or not:
 * a removed item may leave some, and so may a session that ended before it saved the binder. An
 * item that got such an id would take them for its own.
 *
 * The folder is listed when it is first asked about; what comes and goes from then on is told here.
 */
class TVLFilesLeft
{
public:
    /** Whether anything of an id may lie in the folder of a project. */
    [[nodiscard]] bool has(const QString &projectPath, int id);
    /** An item goes, or gets another id, and its files stay. */
    void add(const QString &projectPath, const TVLProjectNodeProperties &item);
    /** An item goes, and its files with it unless some couldn't be deleted. */
    void remove(int id, bool areGone);

private:
    bool mIsListed = false;
    QSet<int> mIds;
};
