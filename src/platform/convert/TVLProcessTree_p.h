#pragma once

#include <QByteArray>

class QProcess;

/**
 * A program with all that it starts, so that nothing of it is left. They have a process group of
 * their own. A program that has left that is known, on Linux, by a variable in its environment.
 */
class TVLProcessTree
{
public:
    TVLProcessTree();

    /** Before the start of the program. */
    void prepare(QProcess *process) const;
    /** Behind the start of the program, which leads the group. */
    void setRoot(qint64 processId) { mRoot = processId; }

    void killGroup() const;
    void killAll() const;

private:
    [[nodiscard]] int killMarked() const;

    QByteArray mMark; ///< The name of the variable.
    qint64 mRoot = 0;
};
